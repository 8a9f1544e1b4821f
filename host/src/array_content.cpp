#include "array_content.h"

#include "core.h"
#include "date_content.h"
#include "text.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace zqm::host {

namespace {

constexpr const char* kWhere = "array element";

struct ElementTypeRow {
    ElementType type;
    std::size_t size;
    TypeKind kind;
    const char* className; // of TypeKind::Object
};
constexpr std::array kElementTypes{
    ElementTypeRow{ElementType::Integer, 8, TypeKind::Integer, ""},
    ElementTypeRow{ElementType::Int64, 8, TypeKind::Integer, ""},
    ElementTypeRow{ElementType::Single, 4, TypeKind::Single, ""},
    ElementTypeRow{ElementType::Double, 8, TypeKind::Double, ""},
    ElementTypeRow{ElementType::Date, 8, TypeKind::Object, "Date"},
    ElementTypeRow{ElementType::String, 8, TypeKind::String, ""},
    ElementTypeRow{ElementType::Object, 8, TypeKind::Variant, ""},
    ElementTypeRow{ElementType::Boolean, 1, TypeKind::Boolean, ""},
    ElementTypeRow{ElementType::Text, 8, TypeKind::Text, ""},
};

const ElementTypeRow& rowOf(ElementType type) {
    return *std::ranges::find(kElementTypes, type, &ElementTypeRow::type);
}

bool holdsHandles(ElementType type) {
    return type == ElementType::Date || type == ElementType::String || type == ElementType::Object ||
           type == ElementType::Text;
}

} // namespace

Type typeOf(ElementType type) {
    const ElementTypeRow& row = rowOf(type);
    return {row.kind, row.className, false};
}

bool fits(ElementType type, const Type& declared) {
    if (type == ElementType::Object) {
        const bool dates = sameName(declared.className, kDateClass);
        return declared.kind == TypeKind::Variant || (declared.kind == TypeKind::Object && !dates);
    }
    Type element = declared;
    element.isArray = false;
    return sameType(typeOf(type), element);
}

// Handles carry the lock that the array is to own.
struct ArrayContent::Element {
    std::array<std::byte, 8> bytes{};

    template <typename Raw>
    explicit Element(Raw raw) {
        std::ranges::copy(std::as_bytes(std::span(&raw, 1)), bytes.begin());
    }
};

ArrayContent::~ArrayContent() {
    word_ = nullptr; // the object is gone
    if (core_->isOpen()) {
        resize(0);
    }
}

std::size_t ArrayContent::size() const {
    return elements_.size() / rowOf(type_).size;
}

Value ArrayContent::at(std::size_t index) const {
    switch (type_) {
    case ElementType::Integer:
    case ElementType::Int64:
        return raw<std::int64_t>(index);
    case ElementType::Single:
        return raw<float>(index);
    case ElementType::Double:
        return raw<double>(index);
    case ElementType::Boolean:
        return raw<bool>(index);
    case ElementType::String:
        return core_->borrow(raw<REALstring>(index), kWhere);
    case ElementType::Text:
        return core_->borrow(raw<REALtext>(index), kWhere);
    case ElementType::Date:
    case ElementType::Object:
        break;
    }
    return core_->borrow(raw<REALobject>(index), kWhere);
}

ArrayContent::Element ArrayContent::elementOf(const Value& value) const {
    const auto* text = std::get_if<std::string>(&value.content());
    switch (type_) {
    case ElementType::Integer:
    case ElementType::Int64:
        return Element(value.asInteger());
    case ElementType::Single:
        return Element(static_cast<float>(value.asDouble()));
    case ElementType::Double:
        return Element(value.asDouble());
    case ElementType::Boolean:
        return Element(value.asBool());
    case ElementType::String:
        return Element((text ? core_->makeString(*text, encoding::kUtf8) : value.asString()).release());
    case ElementType::Text:
        return Element((text ? core_->makeText(*text) : value.asHostText()).release());
    case ElementType::Object:
        return Element(core_->boxed(value).release());
    case ElementType::Date:
        break;
    }
    Object date = value.asObject();
    if (!date.isNull() && !date.isA(kDateClass)) {
        throw CallError(date.className() + " given for an element of an array of dates");
    }
    return Element(date.release());
}

void ArrayContent::store(std::size_t index, const Element& element) {
    const std::size_t size = rowOf(type_).size;
    std::memcpy(elements_.data() + index * size, element.bytes.data(), size);
}

std::vector<void*> ArrayContent::handles(std::size_t from, std::size_t to) const {
    std::vector<void*> result;
    for (std::size_t index = from; index < to && holdsHandles(type_); ++index) {
        result.push_back(raw<void*>(index));
    }
    return result;
}

// What ends with them may look at this array, which has let go of them.
void ArrayContent::unlock(const std::vector<void*>& handles) {
    const Type type = typeOf(type_);
    for (void* handle : handles) {
        core_->unlock(type, handle);
    }
}

void ArrayContent::set(std::size_t index, const Value& value) {
    const Element element = elementOf(value);
    const auto replaced = handles(index, index + 1);
    store(index, element);
    unlock(replaced);
}

void ArrayContent::insert(std::size_t index, const Value& value) {
    const Element element = elementOf(value);
    const std::size_t size = rowOf(type_).size;
    elements_.insert(elements_.begin() + static_cast<std::ptrdiff_t>(index * size), size, std::byte{});
    store(index, element);
    elementsMoved();
}

void ArrayContent::resize(std::size_t size) {
    const auto dropped = handles(size, this->size());
    // Moved, so that who still reads the old elements is noticed.
    std::vector<std::byte> resized(size * rowOf(type_).size);
    std::copy_n(elements_.begin(), std::min(elements_.size(), resized.size()), resized.begin());
    elements_ = std::move(resized);
    elementsMoved();
    unlock(dropped);
}

void ArrayContent::showElementsIn(void** word) {
    word_ = word;
    elementsMoved();
}

void ArrayContent::elementsMoved() {
    if (word_ != nullptr) {
        *word_ = elements_.data();
    }
}

} // namespace zqm::host
