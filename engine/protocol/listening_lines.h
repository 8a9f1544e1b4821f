// How the messages of listening are written down and read.

#pragma once

#include "engine/protocol/json_members.h"
#include "engine/protocol/listening_messages.h"
#include "engine/protocol/protocol.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

namespace zqm::protocol {

nlohmann::json write(const SetCommands& request);
nlohmann::json write(const Listen& request);
nlohmann::json write(const BlockOthers& request);
nlohmann::json write(const StopListening& request);

nlohmann::json write(const CommandsSet& event);
nlohmann::json write(const Listening& event);
nlohmann::json write(const Heard& event);
nlohmann::json write(const Rejected& event);
nlohmann::json write(const Level& event);
nlohmann::json write(const EndOfInput& event);

// Nothing when the type is none of these; throws Malformed.
std::optional<Request> readListeningRequest(Members& members, std::string_view type);
std::optional<Event> readListeningEvent(Members& members, std::string_view type);

} // namespace zqm::protocol
