#include "builtin_classes.h"

namespace zqm::host {

std::vector<BuiltinClass> exceptionClasses() {
    constexpr std::string_view kBase = "RuntimeException";
    std::vector<BuiltinClass> classes{
        {.name = kBase,
         .properties = {{.name = "Message", .type = "String"}, {.name = "ErrorNumber", .type = "Integer"}}},
    };
    for (const std::string_view name :
         {"IllegalCastException", "KeyNotFoundException", "NilObjectException", "OutOfBoundsException",
          "OutOfMemoryException", "TypeMismatchException", "UnsupportedFormatException",
          "UnsupportedOperationException"}) {
        classes.push_back({.name = name, .super = kBase});
    }
    return classes;
}

} // namespace zqm::host
