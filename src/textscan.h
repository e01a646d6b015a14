// Scanning of texts under formats with %s, whatever the values are that they become.
#ifndef VQ_TEXTSCAN_H
#define VQ_TEXTSCAN_H

#include "cformat.h"
#include "vqstring.h"

namespace vq {

// What a conversion takes: up to the character that follows it in the format.
inline void SkipText(TextCursor& at, const char* restOfFormat) {
    const auto terminator = static_cast<unsigned char>(*restOfFormat);
    while (at.Code() != 0 && at.Code() != terminator) at.Skip();
}

// Scans `count` texts that are separated by commas: assign(index, begin, end) takes what a conversion read. The last
// one goes to the end of `text`.
template <class Assign>
void ScanTexts(const VqString& text, const char* format, unsigned long count, Assign assign) {
    const unsigned charSize = CharSizeOf(text.GetCodeSet());
    const char* at = text.StrGet();
    for (unsigned long i = 0; i < count; ++i) {
        TextCursor end(at, nullptr, charSize);
        while (end.Code() != 0 && (i + 1 == count || end.Code() != ',')) end.Skip();
        TextCursor element(at, end.At(), charSize);
        MatchFormat(element, format != nullptr ? format : "%s", StringLetters,
                    [&](TextCursor& in, const Conversion& conversion, const char* rest) {
                        TextCursor field = in.Field(conversion.width);
                        SkipText(field, rest);
                        if (!conversion.suppressed) assign(i, in.At(), field.At());
                        in.MoveTo(field);
                        return true;
                    });
        if (end.Code() == 0) break;
        end.Skip();
        at = end.At();
    }
}

}  // namespace vq

#endif
