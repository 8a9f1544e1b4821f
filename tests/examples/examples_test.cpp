#include "tests/support/process.h"
#include "tests/support/sound_file.h"
#include "tests/support/spoken_phrases.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::examples {
namespace {

namespace fs = std::filesystem;
using support::ProcessResult;
using testing::ElementsAre;
using testing::HasSubstr;

ProcessResult run(const std::string& example, std::vector<std::string> arguments,
                  const std::string& input = {}) {
    arguments.insert(arguments.begin(), ZQM_PLUGIN);
    return support::runProcess(std::string(ZQM_EXAMPLES) + "/" + example, arguments, {.input = input});
}

std::string contentOf(const fs::path& file) {
    std::ostringstream content;
    content << std::ifstream(file).rdbuf();
    return content.str();
}

class Examples : public testing::Test {
protected:
    void expectSound() const {
        const support::SoundFile heard(sound);
        EXPECT_GT(heard.seconds(), 0.4);
        EXPECT_GT(support::rms(heard.samples), 0.01);
    }

    support::TemporaryFolder folder;
    fs::path sound = folder / "speech.wav";
};

TEST_F(Examples, SayWhatIsWrong) {
    for (const char* example :
         {"audio_book", "hello", "highlight", "lip_sync", "spoken_menu", "voice_picker"}) {
        const ProcessResult usage = support::runProcess(std::string(ZQM_EXAMPLES) + "/" + example, {});
        EXPECT_EQ(usage.exitCode, 1) << example;
        EXPECT_THAT(usage.errors,
                    testing::StartsWith(std::string(example) + ": usage: " + example + " PLUGIN"));
    }
    const ProcessResult noPlugin = support::runProcess(ZQM_EXAMPLES "/hello", {"/nonexistent.so"});
    EXPECT_EQ(noPlugin.exitCode, 1);
    EXPECT_EQ(noPlugin.errors, "hello: there is no plugin /nonexistent.so\n");
    const ProcessResult noFolder = run("hello", {"/nonexistent/hello.wav"});
    EXPECT_EQ(noFolder.exitCode, 1);
    EXPECT_THAT(noFolder.errors, HasSubstr("hello: the speech could not be started"));
}

TEST_F(Examples, HelloSpeaksIntoAFileAndPrintsItsWords) {
    const ProcessResult result = run("hello", {sound});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "Hello\nworld\n");
    EXPECT_EQ(result.errors, "");
    expectSound();
}

TEST_F(Examples, HighlightMarksEachWordWhateverItsLetters) {
    const ProcessResult result = run("highlight", {"Füchse 😀 run", sound});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "[Füchse] 😀 run\nFüchse [😀] run\nFüchse 😀 [run]\n");
    expectSound();
}

TEST_F(Examples, VoicePickerHasThePickedVoiceSpeak) {
    const ProcessResult result = run("voice_picker", {"pt", sound}, "2\n");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, testing::MatchesRegex("  1  pt  Portuguese \\(Portugal\\)\n"
                                                     "  2  pt_BR  Portuguese \\(Brazil\\)\n"
                                                     "Number: .+\n"));
    expectSound();
}

TEST_F(Examples, VoicePickerTakesNoOtherNumber) {
    for (const char* number : {"0", "3", "many"}) {
        const ProcessResult result = run("voice_picker", {"pt", sound}, number);
        EXPECT_EQ(result.exitCode, 1) << number;
        EXPECT_EQ(result.errors, "voice_picker: that is no number from 1 to 2\n") << number;
    }
    EXPECT_EQ(run("voice_picker", {"xx"}).errors, "voice_picker: there is no voice of the language xx\n");
    EXPECT_FALSE(fs::exists(sound));
}

TEST_F(Examples, SpokenMenuFollowsWhatIsSaid) {
    support::writeSpokenPhrases(
        {"next drink", "what a lovely day", "next drink", "previous drink", "order it"}, sound);
    const ProcessResult result = run("spoken_menu", {sound});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, " >tea  coffee  cocoa  water\n"
                             "  tea >coffee  cocoa  water\n"
                             "  tea  coffee >cocoa  water\n"
                             "  tea >coffee  cocoa  water\n"
                             "One coffee, please.\n");
}

TEST_F(Examples, SpokenMenuEndsWithTheFile) {
    support::writeSpokenPhrases({"next drink"}, sound);
    const ProcessResult result = run("spoken_menu", {sound});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "spoken_menu: nothing was ordered\n");
    EXPECT_THAT(run("spoken_menu", {"/nonexistent.wav"}).errors,
                HasSubstr("spoken_menu: /nonexistent.wav: No such file or directory"));
}

TEST_F(Examples, LipSyncCoversTheSoundWithShapes) {
    const ProcessResult result = run("lip_sync", {"Pa ma", sound});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    std::istringstream lines(result.output);
    std::vector<std::string> shapes;
    double end = 0;
    std::string shape;
    for (double begin = 0, until = 0; lines >> begin >> until >> shape; end = until) {
        EXPECT_EQ(begin, end);
        EXPECT_LT(begin, until);
        shapes.push_back(shape);
    }
    EXPECT_THAT(shapes, ElementsAre("rest", "closed", "open", "closed", "open", "rest"));
    EXPECT_NEAR(end, support::SoundFile(sound).seconds(), 0.001);
}

TEST_F(Examples, AudioBookHasACueForEachSentence) {
    const fs::path book = folder / "book.txt";
    std::ofstream(book)
        << "There was a fox (a red one). It was 3.5 years\nold!\n\nChapter two\n\n\"Füchsin\" 😀 said: no.\n";
    const ProcessResult result = run("audio_book", {book, sound});
    EXPECT_EQ(result.exitCode, 0) << result.errors;

    std::istringstream cues(contentOf(folder / "speech.srt"));
    std::vector<std::string> texts;
    std::string end = "00:00:00,000";
    std::string number;
    std::string begin;
    std::string arrow;
    std::string until;
    std::string text;
    while (cues >> number >> begin >> arrow >> until && std::getline(cues >> std::ws, text)) {
        EXPECT_EQ(number, std::to_string(texts.size() + 1));
        EXPECT_EQ(begin, end);
        EXPECT_EQ(arrow, "-->");
        EXPECT_LT(begin, until);
        end = until;
        texts.push_back(text);
    }
    EXPECT_THAT(texts, ElementsAre("There was a fox (a red one).", "It was 3.5 years old!", "Chapter two",
                                   "\"Füchsin\" 😀 said: no."));
    EXPECT_NEAR(std::stod(end.substr(6, 2) + "." + end.substr(9)), support::SoundFile(sound).seconds(),
                0.001);
}

TEST_F(Examples, AudioBookNeedsAText) {
    const ProcessResult result = run("audio_book", {"/nonexistent.txt", sound});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "audio_book: there is no text in /nonexistent.txt\n");
    EXPECT_FALSE(fs::exists(folder / "speech.srt"));
}

} // namespace
} // namespace zqm::examples
