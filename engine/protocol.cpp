#include "engine/protocol.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <initializer_list>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

namespace zqm::protocol {

namespace {

using Json = nlohmann::json;

// ---- writing

std::string line(const Json& message) {
    return message.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

Json number(double value) {
    if (std::isnan(value)) {
        return nullptr;
    }
    constexpr double kLargest = std::numeric_limits<double>::max();
    return std::clamp(value, -kLargest, kLargest);
}

Json write(const ListVoices&) {
    return {{"type", "voices"}};
}

Json write(const Speak& speak) {
    Json message{{"type", "speak"},      {"utterance", speak.utterance}, {"text", speak.text},
                 {"voice", speak.voice}, {"rate", number(speak.rate)},   {"volume", number(speak.volume)}};
    if (speak.output) {
        message["output"] = {{"extension", speak.output->extension},
                             {"temporaryName", speak.output->temporaryName},
                             {"finalName", speak.output->finalName}};
    }
    return message;
}

Json write(const Stop& stop) {
    return {{"type", "stop"}, {"utterance", stop.utterance}};
}

Json write(const Adjust& adjust) {
    Json message{{"type", "adjust"}, {"utterance", adjust.utterance}};
    if (adjust.rate) {
        message["rate"] = number(*adjust.rate);
    }
    if (adjust.volume) {
        message["volume"] = number(*adjust.volume);
    }
    return message;
}

Json write(const Voices& voices) {
    Json list = Json::array();
    for (const Voice& voice : voices.voices) {
        list.push_back({{"identifier", voice.identifier},
                        {"name", voice.name},
                        {"language", voice.language},
                        {"gender", voice.gender},
                        {"age", voice.age}});
    }
    return {{"type", "voices"}, {"voices", std::move(list)}};
}

Json write(const Started& started) {
    Json message{{"type", "started"}, {"utterance", started.utterance}};
    if (!started.error.empty()) {
        message["error"] = started.error;
    }
    return message;
}

Json write(const Word& word) {
    return {{"type", "word"},
            {"utterance", word.utterance},
            {"position", word.position},
            {"length", word.length}};
}

Json write(const Finished& finished) {
    Json message{{"type", "finished"}, {"utterance", finished.utterance}, {"completed", finished.completed}};
    if (!finished.error.empty()) {
        message["error"] = finished.error;
    }
    return message;
}

// ---- reading

// Thrown and caught in this file only.
struct Malformed : std::exception {};

void require(bool condition) {
    if (!condition) {
        throw Malformed();
    }
}

// An object whose members are taken one by one, and which must be empty in the end.
class Members {
public:
    explicit Members(Json& value) : object_(value) { require(value.is_object()); }

    [[nodiscard]] bool has(const char* name) const { return object_.contains(name); }

    Json take(const char* name) {
        const auto member = object_.find(name);
        require(member != object_.end());
        Json value = std::move(*member);
        object_.erase(member);
        return value;
    }

    std::string string(const char* name) {
        Json value = take(name);
        require(value.is_string());
        return std::move(value.get_ref<std::string&>());
    }

    std::string oneOf(const char* name, std::initializer_list<std::string_view> known) {
        std::string value = string(name);
        require(std::find(known.begin(), known.end(), value) != known.end());
        return value;
    }

    std::string nonEmpty(const char* name) {
        std::string value = string(name);
        require(!value.empty());
        return value;
    }

    // A name in a folder; empty is none.
    std::string fileName(const char* name) {
        std::string value = string(name);
        require(value != "." && value != ".." && value.find('/') == std::string::npos &&
                value.find('\0') == std::string::npos);
        return value;
    }

    std::string optionalError() { return has("error") ? nonEmpty("error") : std::string(); }

    std::uint64_t natural(const char* name, std::uint64_t least = 0) {
        const Json value = take(name);
        require(value.is_number_unsigned());
        const auto result = value.get<std::uint64_t>();
        require(result >= least);
        return result;
    }

    std::uint64_t utterance() { return natural("utterance", 1); }

    int smallNatural(const char* name) {
        const std::uint64_t value = natural(name);
        require(value <= static_cast<std::uint64_t>(std::numeric_limits<int>::max()));
        return static_cast<int>(value);
    }

    double real(const char* name) {
        const Json value = take(name);
        require(value.is_number() || value.is_null());
        return value.is_null() ? std::numeric_limits<double>::quiet_NaN() : value.get<double>();
    }

    bool boolean(const char* name) {
        const Json value = take(name);
        require(value.is_boolean());
        return value.get<bool>();
    }

    void end() const { require(object_.empty()); }

private:
    Json& object_;
};

// Refuses what the library alone would let pass: a member that stands twice, nesting that no message has,
// and a NUL, which it takes for the end.
Json parse(std::string_view text) {
    require(text.find('\0') == std::string_view::npos);
    constexpr int kDeepest = 3;
    std::array<std::set<std::string>, kDeepest + 1> names;
    const auto watch = [&names](int depth, Json::parse_event_t event, Json& value) {
        require(depth <= kDeepest);
        const auto level = static_cast<std::size_t>(depth);
        if (event == Json::parse_event_t::object_start) {
            names.at(level).clear();
        } else if (event == Json::parse_event_t::key) {
            require(names.at(level - 1).insert(value.get<std::string>()).second);
        }
        return true;
    };
    Json value = Json::parse(text.begin(), text.end(), watch, false);
    require(!value.is_discarded());
    return value;
}

Request readSpeak(Members& members) {
    Speak speak;
    speak.utterance = members.utterance();
    speak.text = members.string("text");
    speak.voice = members.string("voice");
    speak.rate = members.real("rate");
    speak.volume = members.real("volume");
    if (members.has("output")) {
        Json object = members.take("output");
        Members inner(object);
        Output output;
        output.extension = inner.string("extension");
        output.temporaryName = inner.fileName("temporaryName");
        output.finalName = inner.fileName("finalName");
        require(output.temporaryName.empty() || !output.finalName.empty());
        inner.end();
        speak.output = std::move(output);
    }
    return speak;
}

Request readAdjust(Members& members) {
    Adjust adjust;
    adjust.utterance = members.utterance();
    if (members.has("rate")) {
        adjust.rate = members.real("rate");
    }
    if (members.has("volume")) {
        adjust.volume = members.real("volume");
    }
    return adjust;
}

Request readRequest(Members& members, std::string_view type) {
    if (type == "voices") {
        return ListVoices{};
    }
    if (type == "speak") {
        return readSpeak(members);
    }
    if (type == "stop") {
        return Stop{members.utterance()};
    }
    if (type == "adjust") {
        return readAdjust(members);
    }
    throw Malformed();
}

Event readVoices(Members& members) {
    Json list = members.take("voices");
    require(list.is_array());
    Voices voices;
    for (Json& item : list) {
        Members inner(item);
        Voice voice;
        voice.identifier = inner.nonEmpty("identifier");
        voice.name = inner.string("name");
        voice.language = inner.string("language");
        voice.gender = inner.oneOf("gender", {"male", "female", "neuter"});
        voice.age = inner.smallNatural("age");
        inner.end();
        voices.voices.push_back(std::move(voice));
    }
    return voices;
}

Event readFinished(Members& members) {
    Finished finished;
    finished.utterance = members.utterance();
    finished.completed = members.boolean("completed");
    finished.error = members.optionalError();
    require(!finished.completed || finished.error.empty());
    return finished;
}

Event readEvent(Members& members, std::string_view type) {
    if (type == "voices") {
        return readVoices(members);
    }
    if (type == "started") {
        const std::uint64_t utterance = members.utterance();
        return Started{utterance, members.optionalError()};
    }
    if (type == "word") {
        Word word;
        word.utterance = members.utterance();
        word.position = members.natural("position");
        word.length = members.natural("length", 1);
        require(word.position <= std::numeric_limits<std::uint64_t>::max() - word.length);
        return word;
    }
    if (type == "finished") {
        return readFinished(members);
    }
    throw Malformed();
}

template <typename Message, Message (*read)(Members&, std::string_view)>
std::optional<Message> decode(std::string_view text) {
    try {
        Json object = parse(text);
        Members members(object);
        const std::string type = members.string("type");
        Message message = read(members, type);
        members.end();
        return message;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

std::string encode(const Request& request) {
    return std::visit([](const auto& message) { return line(write(message)); }, request);
}

std::string encode(const Event& event) {
    return std::visit([](const auto& message) { return line(write(message)); }, event);
}

std::optional<Request> decodeRequest(std::string_view line) {
    return decode<Request, readRequest>(line);
}

std::optional<Event> decodeEvent(std::string_view line) {
    return decode<Event, readEvent>(line);
}

} // namespace zqm::protocol
