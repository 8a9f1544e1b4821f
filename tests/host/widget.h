#pragma once

#include "zqmhost/zqmhost.h"

#include <gtest/gtest.h>

namespace zqm::host::test {

// A runtime with the plugin of the tests loaded; it must have been spoken to correctly all the time.
class WidgetTest : public testing::Test {
protected:
    WidgetTest() { runtime.load(ZQM_WIDGET_PLUGIN); }

    void TearDown() override {
        for (const Report& report : runtime.reports()) {
            ADD_FAILURE() << nameOf(report.kind) << ": " << report.text;
        }
    }

    Runtime runtime;
};

} // namespace zqm::host::test
