// The class-definition records of this library, defined in the sources of their classes.

#pragma once

#include "plugin/host_interface.h"

#include <span>

extern ClassRecord NSExceptionClass;
extern ClassRecord NSErrorClass;
std::span<ClassRecord> cfObjectClasses();
std::span<ClassRecord> valueClasses();
std::span<ClassRecord> wrapperClasses();
