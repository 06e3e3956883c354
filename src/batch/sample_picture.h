// The picture of the bands of a sample.
#pragma once

#include "plots/band_picture.h"
#include "plots/picture_form.h"
#include "search/sample.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace nivora {

/// The picture that a command of bands draws, as its options ask for it.
struct BandPictureFile {
    std::filesystem::path file;
    std::optional<PictureSize> size = {};  ///< nothing for the usual size
    double dpi = 96.0;
};

/// The texts of these options as they were given.
struct BandPictureTexts {
    std::string file;
    std::string size;
    std::string dpi = "96";
};

void add_picture_options(CLI::App& command, BandPictureTexts& texts);
[[nodiscard]] std::optional<BandPictureFile> picture_of(const BandPictureTexts& texts);

/// The share of the measured days that lie within the outer bands, in words.
[[nodiscard]] std::string bands_line(std::size_t kept, const FlowBands& bands);

/// @param runs of the sample, of which so many were `kept`
[[nodiscard]] BandPicture band_picture(const StudyProblem& problem, const FlowBands& bands, std::size_t kept,
                                       std::size_t runs);

/// The bytes of the picture. @throws FileError if there is no room for it in memory
[[nodiscard]] std::string drawn_bands(const BandPicture& picture, const BandPictureFile& wanted);

}  // namespace nivora
