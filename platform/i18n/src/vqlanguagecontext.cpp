#include "vqlanguagecontext.h"

#include "byteset.h"
#include "languages.h"
#include "unicodeset.h"
#include "wideset.h"

constinit VqLanguageContext::Defaults VqLanguageContext::defaults_;

void VqLanguageContext::SetNativeCodeSet(unsigned char codeSet) {
    if (vq::FindByteCodeSet(codeSet) != nullptr) defaults_.nativeCodeSet = codeSet;
}

void VqLanguageContext::SetDefault8CodeSet(unsigned char codeSet) {
    if (codeSet < VqFirstWideCodeSet) defaults_.codeSet8 = codeSet;
}

void VqLanguageContext::SetDefault16CodeSet(unsigned char codeSet) {
    if (codeSet >= VqFirstWideCodeSet) defaults_.codeSet16 = codeSet;
}

const VqCodeSet* VqLanguageContext::QueryCodeSet(unsigned char codeSet) {
    if (codeSet == 0) codeSet = defaults_.nativeCodeSet;
    if (codeSet == vq::unicodeCodeSet.GetCode()) return &vq::unicodeCodeSet;
    return codeSet < VqFirstWideCodeSet ? vq::FindByteCodeSet(codeSet) : vq::FindWideCodeSet(codeSet);
}

const char* VqLanguageContext::GetLanguageName(unsigned char language) { return vq::LanguageName(language); }

int VqLanguageContext::FindLanguage(const char* name) { return vq::FindLanguageNamed(name); }

unsigned long VqLanguageContext::GetOrderVersion() { return vq::OrderVersion(); }

void VqLanguageContext::ResetDefaults() { defaults_ = {}; }

void ___VqI18NContext(int) { VqLanguageContext::ResetDefaults(); }
