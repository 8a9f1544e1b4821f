#include "cli/text/text_input.h"

#include "cli/command_line/failure.h"
#include "tests/support/small_stack.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace zqm::cli {
namespace {

using testing::HasSubstr;

TextOptions withText(std::string text) {
    TextOptions options;
    options.text = std::move(text);
    return options;
}

TextOptions withFile(const std::filesystem::path& path) {
    TextOptions options;
    options.input = path.string();
    return options;
}

std::filesystem::path write(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

std::string complaintAbout(const TextOptions& options) {
    try {
        readText(options);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "none";
}

TEST(TextInput, ArgumentsAreTakenAsTheyStand) {
    EXPECT_EQ(readText(withText("Grüße, 世界 👋🏽\n")), "Grüße, 世界 👋🏽\n");
}

TEST(TextInput, FilesAreReadWhole) {
    const support::TemporaryFolder folder;
    std::string text;
    for (int line = 0; text.size() < 300000; ++line) {
        text += "line " + std::to_string(line) + "\n";
    }
    EXPECT_EQ(readText(withFile(write(folder / "a file, ü.txt", text))), text);
}

TEST(TextInput, FilesAreReadOnASmallStack) {
    const support::TemporaryFolder folder;
    const TextOptions options = withFile(write(folder / "text.txt", "hello"));
    support::runOnSmallStack([&] { EXPECT_EQ(readText(options), "hello"); });
}

TEST(TextInput, AZeroByteIsPartOfTheText) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(readText(withText(text)), text);
}

TEST(TextInput, AByteOrderMarkIsLeftOut) {
    EXPECT_EQ(readText(withText("\xEF\xBB\xBFHello")), "Hello");
    EXPECT_EQ(readText(withText("Hello \xEF\xBB\xBF")), "Hello \xEF\xBB\xBF");
}

TEST(TextInput, WhatCannotBeReadIsSaid) {
    const support::TemporaryFolder folder;
    EXPECT_EQ(complaintAbout(withFile(folder / "none")),
              "can't read " + (folder / "none").string() + ": No such file or directory");
    EXPECT_EQ(complaintAbout(withFile(folder.path())),
              "can't read " + folder.path().string() + ": Is a directory");
}

TEST(TextInput, AnEndlessFileIsRefused) {
    EXPECT_EQ(complaintAbout(withFile("/dev/zero")), "/dev/zero is longer than 134217728 bytes");
}

class TextInputBlank : public testing::TestWithParam<const char*> {};

TEST_P(TextInputBlank, IsRefused) {
    const std::string why = " has nothing but white space";
    EXPECT_EQ(complaintAbout(withText(GetParam())), "there is nothing to speak: the text" + why);
    const support::TemporaryFolder folder;
    const auto path = write(folder / "blank", GetParam());
    EXPECT_EQ(complaintAbout(withFile(path)), "there is nothing to speak: " + path.string() + why);
}

INSTANTIATE_TEST_SUITE_P(All, TextInputBlank,
                         testing::Values(" ", "\n", "\r\n\t ", "\xEF\xBB\xBF\n", "\u00A0\u2003\u3000\u2029"));

class TextInputEmpty : public testing::TestWithParam<const char*> {};

TEST_P(TextInputEmpty, IsRefused) {
    EXPECT_EQ(complaintAbout(withText(GetParam())), "there is nothing to speak: the text is empty");
    const support::TemporaryFolder folder;
    const auto path = write(folder / "empty", GetParam());
    EXPECT_EQ(complaintAbout(withFile(path)), "there is nothing to speak: " + path.string() + " is empty");
}

INSTANTIATE_TEST_SUITE_P(All, TextInputEmpty, testing::Values("", "\xEF\xBB\xBF"));

struct Invalid {
    std::string bytes;
    std::size_t offset;
};

class TextInputInvalid : public testing::TestWithParam<Invalid> {};

TEST_P(TextInputInvalid, IsRefusedWithTheOffset) {
    EXPECT_EQ(complaintAbout(withText(GetParam().bytes)),
              "the text is not valid UTF-8 at byte " + std::to_string(GetParam().offset));
}

INSTANTIATE_TEST_SUITE_P(
    All, TextInputInvalid,
    testing::Values(Invalid{"\xFF", 0}, Invalid{"a\x80", 1}, Invalid{"ab\xC3", 2}, Invalid{"gr\xFC\xDF e", 2},
                    Invalid{"ü\xC0\x80", 2}, Invalid{"\xED\xA0\x80", 0}, Invalid{"a\xF4\x90\x80\x80", 1},
                    Invalid{"\xE4\xB8", 0}, Invalid{"世\xE4\xB8 x", 3}, Invalid{"\xF0\x9F\x91", 0},
                    Invalid{std::string("\xFF\xFEH\0i\0", 6), 0}, Invalid{"x\xE0\x80\xAF", 1}));

TEST(TextInput, TenMegabytesAreTaken) {
    std::string text;
    while (text.size() < 10'000'000) {
        text += "many words ";
    }
    EXPECT_EQ(readText(withText(text)).size(), text.size());
}

} // namespace
} // namespace zqm::cli
