#include "engine/protocol/listening_lines.h"

#include <cmath>
#include <string>
#include <utility>

namespace zqm::protocol {

using Json = nlohmann::json;

// ---- writing

Json write(const SetCommands& request) {
    return {{"type", "commands"}, {"list", request.list}, {"commands", request.commands}};
}

Json write(const Listen& request) {
    return {{"type", "listen"},
            {"session", request.session},
            {"reportsLevel", request.reportsLevel},
            {"fromFile", request.fromFile}};
}

Json write(const BlockOthers& request) {
    return {{"type", "blockOthers"}, {"blocks", request.blocks}};
}

Json write(const StopListening& request) {
    return {{"type", "stopListening"}, {"session", request.session}};
}

Json write(const CommandsSet& event) {
    Json problems = Json::array();
    for (const CommandProblem& problem : event.problems) {
        problems.push_back({{"command", problem.command}, {"message", problem.message}});
    }
    return {{"type", "commandsSet"},
            {"list", event.list},
            {"refused", event.refused},
            {"problems", std::move(problems)}};
}

Json write(const Listening& event) {
    Json message{{"type", "listening"}, {"session", event.session}, {"wantsNewEngine", event.wantsNewEngine}};
    if (!event.error.empty()) {
        message["error"] = event.error;
    }
    return message;
}

Json write(const Heard& event) {
    return {{"type", "heard"},          {"session", event.session},     {"list", event.list},
            {"command", event.command}, {"begin", number(event.begin)}, {"end", number(event.end)}};
}

Json write(const Rejected& event) {
    return {{"type", "rejected"},
            {"session", event.session},
            {"begin", number(event.begin)},
            {"end", number(event.end)}};
}

Json write(const Level& event) {
    return {{"type", "level"}, {"session", event.session}, {"decibels", number(event.decibels)}};
}

Json write(const EndOfInput& event) {
    return {{"type", "endOfInput"}, {"session", event.session}};
}

// ---- reading

namespace {

std::uint64_t readSession(Members& members) {
    return members.natural("session", 1);
}

std::uint64_t readList(Members& members) {
    return members.natural("list", 1);
}

SetCommands readCommands(Members& members) {
    SetCommands request;
    request.list = readList(members);
    for (Json& item : members.list("commands")) {
        require(item.is_string());
        request.commands.push_back(std::move(item.get_ref<std::string&>()));
    }
    return request;
}

Listen readListen(Members& members) {
    Listen request;
    request.session = readSession(members);
    request.reportsLevel = members.boolean("reportsLevel");
    request.fromFile = members.boolean("fromFile");
    return request;
}

CommandsSet readCommandsSet(Members& members) {
    CommandsSet event;
    event.list = readList(members);
    for (Json& item : members.list("problems")) {
        Members inner(item);
        CommandProblem problem;
        problem.command = inner.natural("command");
        problem.message = inner.nonEmpty("message");
        inner.end();
        event.problems.push_back(std::move(problem));
    }
    event.refused = members.natural("refused", event.problems.size());
    return event;
}

template <typename Phrase>
void readTimes(Members& members, Phrase& phrase) {
    phrase.begin = members.real("begin");
    phrase.end = members.real("end");
    require(0 <= phrase.begin && phrase.begin <= phrase.end); // which a thing that is no number isn't
}

Heard readHeard(Members& members) {
    Heard event;
    event.session = readSession(members);
    event.list = readList(members);
    event.command = members.natural("command");
    readTimes(members, event);
    return event;
}

Rejected readRejected(Members& members) {
    Rejected event;
    event.session = readSession(members);
    readTimes(members, event);
    return event;
}

Level readLevel(Members& members) {
    Level event;
    event.session = readSession(members);
    event.decibels = members.real("decibels");
    require(!std::isnan(event.decibels));
    return event;
}

} // namespace

std::optional<Request> readListeningRequest(Members& members, std::string_view type) {
    if (type == "commands") {
        return readCommands(members);
    }
    if (type == "listen") {
        return readListen(members);
    }
    if (type == "blockOthers") {
        return BlockOthers{members.boolean("blocks")};
    }
    if (type == "stopListening") {
        return StopListening{readSession(members)};
    }
    return std::nullopt;
}

std::optional<Event> readListeningEvent(Members& members, std::string_view type) {
    if (type == "commandsSet") {
        return readCommandsSet(members);
    }
    if (type == "listening") {
        const std::uint64_t session = readSession(members);
        std::string error = members.optionalError();
        return Listening{session, std::move(error), members.boolean("wantsNewEngine")};
    }
    if (type == "heard") {
        return readHeard(members);
    }
    if (type == "rejected") {
        return readRejected(members);
    }
    if (type == "level") {
        return readLevel(members);
    }
    if (type == "endOfInput") {
        return EndOfInput{readSession(members)};
    }
    return std::nullopt;
}

} // namespace zqm::protocol
