#include "tests/climate/winter_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class WinterReportTest : public WinterTest {
protected:
    static constexpr const char* k_head_of_page_1 =
        "11/5/2001 1:02:03 PM   NVR, Version 1.10                        Page         1";
    static constexpr const char* k_head_of_page_2 =
        "11/5/2001 1:02:03 PM   NVR, Version 1.10                        Page         2";
    static constexpr const char* k_head_of_page_3 =
        "11/5/2001 1:02:03 PM   NVR, Version 1.10                        Page         3";
    static constexpr const char* k_head_of_page_4 =
        "11/5/2001 1:02:03 PM   NVR, Version 1.10                        Page         4";

    /// A summer of four days; all zones melt 1 a day under full cover.
    void melting_summer(int zones) {
        summer(zones, 4);
        basin.Basin_File = "/basins/hollin.mdb";
        for (int zone = 1; zone <= zones; ++zone) {
            fill_zone(table.SCA, zone, 1);
            set(table.MDCexcl, zone, {1, 2, 3, 4});
            set(table.SumAT, zone, {1, 2, 3, 4});
        }
    }

    /// Melt, melt of new snow, and rain of a zone's winter in a step.
    void sums(int zone, std::size_t step, double melt, double new_melt, double rain) {
        auto& of_step = run.ClimateSums.at(static_cast<std::size_t>(zone)).at(step);
        of_step[2] = static_cast<float>(melt);
        of_step[3] = static_cast<float>(rain);
        of_step[4] = static_cast<float>(new_melt);
    }

    /// The lines that were written; each must end with CR LF.
    [[nodiscard]] std::vector<std::string> lines() const {
        std::vector<std::string> found;
        for (std::size_t start = 0; start < report.size();) {
            const std::size_t end = report.find("\r\n", start);
            EXPECT_NE(end, std::string::npos);
            if (end == std::string::npos) break;
            found.push_back(report.substr(start, end - start));
            EXPECT_EQ(found.back().find_first_of("\r\n"), std::string::npos);
            start = end + 2;
        }
        return found;
    }

    /// Page heads, page breaks and "(continued)" lines in full; of each zone's block only the zone.
    [[nodiscard]] std::vector<std::string> page_lines() const {
        std::vector<std::string> found;
        for (const std::string& line : lines()) {
            const bool page = line.find("NVR") != std::string::npos || line == "\f" ||
                              line.find("(continued)") != std::string::npos;
            const bool zone = line.starts_with("====");
            if (page) found.push_back(line);
            if (zone) found.push_back(line.substr(36, 6));
        }
        return found;
    }
};

TEST_F(WinterReportTest, ASurplusAndADeficitLineByLine) {
    melting_summer(2);
    run.ScenarioName = "Auxiliary";
    winter(1, 10, 15.5, 2, 3.5);  // change (2 - 3.5) + (15.5 - 10) = 4; gain (15.5 - 3.5) / (10 - 2) = 1.5
    sums(1, 1, 1, 0.25, 0.75);
    sums(1, 2, 2, 0.5, 1);
    // Change (2 - 3.25) + (8 - 10) = -3.25: covered on day 4 with a melt of 4; day 3 has 3.
    winter(2, 10, 8, 2, 3.25);
    sums(2, 1, 1.5, 0, 0.5);
    sums(2, 2, 3, 0.125, 0.125);
    adjust();
    const std::string rule(35, '=');
    EXPECT_THAT(lines(), ElementsAre("",                                      //
                                     "Date:             11/5/2001",           //
                                     "File:             /basins/hollin.mdb",  //
                                     "Units:             (cm)",               //
                                     "Climate Scenario: Auxiliary",           //
                                     "",                                      //
                                     "",                                      //
                                     rule + " Zone 1  " + rule,               //
                                     "Total P, Winter       [P]  =  10 ",     //
                                     "Total P, Winter(clim) [P'] =  15.5 ",   //
                                     "Winter - Total Zonal Input [i], Zone  1  =  2 ",
                                     "     Sum M·S     =  1 ",     //
                                     "     Sum M(1-S)  =  0.25 ",  //
                                     "     Sum P_rain  =  0.75 ",  //
                                     "Winter(clim) - Total Zonal Input [i'], Zone  1  =  3.5 ",
                                     "     Sum M·S     =  2 ",                //
                                     "     Sum M(1-S)  =  0.5 ",              //
                                     "     Sum P_rain  =  1 ",                //
                                     "Gain(g) = (P' - i')/(P - i)",           //
                                     "     g  = ( 25.5 - 3.5 )/( 10 - 2 )",   //
                                     "Winter Change (\x1eHW), Zone 1  = 4.",  //
                                     "",                                      //
                                     "Zone 1 ",                               //
                                     "   Winter change (surplus)  4  was accounted for by",
                                     "   stretching MDCs by a factor of 1.5 ",  //
                                     "",                                        //
                                     rule + " Zone 2  " + rule,                 //
                                     "Total P, Winter       [P]  =  10 ",       //
                                     "Total P, Winter(clim) [P'] =  8 ",        //
                                     "Winter - Total Zonal Input [i], Zone  2  =  2 ",
                                     "     Sum M·S     =  1.5 ",  //
                                     "     Sum M(1-S)  =  0 ",    //
                                     "     Sum P_rain  =  0.5 ",  //
                                     "Winter(clim) - Total Zonal Input [i'], Zone  2  =  3.25 ",
                                     "     Sum M·S     =  3 ",                   //
                                     "     Sum M(1-S)  =  0.125 ",               //
                                     "     Sum P_rain  =  0.125 ",               //
                                     "Winter Change (\x1eHW), Zone 2  = -3.25",  //
                                     "",                                         //
                                     "Zone 2 ",                                  //
                                     "   Winter change (deficit) of -3.25  was equaled/exceeded by",
                                     "   accumulated zonal melt on 5/4/2001, a shift of  4  days",
                                     "   AZMexcl on 5/4/2001 =  4 ",  //
                                     "   Prior day's AZMexcl =  3 ",  //
                                     "",                              //
                                     "",                              //
                                     k_head_of_page_1,                //
                                     "\f",                            //
                                     k_head_of_page_2,                //
                                     "\f"));
}

TEST_F(WinterReportTest, ADeficitBeyondAllMeltNamesTheMeltOfTheLastDay) {
    melting_summer(1);
    winter(1, 10, 1, 0, 0.5);
    adjust();
    EXPECT_THAT(report, HasSubstr("Zone 1 \r\n"
                                  "   Winter change (deficit) of -9.5  is greater than\r\n"
                                  "   accumulated zonal melt of  4 .  Snow coverage for\r\n"
                                  "   this zone will disappear after the climate change\r\n"));
}

TEST_F(WinterReportTest, NoChangeIsWordedAsADeficitWithAShiftOfZero) {
    melting_summer(1);
    adjust();
    EXPECT_THAT(report, HasSubstr("Winter Change (\x1eHW), Zone 1  = .\r\n"));
    EXPECT_THAT(report, HasSubstr("   Winter change (deficit) of  0  was equaled/exceeded by\r\n"
                                  "   accumulated zonal melt on 5/1/2001, a shift of  0  days\r\n"
                                  "   AZMexcl on 5/1/2001 =  1 \r\n"
                                  "   Prior day's AZMexcl =  0 \r\n"));
    EXPECT_THAT(report, Not(HasSubstr("Gain(g)")));
}

TEST_F(WinterReportTest, ThePriorDaysMeltStartsAtZeroInEachZone) {
    melting_summer(2);
    winter(1, 10, 7, 0, 0);  // deficit 3: covered on day 3; the day before has 2
    winter(2, 10, 9, 0, 0);  // deficit 1: covered on day 1
    adjust();
    const std::size_t second = report.find("Zone 2 \r\n");
    ASSERT_NE(second, std::string::npos);
    EXPECT_THAT(report.substr(0, second), HasSubstr("   Prior day's AZMexcl =  2 \r\n"));
    EXPECT_THAT(report.substr(second), HasSubstr("   Prior day's AZMexcl =  0 \r\n"));
}

TEST_F(WinterReportTest, AChangedWinterWithoutPrecipitationHasNoPrecipitationLines) {
    melting_summer(1);
    winter(1, 10, 0, 0, 0);
    adjust();
    EXPECT_THAT(report, Not(HasSubstr("Total P")));
}

TEST_F(WinterReportTest, AChangeBelowOneHasNoZeroInItsPatternAndOneInItsText) {
    melting_summer(1);
    winter(1, 10, 9.5, 0, 0);
    adjust();
    EXPECT_THAT(report, HasSubstr("Winter Change (\x1eHW), Zone 1  = -.5\r\n"));
    EXPECT_THAT(report, HasSubstr("   Winter change (deficit) of -0.5  was equaled"));
}

TEST_F(WinterReportTest, TheChangeIsRoundedToThreeDecimalsHalfAwayFromZero) {
    melting_summer(1);
    winter(1, 0, 12.0625, 0, 0);
    adjust();
    EXPECT_THAT(report, HasSubstr("Winter Change (\x1eHW), Zone 1  = 12.063\r\n"));
}

TEST_F(WinterReportTest, AnEnglishBasinMeasuresInInches) {
    melting_summer(1);
    basin.Units_Code = Units::English;
    adjust();
    EXPECT_THAT(report, HasSubstr("\r\nUnits:             (in)\r\n"));
}

TEST_F(WinterReportTest, FourZonesFillThePageAndNoOtherFollows) {
    melting_summer(4);
    adjust();
    EXPECT_THAT(page_lines(), ElementsAre("Zone 1", "Zone 2", "Zone 3", "Zone 4", k_head_of_page_1, "\f",
                                          "Climate Scenario: Warmer (continued)", k_head_of_page_2, "\f"));
}

TEST_F(WinterReportTest, AFifthZoneGetsAPageOfItsOwn) {
    melting_summer(5);
    adjust();
    EXPECT_THAT(page_lines(), ElementsAre("Zone 1", "Zone 2", "Zone 3", "Zone 4", k_head_of_page_1, "\f",
                                          "Climate Scenario: Warmer (continued)", "Zone 5", k_head_of_page_2,
                                          "\f", k_head_of_page_3, "\f"));
}

TEST_F(WinterReportTest, EightZonesFillTwoPages) {
    melting_summer(8);
    adjust();
    EXPECT_THAT(page_lines(), ElementsAre("Zone 1", "Zone 2", "Zone 3", "Zone 4", k_head_of_page_1, "\f",
                                          "Climate Scenario: Warmer (continued)", "Zone 5", "Zone 6",
                                          "Zone 7", "Zone 8", k_head_of_page_2, "\f",
                                          "Climate Scenario: Warmer (continued)", k_head_of_page_3, "\f"));
}

TEST_F(WinterReportTest, NineZonesNeedThreePages) {
    melting_summer(9);
    adjust();
    EXPECT_THAT(page_lines(),
                ElementsAre("Zone 1", "Zone 2", "Zone 3", "Zone 4", k_head_of_page_1, "\f",
                            "Climate Scenario: Warmer (continued)", "Zone 5", "Zone 6", "Zone 7", "Zone 8",
                            k_head_of_page_2, "\f", "Climate Scenario: Warmer (continued)", "Zone 9",
                            k_head_of_page_3, "\f", k_head_of_page_4, "\f"));
}

TEST_F(WinterReportTest, APageEndsWithTwoEmptyLinesAndTheNextBeginsWithTheScenarioAndAnEmptyOne) {
    melting_summer(5);
    run.ScenarioName = "Auxiliary";  // the page names the scenario that was selected, whichever was run
    adjust();
    EXPECT_THAT(report, HasSubstr("   Prior day's AZMexcl =  0 \r\n\r\n\r\n" + std::string(k_head_of_page_1) +
                                  "\r\n\f\r\n"
                                  "Climate Scenario: Warmer (continued)\r\n\r\n"
                                  "\r\n" +
                                  std::string(35, '=') + " Zone 5  "));
}

TEST_F(WinterReportTest, ControlCharactersInNamesAreBlanks) {
    melting_summer(5);
    basin.Basin_File = "/basins/a\nb.mdb";
    run.ScenarioName = "warm\fer";
    climate.scenario = "warm\ner";
    adjust();
    const auto text = lines();
    EXPECT_EQ(text[2], "File:             /basins/a b.mdb");
    EXPECT_EQ(text[4], "Climate Scenario: warm er");
    EXPECT_THAT(text, testing::Contains("Climate Scenario: warm er (continued)"));
}

TEST_F(WinterReportTest, ALongRowOfDigitsIsCutToSeven) {
    melting_summer(1);
    winter(1, 10, 10, 0, 0);
    sums(1, 1, 2.0 / 3.0, 123456.7, 1.0e7);
    adjust();
    // 2/3 as a Single is 0.666666687; 123456.7 is 123456.703.
    EXPECT_THAT(report, HasSubstr("     Sum M·S     =  0.6666667 \r\n"
                                  "     Sum M(1-S)  =  123456.7 \r\n"
                                  "     Sum P_rain  =  1E+07 \r\n"));
}

TEST_F(WinterReportTest, FromTenMillionOnANumberHasAnExponentAndTheChangesPatternHasNot) {
    melting_summer(1);
    winter(1, 1, 12345677, 0, 0);  // gain 12345677 / 1, change 12345677 - 1
    sums(1, 1, 12345678, 9999999, 99999992);
    adjust();
    // Seven digits: 1.2345678 is 1.234568, 9.9999992 is 9.999999.
    EXPECT_THAT(report, HasSubstr("     Sum M·S     =  1.234568E+07 \r\n"
                                  "     Sum M(1-S)  =  9999999 \r\n"
                                  "     Sum P_rain  =  9.999999E+07 \r\n"));
    EXPECT_THAT(report, HasSubstr("     g  = ( 1.234568E+07 - 0 )/( 1 - 0 )\r\n"  // 1 + 12345677
                                  "Winter Change (\x1eHW), Zone 1  = 12345676.\r\n"));
    EXPECT_THAT(report, HasSubstr("   Winter change (surplus)  1.234568E+07  was accounted for by\r\n"
                                  "   stretching MDCs by a factor of 1.234568E+07 \r\n"));
}

TEST_F(WinterReportTest, ADeficitOfEightDigitsKeepsItsSignInBothForms) {
    melting_summer(1);
    winter(1, 12345678, 0, 0, 0);
    adjust();
    EXPECT_THAT(report, HasSubstr("Winter Change (\x1eHW), Zone 1  = -12345678.\r\n"));
    EXPECT_THAT(report, HasSubstr("   Winter change (deficit) of -1.234568E+07  is greater than\r\n"));
}

}  // namespace
}  // namespace nivora
