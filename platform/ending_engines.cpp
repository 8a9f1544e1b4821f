#include "platform/ending_engines.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zqm::platform {

// One that is killed and isn't watched is looked at again so much later.
constexpr std::chrono::seconds kUntilKilled{1};

// The engines of a fork's parent are the parent's, as are their descriptors.
EndingEngines& EndingEngines::shared() {
    static auto& all = *new std::vector<std::unique_ptr<EndingEngines>>; // for the life of the process
    if (all.empty() || !all.back()->owner_.isCurrent()) {
        all.emplace_back(new EndingEngines);
    }
    return *all.back();
}

void EndingEngines::add(ChildProcess process, std::function<void()> afterEnd) {
    // Where the system has no room for that, it is looked at by its deadline.
    EventHub::shared().watch(process.descriptor(), this);
    engines_.push_back({std::move(process), engineDeadline(), std::move(afterEnd)});
    lookAgain();
}

void EndingEngines::takeMessages() {
    if (engines_.empty()) {
        return;
    }
    static_cast<void>(timer_.takeExpiry());
    std::vector<std::function<void()>> tasks;
    std::erase_if(engines_, [&tasks](Engine& engine) {
        if (!engine.process.isReaped()) {
            if (Clock::now() >= engine.deadline) {
                engine.process.kill();
                engine.deadline = Clock::now() + kUntilKilled;
            }
            return false;
        }
        EventHub::shared().unwatch(engine.process.descriptor());
        if (engine.afterEnd) {
            tasks.push_back(std::move(engine.afterEnd));
        }
        return true;
    });
    lookAgain();
    for (const std::function<void()>& task : tasks) {
        task(); // and may end an engine of its own
    }
}

void EndingEngines::lookAgain() {
    const auto next = std::ranges::min_element(engines_, {}, &Engine::deadline);
    if (next == engines_.end()) {
        timer_.stop();
        return;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next->deadline - Clock::now());
    timer_.start(std::max(left, std::chrono::milliseconds::zero()));
}

} // namespace zqm::platform
