#include "plugin/class_records.h"

#include "speech/records.h"

#include <array>

const char* const kPartName = "NSSpeechSynthesizer";

std::span<ClassRecord* const> classRecords() {
    static constexpr std::array records{&NSSpeechRecognizerClass, &NSVoiceClass, &NSSpeechSynthesizerClass};
    return records;
}
