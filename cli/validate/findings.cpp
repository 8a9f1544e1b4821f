#include "cli/validate/findings.h"

#include "cli/validate/message_kinds.h"
#include "cli/validate/supervision.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include <unistd.h>

namespace zqm::cli {

Findings::Findings(int descriptor, Seconds limit)
    : descriptor_(descriptor), limit_(limit), process_(getpid()) {}

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
    send(kFoundMessage, static_cast<char>(finding.verdict) + finding.text);
}

void Findings::at(std::string_view step) {
    send(kStepMessage, step);
}

Verdict Findings::apart(std::string_view step, const std::function<void(Findings&)>& work, Verdict most) {
    at(step);
    send(kApartMessage, {});
    Verdict worst = Verdict::Pass;
    supervise(work, {.limit = limit_, .isSeparate = false, .found = [&](const Finding& finding) {
                         const Verdict verdict = std::min(finding.verdict, most);
                         worst = std::max(worst, verdict);
                         add({verdict, (step.empty() ? "" : std::string(step) + ": ") + finding.text});
                     }});
    send(kBackMessage, {});
    return worst;
}

void Findings::end() {
    send(kDoneMessage, {});
    _exit(0);
}

// NOLINTNEXTLINE(readability-make-member-function-const): what it says is its state
void Findings::send(char kind, std::string_view text) {
    if (getpid() != process_) {
        _exit(0); // a plugin that forks goes on twice: one speaks for it
    }
    const auto length = static_cast<MessageLength>(text.size());
    std::string message(1, kind);
    message.append(reinterpret_cast<const char*>(&length), sizeof(length)).append(text);
    for (std::size_t sent = 0; sent < message.size();) {
        const ssize_t count = write(descriptor_, message.data() + sent, message.size() - sent);
        if (count < 0 && errno != EINTR) {
            _exit(1); // nobody listens any more
        }
        sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
}

} // namespace zqm::cli
