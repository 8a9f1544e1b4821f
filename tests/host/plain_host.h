#pragma once

#include "entries.h"
#include "zqmhost/zqmhost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace zqm::host::test {

// A runtime without a plugin; the tests speak to its entry points themselves. In the end nothing may be
// alive, and no breach unlooked at.
class PlainHost : public testing::Test {
protected:
    explicit PlainHost(const Options& options = {}) : runtime(options) {}

    void TearDown() override {
        for (const Report& report : runtime.reports()) {
            ADD_FAILURE() << nameOf(report.kind) << ": " << report.text;
        }
        EXPECT_EQ(runtime.ledger(), Ledger());
    }

    // The one report there is; it is forgotten.
    void expectReport(Report::Kind kind, const std::string& part) {
        const auto reports = runtime.reports();
        ASSERT_EQ(reports.size(), 1U) << part;
        EXPECT_EQ(nameOf(reports.front().kind), std::string(nameOf(kind)));
        EXPECT_THAT(reports.front().text, testing::HasSubstr(part));
        runtime.clearReports();
    }

    // The class of the one exception that the function raised; empty when it raised none.
    std::string raisedBy(const std::function<void()>& function) {
        try {
            runtime.guarded(function);
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.all().size(), 1U);
            EXPECT_NE(exception.message(), "");
            return exception.className();
        }
        return {};
    }

    // A function of the object's, as a plugin loads it.
    template <typename Function>
    Function* method(const Object& object, const char* declaration) {
        return reinterpret_cast<Function*>(call<void*>("REALLoadObjectMethod", object.handle(), declaration));
    }
    template <typename Function>
    Function* globalMethod(const char* declaration) {
        return reinterpret_cast<Function*>(
            call<void*>("REALLoadGlobalMethod", static_cast<const char*>(nullptr), declaration));
    }

    // A handle whose last lock is gone.
    REALobject deadObject() { return Object(runtime.dictionary()).handle(); }

    Runtime runtime;
};

} // namespace zqm::host::test
