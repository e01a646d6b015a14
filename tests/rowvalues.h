// An array of values of one row, made, filled and freed through a manager.
#ifndef VQ_ROWVALUES_H
#define VQ_ROWVALUES_H

#include <string>
#include <vector>

#include "testsupport.h"
#include "vqtypes.h"

namespace vqtest {

using ByteVector = std::vector<unsigned char>;

class RowValues {
  public:
    // Takes over an array that the row made.
    RowValues(VqTypeMgr& manager, char id, unsigned long count, void* values)
        : manager_(manager), id_(id), count_(count), values_(values) {}
    RowValues(VqTypeMgr& manager, char id, unsigned long count)
        : RowValues(manager, id, count, manager.Create(id, count)) {}
    // One value for each text, as the row's default format reads it.
    RowValues(VqTypeMgr& manager, char id, const std::vector<std::string>& texts)
        : RowValues(manager, id, static_cast<unsigned long>(texts.size())) {
        for (unsigned long i = 0; i < count_; ++i) {
            VqString text(texts[i].c_str());
            manager_.ScanFromVqString(id_, At(i), text, nullptr, 1);
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

    std::string Print(unsigned long i) const {
        VqString text;
        return Bytes(manager_.PrintToVqString(id_, text, At(i), nullptr, 1));
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
