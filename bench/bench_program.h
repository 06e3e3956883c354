// Runs the program without windows as a whole process.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace nivora {

/// Runs a program to its end with what it prints in a file. @return its exit status, or -1
int run_program(const std::string& program, const std::vector<std::string>& arguments,
                const std::filesystem::path& printed);

}  // namespace nivora
