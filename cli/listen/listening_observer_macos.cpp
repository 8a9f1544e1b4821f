#include "cli/listen/listening_observer.h"

#include "cli/command_line/failure.h"

#include <utility>

namespace zqm::cli {

// macOS tells of recognised commands alone, and those come by the class's own event.
ListeningObserver::ListeningObserver(Handler handler) : handler_(std::move(handler)) {}

ListeningObserver::~ListeningObserver() = default;

void listenToFile(const std::string& path) {
    throw Failure(path + " can't be heard: macOS listens to the microphone alone");
}

} // namespace zqm::cli
