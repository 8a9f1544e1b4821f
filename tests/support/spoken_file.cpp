#include "tests/support/spoken_file.h"

#include "tests/support/process.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace zqm::support {

namespace fs = std::filesystem;

namespace {

// One that flite lacks it replaces by another, without a word.
bool isFliteVoice(const std::string& name) {
    std::istringstream names(runProcess("flite", {"-lv"}).output);
    const std::istream_iterator<std::string> first(names);
    return std::find(first, std::istream_iterator<std::string>(), name) !=
           std::istream_iterator<std::string>();
}

} // namespace

void writeSpokenFile(const std::string& command, const std::string& voice, const std::string& text,
                     const fs::path& file) {
    const std::size_t blank = voice.find(' ');
    const std::string family = voice.substr(0, blank);
    const std::string name = blank == std::string::npos ? "" : voice.substr(blank + 1);
    ProcessResult result;
    if (family == "flite" && isFliteVoice(name)) {
        result = runProcess("flite", {"-voice", name, "-t", text, "-o", file.string()});
    } else if (family == "espeak-ng") {
        result = runProcess(command, {"say", "--voice", name, "--output", file.string(), "--", text});
    } else {
        throw std::runtime_error(voice + ": there is no such voice");
    }
    if (!result.succeeded() || !fs::exists(file)) {
        throw std::runtime_error(voice + " doesn't say \"" + text + "\": " + result.errors + result.output);
    }
}

} // namespace zqm::support
