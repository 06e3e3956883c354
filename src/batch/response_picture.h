// The pictures of a response: one for each quantity.
#pragma once

#include "batch/response_table.h"
#include "plots/contour_picture.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nivora {

/// A picture and what its file adds to the name that the user gave: "winter", "last-snow-A".
struct ResponsePicture {
    std::string suffix;
    ContourPicture picture;
};

/// Winter, summer and year volume, median day, and the last day of snow of each zone; without those that have
/// no value at all.
///
/// @param points all pairs, precipitation by precipitation for each temperature
[[nodiscard]] std::vector<ResponsePicture> response_pictures(const ResponseHead& head,
                                                             std::span<const ResponsePoint> points);

/// The file of a picture: response.png becomes response-winter.png.
[[nodiscard]] std::filesystem::path response_picture_file(const std::filesystem::path& named,
                                                          const std::string& suffix);

/// Refuses pictures that would replace the basin, the file of --out, or what can't be written, and
/// all of them if they can't be drawn. Called before the work. @throws FileError
void refuse_response_pictures(const std::filesystem::path& named, const std::filesystem::path& basin,
                              const std::optional<std::filesystem::path>& out, std::size_t zones);

/// Draws all pictures, then writes them. The ending of the name decides their form.
///
/// @return the files. @throws FileError
std::vector<std::filesystem::path> write_response_pictures(const std::filesystem::path& named,
                                                           const std::filesystem::path& basin,
                                                           const std::vector<ResponsePicture>& pictures);

}  // namespace nivora
