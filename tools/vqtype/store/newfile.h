/// \file
/// A file that is seen under its name only when all of it is there.
#ifndef VQTYPE_STORE_NEWFILE_H
#define VQTYPE_STORE_NEWFILE_H

#include <string>

namespace store {

/// An empty file beside `name`, with a name that no other has. It is gone with this object, unless Keep has named it.
class NewFile {
  public:
    /// Throws CommandError where there is a file `name` already, or none can be made.
    explicit NewFile(const std::string& name);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    /// What the file is called until Keep.
    const std::string& TemporaryName() const { return temporary_; }
    /// Gives the file its name. Throws CommandError where another file has got it meanwhile.
    void Keep();

  private:
    std::string name_, temporary_;
};

}  // namespace store

#endif
