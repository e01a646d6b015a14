/// \file
/// Texts that are made of a value's disk form, of types whose formats and exchange texts lose something.
#ifndef VQTYPE_DISKTEXT_H
#define VQTYPE_DISKTEXT_H

#include <string>
#include <string_view>

#include "values.h"

/// Both ways between the text of a value that is not null and its disk form, low byte first.
struct DiskText {
    Bytes (*read)(std::string_view text);  ///< of a text that the type's rule accepts
    std::string (*write)(const Bytes& disk);
};

/// How the row's texts are made; null for all rows whose formats or exchange texts lose nothing.
const DiskText* DiskTextOf(VqTypeId id);

#endif
