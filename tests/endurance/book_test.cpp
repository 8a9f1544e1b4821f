// A book is read into a file: the host program and its engine hold the text, and nothing that grows with what
// was spoken of it.

#include "tests/endurance/holdings.h"
#include "tests/support/sibling_library.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>
#include <zqmhost/zqmhost.h>

namespace zqm::endurance {
namespace {

// ZQM_BOOK_WORDS=1000000 reads a whole book, which takes long, and as a WAV file would be too large.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kWords = 3'000; // the engine's work takes many times as long there
#else
constexpr std::size_t kWords = 30'000;
#endif
constexpr host::Seconds kPatience{4.0 * 60 * 60};

// Neither process may grow by more once it speaks, however long the book. The one holds the engine's messages
// that it has not looked at yet, the other those that are not on their way and the sound of a sentence or
// two.
constexpr std::size_t kHostGrowth = 1 << 20;
constexpr std::size_t kEngineGrowth = 4 << 20;

// The first part of so many ends with a place that the engine tells of by a message: there every cache is
// full.
constexpr std::size_t kPartsOfBook = 20;

std::size_t wordsOfTheBook() {
    std::size_t words = kWords;
    if (const char* wanted = std::getenv("ZQM_BOOK_WORDS"); wanted != nullptr) {
        const std::string_view number = wanted;
        std::from_chars(number.data(), number.data() + number.size(), words);
    }
    return words;
}

// Prose in sentences and paragraphs of various lengths, with numbers that are new again and again.
std::string book(std::size_t words) {
    constexpr std::string_view kProse[] = {
        "It was late in the year when the last of the ships came home.",
        "Nobody had expected her, least of all the harbour master; he put down his cup and looked again!",
        "\"Is that you?\" she asked.",
        ("The letter, which had been opened and closed more than once, said little about the journey and "
         "nothing about the money, the weather or the reasons why they had left in such a hurry."),
        "He didn't answer.",
        "On page {} you will find what they saw next.\n\n"};
    std::string text;
    std::size_t count = 0;
    bool hasPlace = false;
    for (std::size_t sentence = 0; count < words; ++sentence) {
        std::string next(kProse[sentence % std::size(kProse)]);
        if (const std::size_t number = next.find("{}"); number != std::string::npos) {
            next.replace(number, 2, std::to_string(sentence));
        }
        count += 1 + static_cast<std::size_t>(std::ranges::count(next, ' '));
        text += next + ' ';
        if (!hasPlace && count >= words / kPartsOfBook) {
            text += "[[sync 0x61]]";
            hasPlace = true;
        }
    }
    return text;
}

class Book : public testing::Test {
protected:
    Book() {
        support::loadPlugin(runtime, ZQM_PLUGIN);
        object = runtime.construct("NSSpeechSynthesizerZQM", "gmw/en-US");
    }
    void TearDown() override { EXPECT_TRUE(runtime.reports().empty()); }

    bool start() {
        object.on("didFinishSpeaking",
                  [this](const host::Arguments& end) { ends.push_back(end[0].asBool()); });
        object.on("didEncounterSyncMessage", [this](const host::Arguments&) { isAtPlace = true; });
        return object.call("startSpeakingString", text, "file://" + file.string()).asBool();
    }

    bool waitForPlace() {
        return runtime.runUntil([this] { return isAtPlace; }, kPatience);
    }

    support::TemporaryFolder folder;
    std::filesystem::path file = folder / "book.flac";
    host::Runtime runtime;
    host::Object object;
    std::string text = book(wordsOfTheBook());
    bool isAtPlace = false;
    std::vector<bool> ends;
};

TEST_F(Book, IsReadInMemoryThatDoesNotGrow) {
    const std::size_t before = allocatedBytes();
    ASSERT_TRUE(start());
    // The engine that told the voices may still be ending; it is reaped when something is asked.
    std::vector<pid_t> engines;
    ASSERT_TRUE(runtime.runUntil(
        [&] {
            object.get("isSpeaking");
            engines = support::childrenOfThisProcess();
            return engines.size() == 1;
        },
        kPatience));
    ASSERT_TRUE(waitForPlace());
    ASSERT_TRUE(ends.empty());
    const std::size_t hostBytes = allocatedBytes();
    const std::size_t enginePages = residentPagesOf(engines.front());
    std::size_t mostHostBytes = hostBytes;
    std::size_t mostEnginePages = enginePages;
    ASSERT_TRUE(runtime.runUntil(
        [&] {
            mostHostBytes = std::max(mostHostBytes, allocatedBytes());
            mostEnginePages = std::max(mostEnginePages, residentPagesOf(engines.front()));
            return !ends.empty();
        },
        kPatience));
    EXPECT_TRUE(ends.front());
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    RecordProperty("textBytes", std::to_string(text.size()));
    RecordProperty("hostBytes", std::to_string(before) + " before, " + std::to_string(hostBytes) +
                                    ", at most " + std::to_string(mostHostBytes));
    RecordProperty("engineBytes", std::to_string(enginePages * page) + ", at most " +
                                      std::to_string(mostEnginePages * page));
    EXPECT_LT(mostHostBytes, hostBytes + kHostGrowth);
#if !defined(__SANITIZE_ADDRESS__)
    EXPECT_LT((mostEnginePages - enginePages) * page, kEngineGrowth);
#endif
}

// Of a book that is long enough for a busy machine, too, to stop it before its end.
TEST_F(Book, IsStoppedInTheMiddle) {
    text = book(std::max(wordsOfTheBook(), 10 * kWords));
    ASSERT_TRUE(start());
    ASSERT_TRUE(waitForPlace());
    ASSERT_TRUE(ends.empty());
    const auto begin = std::chrono::steady_clock::now();
    object.call("stopSpeaking");
    const auto answered = std::chrono::steady_clock::now();
    ASSERT_TRUE(runtime.runUntil([&] { return !ends.empty(); }, kPatience));
    const auto told = std::chrono::steady_clock::now();
    EXPECT_FALSE(ends.front());
    EXPECT_GT(std::filesystem::file_size(file),
              text.size()); // so much of a book is too much sound to be read whole
    const auto milliseconds = [&](auto time) {
        return std::to_string(std::chrono::duration<double, std::milli>(time - begin).count());
    };
    RecordProperty("millisecondsToAnswer", milliseconds(answered));
    RecordProperty("millisecondsToEnd", milliseconds(told));
}

} // namespace
} // namespace zqm::endurance
