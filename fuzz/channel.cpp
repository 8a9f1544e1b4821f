// Bytes that reach one end of a conversation in pieces of any length: the lines in them are read, whole and
// in order, until one is too long.

#include "engine/protocol/channel.h"
#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"

#include <algorithm>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace zqm;
using protocol::Channel;

// What was read, and what that ended with.
struct Conversation {
    std::string lines;
    Channel::Input last = Channel::Input::Nothing;
};

void readAll(Channel& channel, Conversation& read, std::size_t longest) {
    if (read.last != Channel::Input::Nothing) {
        return;
    }
    std::string line;
    for (;;) {
        read.last = channel.read(line);
        if (read.last != Channel::Input::Line) {
            return;
        }
        fuzz::check(line.find('\n') == std::string::npos, "a line holds no line feed", line);
        fuzz::check(line.size() < longest, "no line is longer than the limit", line);
        read.lines += line + '\n';
    }
}

// The whole lines that stand before the first that is too long.
std::string expectedLines(const std::string& sent, std::size_t longest, bool& isOverlong) {
    std::size_t at = 0;
    for (;;) {
        const std::size_t end = sent.find('\n', at);
        const std::size_t length = (end == std::string::npos ? sent.size() : end + 1) - at;
        isOverlong = length > longest || (end == std::string::npos && length >= longest);
        if (end == std::string::npos || isOverlong) {
            return sent.substr(0, at);
        }
        at = end + 1;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        std::abort();
    }
    fuzz::ByteSource source(bytes, size);
    const std::size_t longest = 1 + source.number<std::uint8_t>();
    Conversation read;
    std::string sent;
    Channel peer(protocol::Descriptor{ends[0]}, longest);
    {
        Channel channel(protocol::Descriptor{ends[1]}, longest);
        while (!source.isEmpty()) {
            const std::string piece = source.text();
            sent += piece;
            // Answers false once the reader is gone, which it isn't yet.
            peer.send(piece);
            fuzz::check(peer.flush() && peer.backlog() == 0, "what is sent is taken");
            readAll(channel, read, longest);
        }
        shutdown(peer.descriptor(), SHUT_WR);
        readAll(channel, read, longest);
    }
    bool isOverlong = false;
    const std::string expected = expectedLines(sent, longest, isOverlong);
    fuzz::check(read.lines == expected, "the lines sent are the lines read", read.lines);
    fuzz::check(read.last == (isOverlong ? Channel::Input::Overlong : Channel::Input::End),
                "a conversation ends with its peer or with a line that is too long");
    return 0;
}
