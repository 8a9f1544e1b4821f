// What a recognizer is told to listen for, and its properties, in both generations of hosts.

#include "plugin/host_handles.h"
#include "plugin/platform_strings.h"
#include "tests/speech/recognizer_host.h"

#include <utility>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Array;
using zqm::host::ArrayCall;
using zqm::host::ElementType;
using zqm::host::HostException;
using zqm::host::Object;
using zqm::host::String;
using zqm::host::Value;

constexpr double kShowsElements = 2015.4;  // hosts of this version show where the elements are
constexpr double kFirstThatHides = 2016.0; // and from here on they don't

// The word of an array object that may point to its elements.
const void*& directWord(const Array& array) {
    return *reinterpret_cast<const void**>(reinterpret_cast<char*>(array.array()) + 56);
}

std::vector<std::string> textsOf(NSArray* list) {
    std::vector<std::string> texts;
    for (NSUInteger i = 0; i < [list count]; ++i) {
        texts.emplace_back([[list objectAtIndex:i] UTF8String]);
    }
    return texts;
}

std::vector<std::string> textsOf(const Array& array) {
    std::vector<std::string> texts;
    for (const Value& value : array.values()) {
        texts.push_back(value.asText());
    }
    return texts;
}

std::string tooBig(int bound, int index) {
    return "OutOfBoundsException: Parameter index  is too big. Range is 0 to " + std::to_string(bound) +
           ", but value is " + std::to_string(index) + ".";
}

class Commands : public RecognizerTest {
protected:
    explicit Commands(double hostVersion = zqm::host::kDefaultVersion) : RecognizerTest(hostVersion) {}

    Array arrayOf(const std::vector<Value>& values) { return host->array(ElementType::String, values); }
    Array commands() { return Array(object.call("commands").asObject()); }
    void setCommands(const Object& array) { object.call("setCommands", array); }
    NSArray* platformCommands() const { return [platformObjectOf(object) commands]; }

    // The messages of what a call raises.
    std::vector<std::string> raisedBySetCommands(const Object& array) {
        try {
            setCommands(array);
        } catch (const HostException& exception) {
            return messagesOf(exception.all());
        }
        return {};
    }

    Object object = newRecognizer();
};

class CommandsOfEveryHost : public Commands, public testing::WithParamInterface<double> {
protected:
    CommandsOfEveryHost() : Commands(GetParam()) {}
};

TEST_P(CommandsOfEveryHost, AreAnEmptyArrayOnAFreshObject) {
    const Array fresh = commands();
    ASSERT_FALSE(fresh.isNull());
    EXPECT_EQ(fresh.elementType(), ElementType::String);
    EXPECT_EQ(fresh.size(), 0U);
    EXPECT_EQ(platformCommands(), nil);
}

TEST_P(CommandsOfEveryHost, KeepTheirOrderAndTheirText) {
    const auto before = host->ledger();
    {
        const Array array = arrayOf({"open", "Gr\xC3\xBC\xC3\x9F Gott", "open", "25 %"});
        setCommands(array);
        EXPECT_THAT(textsOf(platformCommands()),
                    ElementsAre("open", "Gr\xC3\xBC\xC3\x9F Gott", "open", "25 %"));
        EXPECT_THAT(textsOf(commands()), ElementsAre("open", "Gr\xC3\xBC\xC3\x9F Gott", "open", "25 %"));
        EXPECT_EQ(array.size(), 4U);
    }
    EXPECT_EQ(host->ledger(), before);
}

TEST_P(CommandsOfEveryHost, AreThoseOfTheLastArray) {
    setCommands(arrayOf({"one", "two"}));
    setCommands(arrayOf({"three"}));
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("three"));
}

TEST_P(CommandsOfEveryHost, AreNoListForNoArray) {
    setCommands(arrayOf({"one"}));
    setCommands(Object());
    EXPECT_EQ(platformCommands(), nil);
    EXPECT_EQ(commands().size(), 0U);
}

TEST_P(CommandsOfEveryHost, AreAnEmptyListForAnEmptyArray) {
    setCommands(arrayOf({"one"}));
    setCommands(arrayOf({}));
    ASSERT_NE(platformCommands(), nil);
    EXPECT_EQ([platformCommands() count], 0U);
    EXPECT_EQ(commands().size(), 0U);
}

TEST_P(CommandsOfEveryHost, LeaveNullElementsOut) {
    setCommands(arrayOf({nullptr, "one", nullptr, nullptr, "two", nullptr}));
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "two"));
    setCommands(arrayOf({nullptr, nullptr}));
    ASSERT_NE(platformCommands(), nil);
    EXPECT_EQ([platformCommands() count], 0U);
}

TEST_P(CommandsOfEveryHost, LeaveElementsOutThatAreNoText) {
    const auto before = host->ledger();
    {
        const String noText = host->string("one", 0x12345);
        ASSERT_EQ(platformString(noText.handle()), nil);
        setCommands(arrayOf({"one", noText, "two"}));
        EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "two"));
    }
    EXPECT_EQ(host->ledger(), before);
}

TEST_P(CommandsOfEveryHost, ComeInEveryEncoding) {
    setCommands(arrayOf({host->string("Gr\xFC\xDF", zqm::host::encoding::kIsoLatin1),
                         host->string("Gr\x9F\xA7", zqm::host::encoding::kMacRoman)}));
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("Gr\xC3\xBC\xC3\x9F", "Gr\xC3\xBC\xC3\x9F"));
}

TEST_P(CommandsOfEveryHost, MayBeAThousandAndOneMayBeLong) {
    std::vector<Value> values;
    std::vector<std::string> texts;
    for (int i = 0; i < 1000; ++i) {
        texts.push_back("command " + std::to_string(i));
        values.emplace_back(texts.back());
    }
    texts.emplace_back(500, 'a');
    values.emplace_back(texts.back());
    setCommands(arrayOf(values));
    EXPECT_EQ(textsOf(platformCommands()), texts);
    EXPECT_EQ(textsOf(commands()), texts);
}

TEST_P(CommandsOfEveryHost, AskForTheBoundBeforeEachElement) {
    const Array array = arrayOf({"one", "two", "three"});
    setCommands(array);
    EXPECT_EQ(host->entryPoints().calls("RuntimeUBound"), 4U);
}

// Each element that is gone raises once; the others are set.
TEST_P(CommandsOfEveryHost, RaiseForEachElementThatIsGone) {
    const auto before = host->ledger();
    {
        Array array = arrayOf({"one", "two", "three", "four"});
        array.before(ArrayCall::UBound, 4, [&] { array.resize(2); });
        EXPECT_THAT(raisedBySetCommands(array), ElementsAre(tooBig(1, 2), tooBig(1, 3)));
        EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "two"));
    }
    EXPECT_EQ(host->ledger(), before);
}

TEST_P(CommandsOfEveryHost, GoOnWithElementsThatComeBack) {
    Array array = arrayOf({"one", "two", "three"});
    array.before(ArrayCall::UBound, 3, [&] { array.resize(1); });
    array.before(ArrayCall::UBound, 4, [&] {
        array.resize(3);
        array.set(2, "again");
    });
    EXPECT_THAT(raisedBySetCommands(array), ElementsAre(tooBig(0, 1)));
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "again"));
}

TEST_P(CommandsOfEveryHost, AreAnEmptyListWhenAllElementsAreGone) {
    Array array = arrayOf({"one", "two"});
    array.before(ArrayCall::UBound, 2, [&] { array.resize(0); });
    EXPECT_THAT(raisedBySetCommands(array), ElementsAre(tooBig(-1, 0), tooBig(-1, 1)));
    ASSERT_NE(platformCommands(), nil);
    EXPECT_EQ([platformCommands() count], 0U);
}

TEST_P(CommandsOfEveryHost, AreThoseUpToTheFirstBoundOfAnArrayThatGrows) {
    Array array = arrayOf({"one", "two"});
    // Other memory for the elements, which are looked up anew.
    array.before(ArrayCall::UBound, 2, [&] { array.resize(10'000); });
    array.before(ArrayCall::UBound, 3, [&] { array.resize(30'000); });
    setCommands(array);
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "two"));
}

// Without it the bound is 0 each time: one element is read.
TEST_P(CommandsOfEveryHost, AreTheFirstElementWithoutUpperBounds) {
    host->entryPoints().refuse("RuntimeUBound");
    setCommands(arrayOf({"one", "two"}));
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one"));
}

TEST_P(CommandsOfEveryHost, AreNoArrayFromAHostThatMakesNone) {
    setCommands(arrayOf({"one"}));
    host->entryPoints().refuse("RuntimeArrayCreateSingleDimBoundedArray");
    EXPECT_TRUE(object.call("commands").isNull());
}

TEST_P(CommandsOfEveryHost, AreAnEmptyArrayFromAHostThatInsertsNothing) {
    setCommands(arrayOf({"one"}));
    host->entryPoints().refuse("PluginStringArrayInsertProc");
    EXPECT_EQ(commands().size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Hosts, CommandsOfEveryHost,
                         testing::Values(2011.0, kShowsElements, kFirstThatHides, zqm::host::kDefaultVersion),
                         [](const auto& row) {
                             return "version" + std::to_string(static_cast<int>(row.param * 100));
                         });

// ---- how elements are read

class CommandsOfOldHost : public Commands {
protected:
    CommandsOfOldHost() : Commands(kShowsElements) {}
};

TEST_F(CommandsOfOldHost, AreReadWithoutACallWhereTheHostShowsThem) {
    const Array array = arrayOf({"one", nullptr, "two"});
    ASSERT_NE(directWord(array), nullptr);
    setCommands(array);
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "two"));
    EXPECT_EQ(host->entryPoints().lookups("RuntimeDirectReadStringArray"), 0U);
}

std::vector<std::string> hostCalls;

template <typename Handle>
void (*original(const char* name))(Handle) {
    return reinterpret_cast<void (*)(Handle)>(zqm::host::Runtime::resolver()(name));
}

TEST_F(CommandsOfOldHost, AreLockedWhileTheyAreConverted) {
    zqm::support::inFreshProcess([this] {
        PluginHost::replace(
            "REALLockString", +[](REALstring string) {
                hostCalls.emplace_back("lock");
                original<REALstring>("REALLockString")(string);
            });
        PluginHost::replace(
            "REALUnlockString", +[](REALstring string) {
                hostCalls.emplace_back("unlock");
                original<REALstring>("REALUnlockString")(string);
            });
        replaceMethod(
            @selector(setCommands:), +[](id, SEL, id) { hostCalls.emplace_back("set"); });
        forgetEntryPoints();
        const Array array = arrayOf({"one", nullptr});
        const auto before = host->ledger();
        setCommands(array);
        EXPECT_EQ(host->ledger(), before);
        ASSERT_GE(hostCalls.size(), 3U);
        EXPECT_EQ(hostCalls.front(), "lock");
        EXPECT_EQ(hostCalls[hostCalls.size() - 2], "unlock");
        EXPECT_EQ(hostCalls.back(), "set");
    });
}

TEST_F(CommandsOfOldHost, AreAskedForWhereTheHostShowsNothing) {
    const Array array = arrayOf({"one", "two"});
    const void* const shown = std::exchange(directWord(array), nullptr);
    setCommands(array);
    directWord(array) = shown;
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "two"));
    EXPECT_EQ(host->entryPoints().calls("RuntimeDirectReadStringArray"), 2U);
}

// What can't be locked is not unlocked either.
TEST_F(CommandsOfOldHost, AreAskedForWhereTheHostCannotLock) {
    const Array array = arrayOf({"one", "two"});
    zqm::support::inFreshProcess([&] {
        host->entryPoints().refuse("REALLockString");
        forgetEntryPoints();
        setCommands(array);
        EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "two"));
        EXPECT_EQ(host->entryPoints().calls("RuntimeDirectReadStringArray"), 2U);
    });
}

TEST_F(Commands, AreAskedForOneByOne) {
    setCommands(arrayOf({"one", nullptr, "two"}));
    EXPECT_EQ(host->entryPoints().calls("RuntimeDirectReadStringArray"), 3U);
}

class CommandsOf2016 : public Commands {
protected:
    CommandsOf2016() : Commands(kFirstThatHides) {}
};

TEST_F(CommandsOf2016, AreNotWhatTheWordMaySay) {
    const Array array = arrayOf({"one", "two"});
    const Array others = arrayOf({"three", "four"});
    std::vector<REALstring> strings;
    for (std::size_t i = 0; i < others.size(); ++i) {
        strings.push_back(others.at(i).asString().handle());
    }
    EXPECT_EQ(directWord(array), nullptr);
    directWord(array) = strings.data();
    setCommands(array);
    directWord(array) = nullptr;
    EXPECT_THAT(textsOf(platformCommands()), ElementsAre("one", "two"));
    EXPECT_EQ(host->entryPoints().calls("RuntimeDirectReadStringArray"), 2U);
}

TEST_F(Commands, AreLeftOutWithoutTheEntryPointThatReadsThem) {
    host->entryPoints().refuse("RuntimeDirectReadStringArray");
    setCommands(arrayOf({"one", "two"}));
    ASSERT_NE(platformCommands(), nil);
    EXPECT_EQ([platformCommands() count], 0U);
}

// ---- the platform's list

std::vector<NSUInteger> capacities;
std::vector<std::string> given;
IMP arrayOfCapacity = nullptr;

id noteCapacity(Class self, SEL selector, NSUInteger capacity) {
    capacities.push_back(capacity);
    return reinterpret_cast<id (*)(Class, SEL, NSUInteger)>(reinterpret_cast<void*>(arrayOfCapacity))(
        self, selector, capacity);
}

id noArray(Class /*self*/, SEL /*selector*/, NSUInteger /*capacity*/) {
    return nil;
}

void noteList(id /*self*/, SEL /*selector*/, NSArray* list) {
    given.emplace_back(list != nil ? std::to_string([list count]) : "nil");
}

template <typename Function>
IMP replaceArrayWithCapacity(Function* function) {
    Method const method = class_getClassMethod([NSMutableArray class], @selector(arrayWithCapacity:));
    return method_setImplementation(method, reinterpret_cast<IMP>(reinterpret_cast<void*>(function)));
}

TEST_F(Commands, HaveRoomForEachElement) {
    zqm::support::inFreshProcess([this] {
        replaceMethod(@selector(setCommands:), noteList);
        const Array empty = arrayOf({});
        const Array three = arrayOf({"one", nullptr, "three"});
        arrayOfCapacity = replaceArrayWithCapacity(noteCapacity);
        setCommands(empty);
        setCommands(three);
        method_setImplementation(class_getClassMethod([NSMutableArray class], @selector(arrayWithCapacity:)),
                                 arrayOfCapacity);
        EXPECT_THAT(capacities, ElementsAre(0U, 3U));
        EXPECT_THAT(given, ElementsAre("0", "2"));
    });
}

TEST_F(Commands, AreNoListWherePlatformMakesNone) {
    zqm::support::inFreshProcess([this] {
        replaceMethod(@selector(setCommands:), noteList);
        const Array array = arrayOf({"one"});
        const IMP before = replaceArrayWithCapacity(noArray);
        setCommands(array);
        method_setImplementation(class_getClassMethod([NSMutableArray class], @selector(arrayWithCapacity:)),
                                 before);
        EXPECT_THAT(given, ElementsAre("nil"));
        EXPECT_EQ(host->entryPoints().lookups("RuntimeDirectReadStringArray"), 0U);
    });
}

TEST_F(Commands, AreAnEmptyListForABoundBelowNone) {
    zqm::support::inFreshProcess([this] {
        PluginHost::replace(
            "RuntimeUBound", +[](REALarray) { return std::int64_t{-5}; });
        replaceMethod(@selector(setCommands:), noteList);
        setCommands(arrayOf({"one"}));
        EXPECT_THAT(given, ElementsAre("0"));
    });
}

// ---- a platform that raises on the way

TEST_F(Commands, AreUnlockedWhenTheirConversionRaises) {
    zqm::support::inFreshProcess([this] {
        const std::string expectedClass = hostExceptionClass();
        PluginHost::replace(
            "REALGetStringEncoding", +[](REALstring) {
                [NSException raise:@"Converting" format:@"on purpose"];
                return std::uint32_t{0};
            });
        forgetEntryPoints();
        const Array array = arrayOf({"one", "two"});
        const auto before = host->ledger();
        try {
            setCommands(array);
            ADD_FAILURE() << "nothing raised";
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className(), expectedClass);
            EXPECT_EQ(exception.all().size(), 1U);
        }
        EXPECT_EQ(host->ledger(), before);
        EXPECT_EQ(platformCommands(), nil);
    });
}

// ---- listening

int starts = 0;
int stops = 0;

TEST_F(Commands, AreListenedForFromStartToStop) {
    zqm::support::inFreshProcess([this] {
        replaceMethod(
            @selector(startListening), +[](id, SEL) { ++starts; });
        replaceMethod(
            @selector(stopListening), +[](id, SEL) { ++stops; });
        object.call("startListening");
        EXPECT_EQ(starts, 1);
        EXPECT_EQ(stops, 0);
        object.call("stopListening");
        EXPECT_EQ(starts, 1);
        EXPECT_EQ(stops, 1);
    });
}

// ---- properties

using RecognizerProperties = RecognizerTest;

TEST_F(RecognizerProperties, ReachThePlatformAndComeBack) {
    Object object = newRecognizer();
    for (const bool value : {false, true, false}) {
        object.set("listensInForegroundOnly", value);
        EXPECT_EQ([platformObjectOf(object) listensInForegroundOnly], value ? YES : NO);
        EXPECT_EQ(object.get("listensInForegroundOnly").asBool(), value);
        object.set("blocksOtherRecognizers", !value);
        EXPECT_EQ([platformObjectOf(object) blocksOtherRecognizers], value ? NO : YES);
        EXPECT_EQ(object.get("blocksOtherRecognizers").asBool(), !value);
    }
    object.set("displayedCommandsTitle", "Gr\xC3\xBC\xC3\x9F");
    EXPECT_STREQ([[platformObjectOf(object) displayedCommandsTitle] UTF8String], "Gr\xC3\xBC\xC3\x9F");
    EXPECT_EQ(object.get("displayedCommandsTitle").asText(), "Gr\xC3\xBC\xC3\x9F");
}

TEST_F(RecognizerProperties, HaveNoTitleUntilOneIsSetNorAfterANullOne) {
    const auto before = host->ledger();
    {
        Object object = newRecognizer();
        EXPECT_TRUE(object.get("displayedCommandsTitle").isNull());
        object.set("displayedCommandsTitle", "title");
        object.set("displayedCommandsTitle", String());
        EXPECT_EQ([platformObjectOf(object) displayedCommandsTitle], nil);
        EXPECT_TRUE(object.get("displayedCommandsTitle").isNull());
    }
    EXPECT_EQ(host->ledger(), before);
}

std::vector<int> bytes;

void noteByte(id /*self*/, SEL /*selector*/, BOOL value) {
    bytes.push_back(static_cast<signed char>(value));
}

BOOL answerOdd(id /*self*/, SEL /*selector*/) {
    return static_cast<BOOL>(4);
}

void* accessor(const char* name, bool isSetter) {
    for (std::uint64_t i = 0; i < NSSpeechRecognizerClass.propertyCount; ++i) {
        const PropertyRecord& property = NSSpeechRecognizerClass.properties[i];
        if (property.name == std::string(name)) {
            return isSetter ? property.setter.address() : property.getter.address();
        }
    }
    return nullptr;
}

TEST_F(RecognizerProperties, PassTheByteOfABooleanUnchangedAndReadOneAsABoolean) {
    zqm::support::inFreshProcess([this] {
        const Object object = newRecognizer();
        replaceMethod(@selector(setListensInForegroundOnly:), noteByte);
        replaceMethod(@selector(setBlocksOtherRecognizers:), noteByte);
        replaceMethod(@selector(listensInForegroundOnly), answerOdd);
        replaceMethod(@selector(blocksOtherRecognizers), answerOdd);
        for (const char* name : {"listensInForegroundOnly", "blocksOtherRecognizers"}) {
            const auto set =
                reinterpret_cast<void (*)(REALobject, std::int64_t, signed char)>(accessor(name, true));
            const auto get =
                reinterpret_cast<unsigned char (*)(REALobject, std::int64_t)>(accessor(name, false));
            for (const int value : {1, 0, 2, -1}) {
                bytes.clear();
                set(object.handle(), 7, static_cast<signed char>(value));
                EXPECT_THAT(bytes, ElementsAre(value)) << name;
            }
            EXPECT_EQ(get(object.handle(), 7), 1) << name;
        }
    });
}

} // namespace
