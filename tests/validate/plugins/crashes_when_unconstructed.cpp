// Counts on a "Constructor" to have run.
#include "counter_plugin.h"

namespace {
struct CounterWithSteps {
    Counter counter;
    std::int64_t* steps; // null before a "Constructor"
};

std::int64_t*& stepsOf(REALobject self) {
    return reinterpret_cast<CounterWithSteps&>(dataOf(self)).steps;
}

void constructorWithSteps(REALobject self) {
    delete stepsOf(self);
    stepsOf(self) = new std::int64_t(0);
}

void destructorWithSteps(REALobject self) {
    delete stepsOf(self);
    stepsOf(self) = nullptr;
}

void stepAndCount(REALobject self, std::int64_t by) {
    step(self, by);
    *stepsOf(self) += 1;
}

REALobject twinWithSteps(REALobject self) {
    REALobject made = twin(self);
    if (made != nullptr) {
        constructorWithSteps(made);
    }
    return made;
}

CounterPlugin pluginWithSteps() {
    CounterPlugin plugin;
    plugin.record.dataSize = 32;
    plugin.methods = {
        {.function = constructorWithSteps, .declaration = "Constructor()"},
        {.function = destructorWithSteps, .declaration = "Destructor()"},
        {.function = stepAndCount, .declaration = "Step(by as Integer)"},
        {.function = twinWithSteps, .declaration = "Twin() as Counter"},
    };
    return plugin;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    static const bool isMade = (counterPlugin() = pluginWithSteps(), true);
    if (isMade) {
        counterPlugin().start(resolver);
    }
}
