#include "engine/protocol/socket_message.h"

namespace zqm::protocol {

bool SocketMessage::attach(int descriptor) {
    const std::size_t count = message_.msg_control == nullptr
                                  ? 0
                                  : (CMSG_FIRSTHDR(&message_)->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    if (count == kMaxDescriptors) {
        return false;
    }
    message_.msg_control = control_.data();
    message_.msg_controllen = CMSG_SPACE(sizeof(int) * (count + 1));
    cmsghdr* const header = CMSG_FIRSTHDR(&message_);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int) * (count + 1));
    std::memcpy(CMSG_DATA(header) + count * sizeof descriptor, &descriptor, sizeof descriptor);
    return true;
}

ssize_t SocketMessage::send(int socket, int flags) const {
    return ::sendmsg(socket, &message_, flags | MSG_NOSIGNAL);
}

ssize_t SocketMessage::receive(int socket, int flags) {
    message_.msg_control = control_.data();
    message_.msg_controllen = sizeof control_;
    return ::recvmsg(socket, &message_, flags | MSG_CMSG_CLOEXEC);
}

} // namespace zqm::protocol
