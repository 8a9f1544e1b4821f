#include "tests/faults/program.h"

#include "tests/support/command_listener.h"
#include "tests/support/process_table.h"
#include "tests/support/sound_file.h"
#include "tests/support/spoken_phrases.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <iostream>
#include <sys/mman.h>
#include <system_error>

namespace zqm::faults {

namespace {

constexpr const char* kCommand = "open the window";
constexpr std::size_t kKinds = 4; // of Seen

} // namespace

std::string veryLongText() {
    constexpr int kSentences = 20000;
    std::string text;
    for (int sentence = 0; sentence < kSentences; ++sentence) {
        text += "This is a sentence that takes its time. ";
    }
    return text;
}

std::string sentences(int count) {
    std::string text;
    for (int sentence = 0; sentence < count; ++sentence) {
        text += std::string(kText) + ' ';
    }
    return text;
}

std::vector<pid_t> engines() {
    std::vector<pid_t> running = support::childrenThatRun("zqmspeech-engine");
    std::erase_if(running, [](pid_t engine) { return !support::isAlive(engine); });
    return running;
}

ScopedLimit::ScopedLimit(__rlimit_resource resource, rlim_t most, pid_t process)
    : resource_(resource), process_(process) {
    ::prlimit(process_, resource_, nullptr, &before_);
    const rlimit limits{most, before_.rlim_max};
    if (::prlimit(process_, resource_, &limits, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "prlimit");
    }
}

ScopedLimit::~ScopedLimit() {
    ::prlimit(process_, resource_, &before_, nullptr); // of a process that is gone, nothing
}

Tally::Tally(std::string what)
    : what_(std::move(what)),
      counts_(static_cast<int*>(::mmap(nullptr, kKinds * sizeof(int), PROT_READ | PROT_WRITE,
                                       MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}

Tally::~Tally() {
    std::cout << what_ << ": " << of(Seen::Refused) << " refused, " << of(Seen::EndedEarly)
              << " ended early, " << of(Seen::HeardNothing) << " heard nothing, " << of(Seen::Completed)
              << " completed\n";
    ::munmap(counts_, kKinds * sizeof(int));
}

void Tally::add(Seen seen) {
    ++counts_[static_cast<int>(seen)];
}

int Tally::failures() const {
    return of(Seen::Refused) + of(Seen::EndedEarly) + of(Seen::HeardNothing);
}

int Tally::of(Seen seen) const {
    return counts_[static_cast<int>(seen)];
}

Program::Program() {
    live::loadPlugin(runtime);
}

Program::~Program() {
    for (const host::Report& report : runtime.reports()) {
        ADD_FAILURE() << nameOf(report.kind) << ": " << report.text;
    }
    EXPECT_TRUE(runtime.takeRaised().empty());
}

Seen Program::speak(const std::string& name, const Fault& fault, const std::string& text) {
    const std::filesystem::path file = folder / name;
    Seen seen = Seen::Refused;
    {
        const std::shared_ptr<void> held = fault();
        live::Speaker speaker(runtime);
        if (speaker.startToFile(text, file)) {
            EXPECT_TRUE(runtime.runUntil([&] { return speaker.finished().has_value(); }, kPatience));
            EXPECT_EQ(speaker.timesFinished(), 1U);
            seen = speaker.finished() == true ? Seen::Completed : Seen::EndedEarly;
        }
        EXPECT_FALSE(speaker.object().get("isSpeaking").asBool());
    }
    if (seen == Seen::Completed) {
        EXPECT_TRUE(std::filesystem::exists(file));
        EXPECT_GT(support::SoundFile(file).seconds(), 0);
        std::filesystem::remove(file);
    }
    expectEmptyFolder();
    expectNoEngine();
    return seen;
}

void Program::expectWorks() {
    {
        live::Speaker speaker(runtime);
        expectWorks(speaker);
    }
    expectNoEngine();
    rememberWhatIsHeld();
}

// NOLINTNEXTLINE(readability-make-member-function-const): the program does something
void Program::expectWorks(live::Speaker& speaker) {
    const std::filesystem::path file = folder / "works.wav";
    ASSERT_TRUE(speaker.startToFile(kText, file));
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
    EXPECT_EQ(speaker.words().size(), kWordsOfText);
    EXPECT_GT(support::SoundFile(file).seconds(), 1);
    std::filesystem::remove(file);
    expectEmptyFolder();
}

Seen Program::listen(const Fault& fault) {
    const support::TemporaryFolder sounds;
    const std::filesystem::path file = sounds / "command.wav";
    support::writeSpokenPhrases({kCommand}, file);
    Seen seen = Seen::Completed;
    {
        const std::shared_ptr<void> held = fault();
        support::CommandListener listener(runtime, {kCommand, "close the door"});
        ZQMPlatformListenToFile(file.c_str());
        listener.start();
        ZQMPlatformListenToFile(nullptr);
        const auto isOver = [&] { return listener.timesEnded() > 0; };
        const auto isGivenUp = [&] {
            return !listener.failures().empty() && listener.failures().back().starts_with(file.string());
        };
        EXPECT_TRUE(runtime.runUntil([&] { return isOver() || isGivenUp(); }, kPatience));
        if (listener.commands().empty()) {
            seen = isGivenUp() ? Seen::EndedEarly : Seen::HeardNothing;
        } else {
            EXPECT_EQ(listener.commands(), std::vector<std::string>{kCommand});
        }
    }
    expectNoEngine();
    return seen;
}

void Program::expectHears() {
    EXPECT_EQ(listen([] { return nullptr; }), Seen::Completed);
    rememberWhatIsHeld();
}

void Program::expectNoEngine() {
    EXPECT_TRUE(runtime.runUntil(
        [&] {
            live::Speaker(runtime).start(""); // those that ended are reaped by later calls
            return support::childrenOfThisProcess().size() ==
                   support::childrenThatRun("pulseaudio").size(); // which is a test's
        },
        kPatience));
    if (held_) {
        EXPECT_LE(support::openDescriptors(), *held_);
    }
}

void Program::rememberWhatIsHeld() {
    if (!held_) {
        held_ = support::openDescriptors();
    }
}

void Program::expectEmptyFolder() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        ADD_FAILURE() << entry.path();
    }
}

} // namespace zqm::faults
