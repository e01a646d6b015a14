#include "stringiterator.h"

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
      collationClass_(set_->GetCollationClass(language)) {}

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

unsigned short VqStringIterator::GetNextOrder(int advance) {
    if (const unsigned short second = pendingOrder_) {
        if (advance != 0) ++*this;
        return second;
    }
    const unsigned short code = GetCode();
    if (code == 0) return 0;
    unsigned short orders[2];
    const int count = set_->GetOrders(code, language_, orders);
    if (advance == 0) return orders[0];
    if (count == 2)
        pendingOrder_ = orders[1];
    else
        ++*this;
    return orders[0];
}
