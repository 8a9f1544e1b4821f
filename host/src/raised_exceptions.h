// Exceptions on their way to host code. A raise does not unwind the plugin: the exception waits in the frame
// of the host's call until the plugin's function has returned.

#pragma once

#include "zqmhost/errors.h"

#include <deque>
#include <exception>
#include <functional>
#include <vector>

namespace zqm::host {

class RaisedExceptions {
public:
    // Into the innermost frame, or, outside of any call, to those that wait to be asked for.
    void raise(RaisedException raised);
    // What a handler of the host program threw; the call around it throws it on.
    void keepThrown(std::exception_ptr thrown) { thrown_.push_back(std::move(thrown)); }

    // Runs the function in a frame of its own and answers what it raised.
    std::vector<RaisedException> collect(const std::function<void()>& function);
    // The same, and throws it: what a handler threw goes first, the rest to the frame around this one.
    void run(const std::function<void()>& function);

    bool inFrame() const { return !frames_.empty(); }

    std::vector<RaisedException> takeStray();
    void clear();

private:
    std::vector<std::vector<RaisedException>> frames_;
    std::vector<RaisedException> stray_;
    std::deque<std::exception_ptr> thrown_;
};

} // namespace zqm::host
