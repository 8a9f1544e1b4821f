#include "engine/protocol/channel.h"
#include "tests/support/descriptor_message.h"
#include "tests/support/small_stack.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace zqm::protocol;
using Input = Channel::Input;

namespace {

constexpr std::size_t kLimit = 100;

struct Pair {
    Pair() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
        left.reset(ends[0]);
        right.reset(ends[1]);
    }
    Descriptor left;
    Descriptor right;
};

void writeRaw(const Descriptor& socket, std::string_view bytes) {
    ASSERT_EQ(::send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
}

Descriptor openNull() {
    return Descriptor(::open("/dev/null", O_RDWR | O_CLOEXEC));
}

bool isOpen(int number) {
    return ::fcntl(number, F_GETFD) >= 0;
}

bool sameFile(int left, int right) {
    struct stat a {};
    struct stat b {};
    return ::fstat(left, &a) == 0 && ::fstat(right, &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

class ChannelTest : public testing::Test {
protected:
    ChannelTest() : reader(std::move(pair.left), kLimit) {}

    std::string expectLine() {
        std::string line;
        EXPECT_EQ(reader.read(line), Input::Line);
        return line;
    }
    Input readOnce() {
        std::string line;
        return reader.read(line);
    }

    Pair pair;
    Channel reader;
};

TEST_F(ChannelTest, readsNothingFromASilentPeer) {
    EXPECT_EQ(readOnce(), Input::Nothing);
}

TEST_F(ChannelTest, joinsALineThatComesInParts) {
    writeRaw(pair.right, "hel");
    EXPECT_EQ(readOnce(), Input::Nothing);
    writeRaw(pair.right, "lo\nwor");
    EXPECT_EQ(expectLine(), "hello");
    EXPECT_EQ(readOnce(), Input::Nothing);
    writeRaw(pair.right, "ld\n");
    EXPECT_EQ(expectLine(), "world");
    EXPECT_EQ(readOnce(), Input::Nothing);
}

TEST_F(ChannelTest, partsLinesThatComeTogetherAndKeepsEmptyOnes) {
    writeRaw(pair.right, "a\n\nb\n");
    EXPECT_EQ(expectLine(), "a");
    EXPECT_EQ(expectLine(), "");
    EXPECT_EQ(expectLine(), "b");
}

TEST_F(ChannelTest, readsWhatWasSentBeforeTheEnd) {
    writeRaw(pair.right, "last\nunfinished");
    pair.right.reset();
    EXPECT_EQ(expectLine(), "last");
    EXPECT_EQ(readOnce(), Input::End);
    EXPECT_EQ(readOnce(), Input::End);
}

TEST_F(ChannelTest, readsTheLongestLine) {
    writeRaw(pair.right, std::string(kLimit - 1, 'x') + "\n");
    EXPECT_EQ(expectLine(), std::string(kLimit - 1, 'x'));
}

// Hosts call from threads whose stacks may be small.
TEST_F(ChannelTest, readsOnASmallStack) {
    writeRaw(pair.right, "line\n");
    zqm::support::runOnSmallStack([&] { EXPECT_EQ(expectLine(), "line"); });
}

TEST_F(ChannelTest, refusesALineOneLonger) {
    writeRaw(pair.right, std::string(kLimit, 'x') + "\nfine\n");
    EXPECT_EQ(readOnce(), Input::Overlong);
    EXPECT_EQ(readOnce(), Input::Overlong);
}

TEST_F(ChannelTest, refusesALineThatNeverEndsWithoutKeepingIt) {
    const std::string bytes(kLimit - 1, 'x');
    writeRaw(pair.right, bytes);
    EXPECT_EQ(readOnce(), Input::Nothing);
    writeRaw(pair.right, "x");
    EXPECT_EQ(readOnce(), Input::Overlong);
}

TEST_F(ChannelTest, aPeerThatLeftBytesUnreadIsAnEnd) {
    reader.send("unread\n");
    ASSERT_TRUE(reader.flush());
    pair.right.reset();
    EXPECT_EQ(readOnce(), Input::End);
}

TEST_F(ChannelTest, tellsAFailedSocketApart) {
    Channel broken(openNull(), kLimit);
    std::string line;
    EXPECT_EQ(broken.read(line), Input::Failed);
    EXPECT_EQ(broken.error(), ENOTSOCK);
}

TEST_F(ChannelTest, sendsNothingBeforeItIsFlushed) {
    Channel writer(std::move(pair.right), kLimit);
    writer.send("a\n");
    EXPECT_EQ(writer.backlog(), 2U);
    EXPECT_EQ(readOnce(), Input::Nothing);
    EXPECT_TRUE(writer.flush());
    EXPECT_EQ(writer.backlog(), 0U);
    EXPECT_EQ(expectLine(), "a");
}

TEST_F(ChannelTest, dropsWhatIsExpendableAndNotOnItsWay) {
    Channel writer(std::move(pair.right), kLimit);
    writer.sendExpendable("a\n");
    writer.send("b\n");
    writer.sendExpendable("c\nd\n");
    writer.send("e\n");
    EXPECT_EQ(writer.backlog(), 10U);
    writer.dropExpendable();
    EXPECT_EQ(writer.backlog(), 4U);
    EXPECT_TRUE(writer.flush());
    EXPECT_EQ(expectLine(), "b");
    EXPECT_EQ(expectLine(), "e");
    EXPECT_EQ(readOnce(), Input::Nothing);
}

TEST_F(ChannelTest, endsALineThatIsOnItsWayThoughItIsExpendable) {
    Channel writer(std::move(pair.right), kLimit);
    const std::string line = std::string(kLimit / 2, 'x') + "\n";
    while (writer.backlog() == 0) { // until the socket takes no more
        writer.sendExpendable(line);
        ASSERT_TRUE(writer.flush());
    }
    constexpr std::size_t kMore = 100'000;
    for (std::size_t more = 0; more < kMore; ++more) {
        writer.sendExpendable(line);
    }
    writer.dropExpendable();
    writer.send("last\n");
    std::size_t count = 0;
    for (std::string read; read != "last";) {
        const Input input = reader.read(read);
        ASSERT_TRUE(input == Input::Line || input == Input::Nothing);
        ASSERT_TRUE(writer.flush());
        if (input == Input::Line && read != "last") {
            ASSERT_EQ(read + "\n", line);
            ++count;
        }
    }
    EXPECT_LT(count, kMore);
}

TEST_F(ChannelTest, descriptorsArriveInOrderAndClosedOnExec) {
    Channel writer(std::move(pair.right), kLimit);
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const Descriptor readEnd(::dup(pipe[0]));
    const int sentFirst = pipe[0];
    std::vector<Descriptor> both;
    both.emplace_back(pipe[0]);
    both.push_back(openNull());
    writer.send("none\n");
    writer.send("two\n", std::move(both));
    std::vector<Descriptor> one;
    one.emplace_back(pipe[1]);
    writer.send("one\n", std::move(one));
    writer.send("none again\n");
    ASSERT_TRUE(writer.flush());
    EXPECT_FALSE(isOpen(sentFirst));

    EXPECT_EQ(expectLine(), "none");
    EXPECT_EQ(expectLine(), "two");
    const Descriptor first = reader.takeDescriptor();
    const Descriptor second = reader.takeDescriptor();
    EXPECT_EQ(expectLine(), "one");
    const Descriptor third = reader.takeDescriptor();
    EXPECT_EQ(expectLine(), "none again");
    EXPECT_FALSE(reader.takeDescriptor());
    EXPECT_TRUE(sameFile(first.get(), readEnd.get()));
    EXPECT_FALSE(sameFile(second.get(), readEnd.get()));
    EXPECT_TRUE(sameFile(third.get(), readEnd.get()));
    EXPECT_NE(::fcntl(first.get(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(ChannelTest, refusesMoreDescriptorsThanAnyoneNeeds) {
    Channel writer(std::move(pair.right), kLimit);
    for (std::size_t index = 0; index <= Channel::kMaxDescriptors; ++index) {
        std::vector<Descriptor> one;
        one.push_back(openNull());
        writer.send("x\n", std::move(one));
    }
    ASSERT_TRUE(writer.flush());
    Input input = Input::Line;
    std::string line;
    while (input == Input::Line) {
        input = reader.read(line);
    }
    // Lines that are read without their descriptors being taken.
    EXPECT_EQ(input, Input::Overladen);
}

TEST_F(ChannelTest, refusesMoreDescriptorsInOneMessageThanAnyoneNeeds) {
    std::array<int, Channel::kMaxDescriptors + 1> numbers{};
    numbers.fill(STDIN_FILENO);
    ASSERT_TRUE(zqm::support::sendWithDescriptors(pair.right.get(), "x\n", numbers));
    EXPECT_EQ(readOnce(), Input::Overladen);
}

TEST_F(ChannelTest, saysThatThereIsNoRoomForADescriptor) {
    ASSERT_TRUE(zqm::support::sendWithDescriptors(pair.right.get(), "x\n", std::array{STDIN_FILENO}));
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    Channel& channel = reader;
    std::string line;
    // Until this is over, the sanitizers lack the pipe by which they look at the test's own object.
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const Input input = channel.read(line);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(input, Input::Failed);
    EXPECT_EQ(reader.error(), EMFILE);
}

TEST_F(ChannelTest, closesDescriptorsNobodySentOrTook) {
    int unsent = -1;
    {
        Channel writer(std::move(pair.right), kLimit);
        std::vector<Descriptor> one;
        one.push_back(openNull());
        unsent = one.front().get();
        writer.send("x\n", std::move(one));
    }
    EXPECT_FALSE(isOpen(unsent));
}

TEST_F(ChannelTest, aBacklogGrowsAndDrainsWhole) {
    Channel writer(std::move(pair.right), kLimit);
    std::size_t total = 0;
    constexpr std::size_t kLines = 100'000;
    for (std::size_t index = 0; index < kLines; ++index) {
        const std::string line = "line " + std::to_string(index) + "\n";
        total += line.size();
        writer.send(line);
        ASSERT_TRUE(writer.flush());
    }
    EXPECT_GT(writer.backlog(), total / 2);
    std::string line;
    std::size_t count = 0;
    while (count < kLines) {
        ASSERT_TRUE(writer.flush());
        Input input = Input::Line;
        while ((input = reader.read(line)) == Input::Line) {
            ASSERT_EQ(line, "line " + std::to_string(count));
            ++count;
        }
        ASSERT_EQ(input, Input::Nothing);
    }
    EXPECT_EQ(writer.backlog(), 0U);
}

TEST_F(ChannelTest, dropsABacklogThatCanReachNobody) {
    Channel writer(std::move(pair.right), kLimit);
    { const Channel gone(std::move(reader)); }
    writer.send("a\n");
    EXPECT_FALSE(writer.flush());
    EXPECT_EQ(writer.error(), EPIPE);
    EXPECT_EQ(writer.backlog(), 0U);
    writer.send("b\n");
    EXPECT_EQ(writer.backlog(), 0U);
    EXPECT_FALSE(writer.flush());
}

TEST_F(ChannelTest, readsALineOfManyMegabytes) {
    constexpr std::size_t kBytes = 20'000'000;
    Pair other;
    Channel big(std::move(other.left), kBytes + 1);
    Channel writer(std::move(other.right), kLimit);
    writer.send(std::string(kBytes, 'y') + "\n");
    std::string line;
    Input input = Input::Nothing;
    while (input == Input::Nothing) {
        ASSERT_TRUE(writer.flush());
        input = big.read(line);
    }
    EXPECT_EQ(input, Input::Line);
    EXPECT_EQ(line.size(), kBytes);
}

} // namespace
