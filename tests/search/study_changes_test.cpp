#include "search/study_changes.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(StudyChanges, NamesTheInputsThatDifferOnce) {
    const std::string stored = "settings:a,zones:b,variables:c";
    EXPECT_EQ(changed_inputs(stored, stored), "");
    EXPECT_EQ(changed_inputs(stored, "settings:a,zones:x,variables:c"), "zones");
    EXPECT_EQ(changed_inputs(stored + " " + stored,
                             "settings:a,zones:x,variables:y settings:a,zones:b,variables:y"),
              "zones, variables");
    // Another number of simulations, or digests of another form.
    EXPECT_EQ(changed_inputs(stored, stored + " " + stored), "");
    EXPECT_EQ(changed_inputs("1234-5", "1234-6"), "");
    EXPECT_EQ(changed_inputs("", stored), "");
}

TEST(StudyChanges, NamesTheOptionsThatDifferAsTheyWere) {
    const std::string stored = R"({"free":["a","b"],"seed":1,"no snow":false})";
    EXPECT_EQ(changed_option_values(stored, stored), "");
    EXPECT_EQ(changed_option_values(stored, R"({"free":["a"],"seed":2,"no snow":false})"),
              R"(free ["a","b"], seed 1)");
    EXPECT_EQ(changed_option_values(stored, R"({"free":["a","b"],"seed":1,"no snow":false,"winter":3})"),
              "no winter");
    EXPECT_EQ(changed_option_values(R"({"seed":1})", R"({})"), "seed 1");
    EXPECT_EQ(changed_option_values(R"({"a":1,"b":2})", R"({"b":2,"a":1})"), R"({"a":1,"b":2})");
    EXPECT_EQ(changed_option_values("not JSON", stored), "not JSON");
    const std::string long_name(200, 'x');
    EXPECT_LT(changed_option_values(R"({"free":")" + long_name + R"("})", R"({"free":""})").size(), 100U);
}

}  // namespace
}  // namespace nivora
