// All types of the public headers, for their debug information alone.
#include "vqtm.h"
