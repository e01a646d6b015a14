/// \file
/// VqDateTime: a point in time to the second, a date and a time of day. A new value's fields are not set.
#ifndef DATETIME_H
#define DATETIME_H

#include "date.h"

class VqDateTime {
  public:
    VqDate date;  // null where both parts are
    VqTime time;
};

#endif
