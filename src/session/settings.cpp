#include "session/settings.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr std::int32_t colour(int red, int green, int blue) { return red + green * 256 + blue * 65536; }

constexpr LineAttribute line(std::int32_t style, std::int32_t rgb) { return {style, rgb, 1, 0}; }

constexpr std::string_view k_template_name = "null.mdb";

}  // namespace

LineTable default_lines() {
    return {line(0, colour(128, 0, 0)),   line(1, colour(0, 128, 0)),     line(2, colour(0, 0, 128)),
            line(3, colour(128, 128, 0)), line(4, colour(128, 0, 128)),   line(0, colour(0, 128, 128)),
            line(1, colour(255, 0, 255)), line(2, colour(0, 255, 0)),     line(3, colour(0, 255, 255)),
            line(4, colour(90, 90, 0)),   line(1, colour(192, 192, 192)), line(1, colour(128, 128, 128)),
            line(1, colour(255, 0, 0)),   line(1, colour(0, 0, 255)),     line(1, colour(255, 255, 0)),
            line(1, colour(0, 0, 0))};
}

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
