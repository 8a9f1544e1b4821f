// What plugins declare and ask for: a declaration that is understood is described so that the same is
// understood again; any other is refused with what is wrong.

#include "declaration.h"
#include "fuzz/check.h"
#include "fuzz/target.h"

#include <string>
#include <string_view>

namespace {

using namespace zqm;
using host::Declaration;

template <typename Parse>
void holdTo(std::string_view text, Parse parse) {
    try {
        const auto parsed = parse(text);
        const std::string described = host::describe(parsed);
        const auto again = parse(described);
        fuzz::check(host::describe(again) == described, "a description describes itself", described);
        if constexpr (std::is_same_v<decltype(parse(text)), Declaration>) {
            fuzz::check(host::sameSignature(parsed, again), "a description has the same signature",
                        described);
            for (std::size_t index = 0; index < parsed.parameters.size(); ++index) {
                fuzz::check(parsed.parameters[index].name == again.parameters[index].name &&
                                parsed.parameters[index].defaultValue == again.parameters[index].defaultValue,
                            "a description has the same parameters", described);
            }
        } else {
            fuzz::check(host::sameType(parsed, again), "a description is of the same type", described);
        }
    } catch (const host::DeclarationError& error) {
        fuzz::check(*error.what() != '\0', "an error says what is wrong");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    holdTo(text, host::parseDeclaration);
    holdTo(text, host::parseAskedDeclaration);
    holdTo(text, host::parseType);
    return 0;
}
