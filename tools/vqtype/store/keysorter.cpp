#include "keysorter.h"

#include <algorithm>
#include <optional>

#include "sorthint.h"
#include "vqlanguagecontext.h"

namespace store {
namespace {

KeyClass ClassOf(ByteView key) { return static_cast<KeyClass>(key[0] & ~CutKey); }
ByteView StoredPart(ByteView key) { return key.subspan(1, key.size() - 1 - IdSize); }

}  // namespace

// Sorts entries whose keys stay where they are.
class KeySorter::Sorting {
  public:
    explicit Sorting(const KeySorter& sorter) : sorter_(sorter) {}

    void Sort(Entry* first, Entry* last) {
        Entry* const values =
            std::stable_partition(first, last, [this](const Entry& e) { return Is(KeyClass::Null, e); });
        Entry* const others =
            std::stable_partition(values, last, [this](const Entry& e) { return Is(KeyClass::Value, e); });
        ByComparison(first, values);
        if (sorter_.use_ == Use::Hints && ChooseHint(values, others)) ByHints(values, others, 0);
        if (!letters_) ByComparison(values, others);  // estimates are not meant as an order, and some types' are none
        ByComparison(others, last);
    }

  private:
    static constexpr std::ptrdiff_t FewEntries = 3;
    static constexpr unsigned MostDepth = 30;

    ByteView Key(const Entry& entry) const { return sorter_.arena_.Key(entry.place); }
    bool Is(KeyClass keyClass, const Entry& entry) const { return ClassOf(Key(entry)) == keyClass; }
    int Compare(const Entry& a, const Entry& b) const {
        return CompareTreeKeys(sorter_.type_, sorter_.format_, Key(a), Key(b));
    }

    void ByComparison(Entry* first, Entry* last) const {
        if (std::is_sorted(first, last, [this](const Entry& a, const Entry& b) { return Compare(a, b) < 0; })) return;
        std::sort(first, last, [this](const Entry& a, const Entry& b) {
            const int order = Compare(a, b);
            return order != 0 ? order < 0 : a.place < b.place;
        });
    }

    // Strings are told apart by their letters, all others by the manager's estimates. False where nothing tells.
    bool ChooseHint(const Entry* first, const Entry* last) {
        if (first == last || IsInByteOrder(sorter_.type_)) return false;
        if (sorter_.type_ != VqTypeId_VqString) return true;
        const ByteView stored = StoredPart(Key(*first));
        if (stored.size() < 4 || VqLanguageContext::QueryCodeSet(stored[2]) == nullptr) return false;
        letters_.emplace(stored[2], stored[3], sorter_.format_);
        return true;
    }

    // `depth` words have been the same so far.
    void ByHints(Entry* first, Entry* last, unsigned depth) const {
        if (last - first <= FewEntries || depth == MostDepth) return ByComparison(first, last);
        Entry* const told = letters_ ? TellLetters(first, last, depth) : TellPlaces(first, last);
        std::sort(first, told, [](const Entry& a, const Entry& b) {
            return a.word != b.word ? a.word < b.word : a.place < b.place;
        });
        for (Entry* group = first; group != told;) {
            Entry* const end = std::find_if(group, told, [=](const Entry& e) { return e.word != group->word; });
            SortGroup(group, end, depth, end - group == last - first);
            group = end;
        }
        if (told == last) return;
        ByComparison(told, last);
        std::inplace_merge(first, told, last, [this](const Entry& a, const Entry& b) { return Compare(a, b) < 0; });
    }
    void SortGroup(Entry* first, Entry* last, unsigned depth, bool isAll) const {
        if (last - first < 2) return;
        if (letters_ ? LetterHint::GoesOn(first->word) : !isAll) {
            ByHints(first, last, depth + 1);
        } else {
            ByComparison(first, last);
        }
    }

    // Both give the entries their words; those that get none are put behind the others, from the result on.

    Entry* TellLetters(Entry* first, Entry* last, unsigned depth) const {
        return Tell(first, last, [=, this](ByteView stored) { return letters_->Word(stored, depth); });
    }
    Entry* TellPlaces(Entry* first, Entry* last) const {
        const auto ends =
            std::minmax_element(first, last, [this](const Entry& a, const Entry& b) { return Compare(a, b) < 0; });
        const ByteView least = StoredPart(Key(*ends.first)), greatest = StoredPart(Key(*ends.second));
        return Tell(first, last, [=, this](ByteView stored) {
            return PlaceBetween(sorter_.type_, sorter_.format_, stored, least, greatest);
        });
    }
    template <class Hint>
    Entry* Tell(Entry* first, Entry* last, const Hint& hint) const {
        std::vector<Entry> untold;
        Entry* told = first;
        for (const Entry* at = first; at != last; ++at) {
            sorter_.PrefetchBehind(at);
            const KeyArena::Place place = at->place;
            if (const std::optional<std::uint64_t> word = hint(StoredPart(Key(*at)))) {
                *told++ = {*word, place};
            } else {
                untold.push_back({0, place});
            }
        }
        std::copy(untold.begin(), untold.end(), told);
        return told;
    }

    const KeySorter& sorter_;
    std::optional<LetterHint> letters_;
};

void KeySorter::SortMemory() {
    entries_.reserve(held_);
    arena_.ForEach([this](KeyArena::Place place) { entries_.push_back({0, place}); });
    Sorting(*this).Sort(entries_.data(), entries_.data() + entries_.size());
}

void KeySorter::EachInMemory(const std::function<void(ByteView)>& take) const {
    for (const Entry& entry : entries_) {
        PrefetchBehind(&entry);
        take(arena_.Key(entry.place));
    }
}

void KeySorter::Release() {
    arena_.Clear();
    Entries().swap(entries_);
    held_ = 0;
}

void KeySorter::Spill() {
    if (held_ == 0) return;
    SortMemory();
    runs_.Start();
    EachInMemory([this](ByteView key) { runs_.Add(key); });
    runs_.End();
    Release();
}

void KeySorter::Sort() {
    if (runs_.IsEmpty()) {
        SortMemory();
    } else {
        Spill();
    }
}

void KeySorter::Drain(const std::function<void(ByteView)>& take) {
    EachInMemory(take);
    runs_.Merge([this](ByteView a, ByteView b) { return CompareTreeKeys(type_, format_, a, b) < 0; }, take);
    Release();
}

}  // namespace store
