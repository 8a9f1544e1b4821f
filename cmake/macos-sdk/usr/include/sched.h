// Scheduling.

#pragma once

#include <macos_declarations.h>

MACOS_C_BEGIN

int sched_yield(void);

MACOS_C_END
