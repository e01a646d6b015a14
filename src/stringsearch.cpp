// Searching, replacing and splitting.

#include <algorithm>
#include <cstring>
#include <memory>

#include "collationkey.h"
#include "stringiterator.h"
#include "textsearch.h"
#include "textunit.h"
#include "vqstring.h"

// --- Search

namespace {

// True where the whole answer is the first place of the pattern's one byte.
bool OneByteTells(const VqString& text, const VqString& pattern, unsigned short op) {
    const unsigned short effective = op == VqCmp_Default ? VqString::GetDefaultCmpOp() : op;
    const char* const wanted = pattern.StrGet();
    return text.GetCodeSet() == 0 && pattern.GetCodeSet() == 0 && !text.IsNullValue() && !pattern.IsNullValue() &&
           (op & VqCmp_Exact) && (effective & (VqCmp_Exact | VqCmp_KeyOnly)) && wanted[0] != 0 && wanted[1] == 0;
}

// One pass, which ends at the zero character: the text's length would take one more.
std::size_t FindByte(const VqString& text, char wanted, std::size_t start) {
    const char* const bytes = text.StrGet();
    if (start >= text.GetSize() || std::memchr(bytes, 0, start) != nullptr) return vq::NotFound;
    const char* const found = std::strchr(bytes + start, wanted);
    return found != nullptr ? static_cast<std::size_t>(found - bytes) : vq::NotFound;
}

}  // namespace

short VqString::Find(const VqString& pattern, unsigned short start, unsigned short op) const {
    if (OneByteTells(*this, pattern, op)) return static_cast<short>(FindByte(*this, pattern.buffer_[0], start));
    return static_cast<short>(vq::TextSearch(*this, pattern, op).Find(start));
}

short VqString::Find(char c, unsigned short start, unsigned short op) const { return Find(VqString(c), start, op); }

short VqString::Find(unsigned short c, unsigned short start, unsigned short op) const {
    return Find(VqString(c), start, op);
}

short VqString::SubStringPos(const VqString& pattern, unsigned short op) const { return Find(pattern, 0, op); }

// --- Replacing

VqString& VqString::ReplaceAll(const VqString& from, const VqString& to, unsigned short start) {
    if (&from == this || &to == this) return ReplaceAll(VqString(from), VqString(to), start);
    const std::size_t fromLength = from.Len();
    if (fromLength == 0) return *this;

    std::vector<std::uint16_t> places;
    vq::TextSearch search(*this, from, VqCmp_Default);
    for (std::size_t place = search.Find(start); place != vq::NotFound; place = search.Find(place + fromLength)) {
        places.push_back(static_cast<std::uint16_t>(place));
    }
    if (!places.empty() && !ReplaceAt(places.data(), places.size(), fromLength, to)) ReplaceOneByOne(from, to, start);
    return *this;
}

// Puts `to` in place of up to `fromLength` characters at each of the ascending places. False, with nothing done, when
// the result is too long.
bool VqString::ReplaceAt(const std::uint16_t* places, std::size_t count, std::size_t fromLength, const VqString& to) {
    const std::size_t z = CharSize(), length = Len();
    const std::size_t cutAtEnd = std::min(fromLength, length - places[count - 1]);
    const std::size_t kept = length - (count - 1) * fromLength - cutAtEnd;
    const std::size_t size = (kept + count * to.Len() + 1) * z;
    if (size > MaxSize) return false;

    VqString inserted(codeSet_, language_);
    inserted += to;
    const std::size_t insertedBytes = inserted.Len() * z;
    std::unique_ptr<char[]> buffer(new char[size]);
    char* out = buffer.get();
    const auto append = [&out](const char* bytes, std::size_t n) {
        std::memcpy(out, bytes, n);
        out += n;
    };
    std::size_t from = 0;  // characters
    for (std::size_t i = 0; i < count; ++i) {
        append(buffer_ + from * z, (places[i] - from) * z);
        append(inserted.StrGet(), insertedBytes);
        from = std::min(places[i] + fromLength, length);
    }
    append(buffer_ + from * z, (length - from) * z);
    std::memset(out, 0, z);

    delete[] buffer_;
    buffer_ = buffer.release();
    size_ = static_cast<std::uint16_t>(size);
    return true;
}

// What does not fit is reported and cut at each place, so that later places may be gone.
void VqString::ReplaceOneByOne(const VqString& from, const VqString& to, std::size_t start) {
    const std::size_t fromLength = from.Len(), toLength = to.Len();
    while (start <= Len()) {
        const std::size_t place = vq::TextSearch(*this, from, VqCmp_Default).Find(start);
        if (place == vq::NotFound) return;
        CutChars(place, fromLength);
        Insert(to, static_cast<unsigned short>(place));
        start = place + toLength;
    }
}

VqString& VqString::ReplaceAll(char from, char to, unsigned short start) {
    return ReplaceAll(VqString(from), VqString(to), start);
}

VqString& VqString::ReplaceAll(unsigned short from, unsigned short to, unsigned short start) {
    return ReplaceAll(VqString(from), VqString(to), start);
}

// --- Wildcards

namespace {

unsigned short FirstOrder(const VqChar& c) {
    char text[4] = {};
    vq::StoreChar(text, vq::CharSizeOf(c.GetCodeSet()), c.GetCode());
    return VqStringIterator(c.GetCodeSet(), c.GetLanguage(), text).GetNextOrder(0);
}

}  // namespace

void VqString::SetAsterisk(const VqChar& c) { vq::SetAsteriskOrder(FirstOrder(c)); }

void VqString::SetQuestion(const VqChar& c) { vq::SetQuestionOrder(FirstOrder(c)); }

void VqString::SetEscape(const VqChar& c) { vq::SetEscapeOrder(FirstOrder(c)); }

// --- Lists

short VqSplitList(VqString& list, VqString& item, const VqString& separator, unsigned short& pos) {
    short found = list.Find(separator, pos);
    while (found == 0) found = list.Find(separator, ++pos);
    unsigned short end = static_cast<unsigned short>(found);
    if (found == -1) {
        end = list.Len();
        if (end <= pos) return VqStatus_NoMoreItems;
    }
    item = list.Copy(pos, static_cast<short>(end - pos));
    item.Trim();
    pos = static_cast<unsigned short>(end + 1);
    return VqStatus_Ok;
}
