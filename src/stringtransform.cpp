// Texts changed character by character.
#include <algorithm>
#include <cstddef>
#include <memory>

#include "charoperation.h"
#include "stringiterator.h"
#include "textunit.h"
#include "vqstring.h"

bool VqStringIterator::Transform(VqStringIterator& target, VqCharOperation& op) {
    for (; !IsEnd(); ++*this) {
        unsigned short codes[VqCharOperation::MaxResult] = {};
        const int count = std::min(op.Apply(*this, codes), VqCharOperation::MaxResult);
        for (int i = 0; i < count; ++i) {
            if (codes[i] != 0 && !target.Put(vq::MapCode(codes[i], *set_, *target.set_))) return false;
        }
    }
    return true;
}

VqString& VqString::Transform(VqCharOperation& op) {
    if (size_ == 0) return *this;
    const std::size_t room = (std::size_t{Len()} * VqCharOperation::MaxResult + 1) * CharSize();
    const std::unique_ptr<char[]> text(new char[room]);
    VqStringIterator source(*this);
    VqStringIterator target = VqStringIterator::ForWriting(codeSet_, language_, text.get(), room);
    source.Transform(target, op);
    SpliceChars({TruncateAndWrite, text.get(), codeSet_, 0, 0, target.GetPosition(), 1, 1});
    return *this;
}

VqString& VqString::ToUpper() {
    VqUpperCaseOperation op;
    return Transform(op);
}

VqString& VqString::ToLower() {
    VqLowerCaseOperation op;
    return Transform(op);
}
