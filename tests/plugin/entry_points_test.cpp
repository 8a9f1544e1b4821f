// Every service of the host: asked for by its exact name, once, and harmless while it is absent.

#include "plugin/entry_points.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

std::vector<std::string> asked;
void* answer = nullptr;

void* resolve(const char* name) {
    asked.emplace_back(name);
    return answer;
}

// A value that no default is mistaken for.
template <typename Type>
Type sample(std::int64_t seed) {
    if constexpr (std::is_pointer_v<Type>) {
        return reinterpret_cast<Type>(static_cast<std::uintptr_t>(0x1000 * (seed + 1)));
    } else if constexpr (std::is_same_v<Type, bool>) {
        return true;
    } else {
        return static_cast<Type>(seed + 41);
    }
}

template <typename Result, typename... Parameters>
struct Service {
    static inline int calls = 0;

    static std::tuple<Parameters...> samples() {
        return []<int... Seed>(std::integer_sequence<int, Seed...>) {
            return std::tuple<Parameters...>{sample<Parameters>(Seed)...};
        }
        (std::make_integer_sequence<int, sizeof...(Parameters)>{});
    }
    static Result function(Parameters... parameters) {
        EXPECT_EQ(std::tie(parameters...), samples());
        ++calls;
        if constexpr (!std::is_void_v<Result>) {
            return sample<Result>(7);
        }
    }
    // Calls the wrapper with the samples; answers whether the result is the neutral one.
    static bool isNeutral(auto& wrapper) {
        if constexpr (std::is_void_v<Result>) {
            std::apply(wrapper, samples());
            return true;
        } else {
            return std::apply(wrapper, samples()) == Result();
        }
    }
};

// What the tests do with a wrapper, whatever its type.
struct Wrapper {
    bool (*callIsNeutral)();
    void* service;
    int* calls;
    bool isVoid;
    bool isArrayService;
};

template <auto& wrapper, typename Result, typename... Parameters>
Wrapper describe(EntryPoint<Result(Parameters...)>&) {
    using Made = Service<Result, Parameters...>;
    return {[] { return Made::isNeutral(wrapper); }, reinterpret_cast<void*>(&Made::function), &Made::calls,
            std::is_void_v<Result>, false};
}

template <auto& wrapper, typename Result, typename... Parameters>
Wrapper describe(ArrayEntryPoint<Result(Parameters...)>&) {
    using Made = Service<Result, Parameters...>;
    using Work = Result (*)(Parameters...);
    constexpr Work (*chooser)(REALarray) = [](REALarray array) -> Work {
        EXPECT_EQ(array, sample<REALarray>(0));
        return Made::function;
    };
    return {[] { return Made::isNeutral(wrapper); }, reinterpret_cast<void*>(chooser), &Made::calls,
            std::is_void_v<Result>, true};
}

const std::map<std::string, Wrapper>& wrappers() {
    static const std::map<std::string, Wrapper> all = {
#define ENTRY_POINT(wrapper, name, Result, Parameters) {#wrapper, describe<wrapper>(wrapper)},
#define ARRAY_ENTRY_POINT ENTRY_POINT
#include "plugin/entry_points.def"
#undef ENTRY_POINT
#undef ARRAY_ENTRY_POINT
    };
    return all;
}

struct Documented {
    const char* wrapper;
    const char* name;
};

constexpr Documented kDocumented[] = {
    {"REALGetStringData", "PluginGetStringData"},
    {"REALDisposeStringData", "PluginDisposeStringData"},
    {"REALGetStringCFString", "REALGetStringCFString"},
    {"REALCopyStringCFString", "REALGetStringCFString"},
    {"originalREALBuildString", "REALBuildString"},
    {"REALBuildStringWithEncoding", "REALBuildStringWithEncoding"},
    {"REALGetStringContents", "StringGetCString"},
    {"REALGetStringEncoding", "REALGetStringEncoding"},
    {"REALSetStringEncoding", "REALSetStringEncoding"},
    {"REALConvertString", "REALConvertString"},
    {"REALLockString", "REALLockString"},
    {"REALUnlockString", "REALUnlockString"},
    {"REALLockText", "PluginLockText"},
    {"REALUnlockText", "PluginUnlockText"},
    {"REALCopyTextCFString", "PluginCopyTextCFString"},
    {"REALNewVariantText", "PluginNewVariantText"},
    {"REALRegisterClass", "PluginRegisterClass"},
    {"REALnewInstance", "PluginNewInstance"},
    {"REALLockObject", "REALLockObject"},
    {"REALUnlockObject", "REALUnlockObject"},
    {"REALObjectIsA", "RuntimeObjectIsa"},
    {"REALGetClassRef", "pluginObjectType"},
    {"REALGetEventInstance", "GetEventInstance"},
    {"REALRaiseException", "RuntimeRaiseException"},
    {"REALCallFunctionWithExceptionHandler", "PluginCallFunctionWithExceptionHandler"},
    {"REALLoadFrameworkMethod", "REALLoadGlobalMethod"},
    {"REALLoadObjectMethod", "REALLoadObjectMethod"},
    {"REALGetPropValueString", "REALGetPropValueString"},
    {"REALGetPropValueDouble", "REALGetPropValueDouble"},
    {"REALGetPropValueObject", "REALGetPropValueObject"},
    {"REALGetPropValueInt64", "REALGetPropValueInt64"},
    {"REALGetPropValueSingle", "REALGetPropValueSingle"},
    {"REALGetPropValueInteger", "REALGetPropValueInteger"},
    {"REALSetPropValueString", "REALSetPropValueString"},
    {"REALSetPropValueInteger", "REALSetPropValueInteger"},
    {"REALNewVariantString", "StringToVariant"},
    {"REALNewVariantInteger", "IntegerToVariant"},
    {"REALNewVariantDouble", "DoubleToVariant"},
    {"REALNewVariantBoolean", "BooleanToVariant"},
    {"REALNewVariantUInt32", "UInt32ToVariant"},
    {"REALNewVariantSingle", "SingleToVariant"},
    {"GetVariantString", "VariantToString"},
    {"GetVariantInt64", "VariantToInt64"},
    {"GetVariantSingle", "VariantToSingle"},
    {"GetVariantDouble", "VariantToDouble"},
    {"REALCreateArray", "RuntimeArrayCreateSingleDimBoundedArray"},
    {"REALGetArrayUBound", "RuntimeUBound"},
    {"REALGetArrayString", "RuntimeDirectReadStringArray"},
    {"REALInsertArrayValueString", "PluginStringArrayInsertProc"},
    {"REALInsertArrayValueObject", "PluginObjectArrayInsertProc"},
    {"REALGetArrayValueInteger", "PluginIntegerArrayGetProc"},
    {"REALGetArrayValueBoolean", "PluginBooleanArrayGetProc"},
    {"REALGetArrayValueInt64", "PluginInt64ArrayGetProc"},
    {"REALGetArrayValueSingle", "PluginSingleArrayGetProc"},
    {"REALGetArrayValueDouble", "PluginDoubleArrayGetProc"},
    {"REALGetArrayValueString", "PluginStringArrayGetProc"},
    {"REALGetArrayValueText", "PluginTextArrayGetProc"},
    {"REALGetArrayValueObject", "PluginObjectArrayGetProc"},
    {"REALNewMemoryBlockOriginal", "newMemoryBlock"},
    {"REALMemoryBlockGetPtr", "memoryBlockGetPtr"},
    {"REALMemoryBlockGetSize", "memoryBlockGetSize"},
    {"REALFSRefFromFolderItem", "REALFSRefFromFolderItem"},
    {"REALFolderItemFromParentFSRef", "REALFolderItemFromParentFSRef"},
};

class EntryPoints : public testing::TestWithParam<Documented> {
protected:
    void SetUp() override {
        gResolver = resolve;
        asked.clear();
        answer = nullptr;
    }
};

// One life of a slot: absent, asked for again, found, kept.
TEST_P(EntryPoints, IsAskedForUntilItIsThereAndThenKept) {
    const auto [name, entryPoint] = GetParam();
    ASSERT_TRUE(wrappers().contains(name));
    const Wrapper& wrapper = wrappers().at(name);

    EXPECT_TRUE(wrapper.callIsNeutral());
    EXPECT_TRUE(wrapper.callIsNeutral());
    EXPECT_EQ(asked, std::vector<std::string>(2, entryPoint));

    answer = wrapper.service;
    *wrapper.calls = 0;
    EXPECT_EQ(wrapper.callIsNeutral(), wrapper.isVoid);
    EXPECT_EQ(*wrapper.calls, 1);
    EXPECT_EQ(asked.size(), 3U);

    answer = nullptr;
    EXPECT_EQ(wrapper.callIsNeutral(), wrapper.isVoid);
    EXPECT_EQ(*wrapper.calls, 2);
    EXPECT_EQ(asked.size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(All, EntryPoints, testing::ValuesIn(kDocumented),
                         [](const auto& row) { return std::string(row.param.wrapper); });

TEST(EntryPointTable, HoldsTheDocumentedRowsAndNoOther) {
    std::vector<std::string> documented;
    for (const Documented& row : kDocumented) {
        documented.emplace_back(row.wrapper);
    }
    std::vector<std::string> built;
    for (const auto& [name, wrapper] : wrappers()) {
        built.push_back(name);
    }
    std::sort(documented.begin(), documented.end());
    EXPECT_EQ(built, documented);
}

TEST(ArrayEntryPoint, IsNeutralWhenTheHostHasNoFunctionForTheArray) {
    using Work = std::int64_t (*)(REALarray, std::int64_t);
    static ArrayEntryPoint<std::int64_t(REALarray, std::int64_t)> wrapper{"PluginIntegerArrayGetProc"};
    constexpr Work (*noWork)(REALarray) = [](REALarray) -> Work { return nullptr; };
    gResolver = resolve;
    answer = reinterpret_cast<void*>(noWork);
    EXPECT_EQ(wrapper(sample<REALarray>(0), 3), 0);
}

TEST(EntryPointWithoutResolver, IsNeutral) {
    gResolver = nullptr;
    EntryPoint<REALstring(REALstring)> wrapper{"anything"};
    EXPECT_EQ(wrapper(nullptr), nullptr);
}

} // namespace
