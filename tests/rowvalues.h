// An array of values of one row, made, filled and freed through a manager.
#ifndef VQ_ROWVALUES_H
#define VQ_ROWVALUES_H

#include <map>
#include <string>
#include <vector>

#include "testsupport.h"
#include "vqtypes.h"

namespace vqtest {

using ByteVector = std::vector<unsigned char>;

// Texts of which a row makes sample values, in and out of its range, and the format under which it reads them and
// prints them so that nothing is lost; null for the row's own.
struct Samples {
    const char* format;
    std::vector<std::string> texts;
};

inline const Samples& SamplesOf(char id) {
    static const Samples numbers = {nullptr,
                                    {"0",          "1",           "-1",         "7",      "127",   "128",    "-128",
                                     "255",        "256",         "32767",      "-32768", "65535", "100000", "-99999",
                                     "2147483647", "-2147483648", "4294967295", "1.5",    "-2.25", "1e9",    "a",
                                     "Z",          "zebra",       "#12",        ""}};
    static const std::map<char, Samples> others = {
        {VqTypeId_VqBlob, {"%x", {"", "00", "00ff7a", "80", "6162636465666768696a6b6c6d6e6f70", "zz"}}},
        {VqTypeId_VqDate,
         {"%Y-%m-%d", {"2005-03-07", "0001-01-01", "1600-02-29", "2004-12-31", "9999-12-31", "1999-10-10"}}},
        {VqTypeId_VqTime, {"%H:%M:%S", {"00:00:00", "12:05:09", "23:59:59", "00:00:01", "99:00:00"}}},
        {VqTypeId_VqDateTime,
         {"%Y-%m-%dT%H:%M:%S",
          {"2005-03-07T12:05:09", "0000-00-00T00:00:00", "1600-02-29T23:59:59", "9999-99-99T99:99:99"}}},
        {VqTypeId_d_Date,
         {"%Y-%m-%d", {"0000-01-01", "1582-10-04", "2005-03-07", "9999-12-31", "2005-02-30", "x", ""}}},
        {VqTypeId_d_Time, {"%H:%M:%S", {"00:00:00", "12:05:09", "23:59:59", "24:00:00", ""}}},
        {VqTypeId_d_Timestamp,
         {"%Y-%m-%dT%H:%M:%S",
          {"0000-01-01T00:00:00", "2005-03-07T12:05:09", "9999-12-31T23:59:59", "2005-03-07", ""}}},
        {VqTypeId_d_Interval,
         {nullptr,
          {"0 days, 0 hours, 0 minutes, 0 seconds", "1 days, 2 hours, 3 minutes, 4 seconds",
           "-1 days, 2 hours, 3 minutes, 4.1 seconds", "400000000 days", "-inf days", "7", ""}}},
        {VqTypeId_VqInt64,
         {nullptr,
          {"0", "1", "-1", "0x7f", "-9223372036854775808", "9223372036854775807", "4294967296", "-4294967297", "017",
           "x", ""}}},
        {VqTypeId_VqBoolean, {nullptr, {"TRUE", "FALSE", "t", "1", "yes", ""}}},
        {VqTypeId_VqSeal,
         {nullptr, {"0", "1", "65535", "65536", "4294967296", "281474976710655", "281474976710656", "-2", "x", ""}}},
    };
    const auto own = others.find(id);
    return own != others.end() ? own->second : numbers;
}

class RowValues {
  public:
    // Takes over an array that the row made.
    RowValues(VqTypeMgr& manager, char id, unsigned long count, void* values)
        : manager_(manager), id_(id), count_(count), values_(values) {}
    RowValues(VqTypeMgr& manager, char id, unsigned long count)
        : RowValues(manager, id, count, manager.Create(id, count)) {}
    // One value for each text, as the row reads it under `format`, null for its own.
    RowValues(VqTypeMgr& manager, char id, const std::vector<std::string>& texts, const char* format = nullptr)
        : RowValues(manager, id, static_cast<unsigned long>(texts.size())) {
        for (unsigned long i = 0; i < count_; ++i) {
            VqString text(texts[i].c_str());
            manager_.ScanFromVqString(id_, At(i), text, format, 1);
        }
    }
    RowValues(const RowValues&) = delete;
    RowValues& operator=(const RowValues&) = delete;
    ~RowValues() { manager_.Delete(id_, values_, count_); }

    void* Get() const { return values_; }
    void* At(unsigned long i) const { return manager_.GetArrayElement(id_, values_, i, count_); }
    unsigned long Count() const { return count_; }
    bool IsNull(unsigned long i) const { return manager_.IsNullValue(id_, At(i)) != 0; }
    long Cmp(unsigned long i, const RowValues& other, unsigned long j) const {
        return manager_.Cmp(id_, At(i), other.At(j), VqCmp_Exact, 1, VqFormat_Memory);
    }

    std::string Print(unsigned long i, const char* format = nullptr) const {
        VqString text;
        return Bytes(manager_.PrintToVqString(id_, text, At(i), format, 1));
    }

    // The disk form of `count` values from `first` on. What is written behind it would be an error.
    ByteVector Store(unsigned char format, unsigned long first, unsigned long count) const {
        const unsigned long size = manager_.DiskLenGet(id_, At(first), format, count, VqFormat_Memory);
        ByteVector bytes(size + 1, 0xA5);
        EXPECT_EQ(manager_.Store(id_, bytes.data(), At(first), format, count), size);
        EXPECT_EQ(bytes.back(), 0xA5);
        bytes.pop_back();
        return bytes;
    }

  private:
    VqTypeMgr& manager_;
    char id_;
    unsigned long count_;
    void* values_;
};

}  // namespace vqtest

#endif
