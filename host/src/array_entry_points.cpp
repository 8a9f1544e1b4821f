#include "array_content.h"
#include "builtin_function.h"
#include "entry_point_types.h"
#include "offered_entry_points.h"
#include "text.h"

#include <optional>

namespace zqm::host {

namespace {

void badArgument(Core& core, const char* where, const std::string& what) {
    core.reports().add(Report::Kind::BadArgument, std::string(where) + ": " + what);
}

// What a plugin may ask for at once: a gigabyte of handles.
constexpr std::int64_t kMostElements = std::int64_t{1} << 27;

// ---- by entry points

std::optional<ElementType> creatableType(std::int32_t elementType) {
    switch (elementType) {
    case kArrayElementString:
        return ElementType::String;
    case kArrayElementObject:
        return ElementType::Object;
    default:
        return std::nullopt;
    }
}

REALarray createArray(Core& core, std::int32_t elementType, std::int64_t upperBound) {
    constexpr const char* kWhere = entry::REALCreateArray::kName;
    const auto type = creatableType(elementType);
    if (!type || upperBound < -1) {
        badArgument(core, kWhere,
                    !type ? "element type " + std::to_string(elementType)
                          : "upper bound " + std::to_string(upperBound));
        return nullptr;
    }
    if (upperBound >= kMostElements) {
        badArgument(core, kWhere, "no room for upper bound " + std::to_string(upperBound));
        return nullptr;
    }
    Object array = core.makeArray(*type, static_cast<std::size_t>(upperBound + 1));
    return reinterpret_cast<REALarray>(array.release());
}

std::int64_t upperBound(Core& core, REALarray array) {
    constexpr const char* kWhere = entry::REALGetArrayUBound::kName;
    auto* content = core.findContent<ArrayContent>(array, kWhere);
    if (content == nullptr) {
        return 0;
    }
    const Object kept = core.borrow(reinterpret_cast<REALobject>(array), kWhere);
    content->hooks(ArrayCall::UBound).called(core);
    return static_cast<std::int64_t>(content->size()) - 1;
}

// ---- by functions that entry points answer

bool isInside(Core& core, const ArrayContent& array, std::int64_t index, const char* where) {
    if (!array.contains(index)) {
        badArgument(core, where,
                    "index " + std::to_string(index) + " of " + std::to_string(array.size()) + " elements");
    }
    return array.contains(index);
}

// What a get function answers of the element as it stands in memory.
template <typename Element>
Element withLock(Core& /*core*/, Element element, const char* /*where*/) {
    return element;
}
template <typename Struct>
Struct* withLock(Core& core, Struct* handle, const char* where) {
    if (handle != nullptr) {
        core.lock(handle, where);
    }
    return handle;
}

// Whether the elements are of one of these types.
template <typename Entry, ElementType... types>
bool isOf(Core& core, const ArrayContent& array) {
    const bool is = ((array.type() == types) || ...);
    if (!is) {
        core.reports().add(Report::Kind::WrongKind,
                           std::string(Entry::kName) + ": an array of " + describe(typeOf(array.type())));
    }
    return is;
}

template <typename Entry, typename Element, ElementType... types>
Element get(Core& core, ArrayContent& array, std::int64_t index) {
    if (!isOf<Entry, types...>(core, array)) {
        return Element();
    }
    array.hooks(ArrayCall::Get).called(core);
    if (!isInside(core, array, index, Entry::kName)) {
        return Element();
    }
    return withLock(core, array.raw<Element>(static_cast<std::size_t>(index)), Entry::kName);
}

template <typename Entry, typename Handle, ElementType... types>
void insert(Core& core, ArrayContent& array, std::int64_t index, Handle handle) {
    if (!isOf<Entry, types...>(core, array)) {
        return;
    }
    // At the end as well, which makes it longer.
    if (index != static_cast<std::int64_t>(array.size()) && !isInside(core, array, index, Entry::kName)) {
        return;
    }
    const auto element = core.borrow(handle, Entry::kName);
    if (!element.isNull() || handle == nullptr) {
        array.insert(static_cast<std::size_t>(index), element);
    }
}

// What the entry point answers for an array: the function, if it is one for these elements.
template <typename Entry, FunctionName name, auto implementation, ElementType... types>
auto functionFor(Core& core, REALarray array) {
    const auto function = MemberFunction<name, implementation, REALarray>::of(implementation);
    const auto* content = core.findContent<ArrayContent>(array, Entry::kName);
    const bool fits = content != nullptr && isOf<Entry, types...>(core, *content);
    return fits ? function : nullptr;
}
template <typename Entry, FunctionName name, typename Element, ElementType... types>
EntryPoints::Entry offerGet() {
    return offer<Entry, functionFor<Entry, name, get<Entry, Element, types...>, types...>>();
}
template <typename Entry, FunctionName name, typename Handle, ElementType... types>
EntryPoints::Entry offerInsert() {
    return offer<Entry, functionFor<Entry, name, insert<Entry, Handle, types...>, types...>>();
}

REALstring directReadString(Core& /*core*/, REALarray array, std::int64_t index) {
    using Entry = entry::REALGetArrayString;
    constexpr auto kRead = get<Entry, REALstring, ElementType::String>;
    return MemberFunction<"RuntimeDirectReadStringArray", kRead, REALarray>::of(kRead)(array, index);
}

} // namespace

std::vector<EntryPoints::Entry> arrayEntryPoints() {
    using enum ElementType;
    return {
        offer<entry::REALCreateArray, createArray>(),
        offer<entry::REALGetArrayUBound, upperBound>(),
        offer<entry::REALGetArrayString, directReadString>(),
        offerInsert<entry::REALInsertArrayValueString, "insert function of String()", REALstring, String>(),
        offerInsert<entry::REALInsertArrayValueObject, "insert function of Object()", REALobject, Object>(),
        offerGet<entry::REALGetArrayValueInteger, "get function of Integer()", std::int64_t, Integer>(),
        offerGet<entry::REALGetArrayValueInt64, "get function of Int64()", std::int64_t, Int64>(),
        offerGet<entry::REALGetArrayValueSingle, "get function of Single()", float, Single>(),
        offerGet<entry::REALGetArrayValueDouble, "get function of Double()", double, Double>(),
        offerGet<entry::REALGetArrayValueBoolean, "get function of Boolean()", bool, Boolean>(),
        offerGet<entry::REALGetArrayValueString, "get function of String()", REALstring, String>(),
        offerGet<entry::REALGetArrayValueText, "get function of Text()", REALtext, Text>(),
        offerGet<entry::REALGetArrayValueObject, "get function of Object()", REALobject, Object, Date>(),
    };
}

} // namespace zqm::host
