#include "tests/endtoend/faulty_road.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zqm::endtoend {

std::string Place::name() const {
    return std::string(isAfter ? "after" : "before") + (toHost ? "_event_" : "_request_") + type + "_" +
           std::to_string(number);
}

FaultyRoad::FaultyRoad() = default;

// It is there at once and whole.
void FaultyRoad::plan(const Place& place, const std::string& action, const std::string& bytes) const {
    std::ofstream(folder_ / kBytesFile) << bytes;
    std::ofstream(folder_ / "next") << (place.toHost ? '<' : '>') << ' ' << place.type << ' ' << place.number
                                    << ' ' << (place.isAfter ? "after" : "before") << ' ' << action << '\n';
    std::filesystem::rename(folder_ / "next", folder_ / kPlanFile);
}

bool FaultyRoad::isDone() const {
    return !std::filesystem::exists(folder_ / kPlanFile);
}

std::vector<std::string> FaultyRoad::tale() const {
    std::ifstream file(folder_ / kTaleFile);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

bool FaultyRoad::tells(const std::string& line) const {
    return std::ranges::count(tale(), line) > 0;
}

std::vector<int> FaultyRoad::told(const std::string& word) const {
    std::vector<int> numbers;
    for (const std::string& line : tale()) {
        std::istringstream words(line);
        std::string first;
        if (int number = 0; words >> first && first == word && words >> number) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

void FaultyRoad::forget() const {
    std::filesystem::remove(folder_ / kTaleFile);
}

} // namespace zqm::endtoend
