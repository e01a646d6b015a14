#include "ref.h"

#include "idslots.h"

void VqRef::PrintToVqString(VqString& out, const char* format) const { vq::PrintId(out, *this, format); }
void VqRef::ScanFromVqString(const VqString& text, const char* format) { vq::ScanId(*this, text, format); }

namespace {
constexpr const char* LocalFormat = "(%H-%L#%B,%C)";
}

void VqLocalRef::PrintToVqString(VqString& out, const char* format) const {
    VqRef ref;
    ref = *this;
    ref.PrintToVqString(out, format != nullptr ? format : LocalFormat);
}

void VqLocalRef::ScanFromVqString(const VqString& text, const char* format) {
    VqRef ref;
    ref.ScanFromVqString(text, format != nullptr ? format : LocalFormat);
    *this = ref;
}

template class VqIdentifierSlots<VqRef>;
