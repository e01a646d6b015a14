// An array of values of one row, made, filled and freed through a manager.
#ifndef VQ_ROWVALUES_H
#define VQ_ROWVALUES_H

#include <map>
#include <string>
#include <vector>

#include "convert.h"
#include "testsupport.h"
#include "vqtypes.h"

namespace vqtest {

using ByteVector = std::vector<unsigned char>;

// Texts of which a row makes sample values, in and out of its range, and the format under which it reads them and
// prints them so that nothing is lost; null for the row's own. Exchange texts make the values that no format carries.
struct Samples {
    const char* format;
    std::vector<std::string> texts;
    std::vector<std::string> exchange = {};
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
        {VqTypeId_d_Time,
         {"%H:%M:%S",
          {"00:00:00", "12:05:09", "23:59:59", "24:00:00", ""},
          {"12:05:09.25+01:00", "-03:30:00.99-05:00", "25:75:07.08+02:45", "127:-128:-01.-50-00:30"}}},
        {VqTypeId_d_Timestamp,
         {"%Y-%m-%dT%H:%M:%S",
          {"0000-01-01T00:00:00", "2005-03-07T12:05:09", "9999-12-31T23:59:59", "2005-03-07", ""},
          {"2005-03-07T12:05:09.25+01:00", "-4712-01-01T-03:30:00.99-05:00", "32767--128-127T25:75:07.08+02:45"}}},
        {VqTypeId_d_Interval,
         {nullptr,
          {"0 days, 0 hours, 0 minutes, 0 seconds", "1 days, 2 hours, 3 minutes, 4 seconds",
           "-1 days, 2 hours, 3 minutes, 4.1 seconds", "400000000 days", "-inf days", "7", ""}}},
        {VqTypeId_VqObjId,
         {nullptr,
          {"(0-1#0)", "(1-42#7)", "(258-50595078#117967114)", "(65535-4294967295#4294967295)", "(1-0#0)", "(256-1#0)",
           "(1-256#0)"}}},
        {VqTypeId_VqClassId,
         {nullptr,
          {"(0v0)", "(12v3)", "(258v772)", "(65535v3)", "(3v65535)", "(0v256)", "(256v0)", "(255v0)", "x", ""}}},
        {VqTypeId_VqRef,
         {nullptr,
          {"(3:1-42#7, 12)", "(65535:65535-4294967295#4294967295, 65535)", "(0:0-1#0, 0)", "(2:1-42#0, 12)",
           "(515:1029-117967114#185339150, 3856)", "(1:2-0#0, 1)"}}},
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
    // One value for each text, as the row reads it under `format`, null for its own, and behind them one for each
    // exchange text.
    RowValues(VqTypeMgr& manager, char id, const std::vector<std::string>& texts, const char* format = nullptr,
              const std::vector<std::string>& exchange = {})
        : RowValues(manager, id, static_cast<unsigned long>(texts.size() + exchange.size())) {
        for (unsigned long i = 0; i < texts.size(); ++i) {
            VqString text(texts[i].c_str());
            manager_.ScanFromVqString(id_, At(i), text, format, 1);
        }
        if (!exchange.empty()) Assign(static_cast<unsigned long>(texts.size()), exchange);
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
    // Makes the values from `first` on those of the exchange texts.
    void Assign(unsigned long first, const std::vector<std::string>& exchange) {
        const RowValues strings(manager_, VqTypeId_VqString, exchange);
        VqTypeConvertData* const data = manager_.ConvertTo(VqTypeId_VqString, strings.Get(), strings.Count());
        const RowValues values(manager_, id_, strings.Count(), manager_.ConvertFrom(id_, data, strings.Count()));
        delete data;
        manager_.AssignmentPtrGet(id_)(At(first), values.Get(), values.Count(), 0);
    }

    VqTypeMgr& manager_;
    char id_;
    unsigned long count_;
    void* values_;
};

}  // namespace vqtest

#endif
