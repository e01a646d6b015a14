/// \file
/// VqBlob: a sequence of bytes of any length.
#ifndef BLOB_H
#define BLOB_H

/// A blob is a handle to a record of its own; without a record it is null. A new blob is null.
class VqBlob {
  public:
    VqBlob() = default;
    VqBlob(const VqBlob&) = delete;
    VqBlob& operator=(const VqBlob&) = delete;

  private:
    struct Record;
    Record* record_ = nullptr;
};

#endif
