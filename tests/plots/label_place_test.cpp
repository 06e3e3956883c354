#include "plots/label_place.h"

#include "tests/support/random_trials.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

constexpr SurfaceSize k_surface{400.0, 300.0};
constexpr SurfaceSize k_label{100.0, 40.0};

void expect_place(const std::optional<SurfacePoint>& place, double x, double y) {
    ASSERT_TRUE(place);
    EXPECT_EQ(place->x, x);
    EXPECT_EQ(place->y, y);
}

TEST(LabelPlace, IsToTheRightAndBelow) {
    expect_place(label_place(k_surface, k_label, {50.0, 60.0}), 66.0, 76.0);
    // 284 + 16 + 100 and 244 + 16 + 40 end at the edges.
    expect_place(label_place(k_surface, k_label, {284.0, 244.0}), 300.0, 260.0);
}

TEST(LabelPlace, IsOnTheOtherSideAtAnEdge) {
    expect_place(label_place(k_surface, k_label, {285.0, 60.0}), 169.0, 76.0);
    expect_place(label_place(k_surface, k_label, {50.0, 245.0}), 66.0, 189.0);
    expect_place(label_place(k_surface, k_label, {399.0, 299.0}), 283.0, 243.0);
}

TEST(LabelPlace, IsAboveOrBelowWhereNeitherSideHasRoom) {
    // 50 + 16 + 100 and 50 - 16 - 100 leave a width of 120.
    expect_place(label_place({120.0, 300.0}, k_label, {50.0, 60.0}), 0.0, 76.0);
    expect_place(label_place({120.0, 300.0}, k_label, {65.0, 60.0}), 15.0, 76.0);
    expect_place(label_place({400.0, 60.0}, k_label, {50.0, 30.0}), 66.0, 10.0);
}

TEST(LabelPlace, IsNowhereOnASurfaceWithoutRoom) {
    EXPECT_FALSE(label_place({120.0, 60.0}, k_label, {60.0, 30.0}));
    EXPECT_FALSE(label_place({90.0, 300.0}, k_label, {10.0, 10.0}));
    EXPECT_FALSE(label_place({400.0, 30.0}, k_label, {10.0, 10.0}));
    EXPECT_FALSE(label_place({0.0, 0.0}, k_label, {0.0, 0.0}));
}

class AnyLabelPlace : public RandomTrials<testing::Test> {};

TEST_F(AnyLabelPlace, LeavesThePlaceFreeInsideTheSurface) {
    try_often(2000, [&] {
        const SurfaceSize surface{between(0.0, 500.0), between(0.0, 500.0)};
        const SurfaceSize label{between(1.0, 200.0), between(1.0, 80.0)};
        const SurfacePoint about{between(0.0, 500.0), between(0.0, 500.0)};
        const auto place = label_place(surface, label, about);
        if (!place) return;
        const double right = place->x + label.width;
        const double bottom = place->y + label.height;
        EXPECT_GE(place->x, 0.0);
        EXPECT_GE(place->y, 0.0);
        EXPECT_LE(right, surface.width + 1e-9);
        EXPECT_LE(bottom, surface.height + 1e-9);
        constexpr double k_gap = k_label_gap - 1e-9;
        EXPECT_TRUE(place->x >= about.x + k_gap || right <= about.x - k_gap || place->y >= about.y + k_gap ||
                    bottom <= about.y - k_gap);
    });
}

}  // namespace
}  // namespace nivora
