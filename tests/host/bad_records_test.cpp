// Class records with something wrong: each fault is reported, and what can be used of the record is.

#include "entries.h"

#include "tests/support/sample_record.h"
#include "zqmhost/zqmhost.h"

#include <bit>
#include <functional>
#include <gmock/gmock.h>

namespace zqm::host::test {
namespace {

using Sample = support::SampleRecord;
using testing::HasSubstr;
using testing::IsEmpty;

template <typename Record>
Record* unaligned(Record* records) {
    return std::bit_cast<Record*>(std::bit_cast<std::uintptr_t>(records) + 1);
}

struct Fault {
    const char* name;
    void (*make)(Sample&);
    Report::Kind kind;
    const char* text;
};

class BadRecord : public testing::TestWithParam<Fault> {};

TEST_P(BadRecord, IsReported) {
    Runtime runtime;
    call<void>("RegisterPluginVersion", std::int32_t{13});
    Sample sample;
    GetParam().make(sample);
    runtime.registerClass(sample.record);
    ASSERT_EQ(runtime.reports().size(), 1U);
    const Report report = runtime.reports().front();
    EXPECT_EQ(std::string(nameOf(report.kind)), nameOf(GetParam().kind));
    EXPECT_THAT(report.text, HasSubstr(GetParam().text));
}

constexpr auto kRecord = Report::Kind::BadRecord;
constexpr auto kDeclaration = Report::Kind::BadDeclaration;

INSTANTIATE_TEST_SUITE_P(
    All, BadRecord,
    testing::Values(
        Fault{"noName", [](Sample& s) { s.record.name = nullptr; }, kRecord, "a class without a name"},
        Fault{"emptyName", [](Sample& s) { s.record.name = ""; }, kRecord, "a class without a name"},
        Fault{"nameOfABuiltInClass", [](Sample& s) { s.record.name = "runtimeexception"; }, kRecord,
              "registered already"},
        Fault{"unknownSuperclass", [](Sample& s) { s.record.superName = "Nobody"; }, kRecord,
              "superclass \"Nobody\" is not known"},
        Fault{"otherRevision", [](Sample& s) { s.record.version = 12; }, kRecord,
              "revision 12, announced was 13"},
        Fault{"unalignedData", [](Sample& s) { s.record.dataSize = 8; }, kRecord,
              "8 bytes, no multiple of 16"},
        Fault{"classFlags", [](Sample& s) { s.record.mFlags = 5; }, kRecord, "flags 5"},
        Fault{"forSystemUse", [](Sample& s) { s.record.forSystemUse = 1; }, kRecord, "word of the host's"},
        Fault{"reserved", [](Sample& s) { s.record.reserved[3] = 1; }, kRecord,
              "reserved word of the record"},
        Fault{"eventInstances", [](Sample& s) { s.record.eventInstanceCount = 1; }, kRecord,
              "event instances"},
        Fault{"bindDescriptions", [](Sample& s) { s.record.bindDescriptionCount = 1; }, kRecord,
              "bind descriptions"},
        Fault{"sharedProperties", [](Sample& s) { s.record.sharedPropertyCount = 1; }, kRecord,
              "shared properties"},
        Fault{"interfaces", [](Sample& s) { s.record.interfaces = "x"; }, kRecord, "interfaces"},
        Fault{"countWithoutTable", [](Sample& s) { s.record.methods = nullptr; }, kRecord,
              "2 methods counted, but there is no table"},
        Fault{"tableWithoutCount", [](Sample& s) { s.record.propertyCount = 0; }, kRecord,
              "a table of properties, but none counted"},
        Fault{"eventsWithoutTable", [](Sample& s) { s.record.events = nullptr; }, kRecord,
              "2 events counted"},
        Fault{"constantsWithoutCount", [](Sample& s) { s.record.constantCount = 0; }, kRecord,
              "a table of constants"},
        Fault{"sharedWithoutTable", [](Sample& s) { s.record.sharedMethods = nullptr; }, kRecord,
              "1 shared methods counted"},
        Fault{"unalignedTable", [](Sample& s) { s.record.methods = unaligned(s.methods); }, kRecord,
              "a table of methods at an address that is no multiple of 8"},
        Fault{"unalignedEvents", [](Sample& s) { s.record.events = unaligned(s.events); }, kRecord,
              "a table of events at an address"},
        Fault{"propertyWithoutName", [](Sample& s) { s.properties[1].name = nullptr; }, kRecord,
              "property 1 has no name"},
        Fault{"propertyTwice", [](Sample& s) { s.properties[1].name = "ONE"; }, kRecord,
              "property 1 \"ONE\" stands twice"},
        Fault{"propertyFlags", [](Sample& s) { s.properties[0].flags = 4; }, kRecord,
              "property 0 has flags 4"},
        Fault{"propertyWithoutFunction", [](Sample& s) { s.properties[0].getter = nullptr; }, kRecord,
              "neither getter nor setter"},
        Fault{"propertyReserved", [](Sample& s) { s.properties[0].reserved[4] = 1; }, kRecord,
              "reserved word of property 0"},
        Fault{"propertyWithoutType", [](Sample& s) { s.properties[0].type = nullptr; }, kDeclaration,
              "type of property 0"},
        Fault{"propertyType", [](Sample& s) { s.properties[0].type = "Boolean Integer"; }, kDeclaration,
              "type of property 0"},
        Fault{"methodWithoutDeclaration", [](Sample& s) { s.methods[0].declaration = nullptr; }, kDeclaration,
              "method 0: a name expected"},
        Fault{"methodDeclaration", [](Sample& s) { s.methods[1].declaration = "f(a as"; }, kDeclaration,
              "method 1: a type expected"},
        Fault{"methodWithoutFunction", [](Sample& s) { s.methods[0].function = nullptr; }, kRecord,
              "method 0 \"First\" has no function"},
        Fault{"methodTwice", [](Sample& s) { s.methods[1].declaration = "FIRST()"; }, kRecord,
              "method 1 \"FIRST()\" stands twice"},
        Fault{"methodFlags", [](Sample& s) { s.methods[0].flags = 0; }, kRecord, "method 0 has flags 0"},
        Fault{"methodSetter", [](Sample& s) { s.methods[0].setter = Sample::nothing; }, kRecord,
              "method 0 has a setter"},
        Fault{"methodReserved", [](Sample& s) { s.methods[0].reserved[0] = 1; }, kRecord,
              "reserved word of method 0"},
        Fault{"eventDeclaration", [](Sample& s) { s.events[0].declaration = ""; }, kDeclaration,
              "event 0: a name expected"},
        Fault{"eventTwice", [](Sample& s) { s.events[1].declaration = "BEGAN(a as Integer)"; }, kRecord,
              "stands twice"},
        Fault{"eventWithResult", [](Sample& s) { s.events[0].declaration = "began as Boolean"; }, kRecord,
              "has a result"},
        Fault{"eventReserved", [](Sample& s) { s.events[0].reserved[1] = 1; }, kRecord,
              "reserved word of event 0"},
        Fault{"constantWithoutSign", [](Sample& s) { s.constants[0].declaration = "A"; }, kDeclaration,
              "constant 0: no name=value in \"A\""},
        Fault{"constantWithoutName", [](Sample& s) { s.constants[0].declaration = "=1"; }, kDeclaration,
              "constant 0"},
        Fault{"constantWithoutValue", [](Sample& s) { s.constants[0].declaration = "A="; }, kDeclaration,
              "constant 0"},
        Fault{"constantWithoutText", [](Sample& s) { s.constants[0].declaration = nullptr; }, kDeclaration,
              "constant 0"},
        Fault{"constantTwice", [](Sample& s) { s.constants[1].declaration = "a=3"; }, kRecord,
              "stands twice"},
        Fault{"constantReserved", [](Sample& s) { s.constants[1].reserved[2] = 1; }, kRecord,
              "reserved word of constant 1"},
        Fault{"sharedMethodDeclaration", [](Sample& s) { s.sharedMethods[0].declaration = "("; },
              kDeclaration, "shared method 0"}),
    [](const testing::TestParamInfo<Fault>& fault) { return fault.param.name; });

class Registration : public testing::Test {
protected:
    void announce() { call<void>("RegisterPluginVersion", std::int32_t{13}); }

    Runtime runtime;
    Sample sample;
};

TEST_F(Registration, OfAFaultlessRecordReportsNothing) {
    announce();
    runtime.registerClass(sample.record);
    EXPECT_THAT(runtime.reports(), IsEmpty());
    EXPECT_THAT(runtime.classNames(), testing::ElementsAre("Sample"));
    EXPECT_TRUE(runtime.callShared("Sample", "Shared").asBool());
    EXPECT_NE(sample.events[0].hostToken, 0U);
    EXPECT_NE(sample.events[0].hostToken, sample.events[1].hostToken);
}

TEST_F(Registration, KeepsWhatIsGoodOfARecord) {
    announce();
    sample.methods[0].declaration = "(";
    sample.properties[0].name = nullptr;
    sample.record.constants = nullptr;
    runtime.registerClass(sample.record);
    EXPECT_EQ(runtime.reports().size(), 3U);
    Object object = runtime.create("Sample");
    object.call("Second");
    EXPECT_TRUE(object.get("Two").asBool());
}

TEST_F(Registration, BeforeTheRevisionIsAnnouncedIsReported) {
    runtime.registerClass(sample.record);
    ASSERT_EQ(runtime.reports().size(), 1U);
    EXPECT_THAT(runtime.reports().front().text, HasSubstr("before \"RegisterPluginVersion\""));
}

TEST_F(Registration, OfARecordAtAnOddAddressIsReported) {
    announce();
    call<void>("PluginRegisterClass", static_cast<void*>(unaligned(&sample.record)));
    ASSERT_EQ(runtime.reports().size(), 1U);
    EXPECT_THAT(runtime.reports().front().text, HasSubstr("a record at an address that is no multiple of 8"));
    EXPECT_THAT(runtime.classNames(), IsEmpty());
}

TEST_F(Registration, OfNothingIsReported) {
    call<void>("PluginRegisterClass", static_cast<void*>(nullptr));
    ASSERT_EQ(runtime.reports().size(), 1U);
    EXPECT_THAT(runtime.reports().front().text, HasSubstr("no record"));
    EXPECT_THAT(runtime.classNames(), IsEmpty());
}

TEST_F(Registration, TwiceIsReportedAndTheFirstStays) {
    announce();
    runtime.registerClass(sample.record);
    const std::uint64_t token = sample.events[0].hostToken;
    Sample second;
    runtime.registerClass(second.record);
    ASSERT_EQ(runtime.reports().size(), 1U);
    EXPECT_THAT(runtime.reports().front().text, HasSubstr("registered already"));
    EXPECT_EQ(second.events[0].hostToken, 0U);
    EXPECT_EQ(sample.events[0].hostToken, token);
}

TEST_F(Registration, OfRevisionNineWritesTheAddressOfARecordWithTheToken) {
    call<void>("RegisterPluginVersion", std::int32_t{9});
    sample.record.version = 9;
    runtime.registerClass(sample.record);
    EXPECT_THAT(runtime.reports(), IsEmpty());
    Object object = runtime.create("Sample");
    object.on("began", [](const Arguments&) {});
    const auto* record = reinterpret_cast<const std::uint64_t*>(sample.events[0].hostToken);
    EXPECT_NE(call<void*>("GetEventInstance", object.handle(), record[1]), nullptr);
}

} // namespace
} // namespace zqm::host::test
