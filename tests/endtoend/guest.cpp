// A host program as a library, to be loaded by guest_process beside other libraries. What the plugin does in
// such a process goes to standard output, a line each.

#include "tests/speech/documented_constants.h"
#include "tests/support/command_listener.h"
#include "tests/support/sibling_library.h"
#include "zqmhost/zqmhost.h"

#include <exception>
#include <iostream>
#include <string>

namespace {

using zqm::host::Arguments;
using zqm::host::Object;
using zqm::host::Runtime;

constexpr zqm::host::Seconds kDeadline{300};

void tellConstants(Runtime& runtime) {
    for (const DocumentedConstant& row : kDocumentedConstants) {
        std::cout << row.constant << ' ' << runtime.callShared(row.className, row.method).asText() << '\n';
    }
}

void tellVoice(Runtime& runtime) {
    Object voice = runtime.callShared("NSSpeechSynthesizerZQM", "attributesForVoice", "gmw/en-US").asObject();
    std::cout << voice.call("Name").asText() << ' ' << voice.call("LocaleIdentifier").asText() << '\n';
}

void speak(Runtime& runtime, const std::string& file) {
    Object synthesizer = runtime.create("NSSpeechSynthesizerZQM");
    synthesizer.call("Constructor");
    bool isOver = false;
    synthesizer.on("willSpeakWord", [](const Arguments& word) {
        std::cout << "word " << word[0].asInteger() << ' ' << word[1].asInteger() << '\n';
    });
    synthesizer.on("didFinishSpeaking", [&](const Arguments& end) {
        std::cout << "finished " << end[0].asBool() << '\n';
        isOver = true;
    });
    const bool began = synthesizer.call("startSpeakingString", "Open the window", "file://" + file).asBool();
    std::cout << "began " << began << '\n';
    runtime.runUntil([&] { return isOver; }, kDeadline);
}

void listen(Runtime& runtime, const std::string& file) {
    zqm::support::CommandListener listener(runtime, {"open the window", "close the door"});
    ZQMPlatformListenToFile(file.c_str());
    listener.start();
    runtime.runUntil([&] { return listener.timesEnded() > 0; }, kDeadline);
    for (const std::string& command : listener.commands()) {
        std::cout << "heard " << command << '\n';
    }
}

} // namespace

// The file is written and listened to. False: something was thrown.
extern "C" __attribute__((visibility("default"))) bool zqmBeGuest(const char* plugin, const char* file) {
    try {
        Runtime runtime;
        zqm::support::loadPlugin(runtime, plugin);
        tellConstants(runtime);
        tellVoice(runtime);
        speak(runtime, file);
        listen(runtime, file);
        std::cout << "reports " << runtime.reports().size() << '\n';
        return true;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return false;
    }
}
