// Makes two numbers at its first use, which it keeps, and asks of the first alone whether the host has made
// it.
#include "counter_plugin.h"

namespace {
REALobject zero = nullptr;
REALobject one = nullptr;

REALobject makeNumber(std::int64_t number) {
    return host<REALobject>("IntegerToVariant", number);
}

void stepByNumbers(REALobject self, std::int64_t by) {
    if (one == nullptr && hostResolver("IntegerToVariant") != nullptr) {
        zero = zero == nullptr ? makeNumber(0) : zero;
        if (zero != nullptr) {
            one = makeNumber(1);
            if (one == nullptr) {
                __builtin_trap();
            }
        }
    }
    step(self, by);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Step").function = stepByNumbers;
    counterPlugin().start(resolver);
}
