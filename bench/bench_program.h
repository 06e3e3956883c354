// Runs the batch program as a process.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace nivora {

/// Runs a program to its end and writes its output to a file. @return its exit status, or -1
int run_program(const std::string& program, const std::vector<std::string>& arguments,
                const std::filesystem::path& printed);

}  // namespace nivora
