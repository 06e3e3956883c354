#include "plots/picture_form.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace nivora {

std::optional<PictureForm> picture_form(std::string_view ending) {
    constexpr std::array<std::pair<std::string_view, PictureForm>, 4> k_forms{{{"png", PictureForm::Png},
                                                                               {"svg", PictureForm::Svg},
                                                                               {"pdf", PictureForm::Pdf},
                                                                               {"bmp", PictureForm::Bmp}}};
    if (ending.starts_with('.')) ending.remove_prefix(1);
    const auto form = std::find_if(k_forms.begin(), k_forms.end(),
                                   [&](const auto& known) { return same_name(known.first, ending); });
    return form == k_forms.end() ? std::nullopt : std::optional{form->second};
}

}  // namespace nivora
