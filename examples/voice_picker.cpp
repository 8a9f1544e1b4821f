// Lists the voices of a language, reads the number of one of them, and has it say what it is.
//
//     voice_picker PLUGIN LANGUAGE [FILE]     LANGUAGE: as "en" or "pt_BR"; FILE: a sound file, instead of
//     aloud

#include "common.h"

#include <exception>
#include <iomanip>
#include <iostream>

using namespace examples;

namespace {

std::vector<Object> voicesOf(Runtime& runtime, const std::string& language) {
    std::vector<Object> voices;
    const Array all(runtime.callShared("NSSpeechSynthesizerZQM", "availableVoices").asObject());
    for (const Value& identifier : all.values()) {
        Object voice =
            runtime.callShared("NSSpeechSynthesizerZQM", "attributesForVoice", identifier).asObject();
        if (voice.call("LocaleIdentifier").asText().starts_with(language)) {
            voices.push_back(std::move(voice));
        }
    }
    return voices;
}

void print(std::size_t number, Object& voice) {
    std::cout << std::setw(3) << number << "  " << voice.call("LocaleIdentifier").asText() << "  "
              << voice.call("Name").asText() << '\n';
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 3) {
        throw Error("usage: voice_picker PLUGIN LANGUAGE [FILE]");
    }
    Runtime runtime;
    load(runtime, argv[1]);
    std::vector<Object> voices = voicesOf(runtime, argv[2]);
    if (voices.empty()) {
        throw Error(std::string("there is no voice of the language ") + argv[2]);
    }
    for (std::size_t index = 0; index < voices.size(); ++index) {
        print(index + 1, voices[index]);
    }
    std::cout << "Number: " << std::flush;
    std::size_t number = 0;
    if (!(std::cin >> number) || number < 1 || number > voices.size()) {
        throw Error("that is no number from 1 to " + std::to_string(voices.size()));
    }
    Object& voice = voices[number - 1];
    const std::string text = voice.call("DemoText").asText();
    std::cout << text << std::endl;
    Object speaker = runtime.construct("NSSpeechSynthesizerZQM", voice.call("Identifier"));
    speak(runtime, speaker, text, argc > 3 ? argv[3] : "");
} catch (const std::exception& error) {
    std::cerr << "voice_picker: " << error.what() << '\n';
    return 1;
}
