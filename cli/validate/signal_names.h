#pragma once

#include <string>

namespace zqm::cli {

// "SIGSEGV"
std::string nameOfSignal(int number);

} // namespace zqm::cli
