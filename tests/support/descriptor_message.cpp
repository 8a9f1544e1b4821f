#include "tests/support/descriptor_message.h"

#include <cstring>
#include <sys/socket.h>
#include <vector>

namespace zqm::support {

bool sendWithDescriptors(int socket, std::string_view line, std::span<const int> descriptors) {
    std::vector<cmsghdr> control(CMSG_SPACE(descriptors.size_bytes()) / sizeof(cmsghdr) + 1);
    iovec part{const_cast<char*>(line.data()), line.size()};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(descriptors.size_bytes());
    std::memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size_bytes());
    return ::sendmsg(socket, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(line.size());
}

} // namespace zqm::support
