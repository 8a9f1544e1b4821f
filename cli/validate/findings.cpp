#include "cli/validate/findings.h"

#include "cli/validate/supervision.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <unistd.h>

namespace zqm::cli {

Findings::Findings(int descriptor, MessageNonce nonce, Seconds limit)
    : descriptor_(descriptor), nonce_(nonce), limit_(limit), process_(getpid()) {}

void Findings::pass(std::string_view text) {
    add({Verdict::Pass, std::string(text)});
}

void Findings::skip(std::string_view cause) {
    add({Verdict::Skip, std::string(cause)});
}

void Findings::warn(std::string_view text) {
    add({Verdict::Warning, std::string(text)});
}

void Findings::fail(std::string_view text) {
    add({Verdict::Fail, std::string(text)});
}

void Findings::add(const Finding& finding) {
    send(MessageKind::Found, static_cast<char>(finding.verdict) + finding.text);
}

void Findings::breakOff(std::string_view text) {
    send(MessageKind::Broke, text);
}

void Findings::preventedBy(std::string_view cause) {
    send(MessageKind::Prevented, cause);
}

void Findings::at(std::string_view step) {
    send(MessageKind::Step, step);
}

Verdict Findings::apart(std::string_view step, const std::function<void(Findings&)>& work, Verdict most) {
    at(step);
    Verdict worst = Verdict::Pass;
    const auto found = [&](const Finding& finding) {
        const Verdict verdict = std::min(finding.verdict, most);
        worst = std::max(worst, verdict);
        add({verdict, (step.empty() ? "" : std::string(step) + ": ") + finding.text});
    };
    const auto workThere = [&](Findings& findings) {
        close(descriptor_); // whoever writes there has no business with it
        work(findings);
    };
    // Whoever waits for this process learns by the steps that all is well.
    supervise(workThere,
              {.limit = limit_,
               .isSeparate = false,
               .found = found,
               .begun = [this](pid_t process) { send(MessageKind::Apart, std::to_string(process)); },
               .at = [this](const std::string& inner) { at(inner); }});
    send(MessageKind::Back, {});
    return worst;
}

void Findings::end() {
    send(MessageKind::Done, {});
    _exit(0);
}

// NOLINTNEXTLINE(readability-make-member-function-const): what it says is its state
void Findings::send(MessageKind kind, std::string_view text) {
    if (getpid() != process_) {
        _exit(0); // a plugin that forks goes on twice: one speaks for it
    }
    text = text.substr(0, kLongestMessage);
    const MessageHead head{nonce_, kind, static_cast<std::uint32_t>(text.size())};
    std::string message(reinterpret_cast<const char*>(&head), sizeof(head));
    message.append(text);
    for (std::size_t sent = 0; sent < message.size();) {
        const ssize_t count = write(descriptor_, message.data() + sent, message.size() - sent);
        if (count < 0 && errno != EINTR) {
            _exit(errno == EBADF ? kMutedExitCode : EXIT_FAILURE); // or nobody listens any more
        }
        sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
}

} // namespace zqm::cli
