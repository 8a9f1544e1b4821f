#pragma once

#include "core.h"

namespace zqm::host {

// Reads an exception object out, with a lock of its own on it.
RaisedException readException(Core& core, ObjectHandle& exception);

} // namespace zqm::host
