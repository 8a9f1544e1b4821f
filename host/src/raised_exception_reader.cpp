#include "raised_exception_reader.h"

#include "text_conversion.h"

namespace zqm::host {

namespace {

// Any bytes make some text for people.
std::string readable(const String& string) {
    const auto converted = convertText(string.bytes(), string.encoding(), encoding::kUtf8);
    return converted ? *converted : string.bytes();
}

} // namespace

RaisedException readException(Core& core, ObjectHandle& exception) {
    RaisedException raised;
    raised.className = exception.type.name;
    raised.object = core.borrow(exception.handle(), "exception");
    raised.message = readable(core.getProperty(exception, "Message").asString());
    raised.errorNumber = core.getProperty(exception, "ErrorNumber").asInteger();
    return raised;
}

} // namespace zqm::host
