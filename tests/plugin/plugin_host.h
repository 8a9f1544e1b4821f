// The reference host beneath the plugin's own functions: as if REALPluginMain had been given its resolver,
// at any host version, with single entry points replaced by the test's own.

#pragma once

#include "plugin/entry_points.h"
#include "plugin/plugin_main.h"

#include <map>
#include <string>
#include <zqmhost/zqmhost.h>

// Makes every wrapper ask its host anew.
inline void forgetEntryPoints() {
#define ENTRY_POINT(wrapper, name, Result, Parameters) wrapper = EntryPoint<Result Parameters>{name};
#define ARRAY_ENTRY_POINT(wrapper, name, Result, Parameters)                                                 \
    wrapper = ArrayEntryPoint<Result Parameters>{name};
#include "plugin/entry_points.def"
#undef ENTRY_POINT
#undef ARRAY_ENTRY_POINT
}

class PluginHost {
public:
    explicit PluginHost(double version = zqm::host::kDefaultVersion)
        : runtime_({.version = version, .refused = {}}) {
        replaced().clear();
        forgetEntryPoints();
        gResolver = resolve;
        rbversion_rbversion = version;
    }

    // Calls the plugin's entry function, which registers its classes with this host.
    void start() { REALPluginMain(resolve); }

    zqm::host::Runtime& operator*() { return runtime_; }
    zqm::host::Runtime* operator->() { return &runtime_; }

    // What the resolver answers for this name. A plugin that already holds the function keeps it.
    template <typename Result, typename... Parameters>
    static void replace(const std::string& name, Result (*function)(Parameters...)) {
        replaced()[name] = reinterpret_cast<void*>(function);
    }
    static void refuse(const std::string& name) { replaced()[name] = nullptr; }

private:
    static std::map<std::string, void*>& replaced() {
        static std::map<std::string, void*> functions;
        return functions;
    }
    static void* resolve(const char* name) {
        const auto found = replaced().find(name);
        return found != replaced().end() ? found->second : zqm::host::Runtime::resolver()(name);
    }

    zqm::host::Runtime runtime_;
};
