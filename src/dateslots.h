// The functions of the date, time and date-time rows besides disk form.
#ifndef DATESLOTS_H
#define DATESLOTS_H

#include "classslots.h"
#include "datetime.h"

namespace vq {

// A date travels as the decimal text of its day number, a time of its seconds.
template <class Value>
struct NumberExchange {
    static void ToText(const Value& value, VqString& text) { text += VqString(static_cast<long>(value)); }
    static void FromText(Value& value, const VqString& text) { value = Value(static_cast<long>(text)); }
};

// A date-time travels as its six fields in decimal, 2005-03-07T12:05:09, whatever they are: a field may have a sign,
// and more digits or fewer. Fields that are missing are 0. A number alone is a day number, as dates travel: midnight
// of that day. So an empty text is midnight of day 0.
struct DateTimeExchange {
    static void ToText(const VqDateTime& value, VqString& text);
    static void FromText(VqDateTime& value, const VqString& text);
};

using DateSlots = ClassSlots<VqDate, NumberExchange<VqDate>>;
using TimeSlots = ClassSlots<VqTime, NumberExchange<VqTime>>;
using DateTimeSlots = ClassSlots<VqDateTime, DateTimeExchange>;

}  // namespace vq

#endif
