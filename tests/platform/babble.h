// Engines that say something whenever they are listened to, however little time they are given.

#pragma once

#include <string>

namespace zqm::platform::test {

// While one of these lives, this line comes from every socket that nothing else comes from.
class Babble {
public:
    explicit Babble(std::string line);
    Babble(const Babble&) = delete;
    Babble& operator=(const Babble&) = delete;
    ~Babble();
};

} // namespace zqm::platform::test
