#include "engine/listening/transcriber.h"

#include "engine/listening/phones.h"

namespace zqm::engine {

Transcriber englishTranscriber(Speaker& speaker) {
    const protocol::Voice* const voice = speaker.findVoice("gmw/en-US");
    return [&speaker, voice](const std::string& word) {
        return voice == nullptr ? std::vector<std::string>() : phonesOf(speaker.phonemeNames(word, *voice));
    };
}

} // namespace zqm::engine
