#include "cli/validate/checks/observed_start.h"

#include <string_view>

namespace zqm::cli {
namespace {

constexpr const char* kRegisterClass = "PluginRegisterClass";

// What a host gives to plugins are plain functions, which they keep.
PluginMain started = nullptr;
const RecordObserver* observing = nullptr; // null: none, as after the start

void registerObserved(void* record) {
    void* function = host::Runtime::resolver()(kRegisterClass);
    if (function != nullptr && (observing == nullptr || (*observing)(record))) {
        reinterpret_cast<void (*)(void*)>(function)(record);
    }
}

void* resolve(const char* name) {
    void* function = host::Runtime::resolver()(name);
    return function != nullptr && std::string_view(name) == kRegisterClass
               ? reinterpret_cast<void*>(registerObserved)
               : function;
}

} // namespace

void startObserved(host::Runtime& runtime, PluginMain entryFunction, const RecordObserver& observer) {
    started = entryFunction;
    observing = &observer;
    runtime.start([](REALresolver) { started(resolve); });
    observing = nullptr;
}

} // namespace zqm::cli
