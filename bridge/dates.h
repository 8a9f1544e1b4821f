// Dates of the platform and of the host.

#pragma once

#include "plugin/host_interface.h"

@class NSDate;

// The fields of a host Date as local time; fractions of a second are dropped. Autoreleased; nil for null and
// for what has not all of a date's properties.
NSDate* NewNSDate(REALobject date);

// A new host Date with the calendar fields that the date has in the process's time zone, with one lock that
// is the caller's; the year before 1 is 0. Null where the host has no Date, and for a date too far off to be
// counted in seconds.
REALobject newHostDate(NSDate* date);
