#include "engine/protocol/protocol.h"

#include "engine/protocol/json_members.h"
#include "engine/protocol/listening_lines.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

namespace zqm::protocol {

namespace {

using Json = nlohmann::json;

// ---- names

template <typename Value>
struct Name {
    Value value;
    std::string_view name;
};

constexpr auto kInputModes =
    std::to_array<Name<InputMode>>({{InputMode::Text, "TEXT"}, {InputMode::Phonemes, "PHON"}});
constexpr auto kSpellingModes =
    std::to_array<Name<SpellingMode>>({{SpellingMode::Normal, "NORM"}, {SpellingMode::Literal, "LTRL"}});
constexpr auto kBoundaries = std::to_array<Name<Boundary>>(
    {{Boundary::Immediate, "immediate"}, {Boundary::Word, "word"}, {Boundary::Sentence, "sentence"}});

template <typename Value, std::size_t count>
std::string_view nameOf(const std::array<Name<Value>, count>& names, Value value) {
    return std::find_if(names.begin(), names.end(), [&](const auto& each) { return each.value == value; })
        ->name;
}

template <typename Value, std::size_t count>
Value named(const std::array<Name<Value>, count>& names, const std::string& name) {
    const auto found =
        std::find_if(names.begin(), names.end(), [&](const auto& each) { return each.name == name; });
    require(found != names.end());
    return found->value;
}

// The numbers of a manner.
constexpr auto kMannerNumbers = std::to_array<Name<std::optional<double> Manner::*>>({
    {&Manner::rate, "rate"},
    {&Manner::volume, "volume"},
    {&Manner::pitchBase, "pitchBase"},
    {&Manner::pitchModulation, "pitchModulation"},
});
constexpr auto kMannerSpellings = std::to_array<Name<std::optional<SpellingMode> Manner::*>>({
    {&Manner::characters, "characters"},
    {&Manner::numbers, "numbers"},
});

// ---- writing

std::string line(const Json& message) {
    return message.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

Json write(const Manner& manner) {
    Json object = Json::object();
    for (const auto& [member, name] : kMannerNumbers) {
        if (manner.*member) {
            object[std::string(name)] = number(*(manner.*member));
        }
    }
    for (const auto& [member, name] : kMannerSpellings) {
        if (manner.*member) {
            object[std::string(name)] = nameOf(kSpellingModes, *(manner.*member));
        }
    }
    if (manner.input) {
        object["input"] = nameOf(kInputModes, *manner.input);
    }
    return object;
}

Json write(const ListVoices&) {
    return {{"type", "voices"}};
}

Json write(const Speak& speak) {
    Json message{{"type", "speak"},
                 {"utterance", speak.utterance},
                 {"text", speak.text},
                 {"voice", speak.voice},
                 {"manner", write(speak.manner)},
                 {"delimiters", {{"prefix", speak.delimiters.prefix}, {"suffix", speak.delimiters.suffix}}}};
    if (speak.output) {
        message["output"] = {{"extension", speak.output->extension},
                             {"temporaryName", speak.output->temporaryName},
                             {"finalName", speak.output->finalName}};
    }
    return message;
}

Json write(const Stop& stop) {
    return {
        {"type", "stop"}, {"utterance", stop.utterance}, {"boundary", nameOf(kBoundaries, stop.boundary)}};
}

Json write(const Pause& pause) {
    return {
        {"type", "pause"}, {"utterance", pause.utterance}, {"boundary", nameOf(kBoundaries, pause.boundary)}};
}

Json write(const Continue& request) {
    return {{"type", "continue"}, {"utterance", request.utterance}};
}

Json write(const Adjust& adjust) {
    return {{"type", "adjust"}, {"utterance", adjust.utterance}, {"manner", write(adjust.manner)}};
}

Json write(const std::vector<LexiconEntry>& entries) {
    Json list = Json::array();
    for (const LexiconEntry& entry : entries) {
        list.push_back({{"spelling", entry.spelling}, {"phonemes", entry.phonemes}});
    }
    return list;
}

Json write(const SetLexicon& request) {
    Json list = Json::array();
    for (const LexiconDictionary& dictionary : request.dictionaries) {
        list.push_back({{"locale", dictionary.locale},
                        {"modificationDate", dictionary.modificationDate},
                        {"pronunciations", write(dictionary.pronunciations)},
                        {"abbreviations", write(dictionary.abbreviations)}});
    }
    return {{"type", "lexicon"}, {"dictionaries", std::move(list)}};
}

Json write(const GetPhonemes& request) {
    return {{"type", "phonemes"},
            {"text", request.text},
            {"voice", request.voice},
            {"manner", write(request.manner)}};
}

Json write(const Ping&) {
    return {{"type", "ping"}};
}

Json write(const Voices& voices) {
    Json list = Json::array();
    for (const Voice& voice : voices.voices) {
        list.push_back({{"identifier", voice.identifier},
                        {"name", voice.name},
                        {"language", voice.language},
                        {"gender", voice.gender},
                        {"age", voice.age},
                        {"rate", number(voice.rate)},
                        {"pitchBase", number(voice.pitchBase)},
                        {"pitchModulation", number(voice.pitchModulation)}});
    }
    return {{"type", "voices"},
            {"voices", std::move(list)},
            {"synthesizer", voices.synthesizer},
            {"version", voices.version}};
}

Json write(const Started& started) {
    Json message{{"type", "started"}, {"utterance", started.utterance}};
    if (!started.error.empty()) {
        message["error"] = started.error;
    }
    return message;
}

Json write(const Problem& problem) {
    return {{"type", "problem"},          {"utterance", problem.utterance},
            {"code", problem.code},       {"position", problem.position},
            {"message", problem.message}, {"at", number(problem.at)}};
}

Json write(const Sync& sync) {
    return {
        {"type", "sync"}, {"utterance", sync.utterance}, {"message", sync.message}, {"at", number(sync.at)}};
}

Json write(const Paused& paused) {
    return {{"type", "paused"}, {"utterance", paused.utterance}};
}

Json write(const Continued& continued) {
    return {{"type", "continued"}, {"utterance", continued.utterance}};
}

Json write(const Finished& finished) {
    Json message{{"type", "finished"},
                 {"utterance", finished.utterance},
                 {"completed", finished.completed},
                 {"at", number(finished.at)}};
    if (!finished.error.empty()) {
        message["error"] = finished.error;
    }
    return message;
}

Json write(const Phonemes& phonemes) {
    return {{"type", "phonemes"}, {"text", phonemes.text}};
}

Json write(const Pong&) {
    return {{"type", "pong"}};
}

template <typename Message>
std::string lineOf(const Message& message) {
    return line(write(message));
}

std::string plainNumber(double value) {
    if (!std::isfinite(value)) {
        return number(value).dump();
    }
    std::array<char, 32> digits{};
    return {digits.data(), std::to_chars(digits.begin(), digits.end(), value).ptr};
}

// Nearly all that engines say is these two, a few of them for each word. They hold numbers alone, so they are
// written as they stand: to build and write what the library makes of them takes longer than all else that is
// done with them.
std::string lineOf(const Word& word) {
    return R"({"type":"word","utterance":)" + std::to_string(word.utterance) + R"(,"position":)" +
           std::to_string(word.position) + R"(,"length":)" + std::to_string(word.length) + R"(,"at":)" +
           plainNumber(word.at) + "}\n";
}

std::string lineOf(const Phoneme& phoneme) {
    return R"({"type":"phoneme","utterance":)" + std::to_string(phoneme.utterance) + R"(,"opcode":)" +
           std::to_string(phoneme.opcode) + R"(,"at":)" + plainNumber(phoneme.at) + "}\n";
}

// ---- reading

Manner readManner(Members& members) {
    Json object = members.take("manner");
    Members inner(object);
    Manner manner;
    for (const auto& [member, name] : kMannerNumbers) {
        if (inner.has(name.data())) {
            manner.*member = inner.real(name.data());
        }
    }
    for (const auto& [member, name] : kMannerSpellings) {
        if (inner.has(name.data())) {
            manner.*member = named(kSpellingModes, inner.string(name.data()));
        }
    }
    if (inner.has("input")) {
        manner.input = named(kInputModes, inner.string("input"));
    }
    inner.end();
    return manner;
}

Delimiters readDelimiters(Members& members) {
    Json object = members.take("delimiters");
    Members inner(object);
    Delimiters delimiters{inner.string("prefix"), inner.string("suffix")};
    inner.end();
    return delimiters;
}

Output readOutput(Members& members) {
    Json object = members.take("output");
    Members inner(object);
    Output output;
    output.extension = inner.string("extension");
    output.temporaryName = inner.fileName("temporaryName");
    output.finalName = inner.fileName("finalName");
    require(output.temporaryName.empty() || !output.finalName.empty());
    inner.end();
    return output;
}

Speak readSpeak(Members& members) {
    Speak speak;
    speak.utterance = members.utterance();
    speak.text = members.string("text");
    speak.voice = members.string("voice");
    speak.manner = readManner(members);
    speak.delimiters = readDelimiters(members);
    if (members.has("output")) {
        speak.output = readOutput(members);
    }
    return speak;
}

template <typename Message>
Message readAtBoundary(Members& members) {
    const std::uint64_t utterance = members.utterance();
    return {utterance, named(kBoundaries, members.string("boundary"))};
}

std::vector<LexiconEntry> readEntries(Members& members, const char* name) {
    std::vector<LexiconEntry> entries;
    for (Json& item : members.list(name)) {
        Members inner(item);
        LexiconEntry entry;
        entry.spelling = inner.string("spelling");
        entry.phonemes = inner.string("phonemes");
        inner.end();
        entries.push_back(std::move(entry));
    }
    return entries;
}

SetLexicon readLexicon(Members& members) {
    SetLexicon request;
    for (Json& item : members.list("dictionaries")) {
        Members inner(item);
        LexiconDictionary dictionary;
        dictionary.locale = inner.string("locale");
        dictionary.modificationDate = inner.string("modificationDate");
        dictionary.pronunciations = readEntries(inner, "pronunciations");
        dictionary.abbreviations = readEntries(inner, "abbreviations");
        inner.end();
        request.dictionaries.push_back(std::move(dictionary));
    }
    return request;
}

Request readRequest(Members& members, std::string_view type) {
    if (type == "voices") {
        return ListVoices{};
    }
    if (type == "speak") {
        return readSpeak(members);
    }
    if (type == "stop") {
        return readAtBoundary<Stop>(members);
    }
    if (type == "pause") {
        return readAtBoundary<Pause>(members);
    }
    if (type == "continue") {
        return Continue{members.utterance()};
    }
    if (type == "adjust") {
        const std::uint64_t utterance = members.utterance();
        return Adjust{utterance, readManner(members)};
    }
    if (type == "lexicon") {
        return readLexicon(members);
    }
    if (type == "phonemes") {
        GetPhonemes request;
        request.text = members.string("text");
        request.voice = members.string("voice");
        request.manner = readManner(members);
        return request;
    }
    if (type == "ping") {
        return Ping{};
    }
    if (auto request = readListeningRequest(members, type)) {
        return std::move(*request);
    }
    throw Malformed();
}

std::string readGender(Members& members) {
    std::string gender = members.string("gender");
    require(gender == "male" || gender == "female" || gender == "neuter");
    return gender;
}

Voices readVoices(Members& members) {
    Voices voices;
    for (Json& item : members.list("voices")) {
        Members inner(item);
        Voice voice;
        voice.identifier = inner.nonEmpty("identifier");
        voice.name = inner.string("name");
        voice.language = inner.string("language");
        voice.gender = readGender(inner);
        voice.age = static_cast<int>(inner.natural("age", 0, std::numeric_limits<int>::max()));
        voice.rate = inner.real("rate");
        voice.pitchBase = inner.real("pitchBase");
        voice.pitchModulation = inner.real("pitchModulation");
        inner.end();
        voices.voices.push_back(std::move(voice));
    }
    voices.synthesizer = members.string("synthesizer");
    voices.version = members.string("version");
    return voices;
}

double readTime(Members& members) {
    const double time = members.real("at");
    require(time >= 0); // which a thing that is no number isn't
    return time;
}

Word readWord(Members& members) {
    Word word;
    word.utterance = members.utterance();
    word.position = members.natural("position");
    word.length = members.natural("length", 1);
    require(word.position <= std::numeric_limits<std::uint64_t>::max() - word.length);
    word.at = readTime(members);
    return word;
}

Phoneme readPhoneme(Members& members) {
    Phoneme phoneme;
    phoneme.utterance = members.utterance();
    phoneme.opcode = static_cast<int>(members.natural("opcode", 0, std::numeric_limits<std::int16_t>::max()));
    phoneme.at = readTime(members);
    return phoneme;
}

Problem readProblem(Members& members) {
    Problem problem;
    problem.utterance = members.utterance();
    problem.code = members.integer("code");
    problem.position = members.natural("position");
    problem.message = members.nonEmpty("message");
    problem.at = readTime(members);
    return problem;
}

Sync readSync(Members& members) {
    Sync sync;
    sync.utterance = members.utterance();
    sync.message =
        static_cast<std::uint32_t>(members.natural("message", 0, std::numeric_limits<std::uint32_t>::max()));
    sync.at = readTime(members);
    return sync;
}

Finished readFinished(Members& members) {
    Finished finished;
    finished.utterance = members.utterance();
    finished.completed = members.boolean("completed");
    finished.error = members.optionalError();
    require(!finished.completed || finished.error.empty());
    finished.at = readTime(members);
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
        return readWord(members);
    }
    if (type == "phoneme") {
        return readPhoneme(members);
    }
    if (type == "problem") {
        return readProblem(members);
    }
    if (type == "sync") {
        return readSync(members);
    }
    if (type == "paused") {
        return Paused{members.utterance()};
    }
    if (type == "continued") {
        return Continued{members.utterance()};
    }
    if (type == "finished") {
        return readFinished(members);
    }
    if (type == "phonemes") {
        return Phonemes{members.string("text")};
    }
    if (type == "pong") {
        return Pong{};
    }
    if (auto event = readListeningEvent(members, type)) {
        return std::move(*event);
    }
    throw Malformed();
}

template <typename Message, Message (*read)(Members&, std::string_view)>
std::optional<Message> decode(std::string_view text) {
    try {
        Json object = parseLine(text);
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
    return std::visit([](const auto& message) { return lineOf(message); }, event);
}

std::optional<Request> decodeRequest(std::string_view line) {
    return decode<Request, readRequest>(line);
}

std::optional<Event> decodeEvent(std::string_view line) {
    return decode<Event, readEvent>(line);
}

} // namespace zqm::protocol
