// Searching and replacing place by place: slow, and what the fast ways must agree with.
#ifndef VQ_SEARCHREFERENCE_H
#define VQ_SEARCHREFERENCE_H

#include "strcompare.h"
#include "vqstring.h"

namespace vqtest {

inline int CharSize(const VqString& s) { return s.GetCodeSet() < 225 ? 1 : 2; }

inline short FindSlowly(const VqString& text, const VqString& pattern, unsigned short start, unsigned short op) {
    VqString used(pattern);
    unsigned short limit = pattern.Len();
    if (!(op & VqCmp_Exact)) {
        used += VqString("*");
        limit = VqString::All;
    }
    if (op == VqCmp_Default) op = VqString::GetDefaultCmpOp();
    if (text.GetSize() == 0 || pattern.GetSize() == 0 || text.Len() < start) return -1;
    const int length = text.Len();
    for (int place = start; (length - place) * CharSize(text) >= pattern.Len() * CharSize(pattern); ++place) {
        if (VqStrCmp(text.GetCodeSet(), text.GetLanguage(), text.StrGet() + place * CharSize(text), used.GetCodeSet(),
                     used.GetLanguage(), used.StrGet(), op, static_cast<short>(limit), 1, nullptr) == 0) {
            return static_cast<short>(place);
        }
    }
    return -1;
}

// `from` must not be empty. Arguments are not `text` itself.
inline void ReplaceSlowly(VqString& text, const VqString& from, const VqString& to, unsigned start) {
    while (start <= text.Len()) {
        const short found = FindSlowly(text, from, static_cast<unsigned short>(start), VqCmp_Default);
        if (found == -1) return;
        const auto place = static_cast<unsigned short>(found);
        text.Cut(place, static_cast<short>(from.Len()));
        text.Insert(to, place);
        start = place + unsigned{to.Len()};
    }
}

}  // namespace vqtest

#endif
