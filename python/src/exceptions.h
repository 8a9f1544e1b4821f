#pragma once

namespace zqm::python {

// From now on what the host's C++ API throws arrives in Python as the classes of zqm._errors.
void translateExceptions();

} // namespace zqm::python
