// Whom the program wants told of what its recognizers do.

#pragma once

#include <cstddef>
#include <string>
#include <zqmplatform/listening.h>

namespace zqm::platform {

struct Observation {
    ZQMListeningEventKind kind{};
    double begin = 0;
    double end = 0;
    double level = 0;
    std::string command{};
    std::string reason{};
    std::size_t count = 0;
};

bool isListeningObserved();

// False: there is nobody to tell.
bool tellObserver(const Observation& observation);

} // namespace zqm::platform
