// The commands new, definition and load: what they print, refuse and leave as it was.
#include "tests/batch/run_basin.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <thread>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* k_two_zones = R"({
  "definition": 1,
  "basin": {"name": "Alder", "units": "Metric", "referenceElevation": 1450, "latitude": 46.5},
  "zones": [{"area": 40.5, "elevation": 1450}, {"area": 62, "elevation": 1880}],
  "simulations": [{"name": "wy1998", "start": "1997-10-01", "end": "1998-09-30", "units": "Metric"}]
})";

/// A new basin of two zones with the simulation "wy1998", without values.
class LoadCommandTest : public testing::Test {
protected:
    LoadCommandTest() {
        folder_.write("basin.json", k_two_zones);
        EXPECT_EQ(batch({"new", basin(), "--definition", path("basin.json")}).status, 0);
    }

    [[nodiscard]] std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
    [[nodiscard]] std::string basin() const { return path("basin.mdb"); }

    /// Calls "load" with a file of this text.
    [[nodiscard]] BatchResult load(const std::string& text, const std::vector<std::string>& more = {},
                                   const std::string& table = "PhysicalData") const {
        folder_.write("file.csv", text);
        std::vector<std::string> arguments{"load", basin(), table, "--csv", path("file.csv")};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }

    /// The counts at the end of what a load printed.
    static std::string counts(const BatchResult& result) {
        const std::size_t colon = result.out.rfind(": ");
        return colon == std::string::npos ? result.out + result.err : result.out.substr(colon + 2);
    }

    [[nodiscard]] std::vector<std::string> exported(const std::string& table = "PhysicalData") const {
        static_cast<void>(printed({"export", basin(), table, "--csv", path("out.csv")}));
        return lines_of(file_bytes(path("out.csv")));
    }

    TemporaryFolder folder_;
};

TEST_F(LoadCommandTest, ANewBasinHasItsDefinition) {
    const auto json = nlohmann::json::parse(printed({"definition", basin()}));
    EXPECT_EQ(json["basin"]["name"], "Alder");
    EXPECT_EQ(json["zones"][1]["id"], "B");
    EXPECT_EQ(json["simulations"][0]["end"], "1998-09-30");
    EXPECT_THAT(printed({"simulations", basin()}), HasSubstr("wy1998"));
}

TEST_F(LoadCommandTest, NewNeverReplacesAFile) {
    const std::string before = file_bytes(basin());
    const BatchResult result = batch({"new", basin(), "--definition", path("basin.json")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("exists already"));
    EXPECT_EQ(file_bytes(basin()), before);
}

TEST_F(LoadCommandTest, ARefusedDefinitionLeavesNoFile) {
    folder_.write("bad.json", "{\n\"definition\": 1,\n\"basin\": {\"lattitude\": 46},\n\"zones\": []}");
    const BatchResult result = batch({"new", path("other.mdb"), "--definition", path("bad.json")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(lines_of(result.err), ElementsAre(StartsWith("bad.json, line 3: basin.lattitude: this key"),
                                                  StartsWith("bad.json, line 4: zones: a basin has 1 to 16"),
                                                  HasSubstr("2 values of the definition are refused")));
    EXPECT_THAT(folder_.entries(), testing::Not(testing::Contains(StartsWith("other"))));
}

TEST_F(LoadCommandTest, AWideFileInMillimetresIsLoadedAfterADryRun) {
    const std::string text = "Date,P_1450m,P_1880m\n1997-10-01,5,7.5\n1997-10-02,,2\n";
    const std::vector<std::string> options{"--field", "Precip", "--columns", "A=P_1450m,B=P_1880m",
                                           "--from",  "mm"};
    std::vector<std::string> dry = options;
    dry.emplace_back("--dry-run");
    const std::string before = file_bytes(basin());
    EXPECT_EQ(counts(load(text, dry)), "4 new, 0 changed, 0 equal, 0 refused.\n");
    EXPECT_EQ(file_bytes(basin()), before);
    EXPECT_EQ(counts(load(text, options)), "4 new, 0 changed, 0 equal, 0 refused.\n");
    EXPECT_THAT(exported(),
                ElementsAre(StartsWith("Zone,Date"), "1,1997-10-01,,,,,0.5,,", "2,1997-10-01,,,,,0.75,,",
                            "1,1997-10-02,,,,,,,", "2,1997-10-02,,,,,0.2,,"));
    EXPECT_EQ(counts(load(text, options)), "0 new, 0 changed, 4 equal, 0 refused.\n");
}

TEST_F(LoadCommandTest, AFieldThatTheFileLacksKeepsItsValues) {
    EXPECT_EQ(load("Zone,Date,Precip\nA,1997-10-01,1\n").status, 0);
    EXPECT_EQ(counts(load("Zone,Date,Tavg (K)\nA,1997-10-01,278.15\n")),
              "0 new, 1 changed, 0 equal, 0 refused.\n");
    EXPECT_THAT(exported(), ElementsAre(StartsWith("Zone,Date"), "1,1997-10-01,,,,5,1,,"));
}

TEST_F(LoadCommandTest, EveryRefusedLineIsNamedAndNothingIsLost) {
    ASSERT_EQ(load("Zone,Date,SCA\n1,1997-10-01,0.5\n").status, 0);
    const std::vector<std::string> before = exported();
    const BatchResult result = load(
        "Zone,Date,SCA\n"
        "1,1997-10-01,0.75\n"
        "1,1998-02-29,0.5\n"
        "1,1998-06-31,0.5\n"
        "C,1997-10-02,0.5\n"
        "2,1997-10-01,35\n"
        "2,1997-10-02,-9999\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(counts(result), "0 new, 1 changed, 0 equal, 5 refused.\n");
    EXPECT_THAT(lines_of(result.err),
                ElementsAre(StartsWith("file.csv, line 3: there is no day '1998-02-29'"),
                            StartsWith("file.csv, line 4: there is no day '1998-06-31'"),
                            StartsWith("file.csv, line 5: the basin has no zone 'C'; its zones are 1 to 2"),
                            StartsWith("file.csv, line 6: SCA: '35' is not within 0 and 1; state its unit"),
                            StartsWith("file.csv, line 7: SCA: '-9999' is not within 0 and 1"),
                            StartsWith("Load failed: 5 rows are refused. The basin is unchanged.")));
    EXPECT_EQ(exported(), before);
}

TEST_F(LoadCommandTest, OnlyTheFirstHundredRefusalsAreListed) {
    std::string text = "Zone,Date,Precip\n";
    for (int i = 0; i < 250; ++i) text += "1,1997-10-01,wet\n";
    const BatchResult result = load(text, {"--dry-run"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(lines_of(result.err).size(), 101U);
    EXPECT_THAT(result.err, HasSubstr("250 rows are refused, of which 150 are not listed"));
}

TEST_F(LoadCommandTest, FormsOfOtherProgramsAreStated) {
    const std::string text =
        "\xEF\xBB\xBF"
        "Tag;\"T, Mittel\"\r\n1.10.1997;\"5,5\"\r\n2.10.1997;NA\r\n";
    const std::vector<std::string> options{
        "--zone",         "B",        "--columns", "Date=Tag,Tavg=T Mittel",
        "--date-pattern", "D.M.YYYY", "--missing", "NA"};
    EXPECT_THAT(load(text, options).err, HasSubstr("no column has the header 'T Mittel'"));
    const std::string plain =
        "\xEF\xBB\xBF"
        "Tag;\"T Mittel\"\r\n1.10.1997;\"5,5\"\r\n2.10.1997;NA\r\n";
    EXPECT_THAT(load(plain, options).err, HasSubstr("state that it is a comma if it is one"));
    std::vector<std::string> comma = options;
    comma.insert(comma.end(), {"--decimal", "comma"});
    EXPECT_EQ(counts(load(plain, comma)), "2 new, 0 changed, 0 equal, 0 refused.\n");
    EXPECT_THAT(exported(),
                ElementsAre(StartsWith("Zone,Date"), "2,1997-10-01,,,,5.5,,,", "2,1997-10-02,,,,,,,"));
}

TEST_F(LoadCommandTest, ParametersAndAveragesAreLoaded) {
    EXPECT_EQ(counts(load("Zone,Date,LagTime (days),RCA\nA,1997-10-01,0.5,1\n", {}, "WY1998")),
              "1 new, 0 changed, 0 equal, 0 refused.\n");
    EXPECT_THAT(exported("wy1998"), ElementsAre(StartsWith("Zone,Date"), "1,1997-10-01,,12,,,,,1,,"));
    EXPECT_THAT(load("Zone,Date,RCA\nA,1997-10-02,0.5\n", {}, "wy1998").err,
                HasSubstr("line 2: RCA: '0.5' is not a whole number"));
    EXPECT_EQ(counts(load("Zone,Month,TAvgN\nA,Jan,-5\nA,2,-4\n", {"--dry-run"}, "BasinAverages")),
              "0 new, 2 changed, 0 equal, 0 refused.\n");
    EXPECT_FALSE((BasinDatabase{basin(), Access::ReadOnly}.has_table("BasinAverages")));
    EXPECT_EQ(counts(load("Zone,Month,TAvgN\nA,Jan,-5\nA,2,-4\n", {}, "BasinAverages")),
              "0 new, 2 changed, 0 equal, 0 refused.\n");
    EXPECT_EQ(exported("BasinAverages").at(2), "1,Feb,0,0,-4,0");
}

TEST_F(LoadCommandTest, ATableThatIsNoneOfTheseIsRefused) {
    for (const char* table : {"SimResults", "ZoneDescription", "wy1999"}) {
        const BatchResult result = load("Zone,Date,Precip\n", {}, table);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err, HasSubstr("is neither PhysicalData nor BasinAverages nor a simulation"));
    }
}

TEST_F(LoadCommandTest, TheBasinItselfIsNoFileToLoad) {
    const BatchResult result = batch({"load", basin(), "PhysicalData", "--csv", basin()});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("it is the basin itself"));
    EXPECT_EQ(batch({"load", basin(), "PhysicalData", "--csv", path("none.csv")}).status, 1);
}

TEST_F(LoadCommandTest, APipeIsRead) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    std::thread writer{[this] { folder_.write("pipe", "Zone,Date,Precip\nA,1997-10-01,1\n"); }};
    const BatchResult result = batch({"load", basin(), "PhysicalData", "--csv", path("pipe")});
    writer.join();
    EXPECT_EQ(counts(result), "1 new, 0 changed, 0 equal, 0 refused.\n");
}

TEST_F(LoadCommandTest, WrongOptionsAreWrongUsage) {
    for (const std::vector<std::string>& options : {std::vector<std::string>{"--columns", "Precip"},
                                                    {"--date-pattern", "YY"},
                                                    {"--decimal", "dot"},
                                                    {"--field", "Precip", "--zone", "A"},
                                                    {"--separator", "|"}})
        EXPECT_EQ(load("Zone,Date,Precip\n", options).status, 2) << options.front();
}

}  // namespace
}  // namespace nivora
