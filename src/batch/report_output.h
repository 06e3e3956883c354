// The file that reports are written into: as they stand, or as pages.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The form of a report file, by the end of its name.
enum class ReportForm { Text, Pdf };

/// Nothing for a name that ends neither in .txt or .out nor in .pdf, in any case.
[[nodiscard]] std::optional<ReportForm> report_form(const std::filesystem::path& file);

/// Writes the whole file, or leaves the old one.
///
/// @param never files that must not be replaced, by whatever name or link
/// @throws FileError
void write_report_file(const std::filesystem::path& file, const std::string& text,
                       const std::vector<std::filesystem::path>& never);

}  // namespace nivora
