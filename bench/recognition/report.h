// How good the recognizer is, as tables in Markdown.

#pragma once

#include "bench/recognition/outcome.h"

#include <string>
#include <vector>

namespace zqm::recognition {

// For each half and way what was aimed at and what was reached, and a table with a row for each voice, in the
// order in which they come, for each family of voices, and for all.
std::string report(const std::vector<Outcome>& outcomes);

// The phrases that went wrong, a line each; no text when there are none.
std::string mistakes(const std::vector<Outcome>& outcomes);

// The value that so large a part of the values doesn't exceed; throws std::invalid_argument for no values.
double quantile(std::vector<double> values, double part);

} // namespace zqm::recognition
