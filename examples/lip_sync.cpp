// Speaks a text into a sound file, and prints how a mouth has to move to it, a line for each shape: when it
// begins and ends in the sound, in seconds, and the shape.
//
//     lip_sync PLUGIN TEXT FILE

#include "common.h"

#include <zqmplatform/speaking.h>

#include <array>
#include <exception>
#include <iomanip>
#include <iostream>

using namespace examples;

namespace {

constexpr const char* kRest = "rest";     // lips together, at ease
constexpr const char* kClosed = "closed"; // lips pressed together
constexpr const char* kTeeth = "teeth";   // lower lip at the upper teeth
constexpr const char* kTongue = "tongue"; // tongue at the teeth
constexpr const char* kNarrow = "narrow"; // teeth nearly together
constexpr const char* kWide = "wide";     // lips drawn apart
constexpr const char* kOpen = "open";     // jaw down
constexpr const char* kRound = "round";   // lips rounded

// By the numbers of the phonemes.
constexpr std::array kShapes = {
    kRest,   kRest, // silence, breath
    kOpen,   kWide,   kRound,  kOpen,
    kWide,   kWide,   kWide, // bat, bait, caught, about, beet, bet, bit
    kOpen,   kWide,   kOpen,   kRound,
    kRound,  kOpen,   kRound, // bite, roses, father, boot, book, bud, boat
    kOpen,   kRound,          // bout, boy
    kClosed, kNarrow, kNarrow, kTongue,
    kTeeth,  kNarrow, kOpen, // bin, chin, din, them, fin, gain, hat
    kNarrow, kNarrow, kTongue, kClosed,
    kNarrow, kNarrow, kClosed, // jump, kin, limb, mat, nap, tang, pin
    kNarrow, kNarrow, kNarrow, kNarrow,
    kTongue, kTeeth,  kRound,  // ran, sin, shin, tin, thin, van, wet
    kWide,   kNarrow, kNarrow, // yet, zoo, measure
};

class Mouth {
public:
    void show(const ZQMSpeakingEvent& event) {
        if (event.kind == ZQMSpeakingPhoneme) {
            move(kShapes.at(static_cast<std::size_t>(event.opcode)), event.time);
        } else if (event.kind == ZQMSpeakingFinished) {
            move(nullptr, event.time);
        }
    }

private:
    void move(const char* shape, double time) {
        if (shape == shape_) {
            return;
        }
        if (shape_ != nullptr && time > since_) {
            std::cout << std::fixed << std::setprecision(3) << since_ << ' ' << time << ' ' << shape_ << '\n';
        }
        shape_ = shape;
        since_ = time;
    }

    const char* shape_ = kRest;
    double since_ = 0;
};

} // namespace

int main(int argc, char** argv) try {
    if (argc < 4) {
        throw Error("usage: lip_sync PLUGIN TEXT FILE");
    }
    Runtime runtime;
    load(runtime, argv[1]);
    Object speaker = runtime.construct("NSSpeechSynthesizerZQM");
    Mouth mouth;
    ZQMPlatformObserveSpeaking(
        [](const ZQMSpeakingEvent* event, void* observer) { static_cast<Mouth*>(observer)->show(*event); },
        &mouth);
    speak(runtime, speaker, argv[2], argv[3]);
    ZQMPlatformObserveSpeaking(nullptr, nullptr);
} catch (const std::exception& error) {
    std::cerr << "lip_sync: " << error.what() << '\n';
    return 1;
}
