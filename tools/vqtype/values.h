/// \file
/// Typed arrays as the workbench handles them: made, scanned, printed, stored and loaded through the default type
/// manager alone, so that every row of the table is served by the same code.
#ifndef VQTYPE_VALUES_H
#define VQTYPE_VALUES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text.h"
#include "vqtypes.h"

using Bytes = std::vector<unsigned char>;

/// The default type manager.
VqTypeMgr& Manager();

/// The row of that name. Throws CommandError, its text starting with `place`, with the nearest name, when there is
/// none.
VqTypeId ParseType(const std::string& name, const char* place = "TYPE");
/// The row's name.
std::string TypeName(VqTypeId id);
/// True when the row has a value to write and to read, in text and on disk.
bool CanEncode(VqTypeId id);
/// True when the row has values that can be read from text and printed.
bool CanPrint(VqTypeId id);
/// The row of that name, which can be printed. Throws CommandError saying that it cannot be `done` ("scanned").
VqTypeId ParsePrintableType(const std::string& name, const char* done);
/// True when the row's values have exchange texts, and when values can be made from such.
bool CanConvertTo(VqTypeId id);
bool CanConvertFrom(VqTypeId id);
/// True when the row has an order of its own, and values can be read and stored.
bool CanSort(VqTypeId id);

/// The UTF-8 text as the row scans it: strings as `options` say, all others in 1-byte characters. Throws CommandError,
/// its text starting with `place`, for characters that those do not have.
VqString ScannedText(VqTypeId id, std::string_view text, const TextOptions& options, const std::string& place);

/// The text through which the value is converted, in UTF-8; none where that is the null string.
std::optional<std::string> ExchangeTextOf(VqTypeId id, void* value);

/// An array of values of one type; it owns them.
class ValueArray {
  public:
    /// `count` values as the row's Create leaves them.
    ValueArray(VqTypeId id, unsigned long count);
    /// One value for each text, as Scan reads it; in errors they are VALUE 1, VALUE 2 and so on.
    ValueArray(VqTypeId id, const std::vector<std::string>& texts, const TextOptions& options);
    /// Takes over `count` values that the row made.
    ValueArray(VqTypeId id, unsigned long count, void* values) : id_(id), count_(count), values_(values) {}
    ValueArray(const ValueArray&) = delete;
    ValueArray& operator=(const ValueArray&) = delete;
    ~ValueArray();

    VqTypeId GetType() const { return id_; }
    unsigned long GetCount() const { return count_; }
    void* Data() const { return values_; }
    void* At(unsigned long index) const { return Manager().GetArrayElement(id_, values_, index, count_); }

    bool IsNull(unsigned long index) const { return Manager().IsNullValue(id_, At(index)) != 0; }
    void SetNull(unsigned long index) const { Manager().SetNullValue(id_, At(index)); }
    unsigned long CountNulls() const;

    /// Sets a value from its UTF-8 text, the null print string for null. Throws CommandError, its text starting with
    /// `place`, when the text is not wholly a value of the type; it quotes what was `given` instead of the text.
    void Scan(unsigned long index, std::string_view text, const TextOptions& options, const std::string& place,
              std::string_view given) const;
    void Scan(unsigned long index, std::string_view text, const TextOptions& options, const std::string& place) const {
        Scan(index, text, options, place, text);
    }

    /// The value's text in UTF-8 under `format`, as the manager takes it; null for the row's own. Throws CommandError
    /// when no string can hold the text.
    std::string Print(unsigned long index, const char* format = nullptr) const;
    /// The value's text that Scan reads back without loss, but for the bits of a not-a-number: a floating number with
    /// as many digits as that takes.
    std::string PrintExact(unsigned long index) const;

    /// These texts of all values, one a line.
    std::string PrintLines() const;

    /// The text of PrintExact as the workbench shows it: a text or a character in quotes, null as the null print
    /// string.
    std::string Describe(unsigned long index) const;
    /// All values as one text under `format`, as Print takes it; strings in the code set of `options`.
    std::string PrintAll(const char* format, const TextOptions& options) const;

    std::optional<std::string> ExchangeText(unsigned long index) const { return ExchangeTextOf(id_, At(index)); }
    /// Sets a value from such a text.
    void TakeExchangeText(unsigned long index, const VqString& text) const;

    /// The disk form in the byte order of `format`, of all values or of one.
    Bytes Store(unsigned char format) const { return Store(format, 0, count_); }
    Bytes Store(unsigned char format, unsigned long first, unsigned long count) const;
    /// Reads all values from their disk form, which must be whole. Returns the bytes consumed.
    unsigned long Load(const Bytes& bytes, unsigned char format) const;

  private:
    void Read(unsigned long index, std::string_view text, const char* format, const TextOptions& options,
              const std::string& place) const;
    std::string Print(VqString out, void* values, const char* format, unsigned long count) const;

    VqTypeId id_;
    unsigned long count_;
    void* values_;
};

#endif
