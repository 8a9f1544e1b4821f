// The completion of command lines, in the shells themselves, and the manual page, by the programs that show
// it.

#include "tests/cli/one_line.h"
#include "tests/cli/zqmspeech.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

using support::ProcessOptions;
using support::ProcessResult;
using support::runProcess;
using testing::Contains;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

using Words = std::set<std::string>;

// Answers what the shell offers where a command line ends.
class ShellCompletion : public testing::TestWithParam<const char*> {
protected:
    ShellCompletion() {
        std::ofstream(script_) << zqmspeech({"completion", GetParam()}).output;
        std::ofstream(folder_ / "a sound.wav") << "";
        std::filesystem::create_symlink(ZQMSPEECH_PROGRAM, folder_ / "zqmspeech");
    }

    Words complete(const std::string& line) const {
        ProcessOptions options = bareOptions();
        options.folder = folder_.path();
        options.environment["PATH"] = folder_.path().string() + ":/usr/bin:/bin";
        options.environment["HOME"] = folder_.path().string();
        options.environment["LC_ALL"] = "C.UTF-8";
        const ProcessResult result =
            runProcess(GetParam(), {"-c", kDrivers.at(GetParam()), script_.string(), line}, options);
        EXPECT_TRUE(result.succeeded()) << result.errors << result.output;
        EXPECT_EQ(result.errors, "");
        Words words;
        std::istringstream lines(result.output);
        for (std::string each; std::getline(lines, each);) {
            words.insert(each.substr(0, each.find('\t')));
        }
        return words;
    }

private:
    static const std::map<std::string, std::string> kDrivers;

    support::TemporaryFolder folder_;
    std::filesystem::path script_ = folder_ / "_zqmspeech";
};

// bash cuts a line into words before a function sees them, at = as well. zsh's functions only work while a
// line is edited: what they add is printed instead.
const std::map<std::string, std::string> ShellCompletion::kDrivers{
    {"bash", R"(. "$0"
line=$1
COMP_WORDS=()
for word in ${line//=/ = }; do COMP_WORDS+=("$word"); done
case $line in *' ' | *=) COMP_WORDS+=('') ;; esac
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
case $line in *=) COMP_CWORD=$((COMP_CWORD - 1)) unset "COMP_WORDS[-1]" ;; esac
_zqmspeech
printf '%s\n' "${COMPREPLY[@]}"
)"},
    {"zsh", R"(zmodload zsh/zpty
folder=${0:h}
line=$1
zpty shell zsh -f -i
zpty -w shell "PROMPT= TERM=dumb; fpath=(${(q)folder} \$fpath); autoload -Uz compinit; compinit -u -D
compadd() {
    local -a all
    if [[ \${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then builtin compadd \"\$@\"; return; fi
    builtin compadd -A all \"\$@\"
    builtin compadd \"\$@\"
    (( \$#all )) && print -l -- 'added:'\$^all
}
zle -C print-all list-choices print-all
print-all() { _main_complete; compstate[list]= ; compstate[insert]=; print 'all:over' }
bindkey '^X' print-all
print ready:yes"
zpty -r shell text $'*\nready:yes*'
zpty -n -w shell "$line"$'\x18'
zpty -r shell text '*all:over*'
zpty -d shell
for each in ${(f)text}; do
    each=${each//$'\r'/}
    [[ $each == *added:* ]] && print -r -- ${each##*added:}
done
exit 0
)"},
    {"fish", R"(source $argv[1]
complete -C $argv[2]
)"},
};

TEST_P(ShellCompletion, OffersTheCommands) {
    const Words words = complete("zqmspeech ");
    EXPECT_THAT(words,
                IsSupersetOf({"say", "listen", "voices", "voice", "phonemes", "completion", "manual-page"}));
    EXPECT_THAT(complete("zqmspeech voi"), ElementsAre("voice", "voices"));
}

TEST_P(ShellCompletion, OffersTheOptionsOfTheCommand) {
    EXPECT_THAT(complete("zqmspeech say --vo"), ElementsAre("--voice", "--volume"));
    const Words words = complete("zqmspeech listen say --");
    EXPECT_THAT(words, IsSupersetOf({"--once", "--timeout", "--json"}));
    EXPECT_THAT(words, Not(Contains("--voice")));
}

TEST_P(ShellCompletion, OffersFilesWhereTheyAreMeant) {
    EXPECT_THAT(complete("zqmspeech say -o a"), Contains("a sound.wav"));
    EXPECT_THAT(complete("zqmspeech listen --from a"), Contains("a sound.wav"));
    EXPECT_THAT(complete("zqmspeech say a"), Not(Contains("a sound.wav")));
    EXPECT_THAT(complete("zqmspeech say --rate "), Not(Contains("a sound.wav")));
}

TEST_P(ShellCompletion, OffersTheVoices) {
    EXPECT_THAT(complete("zqmspeech say --voice gmw/en-U"), ElementsAre("gmw/en-US", "gmw/en-US-nyc"));
    EXPECT_THAT(complete("zqmspeech voice gmw/en-U"), ElementsAre("gmw/en-US", "gmw/en-US-nyc"));
    EXPECT_THAT(complete("zqmspeech phonemes -v gmw/d"), Contains("gmw/de"));
}

TEST_P(ShellCompletion, OffersFormats) {
    EXPECT_THAT(complete("zqmspeech say --format fla"), ElementsAre("flac"));
}

TEST_P(ShellCompletion, OffersLanguagesGendersAndShells) {
    EXPECT_THAT(complete("zqmspeech voices --language en-U"), ElementsAre("en-US", "en-US-nyc"));
    EXPECT_THAT(complete("zqmspeech voices --gender "), ElementsAre("female", "male", "neuter"));
    EXPECT_THAT(complete("zqmspeech completion "), ElementsAre("bash", "fish", "zsh"));
}

INSTANTIATE_TEST_SUITE_P(All, ShellCompletion, testing::Values("bash", "zsh", "fish"),
                         [](const auto& shell) { return std::string(shell.param); });

TEST(BashCompletion, TakesValuesBehindAnEqualSign) {
    const ProcessResult result =
        runProcess("bash", {"-c", zqmspeech({"completion", "bash"}).output +
                                      "COMP_WORDS=(zqmspeech voices --gender = f) COMP_CWORD=4\n_zqmspeech\n"
                                      "printf '%s\\n' \"${COMPREPLY[@]}\"\n"
                                      "COMP_WORDS=(zqmspeech voices --gender =) COMP_CWORD=3\n_zqmspeech\n"
                                      "printf '%s\\n' \"${COMPREPLY[@]}\"\n"});
    EXPECT_EQ(result.output, "female\nmale\nfemale\nneuter\n") << result.errors;
}

TEST(Completion, OfAnotherShellIsRefused) {
    expectOneLine(zqmspeech({"completion", "tcsh"}), 2, "tcsh is not bash, zsh or fish");
    expectOneLine(zqmspeech({"completion"}), 2, "the shell is missing: bash, zsh or fish");
}

class ManualPage : public testing::Test {
protected:
    ManualPage() { std::ofstream(file) << zqmspeech({"manual-page"}).output; }

    support::TemporaryFolder folder;
    std::filesystem::path file = folder / "zqmspeech.1";
};

TEST_F(ManualPage, HasNothingToWarnOf) {
    const ProcessResult result =
        runProcess("groff", {"-man", "-Tutf8", "-ww", "-rCHECKSTYLE=3", "-z", file.string()});
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "");
}

TEST_F(ManualPage, IsShownAtAnyWidth) {
    for (const char* columns : {"40", "80", "200"}) {
        ProcessOptions options = bareOptions();
        options.environment["MANWIDTH"] = columns;
        options.environment["MAN_KEEP_FORMATTING"] = std::nullopt;
        options.environment["LC_ALL"] = "C.UTF-8";
        const ProcessResult result = runProcess("man", {"-l", "--warnings=w", file.string()}, options);
        EXPECT_TRUE(result.succeeded());
        EXPECT_EQ(result.errors, "") << columns;
        EXPECT_THAT(result.output, HasSubstr("--fallback FILE")) << columns;
        EXPECT_THAT(result.output, ContainsRegex("zqmspeech listen \\[OPTIONS\\][ \n]+COMMAND\\.\\.\\."))
            << columns;
    }
}

} // namespace
} // namespace zqm::tests
