#include "plots/paint_methods.h"

#include "base/program_module.h"

#include <utility>

namespace nivora {
namespace {

using MethodsOfModule = const PaintMethods* (*)();

}  // namespace

const PaintMethods& paint_methods() {
    static const PaintMethods& methods = *reinterpret_cast<MethodsOfModule>(
        module_function("nivora-paint.so", "nivora_paint_methods", "are no pictures and no PDF files"))();
    return methods;
}

std::string drawn_by_module(const Drawing& drawing, const PictureSize& size, PictureForm form) {
    std::vector<std::string> files;
    paint_methods().draw({&drawing, 1}, size, form, files);
    return std::move(files.front());
}

}  // namespace nivora
