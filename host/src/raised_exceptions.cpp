#include "raised_exceptions.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zqm::host {

namespace {

std::string lineFor(const std::vector<RaisedException>& raised) {
    std::string line;
    for (const RaisedException& one : raised) {
        line += (line.empty() ? "" : "; then ") + one.className;
        if (!one.message.empty()) {
            line += ": " + one.message;
        }
    }
    return line;
}

} // namespace

HostException::HostException(std::vector<RaisedException> raised)
    : Error(lineFor(raised)), raised_(std::move(raised)) {}

void RaisedExceptions::raise(RaisedException raised) {
    (frames_.empty() ? stray_ : frames_.back()).push_back(std::move(raised));
}

std::vector<RaisedException> RaisedExceptions::collect(const std::function<void()>& function) {
    frames_.emplace_back();
    try {
        function();
    } catch (...) {
        // A native exception passes; what was raised before it is kept for whoever asks.
        std::ranges::move(frames_.back(), std::back_inserter(stray_));
        frames_.pop_back();
        throw;
    }
    std::vector<RaisedException> raised = std::move(frames_.back());
    frames_.pop_back();
    return raised;
}

void RaisedExceptions::run(const std::function<void()>& function) {
    std::vector<RaisedException> raised = collect(function);
    if (!thrown_.empty()) {
        std::ranges::for_each(raised, [this](RaisedException& one) { raise(std::move(one)); });
        const std::exception_ptr first = std::move(thrown_.front());
        thrown_.pop_front();
        std::rethrow_exception(first);
    }
    if (!raised.empty()) {
        throw HostException(std::move(raised));
    }
}

std::vector<RaisedException> RaisedExceptions::takeStray() {
    return std::exchange(stray_, {});
}

void RaisedExceptions::clear() {
    frames_.clear();
    stray_.clear();
    thrown_.clear();
}

} // namespace zqm::host
