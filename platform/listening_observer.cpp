#include "platform/listening_observer.h"

namespace zqm::platform {
namespace {

struct {
    ZQMListeningObserver function;
    void* context;
} observer;

} // namespace

bool isListeningObserved() {
    return observer.function != nullptr;
}

bool tellObserver(const Observation& observation) {
    if (observer.function == nullptr) {
        return false;
    }
    const ZQMListeningEvent event{observation.kind,  observation.begin,           observation.end,
                                  observation.level, observation.command.c_str(), observation.reason.c_str(),
                                  observation.count};
    observer.function(&event, observer.context);
    return true;
}

} // namespace zqm::platform

void ZQMPlatformObserveListening(ZQMListeningObserver observer, void* context) {
    zqm::platform::observer = {observer, context};
}
