#include "textsearch.h"

#include <algorithm>
#include <cstring>

#include "bytesearch.h"
#include "comparelevels.h"
#include "strcompare.h"
#include "stringiterator.h"
#include "vqcollation.h"
#include "wildcard.h"

namespace vq {
namespace {

constexpr unsigned short KnownBits =
    VqCmp_Exact | VqCmp_IgnoreCase | VqCmp_IgnoreAccents | VqCmp_Report | VqCmp_KeyOnly;

// From this many places on, preparing a filter pays.
constexpr std::size_t LongText = 512;

bool IsNull(const VqString& s) { return s.GetLanguage() == VqNullMark || s.GetCodeSet() == VqNullMark; }

}  // namespace

// --- Keys

TextKeys::TextKeys(const VqString& text)
    : text_(text.StrGet()),
      charSize_(CharSizeOf(text.GetCodeSet())),
      set_(CodeSetOf(text.GetCodeSet())),
      language_(text.GetLanguage()),
      collationClass_(set_.GetCollationClass(language_)),
      table_(set_.GetKeyTable(language_)) {}

bool TextKeys::Contracts(std::size_t place) const {
    if (!table_.contractions) return false;
    unsigned short codes[VqMaxContraction] = {}, orders[2];
    for (std::size_t i = 0; i < VqMaxContraction; ++i) {
        codes[i] = LoadChar(text_ + (place + i) * charSize_, charSize_);
        if (codes[i] == 0) break;
    }
    return set_.GetContraction(codes, language_, orders) != 0;
}

std::int32_t TextKeys::Resolve(std::size_t place) const {
    const unsigned short code = LoadChar(text_ + place * charSize_, charSize_);
    if (code == 0) return 0;
    if (Contracts(place)) return -1;
    unsigned short orders[2];
    return set_.GetOrders(code, language_, orders) == 1 ? VqCollationKey(orders[0], collationClass_) : -1;
}

std::int32_t TextKeys::FirstAt(std::size_t place) const {
    if (Contracts(place)) return -1;
    unsigned short orders[2];
    set_.GetOrders(LoadChar(text_ + place * charSize_, charSize_), language_, orders);
    return VqCollationKey(orders[0], collationClass_);
}

std::int32_t TextKeys::FirstOf(unsigned short code) const {
    if (table_.keys[code] >= 0) return table_.keys[code];
    unsigned short orders[2];
    set_.GetOrders(code, language_, orders);
    return table_.contractions ? -1 : VqCollationKey(orders[0], collationClass_);
}

// --- What to do

TextSearch::TextSearch(const VqString& text, const VqString& pattern, unsigned short op)
    : text_(text),
      pattern_(pattern),
      charSize_(CharSizeOf(text.GetCodeSet())),
      op_(op == VqCmp_Default ? VqString::GetDefaultCmpOp() : op),
      starsPattern_(!(op & VqCmp_Exact)),
      textLength_(text.Len()),
      patternLength_(pattern.Len()) {
    const std::size_t patternBytes = patternLength_ * CharSizeOf(pattern.GetCodeSet());
    const std::size_t least = (patternBytes + charSize_ - 1) / charSize_;
    if (least <= textLength_) end_ = textLength_ - least + 1;
    method_ = Choose();
}

TextSearch::Method TextSearch::Choose() {
    if (text_.GetSize() == 0 || pattern_.GetSize() == 0) return Nowhere;
    if (IsNull(text_) || IsNull(pattern_) || patternLength_ == 0) return OneByOne;
    if (text_.GetCodeSet() == 0 && pattern_.GetCodeSet() == 0) return BytesTell() ? ByBytes : OneByOne;
    return (op_ & ~KnownBits) == 0 && PrepareKeys() ? ByKeys : OneByOne;
}

// True where equal bytes are the whole answer.
bool TextSearch::BytesTell() const {
    if (!Wildcards()) return !starsPattern_;
    const char* const bytes = pattern_.StrGet();
    return std::memchr(bytes, '*', patternLength_) == nullptr && std::memchr(bytes, '?', patternLength_) == nullptr;
}

// False where the keys of the pattern's first character tell nothing.
bool TextSearch::PrepareKeys() {
    textKeys_.emplace(text_);
    const TextKeys pattern(pattern_);
    const unsigned char collationClass = pattern.CollationClass();
    const WildcardKeys wildcards(collationClass);
    const auto isWildcard = [&](std::int32_t key) { return Wildcards() && wildcards.Has(key); };

    first_ = VqCollationKey(VqStringIterator(pattern_).GetNextOrder(0), collationClass);
    if (isWildcard(first_)) return false;
    mask_ = KeyMask(op_);
    patternKeys_.reserve(patternLength_);
    for (std::size_t place = 0; place < patternLength_; ++place) {
        const std::int32_t key = pattern.At(place);
        if (key < 0 || isWildcard(key)) break;
        patternKeys_.push_back(key & mask_);
    }
    keysTell_ = patternKeys_.size() == patternLength_;
    if (starsPattern_) {
        unsigned short orders[2];
        CodeSetOf(pattern_.GetCodeSet()).GetOrders('*', pattern_.GetLanguage(), orders);
        const std::int32_t star = VqCollationKey(orders[0], collationClass);
        keysTell_ = keysTell_ && Wildcards() && star == wildcards.asterisk && star != wildcards.question &&
                    star != wildcards.escape;
    }
    return true;
}

// --- Finding

std::size_t TextSearch::Find(std::size_t start) {
    if (start >= end_) return NotFound;
    switch (method_) {
        case ByBytes:
            return FindBytes(text_.StrGet(), textLength_, start, pattern_.StrGet(), patternLength_);
        case ByKeys:
            break;
        case OneByOne:
            return FindOneByOne(start);
        default:
            return NotFound;
    }
    budget_ = 4 * textLength_;
    return charSize_ == 1 ? FindByKeys<1>(start) : FindByKeys<2>(start);
}

// Passes what cannot start the pattern by one key each. When keys that fit at first and differ later cost more than
// walking the text, the rest takes linear time; places at which VqStrCmp has to decide take what it takes.
template <unsigned charSize>
std::size_t TextSearch::FindByKeys(std::size_t place) {
    if (end_ - place >= LongText) return FindFiltered<charSize>(place);
    const std::int32_t first = first_, mask = mask_;
    for (; place < end_; ++place) {
        if (((textKeys_->Ready<charSize>(place) ^ first) & mask) > 0) continue;
        if (FitsAt<charSize>(place)) return place;
    }
    return NotFound;
}

// Looks at two characters of each place, which leaves few places and hardly a branch that goes the other way.
template <unsigned charSize>
std::size_t TextSearch::FindFiltered(std::size_t place) {
    if (filter_.empty()) PrepareFilter();
    const char* const text = text_.StrGet();
    const auto bitsAt = [text, filter = filter_.data(), count = filter_.size()](std::size_t at) -> unsigned {
        const unsigned short code = LoadChar(text + at * charSize, charSize);
        return charSize == 1 || code < count ? filter[code] : Anything;
    };
    unsigned here = bitsAt(place);
    for (; place < end_; ++place) {
        const unsigned next = bitsAt(place + 1), candidate = here & (next / Second | here / Several) & First;
        here = next;
        if (candidate == 0) continue;
        if (budget_ == 0 && !patternKeys_.empty()) return FindByKeysLinear(place);
        if (FitsAt<charSize>(place)) return place;
    }
    return NotFound;
}

void TextSearch::PrepareFilter() {
    const VqKeyTable& table = textKeys_->Table();
    const bool two = patternKeys_.size() > 1;
    const std::int32_t second = two ? patternKeys_[1] : 0;
    filter_.resize(table.count);
    for (unsigned code = 0; code < table.count; ++code) {
        const std::int32_t key = textKeys_->FirstOf(static_cast<unsigned short>(code));
        unsigned fits = table.keys[code] < 0 ? Several : 0;
        if (((key ^ first_) & mask_) <= 0) fits |= First;
        if (!two || ((key ^ second) & mask_) <= 0) fits |= Second;
        filter_[code] = static_cast<std::uint8_t>(fits);
    }
}

template <unsigned charSize>
bool TextSearch::FitsAt(std::size_t place) {
    std::int32_t key = textKeys_->At<charSize>(place);
    if (key < 0) key = textKeys_->FirstAt(place);
    if (((key ^ first_) & mask_) > 0) return false;
    const std::size_t known = patternKeys_.size();
    for (std::size_t i = 0; i < known; ++i) {
        key = textKeys_->At<charSize>(place + i);
        if (key < 0) return Compare(place);
        if ((key & mask_) != patternKeys_[i]) {
            budget_ -= std::min(budget_, i);
            return false;
        }
    }
    return keysTell_ || Compare(place);
}

std::size_t TextSearch::FindByKeysLinear(std::size_t place) {
    const auto unitAt = [this](std::size_t at) {
        const std::int32_t key = textKeys_->At(at);
        return key < 0 ? key : key & mask_;
    };
    const auto accept = [this](std::size_t at, bool fits) { return at < end_ && ((fits && keysTell_) || Compare(at)); };
    return PatternBorders(patternKeys_).Find(place, textLength_, unitAt, accept);
}

std::size_t TextSearch::FindOneByOne(std::size_t place) {
    for (; place < end_; ++place) {
        if (Compare(place)) return place;
    }
    return NotFound;
}

bool TextSearch::Compare(std::size_t place) {
    if (starsPattern_ && !starred_) starred_ = pattern_ + VqString("*");
    const VqString& pattern = starsPattern_ ? *starred_ : pattern_;
    const auto n = static_cast<short>(starsPattern_ ? VqString::All : patternLength_);
    const char* const text = text_.StrGet() + place * charSize_;
    return VqStrCmp(text_.GetCodeSet(), text_.GetLanguage(), text, pattern.GetCodeSet(), pattern.GetLanguage(),
                    pattern.StrGet(), op_, n, 1, nullptr) == 0;
}

}  // namespace vq
