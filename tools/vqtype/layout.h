/// \file
/// Where the parts of a value lie, in memory and on disk.
#ifndef VQTYPE_LAYOUT_H
#define VQTYPE_LAYOUT_H

#include <string>
#include <vector>

#include "vqdefs.h"

/// What the bytes of a part are.
enum class PartKind {
    Whole,      ///< the value itself, or what only the value's own text tells
    Signed,     ///< a number of 1 to 4 bytes in the byte order of the form
    Unsigned,   ///< likewise
    HighFirst,  ///< an unsigned number, high byte first in every byte order
    Unknown,    ///< nothing that is read
};

/// A part of a value.
struct Part {
    const char* name;
    std::size_t offset;  ///< bytes from the start of the value
    std::size_t size;    ///< bytes; 0: as many as the value takes (only on disk, once a value)
    PartKind kind = PartKind::Whole;
};

/// The parts in memory, in the order of their offsets; what lies between and behind them is unused. None for the
/// illegal row.
std::vector<Part> MemoryParts(VqTypeId id);

/// The parts on disk, one behind the other. None where the row has no disk form.
std::vector<Part> DiskParts(VqTypeId id);

/// The parts as boxes in a row under their offsets, three lines of text and the offsets above them, each behind
/// `indent` blanks. `size` is the bytes of the whole, 0 when that depends on the value.
std::string DrawParts(const std::vector<Part>& parts, std::size_t size, unsigned indent);

#endif
