#include "disktext.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "datetime.h"
#include "diskform.h"

namespace {

// --- Dates and times: the two halves of a date-time, whose exchange text keeps every field

constexpr std::size_t DateSize = 4;  // of 7 bytes on disk

Bytes ReadDateTime(const std::string& text) {
    const ValueArray value(VqTypeId_VqDateTime, 1);
    value.TakeExchangeText(0, VqString(text.c_str()));
    return value.Store(VqFormat_LittleEndian);
}

// Both halves, and where the time begins.
std::pair<std::string, std::size_t> DateTimeText(const Bytes& disk) {
    VqDateTime value(VqDate(0, 0, 0), VqTime(0, 0, 0));  // the row would ask the clock
    Manager().Load(VqTypeId_VqDateTime, &value, disk.data(), VqFormat_LittleEndian, 1);
    const std::string text = ExchangeTextOf(VqTypeId_VqDateTime, &value).value_or("");
    return {text, text.find('T') + 1};
}

Bytes ReadDate(std::string_view text) {
    Bytes disk = ReadDateTime(std::string(text) + "T00:00:00");
    disk.resize(DateSize);
    return disk;
}

std::string WriteDate(const Bytes& disk) {
    Bytes both = disk;
    both.resize(DateSize + 3);
    const auto [text, timeAt] = DateTimeText(both);
    return text.substr(0, timeAt - 1);
}

Bytes ReadTime(std::string_view text) {
    Bytes disk = ReadDateTime("0001-01-01T" + std::string(text));
    disk.erase(disk.begin(), disk.begin() + DateSize);
    return disk;
}

std::string WriteTime(const Bytes& disk) {
    Bytes both(DateSize);
    both.insert(both.end(), disk.begin(), disk.end());
    const auto [text, timeAt] = DateTimeText(both);
    return text.substr(timeAt);
}

// --- Truth values: bytes other than 0 and 1 by their number

Bytes ReadTruth(std::string_view text) {
    unsigned char byte = 0;
    if (text.substr(0, 2) == "0x") {
        std::from_chars(text.data() + 2, text.data() + text.size(), byte, 16);
        return {byte};
    }
    return {static_cast<unsigned char>(std::string_view("Tt1").find(text[0]) != std::string_view::npos)};
}

std::string WriteTruth(const Bytes& disk) {
    return disk[0] == 0 ? "FALSE" : disk[0] == 1 ? "TRUE" : fmt::format("0x{:02x}", disk[0]);
}

// --- Blobs: one behind its total and its length. No string would have room for the pairs of a large one.

constexpr std::size_t BlobHead = 8;

void PutNumber(Bytes& bytes, std::size_t number) {
    for (unsigned shift = 0; shift != 32; shift += 8) bytes.push_back(static_cast<unsigned char>(number >> shift));
}

Bytes ReadBlob(std::string_view text) {
    const Bytes contents = ParseHex(std::string(text));
    Bytes disk;
    PutNumber(disk, contents.size() + 4);
    PutNumber(disk, contents.size());
    disk.insert(disk.end(), contents.begin(), contents.end());
    return disk;
}

std::string WriteBlob(const Bytes& disk) {
    return fmt::format("{:02X}", fmt::join(disk.begin() + BlobHead, disk.end(), ""));
}

struct RowText {
    VqTypeId id;
    DiskText text;
};

constexpr RowText RowTexts[] = {
    {VqTypeId_VqDate, {ReadDate, WriteDate}},
    {VqTypeId_VqTime, {ReadTime, WriteTime}},
    {VqTypeId_VqBoolean, {ReadTruth, WriteTruth}},
    {VqTypeId_VqBlob, {ReadBlob, WriteBlob}},
};

}  // namespace

const DiskText* DiskTextOf(VqTypeId id) {
    const auto row =
        std::find_if(std::begin(RowTexts), std::end(RowTexts), [id](const RowText& r) { return r.id == id; });
    return row != std::end(RowTexts) ? &row->text : nullptr;
}
