#include "objid.h"

#include "idslots.h"

void VqObjId::PrintToVqString(VqString& out, const char* format) const { vq::PrintId(out, *this, format); }
void VqObjId::ScanFromVqString(const VqString& text, const char* format) { vq::ScanId(*this, text, format); }

void VqClassId::PrintToVqString(VqString& out, const char* format) const { vq::PrintId(out, *this, format); }
void VqClassId::ScanFromVqString(const VqString& text, const char* format) { vq::ScanId(*this, text, format); }

template class VqIdentifierSlots<VqObjId>;
template class VqIdentifierSlots<VqClassId>;
