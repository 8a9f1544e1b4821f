// The sound of an utterance that is made and may still be wanted: from the sample up to which it is done with
// to the last one made. Samples count from the beginning of the utterance.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zqm::engine {

class Track {
public:
    [[nodiscard]] std::uint64_t end() const { return begin_ + samples_.size(); }

    void append(std::span<const std::int16_t> samples);

    // From a sample on that is not done with.
    [[nodiscard]] std::vector<std::int16_t> copy(std::uint64_t from, std::size_t count) const;

    // What comes from there on was not made.
    void truncate(std::uint64_t end);
    // What comes before is done with.
    void forgetBefore(std::uint64_t sample);

private:
    std::vector<std::int16_t> samples_;
    std::uint64_t begin_ = 0;
};

} // namespace zqm::engine
