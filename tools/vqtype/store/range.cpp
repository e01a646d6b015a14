#include "range.h"

#include <algorithm>
#include <utility>

#include "../keys.h"
#include "vqtypevl.h"

namespace store {

namespace {

// Bounds that the manager fills, freed with their owner.
struct ScanBounds : VqIdxBounds {
    ScanBounds() = default;
    ScanBounds(const ScanBounds&) = delete;
    ScanBounds& operator=(const ScanBounds&) = delete;
    ~ScanBounds() { VqFreeBounds(*this); }
};

std::optional<Bytes> BytesOf(const void* key, std::uint32_t length) {
    if (key == nullptr) return std::nullopt;
    const auto* bytes = static_cast<const unsigned char*>(key);
    return Bytes(bytes, bytes + length);
}

unsigned short OperatorsOf(Test test) {
    switch (test) {
        case Test::Less:
            return VqOperator_Less;
        case Test::AtMost:
            return VqOperator_Less | VqOperator_Equal;
        case Test::Greater:
            return VqOperator_Greater;
        case Test::AtLeast:
            return VqOperator_Greater | VqOperator_Equal;
        default:
            return VqOperator_Equal;
    }
}

// --- Contents

Bytes ValueAt(const Cursor& cursor) {
    TreeKey key;
    const bool isValue = TreeKey::Read(cursor.Key(), key) && key.keyClass == KeyClass::Value;
    return isValue ? Bytes(key.stored.begin(), key.stored.end()) : Bytes();
}

// --- Beginnings of texts

// So few that no cut key has fewer orders of collation.
constexpr unsigned short CharactersCompared = 16;

constexpr unsigned short LettersAlone = VqCmp_IgnoreCase | VqCmp_IgnoreAccents;

// A pattern for all texts whose letters begin as those of the stored one; none where that is all texts. A letter that
// is written with several characters is not cut: the text would not match.
std::optional<Bytes> BeginningPattern(const Bytes& stored, unsigned char format) {
    const ValueArray values(VqTypeId_VqString, 1);
    auto& text = *static_cast<VqString*>(values.Data());
    Manager().Load(VqTypeId_VqString, &text, stored.data(), format, 1);
    const VqString whole = text;
    for (unsigned short length = std::min(whole.Len(), CharactersCompared); length != 0; --length) {
        text = whole.Left(length);
        text.AppendChars("*", 1, 1);
        if (whole.Compare(text, -1, LettersAlone) == 0) return values.Store(format);
    }
    return std::nullopt;
}

}  // namespace

IndexContents LookAt(const Transaction& transaction, const Index& index) {
    IndexContents contents;
    contents.keys = static_cast<double>(transaction.Statistics(index.database).ms_entries);
    contents.nulls = static_cast<double>(index.nulls);
    contents.noNumbers = static_cast<double>(index.noNumbers);
    Cursor cursor(transaction, index.database);
    if (cursor.Seek(ScanEnd(KeyClass::Value, {}, End::Below))) contents.first = ValueAt(cursor);
    if (cursor.SeekBefore(ScanEnd(KeyClass::Value, {}, End::Above))) contents.last = ValueAt(cursor);
    return contents;
}

RangeCursor::RangeCursor(const Store& store, const Transaction& transaction, const Index& index, const Range& range,
                         bool isBackward)
    : type_(store.GetSchema()[index.column].type),
      format_(store.Format()),
      low_(ScanEnd(range.low.keyClass, range.low.stored, End::Below)),
      high_(ScanEnd(range.high.keyClass, range.high.stored, End::Above)),
      cursor_(transaction, index.database),
      isBackward_(isBackward),
      isEmpty_(range.isEmpty) {}

bool RangeCursor::Next() {
    if (isEmpty_) return false;
    const bool isFirst = !std::exchange(isBegun_, true);
    const bool is = isBackward_ ? (isFirst ? cursor_.SeekBefore(high_) : cursor_.Previous())
                                : (isFirst ? cursor_.Seek(low_) : cursor_.Next());
    return is && IsInside();
}

bool RangeCursor::IsInside() const {
    return isBackward_ ? CompareTreeKeys(type_, format_, low_, cursor_.Key()) < 0
                       : CompareTreeKeys(type_, format_, cursor_.Key(), high_) < 0;
}

bool CanNarrow(const Schema& schema, const Condition& condition) {
    const VqTypeId type = schema[condition.column].type;
    switch (condition.test) {
        case Test::Null:
        case Test::NotNull:
            return true;
        case Test::Unequal:
        case Test::NotLike:
        case Test::NotBetween:
            return false;
        // A date's fields that stand for any have no place in a tree's order.
        case Test::Like:
            return type == VqTypeId_VqString;
        default:
            return !IsInByteOrder(type);
    }
}

Selection::Selection(const Store& store, const Index& index, const IndexContents& contents)
    : schema_(store.GetSchema()),
      index_(index),
      contents_(contents),
      type_(schema_[index.column].type),
      format_(store.Format()) {}

void Selection::Add(const Condition& condition) {
    const double keys = std::max(contents_.keys, 1.0);
    if (condition.test == Test::Null) {
        Narrow({KeyClass::Null, {}, "null"}, {KeyClass::Null, {}, "null"});
        classes_ = std::min(classes_, contents_.nulls / keys);
    } else if (condition.test == Test::NotNull) {
        Narrow({KeyClass::Value, {}, "the first value"}, {KeyClass::NoNumber, {}, "the last value"});
        classes_ = std::min(classes_, (contents_.keys - contents_.nulls) / keys);
    } else {
        NarrowToValues(condition);
        classes_ = std::min(classes_, contents_.Values() / keys);
    }
}

double Selection::Estimate() const {
    return range_.isEmpty ? 0 : std::clamp(std::min(above_ + below_ - 1, point_), 0.0, 1.0) * classes_;
}

void Selection::NarrowToValues(const Condition& condition) {
    if (KeyMaker(schema_[index_.column], format_).ClassOf(condition.literal) == KeyClass::NoNumber) {
        range_.isEmpty = true;
        return;
    }
    const unsigned short operators = OperatorsOf(condition.test);
    const Bound bound = NeedsWidening(condition) ? AskWidened(condition, operators) : Ask(condition.literal, operators);
    RangeEnd low{KeyClass::Value, {}, "the first value"}, high{KeyClass::Value, {}, "the last value"};
    if (bound.low) low = {KeyClass::Value, *bound.low, DescribeEnd(bound.literal, false)};
    if (bound.high) high = {KeyClass::Value, *bound.high, DescribeEnd(bound.literal, true)};
    Narrow(std::move(low), std::move(high));
    double& least = (operators & VqOperator_Greater) ? above_ : (operators & VqOperator_Less) ? below_ : point_;
    least = std::min(least, bound.estimate);
}

Selection::Bound Selection::Ask(const Bytes& literal, unsigned short operators) const {
    Bytes first = contents_.first, last = contents_.last;
    VqIdxBounds index{first.data(), last.data(), static_cast<std::uint32_t>(first.size()),
                      static_cast<std::uint32_t>(last.size())};
    ScanBounds scan;
    const bool isKnown = !first.empty() && !last.empty();
    const float estimate = Manager().EvalAndBound(type_, isKnown ? &index : nullptr, operators, literal.data(), format_,
                                                  1, &scan, nullptr);
    return {static_cast<double>(estimate), BytesOf(scan.lowKey, scan.lowKeyLength),
            BytesOf(scan.highKey, scan.highKeyLength), literal};
}

// A text of few characters has its place in front of, or behind, what is cut of longer ones.
bool Selection::NeedsWidening(const Condition& condition) const {
    if (index_.cutKeys == 0 && condition.literal.size() <= VqINDEX_MAX_KEYLEN) return false;
    if (type_ != VqTypeId_VqString) return true;
    const ValueArray text(type_, 1);
    Manager().Load(type_, text.Data(), condition.literal.data(), format_, 1);
    return static_cast<const VqString*>(text.Data())->Len() >= CharactersCompared;
}

// Ends that find the cut keys of what is selected, too. Cut blobs keep their place among each other; a text that is cut
// does so only by its first letters.
Selection::Bound Selection::AskWidened(const Condition& condition, unsigned short operators) const {
    Bound bound = Ask(condition.literal, operators);
    if (type_ == VqTypeId_VqString) {
        const std::optional<Bytes> pattern = BeginningPattern(condition.literal, format_);
        const Bound wide = pattern ? Ask(*pattern, VqOperator_Equal) : Bound();
        if (bound.low) bound.low = wide.low;
        if (bound.high) bound.high = wide.high;
        bound.literal = wide.literal;
    } else if (bound.low) {
        Bytes cut;
        KeyMaker(schema_[index_.column], format_).AppendCut(cut, *bound.low, VqINDEX_MAX_KEYLEN);
        bound.low = std::move(cut);
    }
    return bound;
}

int Selection::Compare(const Bytes& a, const Bytes& b) const {
    int status = VqStatus_Ok;
    const long order =
        Manager().Cmp(type_, static_cast<unsigned long>(a.size()), a.data(), static_cast<unsigned long>(b.size()),
                      b.data(), VqCmp_Exact | LettersAlone, 1, format_, status);
    return (order > 0) - (order < 0);
}

void Selection::Narrow(RangeEnd low, RangeEnd high) {
    const auto isBelow = [this](const RangeEnd& a, const RangeEnd& b) {
        if (a.keyClass != b.keyClass) return a.keyClass < b.keyClass;
        return !a.stored.empty() && !b.stored.empty() && Compare(a.stored, b.stored) < 0;
    };
    const auto isTighter = [&](const RangeEnd& end, const RangeEnd& than, bool isLow) {
        if (end.keyClass == than.keyClass && than.stored.empty()) return !end.stored.empty();
        return isLow ? isBelow(than, end) : isBelow(end, than);
    };
    if (isTighter(low, range_.low, true)) range_.low = std::move(low);
    if (isTighter(high, range_.high, false)) range_.high = std::move(high);
    range_.isEmpty = range_.isEmpty || isBelow(range_.high, range_.low);
}

// A high key of a pattern is filled up behind what its texts begin with: the low one tells that.
std::string Selection::DescribeEnd(const Bytes& literal, bool isHigh) const {
    const Bound whole = Ask(literal, VqOperator_Equal);
    if (!whole.low) return Describe(literal);
    const bool goesOn = isHigh && whole.high && *whole.low != *whole.high;
    return (goesOn ? "all that begins with " : "") + Describe(*whole.low);
}

std::string Selection::Describe(const Bytes& stored) const {
    const ValueArray value(type_, 1);
    if (Manager().DiskLenGet(type_, stored.data(), format_, 1, format_) > stored.size()) return "a key that is cut";
    Manager().Load(type_, value.Data(), stored.data(), format_, 1);
    const std::string text = value.Describe(0);
    return text.empty() ? Quoted(text) : Shortened(text, 40);
}

}  // namespace store
