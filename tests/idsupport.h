// Identifiers and references made of their numbers, and their numbers as text.
#ifndef VQ_IDSUPPORT_H
#define VQ_IDSUPPORT_H

#include <string>

#include "ref.h"

namespace vqtest {

inline VqObjId Object(unsigned high, std::uint32_t low, std::uint32_t block = 0) {
    VqObjId id;
    id.high = static_cast<std::uint16_t>(high);
    id.low = low;
    id.block = block;
    return id;
}
inline VqDBOId Object(const VqObjId& object, unsigned database) {
    VqDBOId id;
    id = object;
    id.database = static_cast<std::uint16_t>(database);
    return id;
}
inline VqClassId Class(unsigned number, unsigned version) {
    VqClassId id;
    id.classNumber = static_cast<std::uint16_t>(number);
    id.version = static_cast<std::uint16_t>(version);
    return id;
}
inline VqRef Ref(unsigned database, const VqObjId& object, const VqClassId& classId = Class(0, 0)) {
    VqRef ref;
    ref = Object(object, database);
    ref = classId;
    return ref;
}
inline VqLocalRef Local(const VqObjId& object, const VqClassId& classId = Class(0, 0)) {
    VqLocalRef ref;
    ref = object;
    ref = classId;
    return ref;
}

// "high low block", "high low block database", "class version", "high low block database class version"
template <class... Numbers>
std::string Joined(Numbers... numbers) {
    std::string text;
    ((text += (text.empty() ? "" : " ") + std::to_string(numbers)), ...);
    return text;
}
inline std::string NumbersOf(const VqObjId& id) { return Joined(id.high, id.low, id.block); }
inline std::string NumbersOf(const VqClassId& id) { return Joined(id.classNumber, id.version); }
inline std::string NumbersOf(const VqDBOId& id) { return NumbersOf(id.id) + " " + Joined(id.database); }
inline std::string NumbersOf(const VqLocalRef& ref) { return NumbersOf(ref.id) + " " + NumbersOf(ref.classId); }
inline std::string NumbersOf(const VqRef& ref) {
    return NumbersOf(ref.id) + " " + Joined(ref.database) + " " + NumbersOf(ref.classId);
}

}  // namespace vqtest

#endif
