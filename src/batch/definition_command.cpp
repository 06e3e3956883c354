#include "batch/definition_command.h"

#include "base/durable_file.h"
#include "batch/commands.h"
#include "prep/basin_definition.h"
#include "store/basin_opening.h"

#include <fmt/format.h>

#include <ostream>
#include <string>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t k_largest_definition = 64U << 20U;
constexpr std::size_t k_listed_problems = 100;
constexpr const char* k_failed_title = "The basin was not made";

void report_problems(const fs::path& file, const DefinitionFault& fault, BatchDialogs& dialogs) {
    const std::string name = path_text(file.filename());
    std::size_t listed = 0;
    for (const DefinitionProblem& problem : fault.problems()) {
        if (++listed > k_listed_problems) break;
        const std::string where = problem.line == 0 ? name : fmt::format("{}, line {}", name, problem.line);
        dialogs.report_problem(where, problem.place.empty()
                                          ? problem.reason + "."
                                          : fmt::format("{}: {}.", problem.place, problem.reason));
    }
    dialogs.report_problem(k_failed_title,
                           fmt::format("{} values of the definition are refused.", fault.problems().size()));
}

}  // namespace

int new_command(const fs::path& basin, const fs::path& definition, BatchDialogs& dialogs, std::ostream& out) {
    try {
        const BasinDefinition wanted = read_definition(read_whole_file(definition, k_largest_definition));
        make_basin(basin, wanted);
        out << fmt::format("Made {}: {} zones, {} simulations.\n", path_text(basin), wanted.zones.size(),
                           wanted.simulations.size());
        return k_done;
    } catch (const DefinitionFault& fault) {
        report_problems(definition, fault, dialogs);
    } catch (const StoreError& error) {
        dialogs.report_problem(k_failed_title, error.what());
    } catch (const FileError& error) {
        dialogs.report_problem(k_failed_title, error.what());
    }
    return k_failed;
}

int definition_command(const fs::path& basin, std::chrono::milliseconds wait, BatchDialogs& dialogs,
                       std::ostream& out) {
    constexpr const char* k_title = "The definition was not printed";
    try {
        const OpenBasin open = open_to_read(basin, wait, Check::All);
        out << definition_text(stored_definition(open.database()));
        return k_done;
    } catch (const DefinitionFault& fault) {
        dialogs.report_problem(k_title, fmt::format("In {}, {}.", path_text(basin), fault.what()));
    } catch (const StoreError& error) {
        dialogs.report_problem(k_title, error.what());
    } catch (const FileError& error) {
        dialogs.report_problem(k_title, error.what());
    }
    return k_failed;
}

}  // namespace nivora
