#include "textorder.h"

#include <algorithm>

#include "stringiterator.h"
#include "vqcollation.h"
#include "vqdefs.h"
#include "vqlanguagecontext.h"

namespace {

constexpr unsigned PrimaryWidth = 16, CaseWidth = 2, AccentWidth = 5;

// The levels of a comparison key. The class above them is the same in all texts.
constexpr std::uint64_t PrimaryOf(std::int32_t key) { return static_cast<std::uint32_t>(key) >> 8 & 0xFFFF; }
constexpr std::uint64_t CaseOf(std::int32_t key) { return static_cast<std::uint32_t>(key) >> 5 & 3; }
constexpr std::uint64_t AccentOf(std::int32_t key) { return static_cast<std::uint32_t>(key) & 0x1F; }

// The most orders that one character gives.
constexpr std::size_t MaxOrders = 2;

}  // namespace

// Fills 64-bit words from their highest bit down.
class TextOrder::BitWriter {
  public:
    explicit BitWriter(std::vector<std::uint64_t>& words) : words_(words) {}

    void Append(std::uint64_t value, unsigned width) {
        if (width > room_) {
            words_.push_back(word_ | value >> (width - room_));
            word_ = 0;
            room_ += 64;
        }
        room_ -= width;
        word_ |= value << room_;
    }
    void End() { words_.push_back(word_); }

  private:
    std::vector<std::uint64_t>& words_;
    std::uint64_t word_ = 0;
    unsigned room_ = 64;
};

TextOrder::TextOrder(unsigned char codeSet, unsigned char language, unsigned short op)
    : codeSet_(codeSet), language_(language), op_(op) {
    const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(codeSet);
    charSize_ = static_cast<unsigned>(set.GetCharSize());
    table_ = set.GetKeyTable(language);
}

void TextOrder::Reserve(std::size_t texts, std::size_t characters) {
    entries_.reserve(texts);
    words_.reserve(texts * 2 + characters * (PrimaryWidth + CaseWidth) / 64);
}

void TextOrder::Add(std::uint32_t number, const void* text, std::size_t length) {
    keys_.clear();
    keys_.reserve(length * MaxOrders);
    if (codeSet_ == 0) {
        CollectBytes(static_cast<const unsigned char*>(text));
    } else if (charSize_ == 1) {
        CollectKeys(static_cast<const unsigned char*>(text));
    } else {
        CollectKeys(static_cast<const unsigned short*>(text));
    }
    words_.push_back(0);
    const std::size_t start = words_.size();
    WriteKey();
    words_[start - 1] = words_.size() - start;
    entries_.push_back({0, number, static_cast<std::uint32_t>(start)});
}

void TextOrder::CollectBytes(const unsigned char* text) {
    for (; *text != 0; ++text) keys_.push_back(*text << 8);
}

template <class Code>
void TextOrder::CollectKeys(const Code* text) {
    while (*text != 0) {
        const std::int32_t key = *text < table_.count ? table_.keys[*text] : -1;
        if (key >= 0) {
            keys_.push_back(key);
            ++text;
        } else {
            text += CollectFromIterator(text);
        }
    }
}

// The keys of what sorts as one at the start of the text. Returns its characters.
std::size_t TextOrder::CollectFromIterator(const void* text) {
    VqStringIterator at(codeSet_, language_, text);
    while (at.GetPosition() == 0) keys_.push_back(VqCollationKey(at.GetNextOrder(1), at.GetCollationClass()));
    return at.GetPosition();
}

// All primaries, a zero, the accents from the last to the first, then the cases. Texts with the same primaries have as
// many accents and cases, so that no part of one key is compared with another part of the other. One bit says whether
// there are accents at all: most texts have none.
void TextOrder::WriteKey() {
    BitWriter out(words_);
    std::uint64_t accents = 0;
    for (const std::int32_t key : keys_) {
        out.Append(PrimaryOf(key), PrimaryWidth);
        accents |= AccentOf(key);
    }
    out.Append(0, PrimaryWidth);
    const bool accented = accents != 0 && !(op_ & VqCmp_IgnoreAccents);
    out.Append(accented, 1);
    if (accented) {
        for (auto key = keys_.rbegin(); key != keys_.rend(); ++key) out.Append(AccentOf(*key), AccentWidth);
    }
    if (!(op_ & VqCmp_IgnoreCase)) {
        for (const std::int32_t key : keys_) out.Append(3 - CaseOf(key), CaseWidth);  // this level sorts in reverse
    }
    out.End();
}

// Sorts by one word of the keys at a time, and goes on with the next word among those that are equal.
std::vector<TextOrder::Place> TextOrder::Sort() {
    isFirst_.assign(entries_.size(), 1);
    runs_.push_back({0, entries_.size(), 0});
    while (!runs_.empty()) {
        const Run run = runs_.back();
        runs_.pop_back();
        SortRun(run);
    }
    std::vector<Place> places;
    places.reserve(entries_.size());
    for (const Entry& entry : entries_) places.push_back({entry.number, isFirst_[places.size()] != 0});
    return places;
}

void TextOrder::SortRun(const Run& run) {
    Entry* const all = entries_.data();
    Entry* const first = all + run.first;
    Entry* const last = all + run.last;
    for (Entry* entry = first; entry != last; ++entry) entry->word = words_[entry->start + run.depth];
    std::sort(first, last,
              [](const Entry& a, const Entry& b) { return a.word != b.word ? a.word < b.word : a.number < b.number; });
    for (const Entry* equal = first; equal != last;) {
        const Entry* end = equal + 1;
        while (end != last && end->word == equal->word) ++end;
        if (end - equal > 1)
            SettleEqual(static_cast<std::size_t>(equal - all), static_cast<std::size_t>(end - all), run.depth);
        equal = end;
    }
}

// No key is the beginning of another one: where one ends, all of its run do.
void TextOrder::SettleEqual(std::size_t first, std::size_t last, std::size_t depth) {
    if (depth + 1 < words_[entries_[first].start - 1]) {
        runs_.push_back({first, last, depth + 1});
    } else {
        std::fill(isFirst_.data() + first + 1, isFirst_.data() + last, std::uint8_t{0});
    }
}
