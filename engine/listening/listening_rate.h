// The sound that is listened to.

#pragma once

namespace zqm::engine {

inline constexpr int kListeningRate = 16000; // samples a second, one channel: what the model was made for

} // namespace zqm::engine
