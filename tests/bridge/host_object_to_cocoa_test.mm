// Host objects as the Cocoa objects that they stand for.

#include "bridge/host_object_to_cocoa.h"

#include "plugin/platform_guard.h"
#include "tests/bridge/bridge_host.h"
#include "tests/bridge/counted_objects.h"
#include "tests/bridge/documented_host_classes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <objc/runtime.h>

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using zqm::host::MemoryBlock;
using zqm::host::Object;

constexpr const char* kTrueItem = "TrueItem(Index as integer) as Folderitem";

// Room for the largest of the value objects.
void defineClass(PluginHost& host, const std::string& name, const std::string& super = {}) {
    host->defineClass({.name = name, .super = super, .dataSize = 4 * sizeof(double)});
}

// An object of that class which carries the Cocoa object.
Object carrying(PluginHost& host, const std::string& hostClass, id cocoaObject) {
    Object object = host->create(hostClass);
    object.dataAs<id>() = cocoaObject;
    return object;
}

// Every class that the bridge asks the host for, in order.
std::vector<std::string> classesAsked;

void noteClasses() {
    PluginHost::replace(
        "pluginObjectType", +[](const char* name) {
            classesAsked.emplace_back(name);
            return hostFunction<REALclassRef(const char*)>("pluginObjectType")(name);
        });
}

std::vector<std::string> keptNames() {
    return {kDocumentedKeptClasses.begin(), kDocumentedKeptClasses.end()};
}
std::vector<std::string> otherNames() {
    std::vector<std::string> names;
    for (const DocumentedClass& one : kDocumentedOtherClasses) {
        names.emplace_back(one.name);
    }
    return names;
}

// ---- the carrier, which a sibling of the family brings

std::vector<REALobject> wrapped;
id carrierObject = nil;

id wrapObject(id /*self*/, SEL /*command*/, REALobject object) {
    wrapped.push_back(object);
    return carrierObject;
}

void addClassMethod(Class type, const char* name, IMP function, const char* types) {
    ASSERT_TRUE(class_addMethod(object_getClass((id)type), sel_registerName(name), function, types));
}

void bringCarrier() {
    const Class carrier = objc_allocateClassPair([NSObject class], "ZQMREALobjectWrapper", 0);
    ASSERT_NE(carrier, Nil);
    objc_registerClassPair(carrier);
    addClassMethod(carrier, "wrap:", reinterpret_cast<IMP>(wrapObject), "@@:^v");
    carrierObject = [[[carrier alloc] init] autorelease];
}

// ---- wrapper classes

TEST(HostObjectToCocoa, EveryKeptWrapperClassGivesWhatItCarries) {
    inBridge([](PluginHost& host) {
        {
            const AutoreleasePool pool;
            for (const char* name : kDocumentedKeptClasses) {
                defineClass(host, name);
            }
            for (const char* name : kDocumentedKeptClasses) {
                id carried = newCounted([NSObject class]);
                const Object object = carrying(host, name, carried);
                EXPECT_EQ(GetObjectAsNSObject(object.handle()), carried) << name;
                EXPECT_EQ([carried retainCount], 1U) << name; // borrowed
                [carried release];
            }
        }
        EXPECT_EQ(countedAlive(), 0);
    });
}

// Each by itself: none is taken for another's.
TEST(HostObjectToCocoa, EachWrapperClassIsKnownWithoutTheOthers) {
    for (const char* name : kDocumentedKeptClasses) {
        SCOPED_TRACE(name);
        inBridge([name](PluginHost& host) {
            defineClass(host, name);
            id carried = [newCounted([NSObject class]) autorelease];
            const Object object = carrying(host, name, carried);
            EXPECT_EQ(GetObjectAsNSObject(object.handle()), carried);
        });
    }
}

TEST(HostObjectToCocoa, AWrapperThatCarriesNothingGivesNil) {
    inBridge([](PluginHost& host) {
        bringCarrier();
        defineClass(host, "NSPipeZQM");
        const Object object = host->create("NSPipeZQM");
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), nil);
        EXPECT_THAT(wrapped, IsEmpty());
    });
}

TEST(HostObjectToCocoa, ClassesAreAskedForInOrderAndKeptOnesOnce) {
    inBridge([](PluginHost& host) {
        noteClasses();
        defineClass(host, "OfTheUser");
        const Object object = host->create("OfTheUser");

        std::vector<std::string> all{"MemoryBlock", "Dictionary"};
        const auto kept = keptNames();
        const auto others = otherNames();
        all.insert(all.end(), kept.begin(), kept.end());
        all.insert(all.end(), others.begin(), others.end());
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), nil);
        EXPECT_THAT(classesAsked, ElementsAreArray(all));

        classesAsked.clear();
        std::vector<std::string> again{"MemoryBlock", "Dictionary"};
        again.insert(again.end(), others.begin(), others.end());
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), nil);
        EXPECT_THAT(classesAsked, ElementsAreArray(again));
    });
}

// Classes are asked for one at a time, as far as a test comes.
TEST(HostObjectToCocoa, AMatchAsksForNoClassBehindIt) {
    inBridge([](PluginHost& host) {
        defineClass(host, "NSPipeZQM");
        defineClass(host, "NSExpressionZQM");
        noteClasses();
        const Object pipe = carrying(host, "NSPipeZQM", @"pipe");
        EXPECT_EQ(GetObjectAsNSObject(pipe.handle()), @"pipe");
        EXPECT_THAT(classesAsked, ElementsAre("MemoryBlock", "Dictionary", "NSPathComponentCellZQM",
                                              "NSPathCellZQM", "NSPathControlZQM", "NSPipeZQM"));
        classesAsked.clear();
        const Object expression = carrying(host, "NSExpressionZQM", @"expression");
        EXPECT_EQ(GetObjectAsNSObject(expression.handle()), @"expression");
        EXPECT_EQ(classesAsked.size(), 2U + 108U - 4U);
    });
}

TEST(HostObjectToCocoa, AKeptClassThatWasAbsentStaysUnknown) {
    inBridge([](PluginHost& host) {
        defineClass(host, "OfTheUser");
        const Object user = host->create("OfTheUser");
        EXPECT_EQ(GetObjectAsNSObject(user.handle()), nil);
        for (const char* name : kDocumentedKeptClasses) {
            defineClass(host, name);
            const Object object = carrying(host, name, @"carried");
            EXPECT_EQ(GetObjectAsNSObject(object.handle()), nil) << name;
        }
    });
}

TEST(HostObjectToCocoa, AnotherClassMayComeLater) {
    inBridge([](PluginHost& host) {
        defineClass(host, "OfTheUser");
        const Object user = host->create("OfTheUser");
        EXPECT_EQ(GetObjectAsNSObject(user.handle()), nil);
        defineClass(host, "CFObjectZQM");
        const Object object = carrying(host, "CFObjectZQM", @"carried");
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), @"carried");
    });
}

TEST(HostObjectToCocoa, ASubclassOfTheUsersMatches) {
    inBridge([](PluginHost& host) {
        defineClass(host, "NSWindowZQM");
        defineClass(host, "DocumentWindow", "NSWindowZQM");
        defineClass(host, "LetterWindow", "DocumentWindow");
        for (const char* name : {"DocumentWindow", "LetterWindow"}) {
            const Object object = carrying(host, name, @"window");
            EXPECT_EQ(GetObjectAsNSObject(object.handle()), @"window") << name;
        }
    });
}

TEST(HostObjectToCocoa, KeptClassesAreTestedBeforeTheOthers) {
    inBridge([](PluginHost& host) {
        defineClass(host, "NSPipeZQM");
        defineClass(host, "NSSizeZQM", "NSPipeZQM");
        const Object object = carrying(host, "NSSizeZQM", @"pipe");
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), @"pipe");
    });
}

TEST(HostObjectToCocoa, WithoutClassReferencesNothingIsKnownYet) {
    inBridge([](PluginHost& host) {
        defineClass(host, "NSPipeZQM");
        const Object object = carrying(host, "NSPipeZQM", @"pipe");
        host->entryPoints().refuse("pluginObjectType");
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), nil);
        host->entryPoints().allow("pluginObjectType");
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), @"pipe");
    });
}

TEST(HostObjectToCocoa, WithoutClassTestsEverythingIsCarried) {
    inBridge([](PluginHost& host) {
        bringCarrier();
        host->entryPoints().refuse("RuntimeObjectIsa");
        defineClass(host, "NSPipeZQM");
        const Object pipe = carrying(host, "NSPipeZQM", @"pipe");
        const Object dictionary = host->dictionary();
        const Object block = host->memoryBlock("bytes");
        for (const Object& object : {pipe, dictionary, block}) {
            EXPECT_EQ(GetObjectAsNSObject(object.handle()), carrierObject);
        }
    });
}

// ---- the classes that are asked for each time

std::vector<std::string> timeMethodsSent;
REALobject timeObject = nullptr;

id timeValue(id /*self*/, SEL command, REALobject object) {
    timeMethodsSent.emplace_back(sel_getName(command));
    timeObject = object;
    return @"time";
}

// The host object holds 1, 2, 3, 4.
void expectValueOf(const DocumentedClass& documented, const Object& object, id actual) {
    auto& numbers = object.dataAs<std::array<double, 4>>();
    switch (documented.gives) {
    case Gives::FirstWord:
        object.dataAs<id>() = @"carried";
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), @"carried");
        return;
    case Gives::Size:
        EXPECT_STREQ([actual objCType], @encode(NSSize));
        EXPECT_EQ([actual sizeValue].width, numbers[0]);
        EXPECT_EQ([actual sizeValue].height, numbers[1]);
        return;
    case Gives::Rect:
        EXPECT_STREQ([actual objCType], @encode(NSRect));
        EXPECT_EQ([actual rectValue].origin.x, numbers[0]);
        EXPECT_EQ([actual rectValue].origin.y, numbers[1]);
        EXPECT_EQ([actual rectValue].size.width, numbers[2]);
        EXPECT_EQ([actual rectValue].size.height, numbers[3]);
        return;
    case Gives::Range:
        EXPECT_STREQ([actual objCType], @encode(NSRange));
        EXPECT_EQ([actual rangeValue].location, (object.dataAs<std::array<std::uint64_t, 2>>()[0]));
        EXPECT_EQ([actual rangeValue].length, (object.dataAs<std::array<std::uint64_t, 2>>()[1]));
        return;
    case Gives::Point:
        EXPECT_STREQ([actual objCType], @encode(NSPoint));
        EXPECT_EQ([actual pointValue].x, numbers[0]);
        EXPECT_EQ([actual pointValue].y, numbers[1]);
        return;
    case Gives::Time:
        EXPECT_EQ(actual, @"time");
        EXPECT_EQ(timeObject, object.handle());
        EXPECT_THAT(timeMethodsSent, ElementsAre(documented.method));
        timeMethodsSent.clear();
        return;
    }
}

Object valueObject(PluginHost& host, const DocumentedClass& documented) {
    Object object = host->create(documented.name);
    if (documented.gives == Gives::Range) {
        object.dataAs<std::array<std::uint64_t, 2>>() = {5, ~std::uint64_t{0}};
    } else if (documented.gives != Gives::FirstWord) {
        object.dataAs<std::array<double, 4>>() = {1, -2.5, 3e9, 4};
    }
    return object;
}

TEST(HostObjectToCocoa, EveryOtherClassGivesItsResult) {
    inBridge([](PluginHost& host) {
        for (const DocumentedClass& documented : kDocumentedOtherClasses) {
            defineClass(host, documented.name);
            if (documented.gives == Gives::Time) {
                addClassMethod([NSValue class], documented.method, reinterpret_cast<IMP>(timeValue), "@@:^v");
            }
        }
        for (const DocumentedClass& documented : kDocumentedOtherClasses) {
            SCOPED_TRACE(documented.name);
            const Object object = valueObject(host, documented);
            expectValueOf(documented, object, GetObjectAsNSObject(object.handle()));
        }
    });
}

TEST(HostObjectToCocoa, TimesWithoutTheirMethodAreNil) {
    inBridge([](PluginHost& host) {
        bringCarrier();
        for (const DocumentedClass& documented : kDocumentedOtherClasses) {
            if (documented.gives == Gives::Time) {
                defineClass(host, documented.name);
                const Object object = host->create(documented.name);
                EXPECT_EQ(GetObjectAsNSObject(object.handle()), nil) << documented.name;
            }
        }
        EXPECT_THAT(wrapped, IsEmpty());
    });
}

TEST(HostObjectToCocoa, ValuesAreNewEachTime) {
    inBridge([](PluginHost& host) {
        defineClass(host, "NSRectZQM");
        const Object object = host->create("NSRectZQM");
        id first = GetObjectAsNSObject(object.handle());
        id second = GetObjectAsNSObject(object.handle());
        EXPECT_NE(first, second);
        EXPECT_EQ([first retainCount], 1U);
    });
}

// ---- memory blocks

void expectBytes(const std::string& expected, id data) {
    ASSERT_TRUE([data isKindOfClass:[NSData class]]);
    EXPECT_EQ(std::string(static_cast<const char*>([data bytes]), [data length]), expected);
    EXPECT_EQ([data retainCount], 1U);
}

TEST(HostObjectToCocoa, AMemoryBlockIsACopyOfItsBytes) {
    inBridge([](PluginHost& host) {
        const std::string bytes("a\0b\xFF", 4);
        MemoryBlock block = host->memoryBlock(bytes);
        id data = GetObjectAsNSObject(block.handle());
        block.write(0, "zzzz");
        expectBytes(bytes, data);
        EXPECT_EQ(host->entryPoints().calls("REALLockObject"), 1U);
        EXPECT_EQ(host->entryPoints().lookups("memoryBlockGetSize"), 0U);
    });
}

REALobject notedBlock = nullptr;
std::vector<std::string> stepsOfBlock;

void noteStep(REALobject object, const char* step) {
    if (object == notedBlock) {
        stepsOfBlock.emplace_back(step);
    }
}

TEST(HostObjectToCocoa, AMemoryBlockIsLockedFirstAndUnlockedLast) {
    inBridge([](PluginHost& host) {
        const MemoryBlock block = host->memoryBlock("bytes");
        notedBlock = block.handle();
        PluginHost::replace(
            "REALLockObject", +[](REALobject object) {
                noteStep(object, "locked");
                hostFunction<void(REALobject)>("REALLockObject")(object);
            });
        PluginHost::replace(
            "REALUnlockObject", +[](REALobject object) {
                noteStep(object, "unlocked");
                hostFunction<void(REALobject)>("REALUnlockObject")(object);
            });
        PluginHost::replace(
            "REALGetPropValueInteger", +[](REALobject object, const char* name, std::int64_t* out) {
                noteStep(object, name);
                return hostFunction<bool(REALobject, const char*, std::int64_t*)>("REALGetPropValueInteger")(
                    object, name, out);
            });
        PluginHost::replace(
            "memoryBlockGetPtr", +[](REALobject object) {
                noteStep(object, "address");
                return hostFunction<void*(REALobject)>("memoryBlockGetPtr")(object);
            });
        host->entryPoints().refuse("REALLoadObjectMethod");
        expectBytes("bytes", GetObjectAsNSObject(block.handle()));
        EXPECT_THAT(stepsOfBlock, ElementsAre("locked", "Size", "address", "unlocked"));
    });
}

TEST(HostObjectToCocoa, AnEmptyMemoryBlockIsNil) {
    inBridge([](PluginHost& host) {
        bringCarrier();
        const MemoryBlock block = host->memoryBlock("");
        EXPECT_EQ(GetObjectAsNSObject(block.handle()), nil);
        EXPECT_THAT(wrapped, IsEmpty());
    });
}

TEST(HostObjectToCocoa, AMemoryBlockOfNegativeSizeIsEmpty) {
    inBridge([](PluginHost& host) {
        const MemoryBlock block = host->memoryBlock("bytes");
        for (const std::int64_t size : {std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
            host->memoryBlockFaults().said = size;
            EXPECT_EQ(GetObjectAsNSObject(block.handle()), nil);
        }
        host->memoryBlockFaults() = {};
    });
}

TEST(HostObjectToCocoa, AMemoryBlockWithoutAddressIsNil) {
    inBridge([](PluginHost& host) {
        const MemoryBlock block = host->memoryBlock("bytes");
        host->memoryBlockFaults().withoutAddress = true;
        EXPECT_EQ(GetObjectAsNSObject(block.handle()), nil);
        host->memoryBlockFaults() = {};
    });
}

TEST(HostObjectToCocoa, AMemoryBlocksSizeMayComeFromTheEntryPoint) {
    for (const bool refused : {true, false}) {
        inBridge([refused](PluginHost& host) {
            const MemoryBlock block = host->memoryBlock("bytes");
            if (refused) {
                host->entryPoints().refuse("REALGetPropValueInteger");
            } else {
                host->entryPoints().failEveryCall("REALGetPropValueInteger");
            }
            expectBytes("bytes", GetObjectAsNSObject(block.handle()));
            EXPECT_EQ(host->entryPoints().calls("memoryBlockGetSize"), 1U);
        });
    }
}

TEST(HostObjectToCocoa, AMemoryBlockWithoutSizeIsNil) {
    inBridge([](PluginHost& host) {
        const MemoryBlock block = host->memoryBlock("bytes");
        host->entryPoints().refuse("REALGetPropValueInteger");
        host->entryPoints().refuse("memoryBlockGetSize");
        EXPECT_EQ(GetObjectAsNSObject(block.handle()), nil);
    });
}

TEST(HostObjectToCocoa, AMemoryBlockThatCannotBeLockedIsNotUnlocked) {
    inBridge([](PluginHost& host) {
        const MemoryBlock block = host->memoryBlock("bytes");
        host->entryPoints().refuse("REALLockObject");
        expectBytes("bytes", GetObjectAsNSObject(block.handle()));
    });
}

id failToCopy(id /*self*/, SEL /*command*/, const void* /*bytes*/, NSUInteger /*length*/) {
    [NSException raise:NSMallocException format:@"no room"];
    return nil;
}

TEST(HostObjectToCocoa, AMemoryBlockIsUnlockedWhenItsCopyFails) {
    inBridge([](PluginHost& host) {
        const MemoryBlock block = host->memoryBlock("bytes");
        const Method copy = class_getClassMethod([NSData class], @selector(dataWithBytes:length:));
        const IMP original = method_setImplementation(copy, reinterpret_cast<IMP>(failToCopy));
        NSException* exception = runUnderPlatformGuard([&] { GetObjectAsNSObject(block.handle()); });
        method_setImplementation(copy, original);
        EXPECT_STREQ([[exception reason] UTF8String], "no room");
        EXPECT_EQ(host->entryPoints().calls("REALLockObject"), 1U);
        expectBytes("bytes", GetObjectAsNSObject(block.handle()));
    });
}

// ---- folder items and dictionaries

void* const kSomeMethod = reinterpret_cast<void*>(+[] {});

TEST(HostObjectToCocoa, AnObjectWithTrueItemIsAFolderItemWhateverItsClass) {
    inBridge([](PluginHost& host) {
        bringCarrier();
        ObjectMethods methods;
        methods.answer(kTrueItem, kSomeMethod);
        host->entryPoints().refuse("REALFSRefFromFolderItem");
        noteClasses();
        const Object dictionary = host->dictionary();
        EXPECT_EQ(GetObjectAsNSObject(dictionary.handle()), nil); // of no file
        EXPECT_THAT(classesAsked, ElementsAre("MemoryBlock"));
        EXPECT_EQ(host->entryPoints().lookups("REALFSRefFromFolderItem"), 2U);
        EXPECT_THAT(wrapped, IsEmpty());
    });
}

TEST(HostObjectToCocoa, AFolderItemIsItsFileUrl) {
    inBridge([](PluginHost& host) {
        const Object root = host->folderItem("/");
        id url = GetObjectAsNSObject(root.handle());
        EXPECT_TRUE([url isKindOfClass:[NSURL class]]);
        EXPECT_STREQ([[url absoluteString] UTF8String], "file:///");
    });
}

TEST(HostObjectToCocoa, EveryObjectIsAskedForTrueItem) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        defineClass(host, "OfTheUser");
        const Object object = host->create("OfTheUser");
        GetObjectAsNSObject(object.handle());
        GetObjectAsNSObject(object.handle());
        GetObjectAsNSObject(nullptr);
        EXPECT_THAT(ObjectMethods::asked(), ElementsAre(ObjectMethods::Request{object.handle(), kTrueItem},
                                                        ObjectMethods::Request{object.handle(), kTrueItem},
                                                        ObjectMethods::Request{nullptr, kTrueItem}));
    });
}

TEST(HostObjectToCocoa, AMemoryBlockIsNotAskedForTrueItem) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        const MemoryBlock block = host->memoryBlock("bytes");
        expectBytes("bytes", GetObjectAsNSObject(block.handle()));
        EXPECT_THAT(ObjectMethods::askedOf(block.handle()), IsEmpty());
    });
}

TEST(HostObjectToCocoa, WithoutMethodsNothingIsAFolderItem) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("REALLoadObjectMethod");
        defineClass(host, "NSPipeZQM");
        const Object object = carrying(host, "NSPipeZQM", @"pipe");
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), @"pipe");
    });
}

TEST(HostObjectToCocoa, ADictionaryIsConverted) {
    inBridge([](PluginHost& host) {
        zqm::host::Dictionary dictionary = host->dictionary();
        dictionary.setValue("key", "value");
        EXPECT_TRUE([GetObjectAsNSObject(dictionary.handle())
            isEqual:[NSDictionary dictionaryWithObject:@"value" forKey:@"key"]]);
    });
}

// ---- nil and objects of unknown classes

TEST(HostObjectToCocoa, AnUnknownObjectIsNilWithoutACarrier) {
    inBridge([](PluginHost& host) {
        defineClass(host, "OfTheUser");
        const Object object = host->create("OfTheUser");
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), nil);
        bringCarrier(); // looked for at each call
        EXPECT_EQ(GetObjectAsNSObject(object.handle()), carrierObject);
        EXPECT_THAT(wrapped, ElementsAre(object.handle()));
    });
}

TEST(HostObjectToCocoa, NilIsTestedForFolderItemsAndKeptClassesAlone) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        noteClasses();
        EXPECT_EQ(GetObjectAsNSObject(nullptr), nil);
        EXPECT_THAT(ObjectMethods::asked(), ElementsAre(ObjectMethods::Request{nullptr, kTrueItem}));
        EXPECT_THAT(classesAsked, ElementsAreArray(keptNames()));
    });
}

TEST(HostObjectToCocoa, NilIsCarriedWhereThereIsACarrier) {
    inBridge([](PluginHost& host) {
        bringCarrier();
        EXPECT_EQ(GetObjectAsNSObject(nullptr), carrierObject);
        EXPECT_THAT(wrapped, ElementsAre(nullptr));
    });
}

TEST(HostObjectToCocoa, NilOfAKeptClassGivesNil) {
    inBridge([](PluginHost& host) {
        bringCarrier();
        defineClass(host, "NSPipeZQM");
        PluginHost::replace(
            "RuntimeObjectIsa", +[](REALobject, REALclassRef) { return true; });
        EXPECT_EQ(GetObjectAsNSObject(nullptr), nil);
        EXPECT_THAT(wrapped, IsEmpty());
    });
}

} // namespace
