// The lines that the platform library and an engine read of each other: a line that is a message is written
// so that the same message is read again.

#include "engine/protocol/protocol.h"
#include "fuzz/check.h"
#include "fuzz/target.h"

#include <string_view>

namespace {

using namespace zqm;

template <typename Message, typename Decode>
void holdTo(const std::optional<Message>& message, Decode decode) {
    if (!message) {
        return;
    }
    const std::string line = protocol::encode(*message);
    fuzz::check(line.find('\n') == line.size() - 1, "a message is one line", line);
    const auto again = decode(std::string_view(line).substr(0, line.size() - 1));
    fuzz::check(again.has_value(), "what is written can be read", line);
    fuzz::check(*again == *message, "what is written is the same message", line);
    fuzz::check(protocol::encode(*again) == line, "the same message is written the same way", line);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view line(reinterpret_cast<const char*>(bytes), size);
    const auto request = protocol::decodeRequest(line);
    const auto event = protocol::decodeEvent(line);
    fuzz::check(!request || !event, "no line is a message both ways");
    holdTo(request, protocol::decodeRequest);
    holdTo(event, protocol::decodeEvent);
    return 0;
}
