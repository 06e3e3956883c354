// The definition of a basin as JSON: its rules, its lines, and the schema in docs/.
#include "prep/basin_definition.h"

#include "tests/prep/prep_fixture.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <set>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using SchemaJson = nlohmann::ordered_json;

/// The problems of a definition, each as its line, its place and why.
std::vector<std::string> definition_problems(const std::string& text) {
    std::vector<std::string> list;
    try {
        static_cast<void>(read_definition(text));
    } catch (const DefinitionFault& fault) {
        for (const DefinitionProblem& problem : fault.problems())
            list.push_back(std::to_string(problem.line) + " " + problem.place + ": " + problem.reason);
    }
    return list;
}

std::string small_definition(const std::string& zones, const std::string& more = "") {
    return "{\"definition\": 1, \"basin\": {},\n\"zones\": [" + zones + "]" + more + "}";
}

TEST(BasinDefinition, ZonesGetTheirLettersAndTheBasinTheirNumber) {
    const BasinDefinition read = read_definition(small_definition("{\"area\": 4.5}, {}"));
    ASSERT_EQ(read.zones.size(), 2U);
    EXPECT_EQ(read.basin.zones, 2);
    EXPECT_EQ(read.zones[0].id, "A");
    EXPECT_EQ(read.zones[0].area, 4.5);
    EXPECT_EQ(read.zones[1].id, "B");
    EXPECT_FALSE(read.zones[1].area);
}

TEST(BasinDefinition, EveryProblemIsNamedWithItsLineAndPlace) {
    EXPECT_THAT(
        definition_problems("{\n"
                            "  \"definition\": 1,\n"
                            "  \"basin\": {\"latitude\": 91, \"nmae\": \"Alder\"},\n"
                            "  \"zones\": [\n"
                            "    {\"area\": \"large\"},\n"
                            "    {\"area\": -1\n"
                            "    }\n"
                            "  ],\n"
                            "  \"simulations\": [{\"name\": \"a.b\", \"start\": \"1997-02-29\"}]\n"
                            "}\n"),
        ElementsAre("3 basin.latitude: the number is not within -90 and 90",
                    "3 basin.nmae: this key is not known here", "5 zones[0].area: a number is expected",
                    "6 zones[1].area: the number can't be below 0",
                    "9 simulations[0].start: a date such as \"1998-04-13\", of 1900 to 2300, is "
                    "expected",
                    "9 simulations[0].name: 'a.b' can't be the name of a simulation"));
}

TEST(BasinDefinition, ABasinHasOneToSixteenZones) {
    std::string seventeen = "{}";
    for (int zone = 2; zone <= 17; ++zone) seventeen += ", {}";
    EXPECT_THAT(definition_problems(small_definition("")),
                ElementsAre("2 zones: a basin has 1 to 16 zones, and these are 0"));
    EXPECT_THAT(definition_problems(small_definition(seventeen)),
                ElementsAre("2 zones: a basin has 1 to 16 zones, and these are 17"));
    EXPECT_THAT(definition_problems(small_definition(seventeen.substr(4))), IsEmpty());
}

TEST(BasinDefinition, ATextOfAnotherFormIsRefused) {
    EXPECT_THAT(definition_problems(""), ElementsAre(HasSubstr("not JSON")));
    EXPECT_THAT(definition_problems("{\n\"definition\": 1,\n\"basin\": {},,\n}"),
                ElementsAre(testing::StartsWith("3 : this is not JSON")));
    EXPECT_THAT(definition_problems("[]"), ElementsAre(HasSubstr("an object in braces")));
    EXPECT_THAT(definition_problems("{\"definition\": 2, \"basin\": {}, \"zones\": [{}]}"),
                ElementsAre(HasSubstr("the number 1 is expected")));
    EXPECT_THAT(definition_problems("{\"definition\": 1, \"zones\": [{}]}"),
                ElementsAre(HasSubstr("basin: this object is required")));
    EXPECT_THAT(definition_problems(small_definition("{\"area\": 1e999}")),
                ElementsAre(HasSubstr("a number that is too large")));
    EXPECT_THAT(definition_problems(small_definition("{\"area\": 1, \"area\": 2}")),
                ElementsAre("2 zones[0].area: this key stands here a second time"));
    EXPECT_THAT(definition_problems(std::string(100000, '[')), testing::SizeIs(1));
    EXPECT_THAT(definition_problems("\xEF\xBB\xBF" + small_definition("{}")), IsEmpty());
}

TEST(BasinDefinition, NamesOfTablesAreUnique) {
    EXPECT_THAT(definition_problems(small_definition("{}", R"(, "simulations": [{"name": "a"}, {"name": "A"},
                    {"name": "simresults"}, {}],
                    "scenarios": [{"simulation": "a", "name": "a"}, {"simulation": "b", "name": "None"}])")),
                ElementsAre("2 simulations[1].name: a second simulation has the name 'A'",
                            "3 simulations[3]: name: this text is required",
                            "3 simulations[2].name: 'simresults' can't be the name of a simulation",
                            "4 scenarios[0].name: a simulation, or a scenario before it, has the name 'a' "
                            "already",
                            "4 scenarios[1].simulation: there is no simulation 'b'"));
}

TEST(BasinDefinition, ASimulationHasTheUnitsOfTheBasin) {
    EXPECT_THAT(definition_problems(R"({"definition": 1, "basin": {"units": "Metric"}, "zones": [{}],
                    "simulations": [{"name": "a", "units": "English", "start": "1998-01-02",
                                     "end": "1998-01-01"}]})"),
                ElementsAre("2 simulations[0].units: a basin and its simulations have the same units",
                            "3 simulations[0].end: the simulation ends before it starts"));
}

TEST(BasinDefinition, NumbersKeepTheirBits) {
    BasinDefinition definition;
    definition.zones = {{.id = "A", .area = 0.1 + 0.2, .elevation = 1.0 / 3.0}};
    Simulation simulation{};
    simulation.name = "a";
    simulation.initial_runoff = 0.65F;
    simulation.precipitation_threshold = 1.17549435e-38F;
    definition.simulations = {simulation};
    const std::string text = definition_text(definition);
    EXPECT_THAT(text, HasSubstr("\"initialRunoff\": 0.65,"));
    const BasinDefinition read = read_definition(text);
    EXPECT_EQ(read.zones, definition.zones);
    EXPECT_EQ(read.simulations, definition.simulations);
    EXPECT_EQ(definition_text(read), text);
}

/// A validator of those words of JSON Schema that the schema uses; any other word is a problem.
class SchemaCheck {
public:
    explicit SchemaCheck(const SchemaJson& schema) : schema_(schema) {}

    std::vector<std::string> problems(const SchemaJson& value) {
        problems_.clear();
        check(schema_, value, "");
        return problems_;
    }

private:
    void report(const std::string& place, const std::string& what) {
        problems_.push_back(place + ": " + what);
    }

    static bool has_type(const SchemaJson& value, const std::string& type) {
        if (type == "null") return value.is_null();
        if (type == "string") return value.is_string();
        if (type == "integer") return value.is_number_integer();
        if (type == "number") return value.is_number();
        if (type == "array") return value.is_array();
        return type == "object" && value.is_object();
    }

    void check(const SchemaJson& schema, const SchemaJson& value, const std::string& place) {
        for (const auto& [word, rule] : schema.items()) check_word(schema, word, rule, value, place);
    }

    void check_word(const SchemaJson& schema, const std::string& word, const SchemaJson& rule,
                    const SchemaJson& value, const std::string& place) {
        if (word == "$ref") {
            check(schema_.at("$defs").at(rule.get<std::string>().substr(8)), value, place);
        } else if (word == "type") {
            bool found = rule.is_string() && has_type(value, rule.get<std::string>());
            for (const SchemaJson& type : rule.is_array() ? rule : SchemaJson::array())
                found = found || has_type(value, type.get<std::string>());
            if (!found) report(place, "type");
        } else if (word == "enum") {
            if (std::find(rule.begin(), rule.end(), value) == rule.end()) report(place, "enum");
        } else if (word == "const") {
            if (value != rule) report(place, "const");
        } else if (word == "minimum") {
            if (value.is_number() && value < rule) report(place, word);
        } else if (word == "maximum") {
            if (value.is_number() && value > rule) report(place, word);
        } else if (word == "minLength") {
            if (value.is_string() && value.get<std::string>().size() < rule) report(place, word);
        } else if (word == "maxLength") {
            if (value.is_string() && value.get<std::string>().size() > rule) report(place, word);
        } else if (word == "minItems") {
            if (value.size() < rule) report(place, word);
        } else if (word == "maxItems") {
            if (value.size() > rule) report(place, word);
        } else if (word == "items") {
            for (const SchemaJson& item : value) check(rule, item, place + "[]");
        } else if (word == "required") {
            for (const SchemaJson& key : rule)
                if (!value.contains(key.get<std::string>())) report(place, "required " + key.dump());
        } else if (word == "additionalProperties") {
            for (const auto& [key, member] : value.items())
                if (!schema.at("properties").contains(key)) report(place, "unknown " + key);
        } else if (word == "properties") {
            for (const auto& [key, member] : rule.items())
                if (value.contains(key)) check(member, value.at(key), place + "." + key);
        } else if (word != "description" && word != "title" && word != "$schema" && word != "$defs" &&
                   word != "examples" && word != "pattern") {
            report(place, "the test does not know the word " + word);
        }
    }

    const SchemaJson& schema_;
    std::vector<std::string> problems_ = {};
};

class DefinitionSchemaTest : public PrepTest {
protected:
    DefinitionSchemaTest() {
        std::ifstream file{std::string{NIVORA_SOURCE_DIR} + "/docs/basin-definition.schema.json"};
        schema_ = SchemaJson::parse(file);
    }

    SchemaJson schema_;
};

TEST_F(DefinitionSchemaTest, TheExampleIsWhatTheProgramWritesOfIt) {
    const SchemaJson example = schema_.at("examples").at(0);
    EXPECT_THAT(SchemaCheck{schema_}.problems(example), IsEmpty());
    const BasinDefinition read = read_definition(example.dump(2));
    EXPECT_EQ(definition_text(read), example.dump(2) + "\n");
}

TEST_F(DefinitionSchemaTest, EveryKeyOfTheSchemaIsWrittenAndNoOther) {
    BasinDefinition full;
    full.zones.resize(1);
    full.simulations.resize(1);
    full.simulations[0].name = "a";
    full.scenarios.resize(1);
    full.scenarios[0].index = {
        .simulation = "a", .scenario = "b", .winter_end_date = {}, .creation_date = {}, .comments = {}};
    full.scenarios[0].edits.resize(1);
    const SchemaJson text = SchemaJson::parse(definition_text(full));
    EXPECT_THAT(SchemaCheck{schema_}.problems(text), IsEmpty());
    const auto keys = [](const SchemaJson& object) {
        std::set<std::string> names;
        for (const auto& [key, member] : object.items()) names.insert(key);
        return names;
    };
    const SchemaJson& parts = schema_.at("$defs");
    EXPECT_EQ(keys(text), keys(schema_.at("properties")));
    EXPECT_EQ(keys(text["basin"]), keys(parts["basin"]["properties"]));
    EXPECT_EQ(keys(text["zones"][0]), keys(parts["zone"]["properties"]));
    EXPECT_EQ(keys(text["simulations"][0]), keys(parts["simulation"]["properties"]));
    EXPECT_EQ(keys(text["scenarios"][0]), keys(parts["scenario"]["properties"]));
    EXPECT_EQ(keys(text["scenarios"][0]["edits"][0]), keys(parts["edit"]["properties"]));
}

TEST_F(DefinitionSchemaTest, TheSchemaRefusesWhatTheProgramRefuses) {
    const auto changed = [this](const char* pointer, const SchemaJson& value) {
        SchemaJson text = schema_.at("examples").at(0);
        text[SchemaJson::json_pointer{pointer}] = value;
        return text;
    };
    for (const SchemaJson& text :
         {changed("/definition", 2), changed("/basin/units", "metric system"), changed("/basin/latitude", 91),
          changed("/basin/height", 1), changed("/zones", SchemaJson::array()), changed("/zones/0/area", -1),
          changed("/zones/0/area", "4"), changed("/simulations/0/name", nullptr),
          changed("/simulations/0/runNumber", 40000), changed("/scenarios/0/edits/0/action", 0.5)}) {
        SCOPED_TRACE(text.dump());
        EXPECT_FALSE(SchemaCheck{schema_}.problems(text).empty());
        EXPECT_THROW(static_cast<void>(read_definition(text.dump())), DefinitionFault);
    }
}

TEST_F(DefinitionSchemaTest, AStoredDefinitionIsReadBack) {
    const BasinDefinition wanted = read_definition(schema_.at("examples").at(0).dump());
    store_definition(database_, wanted);
    EXPECT_EQ(definition_text(stored_definition(database_)), definition_text(wanted));
    EXPECT_TRUE(database_.has_table("wy1998"));
    BasinDescription other = read_basin_description(database_);
    other.zones = 3;
    write_basin_description(database_, other);
    EXPECT_THROW(static_cast<void>(stored_definition(database_)), StoreError);
}

}  // namespace
}  // namespace nivora
