#include "batch/response_picture.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "base/units.h"
#include "batch/output_guard.h"
#include "plots/paint_methods.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <optional>

namespace nivora {
namespace {

constexpr PictureSize k_picture_size{.width = 1000, .height = 750, .dpi = 96.0};

/// A quantity of one climate.
using Quantity = std::function<std::optional<double>(const ResponseFigures& figures)>;

std::vector<double> different(std::span<const ResponsePoint> points, float ClimateChange::*change) {
    std::vector<double> values;
    values.reserve(points.size());
    for (const ResponsePoint& point : points) values.push_back(as_double(point.change.*change));
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

std::size_t place_in(const std::vector<double>& values, double value) {
    return static_cast<std::size_t>(std::lower_bound(values.begin(), values.end(), value) - values.begin());
}

std::optional<double> number(const std::optional<float>& value) {
    return value ? std::optional{as_double(*value)} : std::nullopt;
}

std::optional<double> day_number(const std::optional<DayCount>& day) {
    return day ? std::optional{static_cast<double>(*day)} : std::nullopt;
}

class Pictures {
public:
    Pictures(const ResponseHead& head, std::span<const ResponsePoint> points) : head_(head), points_(points) {
        const UnitWords& words = unit_words(head.units);
        x_ = {.name = fmt::format("Change of temperature, {}", words.temperature),
              .places = different(points, &ClimateChange::degrees)};
        y_ = {.name = "Factor of precipitation", .places = different(points, &ClimateChange::precipitation)};
    }

    void add(const std::string& suffix, const std::string& title, ContourValues kind,
             const Quantity& quantity) {
        ContourPicture picture{
            .title = title,
            .subtitle = fmt::format("{}, simulation {}; the winter ends on {}", head_.basin, head_.simulation,
                                    iso_date_text(head_.winter_end)),
            .x = x_,
            .y = y_,
            .values = {},
            .kind = kind,
            .marked_value = {},
            .marked_name = "present climate",
            .marked_point = SurfacePoint{0.0, 1.0}};
        picture.values.assign(x_.places.size() * y_.places.size(), as_double(k_missing));
        for (const ResponsePoint& point : points_) {
            if (!point.done()) continue;
            const std::size_t column = place_in(x_.places, as_double(point.change.degrees));
            const std::size_t row = place_in(y_.places, as_double(point.change.precipitation));
            if (const auto value = quantity(point.changed))
                picture.values[row * x_.places.size() + column] = *value;
            if (!picture.marked_value) picture.marked_value = quantity(point.present);
        }
        if (can_be_drawn(picture)) made.push_back({suffix, std::move(picture)});
    }

    std::vector<ResponsePicture> made;

private:
    const ResponseHead& head_;
    std::span<const ResponsePoint> points_;
    ContourAxis x_;
    ContourAxis y_;
};

}  // namespace

std::vector<ResponsePicture> response_pictures(const ResponseHead& head,
                                               std::span<const ResponsePoint> points) {
    Pictures pictures{head, points};
    const std::string volume = fmt::format("10^6 {}³", unit_words(head.units).length_letter);
    pictures.add("winter", "Runoff of the winter, " + volume, ContourValues::Numbers,
                 [](const ResponseFigures& each) { return number(each.winter); });
    pictures.add("summer", "Runoff of the summer, " + volume, ContourValues::Numbers,
                 [](const ResponseFigures& each) { return number(each.summer); });
    pictures.add("year", "Runoff of the year, " + volume, ContourValues::Numbers,
                 [](const ResponseFigures& each) { return number(each.year); });
    pictures.add("median-day", "Day by which half of the year's runoff has passed", ContourValues::Days,
                 [](const ResponseFigures& each) { return day_number(each.flow.median_day); });
    const std::size_t zones = points.empty() ? 0 : points.front().changed.snow.size();
    for (std::size_t zone = 0; zone < zones; ++zone) {
        const std::string letter = zone_letter(static_cast<int>(zone) + 1);
        pictures.add("last-snow-" + letter, "Last day of snow in zone " + letter, ContourValues::Days,
                     [zone](const ResponseFigures& each) {
                         return zone < each.snow.size() ? day_number(each.snow[zone]) : std::nullopt;
                     });
    }
    return std::move(pictures.made);
}

std::filesystem::path response_picture_file(const std::filesystem::path& named, const std::string& suffix) {
    std::filesystem::path file = named;
    file.replace_filename(named.stem());
    file += "-" + suffix;
    file += named.extension();
    return file;
}

void refuse_response_pictures(const std::filesystem::path& named, const std::filesystem::path& basin,
                              const std::optional<std::filesystem::path>& out, std::size_t zones) {
    std::vector<std::string> suffixes{"winter", "summer", "year", "median-day"};
    suffixes.reserve(suffixes.size() + zones);
    for (std::size_t zone = 1; zone <= zones; ++zone)
        suffixes.push_back("last-snow-" + zone_letter(static_cast<int>(zone)));
    std::vector<std::filesystem::path> never{basin};
    if (out) never.push_back(*out);
    for (const std::string& suffix : suffixes) {
        const auto file = response_picture_file(named, suffix);
        refuse_basin_as_output(file, basin);
        static_cast<void>(output_target(file, never));
    }
    static_cast<void>(paint_methods());
}

std::vector<std::filesystem::path> write_response_pictures(const std::filesystem::path& named,
                                                           const std::filesystem::path& basin,
                                                           const std::vector<ResponsePicture>& pictures) {
    const auto form = picture_form(path_text(named.extension()));
    if (!form) throw FileError(fmt::format("The file '{}' is not a picture by its name.", path_text(named)));
    std::vector<Drawing> drawings;
    std::vector<std::filesystem::path> files;
    drawings.reserve(pictures.size());
    files.reserve(pictures.size());
    for (const ResponsePicture& each : pictures) {
        files.push_back(response_picture_file(named, each.suffix));
        refuse_basin_as_output(files.back(), basin);
        drawings.push_back({.title = each.picture.title,
                            .draw = [&](Surface& surface) { draw_contours(surface, each.picture); }});
    }
    std::vector<std::string> contents;
    paint_methods().draw(drawings, k_picture_size, *form, contents);
    if (std::any_of(contents.begin(), contents.end(), [](const std::string& each) { return each.empty(); }))
        throw FileError("There is no room in memory for a picture.");
    for (std::size_t i = 0; i < files.size(); ++i) write_whole_file(files[i], contents[i], {basin});
    return files;
}

}  // namespace nivora
