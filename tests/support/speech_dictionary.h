// A speech dictionary with one pronunciation, as a host program builds it.

#pragma once

#include "zqmhost/zqmhost.h"

#include <string>

namespace zqm::support {

// The plugin is loaded into the runtime.
inline host::Dictionary speechDictionary(host::Runtime& runtime, const std::string& spelling,
                                         const std::string& phonemes) {
    const auto key = [&](const char* constant) {
        return runtime.callShared("NSSpeechSynthesizerZQM", constant).asText();
    };
    host::Dictionary entry = runtime.dictionary();
    entry.setValue(key("NSSpeechDictionaryEntrySpelling"), spelling);
    entry.setValue(key("NSSpeechDictionaryEntryPhonemes"), phonemes);
    host::Dictionary dictionary = runtime.dictionary();
    dictionary.setValue(key("NSSpeechDictionaryLocaleIdentifier"), "en_US");
    dictionary.setValue(key("NSSpeechDictionaryModificationDate"), "2026-01-31 12:00:00 +0000");
    dictionary.setValue(key("NSSpeechDictionaryPronunciations"),
                        runtime.array(host::ElementType::Object, {entry}));
    return dictionary;
}

} // namespace zqm::support
