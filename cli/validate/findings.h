// What a check has to say, from the process in which it runs.

#pragma once

#include "cli/validate/finding.h"
#include "cli/validate/message_kinds.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace zqm::cli {

class Findings {
public:
    using Seconds = std::chrono::duration<double>;

    // They go to the descriptor, of a pipe to the process that waits for this one, and that knows them by
    // the nonce.
    Findings(int descriptor, MessageNonce nonce, Seconds limit);

    void pass(std::string_view text);
    void skip(std::string_view cause);
    void warn(std::string_view text);
    void fail(std::string_view text);
    void add(const Finding& finding);

    // A failure that ends the work: it is told with what was tried, as a crash is.
    void breakOff(std::string_view text);

    // What ends the work and is no finding: the program lacks what it needs to do it.
    void preventedBy(std::string_view cause);

    // What is tried from now on: a crash or a hang is told with it. Each step may take the time limit.
    void at(std::string_view step);

    // Does this in one more process, a copy of this one, with the same time limit for each of its steps. Its
    // findings, a crash or a hang among them, become those of this check, behind the name of the step if it
    // has one, and are no worse than the last verdict. Answers the worst of them. There this object is of
    // no use any more.
    Verdict apart(std::string_view step, const std::function<void(Findings&)>& work,
                  Verdict most = Verdict::Crash);

    // That all has been done: the process ends.
    [[noreturn]] void end();

private:
    void send(MessageKind kind, std::string_view text);

    int descriptor_;
    MessageNonce nonce_;
    Seconds limit_;
    pid_t process_;
};

} // namespace zqm::cli
