#include "vqtyphash.h"

namespace {

unsigned long NoHash(int& error) {
    error = VqStatus_Ok;
    return 0;
}

}  // namespace

unsigned long VqIStringHash(unsigned char, unsigned long, const void*, unsigned long, int& error) {
    return NoHash(error);
}

unsigned long VqCaseIStringHash(unsigned char, unsigned long, const void*, unsigned long, int& error) {
    return NoHash(error);
}
