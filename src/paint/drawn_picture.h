// A drawing as a picture, in memory and in files. Everything here needs a QGuiApplication, for its fonts.
#pragma once

#include "plots/picture_form.h"

#include <QByteArray>
#include <QImage>

namespace nivora {

/// A null image if the size is not possible, or if the system has no room for it.
[[nodiscard]] QImage drawn_image(const Drawing& drawing, const PictureSize& size);

/// The bytes of a picture file; empty if the size is not possible, or if the system refuses to make them. The
/// file tells its resolution. In an SVG file texts stay texts, without their font; a PDF file has one page
/// of the picture's size, with its fonts.
[[nodiscard]] QByteArray drawn_picture(const Drawing& drawing, const PictureSize& size, PictureForm form);

}  // namespace nivora
