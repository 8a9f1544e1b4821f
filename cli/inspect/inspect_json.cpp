#include "cli/inspect/inspect_json.h"

#include <nlohmann/json.hpp>

namespace zqm::cli {
namespace {

using Json = nlohmann::ordered_json;

template <typename Description>
Json arrayOf(const std::vector<Description>& descriptions);

Json jsonOf(const host::ParameterDescription& parameter) {
    return {{"name", parameter.name},
            {"type", parameter.type.name},
            {"array", parameter.type.isArray},
            {"byRef", parameter.byRef},
            {"assigns", parameter.assigns},
            {"default", parameter.defaultValue ? Json(*parameter.defaultValue) : Json()}};
}

Json jsonOf(const host::MethodDescription& method) {
    Json json{{"name", method.name},
              {"declaration", declaration(method)},
              {"parameters", arrayOf(method.parameters)},
              {"result", Json()},
              {"callable", method.isCallable}};
    if (method.result) {
        json["result"] = {{"type", method.result->name}, {"array", method.result->isArray}};
    }
    return json;
}

Json jsonOf(const host::PropertyDescription& property) {
    return {{"name", property.name},           {"declaration", declaration(property)},
            {"type", property.type.name},      {"array", property.type.isArray},
            {"readable", property.isReadable}, {"writable", property.isWritable}};
}

Json jsonOf(const host::EventDescription& event) {
    return {
        {"name", event.name}, {"declaration", declaration(event)}, {"parameters", arrayOf(event.parameters)}};
}

Json jsonOf(const host::ConstantDescription& constant) {
    return {{"name", constant.name}, {"declaration", declaration(constant)}, {"value", constant.value}};
}

Json jsonOf(const host::ClassDescription& type) {
    return {{"name", type.name},
            {"super", type.super.empty() ? Json() : Json(type.super)},
            {"methods", arrayOf(type.methods)},
            {"sharedMethods", arrayOf(type.sharedMethods)},
            {"properties", arrayOf(type.properties)},
            {"events", arrayOf(type.events)},
            {"constants", arrayOf(type.constants)}};
}

// Behind all that describe one.
template <typename Description>
Json arrayOf(const std::vector<Description>& descriptions) {
    Json array = Json::array();
    for (const Description& description : descriptions) {
        array.push_back(jsonOf(description));
    }
    return array;
}

} // namespace

std::string inspectionJson(const InspectedLibrary& library) {
    const Json document{{"library", library.name},
                        {"revision", library.revision ? Json(*library.revision) : Json()},
                        {"classes", arrayOf(library.classes)}};
    // Bytes that are no UTF-8 become U+FFFD.
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace zqm::cli
