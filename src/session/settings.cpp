#include "session/settings.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr std::string_view k_template_name = "null.mdb";

}  // namespace

void update_recent_files(Settings& settings, const std::string& basin_file) {
    const bool unnamed = basin_file.size() >= k_template_name.size() &&
                         basin_file.compare(basin_file.size() - k_template_name.size(), std::string::npos,
                                            k_template_name) == 0;
    if (unnamed) return;
    auto& files = settings.recent_files;
    const auto found = std::find(files.begin(), files.end(), basin_file);
    if (found != files.end()) files.erase(found);
    files.insert(files.begin(), basin_file);
    if (files.size() > k_most_recent_files) files.resize(k_most_recent_files);
}

}  // namespace nivora
