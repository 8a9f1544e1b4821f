// recognition_report [--mistakes] FILE...: tables of the outcomes in these files.

#include "bench/recognition/report.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<zqm::recognition::Outcome> outcomesIn(const std::string& file) {
    std::ifstream in(file);
    if (!in) {
        throw std::runtime_error("it can't be read");
    }
    return zqm::recognition::readOutcomes(in);
}

} // namespace

int main(int count, char** values) {
    std::vector<std::string> arguments(values + 1, values + count);
    const bool wantsMistakes = !arguments.empty() && arguments.front() == "--mistakes";
    if (wantsMistakes) {
        arguments.erase(arguments.begin());
    }
    std::vector<zqm::recognition::Outcome> outcomes;
    for (const std::string& file : arguments) {
        try {
            const auto read = outcomesIn(file);
            outcomes.insert(outcomes.end(), read.begin(), read.end());
        } catch (const std::exception& exception) {
            std::cerr << file << ": " << exception.what() << '\n';
            return 1;
        }
    }
    std::cout << (wantsMistakes ? zqm::recognition::mistakes(outcomes) : zqm::recognition::report(outcomes));
    return 0;
}
