#include "checkkeys.h"

#include <fmt/format.h>

#include <algorithm>

namespace store {

namespace {

// FNV-1a: keys that differ in one byte have different hashes.
std::uint64_t Hash(ByteView bytes) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const unsigned char byte : bytes) hash = (hash ^ byte) * 0x100000001B3;
    return hash == 0 ? 1 : hash;  // never that of a damaged record
}

}  // namespace

// --- What the records give

ExpectedKeys::ExpectedKeys(const Header& header, std::size_t column, std::uint64_t records)
    : header_(header),
      column_(column),
      form_(header.schema, header.format),
      maker_(header.schema[column], header.format) {
    keys_.reserve(static_cast<std::size_t>(records));
}

void ExpectedKeys::Entry(ByteView id, ByteView record) {
    if (id.size() != IdSize) return;
    const std::uint64_t number = NumberOf(id, header_.format);
    if (!form_.Check(id, record, forms_).empty()) {
        ++damaged_;
        keys_.push_back({number, Damaged});
        return;
    }
    key_.clear();
    maker_.Append(key_, forms_[column_], id);
    counts_.Count(key_);
    keys_.push_back({number, Hash(key_)});
}

void ExpectedKeys::Finish() {
    const auto isBelow = [](const Key& a, const Key& b) { return a.number < b.number; };
    if (!std::is_sorted(keys_.begin(), keys_.end(), isBelow)) std::sort(keys_.begin(), keys_.end(), isBelow);
    isFound_.assign(keys_.size(), false);
}

std::optional<std::size_t> ExpectedKeys::Search(ByteView key) const {
    if (key.size() < IdSize) return std::nullopt;
    const std::uint64_t number = NumberOf(key.last(IdSize), header_.format);
    const auto found = std::lower_bound(keys_.begin(), keys_.end(), number,
                                        [](const Key& one, std::uint64_t wanted) { return one.number < wanted; });
    if (found == keys_.end() || found->number != number) return std::nullopt;
    return static_cast<std::size_t>(found - keys_.begin());
}

ExpectedKeys::Match ExpectedKeys::Compare(std::optional<std::size_t> place, ByteView key) const {
    if (!place) return Match::NoRecord;
    if (keys_[*place].hash == Damaged) return Match::Unknowable;
    return keys_[*place].hash == Hash(key) ? Match::Exact : Match::Other;
}

ExpectedKeys::Match ExpectedKeys::Find(ByteView key) {
    const std::optional<std::size_t> place = Search(key);
    const Match match = Compare(place, key);
    if (match != Match::Exact) return match;
    if (isFound_[*place]) return Match::Again;
    isFound_[*place] = true;
    return Match::Exact;
}

std::optional<KeyCounts> ExpectedKeys::Counts() const { return damaged_ == 0 ? std::optional(counts_) : std::nullopt; }

// --- What the index holds

IndexChecker::IndexChecker(const Header& header, std::size_t column, ExpectedKeys& expected, const std::string& part,
                           Findings& findings)
    : type_(header.schema[column].type),
      format_(header.format),
      expected_(expected),
      part_(part),
      findings_(findings),
      order_([this](ByteView a, ByteView b) { return CompareTreeKeys(type_, format_, a, b); }) {}

std::string IndexChecker::NameOf(ByteView key) const {
    return fmt::format("record {}", NumberOf(key.last(IdSize), format_));
}

// Only keys that are a record's are compared: no others need be values at all. Those of branch pages are copies of
// some.
void IndexChecker::Separator(ByteView key) {
    const ExpectedKeys::Match match = expected_.Look(key);
    if (match == ExpectedKeys::Match::Unknowable) return;
    if (match != ExpectedKeys::Match::Exact) return Report("a key in its branch pages is none of a record");
    const ByteView last = order_.Last();
    if (order_.TakeSeparator(key)) return;
    Report(fmt::format("in its branch pages the key of {} is not above that of {}", NameOf(key), NameOf(last)));
}

void IndexChecker::CheckPlace(ByteView key) {
    const ByteView last = order_.Last();
    if (order_.TakeEntry(key)) return;
    Report(fmt::format("the key of {} is not in its place: it is not above that of {}", NameOf(key), NameOf(last)));
}

void IndexChecker::Entry(ByteView key, ByteView value) {
    using Match = ExpectedKeys::Match;
    TreeKey parts;
    if (!TreeKey::Read(key, parts)) return Report(fmt::format("{} bytes are no key", key.size()));
    if (!value.empty()) Report(fmt::format("the key of {} has {} bytes behind it", NameOf(key), value.size()));
    switch (expected_.Find(key)) {
        case Match::Exact:
            return CheckPlace(key);
        case Match::Again:
            return Report(fmt::format("the key of {} is there twice", NameOf(key)));
        case Match::Other:
            return Report(fmt::format("a key of {} is not the one that its value gives", NameOf(key)));
        case Match::NoRecord:
            return Report(fmt::format("a key of {}, which is not there", NameOf(key)));
        case Match::Unknowable:
            return;
    }
}

void IndexChecker::Finish(const std::optional<KeyCounts>& counts) {
    expected_.ForEachMissing(
        [this](std::uint64_t number) { Report(fmt::format("the key of record {} is missing", number)); });
    const std::optional<KeyCounts> found = expected_.Counts();
    if (!counts || !found) return;
    for (const auto& [name, count] : KeyCountFields) {
        if ((*counts).*count == (*found).*count) continue;
        Report(fmt::format("{} {} are counted, and there are {}", (*counts).*count, name, (*found).*count));
    }
}

}  // namespace store
