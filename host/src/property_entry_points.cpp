#include "entry_point_types.h"
#include "marshalling.h"
#include "offered_entry_points.h"
#include "text.h"

#include <optional>

namespace zqm::host {

namespace {

const char* requireName(Core& core, const char* name, const char* where) {
    if (name == nullptr) {
        core.reports().add(Report::Kind::BadArgument, std::string(where) + ": no property name");
    }
    return name;
}

// The object and its property, if it has one of that name and one of those types.
struct Found {
    ObjectHandle* object = nullptr;
    const Property* property = nullptr;
    explicit operator bool() const { return property != nullptr; }
};

template <typename... Kinds>
Found find(Core& core, REALobject object, const char* name, const char* where, Kinds... kinds) {
    auto* handle = core.handles().find<ObjectHandle>(object, where);
    if (handle == nullptr || requireName(core, name, where) == nullptr) {
        return {};
    }
    const Property* property = core.classes().findProperty(handle->type, name);
    if (property == nullptr || property->type.isArray || ((property->type.kind != kinds) && ...)) {
        return {};
    }
    return {handle, property};
}

// Host code's exceptions don't pass through a plugin; what a getter raised stays with the call around it.
std::optional<Value> read(Core& core, const Found& found) {
    try {
        return core.getProperty(*found.object, found.property->name);
    } catch (const HostException& exception) {
        for (const RaisedException& raised : exception.all()) {
            core.raised().raise(raised);
        }
    } catch (const CallError&) {
        return std::nullopt; // write-only
    }
    return std::nullopt;
}

bool write(Core& core, const Found& found, const Value& value) {
    try {
        core.setProperty(*found.object, found.property->name, value);
        return true;
    } catch (const HostException& exception) {
        for (const RaisedException& raised : exception.all()) {
            core.raised().raise(raised);
        }
    } catch (const CallError&) {
        return false; // read-only
    }
    return false;
}

template <typename Entry, typename Out>
bool placeFor(Core& core, Out* out) {
    if (out == nullptr) {
        core.reports().add(Report::Kind::BadArgument, std::string(Entry::kName) + ": no place for the value");
    }
    return out != nullptr;
}

bool getString(Core& core, REALobject object, const char* name, REALstring* out) {
    using Entry = entry::REALGetPropValueString;
    const Found found = find(core, object, name, Entry::kName, TypeKind::String);
    if (!found || !placeFor<Entry>(core, out)) {
        return false;
    }
    const auto value = read(core, found);
    if (value) {
        *out = value->asString().release();
    }
    return value.has_value();
}

bool getObject(Core& core, REALobject object, const char* name, REALobject* out) {
    using Entry = entry::REALGetPropValueObject;
    const Found found = find(core, object, name, Entry::kName, TypeKind::Object, TypeKind::Variant);
    if (!found || !placeFor<Entry>(core, out)) {
        return false;
    }
    const auto value = read(core, found);
    if (value) {
        *out = value->asObject().release();
    }
    return value.has_value();
}

template <typename Entry, typename Out>
bool getNumber(Core& core, REALobject object, const char* name, Out* out) {
    constexpr bool kReal = std::is_floating_point_v<Out>;
    const Found found =
        kReal ? find(core, object, name, Entry::kName, TypeKind::Double, TypeKind::Single)
              : find(core, object, name, Entry::kName, TypeKind::Integer, TypeKind::Int32, TypeKind::UInt32);
    if (!found || !placeFor<Entry>(core, out)) {
        return false;
    }
    const auto value = read(core, found);
    if (value) {
        if constexpr (kReal) {
            *out = static_cast<Out>(value->asDouble());
        } else {
            *out = value->asInteger();
        }
    }
    return value.has_value();
}

bool setString(Core& core, REALobject object, const char* name, REALstring value) {
    constexpr const char* kWhere = entry::REALSetPropValueString::kName;
    const Found found = find(core, object, name, kWhere, TypeKind::String);
    return found && write(core, found, core.borrow(value, kWhere));
}

bool setInteger(Core& core, REALobject object, const char* name, std::int64_t value) {
    const Found found = find(core, object, name, entry::REALSetPropValueInteger::kName, TypeKind::Integer,
                             TypeKind::Int32, TypeKind::UInt32);
    return found && write(core, found, value);
}

} // namespace

std::vector<EntryPoints::Entry> propertyEntryPoints() {
    return {
        offer<entry::REALGetPropValueString, getString>(),
        offer<entry::REALGetPropValueObject, getObject>(),
        offer<entry::REALGetPropValueDouble, getNumber<entry::REALGetPropValueDouble, double>>(),
        offer<entry::REALGetPropValueSingle, getNumber<entry::REALGetPropValueSingle, float>>(),
        offer<entry::REALGetPropValueInt64, getNumber<entry::REALGetPropValueInt64, std::int64_t>>(),
        offer<entry::REALGetPropValueInteger, getNumber<entry::REALGetPropValueInteger, std::int64_t>>(),
        offer<entry::REALSetPropValueString, setString>(),
        offer<entry::REALSetPropValueInteger, setInteger>(),
    };
}

} // namespace zqm::host
