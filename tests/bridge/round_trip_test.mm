// Nested values there and back, from either side.

#include "tests/bridge/to_host_fixture.h"
#include "tests/bridge/tree.h"

#include "bridge/variant_to_cocoa.h"
#include "plugin/platform_guard.h"
#include "plugin/sibling_methods.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace trees;
using zqm::host::Array;
using zqm::host::Dictionary;
using zqm::host::ElementType;
using zqm::host::MemoryBlock;
using zqm::host::Object;
using zqm::host::Runtime;
using zqm::host::Value;

#ifdef __SANITIZE_ADDRESS__
constexpr int kTreesPerRound = 400;
#else
constexpr int kTreesPerRound = 3500;
#endif
constexpr std::uint32_t kRounds = 16; // in each direction

constexpr const char* kProgramClass = "ProgramThing";

// What a scalar is after the journey.
enum class Arrival {
    Same,
    AsInteger,  // of the host's first kind, which has 64 bits too
    LowBits,    // the low 32
    AsString,   // its text
    WholePart,  // of the seconds
    NilIfEmpty, // bytes
};

struct Journey {
    Kind kind;
    Arrival fromHost;  // to Cocoa and back
    Arrival fromCocoa; // to the host and back
};

constexpr Journey kJourneys[] = {
    {Kind::Nothing, Arrival::Same, Arrival::Same},
    {Kind::Boolean, Arrival::Same, Arrival::Same},
    {Kind::Integer, Arrival::Same, Arrival::Same},
    {Kind::Int64, Arrival::AsInteger, Arrival::AsInteger},
    {Kind::Unsigned, Arrival::Same, Arrival::LowBits},
    {Kind::Single, Arrival::Same, Arrival::Same},
    {Kind::Double, Arrival::Same, Arrival::Same},
    {Kind::String, Arrival::Same, Arrival::Same},
    {Kind::Text, Arrival::AsString, Arrival::Same},
    {Kind::Address, Arrival::Same, Arrival::AsString},
    {Kind::Date, Arrival::WholePart, Arrival::WholePart},
    {Kind::Data, Arrival::NilIfEmpty, Arrival::NilIfEmpty},
    {Kind::Thing, Arrival::Same, Arrival::Same},
};

Tree arrived(const Tree& scalar, Arrival arrival) {
    Tree made = scalar;
    switch (arrival) {
    case Arrival::Same:
        break;
    case Arrival::AsInteger:
        made.kind = Kind::Integer;
        break;
    case Arrival::LowBits:
        made.kind = Kind::Integer;
        made.integer = static_cast<std::uint32_t>(scalar.integer);
        break;
    case Arrival::AsString:
        made.kind = Kind::String;
        break;
    case Arrival::WholePart:
        made.real = 0;
        break;
    case Arrival::NilIfEmpty:
        made.kind = scalar.text.empty() ? Kind::Nothing : scalar.kind;
        break;
    }
    return made;
}

// All collections but dictionaries arrive as arrays.
Tree arrived(const Tree& tree, Arrival Journey::*direction) {
    const auto* journey = std::ranges::find(kJourneys, tree.kind, &Journey::kind);
    if (journey != std::end(kJourneys)) {
        return arrived(tree, journey->*direction);
    }
    Tree made{.kind = tree.kind == Kind::Dictionary ? Kind::Dictionary : Kind::Array};
    for (const Tree& part : tree.parts) {
        made.parts.push_back(arrived(part, direction));
    }
    return made;
}

// Cocoa's arrays hold no nil: the whole conversion of a host array with one fails.
bool holdsNilInAnArray(const Tree& tree) {
    return std::ranges::any_of(tree.parts, [&](const Tree& part) {
        return (part.kind == Kind::Nothing && tree.kind == Kind::Array) || holdsNilInAnArray(part);
    });
}

constexpr std::int64_t kReferenceInUnixTime = 978307200;

// One for all tests: the plugin keeps class references of the host for the life of the process.
PluginHost& theHost() {
    static PluginHost host;
    static const bool isReady = [] {
        const AutoreleasePool pool;
        host->load(ZQM_FOUNDATION);
        CocoaInit();
        host->defineClass({.name = kProgramClass, .dataSize = 8});
        [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:0]];
        return true;
    }();
    static_cast<void>(isReady);
    return host;
}

class RoundTrip : public testing::TestWithParam<std::uint32_t> {
public:
    ~RoundTrip() override {
        for (const zqm::host::Report& report : host->reports()) {
            ADD_FAILURE() << nameOf(report.kind) << ": " << report.text;
        }
        host->clearReports();
    }

    Tree ofHost(const Object& object);
    Tree ofCocoa(id object);
    Object toHost(const Tree& tree);
    Array arrayToHost(const Tree& tree);
    Dictionary dictionaryToHost(const Tree& tree);
    // The parts of a set are put into its order, and those dropped that equal another.
    id toCocoa(Tree& tree);
    id setToCocoa(Tree& tree);

    Tree thing(const void* known) const {
        const auto found = std::ranges::find(things, known);
        return {.kind = Kind::Thing, .integer = found - things.begin()};
    }
    std::int64_t newThing(const void* made) {
        things.push_back(made);
        return static_cast<std::int64_t>(things.size()) - 1;
    }

    // Runs one journey, which must leave nothing behind on either side.
    template <typename Body>
    void balanced(Body&& body) {
        {
            const AutoreleasePool pool;
            body();
            owners.clear();
        }
        things.clear();
        ASSERT_EQ(host->ledger(), zqm::host::Ledger());
        ASSERT_EQ(countedAlive(), 0);
        ASSERT_EQ(CFDictionaryGetCount(instances), 0);
    }

    PluginHost& host = theHost();
    std::vector<const void*> things; // by number, of the side where the journey begins
    std::vector<Object> owners;      // of those that are the host's
};

std::int64_t secondsOf(const Object& date) {
    std::tm fields{};
    const auto field = [&](const char* name) { return static_cast<int>(date.get(name).asInteger()); };
    fields.tm_year = field("Year") - 1900;
    fields.tm_mon = field("Month") - 1;
    fields.tm_mday = field("Day");
    fields.tm_hour = field("Hour");
    fields.tm_min = field("Minute");
    fields.tm_sec = field("Second");
    return timegm(&fields) - kReferenceInUnixTime;
}

Tree RoundTrip::ofHost(const Object& object) {
    if (object.isNull()) {
        return {};
    }
    if (object.className() == kProgramClass) {
        return thing(object.handle());
    }
    if (object.className() == "Date") {
        return {.kind = Kind::Date, .integer = secondsOf(object)};
    }
    if (object.className() == "MemoryBlock") {
        return {.kind = Kind::Data, .text = MemoryBlock(object).bytes()};
    }
    if (object.className() == "Dictionary") {
        Tree made{.kind = Kind::Dictionary};
        const Dictionary dictionary(object);
        for (const Value& key : dictionary.keys()) {
            made.parts.push_back(ofHost(host->variant(key)));
            made.parts.push_back(ofHost(host->variant(dictionary.value(key))));
        }
        return made;
    }
    const std::int32_t code = object.variantType();
    if (code >= 4096) {
        Tree made{.kind = Kind::Array};
        for (const Value& value : Array(object).values()) {
            made.parts.push_back(ofHost(value.asObject()));
        }
        return made;
    }
    const Value value = object.variantValue();
    switch (code) {
    case code::kBoolean:
        return {.kind = Kind::Boolean, .integer = value.asBool()};
    case code::kInteger:
        return {.kind = Kind::Integer, .integer = value.asInteger()};
    case code::kInt64:
        return {.kind = Kind::Int64, .integer = value.asInteger()};
    case code::kSingle:
        return {.kind = Kind::Single, .real = value.asDouble()};
    case code::kDouble:
        return {.kind = Kind::Double, .real = value.asDouble()};
    case code::kString:
        return {.kind = Kind::String, .text = value.asText()};
    default:
        throw std::logic_error("a Variant of code " + std::to_string(code));
    }
}

Array RoundTrip::arrayToHost(const Tree& tree) {
    struct Element {
        Kind kind;
        ElementType type;
    };
    static constexpr Element kElements[] = {
        {Kind::Integer, ElementType::Integer}, {Kind::Int64, ElementType::Int64},
        {Kind::Single, ElementType::Single},   {Kind::Double, ElementType::Double},
        {Kind::Boolean, ElementType::Boolean}, {Kind::String, ElementType::String},
        {Kind::Text, ElementType::Text},       {Kind::Date, ElementType::Date},
    };
    std::vector<Value> values;
    for (const Tree& part : tree.parts) {
        const Object element = toHost(part);
        values.push_back(element.isNull() ? Value() : Value(element));
    }
    if (tree.kind == Kind::Array) {
        return host->array(ElementType::Object, values);
    }
    for (Value& value : values) {
        value = value.asObject().variantValue();
    }
    const auto* element = std::ranges::find(kElements, static_cast<Kind>(tree.integer), &Element::kind);
    return host->array(element->type, values);
}

Dictionary RoundTrip::dictionaryToHost(const Tree& tree) {
    Dictionary made = host->dictionary();
    for (std::size_t i = 0; i < tree.parts.size(); i += 2) {
        made.setValue(toHost(tree.parts[i]), toHost(tree.parts[i + 1]));
    }
    return made;
}

Object dateToHost(PluginHost& host, std::int64_t sinceReference) {
    const std::time_t seconds = sinceReference + kReferenceInUnixTime;
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    return host->date(fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min,
                      fields.tm_sec);
}

Object RoundTrip::toHost(const Tree& tree) {
    switch (tree.kind) {
    case Kind::Boolean:
        return host->variant(code::kBoolean, tree.integer != 0);
    case Kind::Integer:
        return host->variant(code::kInteger, tree.integer);
    case Kind::Int64:
        return host->variant(code::kInt64, tree.integer);
    case Kind::Single:
        return host->variant(code::kSingle, tree.real);
    case Kind::Double:
        return host->variant(code::kDouble, tree.real);
    case Kind::String:
        return host->variant(code::kString, tree.text);
    case Kind::Text:
        return host->variant(Value(host->text(tree.text)));
    case Kind::Date:
        return dateToHost(host, tree.integer);
    case Kind::Data:
        return host->memoryBlock(tree.text);
    case Kind::Thing:
        return owners.at(static_cast<std::size_t>(tree.integer));
    case Kind::Array:
    case Kind::TypedArray:
        return arrayToHost(tree);
    case Kind::Dictionary:
        return dictionaryToHost(tree);
    default:
        return {};
    }
}

Tree numberOfCocoa(NSNumber* number) {
    if (number == (id)kCFBooleanTrue || number == (id)kCFBooleanFalse) {
        return {.kind = Kind::Boolean, .integer = number == (id)kCFBooleanTrue};
    }
    switch (*[number objCType]) {
    case 'f':
        return {.kind = Kind::Single, .real = [number floatValue]};
    case 'd':
        return {.kind = Kind::Double, .real = [number doubleValue]};
    case 'Q':
        return {.kind = Kind::Unsigned, .integer = static_cast<std::int64_t>([number unsignedLongLongValue])};
    default:
        return {.kind = Kind::Integer, .integer = [number longLongValue]};
    }
}

Tree RoundTrip::ofCocoa(id object) {
    const auto isA = [&](Class type) { return [object isKindOfClass:type]; };
    if (object == nil || object == [NSNull null]) {
        return {};
    }
    if (isA([NSFileManager class])) {
        return thing(object);
    }
    if (isA([NSString class])) {
        return {.kind = Kind::String, .text = [object UTF8String]};
    }
    if (isA([NSNumber class])) {
        return numberOfCocoa(object);
    }
    if (isA([NSDate class])) {
        const double seconds = [object timeIntervalSinceReferenceDate];
        return {.kind = Kind::Date,
                .integer = static_cast<std::int64_t>(std::floor(seconds)),
                .real = seconds - std::floor(seconds)};
    }
    if (isA([NSData class])) {
        return {.kind = Kind::Data,
                .text = std::string(static_cast<const char*>([object bytes]), [object length])};
    }
    Tree made{.kind = isA([NSDictionary class]) ? Kind::Dictionary : Kind::Array};
    NSEnumerator* each = made.kind == Kind::Dictionary ? [object keyEnumerator] : [object objectEnumerator];
    while (id part = [each nextObject]) {
        made.parts.push_back(ofCocoa(part));
        if (made.kind == Kind::Dictionary) {
            made.parts.push_back(ofCocoa([object objectForKey:part]));
        }
    }
    return made;
}

id RoundTrip::setToCocoa(Tree& tree) {
    NSMutableSet* made = [NSMutableSet set];
    std::vector<std::pair<id, Tree>> parts;
    for (Tree& part : tree.parts) {
        id object = toCocoa(part);
        if (![made containsObject:object]) {
            [made addObject:object];
            parts.emplace_back(object, part);
        }
    }
    tree.parts.clear();
    NSArray* order = [made allObjects];
    for (NSUInteger i = 0; i < [order count]; ++i) {
        id object = [order objectAtIndex:i];
        tree.parts.push_back(std::ranges::find(parts, object, &std::pair<id, Tree>::first)->second);
    }
    return made;
}

id RoundTrip::toCocoa(Tree& tree) {
    switch (tree.kind) {
    case Kind::Boolean:
        return [NSNumber numberWithBool:tree.integer != 0];
    case Kind::Integer:
        return [NSNumber numberWithLong:tree.integer];
    case Kind::Int64:
        return [NSNumber numberWithLongLong:tree.integer];
    case Kind::Unsigned:
        tree.integer |= std::numeric_limits<std::int64_t>::min(); // others need not stay of this type
        return [NSNumber numberWithUnsignedLongLong:static_cast<std::uint64_t>(tree.integer)];
    case Kind::Single:
        return [NSNumber numberWithFloat:static_cast<float>(tree.real)];
    case Kind::Double:
        return [NSNumber numberWithDouble:tree.real];
    case Kind::String:
        return [NSString stringWithUTF8String:tree.text.c_str()];
    case Kind::Address:
        return [NSURL URLWithString:[NSString stringWithUTF8String:tree.text.c_str()]];
    case Kind::Date:
        return [NSDate dateWithTimeIntervalSinceReferenceDate:static_cast<double>(tree.integer) + tree.real];
    case Kind::Data:
        return [NSData dataWithBytes:tree.text.data() length:tree.text.size()];
    case Kind::Thing: {
        id made = [newCounted([NSFileManager class]) autorelease];
        tree.integer = newThing(made);
        return made;
    }
    case Kind::Set:
        return setToCocoa(tree);
    case Kind::Array: {
        NSMutableArray* made = [NSMutableArray array];
        for (Tree& part : tree.parts) {
            [made addObject:toCocoa(part)];
        }
        return made;
    }
    case Kind::Dictionary: {
        NSMutableDictionary* made = [NSMutableDictionary dictionary];
        for (std::size_t i = 0; i < tree.parts.size(); i += 2) {
            id key = toCocoa(tree.parts[i]);
            [made setObject:toCocoa(tree.parts[i + 1]) forKey:key];
        }
        return made;
    }
    default:
        return [NSNull null];
    }
}

// The things of a tree get their objects and numbers before it is built.
void numberThings(Tree& tree, const std::function<std::int64_t()>& next) {
    if (tree.kind == Kind::Thing) {
        tree.integer = next();
    }
    for (Tree& part : tree.parts) {
        numberThings(part, next);
    }
}

// Host dates have whole seconds.
void dropFractions(Tree& tree) {
    if (tree.kind == Kind::Date) {
        tree.real = 0;
    }
    std::ranges::for_each(tree.parts, dropFractions);
}

struct Tally {
    int whole = 0;
    int failed = 0;
};

TEST_P(RoundTrip, FromTheHostAndBack) {
    Generator generator(GetParam(),
                        {Kind::Nothing, Kind::Boolean, Kind::Integer, Kind::Int64, Kind::Single, Kind::Double,
                         Kind::String, Kind::Text, Kind::Date, Kind::Data, Kind::Thing, Kind::Array,
                         Kind::TypedArray, Kind::Dictionary, Kind::Array, Kind::Dictionary});
    Tally tally;
    for (int number = 0; number < kTreesPerRound; ++number) {
        Tree tree = generator.next();
        dropFractions(tree);
        const std::string what = line(tree);
        balanced([&] {
            numberThings(tree, [&] {
                owners.push_back(host->create(kProgramClass));
                return newThing(owners.back().handle());
            });
            const Tree expected = arrived(tree, &Journey::fromHost);
            const Object original = toHost(tree);
            Object result;
            const NSException* exception = runUnderPlatformGuard([&] {
                result = host->adopt(NewVariantFromNSObject(GetVariantAsNSObject(original.handle())));
            });
            ASSERT_EQ(exception != nil, holdsNilInAnArray(expected)) << what;
            ++(exception != nil ? tally.failed : tally.whole);
            if (exception == nil) {
                ASSERT_EQ(line(ofHost(result)), line(expected)) << what;
            }
        });
        ASSERT_FALSE(HasFailure()) << what;
    }
    EXPECT_GT(tally.whole, kTreesPerRound / 2);
    EXPECT_GT(tally.failed, kTreesPerRound / 50);
}

TEST_P(RoundTrip, FromCocoaAndBack) {
    Generator generator(GetParam(), {Kind::Nothing, Kind::Boolean, Kind::Integer, Kind::Int64, Kind::Unsigned,
                                     Kind::Single, Kind::Double, Kind::String, Kind::Address, Kind::Date,
                                     Kind::Data, Kind::Thing, Kind::Array, Kind::Set, Kind::Dictionary,
                                     Kind::Array, Kind::Dictionary});
    Tally tally;
    for (int number = 0; number < kTreesPerRound; ++number) {
        Tree tree = generator.next();
        balanced([&] {
            id original = toCocoa(tree);
            const std::string what = line(tree);
            const Tree expected = arrived(tree, &Journey::fromCocoa);
            const Object between = host->adopt(NewVariantFromNSObject(original));
            id result = nil;
            const NSException* exception =
                runUnderPlatformGuard([&] { result = GetVariantAsNSObject(between.handle()); });
            ASSERT_EQ(exception != nil, holdsNilInAnArray(expected)) << what;
            ++(exception != nil ? tally.failed : tally.whole);
            if (exception == nil) {
                ASSERT_EQ(line(ofCocoa(result)), line(expected)) << what;
            }
        });
        ASSERT_FALSE(HasFailure()) << line(tree);
    }
    EXPECT_GT(tally.whole, kTreesPerRound / 2);
    EXPECT_GT(tally.failed, kTreesPerRound / 50);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RoundTrip, testing::Range(0U, kRounds));

} // namespace
