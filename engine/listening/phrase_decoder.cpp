#include "engine/listening/phrase_decoder.h"

#include "engine/listening/model_package.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <pocketsphinx.h>
#include <sphinxbase/ckd_alloc.h>
#include <sphinxbase/err.h>
#include <sphinxbase/fsg_model.h>
#include <stdexcept>

namespace zqm::engine {

namespace {

constexpr const char* kSentences = "sentences";
constexpr const char* kSounds = "sounds";

constexpr std::array kPhones{"AA", "AE", "AH", "AO", "AW", "AY", "B",  "CH", "D", "DH", "EH", "ER", "EY",
                             "F",  "G",  "HH", "IH", "IY", "JH", "K",  "L",  "M", "N",  "NG", "OW", "OY",
                             "P",  "R",  "S",  "SH", "T",  "TH", "UH", "UW", "V", "W",  "Y",  "Z",  "ZH"};

// Files that PocketSphinx ends the process without, or crashes.
constexpr std::array kModelFiles{"mdef",    "means",       "variances", "transition_matrices",
                                 "sendump", "feat.params", "noisedict"};

// In a row of any sounds, of each further phone and word.
constexpr double kSoundProbability = 1e-4;
constexpr double kWordProbability = 1e-2;
constexpr std::size_t kMostWordsAmongSounds = 300; // more of them take time

std::string soundWord(const std::string& phone) {
    return "/" + phone;
}
std::string numberedWord(std::size_t number) {
    return "w" + std::to_string(number);
}

struct ReleaseGrammar {
    void operator()(fsg_model_t* grammar) const { fsg_model_free(grammar); }
};
using Grammar = std::unique_ptr<fsg_model_t, ReleaseGrammar>;

constexpr int kStart = 0;
constexpr int kEnd = 1;

Grammar makeGrammar(ps_decoder_t* decoder, const char* name, std::size_t states) {
    Grammar grammar(fsg_model_init(name, ps_get_logmath(decoder), 1, static_cast<int>(states)));
    grammar->start_state = kStart;
    grammar->final_state = kEnd;
    return grammar;
}

// The sentences as a tree, so that those with a common beginning cost it once. The end of each has a second
// way, to the end of the grammar.
struct Tree {
    struct Branch {
        std::map<std::size_t, std::size_t> next; // word, state
        std::vector<std::size_t> last;           // words with which a sentence ends here
    };
    std::map<std::size_t, Branch> branches;
    std::size_t states = 2;

    void add(const std::vector<std::size_t>& sentence) {
        std::size_t state = kStart;
        for (std::size_t i = 0; i + 1 < sentence.size(); ++i) {
            const auto [branch, isNew] = branches[state].next.try_emplace(sentence[i], states);
            states += isNew ? 1 : 0;
            state = branch->second;
        }
        branches[state].last.push_back(sentence.back());
    }
};

} // namespace

void PhraseDecoder::Release::operator()(ps_decoder_s* decoder) const {
    ps_free(decoder);
}

PhraseDecoder::PhraseDecoder(const std::string& modelFolder) : modelFolder_(modelFolder) {
    for (const char* file : kModelFiles) {
        const std::filesystem::path path = std::filesystem::path(modelFolder) / file;
        if (std::error_code error; !std::filesystem::is_regular_file(path, error)) {
            throw std::runtime_error("the speech model's file " + path.string() + " is missing: install " +
                                     kModelPackage);
        }
    }
    err_set_logfp(nullptr);
    start();
}

void PhraseDecoder::start() {
    cmd_ln_t* options = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", modelFolder_.c_str(), "-remove_silence",
                                    "no", "-bestpath", "no", "-compallsen", "yes", nullptr);
    decoder_.reset(options == nullptr ? nullptr : ps_init(options));
    cmd_ln_free_r(options);
    if (!decoder_) {
        throw std::runtime_error("the speech model in " + modelFolder_ + " can't be read: install " +
                                 kModelPackage + " again");
    }
    hasSentences_ = false;
    numbers_.clear();

    for (const char* phone : kPhones) {
        ps_add_word(decoder_.get(), soundWord(phone).c_str(), phone, FALSE);
    }
    setSounds({});
}

// Any row of phones and of the words that sentences are made of: what is like a sentence, but isn't it, fits
// best as other words of the sentences and sounds between them.
void PhraseDecoder::setSounds(const std::set<std::size_t>& words) {
    Grammar grammar = makeGrammar(decoder_.get(), kSounds, 1);
    grammar->final_state = kStart;
    const auto add = [&](const std::string& word, double probability) {
        fsg_model_trans_add(grammar.get(), kStart, kStart,
                            logmath_log(ps_get_logmath(decoder_.get()), probability),
                            fsg_model_word_add(grammar.get(), word.c_str()));
    };
    for (const char* phone : kPhones) {
        add(soundWord(phone), kSoundProbability);
    }
    for (const std::size_t word : words) {
        add(numberedWord(word), kWordProbability);
    }
    if (ps_set_fsg(decoder_.get(), kSounds, grammar.get()) != 0) {
        throw std::runtime_error("the speech model in " + modelFolder_ + " lacks phones");
    }
}

void PhraseDecoder::clear() {
    start();
}

std::size_t PhraseDecoder::number(const std::vector<std::string>& pronunciations) {
    const auto [known, isNew] = numbers_.try_emplace(pronunciations, numbers_.size());
    if (isNew) {
        const std::string word = numberedWord(known->second);
        for (std::size_t i = 0; i < pronunciations.size(); ++i) {
            const std::string name = i == 0 ? word : word + "(" + std::to_string(i + 1) + ")";
            ps_add_word(decoder_.get(), name.c_str(), pronunciations[i].c_str(), FALSE);
        }
    }
    return known->second;
}

void PhraseDecoder::setSentences(const std::vector<std::vector<std::size_t>>& sentences) {
    ps_set_search(decoder_.get(), kSounds);
    ps_unset_search(decoder_.get(), kSentences);
    hasSentences_ = !sentences.empty();
    if (!hasSentences_) {
        return;
    }
    Tree tree;
    std::set<std::size_t> words;
    for (const auto& sentence : sentences) {
        tree.add(sentence);
        words.insert(sentence.begin(), sentence.end());
    }
    if (words.size() > kMostWordsAmongSounds) {
        words.clear();
    }
    setSounds(words);
    const Grammar grammar = makeGrammar(decoder_.get(), kSentences, tree.states);
    std::map<std::size_t, int> named; // PocketSphinx compares a name with all that it has
    for (const auto& [state, branch] : tree.branches) {
        const auto add = [&](std::size_t from, std::size_t to, std::size_t word) {
            const auto [name, isNew] = named.try_emplace(word);
            if (isNew) {
                name->second = fsg_model_word_add(grammar.get(), numberedWord(word).c_str());
            }
            fsg_model_trans_add(grammar.get(), static_cast<int>(from), static_cast<int>(to), 0, name->second);
        };
        for (const auto& [word, next] : branch.next) {
            add(state, next, word);
        }
        for (const std::size_t word : branch.last) {
            add(state, kEnd, word);
        }
    }
    if (ps_set_fsg(decoder_.get(), kSentences, grammar.get()) != 0) {
        throw std::runtime_error("PocketSphinx takes no grammar of these commands");
    }
}

Fit PhraseDecoder::bestSentence(std::span<const std::int16_t> samples) {
    return hasSentences_ ? decode(kSentences, samples) : Fit{};
}

Fit PhraseDecoder::bestSounds(std::span<const std::int16_t> samples) {
    return decode(kSounds, samples);
}

Fit PhraseDecoder::decode(const char* search, std::span<const std::int16_t> samples) {
    ps_decoder_t* decoder = decoder_.get();
    Fit fit;
    ps_set_search(decoder, search);
    ps_start_stream(decoder); // what was heard before makes no difference
    if (ps_start_utt(decoder) != 0) {
        return fit;
    }
    ps_process_raw(decoder, samples.data(), samples.size(), FALSE, TRUE);
    ps_end_utt(decoder);
    if (ps_get_hyp(decoder, nullptr) == nullptr) {
        return fit;
    }
    fit.frames = ps_get_n_frames(decoder);
    for (ps_seg_t* segment = ps_seg_iter(decoder); segment != nullptr; segment = ps_seg_next(segment)) {
        int begin = 0;
        int end = 0;
        int acoustic = 0;
        ps_seg_frames(segment, &begin, &end);
        ps_seg_prob(segment, &acoustic, nullptr, nullptr);
        const char* word = ps_seg_word(segment);
        fit.score += acoustic;
        Fit::Word& fitting = fit.words.emplace_back();
        fitting.frames = end - begin + 1;
        fitting.score = acoustic;
        if (word[0] != '<' && word[0] != '[') {
            char* phones = ps_lookup_word(decoder, word);
            fitting.phones = static_cast<int>(1 + std::count(phones, phones + std::strlen(phones), ' '));
            fit.phones += fit.phones.empty() ? "" : " ";
            fit.phones += phones;
            ckd_free(phones);
        }
    }
    return fit;
}

} // namespace zqm::engine
