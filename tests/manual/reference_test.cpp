// docs/reference is what the library declares now, with prose for every member; and it can't be made
// otherwise.

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;
using support::ProcessResult;
using testing::HasSubstr;

const fs::path kDocuments = fs::path(ZQM_SOURCE_FOLDER) / "docs";

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

// What the library declares, asked once.
const std::string& declared() {
    static const std::string json = [] {
        const ProcessResult result =
            support::runProcess(ZQMSPEECH_PROGRAM, {"inspect", ZQM_PLUGIN, "--json"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result.output;
    }();
    return json;
}

class Reference : public testing::Test {
protected:
    Reference() {
        write(records, declared());
        fs::copy(kDocuments / "reference-prose", prose);
        fs::copy(kDocuments / "reference", pages);
    }

    static void write(const fs::path& file, const std::string& text) { std::ofstream(file) << text; }

    // Puts other words in the place of the first of these.
    static void replace(const fs::path& file, const std::string& words, const std::string& others) {
        std::string text = contentOf(file);
        const std::size_t at = text.find(words);
        ASSERT_NE(at, std::string::npos) << words;
        write(file, text.replace(at, words.size(), others));
    }

    ProcessResult make(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments{"--records",    records.string(), "--prose",
                                           prose.string(), "--reference",    pages.string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return support::runProcess(ZQM_SOURCE_FOLDER "/scripts/manual", arguments);
    }

    void expectProblem(const std::string& problem) const {
        const ProcessResult result = make();
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.errors, HasSubstr(problem));
        EXPECT_THAT(result.errors, testing::Not(HasSubstr("Traceback")));
    }

    const support::TemporaryFolder folder;
    const fs::path records = folder / "records.json";
    const fs::path prose = folder / "prose";
    const fs::path pages = folder / "pages";
    const fs::path voice = prose / "NSVoiceZQM.md";
};

TEST_F(Reference, IsCurrent) {
    const ProcessResult result = make({"--check"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
}

TEST_F(Reference, IsMadeAnew) {
    fs::remove_all(pages);
    ASSERT_EQ(make().exitCode, 0);
    for (const char* page :
         {"NSSpeechRecognizerZQM.md", "NSSpeechSynthesizerZQM.md", "NSVoiceZQM.md", "README.md"}) {
        EXPECT_EQ(contentOf(pages / page), contentOf(kDocuments / "reference" / page));
    }
}

TEST_F(Reference, IsNotCurrentOnceAnythingChanges) {
    replace(voice, "The name of the voice", "What the voice is called");
    const ProcessResult changed = make({"--check"});
    EXPECT_EQ(changed.exitCode, 1);
    EXPECT_THAT(changed.errors, HasSubstr("NSVoiceZQM.md is not current: run scripts/manual."));
    ASSERT_EQ(make().exitCode, 0);
    EXPECT_EQ(make({"--check"}).exitCode, 0);

    replace(records, R"("declaration": "Age() as Integer")", R"("declaration": "Age() as Double")");
    EXPECT_EQ(make({"--check"}).exitCode, 1);
    ASSERT_EQ(make().exitCode, 0);

    write(pages / "NSOtherZQM.md", "A page of no class.");
    EXPECT_EQ(make({"--check"}).exitCode, 1);
    ASSERT_EQ(make().exitCode, 0);
    EXPECT_FALSE(fs::exists(pages / "NSOtherZQM.md"));
}

TEST_F(Reference, NeedsProseForEachMember) {
    replace(records, R"("name": "GenderFemale")", R"("name": "GenderOther")");
    expectProblem("NSVoiceZQM: GenderOther() has no prose.");
    expectProblem("NSVoiceZQM: there is no member GenderFemale(), of which the prose tells.");
}

TEST_F(Reference, TellsOverloadsApart) {
    replace(prose / "NSSpeechSynthesizerZQM.md", "### Constructor(String)", "### Constructor(Integer)");
    expectProblem("NSSpeechSynthesizerZQM: Constructor(String) has no prose.");
}

TEST_F(Reference, NeedsProseForEachClass) {
    fs::remove(voice);
    expectProblem("NSVoiceZQM.md is missing.");
    write(voice, "");
    expectProblem("NSVoiceZQM.md is empty.");
    fs::copy(kDocuments / "reference-prose" / "NSVoiceZQM.md", prose / "NSOtherZQM.md");
    expectProblem("NSOtherZQM.md is of no class.");
}

TEST_F(Reference, NeedsMeaningErrorsAndAnExample) {
    const std::string name = "### Name()\n\nThe name of the voice, for people: \"English (America)\".\n\n";
    const std::string example = "```\nPopupMenu1.AddRow(info.Name)\n```\n";
    replace(voice, name, "### Name()\n\n");
    expectProblem("NSVoiceZQM: nothing says what Name() means.");
    replace(voice, example, "");
    expectProblem("NSVoiceZQM: Name() has no example.");
    replace(voice, "### Name()\n", "### Name()\n\n```\nPopupMenu1.AddRow(info.Title)\n```\n");
    expectProblem("NSVoiceZQM: the example of Name() doesn't show it.");
    replace(voice, "**Errors:** an attribute", "An attribute");
    expectProblem("NSVoiceZQM: nothing says how Name() fails.");
}

TEST_F(Reference, NamesWhatExists) {
    replace(voice, "`GenderFemale`, `GenderMale`", "`NSVoiceGenderFemale`, `GenderMale`");
    expectProblem("under Gender() the prose names NSVoiceGenderFemale, which does not exist.");
    replace(prose / "NSSpeechSynthesizerZQM.md", "## Keys of a speech dictionary", "## Keys of a word list");
    expectProblem(
        "under addSpeechDictionary(Dictionary) the prose links to #keys-of-a-speech-dictionary, which does "
        "not exist.");
}

TEST_F(Reference, TellsOfEachMemberOnce) {
    replace(voice, "### Age()", "### Name()");
    expectProblem("NSVoiceZQM: the prose tells twice of Name().");
    expectProblem("NSVoiceZQM: several headings are linked to as #name.");
}

TEST_F(Reference, SaysWhatItCannotRead) {
    write(records, "{");
    expectProblem("records.json: ");
    for (const char* other : {"{}", "[]", R"({"classes":[{"name":"NSVoiceZQM"}]})"}) {
        write(records, other);
        expectProblem("records.json: this is not what `zqmspeech inspect --json` prints.");
    }
    fs::remove(records);
    expectProblem("records.json");
}

} // namespace
} // namespace zqm::tests
