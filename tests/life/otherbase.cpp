// Loaded before a host, it stands for a base library whose minor version is another.
#include "vqversion.h"

int CheckVqVersionNumber(unsigned long, unsigned long, unsigned long, unsigned long, unsigned long, unsigned long) {
    return VqVersion_OtherMinor;
}
