#include "zqmhost/array.h"

#include "array_content.h"
#include "object_views.h"

#include <utility>

namespace zqm::host {

namespace {

void requireInside(const ArrayContent& content, std::size_t index) {
    if (index >= content.size()) {
        throw CallError("index " + std::to_string(index) + " of an array of " +
                        std::to_string(content.size()));
    }
}

} // namespace

Array::Array(Object object) : Object(checked<ArrayContent>(std::move(object))) {}

REALarray Array::array() const {
    return reinterpret_cast<REALarray>(handle());
}

ElementType Array::elementType() const {
    return contentOf<ArrayContent>(core(), *this).type();
}

std::size_t Array::size() const {
    return isNull() ? 0 : contentOf<ArrayContent>(core(), *this).size();
}

Value Array::at(std::size_t index) const {
    const auto& content = contentOf<ArrayContent>(core(), *this);
    requireInside(content, index);
    return content.at(index);
}

std::vector<Value> Array::values() const {
    std::vector<Value> result;
    for (std::size_t index = 0; index < size(); ++index) {
        result.push_back(at(index));
    }
    return result;
}

void Array::set(std::size_t index, const Value& value) {
    auto& content = contentOf<ArrayContent>(core(), *this);
    requireInside(content, index);
    content.set(index, value);
}

void Array::append(const Value& value) {
    auto& content = contentOf<ArrayContent>(core(), *this);
    content.insert(content.size(), value);
}

void Array::resize(std::size_t size) {
    contentOf<ArrayContent>(core(), *this).resize(size);
}

void Array::before(ArrayCall call, std::size_t nth, std::function<void()> code) {
    contentOf<ArrayContent>(core(), *this).hooks(call).before(nth, std::move(code));
}

} // namespace zqm::host
