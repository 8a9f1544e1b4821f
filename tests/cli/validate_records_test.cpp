// Class records that point to what can't be read: told, and never read.

#include "cli/validate/checks/record_inspection.h"
#include "cli/validate/supervision.h"

#include "cli/validate/checks/member_names.h"
#include "tests/support/sample_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <sys/resource.h>

namespace zqm::cli {
namespace {

using Sample = support::SampleRecord;
using testing::ElementsAre;
using testing::IsEmpty;

template <typename Pointer>
Pointer nowhere() {
    return std::bit_cast<Pointer>(std::uintptr_t{0x10});
}

const EventRecord kConstantEvents[] = {{.declaration = "began"}, {.declaration = "ended"}};

// The failures, in a process of its own as it is for plugins.
std::vector<std::string> failuresOf(const std::function<void(Findings&)>& work) {
    std::vector<std::string> failures;
    supervise(work, {.limit = Findings::Seconds(60),
                     .isSeparate = true,
                     .found = [&](const Finding& finding) { failures.push_back(finding.text); }});
    return failures;
}

// Says so, too, if the record can be read.
void inspect(void* record, Findings& findings) {
    RecordInspection inspection(findings);
    if (inspection.isReadable(record)) {
        findings.warn("readable");
    }
}

std::vector<std::string> failuresOf(void* record) {
    return failuresOf([record](Findings& findings) { inspect(record, findings); });
}

std::vector<std::string> failuresOf(void (*damage)(Sample&)) {
    return failuresOf([damage](Findings& findings) {
        Sample sample;
        damage(sample);
        inspect(&sample.record, findings);
    });
}

TEST(RecordInspection, OfAGoodRecord) {
    EXPECT_THAT(failuresOf([](Sample&) {}), ElementsAre("readable"));
}

TEST(RecordInspection, LeavesToTheHostWhatItTells) {
    EXPECT_THAT(failuresOf([](Sample& s) { s.record.name = nullptr; }), ElementsAre("readable"));
    EXPECT_THAT(failuresOf([](Sample& s) { s.record.methods = nullptr; }), ElementsAre("readable"));
    EXPECT_THAT(failuresOf([](Sample& s) { s.properties[0].name = nullptr; }), ElementsAre("readable"));
    EXPECT_THAT(failuresOf(static_cast<void*>(nullptr)), ElementsAre("readable"));
    EXPECT_THAT(failuresOf(std::bit_cast<void*>(std::uintptr_t{1})), ElementsAre("readable"));
}

TEST(RecordInspection, OfARecordThatIsNowhere) {
    EXPECT_THAT(failuresOf(nowhere<void*>()), ElementsAre("class record 1: it can't be read"));
}

TEST(RecordInspection, OfTextsThatAreNowhere) {
    EXPECT_THAT(failuresOf([](Sample& s) { s.record.name = nowhere<const char*>(); }),
                ElementsAre("class record 1: its name can't be read"));
    EXPECT_THAT(failuresOf([](Sample& s) {
                    s.record.superName = nowhere<const char*>();
                    s.properties[1].type = nowhere<const char*>();
                    s.methods[0].declaration = nowhere<const char*>();
                    s.events[0].declaration = nowhere<const char*>();
                    s.constants[0].declaration = nowhere<const char*>();
                }),
                ElementsAre("class \"Sample\": its superclass can't be read",
                            "class \"Sample\": property 1's type can't be read",
                            "class \"Sample\": method 0's declaration can't be read",
                            "class \"Sample\": event 0's declaration can't be read",
                            "class \"Sample\": constant 0's declaration can't be read"));
}

TEST(RecordInspection, OfTablesThatAreNowhereOrCutOff) {
    EXPECT_THAT(failuresOf([](Sample& s) { s.record.constants = nowhere<const ConstantRecord*>(); }),
                ElementsAre("class \"Sample\": constant: 2 counted, but only 0 can be read"));
    EXPECT_THAT(failuresOf([](Sample& s) { s.record.methodCount = 1000000; }),
                ElementsAre("class \"Sample\": method: 1000000 counted, more than any class has"));
}

TEST(RecordInspection, OfFunctionsThatAreNone) {
    EXPECT_THAT(failuresOf([](Sample& s) {
                    s.record.constructor = nowhere<void (*)(REALobject)>();
                    s.methods[0].function = nowhere<void (*)(REALobject)>();
                    s.properties[0].getter = nowhere<bool (*)(REALobject, std::int64_t)>();
                }),
                ElementsAre("class \"Sample\": its constructor is no function",
                            "class \"Sample\": property 0's getter is no function",
                            "class \"Sample\": method 0's function is no function"));
}

bool notCalled = false;

TEST(RecordInspection, OfVariablesInThePlaceOfFunctions) {
    EXPECT_THAT(failuresOf([](Sample& s) {
                    s.properties[1].getter = std::bit_cast<bool (*)(REALobject, std::int64_t)>(&notCalled);
                    s.methods[1].function = std::bit_cast<void (*)(REALobject)>(&s.methods);
                }),
                ElementsAre("class \"Sample\": property 1's getter is no function",
                            "class \"Sample\": method 1's function is no function"));
}

// As where /proc is not mounted. The sanitizers look through a pipe whether memory is there, and take its
// lack for a fault.
#ifndef __SANITIZE_ADDRESS__
TEST(RecordInspection, OfFunctionsThatTheSystemDoesNotTellOf) {
    EXPECT_THAT(failuresOf([](Findings& findings) {
                    Sample sample;
                    RecordInspection inspection(findings);
                    const rlimit noFile{0, 0};
                    if (setrlimit(RLIMIT_NOFILE, &noFile) != 0 || !inspection.isReadable(&sample.record)) {
                        findings.warn("not readable");
                    }
                }),
                ElementsAre("this system doesn't tell which addresses are functions"));
}
#endif

// As closures are made, which no library has.
TEST(RecordInspection, OfFunctionsThatWereMadeAtRunTime) {
    EXPECT_THAT(failuresOf([](Sample& s) {
                    void* code =
                        mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                    s.methods[0].function = std::bit_cast<void (*)(REALobject)>(code);
                }),
                ElementsAre("readable"));
}

TEST(RecordInspection, OfEventsThatTheHostCantWrite) {
    EXPECT_THAT(failuresOf([](Sample& s) { s.record.events = const_cast<EventRecord*>(kConstantEvents); }),
                ElementsAre("class \"Sample\": event 0 can't be written to, as hosts do",
                            "class \"Sample\": event 1 can't be written to, as hosts do"));
}

TEST(MemberNames, ThatHostCodeCanTellApartAreGood) {
    EXPECT_THAT(failuresOf([](Findings& findings) {
                    checkMemberNames(
                        {.name = "Sample",
                         .methods = {{.name = "f"}, {.name = "F", .parameters = {{"a", {"Integer"}}}}},
                         .properties = {{.name = "gr\xc3\xb6\xc3\x9f_2", .type = {"Integer"}}}},
                        findings);
                }),
                IsEmpty());
}

TEST(MemberNames, ThatItCantAreTold) {
    EXPECT_THAT(failuresOf([](Findings& findings) {
                    checkMemberNames(
                        {.name = "Sample",
                         .methods = {{.name = "Rate", .parameters = {{"a", {"Integer"}}, {"A", {"String"}}}}},
                         .properties = {{.name = "rate", .type = {"Integer"}},
                                        {.name = "two words", .type = {"Integer"}},
                                        {.name = "sink", .type = {"Integer"}, .isReadable = false}},
                         .constants = {{.name = "1st", .value = "1"}}},
                        findings);
                }),
                ElementsAre("class \"Sample\": \"Rate\" has two parameters \"A\"",
                            "class \"Sample\": \"rate\" is a method and a property",
                            "class \"Sample\": host code can't write the name of the property \"two words\"",
                            "class \"Sample\": property \"sink\" can be set, but not read",
                            "class \"Sample\": host code can't write the name of the constant \"1st\""));
}

} // namespace
} // namespace zqm::cli
