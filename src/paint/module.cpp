// The module: pictures and PDF files behind plain functions.
#include "base/version.h"
#include "paint/drawn_picture.h"
#include "paint/font_application.h"
#include "paint/paint_pages.h"
#include "plots/paint_methods.h"

namespace nivora {
namespace {

void draw(std::span<const Drawing> drawings, const PictureSize& size, PictureForm form,
          std::vector<std::string>& files) {
    const FontApplication fonts;
    files.reserve(files.size() + drawings.size());
    for (const Drawing& drawing : drawings) files.push_back(drawn_picture(drawing, size, form).toStdString());
}

void write_pages(const std::filesystem::path& file, const PageSetup& setup, const LayOut& lay_out,
                 std::optional<Message>& problem) {
    const FontApplication fonts;
    problem = write_pdf(file, setup, lay_out);
}

constexpr PaintMethods k_methods{.draw = draw, .write_pdf = write_pages};

}  // namespace
}  // namespace nivora

extern "C" {

const char* nivora_module_version();
const char* nivora_module_version() { return nivora::k_version; }

const nivora::PaintMethods* nivora_paint_methods();
const nivora::PaintMethods* nivora_paint_methods() { return &nivora::k_methods; }
}
