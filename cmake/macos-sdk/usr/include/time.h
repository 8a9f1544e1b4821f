// Time and calendar.

#pragma once

#include <sys/types.h>

MACOS_C_BEGIN

typedef unsigned long clock_t;
struct timespec {
    time_t tv_sec;
    long tv_nsec;
};
struct tm {
    int tm_sec, tm_min, tm_hour, tm_mday, tm_mon, tm_year, tm_wday, tm_yday, tm_isdst;
    long tm_gmtoff;
    char* tm_zone;
};
#define CLOCKS_PER_SEC 1000000
clock_t clock(void);
double difftime(time_t, time_t);
time_t mktime(struct tm*);
time_t time(time_t*);
char* asctime(const struct tm*);
char* ctime(const time_t*);
struct tm* gmtime(const time_t*);
struct tm* localtime(const time_t*);
struct tm* gmtime_r(const time_t*, struct tm*);
struct tm* localtime_r(const time_t*, struct tm*);
size_t strftime(char*, size_t, const char*, const struct tm*);
int nanosleep(const struct timespec*, struct timespec*);

MACOS_C_END
