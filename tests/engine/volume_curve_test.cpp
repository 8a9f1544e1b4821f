#include "engine/volume_curve.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>
#include <vector>

using namespace zqm::engine;
using testing::ElementsAre;

namespace {

constexpr std::int16_t kFull = 1000;

Number absolute(double value) {
    return {value, Number::Kind::Absolute};
}

// The first ten samples, handed over in parts of so many.
std::vector<int> heard(const VolumeCurve& curve, std::size_t part = 10) {
    std::vector<std::int16_t> samples(10, kFull);
    for (std::size_t from = 0; from < samples.size(); from += part) {
        curve.scale(from, std::span(samples).subspan(from, std::min(part, samples.size() - from)));
    }
    return {samples.begin(), samples.end()};
}

TEST(VolumeCurve, isTheSameEverywhereUntilItChanges) {
    EXPECT_THAT(heard(VolumeCurve(1)), testing::Each(1000));
    EXPECT_THAT(heard(VolumeCurve(0.5)), testing::Each(500));
}

TEST(VolumeCurve, keepsToItsRange) {
    EXPECT_THAT(heard(VolumeCurve(7)), testing::Each(1000));
    EXPECT_THAT(heard(VolumeCurve(-7)), testing::Each(0));
    EXPECT_THAT(heard(VolumeCurve(std::nan(""))), testing::Each(1000));
    VolumeCurve curve(0.5);
    curve.change(0, {0.7, Number::Kind::Plus});
    curve.change(5, {0.2, Number::Kind::Minus});
    EXPECT_THAT(heard(curve), ElementsAre(1000, 1000, 1000, 1000, 1000, 800, 800, 800, 800, 800));
}

TEST(VolumeCurve, changesAtTheSample) {
    VolumeCurve curve(1);
    curve.change(3, absolute(0.5));
    curve.change(8, absolute(0));
    for (const std::size_t part : {1U, 2U, 3U, 4U, 10U}) {
        EXPECT_THAT(heard(curve, part), ElementsAre(1000, 1000, 1000, 500, 500, 500, 500, 500, 0, 0));
    }
}

TEST(VolumeCurve, whatTheTextSaysLaterCountsAfterTheHost) {
    VolumeCurve curve(1);
    curve.change(2, absolute(0.5));
    curve.change(6, {0.1, Number::Kind::Plus});
    curve.set(4, 0.2);
    EXPECT_THAT(heard(curve), ElementsAre(1000, 1000, 500, 500, 200, 200, 300, 300, 300, 300));
}

TEST(VolumeCurve, theTextIsTakenBackAndNotTheHost) {
    VolumeCurve curve(1);
    curve.change(2, absolute(0.5));
    curve.set(4, 0.2);
    curve.change(6, absolute(0.7));
    curve.truncate(2);
    EXPECT_THAT(heard(curve), ElementsAre(1000, 1000, 1000, 1000, 200, 200, 200, 200, 200, 200));
}

TEST(VolumeCurve, theHostIsHeededWhereSoundIsHeardAgain) {
    VolumeCurve curve(1);
    curve.set(4, 0.2);
    curve.change(6, absolute(0.7));
    curve.set(8, 0.4);
    curve.rewind(3);
    EXPECT_THAT(heard(curve), ElementsAre(1000, 1000, 1000, 400, 400, 400, 700, 700, 700, 700));
}

TEST(VolumeCurve, remembersTheVolumeOfWhatItForgets) {
    VolumeCurve curve(1);
    curve.change(2, absolute(0.5));
    curve.change(7, {0.1, Number::Kind::Minus});
    curve.forgetBefore(5);
    EXPECT_THAT(heard(curve), ElementsAre(500, 500, 500, 500, 500, 500, 500, 400, 400, 400));
}

} // namespace
