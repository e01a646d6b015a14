// The blob row's functions besides disk form.
#ifndef BLOBSLOTS_H
#define BLOBSLOTS_H

#include "blob.h"
#include "classslots.h"

namespace vq {

// Bytes do not travel in texts; whether there are any to have does.
struct BlobExchange {
    static void ToText(const VqBlob&, VqString&) {}
    static void FromText(VqBlob& value, const VqString&) { value.SetTo(nullptr, 0); }
};

using BlobSlots = ClassSlots<VqBlob, BlobExchange>;

}  // namespace vq

#endif
