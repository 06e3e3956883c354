// The plots of the sample basin as they are drawn and described, compared with kept records.
//
// Long lists of points are kept as their beginning and a checksum, which any other digit changes.

#include "batch/plot_description.h"
#include "batch/plot_state.h"
#include "plots/draw_plot.h"
#include "plots/select_plot.h"
#include "tests/batch/batch_call.h"
#include "tests/support/comma_locale.h"
#include "tests/support/golden.h"
#include "tests/support/recording_surface.h"

namespace nivora {
namespace {

constexpr double k_now = 46086.5625;  // 2026-03-05, half past one

std::string checksum(std::string_view text) {
    return fmt::format("{:016x}", column_checksum(std::vector<char>{text.begin(), text.end()}));
}

/// A line of a record, shortened if it is long.
std::string kept_line(const std::string& line) {
    constexpr std::size_t k_longest = 300;
    constexpr std::size_t k_beginning = 150;
    if (line.size() <= k_longest) return line;
    return line.substr(0, line.find_first_of(" ,", k_beginning)) + " ... " + checksum(line);
}

/// A call of the batch program that must succeed.
void call(const std::vector<std::string>& arguments) {
    const BatchResult result = batch(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
}

/// The sample basin with a scenario, after a run or the steps of an evaluation.
class SampleBasin {
public:
    explicit SampleBasin(int step) : step_(step) {
        call({"import", std::string{NIVORA_SOURCE_DIR} + "/data/samples/ellervane-1997-98.NVR", path(),
              "--name", "sample", "--latitude", "46.5", "--initial-runoff", "2.851"});
        if (step == 0) {
            call({"run", path(), "--simulation", "sample", "--kind", "year-round"});
            return;
        }
        call({"scenario", path(), "--simulation", "sample", "--name", "warm and wet", "--winter-end",
              "1998-03-31", "--edit", "Average Temperature:1997-10-01:1998-09-30:Add/subtract to each:2:All",
              "--edit", "Precipitation:1997-10-01:1998-09-30:Multiply each:1.1:All"});
        call({"climate", path(), "--simulation", "sample", "--scenario", "warm and wet", "--last-step",
              std::to_string(step)});
    }

    [[nodiscard]] std::string path() const { return path_text(file_); }

    /// The options of a plot.
    [[nodiscard]] PlotCommand command(int number) const {
        PlotCommand command;
        command.basin = file_;
        command.simulation = "sample";
        command.plot = static_cast<PlotNumber>(number);
        command.run.year_round = true;
        command.run.step = step_;
        command.run.scenario = "warm and wet";
        return command;
    }

private:
    int step_;
    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "sample.mdb";
};

std::string drawing_of(const Plot& plot) {
    RecordingSurface surface{{1200.0, 700.0}};
    DrawOptions options;
    options.now = k_now;
    options.legend = true;
    options.summary = true;
    draw(surface, plot, options);
    std::string text;
    std::string dots;
    const auto end_dots = [&] {
        if (!dots.empty()) text += kept_line(dots) + "\n";
        dots.clear();
    };
    for (const std::string& call : surface.calls()) {
        if (call.starts_with("dot ")) {
            dots += (dots.empty() ? "" : ", ") + call;
            continue;
        }
        end_dots();
        text += kept_line(call) + "\n";
    }
    end_dots();
    return text;
}

std::string description_of(const Plot& plot, int zones) {
    const auto json = describe_plot(
        plot, {.grid = GridMode::Both, .data_points = true, .now = k_now, .zone_count = zones, .flow = {}});
    std::string text;
    for (const auto& [key, value] : json.items()) text += kept_line(key + " " + value.dump()) + "\n";
    return text;
}

/// Drawing and description of a plot, or its refusal.
std::string record_of(const SampleBasin& sample, int number) {
    std::ostringstream messages;
    BatchDialogs dialogs{messages, false};
    Desktop no_desktop;
    Session session{dialogs, no_desktop};
    BasinDatabase database{path_from_utf8(sample.path()), Access::ReadOnly};
    const auto state = take_plot_state(database, session, sample.command(number), dialogs);
    EXPECT_TRUE(state) << messages.str();
    if (!state) return {};
    session.basin.Basin_File = "sample.mdb";
    const PlotSources sources{session.basin, session.run, state->results_current};
    const PlotOutcome outcome =
        select_plot(database, {.plot = static_cast<PlotNumber>(number), .zone = {}}, sources);
    if (const auto* refusal = std::get_if<PlotRefusal>(&outcome)) return "refused: " + refusal->text + "\n";
    const Plot& plot = std::get<Plot>(outcome);
    return drawing_of(plot) + description_of(plot, session.basin.ZoneCount);
}

class SamplePlots : public testing::TestWithParam<int> {};

TEST_P(SamplePlots, EqualTheKeptOnes) {
    const SampleBasin sample{GetParam()};
    for (int number = 1; number <= k_last_plot; ++number) {
        if (number == number_of(PlotNumber::Dashes)) continue;
        const std::string name = GetParam() == 0 ? "plain" : "step_" + std::to_string(GetParam());
        SCOPED_TRACE(number);
        expect_golden(fmt::format("plot_{:02}_{}.txt", number, name), record_of(sample, number));
    }
}

TEST_P(SamplePlots, AreTheSameBytesWhereNumbersHaveACommaElsewhere) {
    const SampleBasin sample{GetParam()};
    const auto all = [&] {
        std::string text;
        for (int number = 1; number <= k_last_plot; ++number) {
            if (number != number_of(PlotNumber::Dashes)) text += record_of(sample, number);
        }
        return text;
    };
    const std::string plain = all();
    {
        const CommaLocale language;
        EXPECT_TRUE(all() == plain) << first_difference(plain, all());
    }
    ProcessLocale locale;
    if (!locale.set_decimal_comma()) GTEST_SKIP() << "this machine has no locale with a decimal comma";
    EXPECT_TRUE(all() == plain) << first_difference(plain, all());
}

INSTANTIATE_TEST_SUITE_P(Steps, SamplePlots, testing::Values(0, 2, 3, 6),
                         [](const auto& test) { return "Step" + std::to_string(test.param); });

}  // namespace
}  // namespace nivora
