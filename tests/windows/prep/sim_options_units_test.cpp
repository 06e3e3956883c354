// The unit of each of the nine first values, wherever the definition window shows it.
#include "tests/windows/prep/sim_options_fixture.h"

#include <QTextEdit>

namespace nivora {
namespace {

struct UnitOfBox {
    int box;
    const char* name;  ///< for the name of the test
    const char* field;
    const char* metric;
    const char* english;
};

class SimOptionsUnitsTest : public SimOptionsWindowTest,
                            public testing::WithParamInterface<std::tuple<UnitOfBox, Units>> {
protected:
    [[nodiscard]] static const UnitOfBox& tested() { return std::get<0>(GetParam()); }
    [[nodiscard]] static bool english() { return std::get<1>(GetParam()) == Units::English; }
    [[nodiscard]] static std::string unit() { return english() ? tested().english : tested().metric; }
    void SetUp() override {
        open_to_add("s");
        // First chooses the other units, whose texts must be replaced.
        units(english() ? 0 : 1)->click();
        units(english() ? 1 : 0)->click();
    }
};

TEST_P(SimOptionsUnitsTest, IsInTheToolTipOfTheBoxAndOfItsLabel) {
    const std::string tip = std::string{tested().field} + ": " + unit();
    EXPECT_EQ(from_qt(box(tested().box)->toolTip()), tip);
    EXPECT_EQ(from_qt(find<QLabel>("Label4(" + std::to_string(tested().box - 6) + ")")->toolTip()), tip);
}

TEST_P(SimOptionsUnitsTest, IsInTheStatusLineWhileTheBoxHasTheKeyboard) {
    box(tested().box)->setFocus();
    EXPECT_EQ(caption("panel2"), std::string{tested().field} + ": " + unit());
    box(1)->setFocus();
    EXPECT_EQ(caption("panel2"), "");
}

TEST_P(SimOptionsUnitsTest, IsInTheQuickHelpOfTheBox) {
    quick_help_.set_on(true);
    box(1)->setFocus();
    box(tested().box)->setFocus();
    const std::string told = from_qt(find<QTextEdit>("lblHelp")->toPlainText());
    EXPECT_THAT(told, testing::EndsWith("  Unit: " + unit() + "."));
    quick_help_.set_on(false);
}

constexpr std::array k_boxes{
    UnitOfBox{6, "DegreeDayFactor", "AN", "cm/(°C·day)", "inches/(°F·day)"},
    UnitOfBox{7, "CriticalTemperature", "Tcrit", "°C above 0 °C", "°F above 32 °F"},
    UnitOfBox{8, "LapseRate", "LapseRate", "°C per 100 m", "°F per 1000 ft"},
    UnitOfBox{9, "RunoffCoefficientOfSnow", "CS", "a fraction, 0 to 1", "a fraction, 0 to 1"},
    UnitOfBox{10, "RunoffCoefficientOfRain", "Cr", "a fraction, 0 to 1", "a fraction, 0 to 1"},
    UnitOfBox{11, "RainfallContributingArea", "RCA", "0 or 1", "0 or 1"},
    UnitOfBox{12, "LagTime", "LagTime", "hours", "hours"},
    UnitOfBox{13, "XCoefficient", "Xcoeff", "no unit", "no unit"},
    UnitOfBox{14, "YCoefficient", "Ycoeff", "no unit", "no unit"}};

INSTANTIATE_TEST_SUITE_P(FirstValues, SimOptionsUnitsTest,
                         testing::Combine(testing::ValuesIn(k_boxes),
                                          testing::Values(Units::Metric, Units::English)),
                         [](const auto& test) {
                             return std::string{std::get<0>(test.param).name} +
                                    (std::get<1>(test.param) == Units::English ? "English" : "Metric");
                         });

}  // namespace
}  // namespace nivora
