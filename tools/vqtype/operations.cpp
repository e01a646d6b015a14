#include "operations.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>

#include "values.h"
#include "vqtypevl.h"

namespace {

// A slot that the manager hands out is compared with the one of the row that does nothing.
template <class Get>
bool DiffersFromIllegal(VqTypeId id, Get get) {
    return get(id) != get(VqTypeId_illegal);
}

// The others are tried on one value. A row that makes no values cannot be asked.
template <class Try>
bool Responds(VqTypeId id, Try attempt) {
    void* value = Manager().Create(id, 1);
    const bool responds = value && attempt(value);
    Manager().Delete(id, value, 1);
    return responds;
}

bool DoesCreate(VqTypeId id) {
    return Responds(id, [](void*) { return true; });
}

bool DoesSize(VqTypeId id) {
    return Responds(id, [id](void* value) {
        return Manager().DiskLenGet(id, value, VqFormat_LittleEndian, 1, VqFormat_Memory) != 0;
    });
}

bool DoesTranslate(VqTypeId id) {
    return DoesSize(id) && Responds(id, [id](void* value) {
               Bytes disk(Manager().DiskLenGet(id, value, VqFormat_LittleEndian, 1, VqFormat_Memory));
               return Manager().Translate(id, disk.data(), VqFormat_LittleEndian,
                                          static_cast<unsigned long>(disk.size()), value, VqFormat_Memory,
                                          Manager().MemLenGet(id, 1), 1) != 0;
           });
}

// A row that estimates gives an estimate without statistics, or at least makes the key both ends of the scan.
bool DoesBounds(VqTypeId id) {
    if (!DoesSize(id) || !Does(id, "store")) return false;
    const ValueArray value(id, 1);
    const Bytes key = value.Store(VqFormat_LittleEndian);
    unsigned short isEqual = VqOperator_Equal;
    VqIdxBounds scan;
    const float estimate =
        Manager().EvalAndBound(id, nullptr, isEqual, key.data(), VqFormat_LittleEndian, 1, &scan, nullptr);
    const bool isBounded = scan.lowKey != nullptr;
    VqFreeBounds(scan);
    return isBounded || estimate != 0.0f;
}

// The code of every 8-bit string is 0, as that of a row that does nothing; by intent, so that it counts.
bool HashesToNothing(VqTypeId id) { return id == VqTypeId_VqIString || id == VqTypeId_VqCaseIString; }

// A hash function misses the second of two elements where there is one; doing nothing misses nothing.
bool DoesHash(VqTypeId id) {
    return HashesToNothing(id) || Responds(id, [id](void* value) {
               int status = VqStatus_Ok;
               Manager().Hash(id, Manager().MemLenGet(id, 1), value, 2, VqFormat_Memory, status);
               return status == VqStatus_BufferEnd;
           });
}

bool DoesConvertTo(VqTypeId id) {
    return Responds(id, [id](void* value) {
        return std::unique_ptr<VqTypeConvertData>(Manager().ConvertTo(id, value, 1)) != nullptr;
    });
}

bool DoesConvertFrom(VqTypeId id) {
    void* values = Manager().ConvertFrom(id, nullptr, 1);
    Manager().Delete(id, values, 1);
    return values != nullptr;
}

bool DoesDefault(VqTypeId id) {
    void* values = Manager().DefaultValue(id, 1, 0);
    Manager().Delete(id, values, 1);
    return values != nullptr;
}

#define VQTYPE_GET(call) [](VqTypeId id) { return DiffersFromIllegal(id, [](VqTypeId row) { return Manager().call; }); }

constexpr Operation Operations[] = {
    {"create", "make", DoesCreate},
    {"construct", "make", VQTYPE_GET(ConstructorPtrGet(row))},
    {"destroy", "make", VQTYPE_GET(DestructorPtrGet(row))},
    {"assign", "make", VQTYPE_GET(AssignmentPtrGet(row))},
    {"copy", "make", VQTYPE_GET(CopyPtrGet(row))},
    {"default", "default", DoesDefault},
    {"store", "disk", VQTYPE_GET(StorePtrGet(row))},
    {"load", "disk", VQTYPE_GET(LoadPtrGet(row))},
    {"size", "disk", DoesSize},
    {"translate", "disk", DoesTranslate},
    {"compare", "order", VQTYPE_GET(CmpFuncPtrGet(row))},
    {"bounds", "bounds", DoesBounds},
    {"hash", "hash", DoesHash},
    {"convertTo", "convert", DoesConvertTo},
    {"convertFrom", "convert", DoesConvertFrom},
    {"print", "text", VQTYPE_GET(ExchangePrintToVqStringFunc(row, nullptr))},
    {"scan", "text", VQTYPE_GET(ExchangeScanFromVqStringFunc(row, nullptr))},
};

#undef VQTYPE_GET

}  // namespace

const Operation* FirstOperation() { return std::begin(Operations); }

const Operation* EndOfOperations() { return std::end(Operations); }

bool Does(VqTypeId id, const char* name) {
    return std::any_of(FirstOperation(), EndOfOperations(), [&](const Operation& operation) {
        return std::strcmp(operation.name, name) == 0 && operation.isDone(id);
    });
}
