// What a UNIX socket carries at a time: bytes, and descriptors that go with them (SCM_RIGHTS). It takes no
// memory of its own, so that a process may use it that can get none any more.

#pragma once

#include "engine/protocol/descriptor.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/types.h>

namespace zqm::protocol {

class SocketMessage {
public:
    static constexpr std::size_t kMaxDescriptors = 16;

    // The bytes are borrowed.
    SocketMessage(void* bytes, std::size_t count) : part_{bytes, count} {
        message_.msg_iov = &part_;
        message_.msg_iovlen = 1;
    }
    SocketMessage(const SocketMessage&) = delete;
    SocketMessage& operator=(const SocketMessage&) = delete;

    // Another descriptor that goes with the bytes; borrowed. False: there are as many as there can be.
    [[nodiscard]] bool attach(int descriptor);

    // As sendmsg and recvmsg, once each: how many bytes were taken or came, or -1 and errno.
    [[nodiscard]] ssize_t send(int socket, int flags = 0) const;
    [[nodiscard]] ssize_t receive(int socket, int flags = 0);

    // Hands over what came, each as an owned Descriptor.
    template <typename Take>
    void takeDescriptors(Take take) {
        for (cmsghdr* header = CMSG_FIRSTHDR(&message_); header != nullptr;
             header = CMSG_NXTHDR(&message_, header)) {
            if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) {
                continue;
            }
            const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
            for (std::size_t index = 0; index < count; ++index) {
                int number = -1;
                std::memcpy(&number, CMSG_DATA(header) + index * sizeof number, sizeof number);
                take(Descriptor(number));
            }
        }
    }

    // Whether descriptors came that there was no room for, here or in this process.
    [[nodiscard]] bool lacksDescriptors() const { return (message_.msg_flags & MSG_CTRUNC) != 0; }

private:
    iovec part_;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * kMaxDescriptors)> control_{};
    msghdr message_{};
};

} // namespace zqm::protocol
