#include "shell/start_arguments.h"

#include <algorithm>

namespace nivora {

StartArguments read_start_arguments(const std::vector<std::string>& arguments) {
    StartArguments read;
    bool only_files = false;
    for (const std::string& argument : arguments) {
        const bool is_option = !only_files && argument.size() > 1 && argument.front() == '-';
        if (is_option && argument == "--") {
            only_files = true;
        } else if (is_option && (argument == "--help" || argument == "-h")) {
            read.help = true;
        } else if (is_option && argument == "--version") {
            read.version = true;
        } else if (is_option && argument == "--verbose") {
            read.verbose = true;
        } else if (is_option) {
            read.problem = "There is no option " + argument + ".";
        } else if (argument.empty()) {
            read.problem = "The name of the file is empty.";
        } else if (read.file) {
            read.problem = "One file can be opened at a time.";
        } else {
            read.file = argument;
        }
    }
    if (read.verbose && !read.version && read.problem.empty())
        read.problem = "--verbose belongs to --version.";
    return read;
}

bool wants_text_only(const std::vector<std::string>& arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::any_of(arguments.begin(), end, [](const std::string& argument) {
        return argument == "--help" || argument == "-h" || argument == "--version";
    });
}

const char* start_help() {
    return "Nivora simulates and forecasts the daily streamflow of mountain basins in which melting snow is "
           "a "
           "major source\nof runoff.\n"
           "Usage: nivora [OPTIONS] [FILE.mdb]\n\n"
           "Positionals:\n"
           "  FILE.mdb                    Basin file to open. If Nivora runs already, it opens the file, "
           "after "
           "a\n"
           "                              question about unsaved changes\n\n"
           "Options:\n"
           "  -h,--help                   Print this help message and exit\n"
           "  --version                   Display program version information and exit\n"
           "  --verbose                   With --version: commit, compiler, libraries and licences, too\n\n"
           "The options of Qt, such as -platform and -style, are taken as well.\n\n"
           "Exit status: 0 done; 1 the program could not start, or the file could not be handed to the "
           "program that runs; 2 wrong\nusage.\n\n"
           "Without a file the program opens on a fresh basin. nivora-batch does the same work without "
           "windows.\n";
}

}  // namespace nivora
