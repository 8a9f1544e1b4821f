#include "plugin/class_records.h"

#include "speech/records.h"

constexpr std::array<ClassRecord*, 3> kClassRecords = {&NSSpeechRecognizerClass, &NSVoiceClass,
                                                       &NSSpeechSynthesizerClass};
