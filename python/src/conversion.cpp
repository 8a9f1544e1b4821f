#include "conversion.h"

#include "handle.h"
#include "runtime.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace py = pybind11;

namespace zqm::python {

namespace {

using host::ElementType;
using host::Object;
using host::Value;

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

// Containers may hold themselves, on either side.
class Nested {
public:
    Nested() {
        if (Py_EnterRecursiveCall(" while a host value is converted") != 0) {
            throw py::error_already_set();
        }
    }
    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;
    ~Nested() { Py_LeaveRecursiveCall(); }
};

py::object member(const char* module, const char* name) {
    return py::module_::import(module).attr(name);
}

bool isA(py::handle value, const char* module, const char* name) {
    return py::isinstance(value, member(module, name));
}

// ---- from Python

enum class Kind { None, Boolean, Integer, Real, Text, Bytes, Date, Path, Dictionary, List, Object, Other };

Kind kindOf(py::handle value) {
    PyObject* it = value.ptr();
    if (value.is_none()) {
        return Kind::None;
    }
    if (PyBool_Check(it)) { // which are integers, too
        return Kind::Boolean;
    }
    if (PyLong_Check(it)) {
        return Kind::Integer;
    }
    if (PyFloat_Check(it)) {
        return Kind::Real;
    }
    if (PyUnicode_Check(it)) {
        return Kind::Text;
    }
    if (PyBytes_Check(it) || PyByteArray_Check(it)) {
        return Kind::Bytes;
    }
    if (PyDict_Check(it)) {
        return Kind::Dictionary;
    }
    if (PyList_Check(it) || PyTuple_Check(it)) {
        return Kind::List;
    }
    if (isA(value, "zqm._objects", "Object")) {
        return Kind::Object;
    }
    if (isA(value, "datetime", "date")) { // datetimes are dates, too
        return Kind::Date;
    }
    return isA(value, "pathlib", "Path") ? Kind::Path : Kind::Other;
}

// Throws UnicodeEncodeError for half of a surrogate pair, which no encoding has.
Value textToHost(py::handle value) {
    Py_ssize_t size = 0;
    const char* utf8 = PyUnicode_AsUTF8AndSize(value.ptr(), &size);
    if (utf8 == nullptr) {
        throw py::error_already_set();
    }
    return std::string(utf8, static_cast<std::size_t>(size));
}

std::string bytesOf(py::handle value) {
    return PyByteArray_Check(value.ptr()) ? std::string(py::reinterpret_borrow<py::bytearray>(value))
                                          : std::string(py::reinterpret_borrow<py::bytes>(value));
}

Value bytesToHost(py::handle value, const std::vector<std::string>& expected) {
    const bool asText = !expected.empty() && std::ranges::all_of(expected, [](const std::string& type) {
        return type == "String";
    });
    return asText ? Value(runtime().string(bytesOf(value), host::encoding::kNone))
                  : Value(runtime().memoryBlock(bytesOf(value)));
}

// A host date has no zone: it is told as clocks here show it.
Value dateToHost(py::handle value) {
    py::object date = py::reinterpret_borrow<py::object>(value);
    const bool hasTime = isA(value, "datetime", "datetime");
    if (hasTime && !date.attr("tzinfo").is_none()) {
        date = date.attr("astimezone")();
    }
    const auto field = [&](const char* name) { return date.attr(name).cast<std::int64_t>(); };
    const auto timeField = [&](const char* name) { return hasTime ? field(name) : 0; };
    return runtime().date(field("year"), field("month"), field("day"), timeField("hour"), timeField("minute"),
                          timeField("second"));
}

Value pathToHost(py::handle value) {
    const py::object path = member("os", "fsencode")(value.attr("absolute")());
    return runtime().folderItem(path.cast<std::string>());
}

Value dictionaryToHost(py::handle value) {
    const Nested nested;
    const auto items = py::reinterpret_borrow<py::dict>(value);
    host::Dictionary dictionary = runtime().dictionary();
    for (const auto& [key, item] : items) {
        dictionary.setValue(toHost(key), toHost(item));
    }
    if (dictionary.count() != items.size()) {
        throw host::CallError("keys of a dict that are the same for the host");
    }
    return Object(dictionary);
}

struct NamedElementType {
    std::string_view declared;
    ElementType type;
};
constexpr std::array kElementTypes{
    NamedElementType{"Integer()", ElementType::Integer}, NamedElementType{"Int64()", ElementType::Int64},
    NamedElementType{"Single()", ElementType::Single},   NamedElementType{"Double()", ElementType::Double},
    NamedElementType{"Date()", ElementType::Date},       NamedElementType{"String()", ElementType::String},
    NamedElementType{"Boolean()", ElementType::Boolean}, NamedElementType{"Text()", ElementType::Text},
};

// Nothing where no overload takes an array, or several take different ones.
std::optional<ElementType> declaredElementType(const std::vector<std::string>& expected) {
    std::optional<std::string_view> declared;
    for (const std::string& type : expected) {
        if (type.ends_with("()") && declared && *declared != type) {
            return std::nullopt;
        }
        if (type.ends_with("()")) {
            declared = type;
        }
    }
    if (!declared) {
        return std::nullopt;
    }
    const auto* found = std::ranges::find(kElementTypes, *declared, &NamedElementType::declared);
    return found == kElementTypes.end() ? ElementType::Object : found->type;
}

ElementType elementTypeOf(const py::list& items) {
    std::array<std::size_t, static_cast<std::size_t>(Kind::Other) + 1> counts{};
    for (const py::handle item : items) {
        ++counts.at(static_cast<std::size_t>(kindOf(item)));
    }
    const auto all = [&](std::initializer_list<Kind> kinds) {
        std::size_t sum = 0;
        for (const Kind kind : kinds) {
            sum += counts.at(static_cast<std::size_t>(kind));
        }
        return sum == items.size() && sum > 0;
    };
    if (all({Kind::Text})) {
        return ElementType::String;
    }
    if (all({Kind::Integer})) {
        return ElementType::Integer;
    }
    if (all({Kind::Integer, Kind::Real})) {
        return ElementType::Double;
    }
    if (all({Kind::Boolean})) {
        return ElementType::Boolean;
    }
    return all({Kind::Date}) ? ElementType::Date : ElementType::Object;
}

Value listToHost(py::handle value, const std::vector<std::string>& expected) {
    const Nested nested;
    const py::list items(py::reinterpret_borrow<py::object>(value)); // the values as they are now
    const ElementType type = declaredElementType(expected).value_or(elementTypeOf(items));
    std::vector<Value> values;
    values.reserve(items.size());
    for (const py::handle item : items) {
        values.push_back(toHost(item));
    }
    return Object(runtime().array(type, values));
}

Value objectToHost(py::handle value) {
    const py::object handle = value.attr("_handle");
    if (handle.is_none()) {
        throw host::CallError(
            "an argument that has not been made: its __init__ has to call super().__init__()");
    }
    return handle.cast<Handle&>().object();
}

// ---- to Python

// Strings that are no text of their encoding, and those without one that aren't UTF-8, stay bytes.
py::object stringToPython(const host::String& string) {
    if (string.encoding() == host::encoding::kNone) {
        const std::string bytes = string.bytes();
        PyObject* text = PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "strict");
        if (text == nullptr) {
            PyErr_Clear();
            return py::bytes(bytes);
        }
        return py::reinterpret_steal<py::object>(text);
    }
    std::string text;
    try {
        text = string.text();
    } catch (const host::CallError&) {
        return py::bytes(string.bytes());
    }
    return py::str(text);
}

py::object arrayToPython(const host::Array& array) {
    const Nested nested;
    py::list list;
    for (const Value& value : array.values()) {
        list.append(toPython(value));
    }
    return list;
}

py::object dictionaryToPython(const host::Dictionary& dictionary) {
    const Nested nested;
    py::dict dict;
    for (const Value& key : dictionary.keys()) {
        dict[toPython(key)] = toPython(dictionary.value(key));
    }
    if (dict.size() != dictionary.count()) {
        throw host::CallError("keys of a Dictionary that are the same in a dict");
    }
    return dict;
}

py::object dateToPython(const Object& date) {
    const auto field = [&](const char* name) { return date.get(name).asInteger(); };
    return member("datetime", "datetime")(field("Year"), field("Month"), field("Day"), field("Hour"),
                                          field("Minute"), field("Second"));
}

py::object pathToPython(const host::FolderItem& item) {
    return member("pathlib", "Path")(member("os", "fsdecode")(py::bytes(item.path())));
}

} // namespace

Value toHost(py::handle value, const std::vector<std::string>& expected) {
    switch (kindOf(value)) {
    case Kind::None:
        return {};
    case Kind::Boolean:
        return value.ptr() == Py_True;
    case Kind::Integer: {
        const long long integer = PyLong_AsLongLong(value.ptr());
        if (integer == -1 && PyErr_Occurred() != nullptr) {
            throw py::error_already_set();
        }
        return static_cast<std::int64_t>(integer);
    }
    case Kind::Real:
        return PyFloat_AS_DOUBLE(value.ptr());
    case Kind::Text:
        return textToHost(value);
    case Kind::Bytes:
        return bytesToHost(value, expected);
    case Kind::Date:
        return dateToHost(value);
    case Kind::Path:
        return pathToHost(value);
    case Kind::Dictionary:
        return dictionaryToHost(value);
    case Kind::List:
        return listToHost(value, expected);
    case Kind::Object:
        return objectToHost(value);
    case Kind::Other:
        break;
    }
    throw py::type_error("the host has no values of the kind " +
                         py::type::handle_of(value).attr("__name__").cast<std::string>());
}

py::object toPython(const Value& value) {
    return std::visit(Overloaded{
                          [](std::monostate) -> py::object { return py::none(); },
                          [](bool flag) -> py::object { return py::bool_(flag); },
                          [](std::int64_t integer) -> py::object { return py::int_(integer); },
                          [](double real) -> py::object { return py::float_(real); },
                          [](const std::string& text) -> py::object { return py::str(text); },
                          [](const host::String& string) { return stringToPython(string); },
                          [](const host::Text& text) -> py::object { return py::str(text.text()); },
                          [](const Object& object) { return toPython(object); },
                          [](host::ByRef) -> py::object { throw host::CallError("a reference is no value"); },
                      },
                      value.content());
}

py::object toPython(const Object& object) {
    constexpr std::int32_t kFirstArray = 4096; // and above it the codes of its elements
    if (object.isNull()) {
        return py::none();
    }
    if (object.isA("Variant")) {
        const Nested nested;
        return toPython(object.variantValue());
    }
    if (object.variantType() >= kFirstArray) {
        return arrayToPython(host::Array(object));
    }
    if (object.isA("Dictionary")) {
        return dictionaryToPython(host::Dictionary(object));
    }
    if (object.isA("Date")) {
        return dateToPython(object);
    }
    if (object.isA("MemoryBlock")) {
        return py::bytes(host::MemoryBlock(object).bytes());
    }
    if (object.isA("FolderItem")) {
        return pathToPython(host::FolderItem(object));
    }
    return member("zqm._objects", "wrapped")(std::make_unique<Handle>(object));
}

PassedArguments::PassedArguments(const py::tuple& values, const ExpectedTypes& expected) {
    constexpr std::string_view kByRef = "byref ";
    const py::object byRef = member("zqm._objects", "ByRef");
    std::size_t place = 0;
    for (const py::handle value : values) {
        std::vector<std::string> types = expected.at(place);
        const bool references = !types.empty() && std::ranges::all_of(types, [&](const std::string& type) {
            return type.starts_with(kByRef);
        });
        for (std::string& type : types) {
            type.erase(0, type.starts_with(kByRef) ? kByRef.size() : 0);
        }
        if (py::isinstance(value, byRef)) {
            references_.push_back(
                {py::reinterpret_borrow<py::object>(value), toHost(value.attr("value"), types)});
            values_.emplace_back(host::ByRef{&references_.back().value});
        } else if (value.is_none() && references) {
            references_.emplace_back();
            values_.emplace_back(host::ByRef{&references_.back().value});
        } else {
            values_.push_back(toHost(value, types));
        }
        ++place;
    }
}

void PassedArguments::takeBack() {
    for (const Reference& reference : references_) {
        if (reference.holder) {
            reference.holder.attr("value") = toPython(reference.value);
        }
    }
}

} // namespace zqm::python
