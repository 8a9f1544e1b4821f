// The members of a class as people are told of them.

#pragma once

#include <zqmhost/class_description.h>

#include <string>
#include <vector>

namespace zqm::cli {

struct MemberLine {
    std::string declaration; // of one line, whatever the plugin named it
    std::string note = {};   // "read-only"; may be empty
};

struct MemberSection {
    const char* title;
    std::vector<MemberLine> members; // never empty
};

std::vector<MemberSection> membersOf(const host::ClassDescription& type);

} // namespace zqm::cli
