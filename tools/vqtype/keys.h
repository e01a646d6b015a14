/// \file
/// Values as keys: in memory and in both byte orders on disk, as indexes compare and hash them.
#ifndef VQTYPE_KEYS_H
#define VQTYPE_KEYS_H

#include <string>
#include <vector>

#include "command.h"
#include "values.h"

/// A form that keys are held in.
struct KeyForm {
    const char* name;  ///< as --order takes it
    unsigned char format;
};

/// The form of that name, or all three where the name is empty.
std::vector<KeyForm> KeyFormsOf(const std::string& name);

/// An array of values in one form.
class Key {
  public:
    /// The array outlives the key.
    Key(const ValueArray& values, unsigned char format)
        : values_(values), format_(format), bytes_(IsStored() ? values.Store(format) : Bytes()) {}

    bool IsStored() const { return format_ != VqFormat_Memory; }
    const void* Data() const { return IsStored() ? bytes_.data() : values_.Data(); }
    /// The bytes of a stored key; none in memory.
    const Bytes& Stored() const { return bytes_; }
    const ValueArray& Values() const { return values_; }
    unsigned char Format() const { return format_; }

  private:
    const ValueArray& values_;
    unsigned char format_;
    Bytes bytes_;
};

/// What a comparison or a hash function answers: a number and a status code.
template <class Number>
struct Answer {
    Number number;
    int status;
    bool operator==(const Answer&) const = default;
};

/// Compares two keys of one type, form and count. A length other than 0 cuts a stored key to so many bytes.
Answer<long> CompareKeys(const Key& a, const Key& b, unsigned short flags, unsigned long length1 = 0,
                         unsigned long length2 = 0);
Answer<unsigned long> HashKey(const Key& key);

/// A status code in words.
std::string DescribeStatus(int status);

/// The first bytes of a key in hexadecimal, and how many there are where these are not all.
std::string FormatKey(const Bytes& bytes);

/// The type of that name, which does the `operation` of the types' table. Throws CommandError saying that it cannot be
/// `done` ("hashed"), and in which `column` of the table that is shown.
VqTypeId ParseKeyType(const std::string& name, const char* operation, const char* done, const char* column);

/// Sets a value of a key from its text, as ValueArray::Scan does; a * in a date is -1, a field that stands for any.
void ScanKey(const ValueArray& values, unsigned long index, const std::string& text, const TextOptions& options,
             const std::string& place);

/// The one value of the array as PrintExact tells it, but with wildcards as they were given.
std::string KeyText(const ValueArray& value, const std::string& given);
/// The same as Describe tells it, with quotes around nothing.
std::string DescribeKey(const ValueArray& value, const std::string& given);

/// Adds --order memory|little|big, stored as its name; `order` stays empty without it.
void AddFormOption(CLI::App& command, std::string& order);

#endif
