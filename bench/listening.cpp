// What it costs to hear commands in a sound file: a host program whose engine has listened before, beside
// PocketSphinx in a bare loop. The loop makes the two searches that the engine makes of each phrase, with the
// same model, options and grammars, of the same samples; finding the phrases, reading the file and telling
// anybody are none of its work.

#include "engine/listening/command_words.h"
#include "engine/listening/listener.h"
#include "engine/listening/phrase_detector.h"
#include "engine/listening/pronunciation_dictionary.h"
#include "engine/listening/room_noise.h"
#include "engine/listening/sound_decoder.h"
#include "engine/protocol/descriptor.h"
#include "tests/support/command_listener.h"
#include "tests/support/spoken_phrases.h"
#include "tests/support/temporary_folder.h"
#include "zqmhost/zqmhost.h"

#include <benchmark/benchmark.h>
#include <pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/fsg_model.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace zqm;

using Texts = std::vector<std::string>;

constexpr host::Seconds kPatience{60};

const Texts& commands() {
    static const Texts all{"open the window", "close the door", "play some music", "next page", "stop"};
    return all;
}

// Somebody says each command once.
const std::filesystem::path& soundFile() {
    static const support::TemporaryFolder folder;
    static const std::filesystem::path file = [] {
        std::filesystem::path path = folder / "commands.wav";
        support::writeSpokenPhrases(commands(), path);
        return path;
    }();
    return file;
}

// ---- a host program

class HostProgram {
public:
    HostProgram() {
        runtime_.load(ZQM_PLUGIN);
        ZQMPlatformListenToFile(soundFile().c_str());
        listener_ = std::make_unique<support::CommandListener>(runtime_, commands());
        hear(); // starts the engine, which reads the model
        rest();
    }

    // Hears the whole file. Throws std::runtime_error when that isn't what is said in it.
    void hear() {
        listener_->forget();
        const std::size_t ends = listener_->timesEnded();
        listener_->start();
        const auto isOver = [&] { return listener_->timesEnded() > ends || !listener_->failures().empty(); };
        if (!runtime_.runUntil(isOver, kPatience) || listener_->commands() != commands()) {
            throw std::runtime_error("the commands aren't heard");
        }
    }

    void rest() { listener_->stop(); }

private:
    host::Runtime runtime_;
    std::unique_ptr<support::CommandListener> listener_;
};

void heardByLibrary(benchmark::State& state) {
    try {
        static HostProgram program;
        for (auto _ : state) {
            program.hear();
            state.PauseTiming();
            program.rest();
            state.ResumeTiming();
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

// ---- the floor

using Samples = std::vector<std::int16_t>;

// As the engine gives them to PocketSphinx.
std::vector<Samples> phrasesIn(const std::filesystem::path& file) {
    std::vector<Samples> phrases;
    engine::PhraseDetector detector([&](const engine::Phrase& phrase) { phrases.push_back(phrase.samples); });
    detector.setLongest(std::numeric_limits<std::int32_t>::max());
    const protocol::Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    engine::SoundDecoder decoder(descriptor.get());
    engine::RoomNoise noise;
    while (const auto samples = decoder.next()) {
        Samples inRoom(samples->begin(), samples->end());
        noise.addTo(inRoom);
        detector.take(inRoom);
    }
    detector.finish();
    return phrases;
}

struct Release {
    void operator()(ps_decoder_t* decoder) const { ps_free(decoder); }
    void operator()(fsg_model_t* grammar) const { fsg_model_free(grammar); }
};

using Grammar = std::unique_ptr<fsg_model_t, Release>;

constexpr const char* kSentences = "sentences";
constexpr const char* kSounds = "sounds";

const Texts kPhones{"AA", "AE", "AH", "AO", "AW", "AY", "B",  "CH", "D", "DH", "EH", "ER", "EY",
                    "F",  "G",  "HH", "IH", "IY", "JH", "K",  "L",  "M", "N",  "NG", "OW", "OY",
                    "P",  "R",  "S",  "SH", "T",  "TH", "UH", "UW", "V", "W",  "Y",  "Z",  "ZH"};

class BareDecoder {
public:
    BareDecoder() {
        err_set_logfp(nullptr);
        const std::string folder = engine::Listener::installedModel();
        cmd_ln_t* const options =
            cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", (folder + "/en-us").c_str(), "-remove_silence",
                        "no", "-bestpath", "no", "-compallsen", "yes", nullptr);
        decoder_.reset(options == nullptr ? nullptr : ps_init(options));
        cmd_ln_free_r(options);
        if (!decoder_) {
            throw std::runtime_error("PocketSphinx can't read its model");
        }
        const engine::PronunciationDictionary dictionary(folder + "/cmudict-en-us.dict");
        const engine::CommandReader reader(dictionary, [](const std::string&) { return Texts(); });
        for (const std::string& command : commands()) {
            sentences_.push_back(std::get<std::vector<engine::CommandWord>>(reader.wordsOf(command)));
        }
        addWords();
        setSounds();
        setSentences();
    }

    // What was heard.
    std::string decode(const char* search, const Samples& samples) {
        ps_set_search(decoder_.get(), search);
        ps_start_stream(decoder_.get());
        ps_start_utt(decoder_.get());
        ps_process_raw(decoder_.get(), samples.data(), samples.size(), FALSE, TRUE);
        ps_end_utt(decoder_.get());
        const char* const text = ps_get_hyp(decoder_.get(), nullptr);
        return text == nullptr ? "" : text;
    }

private:
    // Each with its pronunciations, as PocketSphinx wants them.
    void addWords() {
        for (const std::string& phone : kPhones) {
            ps_add_word(decoder_.get(), ("/" + phone).c_str(), phone.c_str(), FALSE);
        }
        for (const auto& sentence : sentences_) {
            for (const engine::CommandWord& word : sentence) {
                if (!words_.insert(word.text).second) {
                    continue;
                }
                for (std::size_t i = 0; i < word.pronunciations.size(); ++i) {
                    const std::string name =
                        i == 0 ? word.text : word.text + "(" + std::to_string(i + 1) + ")";
                    ps_add_word(decoder_.get(), name.c_str(), word.pronunciations[i].c_str(), FALSE);
                }
            }
        }
    }

    // Any row of phones and words.
    void setSounds() {
        const Grammar grammar = makeGrammar(kSounds, 1, 0);
        const auto add = [&](const std::string& word, double probability) {
            fsg_model_trans_add(grammar.get(), 0, 0, logmath_log(ps_get_logmath(decoder_.get()), probability),
                                fsg_model_word_add(grammar.get(), word.c_str()));
        };
        for (const std::string& phone : kPhones) {
            add("/" + phone, 1e-4);
        }
        for (const std::string& word : words_) {
            add(word, 1e-2);
        }
        set(kSounds, grammar);
    }

    // One of the sentences, no two of which begin alike: else the engine's grammar would be the smaller one.
    void setSentences() {
        std::size_t states = 2;
        for (const auto& sentence : sentences_) {
            states += sentence.size() - 1;
        }
        const Grammar grammar = makeGrammar(kSentences, static_cast<int>(states), 1);
        int next = 2;
        for (const auto& sentence : sentences_) {
            int from = 0;
            for (std::size_t i = 0; i < sentence.size(); ++i) {
                const int to = i + 1 == sentence.size() ? 1 : next++;
                fsg_model_trans_add(grammar.get(), from, to, 0,
                                    fsg_model_word_add(grammar.get(), sentence[i].text.c_str()));
                from = to;
            }
        }
        set(kSentences, grammar);
    }

    Grammar makeGrammar(const char* name, int states, int end) {
        Grammar grammar(fsg_model_init(name, ps_get_logmath(decoder_.get()), 1, states));
        grammar->start_state = 0;
        grammar->final_state = end;
        return grammar;
    }

    void set(const char* name, const Grammar& grammar) {
        if (ps_set_fsg(decoder_.get(), name, grammar.get()) != 0) {
            throw std::runtime_error("PocketSphinx takes no such grammar");
        }
    }

    std::unique_ptr<ps_decoder_t, Release> decoder_;
    std::vector<std::vector<engine::CommandWord>> sentences_;
    std::set<std::string> words_;
};

void heardInLoop(benchmark::State& state) {
    try {
        const std::vector<Samples> phrases = phrasesIn(soundFile());
        static BareDecoder decoder;
        Texts heard;
        for (auto _ : state) {
            heard.clear();
            for (const Samples& phrase : phrases) {
                heard.push_back(decoder.decode(kSentences, phrase));
                benchmark::DoNotOptimize(decoder.decode(kSounds, phrase));
            }
        }
        if (heard != commands()) {
            throw std::runtime_error("the commands aren't heard");
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

BENCHMARK(heardByLibrary)->Name("listening/ours")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(heardInLoop)->Name("listening/loop")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
