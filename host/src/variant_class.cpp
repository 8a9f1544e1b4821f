#include "builtin_classes.h"
#include "builtin_function.h"
#include "date_content.h"
#include "variant_content.h"

namespace zqm::host {

namespace {

// What is in a Variant; an object that is none reads as nothing but itself.
const Value& contentOf(const ObjectHandle& object) {
    static const Value nothing;
    const auto* variant = object.contentAs<VariantContent>();
    return variant == nullptr ? nothing : variant->value;
}

std::int64_t type(Core& /*core*/, ObjectHandle& object, std::int64_t /*parameter*/) {
    return variantCode(object);
}

std::int64_t longValue(Core& /*core*/, ObjectHandle& object, std::int64_t /*parameter*/) {
    return readInteger(contentOf(object));
}

float singleValue(Core& /*core*/, ObjectHandle& object, std::int64_t /*parameter*/) {
    return static_cast<float>(readReal(contentOf(object)));
}

double doubleValue(Core& /*core*/, ObjectHandle& object, std::int64_t /*parameter*/) {
    return readReal(contentOf(object));
}

// Nil when there is none.
REALobject dateValue(Core& core, ObjectHandle& object, std::int64_t /*parameter*/) {
    if (object.contentAs<DateContent>() != nullptr) {
        return core.borrow(object.handle(), "DateValue").release();
    }
    const Value& content = contentOf(object);
    return variantCode(content) == variant::kDate ? content.asObject().release() : nullptr;
}

REALstring stringValue(Core& core, ObjectHandle& object, std::int64_t /*parameter*/) {
    return readString(core, contentOf(object)).release();
}

} // namespace

std::vector<BuiltinClass> variantClasses() {
    return {
        {.name = kVariantClass,
         .properties = {{.name = "Type", .type = "Integer", .getter = memberFunction<"Variant.Type", type>()},
                        {.name = "LongValue",
                         .type = "Int64",
                         .getter = memberFunction<"Variant.LongValue", longValue>()},
                        {.name = "SingleValue",
                         .type = "Single",
                         .getter = memberFunction<"Variant.SingleValue", singleValue>()},
                        {.name = "DoubleValue",
                         .type = "Double",
                         .getter = memberFunction<"Variant.DoubleValue", doubleValue>()},
                        {.name = "DateValue",
                         .type = "Date",
                         .getter = memberFunction<"Variant.DateValue", dateValue>()},
                        {.name = "StringValue",
                         .type = "String",
                         .getter = memberFunction<"Variant.StringValue", stringValue>()}},
         .creatable = false},
    };
}

} // namespace zqm::host
