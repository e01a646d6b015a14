#include "sorthint.h"

#include <algorithm>
#include <bit>
#include <string_view>

#include "vqcollation.h"
#include "vqlanguagecontext.h"
#include "vqtypevl.h"

#include "../values.h"

namespace store {
namespace {

// Of a stored string: its length, code set and language, then the text and two bytes that end it.
constexpr std::size_t TextAt = 4, EndSize = 2;

constexpr std::uint32_t PrimaryOfKey(std::int32_t key) { return static_cast<std::uint32_t>(key) >> 8 & 0xFFFF; }

}  // namespace

// Puts the numbers of letters into a word, less those that an earlier word has.
class LetterHint::Writer {
  public:
    explicit Writer(unsigned depth) : skip_(depth * LettersOfWord) {}

    void Add(unsigned char rank) {
        if (skip_ != 0) {
            --skip_;
        } else if (!IsFull()) {
            word_ |= std::uint64_t{rank} << room_;
            room_ = rank % 2 != 0 ? 0 : room_ - static_cast<int>(LetterBits);
        }
    }
    bool IsFull() const { return room_ <= 0; }
    std::uint64_t Word() const { return word_; }

  private:
    unsigned skip_;
    std::uint64_t word_ = 0;
    int room_ = 64 - static_cast<int>(LetterBits);
};

LetterHint::LetterHint(unsigned char codeSet, unsigned char language, unsigned char format)
    : codeSet_(codeSet),
      language_(language),
      format_(format),
      collationClass_(VqLanguageContext::QueryCodeSet(codeSet)->GetCollationClass(language)),
      set_(*VqLanguageContext::QueryCodeSet(codeSet)),
      charSize_(static_cast<unsigned>(set_.GetCharSize())) {
    ChooseLetters();
    FillRanks();
}

// Texts of the native code set, 0, sort by their bytes.
std::uint32_t LetterHint::PrimaryOf(unsigned code) const {
    if (codeSet_ == 0) return code;
    unsigned short orders[2];
    set_.GetOrders(static_cast<unsigned short>(code), language_, orders);
    return PrimaryOfKey(VqCollationKey(orders[0], collationClass_));
}

// Those that most names are made of.
void LetterHint::ChooseLetters() {
    constexpr std::string_view often = "abcdefghijklmnopqrstuvwxyz 0123456789-'.,&()/";
    const auto choose = [this](unsigned code) {
        const std::uint32_t primary = PrimaryOf(code);
        if (letters_.size() == MostLetters || primary == 0) return;
        const auto at = std::lower_bound(letters_.begin(), letters_.end(), primary);
        if (at == letters_.end() || *at != primary) letters_.insert(at, primary);
    };
    for (const char c : often) choose(static_cast<unsigned char>(c));
    for (unsigned code = 0xC0; code <= 0xFF; ++code) choose(code);
}

void LetterHint::FillRanks() {
    if (codeSet_ == 0) {
        for (unsigned code = 0; code < 256; ++code) ranks_.push_back(RankOf(code));
        return;
    }
    const VqKeyTable table = set_.GetKeyTable(language_);
    for (unsigned code = 0; code < table.count; ++code) {
        const std::int32_t key = table.keys[code];
        ranks_.push_back(key < 0 ? LookCloser : RankOf(PrimaryOfKey(key)));
    }
}

unsigned char LetterHint::RankOf(std::uint32_t primary) const {
    const auto at = std::lower_bound(letters_.begin(), letters_.end(), primary);
    const bool isLetter = at != letters_.end() && *at == primary;
    return static_cast<unsigned char>((at - letters_.begin()) * 2 + (isLetter ? 2 : 1));
}

unsigned LetterHint::CodeAt(const unsigned char* text) const {
    if (charSize_ == 1) return *text;
    return format_ == VqFormat_BigEndian ? static_cast<unsigned>(text[0] << 8 | text[1])
                                         : static_cast<unsigned>(text[1] << 8 | text[0]);
}

// What sorts as two letters, or is written with several characters. Returns its bytes.
std::size_t LetterHint::AddCloser(Writer& writer, const unsigned char* text, const unsigned char* end) const {
    unsigned short codes[VqMaxContraction] = {}, orders[2] = {};
    for (auto at = text; at + charSize_ <= end && at < text + VqMaxContraction * charSize_; at += charSize_) {
        codes[(at - text) / charSize_] = static_cast<unsigned short>(CodeAt(at));
    }
    int characters = set_.GetContraction(codes, language_, orders);
    if (characters == 0) {
        characters = 1;
        if (set_.GetOrders(codes[0], language_, orders) == 1) orders[1] = 0;
    }
    for (const unsigned short order : orders) {
        if (order != 0) writer.Add(RankOf(PrimaryOfKey(VqCollationKey(order, collationClass_))));
    }
    return static_cast<std::size_t>(characters) * charSize_;
}

std::optional<std::uint64_t> LetterHint::Word(ByteView stored, unsigned depth) const {
    if (stored.size() < TextAt || stored[2] != codeSet_ || stored[3] != language_) return std::nullopt;
    Writer writer(depth);
    const unsigned char* at = stored.data() + TextAt;
    const unsigned char* const end = stored.data() + std::max(TextAt, stored.size() - EndSize);
    while (!writer.IsFull() && at + charSize_ <= end) {
        const unsigned code = CodeAt(at);
        if (code == 0) break;
        const unsigned char rank = code < ranks_.size() ? ranks_[code] : LookCloser;
        if (rank != LookCloser) {
            writer.Add(rank);
            at += charSize_;
        } else {
            at += AddCloser(writer, at, end);
        }
    }
    return writer.Word();
}

std::optional<std::uint64_t> PlaceBetween(char type, unsigned char format, ByteView key, ByteView least,
                                          ByteView greatest) {
    VqIdxBounds bounds;
    bounds.lowKey = const_cast<unsigned char*>(least.data());
    bounds.highKey = const_cast<unsigned char*>(greatest.data());
    bounds.lowKeyLength = static_cast<std::uint32_t>(least.size());
    bounds.highKeyLength = static_cast<std::uint32_t>(greatest.size());
    unsigned short operators = VqOperator_Less;
    const float share = Manager().EvalAndBound(type, &bounds, operators, key.data(), format, 1, nullptr, nullptr);
    if (operators & VqOperator_Wildcard) return std::nullopt;
    return std::bit_cast<std::uint32_t>(share);  // none is negative, so that the bits are in order
}

}  // namespace store
