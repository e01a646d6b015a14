/// \file
/// Disk forms under the magnifying glass: checked before anything is loaded, and cut into named fields.
#ifndef VQTYPE_DISKFORM_H
#define VQTYPE_DISKFORM_H

#include <memory>
#include <string>
#include <vector>

#include "values.h"

/// A part of a disk form that has a meaning of its own.
struct Field {
    std::size_t offset;  ///< bytes from the start
    std::size_t length;  ///< bytes
    std::string name;
    std::string value;
};

/// A checked disk form: the values that it holds, and what each of its bytes is.
struct DiskForm {
    std::unique_ptr<ValueArray> values;
    std::vector<Field> fields;
};

/// Takes `bytes` apart, in the byte order of `format`. Throws CommandError, naming an offset, when they are not whole
/// values of the type; nothing is loaded before every length is known to lie within the bytes.
DiskForm ReadDiskForm(VqTypeId id, const Bytes& bytes, unsigned char format);

/// The fields as a table: offset, bytes (16 a line), name, value.
std::string FormatFields(const Bytes& bytes, const std::vector<Field>& fields);

/// One line: how many values of which type in how many bytes.
std::string FormatSummary(const DiskForm& form, const Bytes& bytes, const std::string& order);

/// Pairs of hexadecimal digits with blanks between.
std::string FormatHex(const Bytes& bytes);
/// The bytes of a text of hexadecimal pairs; white space may stand between them. Throws CommandError where it is not.
Bytes ParseHex(const std::string& text);

/// The byte-order code of "little" or "big".
unsigned char ByteOrderOf(const std::string& name);

#endif
