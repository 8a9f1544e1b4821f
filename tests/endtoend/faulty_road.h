// A road from a host program to the real engine (faulty_engine.cpp) on which one thing goes wrong, once.

#pragma once

#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace zqm::endtoend {

// The files in the folder that kFaultFolder names, by which a test and the engines that it starts meet.
inline constexpr const char* kFaultFolder = "ZQM_FAULT_FOLDER";
inline constexpr const char* kPlanFile = "plan";   // see FaultyRoad::plan()
inline constexpr const char* kBytesFile = "bytes"; // what a fault sends
inline constexpr const char* kTaleFile = "tale";   // what the engines tell, line by line

// At a message: the one of that type and number, counted from 0 since the fault was planned.
struct Place {
    bool toHost = false;
    std::string type;
    int number = 0;
    bool isAfter = false; // else before it, or in its place

    [[nodiscard]] std::string name() const;
};

class FaultyRoad {
public:
    FaultyRoad();

    // The next engine that comes to the place does as the action says, and the plan is gone:
    //   close   closes the conversation at both ends         kill    kills the engine
    //   end     asks the engine to end                       stop    stops the engine, and itself
    //   half    sends half of the message, then closes       drop    leaves it out
    //   repeat  sends it twice                               slow    lets a while pass before it
    //   bare    sends it without its descriptors             laden   sends more with it than anyone takes
    //   soil    writes the bytes into the file that came with it, then kills the engine
    //   replace sends the bytes in its place                 babble  says valid things in its place, for ever
    void plan(const Place& place, const std::string& action, const std::string& bytes = {}) const;

    // What was done is no longer planned.
    [[nodiscard]] bool isDone() const;

    // So far, a line each: "< " and the type of what was handed on to the host, "> " to the engine; "engine"
    // and the number of its process; "ended" and its exit code, 1000 and the signal when one ended it.
    [[nodiscard]] std::vector<std::string> tale() const;
    [[nodiscard]] bool tells(const std::string& line) const;
    // The numbers behind a word in that.
    [[nodiscard]] std::vector<int> told(const std::string& word) const;

    void forget() const;

private:
    support::TemporaryFolder folder_;
    support::ScopedEnvironment name_{kFaultFolder, folder_.path().string()};
};

} // namespace zqm::endtoend
