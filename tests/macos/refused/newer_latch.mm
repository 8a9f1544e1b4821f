// refused by: compiler
// message: is unavailable: introduced in macOS 11.0
#include <latch>

void wait(std::latch& latch) {
    latch.wait();
}
