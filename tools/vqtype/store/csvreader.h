/// \file
/// Comma-separated values as RFC 4180 has them, row by row from a stream: quoted fields, doubled quotes, line breaks
/// inside quotes, LF and CRLF, a byte order mark. Blanks belong to the field that they stand in; a line without a byte
/// is no row.
///
/// What is no such row costs only itself: it is told with its line, and reading goes on behind it. A quote that is
/// never closed, which would swallow all that follows, costs the lines of its row up to the one where it opened.
#ifndef VQTYPE_STORE_CSVREADER_H
#define VQTYPE_STORE_CSVREADER_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace store {

/// One field, without the quotes around it.
struct CsvField {
    std::string_view text;
    bool isAbsent;  ///< no byte, and no quotes either
};

/// What makes a row none.
struct CsvFault {
    std::size_t line = 0;   ///< of the file, from 1
    std::size_t field = 0;  ///< of the row, from 0
    std::string text;       ///< a sentence without its full stop
};

/// Reads up to `size` bytes to `to`. Returns how many; 0 at the end. Throws CommandError where that fails.
using ByteSource = std::function<std::size_t(char* to, std::size_t size)>;

/// The bytes of the file, or of standard input for "-". `size` becomes the file's, 0 where it has none. While no bytes
/// come, `wait` is called ten times a second, and may throw. Throws CommandError where the file cannot be opened.
ByteSource OpenSource(const std::string& name, std::uint64_t& size, std::function<void()> wait = nullptr);

/// The line, or the row, without the line break at its end.
std::string_view Trimmed(std::string_view line);

class CsvReader {
  public:
    static constexpr std::size_t FieldLimit = std::size_t{1} << 20;  ///< bytes of a field
    static constexpr std::size_t RowLimit = std::size_t{16} << 20;   ///< bytes of a row

    /// Without `usesShortcut` every row goes through libcsv, for tests: lines without quotes are cut without it.
    explicit CsvReader(ByteSource source, bool usesShortcut = true);
    ~CsvReader();

    /// Goes on to the next row, good or bad. False at the end. All that the functions below give is valid until the
    /// next call.
    bool Next();

    /// True where the row is one; else Fault() tells why not, and the fields mean nothing.
    bool IsGood() const { return fault_.text.empty(); }
    const std::vector<CsvField>& Fields() const { return fields_; }
    const CsvFault& Fault() const { return fault_; }
    /// The line on which the row begins, and that on which it ends, from 1.
    std::size_t Line() const { return firstLine_; }
    std::size_t LastLine() const { return line_; }
    /// The row's bytes as they are in the file, with its line break; of a line that is too long, those up to the limit.
    std::string_view Raw() const { return {buffer_.data() + rowStart_, at_ - rowStart_}; }
    /// Bytes of the file up to the row's end.
    std::uint64_t Position() const { return dropped_ + at_; }

  private:
    class Machine;  // libcsv

    // Where the last field that runs over a line's end began.
    struct Opening {
        std::size_t line, field;
        std::size_t size;  // of the row up to that line's end
    };

    bool NextLine();
    bool Fill();
    void SkipLine();
    std::string_view TheLine() const { return {buffer_.data() + lineStart_, at_ - lineStart_}; }
    void Cut(std::string_view row);
    void Parse();
    bool TakeLine(const Opening& opening);
    void CheckSizes();
    void FailAsTooLong(std::size_t field);
    void Fail(std::size_t field, std::string text);
    void FailAt(const Opening& opening, std::string text);

    ByteSource source_;
    bool usesShortcut_, isEnded_ = false;
    bool isTooLong_ = false;  // the line is not here as a whole
    std::unique_ptr<Machine> machine_;
    // The row that is being read, and what has been read behind it. Bytes in front of the row are dropped when more are
    // needed.
    std::vector<char> buffer_;
    std::size_t filled_ = 0, rowStart_ = 0, lineStart_ = 0, at_ = 0;
    std::uint64_t dropped_ = 0;
    std::size_t line_ = 0, firstLine_ = 0;
    std::vector<CsvField> fields_;
    CsvFault fault_;
};

}  // namespace store

#endif
