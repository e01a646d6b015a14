// What the keys of all date and time types share: how they are read, compared by their class, and hashed.
#ifndef VQ_DATEELEMENTS_H
#define VQ_DATEELEMENTS_H

#include "keyforms.h"
#include "storedyear.h"
#include "valueslots.h"

namespace vq {

// A year, a month and a day; Swapped stands for years with the high byte first.
template <class Date, bool Swapped>
Date ReadDate(const unsigned char* at) {
    const auto date = LoadWord<std::uint32_t>(at);
    return std::bit_cast<Date>(Swapped ? SwapYear(date) : date);
}

// A value that its class compares, by a difference of any size.
template <class Value>
struct ByOperator {
    Value value;
};

template <class Value>
int Order(const ByOperator<Value>& a, const ByOperator<Value>& b) {
    return Order(a.value != b.value, 0);
}

// Three fields with their signs, each carrying into the one before.
constexpr std::uint32_t HashFields(int high, int middle, int low) {
    return (static_cast<std::uint32_t>(high) << 16) + (static_cast<std::uint32_t>(middle) << 8) +
           static_cast<std::uint32_t>(low);
}

template <class Date>
std::uint32_t HashDate(const Date& date) {
    return HashFields(date.year, date.month, date.day);
}

}  // namespace vq

#endif
