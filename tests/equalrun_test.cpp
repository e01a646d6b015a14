// Every way of finding the first difference of two texts, against the one that goes unit by unit.
#include "../src/equalrun.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace {

template <class Unit>
class EqualRun : public testing::Test {};
using Units = testing::Types<unsigned char, unsigned short>;
TYPED_TEST_SUITE(EqualRun, Units);

// Texts of exactly so many bytes that agree for a while; zero units may stand anywhere.
TYPED_TEST(EqualRun, AllWaysStopAtTheSamePlace) {
    using Unit = TypeParam;
    std::mt19937 random(64);
    for (int round = 0; round < 40000; ++round) {
        const std::size_t units = 1 + random() % (round % 8 ? 40 : 150), bytes = units * sizeof(Unit);
        const auto text1 = std::make_unique<unsigned char[]>(bytes), text2 = std::make_unique<unsigned char[]>(bytes);
        for (std::size_t i = 0; i < bytes; ++i) text1[i] = text2[i] = static_cast<unsigned char>(1 + random() % 255);
        for (auto edits = random() % 3; edits != 0; --edits) {
            unsigned char& edited = text2[random() % bytes];
            edited = static_cast<unsigned char>(edited ^ 1U << random() % 8);
        }
        if (random() % 3 == 0) {
            const std::size_t end = random() % units * sizeof(Unit);
            for (std::size_t i = end; i < end + sizeof(Unit); ++i) text1[i] = text2[i] = 0;
        }
        const vq::TextPair<Unit> pair = {text1.get(), text2.get()};
        const std::size_t stop = vq::StopByUnits(pair, bytes);
        ASSERT_EQ(vq::FirstStop(pair, bytes), stop);
#ifdef __SSE2__
        if (bytes >= 16) {
            ASSERT_EQ(vq::StopByBlocks(pair, bytes), stop);
        } else if (bytes >= 8) {
            ASSERT_EQ(vq::StopByHalves(pair, bytes), stop);
        }
#endif
#ifdef VQ_MASKED_LOADS
        if (vq::HasMaskedLoads()) {
            ASSERT_EQ(vq::StopByMasks<Unit>(pair.text1, pair.text2, bytes), stop);
        }
#endif
    }
}

}  // namespace
