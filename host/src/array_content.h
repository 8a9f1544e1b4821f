#pragma once

#include "call_hooks.h"
#include "declaration.h"
#include "object_content.h"
#include "zqmhost/array.h"

#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace zqm::host {

class Core;

inline constexpr std::string_view kArrayClass = "Array";
// Of array objects: the word that points to the elements stands in it.
inline constexpr std::size_t kArrayDataSize = 16;

// The elements of an array, contiguous in their natural size. A handle among them is locked.
class ArrayContent final : public ObjectContent {
public:
    static constexpr const char* kWhat = "an array";

    ArrayContent(Core& core, ElementType type) : core_(&core), type_(type) {}
    ~ArrayContent() override;

    ElementType type() const { return type_; }
    std::size_t size() const;
    bool contains(std::int64_t index) const { return index >= 0 && static_cast<std::size_t>(index) < size(); }

    // The element as it stands in memory; no lock is taken.
    template <typename Element>
    Element raw(std::size_t index) const {
        Element element;
        const auto bytes = std::as_writable_bytes(std::span(&element, 1));
        std::memcpy(bytes.data(), elements_.data() + index * bytes.size(), bytes.size());
        return element;
    }
    Value at(std::size_t index) const;

    // Throw CallError when the value doesn't fit.
    void set(std::size_t index, const Value& value);
    void insert(std::size_t index, const Value& value);
    void resize(std::size_t size);

    // From now on the word holds the address of the first element.
    void showElementsIn(void** word);

    CallHooks& hooks(ArrayCall call) { return call == ArrayCall::UBound ? uBounds_ : gets_; }

private:
    struct Element; // in its raw form

    Element elementOf(const Value& value) const;
    void store(std::size_t index, const Element& element);
    std::vector<void*> handles(std::size_t from, std::size_t to) const;
    void unlock(const std::vector<void*>& handles);
    void elementsMoved();

    Core* core_;
    ElementType type_;
    std::vector<std::byte> elements_;
    void** word_ = nullptr;
    CallHooks uBounds_;
    CallHooks gets_;
};

// As declarations name it.
Type typeOf(ElementType type);
// Whether an array of these elements may stand where that type is declared.
bool fits(ElementType type, const Type& declared);

} // namespace zqm::host
