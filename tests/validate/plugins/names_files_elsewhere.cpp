// Nothing is wrong with it: it names files outside of its folder, and takes for an attack what of them is
// given back to it.
#include "counter_plugin.h"

#include <cstdlib>
#include <filesystem>

namespace {
constexpr std::string_view kElsewhere[] = {"/home/user", "file:///home/user", "..", "../..",
                                           "~",          "~/letters"};

template <int index>
REALstring elsewhere(REALobject /*self*/) {
    return makeString(std::string(kElsewhere[index]));
}

REALstring here(REALobject /*self*/) {
    return makeString(std::filesystem::current_path().string() + "/letters");
}

bool isHere(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && value == std::filesystem::current_path();
}

void removeFile(REALobject /*self*/, REALstring path) {
    const std::string text = textOf(path);
    for (const std::string_view name : kElsewhere) {
        if (text == name) {
            __builtin_trap();
        }
    }
    if (!isHere("HOME") || !isHere("TMPDIR")) {
        __builtin_trap();
    }
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    static const bool isMade = [] {
        for (const MethodRecord& method : {
                 MethodRecord{.function = elsewhere<0>, .declaration = "Home() as String"},
                 MethodRecord{.function = elsewhere<1>, .declaration = "HomeURL() as String"},
                 MethodRecord{.function = elsewhere<2>, .declaration = "Parent() as String"},
                 MethodRecord{.function = elsewhere<3>, .declaration = "Above() as String"},
                 MethodRecord{.function = elsewhere<4>, .declaration = "ShortHome() as String"},
                 MethodRecord{.function = elsewhere<5>, .declaration = "Letters() as String"},
                 MethodRecord{.function = here, .declaration = "Here() as String"},
                 MethodRecord{.function = removeFile, .declaration = "Remove(path as String)"},
                 MethodRecord{.function = removeFile, .declaration = "RemoveAgain(path as String)"},
                 MethodRecord{.function = removeFile, .declaration = "RemoveLast(path as String)"},
             }) {
            counterPlugin().methods.push_back(method);
        }
        return true;
    }();
    if (isMade) {
        counterPlugin().start(resolver);
    }
}
