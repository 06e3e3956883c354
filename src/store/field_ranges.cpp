#include "store/field_ranges.h"

#include <array>

namespace nivora {
namespace {

constexpr double k_any = k_no_range_end;
constexpr std::array k_variable_ranges{FieldRange{"Runoff", 0.0, k_any},  FieldRange{"Tmax", -200.0, 200.0},
                                       FieldRange{"Tmin", -200.0, 200.0}, FieldRange{"Tavg", -200.0, 200.0},
                                       FieldRange{"Precip", 0.0, k_any},  FieldRange{"SCA", 0.0, 1.0}};
constexpr std::array k_parameter_ranges{FieldRange{"Tcrit", -200.0, 200.0}, FieldRange{"LagTime", 0.0, k_any},
                                        FieldRange{"An", 0.0, k_any},       FieldRange{"Cs", 0.0, 1.0},
                                        FieldRange{"Cr", 0.0, 1.0},         FieldRange{"Xcoeff", 0.0, k_any}};

}  // namespace

std::span<const FieldRange> variable_ranges() { return k_variable_ranges; }
std::span<const FieldRange> parameter_ranges() { return k_parameter_ranges; }

const FieldRange* usable_range(std::string_view field) {
    for (const FieldRange& range : k_variable_ranges) {
        if (range.field == field) return &range;
    }
    for (const FieldRange& range : k_parameter_ranges) {
        if (range.field == field) return &range;
    }
    return nullptr;
}

}  // namespace nivora
