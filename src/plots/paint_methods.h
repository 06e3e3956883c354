// Pictures and PDF files of a program without windows, by a module beside it: Qt takes longer to load than
// most commands take to run.
#pragma once

#include "plots/picture_form.h"
#include "reports/printed_page.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nivora {

/// The functions of the module, which is built with the program that loads it.
struct PaintMethods {
    /// Appends the bytes of a picture file for each drawing. They are empty if the size is not possible, or
    /// if the system refuses to make them.
    void (*draw)(std::span<const Drawing> drawings, const PictureSize& size, PictureForm form,
                 std::vector<std::string>& files);

    /// Writes the pages of a job as a complete PDF file.
    ///
    /// @param problem the error, or what the set-up or the layout refused; nothing if the file was written
    void (*write_pdf)(const std::filesystem::path& file, const PageSetup& setup, const LayOut& lay_out,
                      std::optional<Message>& problem);
};

/// Loads the module at the first call; it stays loaded.
/// @throws FileError if it can't be loaded
[[nodiscard]] const PaintMethods& paint_methods();

/// The bytes of a picture file, as PaintMethods::draw makes them. @throws FileError as above
[[nodiscard]] std::string drawn_by_module(const Drawing& drawing, const PictureSize& size, PictureForm form);

}  // namespace nivora
