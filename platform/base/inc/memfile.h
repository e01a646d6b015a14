/// \file
/// Memory files: bytes that are read like a file.
#ifndef MEMFILE_H
#define MEMFILE_H

/// A read-only view of bytes with a current position. It owns nothing: the bytes must outlive it and the addresses that
/// it gives out. Several threads may read the same bytes, each through a file of its own.
///
///     MemFile file(record, recordSize);
///     const unsigned char* header = file.Seek(file.Position(), 4);   // null: the record is cut off
class MemFile {
  public:
    /// A file of `size` bytes, positioned at its first. A null address makes an empty file.
    MemFile(const void* bytes, unsigned long size)
        : bytes_(bytes ? static_cast<const unsigned char*>(bytes) : &NoBytes), size_(bytes ? size : 0) {}

    /// The current position: bytes from the start, at most Size().
    unsigned long Position() const { return position_; }
    /// The length of the file in bytes.
    unsigned long Size() const { return size_; }

    /// The address of `length` readable bytes at `position` (bytes from the start), which becomes the current position.
    /// Null, and the position stays, where they would run past the end. A length of 0 is readable up to and at the end.
    const unsigned char* Seek(unsigned long position, unsigned long length) {
        if (position > size_ || length > size_ - position) return nullptr;
        position_ = position;
        return bytes_ + position;
    }

  private:
    static constexpr unsigned char NoBytes = 0;

    const unsigned char* bytes_;
    unsigned long size_;
    unsigned long position_ = 0;
};

#endif
