// All of the host's C++ API.

#pragma once

#include "zqmhost/array.h"
#include "zqmhost/class_definition.h"
#include "zqmhost/class_description.h"
#include "zqmhost/dictionary.h"
#include "zqmhost/entry_point_control.h"
#include "zqmhost/errors.h"
#include "zqmhost/folder_item.h"
#include "zqmhost/memory_block.h"
#include "zqmhost/object.h"
#include "zqmhost/report.h"
#include "zqmhost/runtime.h"
#include "zqmhost/string.h"
#include "zqmhost/text.h"
#include "zqmhost/value.h"
