#include "global_methods.h"

#include "builtin_function.h"
#include "folder_item_content.h"
#include "text.h"
#include "text_conversion.h"
#include "variant_content.h"

#include <algorithm>
#include <vector>

namespace zqm::host {

namespace {

std::int64_t lenB(Core& core, REALstring string) {
    const auto* handle = string == nullptr ? nullptr : core.handles().find<StringHandle>(string, "LenB");
    return handle == nullptr ? 0 : static_cast<std::int64_t>(handle->bytes.size());
}

std::int32_t varType(Core& core, REALobject value) {
    const auto* handle = value == nullptr ? nullptr : core.handles().find<ObjectHandle>(value, "VarType");
    return handle == nullptr ? variant::kNil : variantCode(*handle);
}

constexpr std::int64_t kNativePath = 3;

REALobject trueFolderItem(Core& core, REALstring path, std::int64_t pathMode) {
    constexpr const char* kWhere = "GetTrueFolderItem";
    if (pathMode != kNativePath) {
        core.reports().add(Report::Kind::BadArgument,
                           std::string(kWhere) + ": path mode " + std::to_string(pathMode));
        return nullptr;
    }
    const auto* handle = path == nullptr ? nullptr : core.handles().find<StringHandle>(path, kWhere);
    const auto text =
        handle == nullptr ? std::nullopt : convertText(handle->bytes, handle->encoding, encoding::kUtf8);
    if (!text || !text->starts_with('/')) {
        return nullptr;
    }
    return core.makeObject(kFolderItemClass, std::make_unique<FolderItemContent>(*text)).release();
}

struct GlobalMethod {
    Declaration declaration;
    void* function;
};

const std::vector<GlobalMethod>& globalMethods() {
    static const std::vector<GlobalMethod> methods{
        {parseDeclaration("LenB(s as String) as Integer"), globalFunction<"LenB", lenB>()},
        {parseDeclaration("VarType(value as Variant) as Int32"), globalFunction<"VarType", varType>()},
        {parseDeclaration("GetTrueFolderItem(path as String, pathMode as Integer) as FolderItem"),
         globalFunction<"GetTrueFolderItem", trueFolderItem>()},
    };
    return methods;
}

} // namespace

void requireGlobalMethod(std::string_view name) {
    const bool known = std::ranges::any_of(globalMethods(), [name](const GlobalMethod& method) {
        return sameName(method.declaration.name, name);
    });
    if (!known) {
        throw CallError("there is no global method " + inQuotes(name));
    }
}

void* findGlobalMethod(const Declaration& wanted) {
    for (const GlobalMethod& method : globalMethods()) {
        if (sameSignature(method.declaration, wanted)) {
            return method.function;
        }
    }
    return nullptr;
}

} // namespace zqm::host
