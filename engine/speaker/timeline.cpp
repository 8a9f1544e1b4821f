#include "engine/speaker/timeline.h"

#include <algorithm>
#include <optional>

namespace zqm::engine {

namespace {

// A word that was reported, or one of the two ends of the piece.
struct Anchor {
    std::size_t word = 0;
    std::size_t sample = 0;
    int trust = 0;
};

// The word that a mark stands in or, for one between words, that follows; none behind the last.
std::optional<Anchor> anchorOf(const Mark& mark, const std::vector<Word>& words) {
    const auto word = std::partition_point(words.begin(), words.end(), [&](const Word& candidate) {
        return candidate.codePoints.end <= mark.codePoint;
    });
    if (word == words.end()) {
        return std::nullopt;
    }
    constexpr int kExact = 4;
    constexpr int kInside = 2;
    constexpr int kBefore = 1;
    const int trust = mark.codePoint == word->codePoints.begin  ? kExact
                      : mark.codePoint > word->codePoints.begin ? kInside
                                                                : kBefore;
    return Anchor{static_cast<std::size_t>(word - words.begin()), mark.sample, trust};
}

// The most trustworthy of the reported words whose order is that of the text: a heaviest increasing
// subsequence. Of several reports of one word the first counts, which is its beginning.
std::vector<Anchor> believable(const std::vector<Anchor>& reported) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::vector<int> weight(reported.size());
    std::vector<std::size_t> before(reported.size(), kNone);
    std::size_t best = kNone;
    for (std::size_t index = 0; index < reported.size(); ++index) {
        for (std::size_t earlier = 0; earlier < index; ++earlier) {
            if (reported[earlier].word < reported[index].word && weight[earlier] > weight[index]) {
                weight[index] = weight[earlier];
                before[index] = earlier;
            }
        }
        weight[index] += reported[index].trust;
        if (best == kNone || weight[index] > weight[best]) {
            best = index;
        }
    }
    std::vector<Anchor> chosen;
    for (; best != kNone; best = before[best]) {
        chosen.push_back(reported[best]);
    }
    std::reverse(chosen.begin(), chosen.end());
    return chosen;
}

using Phoneme = std::vector<std::size_t>::const_iterator;

// The beginning nearest to a sample; none: that sample itself.
std::size_t nearestPhoneme(Phoneme from, Phoneme to, std::size_t sample) {
    const auto distance = [sample](std::size_t other) {
        return other > sample ? other - sample : sample - other;
    };
    const auto nearest = std::min_element(
        from, to, [&](std::size_t left, std::size_t right) { return distance(left) < distance(right); });
    return nearest == to ? sample : *nearest;
}

// Where a word that wasn't reported begins, best at a sample, between the word before and the next reported
// one. Where there are enough phonemes it gets one of its own, and so do the words that follow up to there.
std::size_t beginningOf(std::size_t sample, const std::vector<std::size_t>& phonemes, std::size_t before,
                        std::size_t next, std::size_t following) {
    const auto end = std::lower_bound(phonemes.begin(), phonemes.end(), next);
    const auto free = std::upper_bound(phonemes.begin(), end, before);
    const auto needed = static_cast<std::ptrdiff_t>(following);
    if (end - free > needed) {
        return nearestPhoneme(free, end - needed, sample);
    }
    return nearestPhoneme(std::lower_bound(phonemes.begin(), phonemes.end(), before),
                          std::upper_bound(end, phonemes.end(), next), sample);
}

} // namespace

std::vector<std::size_t> wordTimes(const std::vector<Word>& words, const Marks& marks) {
    std::vector<Anchor> reported;
    for (const Mark& mark : marks.words) {
        if (const auto anchor = anchorOf(mark, words); anchor && anchor->sample <= marks.end) {
            reported.push_back(*anchor);
        }
    }
    std::vector<Anchor> anchors = believable(reported);
    anchors.push_back({words.size(), marks.end, 0});

    std::vector<std::size_t> times(words.size());
    Anchor last{0, 0, 0};
    for (const Anchor& next : anchors) {
        std::size_t total = 0;
        for (std::size_t index = last.word; index < next.word; ++index) {
            total += words[index].codePoints.length();
        }
        const std::size_t span = std::max(next.sample, last.sample) - last.sample;
        std::size_t passed = 0;
        for (std::size_t index = last.word; index < next.word; ++index) {
            const std::size_t even = last.sample + span * passed / total;
            const std::size_t floor = index > last.word ? times[index - 1] : last.sample;
            times[index] =
                index == last.word
                    ? last.sample
                    : std::max(floor, beginningOf(even, marks.phonemes, floor, std::max(next.sample, floor),
                                                  next.word - 1 - index));
            passed += words[index].codePoints.length();
        }
        last = {next.word, std::max(next.sample, last.sample), 0};
    }
    return times;
}

} // namespace zqm::engine
