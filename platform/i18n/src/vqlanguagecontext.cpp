#include "vqlanguagecontext.h"

#include "byteset.h"
#include "languages.h"
#include "unicodeset.h"

namespace {

struct Defaults {
    unsigned char nativeCodeSet = 1;
    unsigned char codeSet = 1;
    unsigned char codeSet8 = 1;
    unsigned char codeSet16 = 253;
    unsigned char language = 0;
    unsigned short cmpOp = 0x10;
};

constinit Defaults defaults;

}  // namespace

unsigned char VqLanguageContext::GetNativeCodeSet() { return defaults.nativeCodeSet; }
void VqLanguageContext::SetNativeCodeSet(unsigned char codeSet) { defaults.nativeCodeSet = codeSet; }
unsigned char VqLanguageContext::GetDefaultCodeSet() { return defaults.codeSet; }
void VqLanguageContext::SetDefaultCodeSet(unsigned char codeSet) { defaults.codeSet = codeSet; }
unsigned char VqLanguageContext::GetDefault8CodeSet() { return defaults.codeSet8; }
void VqLanguageContext::SetDefault8CodeSet(unsigned char codeSet) { defaults.codeSet8 = codeSet; }
unsigned char VqLanguageContext::GetDefault16CodeSet() { return defaults.codeSet16; }
void VqLanguageContext::SetDefault16CodeSet(unsigned char codeSet) { defaults.codeSet16 = codeSet; }
unsigned char VqLanguageContext::GetDefaultLanguage() { return defaults.language; }
void VqLanguageContext::SetDefaultLanguage(unsigned char language) { defaults.language = language; }
unsigned short VqLanguageContext::GetDefaultCmpOp() { return defaults.cmpOp; }
void VqLanguageContext::SetDefaultCmpOp(unsigned short op) { defaults.cmpOp = op; }

const VqCodeSet* VqLanguageContext::QueryCodeSet(unsigned char codeSet) {
    if (codeSet == 0) codeSet = defaults.nativeCodeSet;
    if (codeSet == vq::unicodeCodeSet.GetCode()) return &vq::unicodeCodeSet;
    return vq::FindByteCodeSet(codeSet);
}

const char* VqLanguageContext::GetLanguageName(unsigned char language) { return vq::LanguageName(language); }

int VqLanguageContext::FindLanguage(const char* name) { return vq::FindLanguageNamed(name); }

unsigned long VqLanguageContext::GetOrderVersion() { return vq::OrderVersion(); }

void ___VqI18NContext(int) { defaults = Defaults{}; }
