// All of the host's C++ API.

#pragma once

#include "zqmhost/entry_point_control.h"
#include "zqmhost/errors.h"
#include "zqmhost/object.h"
#include "zqmhost/report.h"
#include "zqmhost/runtime.h"
#include "zqmhost/string.h"
#include "zqmhost/value.h"
