// Tables that are loaded from CSV: the text of a file, its columns and values, and what becomes of its rows.
#include "prep/table_load.h"

#include "prep/stated_units.h"
#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The rows of a text, each as its line and its cells between bars.
std::vector<std::string> csv_rows(std::string_view text, std::size_t block = 1U << 20U) {
    const ByteSource whole = bytes_of_text(text);
    CsvReader reader{[&](std::span<char> room) { return whole(room.first(std::min(block, room.size()))); }};
    std::vector<std::string> rows;
    try {
        while (reader.next()) {
            std::string row = std::to_string(reader.line());
            for (const std::string_view cell : reader.cells()) row += "|" + std::string{cell};
            rows.push_back(row);
        }
    } catch (const CsvError& error) {
        rows.push_back("refused in line " + std::to_string(error.line()));
    }
    return rows;
}

TEST(CsvReader, EveryLineEndAndSeparatorReadsTheSame) {
    for (const char* text : {"a,b\n1,2\n", "a;b\r\n1;2\r\n", "a\tb\r1\t2",
                             "\xEF\xBB\xBF"
                             "a,b\n1,2"}) {
        SCOPED_TRACE(text);
        EXPECT_THAT(csv_rows(text), ElementsAre("1|a|b", "2|1|2"));
    }
}

TEST(CsvReader, ARowThatIsReadByteByByteIsTheSame) {
    const std::string text = "a,\"b \"\"c\"\"\r\nd\",\r\n\r\n , \n1,\"\",3";
    EXPECT_THAT(csv_rows(text), ElementsAre("1|a|b \"c\"\r\nd|", "5|1||3"));
    EXPECT_EQ(csv_rows(text, 1), csv_rows(text));
}

TEST(CsvReader, WhatIsNoTextOfATableIsRefusedInItsLine) {
    EXPECT_THAT(csv_rows("a,b\n1,\"2\n3,4\n"), ElementsAre("1|a|b", "refused in line 2"));
    EXPECT_THAT(csv_rows("a,b\n1,\"2\"3\n"), ElementsAre("1|a|b", "refused in line 2"));
    EXPECT_THAT(csv_rows(std::string_view{"a,b\n1,\0\n", 8}), ElementsAre("1|a|b", "refused in line 2"));
    EXPECT_THAT(csv_rows("SQLite format 3"), ElementsAre("refused in line 1"));
    EXPECT_THAT(csv_rows("\xFF\xFE"
                         "a"),
                ElementsAre("refused in line 1"));
    EXPECT_THAT(csv_rows("a,b\n" + std::string(3U << 20U, 'x')), ElementsAre("1|a|b", "refused in line 2"));
}

TEST(DatePattern, ADayIsReadInItsPatternOnly) {
    std::string reason;
    const auto read = [&](const char* pattern, const char* text) {
        return DatePattern::read(pattern).value().day(text, reason);
    };
    EXPECT_EQ(read("YYYY-MM-DD", "1980-10-01"), october(1));
    EXPECT_EQ(read("MM/DD/YYYY", "10/01/1980"), october(1));
    EXPECT_EQ(read("D.M.YYYY", "1.10.1980"), october(1));
    EXPECT_EQ(read("YYYYMMDD", "19801001"), october(1));
    EXPECT_FALSE(read("MM/DD/YYYY", "10/1/1980"));
    EXPECT_EQ(reason, "'10/1/1980' is not a date of the form MM/DD/YYYY");
    EXPECT_FALSE(read("YYYY-MM-DD", "1980-10-01T12:00:00"));
    EXPECT_TRUE(read("YYYY-MM-DD", "1980-02-29"));
    EXPECT_FALSE(read("YYYY-MM-DD", "1981-02-29"));
    EXPECT_EQ(reason, "there is no day '1981-02-29' in the calendar");
    EXPECT_FALSE(read("YYYY-MM-DD", "1980-06-31"));
    EXPECT_FALSE(read("YYYY-MM-DD", "1899-12-31"));
    for (const char* pattern :
         {"", "YYYY-MM", "YY-MM-DD", "YYYYMDD", "YYYY-MM-DD-DD", "YYYY-MMM-DD", "yyyy-mm-dd"})
        EXPECT_FALSE(DatePattern::read(pattern)) << pattern;
}

TEST(StatedUnits, ValuesBecomeThoseOfTheBasin) {
    const auto converted = [](const char* field, const char* unit, Units units, double value) {
        return unit_conversion(field, unit, units).value().of(value);
    };
    EXPECT_EQ(converted("Precip", "mm", Units::Metric, 25.0), 2.5);
    EXPECT_EQ(converted("Precip", "in", Units::Metric, 2.0), 5.08);
    EXPECT_DOUBLE_EQ(converted("Precip", "mm", Units::English, 50.8), 2.0);
    EXPECT_DOUBLE_EQ(converted("Tavg", "K", Units::Metric, 283.15), 10.0);
    EXPECT_DOUBLE_EQ(converted("Tavg", "°F", Units::Metric, 50.0), 10.0);                 // (50 - 32) / 1.8
    EXPECT_DOUBLE_EQ(converted("Tavg", "K", Units::English, 283.15), 50.0);               // 10 x 1.8 + 32
    EXPECT_DOUBLE_EQ(converted("Tcrit", "°C", Units::English, 1.0), 1.8);                 // a difference
    EXPECT_DOUBLE_EQ(converted("Runoff", "ft3/s", Units::Metric, 1000.0), 28.316846592);  // 1000 x 0.3048³
    EXPECT_DOUBLE_EQ(converted("SCA", "%", Units::Metric, 35.0), 0.35);
    EXPECT_DOUBLE_EQ(converted("LapseRate", "°F/1000ft", Units::Metric, 5.4864),
                     1.0);                                                       // 5.4864 / 1.8 / 3.048
    EXPECT_DOUBLE_EQ(converted("An", "in/°F/day", Units::Metric, 0.1), 0.4572);  // 0.1 x 2.54 x 1.8
    EXPECT_TRUE(unit_conversion("Precip", "cm", Units::Metric).value().is_identity());
    EXPECT_FALSE(unit_conversion("Precip", "°C", Units::Metric));
    EXPECT_FALSE(unit_conversion("Tcrit", "K", Units::Metric));
    EXPECT_FALSE(unit_conversion("NetRadiation", "W/m2", Units::Metric));
}

class TableLoadTest : public PrepTest {
protected:
    TableLoadTest() {
        BasinDescription basin = read_basin_description(database_);
        basin.zones = 2;
        basin.units = Units::Metric;
        write_basin_description(database_, basin);
        load_.table = "PhysicalData";
    }

    /// What became of the rows as "new changed equal refused", or why the file is refused.
    std::string loaded(std::string_view text, bool keep = true) {
        try {
            result_ = load_table(database_, bytes_of_text(text), load_, keep);
        } catch (const TableFault& fault) {
            return fault.what();
        }
        return std::to_string(result_.added) + " " + std::to_string(result_.changed) + " " +
               std::to_string(result_.equal) + " " + std::to_string(result_.refused);
    }

    /// The reasons of the refused rows behind their lines.
    [[nodiscard]] std::vector<std::string> refusals() const {
        std::vector<std::string> texts;
        for (const RefusedRow& row : result_.refusals)
            texts.push_back(std::to_string(row.line) + " " + row.reason);
        return texts;
    }

    std::vector<std::string> stored() {
        return rows("SELECT Zone, CAST(Date - " + std::to_string(october(0)) +
                    " AS INTEGER), Runoff, Tavg, Precip FROM PhysicalData ORDER BY rowid");
    }

    TableLoad load_;
    LoadResult result_;
};

TEST_F(TableLoadTest, DaysAreAddedChangedOrEqual) {
    add_physical({{.zone = 1, .date = october(1), .runoff = 4.0F, .precip = 1.0F},
                  {.zone = 1, .date = october(2), .runoff = 4.0F, .precip = 1.0F}});
    EXPECT_EQ(loaded("Zone,Date,Precip\n1,1980-10-01,1\n1,1980-10-02,\nB,1980-10-01,0.5\n"), "1 1 1 0");
    EXPECT_THAT(stored(), ElementsAre("1 1 4.0 - 1.0", "1 2 4.0 - -", "2 1 - - 0.5"));
    EXPECT_EQ(loaded("Zone,Date,Precip\n1,1980-10-01,1\n1,1980-10-02,\nB,1980-10-01,0.5\n"), "0 0 3 0");
}

TEST_F(TableLoadTest, ADryRunCountsAndWritesNothing) {
    EXPECT_EQ(loaded("Zone,Date,Precip\n1,1980-10-01,1\n", false), "1 0 0 0");
    EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(TableLoadTest, ARefusedRowLeavesTheTableAsItWas) {
    EXPECT_EQ(loaded("Zone,Date,Precip\n"
                     "1,1980-10-01,1\n"
                     "3,1980-10-01,1\n"
                     "1,1981-02-29,1\n"
                     "1,1980-10-01,2\n"
                     "1,1980-10-03,wet\n"
                     "1,1980-10-04,1e39\n"
                     "1,1980-10-05\n"
                     "1,1980-10-02,1\n"),
              "1 0 0 7");
    EXPECT_THAT(
        refusals(),
        ElementsAre("3 the basin has no zone '3'; its zones are 1 to 2",
                    "4 there is no day '1981-02-29' in the calendar",
                    "5 the file has zone 1 on 1980-10-01 a second time",
                    "6 Precip: 'wet' is not a number; state it if it stands for a missing value",
                    "7 Precip: '1e39' is beyond the numbers that the field can hold",
                    "8 the row has 2 cells, and the first row has 3",
                    "9 1980-10-02 of zone 1 stands behind 1980-10-04; sort the file, or state that it "
                    "has any order"));
    EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(TableLoadTest, DaysInAnyOrderHaveToBeStated) {
    const char* const text = "Zone,Date,Precip\n1,1980-10-02,1\n1,1980-10-01,2\n";
    EXPECT_EQ(loaded(text), "1 0 0 1");
    load_.any_order = true;
    EXPECT_EQ(loaded(text), "2 0 0 0");
    EXPECT_EQ(loaded("Zone,Date,Precip\n1,1980-10-02,1\n1,1980-10-01,2\n1,1980-10-02,1\n"), "0 0 2 1");
}

TEST_F(TableLoadTest, ADecimalCommaIsRefusedWithAHintAndTakenWhenStated) {
    const char* const text = "Zone;Date;Precip\n1;1980-10-01;1,5\n";
    EXPECT_EQ(loaded(text), "0 0 0 1");
    EXPECT_THAT(refusals(), ElementsAre(HasSubstr("state that it is a comma")));
    load_.form.decimal = DecimalSign::Comma;
    EXPECT_EQ(loaded(text), "1 0 0 0");
    EXPECT_THAT(stored(), ElementsAre("1 1 - - 1.5"));
    EXPECT_EQ(loaded("Zone;Date;Precip\n1;1980-10-02;1.5\n"), "0 0 0 1");
    EXPECT_EQ(loaded("Zone,Date,Precip\n"), "a comma can't be both the decimal sign and the separator");
}

TEST_F(TableLoadTest, AStatedMarkIsAMissingValueAlsoInOtherDigits) {
    load_.form.missing = {"NA", "-9999"};
    EXPECT_EQ(loaded("Zone,Date,Runoff,Tavg,Precip\n1,1980-10-01,NA,-9999.0,-0\n"), "1 0 0 0");
    EXPECT_THAT(stored(), ElementsAre("1 1 - - 0.0"));
}

TEST_F(TableLoadTest, ANumberIsRoundedOnceToASingle) {
    EXPECT_EQ(loaded("Zone,Date,Precip\n1,1980-10-01,0.65\n"), "1 0 0 0");
    EXPECT_THAT(stored(), ElementsAre("1 1 - - 0.649999976158142"));
    EXPECT_EQ(loaded("Zone,Date,Precip\n1,1980-10-01,inf\n1,1980-10-02,nan\n1,1980-10-03,1e-60\n"),
              "1 0 0 2");
}

TEST_F(TableLoadTest, AWideFileHasAColumnForEachZone) {
    load_.wide_field = "Precip";
    load_.columns = {{"A", "P_1450m"}, {"B", "P_1880m"}};
    load_.units = {{"", "mm"}};
    EXPECT_EQ(loaded("Date,P_1450m,other,P_1880m\n1980-10-01,5,x,7.5\n1980-10-02,,x,wet\n"), "3 0 0 1");
    EXPECT_THAT(refusals(), ElementsAre(HasSubstr("3 zone 2: Precip: 'wet'")));
    EXPECT_EQ(loaded("Date,P_1450m,other,P_1880m\n1980-10-01,5,x,7.5\n"), "2 0 0 0");
    EXPECT_THAT(stored(), ElementsAre("1 1 - - 0.5", "2 1 - - 0.75"));
}

TEST_F(TableLoadTest, AUnitInAHeaderCountsUnlessAnotherIsStated) {
    EXPECT_EQ(loaded("Zone,Date,Precip (mm),Runoff [ft3/s]\n1,1980-10-01,10,0\n"), "1 0 0 0");
    EXPECT_THAT(stored(), ElementsAre("1 1 0.0 - 1.0"));
    EXPECT_EQ(loaded("Zone,Date,Precip (K)\n"), "'K' is no unit of Precip; known are cm, mm, m, in");
    load_.units = {{"Precip", "cm"}};
    EXPECT_EQ(loaded("Zone,Date,Precip (K)\n1,1980-10-01,1\n"), "0 0 1 0");
}

TEST_F(TableLoadTest, ColumnsThatNameNothingAreRefused) {
    EXPECT_THAT(loaded("Zone,Date,Rain\n"), HasSubstr("has no field 'Rain'"));
    EXPECT_THAT(loaded("1,1980-10-01,5\n"), HasSubstr("no column has the header 'Date'"));
    EXPECT_THAT(loaded("Date,Precip\n"), HasSubstr("no column has the header 'Zone'"));
    EXPECT_THAT(loaded("Zone,Date,Precip,precip\n"), HasSubstr("two columns give the field 'Precip'"));
    EXPECT_EQ(loaded(""), "the file is empty");
    load_.table = "SimResults";
    EXPECT_THAT(loaded("Zone,Date,TMax\n"), HasSubstr("is neither PhysicalData nor BasinAverages"));
}

TEST_F(TableLoadTest, MonthlyAveragesAreChangedInTheirRows) {
    load_.table = "basinaverages";
    EXPECT_EQ(loaded("Zone,Month,PrecipN\n1,Jan,12.5\n2,12,0\n"), "0 1 1 0");
    EXPECT_THAT(rows("SELECT Zone, Month, PrecipN FROM BasinAverages WHERE PrecipN <> 0"),
                ElementsAre("1 Jan 12.5"));
}

}  // namespace
}  // namespace nivora
