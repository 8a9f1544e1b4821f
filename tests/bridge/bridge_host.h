// The bridge's functions with the reference host beneath them, each test in a process of its own: the bridge
// keeps class references and methods of its host for the life of a process.

#pragma once

#include "plugin/autorelease_pool.h"
#include "plugin/platform_guard.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace zqm::host {

inline void PrintTo(const Report& report, std::ostream* out) {
    *out << report.text;
}

inline void PrintTo(const Ledger& ledger, std::ostream* out) {
    const auto print = [out](const char* what, const Ledger::Count& count) {
        *out << count.handles << ' ' << what << " with " << count.locks << " locks, ";
    };
    print("objects", ledger.objects);
    print("strings", ledger.strings);
    print("texts", ledger.texts);
    *out << ledger.stringData.handles << " string data";
}

} // namespace zqm::host

namespace zqm::bridge::test {

// Runs the body with a host of that version. Afterwards, with everything autoreleased gone, the host must
// have nothing to report, no exception that the body did not take, and every lock back.
inline void inBridge(double version, const std::function<void(PluginHost&)>& body) {
    zqm::support::inFork([&] {
        const AutoreleasePool ofHost;
        PluginHost host(version);
        const auto before = host->ledger();
        {
            const AutoreleasePool ofBody;
            // It must not leave the body, or the new process would go on with the tests that follow.
            if (NSException* exception = runUnderPlatformGuard([&] { body(host); })) {
                ADD_FAILURE() << [[exception description] UTF8String];
            }
        }
        EXPECT_THAT(host->reports(), testing::IsEmpty());
        for (const auto& raised : host->takeRaised()) {
            ADD_FAILURE() << "raised " << raised.className << ": " << raised.message;
        }
        EXPECT_EQ(host->ledger(), before);
    });
}

inline void inBridge(const std::function<void(PluginHost&)>& body) {
    inBridge(zqm::host::kDefaultVersion, body);
}

// What the function raises into the host, as "class: message", in order.
inline std::vector<std::string> raisedBy(PluginHost& host, const std::function<void()>& function) {
    std::vector<std::string> texts;
    try {
        host->guarded(function);
    } catch (const zqm::host::HostException& exception) {
        for (const auto& raised : exception.all()) {
            texts.push_back(raised.className + ": " + raised.message);
        }
    }
    return texts;
}

// The reference host's own entry point, for one that stands in for it.
template <typename Function>
Function* hostFunction(const char* name) {
    return reinterpret_cast<Function*>(zqm::host::Runtime::resolver()(name));
}

// The methods that the bridge asks objects for, in order, and those that objects are made to lack or have.
class ObjectMethods {
public:
    ObjectMethods() {
        PluginHost::replace("REALLoadObjectMethod", load);
        asked().clear();
        answers().clear();
    }

    struct Request {
        REALobject object;
        std::string declaration;
        friend bool operator==(const Request&, const Request&) = default;
    };
    static std::vector<Request>& asked() {
        static std::vector<Request> requests;
        return requests;
    }
    static std::vector<std::string> askedOf(REALobject object) {
        std::vector<std::string> declarations;
        for (const Request& request : asked()) {
            if (request.object == object) {
                declarations.push_back(request.declaration);
            }
        }
        return declarations;
    }

    // From now on every object answers this; null: has no such method.
    void answer(const std::string& declaration, void* method) { answers()[declaration] = method; }

private:
    static std::map<std::string, void*>& answers() {
        static std::map<std::string, void*> methods;
        return methods;
    }
    static void* load(REALobject object, const char* declaration) {
        asked().push_back({object, declaration});
        const auto found = answers().find(declaration);
        return found != answers().end() ? found->second
                                        : hostFunction<void*(REALobject, const char*)>(
                                              "REALLoadObjectMethod")(object, declaration);
    }
};

inline void PrintTo(const ObjectMethods::Request& request, std::ostream* out) {
    *out << request.object << ' ' << request.declaration;
}

} // namespace zqm::bridge::test
