#include "false_colour.h"

#include <stb_easy_font.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

#include "names.h"

namespace convert {
namespace {

struct Rgb {
    std::uint8_t r, g, b;
};

// From black through violet, red and yellow to white, so brighter reads as warmer.
constexpr std::array<Rgb, 7> kPalette{{{0, 0, 0},
                                       {40, 0, 100},
                                       {140, 0, 150},
                                       {220, 50, 40},
                                       {250, 150, 0},
                                       {255, 230, 70},
                                       {255, 255, 255}}};

constexpr Rgb kBackground{24, 24, 24};
constexpr Rgb kText{240, 240, 240};

Rgb ColourAt(double fraction) {
    const double position = std::clamp(fraction, 0.0, 1.0) * (kPalette.size() - 1);
    const std::size_t low = std::min(static_cast<std::size_t>(position), kPalette.size() - 2);
    const double t = position - static_cast<double>(low);
    const auto mix = [t](std::uint8_t a, std::uint8_t b) {
        return static_cast<std::uint8_t>(std::lround(a + (b - a) * t));
    };
    const Rgb a = kPalette[low], b = kPalette[low + 1];
    return {mix(a.r, b.r), mix(a.g, b.g), mix(a.b, b.b)};
}

// Labels drawn twice the font's size on frames tall enough to hold them.
std::uint32_t TextScale(std::uint32_t frameHeight) {
    return frameHeight >= 96 ? 2 : 1;
}

class Canvas {
public:
    explicit Canvas(Picture& picture) : mPicture(picture) {}

    void Fill(std::uint32_t x0, std::uint32_t y0, std::uint32_t x1, std::uint32_t y1, Rgb colour) {
        for (std::uint32_t y = y0; y < std::min(y1, mPicture.height); ++y) {
            for (std::uint32_t x = x0; x < std::min(x1, mPicture.width); ++x) {
                Set(x, y, colour);
            }
        }
    }
    void Set(std::uint32_t x, std::uint32_t y, Rgb colour) {
        std::uint8_t* pixel = &mPicture.rgb[(std::size_t{y} * mPicture.width + x) * 3];
        pixel[0] = colour.r;
        pixel[1] = colour.g;
        pixel[2] = colour.b;
    }
    // The font builds each glyph from rectangles; scale multiplies their size.
    void Text(std::uint32_t x, std::uint32_t y, std::string text, std::uint32_t scale) {
        struct Vertex {
            float x, y, z;
            std::uint8_t colour[4];
        };
        static_assert(sizeof(Vertex) == 16);
        std::array<Vertex, 4 * 600> vertices;
        const int quads = stb_easy_font_print(0, 0, text.data(), nullptr, vertices.data(),
                                              static_cast<int>(sizeof(vertices)));
        for (int q = 0; q < quads; ++q) {
            const Vertex* corner = &vertices[4 * static_cast<std::size_t>(q)];
            const auto at = [scale](float offset, std::uint32_t origin) {
                return origin + static_cast<std::uint32_t>(offset) * scale;
            };
            Fill(at(corner[0].x, x), at(corner[0].y, y), at(corner[2].x, x), at(corner[2].y, y),
                 kText);
        }
    }

private:
    Picture& mPicture;
};

std::string Label(float value, vz::ETempType unit) {
    char text[48];
    std::snprintf(text, sizeof(text), "%.1f %s", value, formats::UnitSymbol(unit));
    return text;
}

} // namespace

std::uint32_t ColourBarPanelWidth(std::uint32_t frameHeight) {
    return 72 * TextScale(frameHeight);
}

TemperatureRange ColourScale(std::span<const float> temperatures,
                             std::span<const std::uint8_t> status,
                             const std::optional<TemperatureRange>& requested) {
    if (requested) {
        return *requested;
    }
    const bool anyValid = std::ranges::find(status, vz::eLUTValid) != status.end();
    float low = INFINITY, high = -INFINITY;
    for (std::size_t i = 0; i < temperatures.size(); ++i) {
        if ((!anyValid || status[i] == vz::eLUTValid) && std::isfinite(temperatures[i])) {
            low = std::min(low, temperatures[i]);
            high = std::max(high, temperatures[i]);
        }
    }
    if (!(low < high)) {
        const float centre = std::isfinite(low) ? low : 0.0f;
        return {centre - 0.5f, centre + 0.5f};
    }
    return {low, high};
}

Picture FalseColourPicture(std::uint32_t width, std::uint32_t height,
                           std::span<const float> temperatures, TemperatureRange scale,
                           vz::ETempType unit) {
    const std::uint32_t s = TextScale(height);
    Picture picture;
    picture.width = width + ColourBarPanelWidth(height);
    picture.height = std::max(height, kMinPictureHeight);
    picture.rgb.resize(std::size_t{picture.width} * picture.height * 3);
    Canvas canvas(picture);
    canvas.Fill(0, 0, picture.width, picture.height, kBackground);

    const double span = static_cast<double>(scale.high) - scale.low;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const float value = temperatures[std::size_t{y} * width + x];
            canvas.Set(x, y, ColourAt((value - scale.low) / span));
        }
    }

    // The bar runs from the top label's middle (the maximum) down to the bottom one's.
    const std::uint32_t textHeight = 7 * s;
    const std::uint32_t barLeft = width + 6 * s, barRight = barLeft + 12 * s;
    const std::uint32_t barTop = textHeight / 2 + s, barBottom = picture.height - barTop;
    for (std::uint32_t y = barTop; y < barBottom; ++y) {
        const double fraction = static_cast<double>(barBottom - 1 - y) / (barBottom - 1 - barTop);
        canvas.Fill(barLeft, y, barRight, y + 1, ColourAt(fraction));
    }
    const std::uint32_t textLeft = barRight + 4 * s;
    canvas.Text(textLeft, s, Label(scale.high, unit), s);
    canvas.Text(textLeft, picture.height - textHeight - s, Label(scale.low, unit), s);
    return picture;
}

} // namespace convert
