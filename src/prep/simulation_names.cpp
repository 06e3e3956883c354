#include "prep/simulation_names.h"

#include "base/text.h"
#include "store/table_io.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr std::string_view k_refused_characters = ".![]`";
constexpr std::string_view k_store_prefix = "sqlite_";
constexpr const char* k_reserved = "This name is reserved for system use, please re-enter";

/// Why a name can't be used in this basin. The names of tables that the program itself creates, for a run and
/// for the monthly averages, are reserved even while these do not exist.
std::optional<std::string> name_problem_in(BasinDatabase& database, const std::string& name) {
    if (auto problem = simulation_name_problem(name)) return problem;
    if (is_fixed_table(name) && !database.has_table(name)) return k_reserved;
    return std::nullopt;
}

/// Asks until the answer is a valid name; nothing for an empty answer.
std::optional<std::string> ask_name(BasinDatabase& database, Dialogs& dialogs, const std::string& title,
                                    const std::string& proposed) {
    InputBox box{
        .prompt = "Enter a unique name to associate with this data", .title = title, .proposed = proposed};
    for (;;) {
        const auto answer = dialogs.input(box);
        const std::string name{trimmed(answer.value_or(""))};
        if (name.empty()) return std::nullopt;
        const auto problem = name_problem_in(database, name);
        if (!problem) return name;
        box.prompt = *problem;
    }
}

/// Asks about an existing table of that name and deletes it after a Yes. @return whether it was deleted
bool overwrite_confirmed(BasinDatabase& database, Dialogs& dialogs, const std::string& name,
                         Message question) {
    question.text = "The current database already contains a simulation named '" + name + " '.  Overwrite?";
    if (dialogs.message(question) != Answer::Yes) return false;
    if (is_fixed_table(name) || is_scenario(database, name)) {
        dialogs.stop("'" + name +
                         "' is the name of a table that the basin needs, or of a climate scenario. "
                         "It was not changed. Choose another name.",
                     question.title);
        return false;
    }
    database.drop_table(name);
    return true;
}

const Message k_overwrite_question{.title = "Duplicate simulation same", .buttons = Buttons::YesNo};

}  // namespace

std::optional<std::string> simulation_name_problem(std::string_view name) {
    const bool control = std::any_of(
        name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
    if (control || !is_utf8(name) || name.find_first_of(k_refused_characters) != std::string_view::npos) {
        return "Invalid character(s) in name, please re-enter";
    }
    if (folded_name(name).rfind(k_store_prefix, 0) == 0) {
        return k_reserved;
    }
    return std::nullopt;
}

std::optional<std::string> Add_Simulation_Name(BasinDatabase& database, Dialogs& dialogs,
                                               const std::string& proposed) {
    const auto name =
        ask_name(database, dialogs,
                 proposed.empty() ? "Name the New Simulation" : "Name the Imported Simulation", proposed);
    if (!name) return std::nullopt;
    if (database.has_table(*name) && !overwrite_confirmed(database, dialogs, *name, k_overwrite_question))
        return std::nullopt;
    database.create_table(parameter_table(*name));
    database.create_daily_index(*name);
    return name;
}

std::optional<std::string> Name_Results_Table(BasinDatabase& database, Dialogs& dialogs) {
    const auto name = ask_name(database, dialogs, "Assign name to current results table", {});
    if (!name) return std::nullopt;
    Message question = k_overwrite_question;
    question.icon = Icon::Question;
    question.default_answer = Answer::No;
    if (database.has_table(*name) && !overwrite_confirmed(database, dialogs, *name, question))
        return std::nullopt;
    database.rename_table(k_sim_results, *name);
    return name;
}

}  // namespace nivora
