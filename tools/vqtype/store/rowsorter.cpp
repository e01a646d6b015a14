#include "rowsorter.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace store {

namespace {

using Length = std::uint32_t;
constexpr std::size_t BytesKept = 4 << 20;

}  // namespace

RowSorter::RowSorter(const Header& header, const std::vector<OrderColumn>& order, std::uint64_t most,
                     std::size_t leastDropped)
    : header_(header), order_(order), most_(most), leastDropped_(leastDropped) {
    for (const OrderColumn& column : order) {
        makers_.push_back(std::make_unique<KeyMaker>(header.schema[column.column], header.format));
    }
}

void RowSorter::Add(ByteView id, const std::vector<ByteView>& forms) {
    records_.push_back(keys_.size());
    // Columns in front of the last one must not be told apart by identifiers.
    constexpr Id None{};
    for (std::size_t i = 0; i < order_.size(); ++i) {
        AppendKey(i, forms[order_[i].column], i + 1 < order_.size() ? ByteView(None) : id);
    }
    const bool isMuch = records_.size() >= leastDropped_ || keys_.size() >= BytesKept;
    if (isMuch && records_.size() / 2 >= most_) DropLast();
}

void RowSorter::AppendKey(std::size_t column, ByteView form, ByteView id) {
    const std::size_t start = keys_.size();
    keys_.resize(start + sizeof(Length));
    if (makers_[column]->Append(keys_, form, id)) {
        keys_.resize(start + sizeof(Length));
        keys_.push_back(static_cast<unsigned char>(KeyClass::Value));
        Append(keys_, form);
        Append(keys_, id);
    }
    const auto length = static_cast<Length>(keys_.size() - start - sizeof(Length));
    std::memcpy(keys_.data() + start, &length, sizeof length);
}

ByteView RowSorter::KeyAt(std::size_t& at) const {
    Length length = 0;
    std::memcpy(&length, keys_.data() + at, sizeof length);
    const ByteView key = ByteView(keys_).subspan(at + sizeof length, length);
    at += sizeof length + length;
    return key;
}

bool RowSorter::IsBefore(std::size_t a, std::size_t b) const {
    for (const OrderColumn& column : order_) {
        const ByteView key1 = KeyAt(a), key2 = KeyAt(b);
        const int order = CompareTreeKeys(header_.schema[column.column].type, header_.format, key1, key2);
        if (order != 0) return column.isDescending ? order > 0 : order < 0;
    }
    return false;
}

void RowSorter::DropLast() {
    const auto before = [this](std::size_t a, std::size_t b) { return IsBefore(a, b); };
    const auto kept = static_cast<std::ptrdiff_t>(most_);
    std::nth_element(records_.begin(), records_.begin() + kept, records_.end(), before);
    records_.resize(static_cast<std::size_t>(most_));
    std::sort(records_.begin(), records_.end());  // as the bytes lie, to move them together
    Bytes keys;
    for (std::size_t& record : records_) {
        std::size_t end = record;
        for (std::size_t i = 0; i < order_.size(); ++i) KeyAt(end);
        const std::size_t start = std::exchange(record, keys.size());
        Append(keys, ByteView(keys_).subspan(start, end - start));
    }
    keys_.swap(keys);
}

std::vector<Id> RowSorter::Sorted() {
    std::sort(records_.begin(), records_.end(), [this](std::size_t a, std::size_t b) { return IsBefore(a, b); });
    if (records_.size() > most_) records_.resize(static_cast<std::size_t>(most_));
    std::vector<Id> ids;
    for (std::size_t record : records_) {
        ByteView key;
        for (std::size_t i = 0; i < order_.size(); ++i) key = KeyAt(record);
        Id id;
        std::copy(key.end() - IdSize, key.end(), id.begin());
        ids.push_back(id);
    }
    return ids;
}

}  // namespace store
