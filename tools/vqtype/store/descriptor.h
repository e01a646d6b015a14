/// \file
/// Open files that are closed with their owner.
#ifndef VQTYPE_STORE_DESCRIPTOR_H
#define VQTYPE_STORE_DESCRIPTOR_H

#include <unistd.h>

namespace store {

/// Owns an open file's number, or a negative one where it could not be opened. Standard input stays open.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ > STDIN_FILENO) ::close(number_);
    }
    operator int() const { return number_; }

  private:
    int number_;
};

}  // namespace store

#endif
