// A text as a sequence of comparison keys.
#ifndef VQ_KEYREADER_H
#define VQ_KEYREADER_H

#include <cstddef>
#include <cstdint>

#include "orderunit.h"
#include "textunit.h"
#include "vqcollation.h"

namespace vq {

constexpr std::size_t NoLimit = ~std::size_t{0};

// Where a text's keys come from.
struct KeySource {
    KeySource(const VqCodeSet& codeSet, unsigned char languageOfText, unsigned char byteOrder = 1)
        : set(&codeSet),
          table(codeSet.GetKeyTable(languageOfText)),
          language(languageOfText),
          order(byteOrder),
          collationClass(codeSet.GetCollationClass(languageOfText)) {}

    const VqCodeSet* set;
    VqKeyTable table;
    unsigned char language;
    unsigned char order;  // of 2-byte characters, see LoadChar
    unsigned char collationClass;
};

// Stands on a key. The walk ends with keys of 0 at the text's end or after `limit` characters. A copy goes on by
// itself.
class KeyReader {
  public:
    KeyReader(const KeySource& source, const void* text, std::size_t limit)
        : source_(&source),
          at_(static_cast<const unsigned char*>(text)),
          remaining_(limit),
          charSize_(static_cast<unsigned>(source.set->GetCharSize())) {
        Load();
    }

    std::int32_t Key() const { return key_; }
    // False behind the last character that the limit leaves.
    bool InLimit() const { return remaining_ != 0; }
    // Characters that the limit leaves, from those of this key on.
    std::size_t Remaining() const { return remaining_; }

    void Step() {
        if (second_ != 0) {
            key_ = second_;
            second_ = 0;
        } else if (key_ != 0) {
            at_ += characters_ * charSize_;
            remaining_ -= characters_;
            Load();
        }
    }

  private:
    unsigned short Code(std::size_t i) const { return LoadChar(at_ + i * charSize_, charSize_, source_->order); }

    void Load() {
        const unsigned short code = remaining_ != 0 ? Code(0) : 0;
        key_ = code < source_->table.count ? source_->table.keys[code] : -1;
        characters_ = 1;
        if (key_ < 0) LoadUnit(code);
    }

    // What has no ready key: one that sorts as two, that others follow in one letter, or that lies beyond the table.
    void LoadUnit(unsigned short first) {
        unsigned short codes[VqMaxContraction] = {first, 0, 0};
        if (source_->table.contractions) {
            for (std::size_t i = 1; i < VqMaxContraction && i < remaining_ && codes[i - 1] != 0; ++i)
                codes[i] = Code(i);
        }
        const OrderUnit unit = OrdersAt(*source_->set, source_->language, codes, source_->table.contractions);
        key_ = VqCollationKey(unit.orders[0], source_->collationClass);
        second_ = VqCollationKey(unit.orders[1], source_->collationClass);
        characters_ = unit.characters;
    }

    const KeySource* source_;
    const unsigned char* at_;
    std::size_t remaining_;
    std::int32_t key_ = 0;
    std::int32_t second_ = 0;  // the next key of the same characters, or 0
    unsigned characters_ = 0;
    unsigned charSize_;
};

}  // namespace vq

#endif
