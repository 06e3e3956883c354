#include "studies/study_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

namespace nivora {
namespace {

TEST(StudyPool, WorksEachIndexOnce) {
    for (const unsigned threads : {1U, 2U, 7U}) {
        StudyPool pool{threads};
        EXPECT_EQ(pool.threads(), threads);
        for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{5}, std::size_t{1000}}) {
            std::vector<std::atomic<int>> times(count);
            pool.work(count, [&](unsigned thread, std::size_t index) {
                EXPECT_LT(thread, threads);
                ++times[index];
            });
            for (const auto& one : times) EXPECT_EQ(one, 1);
        }
    }
}

TEST(StudyPool, NoTwoPiecesOfAThreadRunAtOnce) {
    StudyPool pool{4};
    std::vector<std::atomic<int>> busy(4);
    pool.work(2000, [&](unsigned thread, std::size_t) {
        EXPECT_EQ(++busy[thread], 1);
        --busy[thread];
    });
}

TEST(StudyPool, ThrowsTheFaultOfTheLowestIndexAndGoesOnAfterIt) {
    StudyPool pool{3};
    for (int round = 0; round < 50; ++round) {
        try {
            pool.work(100, [](unsigned, std::size_t index) {
                if (index >= 17) throw std::runtime_error{std::to_string(index)};
            });
            FAIL() << "no exception";
        } catch (const std::runtime_error& fault) {
            EXPECT_STREQ(fault.what(), "17");
        }
    }
    std::atomic<int> done{0};
    pool.work(10, [&](unsigned, std::size_t) { ++done; });
    EXPECT_EQ(done, 10);
}

TEST(StudyPool, HasAtLeastOneThread) {
    EXPECT_EQ(StudyPool{0}.threads(), 1U);
    EXPECT_GE(usual_threads(), 1U);
}

}  // namespace
}  // namespace nivora
