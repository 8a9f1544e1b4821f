#include "plugin/plugin_main.h"

#include "plugin/class_records.h"
#include "plugin/entry_points.h"

REALresolver gResolver = nullptr;
double rbversion_rbversion = 0.0;
std::uint64_t CurrentREALControlVersion = 13;
const char* gpartname = nullptr;
const char* gpluginname = nullptr;
std::uint8_t gplugin = 0;

namespace {

struct RevisionStep {
    double hostVersion; // from this version on
    std::uint64_t revision;
};

constexpr RevisionStep kRevisionSteps[] = {
    {2013.04, 13},
    {2013.03, 12},
    {kHostVersion2013, 11},
    {kHostVersion2012, 10},
};

constexpr std::uint64_t kInstanceDataAlignment = 16;

std::uint64_t revisionForHost(double hostVersion) {
    for (const RevisionStep& step : kRevisionSteps) {
        if (hostVersion >= step.hostVersion) {
            return step.revision;
        }
    }
    return kIndirectTokenRevision;
}

void registerClass(ClassRecord& record) {
    record.dataSize =
        (record.dataSize + kInstanceDataAlignment - 1) / kInstanceDataAlignment * kInstanceDataAlignment;
    record.version = static_cast<std::uint32_t>(CurrentREALControlVersion);
    REALRegisterClass(&record);
}

} // namespace

void REALPluginMain(REALresolver resolver) {
    gResolver = resolver;

    if (void* function = resolver("REALGetRBVersion")) {
        rbversion_rbversion = reinterpret_cast<double (*)()>(function)();
    }
    CurrentREALControlVersion = revisionForHost(rbversion_rbversion);

    // A host that can't be told the revision would misread every record; there is none to support.
    auto registerPluginVersion = reinterpret_cast<void (*)(std::int32_t)>(resolver("RegisterPluginVersion"));
    registerPluginVersion(static_cast<std::int32_t>(CurrentREALControlVersion));

    gpartname = kPartName;
    gplugin = 1;
    gpluginname = "Cocoa";

    for (ClassRecord* record : classRecords()) {
        registerClass(*record);
    }
}
