// The types of the system.

#pragma once

#include <macos_declarations.h>
#include <stdint.h>
typedef long long off_t;
typedef long ssize_t;
typedef int pid_t;
typedef unsigned uid_t, gid_t;
typedef unsigned short mode_t;
typedef int dev_t;
typedef unsigned long long ino_t;
typedef long time_t;
typedef int suseconds_t;
