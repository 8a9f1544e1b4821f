// The class records as the host gets them, against the documented tables.

#include "plugin/class_records.h"
#include "speech/records.h"
#include "tests/speech/documented_constants.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace {

struct Property {
    std::string name;
    std::string type;
    bool isWritable;
    friend bool operator==(const Property&, const Property&) = default;
};
std::ostream& operator<<(std::ostream& out, const Property& property) {
    return out << property.name << " as " << property.type << (property.isWritable ? "" : " (read-only)");
}

struct Documented {
    const char* name;
    const ClassRecord* record;
    std::vector<Property> properties;
    std::vector<std::string> methods;
    std::vector<std::string> events;
    std::vector<std::string> constants;
};

const Documented kDocumented[] = {
    {"NSSpeechRecognizerZQM",
     &NSSpeechRecognizerClass,
     {
         {"listensInForegroundOnly", "Boolean", true},
         {"displayedCommandsTitle", "String", true},
         {"blocksOtherRecognizers", "Boolean", true},
     },
     {"Destructor", "commands as string()", "setCommands(commands() as string)", "startListening",
      "stopListening"},
     {"DidRecognizeCommand(command as string)"},
     {}},
    {"NSVoiceZQM",
     &NSVoiceClass,
     {},
     {"Constructor", "Properties as Dictionary", "Name as String", "Identifier as String", "Age as Integer",
      "Gender as String", "DemoText as String", "Language as String", "LocaleIdentifier as String"},
     {},
     {}},
    {"NSSpeechSynthesizerZQM",
     &NSSpeechSynthesizerClass,
     {
         {"Volume", "Double", true},
         {"Rate", "Double", true},
         {"isSpeaking", "Boolean", false},
         {"usesFeedbackWindow", "Boolean", true},
         {"voice", "String", true},
     },
     {
         "objectForProperty(PropertyName as string, byref error as NSErrorZQM) as Variant",
         "setObjectForProperty(value as variant, PropertyName as string, byref error as NSErrorZQM) as "
         "boolean",
         "_exception as NSExceptionZQM",
         "addSpeechDictionary(speechDictionary as dictionary)",
         "pauseSpeakingAtBoundary(boundary as integer)",
         "stopSpeakingAtBoundary(boundary as integer)",
         "phonemesFromText(text as string) as string",
         "continueSpeaking",
         "stopSpeaking",
         "Constructor",
         "Constructor(voice as string)",
         "setVoice(Voice as String) as boolean",
         "startSpeakingString(Text as String) as boolean",
         "startSpeakingString(Text as String, URL as string) as boolean",
         "startSpeakingString(Text as String, File as folderitem) as boolean",
         "Destructor",
     },
     {
         "didFinishSpeaking(finishedSpeaking as boolean)",
         "willSpeakWord(Position as integer, Length as integer, Text as String)",
         "willSpeakPhoneme(phonemeOpcode as integer)",
         "didEncounterErrorAtIndex(characterIndex as integer, text as string, message as string)",
         "didEncounterSyncMessage(message as string)",
     },
     {"NSSpeechImmediateBoundary=0", "NSSpeechWordBoundary=1", "NSSpeechSentenceBoundary=2"}},
};

class Records : public testing::TestWithParam<Documented> {
protected:
    const ClassRecord& record() const { return *GetParam().record; }
};

TEST_P(Records, HaveTheDocumentedFields) {
    EXPECT_STREQ(record().name, GetParam().name);
    EXPECT_EQ(record().version, 13U);
    EXPECT_EQ(record().superName, nullptr);
    EXPECT_EQ(record().dataSize, 8U);
    EXPECT_EQ(record().forSystemUse, 0U);
    EXPECT_NE(record().constructor, nullptr);
    EXPECT_NE(record().destructor, nullptr);
    EXPECT_EQ(record().eventInstances, nullptr);
    EXPECT_EQ(record().eventInstanceCount, 0U);
    EXPECT_EQ(record().interfaces, nullptr);
    EXPECT_EQ(record().bindDescriptions, nullptr);
    EXPECT_EQ(record().bindDescriptionCount, 0U);
    EXPECT_EQ(record().mFlags, 4U);
    EXPECT_EQ(record().sharedProperties, nullptr);
    EXPECT_EQ(record().sharedPropertyCount, 0U);
    for (const std::uint64_t word : record().reserved) {
        EXPECT_EQ(word, 0U);
    }
}

TEST_P(Records, ListTheDocumentedProperties) {
    std::vector<Property> built;
    for (std::uint64_t i = 0; i < record().propertyCount; ++i) {
        const PropertyRecord& property = record().properties[i];
        built.push_back({property.name, property.type, property.setter.address() != nullptr});
        EXPECT_EQ(property.group, nullptr);
        EXPECT_EQ(property.flags, 6U);
        EXPECT_NE(property.getter.address(), nullptr);
        EXPECT_EQ(property.parameter, 0);
        for (const std::uint64_t word : property.reserved) {
            EXPECT_EQ(word, 0U);
        }
    }
    EXPECT_EQ(built, GetParam().properties);
    EXPECT_EQ(record().properties == nullptr, record().propertyCount == 0);
}

TEST_P(Records, ListTheDocumentedMethods) {
    std::vector<std::string> built;
    for (std::uint64_t i = 0; i < record().methodCount; ++i) {
        const MethodRecord& method = record().methods[i];
        built.emplace_back(method.declaration);
        const bool isUnconstructible =
            record().name == std::string("NSVoiceZQM") && built.back() == "Constructor";
        EXPECT_EQ(method.flags, isUnconstructible ? 132U : 4U) << built.back();
        EXPECT_NE(method.function.address(), nullptr);
        EXPECT_EQ(method.setter.address(), nullptr);
        EXPECT_EQ(method.reserved[0], 0U);
        EXPECT_EQ(method.reserved[1], 0U);
    }
    EXPECT_EQ(built, GetParam().methods);
    EXPECT_EQ(record().methods == nullptr, record().methodCount == 0);
}

TEST_P(Records, ListTheDocumentedSharedMethods) {
    std::vector<std::string> documented;
    for (const DocumentedConstant& constant : kDocumentedConstants) {
        if (constant.className == std::string(record().name)) {
            documented.push_back(std::string(constant.method) + " as String");
        }
    }
    if (record().name == std::string("NSSpeechSynthesizerZQM")) {
        documented.insert(documented.end(),
                          {"isAnyApplicationSpeaking as Boolean",
                           "availableVoice(index as integer) as String", "availableVoicesCount as integer",
                           "attributesForVoice(voice as String) as NSVoiceZQM", "defaultVoice as String",
                           "availableVoices as String()"});
    }
    std::vector<std::string> built;
    for (std::uint64_t i = 0; i < record().sharedMethodCount; ++i) {
        const MethodRecord& method = record().sharedMethods[i];
        built.emplace_back(method.declaration);
        EXPECT_EQ(method.flags, 4U) << built.back();
        EXPECT_NE(method.function.address(), nullptr);
        EXPECT_EQ(method.setter.address(), nullptr);
        EXPECT_EQ(method.reserved[0], 0U);
        EXPECT_EQ(method.reserved[1], 0U);
    }
    EXPECT_EQ(built, documented);
    EXPECT_EQ(record().sharedMethods == nullptr, record().sharedMethodCount == 0);
}

TEST_P(Records, ListTheDocumentedEventsAndConstants) {
    std::vector<std::string> events;
    for (std::uint64_t i = 0; i < record().eventCount; ++i) {
        const EventRecord& event = record().events[i];
        events.emplace_back(event.declaration);
        EXPECT_EQ(event.hostToken, 0U);
        EXPECT_EQ(event.reserved[0], 0U);
        EXPECT_EQ(event.reserved[1], 0U);
    }
    EXPECT_EQ(events, GetParam().events);
    EXPECT_EQ(record().events == nullptr, record().eventCount == 0);

    std::vector<std::string> constants;
    for (std::uint64_t i = 0; i < record().constantCount; ++i) {
        constants.emplace_back(record().constants[i].declaration);
        for (const std::uint64_t word : record().constants[i].reserved) {
            EXPECT_EQ(word, 0U);
        }
    }
    EXPECT_EQ(constants, GetParam().constants);
    EXPECT_EQ(record().constants == nullptr, record().constantCount == 0);
}

INSTANTIATE_TEST_SUITE_P(Classes, Records, testing::ValuesIn(kDocumented),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ClassRecords, StandInTheOrderOfRegistration) {
    ASSERT_EQ(classRecords().size(), std::size(kDocumented));
    for (std::size_t i = 0; i < classRecords().size(); ++i) {
        EXPECT_EQ(classRecords()[i], kDocumented[i].record);
    }
}

} // namespace
