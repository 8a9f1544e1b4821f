#include "bench/recognition/outcome.h"

#include "bench/recognition/json_lines.h"

#include <ostream>

namespace zqm::recognition {

void to_json(nlohmann::json& json, const Outcome& outcome) {
    json = {{"way", outcome.way},
            {"phrase", outcome.phrase},
            {"heard", outcome.heard},
            {"seconds", outcome.seconds},
            {"processorSeconds", outcome.processorSeconds}};
    if (outcome.delay) {
        json["delay"] = *outcome.delay;
    }
}

void from_json(const nlohmann::json& json, Outcome& outcome) {
    json.at("way").get_to(outcome.way);
    json.at("phrase").get_to(outcome.phrase);
    json.at("heard").get_to(outcome.heard);
    json.at("seconds").get_to(outcome.seconds);
    json.at("processorSeconds").get_to(outcome.processorSeconds);
    outcome.delay.reset();
    if (json.contains("delay")) {
        outcome.delay = json.at("delay").get<double>();
    }
}

void writeOutcome(std::ostream& out, const Outcome& outcome) {
    out << nlohmann::json(outcome).dump() << '\n';
}

std::vector<Outcome> readOutcomes(std::istream& in) {
    return readLines<Outcome>(in);
}

} // namespace zqm::recognition
