#include "vqchar.h"

#include "textunit.h"
#include "vqstring.h"

VqChar::VqChar(unsigned short code, unsigned char codeSet, unsigned char language)
    : code_(code), codeSet_(codeSet), language_(language) {}

VqChar::VqChar(char c)
    : VqChar(static_cast<unsigned char>(c), VqString::GetDefault8CodeSet(), VqString::GetDefaultLanguage()) {}

VqChar::VqChar(unsigned short c) : VqChar(c, VqString::GetDefault16CodeSet(), VqString::GetDefaultLanguage()) {}

VqChar::VqChar(VqString& string, int offset)
    : string_(&string), offset_(offset), codeSet_(string.GetCodeSet()), language_(string.GetLanguage()) {}

VqChar& VqChar::operator=(const VqChar& other) {
    const unsigned short code = other.GetCodeIn(codeSet_);
    if (string_ == nullptr) {
        code_ = code;
        return *this;
    }
    const unsigned charSize = vq::CharSizeOf(codeSet_);
    const int end = string_->GetSize() - static_cast<int>(charSize);
    if (offset_ >= 0 && offset_ < end && charSize == string_->CharSize()) {
        vq::StoreChar(string_->buffer_ + offset_, charSize, code);
    }
    return *this;
}

unsigned short VqChar::GetCode() const {
    if (string_ == nullptr) return code_;
    const unsigned charSize = vq::CharSizeOf(codeSet_);
    const int end = string_->GetSize() - static_cast<int>(charSize);
    if (offset_ < 0 || offset_ > end || charSize != string_->CharSize()) return 0;
    return vq::LoadChar(string_->buffer_ + offset_, charSize);
}

unsigned short VqChar::GetCodeIn(unsigned char codeSet) const {
    const unsigned short code = GetCode();
    if (codeSet == codeSet_) return code;
    return vq::MapCode(code, vq::CodeSetOf(codeSet_), vq::CodeSetOf(codeSet));
}

bool VqChar::operator==(const VqChar& other) const {
    if (codeSet_ == other.codeSet_) return GetCode() == other.GetCode();
    return GetCodeIn(253) == other.GetCodeIn(253);
}

namespace {

unsigned short PropertiesOf(const VqChar& c) { return vq::CodeSetOf(c.GetCodeSet()).GetProperties(c.GetCode()); }

}  // namespace

unsigned short VqChar::GetClass() const { return vq::CodeSetOf(codeSet_).GetClass(GetCode()); }

bool VqChar::IsSpace() const { return GetClass() < 80; }

bool VqChar::IsDigit() const { return PropertiesOf(*this) & VqCharProperty_Digit; }

bool VqChar::IsAlpha() const { return PropertiesOf(*this) & VqCharProperty_Letter; }

bool VqChar::IsAlnum() const { return PropertiesOf(*this) & (VqCharProperty_Letter | VqCharProperty_Digit); }

bool VqChar::IsUpper() const { return PropertiesOf(*this) & VqCharProperty_Upper; }

bool VqChar::IsLower() const { return PropertiesOf(*this) & VqCharProperty_Lower; }

bool VqChar::IsPunct() const { return PropertiesOf(*this) & VqCharProperty_Punct; }

bool VqChar::IsControl() const { return PropertiesOf(*this) & VqCharProperty_Control; }

VqChar VqChar::ToUpper() const { return VqChar(vq::CodeSetOf(codeSet_).ToUpper(GetCode()), codeSet_, language_); }

VqChar VqChar::ToLower() const { return VqChar(vq::CodeSetOf(codeSet_).ToLower(GetCode()), codeSet_, language_); }
