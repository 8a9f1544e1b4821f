#include "cli/listen/listening_observer.h"

#include <zqmplatform/listening.h>

#include <utility>

namespace zqm::cli {
namespace {

using Kind = ListeningEvent::Kind;

Kind kindOf(ZQMListeningEventKind kind) {
    switch (kind) {
    case ZQMListeningBegan:
        return Kind::Began;
    case ZQMListeningFailed:
        return Kind::Failed;
    case ZQMListeningLevel:
        return Kind::Level;
    case ZQMListeningRecognized:
        return Kind::Recognized;
    case ZQMListeningRejected:
        return Kind::Rejected;
    case ZQMListeningEnded:
        return Kind::Ended;
    case ZQMListeningCommandRefused:
        return Kind::Refused;
    case ZQMListeningMoreCommandsRefused:
        break;
    }
    return Kind::MoreRefused;
}

void observe(const ZQMListeningEvent* event, void* handler) {
    (*static_cast<ListeningObserver::Handler*>(handler))({kindOf(event->kind), event->begin, event->end,
                                                          event->level, event->command, event->reason,
                                                          event->count});
}

} // namespace

ListeningObserver::ListeningObserver(Handler handler) : handler_(std::move(handler)) {
    ZQMPlatformObserveListening(observe, &handler_);
}

ListeningObserver::~ListeningObserver() {
    ZQMPlatformObserveListening(nullptr, nullptr);
}

void listenToFile(const std::string& path) {
    ZQMPlatformListenToFile(path.c_str());
}

} // namespace zqm::cli
