#include "_vqnulty.h"

#include "vqbase.h"
#include "vqstring.h"

int VqNullityUnknown() {
    VIQA_assert("nr != unknown", "src\\_vqnulty", 47);
    return 0;
}

VqString& VqNullPrintString() {
    static VqString text("{NULL}");
    return text;
}
