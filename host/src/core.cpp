#include "core.h"

#include "array_content.h"
#include "event_closure.h"
#include "global_methods.h"
#include "raised_exception_reader.h"
#include "text.h"
#include "variant_content.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zqm::host {

namespace {

// A host that tells no version counts as one of version 0, and so as an older one.
constexpr double kFirstVersionHidingElements = 2016.0;

// The resolver is a plain C function, so it can only speak for one runtime.
Core* activeCore = nullptr;

// "Class.member", not the name of a global method.
bool isMember(const std::string& name) {
    return name.find('.') != std::string::npos;
}

std::vector<std::string> members(const std::vector<std::string>& names) {
    std::vector<std::string> result;
    std::ranges::copy_if(names, std::back_inserter(result), isMember);
    return result;
}

} // namespace

Core::Core(const Options& options)
    : version_(options.version), classes_(reports_, members(options.without)), handles_(reports_) {
    for (const std::string& name : options.without) {
        if (!isMember(name)) {
            requireGlobalMethod(name);
            absentGlobalMethods_.insert(lowered(name));
        }
    }
    for (const std::string& name : options.refused) {
        entryPoints_.refuse(name);
    }
}

Core::~Core() = default;

Core* Core::active() {
    return activeCore;
}

void Core::activate() {
    if (activeCore != nullptr) {
        throw CallError("another runtime is active in this process");
    }
    activeCore = this;
}

void Core::close() {
    while (ObjectHandle* object = handles_.anyWithAnEnd()) {
        end(*object);
    }
    activeCore = nullptr;
    raised_.clear();
    retiredHandlers_.clear();
    handles_.clear();
}

void Core::requireOpen() const {
    if (!isOpen()) {
        throw CallError("the runtime of this value has ended");
    }
}

String Core::makeString(std::string_view bytes, std::uint32_t encoding) {
    return {shared_from_this(), handles_.add<StringHandle>(bytes, encoding).handle()};
}

String Core::adopt(REALstring locked, std::string_view where) {
    if (locked == nullptr || handles_.find<StringHandle>(locked, where) == nullptr) {
        return {};
    }
    return {shared_from_this(), locked};
}

String Core::borrow(REALstring string, std::string_view where) {
    auto* handle = string == nullptr ? nullptr : handles_.find<StringHandle>(string, where);
    if (handle == nullptr) {
        return {};
    }
    ++handle->locks;
    return {shared_from_this(), string};
}

void Core::lock(REALstring string, std::string_view where) {
    if (auto* handle = handles_.find<StringHandle>(string, where)) {
        ++handle->locks;
    }
}

void Core::unlock(REALstring string, std::string_view where) {
    auto* handle = handles_.find<StringHandle>(string, where);
    if (handle != nullptr && --handle->locks == 0) {
        handles_.retire(*handle);
    }
}

Text Core::makeText(std::string_view utf8) {
    return {shared_from_this(), handles_.add<TextHandle>(utf8).handle()};
}

Text Core::adopt(REALtext locked, std::string_view where) {
    if (locked == nullptr || handles_.find<TextHandle>(locked, where) == nullptr) {
        return {};
    }
    return {shared_from_this(), locked};
}

Text Core::borrow(REALtext text, std::string_view where) {
    auto* handle = text == nullptr ? nullptr : handles_.find<TextHandle>(text, where);
    if (handle == nullptr) {
        return {};
    }
    ++handle->locks;
    return {shared_from_this(), text};
}

void Core::lock(REALtext text, std::string_view where) {
    if (auto* handle = handles_.find<TextHandle>(text, where)) {
        ++handle->locks;
    }
}

void Core::unlock(REALtext text, std::string_view where) {
    auto* handle = handles_.find<TextHandle>(text, where);
    if (handle != nullptr && --handle->locks == 0) {
        handles_.retire(*handle);
    }
}

bool Core::showsElements() const {
    return version_.value_or(0) < kFirstVersionHidingElements;
}

Array Core::makeArray(ElementType type, std::size_t size) {
    auto content = std::make_unique<ArrayContent>(*this, type);
    ArrayContent& array = *content;
    array.resize(size);
    Object object = makeObject(kArrayClass, std::move(content));
    if (showsElements()) {
        constexpr std::size_t kWord = kArrayDirectDataOffset - kInstanceDataOffset;
        array.showElementsIn(reinterpret_cast<void**>(static_cast<char*>(object.instanceData()) + kWord));
    }
    return Array(std::move(object));
}

Object Core::makeVariant(std::int32_t code, Value content) {
    return makeObject(kVariantClass, std::make_unique<VariantContent>(code, std::move(content)));
}

Object Core::boxed(const Value& value) {
    if (const auto* object = std::get_if<Object>(&value.content())) {
        return *object;
    }
    if (const auto* text = std::get_if<std::string>(&value.content())) {
        return makeVariant(variant::kString, makeString(*text, encoding::kUtf8));
    }
    const std::int32_t code = variantCode(value);
    return code == variant::kNil ? Object() : makeVariant(code, value);
}

void Core::raise(std::string_view className, std::string_view message) {
    const Object exception = adopt(newInstance(className), className);
    auto& handle = *handles_.known<ObjectHandle>(exception.handle());
    setProperty(handle, "Message", Value(message));
    raised_.raise(readException(*this, handle));
}

namespace {

// Calls with the handle as what its type says.
template <typename Action>
void withHandle(const Type& type, void* handle, Action action) {
    if (handle == nullptr) {
        return;
    }
    if (!type.isArray && type.kind == TypeKind::String) {
        action(static_cast<REALstring>(handle));
    } else if (!type.isArray && type.kind == TypeKind::Text) {
        action(static_cast<REALtext>(handle));
    } else {
        action(static_cast<REALobject>(handle));
    }
}

} // namespace

void Core::lock(const Type& type, void* handle) {
    withHandle(type, handle, [this](auto* it) { lock(it, "argument"); });
}

void Core::unlock(const Type& type, void* handle) {
    withHandle(type, handle, [this](auto* it) { unlock(it, "argument"); });
}

void Core::guarded(const std::function<void()>& function) {
    struct Swept {
        Core* core;
        ~Swept() {
            if (!core->raised_.inFrame()) {
                // Dropping one may drop objects, and so retire others.
                const auto retired = std::exchange(core->retiredHandlers_, {});
            }
        }
    };
    const Swept swept{this};
    raised_.run(function);
}

void Core::retire(std::shared_ptr<EventClosure> handler) {
    if (raised_.inFrame()) {
        retiredHandlers_.push_back(std::move(handler));
    }
}

} // namespace zqm::host
