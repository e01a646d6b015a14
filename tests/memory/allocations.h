// What this program allocates: the linker leads the library's calls of the C heap to counting functions, which fail
// where a test wants it.
#ifndef VQ_ALLOCATIONS_H
#define VQ_ALLOCATIONS_H

#include <vector>

#include "vqbase.h"

namespace vqtest {

struct Allocations {
    static long blocks;   // of the C heap, in use
    static long objects;  // of new, in use
    static long made;     // so far, by the C heap and by new

    // Runs something while one of its allocations fails, counted from 0; those after it succeed again. False when it
    // has not so many. Neither `new` that throws nor the tests' own containers fail.
    template <class Run>
    static bool Failing(long allocation, Run run) {
        failed_ = false;
        left_ = allocation;
        run();
        left_ = -1;
        return failed_;
    }
    // The same where also `new` throws, which `run` catches.
    template <class Run>
    static bool FailingOrThrowing(long allocation, Run run) {
        throws_ = true;
        const bool failed = Failing(allocation, run);
        throws_ = false;
        return failed;
    }
    static bool Fails();
    static bool Throws() { return throws_ && Fails(); }

  private:
    static long left_;
    static bool failed_;
    static bool throws_;
};

// While it lives, the memory handler notes the sizes that were refused, and says whether to try again.
class RefusedMemory {
  public:
    explicit RefusedMemory(bool helps = false) : before_(VqSetMemoryHandler(&Note)) {
        Sizes().clear();
        Sizes().reserve(16);
        helps_ = helps;
    }
    ~RefusedMemory() { VqSetMemoryHandler(before_); }
    RefusedMemory(const RefusedMemory&) = delete;
    RefusedMemory& operator=(const RefusedMemory&) = delete;

    static std::vector<unsigned long>& Sizes() {
        static std::vector<unsigned long> sizes;
        return sizes;
    }

  private:
    static int Note(unsigned long size) {
        Sizes().push_back(size);
        return helps_;
    }
    inline static bool helps_ = false;
    VqMemoryHandler before_;
};

}  // namespace vqtest

#endif
