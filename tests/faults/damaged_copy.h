// A folder of data in which one file is not what it should be.

#pragma once

#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zqm::faults {

enum class Damage { Missing, Empty, Truncated, Random };

inline constexpr Damage kDamages[] = {Damage::Missing, Damage::Empty, Damage::Truncated, Damage::Random};

const char* nameOf(Damage damage);

// All files of a folder, and a damaged copy of one of them.
class DamagedCopy {
public:
    DamagedCopy(const std::filesystem::path& original, const std::filesystem::path& file, Damage damage,
                unsigned seed = 0);

    const std::filesystem::path& path() const { return folder_.path(); }

private:
    support::TemporaryFolder folder_;
};

} // namespace zqm::faults
