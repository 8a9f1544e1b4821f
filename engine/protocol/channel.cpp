#include "engine/protocol/channel.h"

#include "engine/protocol/socket_message.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace zqm::protocol {

namespace {

// Small enough that memory follows the backlog closely, large enough that few calls move it.
constexpr std::size_t kChunkBytes = std::size_t{64} << 10;

// What is read at a time stands on the stack, and hosts may call from threads that have little of that.
constexpr std::size_t kReadBytes = std::size_t{8} << 10;

// A buffer that grew beyond this for one long line is given back once it is empty.
constexpr std::size_t kKeptBufferBytes = std::size_t{256} << 10;

} // namespace

Channel::Channel(Descriptor socket, std::size_t maxLine) : socket_(std::move(socket)), maxLine_(maxLine) {}

void Channel::send(std::string_view lines, std::vector<Descriptor> descriptors) {
    queue(lines, std::move(descriptors), false);
}

void Channel::sendExpendable(std::string_view lines) {
    queue(lines, {}, true);
}

void Channel::queue(std::string_view lines, std::vector<Descriptor> descriptors, bool isExpendable) {
    if (unreachable_ || lines.empty()) {
        return;
    }
    if (queue_.empty() || !descriptors.empty() || queue_.back().isExpendable != isExpendable ||
        queue_.back().bytes.size() + lines.size() > kChunkBytes) {
        queue_.push_back({{}, std::move(descriptors), isExpendable});
    }
    queue_.back().bytes += lines;
    backlog_ += lines.size();
}

// A chunk of which a part is written goes on its way whole.
void Channel::dropExpendable() {
    const auto first = queue_.begin() + (written_ > 0 ? 1 : 0);
    queue_.erase(std::remove_if(first, queue_.end(),
                                [&](const Chunk& chunk) {
                                    if (chunk.isExpendable) {
                                        backlog_ -= chunk.bytes.size();
                                    }
                                    return chunk.isExpendable;
                                }),
                 queue_.end());
}

long Channel::write(const Chunk& chunk) {
    SocketMessage message(const_cast<char*>(chunk.bytes.data()) + written_, chunk.bytes.size() - written_);
    for (const Descriptor& descriptor : chunk.descriptors) {
        if (!message.attach(descriptor.get())) {
            errno = EMSGSIZE;
            return -1;
        }
    }
    return message.send(socket_.get(), MSG_DONTWAIT);
}

bool Channel::flush() {
    while (!queue_.empty()) {
        Chunk& chunk = queue_.front();
        const long count = write(chunk);
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            if (errno == EAGAIN || errno == EWOULDBLOCK) {
                return true;
            }
            error_ = errno;
            unreachable_ = true;
            queue_.clear();
            backlog_ = 0;
            written_ = 0;
            return false;
        }
        chunk.descriptors.clear();
        written_ += static_cast<std::size_t>(count);
        backlog_ -= static_cast<std::size_t>(count);
        if (written_ == chunk.bytes.size()) {
            queue_.pop_front();
            written_ = 0;
        }
    }
    queue_.shrink_to_fit();
    return !unreachable_;
}

Channel::Input Channel::read(std::string& line) {
    while (!takeLine(line)) {
        if (final_ == Input::Nothing && buffer_.size() - begin_ >= maxLine_) {
            final_ = Input::Overlong;
        }
        if (final_ != Input::Nothing) {
            return final_;
        }
        if (const Input input = receive(); input == Input::Nothing) {
            return input;
        }
    }
    if (line.size() >= maxLine_) {
        final_ = Input::Overlong;
        buffer_.clear();
        begin_ = searched_ = 0;
        return final_;
    }
    return Input::Line;
}

bool Channel::takeLine(std::string& line) {
    const std::size_t end = buffer_.find('\n', searched_);
    if (end == std::string::npos) {
        searched_ = buffer_.size();
        return false;
    }
    line.assign(buffer_, begin_, end - begin_);
    begin_ = searched_ = end + 1;
    if (begin_ == buffer_.size()) {
        buffer_.clear();
        begin_ = searched_ = 0;
        if (buffer_.capacity() > kKeptBufferBytes) {
            buffer_.shrink_to_fit();
        }
    }
    return true;
}

// Reads once. Nothing: the socket has no more for now; Line: look again, bytes or an end came.
Channel::Input Channel::receive() {
    if (begin_ > 0) {
        buffer_.erase(0, begin_);
        searched_ -= begin_;
        begin_ = 0;
    }
    std::array<char, kReadBytes> bytes; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by recvmsg
    SocketMessage message(bytes.data(), bytes.size());
    const ssize_t count = message.receive(socket_.get(), MSG_DONTWAIT);
    if (count < 0) {
        if (errno == EINTR) {
            return Input::Line;
        }
        if (errno == EAGAIN || errno == EWOULDBLOCK) {
            return Input::Nothing;
        }
        error_ = errno;
        // A peer that ended with our bytes unread resets the connection: an end like any other.
        final_ = errno == ECONNRESET ? Input::End : Input::Failed;
        return Input::Line;
    }
    std::size_t came = 0;
    message.takeDescriptors([&](Descriptor descriptor) {
        received_.push_back(std::move(descriptor));
        ++came;
    });
    if (message.lacksDescriptors() && came < kMaxDescriptors) {
        error_ = EMFILE; // though there was room for them in the message
        final_ = Input::Failed;
    } else if (message.lacksDescriptors() || received_.size() > kMaxDescriptors) {
        final_ = Input::Overladen;
    } else if (count == 0) {
        final_ = Input::End;
    } else {
        buffer_.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return Input::Line;
}

Descriptor Channel::takeDescriptor() {
    if (received_.empty()) {
        return {};
    }
    Descriptor first = std::move(received_.front());
    received_.pop_front();
    return first;
}

} // namespace zqm::protocol
