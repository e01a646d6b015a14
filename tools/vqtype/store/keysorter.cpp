#include "keysorter.h"

#include <algorithm>
#include <optional>

#include "sorthint.h"
#include "vqlanguagecontext.h"

namespace store {

// Sorts entries whose keys stay where they are.
class KeySorter::Sorting {
  public:
    explicit Sorting(const KeySorter& sorter) : sorter_(sorter) {}

    // Of one class.
    void Sort(Entry* first, Entry* last) {
        if (first != last && sorter_.use_ == Use::Hints && ChooseHint(*first)) ByHints(first, last, 0);
        if (!letters_) ByComparison(first, last);  // estimates are not meant as an order, and some types' are none
    }

  private:
    static constexpr std::ptrdiff_t FewEntries = 3;
    static constexpr unsigned MostDepth = 30;

    ByteView Key(const Entry& entry) const { return sorter_.arena_.Key(entry.place); }
    int Compare(const Entry& a, const Entry& b) const {
        return CompareTreeKeys(sorter_.type_, sorter_.format_, Key(a), Key(b));
    }

    void ByComparison(Entry* first, Entry* last) const {
        const auto isBefore = [this](const Entry& a, const Entry& b) { return Compare(a, b) < 0; };
        if (!std::is_sorted(first, last, isBefore)) std::sort(first, last, isBefore);
    }

    // Strings are told apart by their letters, all others by the manager's estimates. False where nothing tells.
    bool ChooseHint(const Entry& entry) {
        if (ClassOf(Key(entry)) != KeyClass::Value || IsInByteOrder(sorter_.type_)) return false;
        if (sorter_.type_ != VqTypeId_VqString) return true;
        const ByteView stored = StoredOf(Key(entry));
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
        const ByteView least = StoredOf(Key(*ends.first)), greatest = StoredOf(Key(*ends.second));
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
            if (const std::optional<std::uint64_t> word = hint(StoredOf(Key(*at)))) {
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
    entries_.resize(Held());
    Entry* ends[] = {entries_.data(), entries_.data() + held_[0], entries_.data() + held_[0] + held_[1]};
    arena_.ForEach([&](KeyArena::Place place) {
        *ends[static_cast<std::size_t>(ClassOf(arena_.Key(place)))]++ = {0, place};
    });
    for (std::size_t i = 0; i < held_.size(); ++i) Sorting(*this).Sort(ends[i] - held_[i], ends[i]);
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
    held_ = {};
}

void KeySorter::Spill() {
    if (Held() == 0) return;
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
