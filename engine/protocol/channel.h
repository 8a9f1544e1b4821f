// One end of a conversation: lines and descriptors over a UNIX stream socket, without ever blocking.
// Knows nothing of what the lines mean (see protocol.h).

#pragma once

#include "engine/protocol/descriptor.h"
#include "engine/protocol/socket_message.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::protocol {

class Channel {
public:
    // Descriptors that may wait to be taken; more are an error of the peer.
    static constexpr std::size_t kMaxDescriptors = SocketMessage::kMaxDescriptors;

    enum class Input {
        Line,      // one was read
        Nothing,   // none is complete yet
        End,       // the peer is gone; a line it left unfinished is dropped
        Overlong,  // the peer sent a line beyond the limit
        Overladen, // the peer sent more descriptors than anyone needs
        Failed,    // the socket failed, or a descriptor found no room in this process: see error()
    };

    // Takes the socket. `maxLine` is the longest line that is read, line feed included.
    Channel(Descriptor socket, std::size_t maxLine);

    [[nodiscard]] int descriptor() const { return socket_.get(); }

    // Queues bytes: one line or several, line feeds included. The descriptors travel with the first byte;
    // each is closed here once it is on its way, or when the channel ends.
    void send(std::string_view lines, std::vector<Descriptor> descriptors = {});

    // The same for lines that may be dropped while they wait.
    void sendExpendable(std::string_view lines);
    void dropExpendable();

    // Writes what the socket takes now. False when the peer can't be reached any more: what was queued is
    // dropped then, as is all that is sent later. What the peer had sent before can still be read.
    bool flush();

    // Bytes queued and not yet written. While there are any, wait for the socket to be writable and flush.
    [[nodiscard]] std::size_t backlog() const { return backlog_; }

    // The next line, without its line feed. Anything but Line leaves `line` unspecified; all but Line and
    // Nothing are final.
    Input read(std::string& line);

    // The next descriptor that came with what was read, in the order sent; none: an empty one.
    Descriptor takeDescriptor();

    // The errno value of the last failure; 0: none.
    [[nodiscard]] int error() const { return error_; }

private:
    struct Chunk {
        std::string bytes;
        std::vector<Descriptor> descriptors;
        bool isExpendable = false;
    };

    void queue(std::string_view lines, std::vector<Descriptor> descriptors, bool isExpendable);

    bool takeLine(std::string& line);
    Input receive();
    long write(const Chunk& chunk);

    Descriptor socket_;
    std::size_t maxLine_;
    int error_ = 0;

    std::deque<Chunk> queue_;
    std::size_t written_ = 0; // bytes of the first chunk
    std::size_t backlog_ = 0;
    bool unreachable_ = false;

    std::string buffer_;
    std::size_t begin_ = 0;    // of the unread bytes in buffer_
    std::size_t searched_ = 0; // no line feed stands before it
    std::deque<Descriptor> received_;
    Input final_ = Input::Nothing;
};

} // namespace zqm::protocol
