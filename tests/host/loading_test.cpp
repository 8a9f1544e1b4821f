#include "tests/host/widget.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

namespace zqm::host::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

TEST(Loading, RegistersThePluginsClasses) {
    Runtime runtime;
    runtime.load(ZQM_WIDGET_PLUGIN);
    EXPECT_THAT(runtime.classNames(), ElementsAre("Widget", "Gadget"));
    EXPECT_EQ(runtime.announcedRevision(), 13);
    EXPECT_THAT(runtime.reports(), IsEmpty());
}

TEST(Loading, WorksAgainInTheNextRuntime) {
    for (int round = 0; round < 3; ++round) {
        Runtime runtime;
        runtime.load(ZQM_WIDGET_PLUGIN);
        EXPECT_EQ(runtime.create("Widget").call("Add", round, 1).asInteger(), round + 1);
        EXPECT_THAT(runtime.reports(), IsEmpty());
    }
}

TEST(Loading, TwiceInOneRuntimeIsReported) {
    Runtime runtime;
    runtime.load(ZQM_WIDGET_PLUGIN);
    EXPECT_THROW(runtime.load(ZQM_WIDGET_PLUGIN), LoadError);
    EXPECT_EQ(runtime.reports().size(), 2U);
}

TEST(Loading, OfALibraryBesideAPlugin) {
    const std::filesystem::path widget = ZQM_WIDGET_PLUGIN;
    const std::string plugin = widget.parent_path() / ("none" + widget.extension().string());
    Runtime runtime;
    EXPECT_FALSE(runtime.loadBeside(plugin, "libNoSuchLibrary"));
    EXPECT_THAT(runtime.classNames(), IsEmpty());
    EXPECT_TRUE(runtime.loadBeside(plugin, widget.stem().string()));
    EXPECT_THAT(runtime.classNames(), ElementsAre("Widget", "Gadget"));
}

TEST(Loading, OfAMissingFileSaysSo) {
    Runtime runtime;
    EXPECT_THAT([&] { runtime.load("/nonexistent/plugin.so"); },
                ThrowsMessage<LoadError>("there is no plugin /nonexistent/plugin.so"));
    EXPECT_FALSE(runtime.announcedRevision().has_value());
}

TEST(Loading, OfAFileThatCantBeLookedForSaysWhy) {
    Runtime runtime;
    EXPECT_THAT([&] { runtime.load("/dev/null/plugin.so"); },
                ThrowsMessage<LoadError>("can't look for the plugin /dev/null/plugin.so: Not a directory"));
}

TEST(Loading, OfSomethingElseSaysSo) {
    const auto path = std::filesystem::temp_directory_path() / ("zqm-no-library-" + std::to_string(getpid()));
    std::ofstream(path) << "text";
    Runtime runtime;
    EXPECT_THAT([&] { runtime.load(path); }, ThrowsMessage<LoadError>(HasSubstr("can't be loaded")));
    EXPECT_THAT([&] { runtime.load(path.parent_path()); },
                ThrowsMessage<LoadError>(HasSubstr("can't be loaded")));
    std::filesystem::remove(path);
}

TEST(Loading, OfALibraryWithoutTheEntryFunctionSaysSo) {
    Runtime runtime;
    EXPECT_THAT([&] { runtime.load(ZQM_NO_ENTRY_PLUGIN); },
                ThrowsMessage<LoadError>(HasSubstr("no function REALPluginMain")));
}

TEST(Loading, OfAPluginThatRegistersNothingSaysSo) {
    Runtime runtime;
    EXPECT_THAT([&] { runtime.load(ZQM_EMPTY_PLUGIN); },
                ThrowsMessage<LoadError>(HasSubstr("registered no class")));
}

} // namespace
} // namespace zqm::host::test
