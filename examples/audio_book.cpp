// Reads a text to a sound file, with subtitles beside it (SubRip, as most players read): a cue for each
// sentence.
//
//     audio_book PLUGIN TEXT-FILE SOUND-FILE     the subtitles have the sound file's name, and end in .srt

#include "common.h"

#include <zqmplatform/speaking.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>

using namespace examples;

namespace {

std::string contentOf(const std::string& file) {
    std::ostringstream text;
    if (!(text << std::ifstream(file).rdbuf())) {
        throw Error("there is no text in " + file);
    }
    return text.str();
}

std::string clock(double seconds) {
    const long milliseconds = std::lround(seconds * 1000);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02ld:%02ld:%02ld,%03ld", milliseconds / 3600000,
                  milliseconds / 60000 % 60, milliseconds / 1000 % 60, milliseconds % 1000);
    return text.data();
}

// Of a word and what follows it up to the next one: a mark ends the sentence when a blank follows it at once,
// or after quotes and the like; so does an empty line.
bool endsSentence(std::string_view word) {
    const std::size_t mark = word.find_last_of(".!?");
    const std::size_t blank = mark == std::string_view::npos ? mark : word.find_first_of(" \n", mark);
    const auto isLetterOrDigit = [](char byte) {
        return std::isalnum(static_cast<unsigned char>(byte)) != 0;
    };
    return word.find("\n\n") != std::string_view::npos ||
           (blank != std::string_view::npos &&
            std::none_of(word.begin() + mark, word.begin() + blank, isLetterOrDigit));
}

std::string onOneLine(const std::string& text) {
    std::istringstream words(text);
    std::string line;
    for (std::string word; words >> word;) {
        line += (line.empty() ? "" : " ") + word;
    }
    return line;
}

// Gathers words into sentences as they are spoken.
class Subtitles {
public:
    explicit Subtitles(std::string text) : text_(std::move(text)) {}

    void note(const ZQMSpeakingEvent& event) {
        if (event.kind == ZQMSpeakingFinished) {
            duration_ = event.time;
        } else if (event.kind == ZQMSpeakingWord) {
            // Positions only grow, so that each is found from the last.
            const std::size_t at =
                byte_ + bytesOf(event.position - unit_, std::string_view(text_).substr(byte_));
            if (cues_.empty() || endsSentence(std::string_view(text_).substr(byte_, at - byte_))) {
                cues_.push_back({event.time, text_.find_last_of(" \n", at) + 1}); // with its quotes
            }
            unit_ = event.position;
            byte_ = at;
        }
    }

    void write(std::ostream& file) const {
        for (std::size_t index = 0; index < cues_.size(); ++index) {
            const bool last = index + 1 == cues_.size();
            const double end = last ? duration_ : cues_[index + 1].begin;
            const std::size_t bytes = (last ? text_.size() : cues_[index + 1].byte) - cues_[index].byte;
            file << index + 1 << '\n'
                 << clock(cues_[index].begin) << " --> " << clock(end) << '\n'
                 << onOneLine(text_.substr(cues_[index].byte, bytes)) << "\n\n";
        }
    }

private:
    struct Cue {
        double begin; // in seconds
        std::size_t byte;
    };

    std::string text_;
    std::vector<Cue> cues_;
    double duration_ = 0;
    std::size_t unit_ = 0; // where the last word begins
    std::size_t byte_ = 0; // the same place
};

} // namespace

int main(int argc, char** argv) try {
    if (argc < 4) {
        throw Error("usage: audio_book PLUGIN TEXT-FILE SOUND-FILE");
    }
    const std::string text = contentOf(argv[2]);
    const std::string sound = argv[3];
    Runtime runtime;
    load(runtime, argv[1]);
    Object speaker = runtime.construct("NSSpeechSynthesizerZQM");
    Subtitles subtitles(text);
    ZQMPlatformObserveSpeaking([](const ZQMSpeakingEvent* event,
                                  void* observer) { static_cast<Subtitles*>(observer)->note(*event); },
                               &subtitles);
    speak(runtime, speaker, text, sound);
    ZQMPlatformObserveSpeaking(nullptr, nullptr);

    const std::string name = sound.substr(0, sound.rfind('.')) + ".srt";
    std::ofstream file(name);
    subtitles.write(file);
    if (!file.flush()) {
        throw Error("the subtitles could not be written to " + name);
    }
} catch (const std::exception& error) {
    std::cerr << "audio_book: " << error.what() << '\n';
    return 1;
}
