#include "stringiterator.h"

#include "orderunit.h"
#include "textunit.h"
#include "vqstring.h"

VqStringIterator::VqStringIterator(const VqString& string)
    : VqStringIterator(string.GetCodeSet(), string.GetLanguage(), string.StrGet()) {}

VqStringIterator::VqStringIterator(unsigned char codeSet, unsigned char language, const void* text, unsigned char order)
    : start_(static_cast<const unsigned char*>(text != nullptr ? text : vq::emptyText)),
      current_(start_),
      set_(&vq::CodeSetOf(codeSet)),
      codeSet_(codeSet),
      language_(language),
      charSize_(static_cast<std::uint8_t>(vq::CharSizeOf(codeSet))),
      order_(order),
      collationClass_(set_->GetCollationClass(language)),
      contractions_(set_->GetKeyTable(language).contractions) {}

VqStringIterator VqStringIterator::ForWriting(unsigned char codeSet, unsigned char language, void* buffer,
                                              unsigned long size) {
    const unsigned charSize = vq::CharSizeOf(codeSet);
    if (buffer == nullptr || size < charSize) return VqStringIterator(codeSet, language, nullptr);
    vq::StoreChar(buffer, charSize, 0);
    VqStringIterator writer(codeSet, language, buffer);
    writer.end_ = static_cast<unsigned char*>(buffer) + size;
    return writer;
}

bool VqStringIterator::Put(unsigned short code) {
    if (code == 0 || end_ == nullptr || end_ - current_ < 2 * charSize_) return false;
    unsigned char* const place = end_ - (end_ - current_);
    vq::StoreChar(place, charSize_, code);
    vq::StoreChar(place + charSize_, charSize_, 0);
    ++*this;
    return true;
}

unsigned short VqStringIterator::GetCode() const { return vq::LoadChar(current_, charSize_, order_); }

VqStringIterator& VqStringIterator::operator++() {
    if (!IsEnd()) current_ += charSize_;
    pendingOrder_ = 0;
    return *this;
}

VqStringIterator& VqStringIterator::operator--() {
    if (!IsStart()) current_ -= charSize_;
    pendingOrder_ = 0;
    return *this;
}

void VqStringIterator::SetLimit(unsigned long characters) { limit_ = characters; }

// The code at so many characters from the current one; 0 from the limit on. Those between must not be the end.
unsigned short VqStringIterator::CodeAhead(unsigned long characters) const {
    if (limit_ != ~0UL && GetPosition() + characters >= limit_) return 0;
    return vq::LoadChar(current_ + characters * charSize_, charSize_, order_);
}

void VqStringIterator::Move(unsigned characters) {
    current_ += characters * charSize_;
    pendingOrder_ = 0;
}

unsigned short VqStringIterator::GetNextOrder(int advance) {
    if (const unsigned short second = pendingOrder_) {
        if (advance != 0) Move(pendingCharacters_);
        return second;
    }
    unsigned short codes[VqMaxContraction] = {CodeAhead(0), 0, 0};
    if (contractions_) {
        for (unsigned i = 1; i < VqMaxContraction && codes[i - 1] != 0; ++i) codes[i] = CodeAhead(i);
    }
    const vq::OrderUnit unit = vq::OrdersAt(*set_, language_, codes, contractions_);
    if (advance == 0) return unit.orders[0];
    if (unit.orders[1] != 0) {
        pendingOrder_ = unit.orders[1];
        pendingCharacters_ = static_cast<std::uint8_t>(unit.characters);
    } else {
        Move(unit.characters);
    }
    return unit.orders[0];
}
