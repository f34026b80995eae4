#include "atlas/Picture.h"

#include "atlas/TileColors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

constexpr int kToneShift = 4;
constexpr std::uint8_t kFullCover = 15;

constexpr Color Scaled(Color color, int percent) {
    const auto part = [percent](int of) { return static_cast<std::uint8_t>(of * percent / 100); };
    return {part(color.r), part(color.g), part(color.b)};
}

// In the order of Tone. The overlays' colours are the game's, as far as it shows them.
constexpr std::array<std::pair<Tone, Color>, 16> kColors{{
    {Tone::Void, {12, 16, 24}},
    {Tone::Sea, kWaterTile},
    {Tone::SeaShade, Scaled(kWaterTile, 91)},
    {Tone::Hallway, kHallwayTile},
    {Tone::Room, kRoomTile},
    {Tone::Land, Scaled(kRoomTile, 130)},
    {Tone::Shore, {244, 228, 176}},
    {Tone::Grid, Scaled(kWaterTile, 135)},
    {Tone::Label, {214, 232, 240}},
    {Tone::Border, {255, 0, 0}},
    {Tone::Rooms, {255, 255, 0}},
    {Tone::Tree, {0, 255, 0}},
    {Tone::Hallways, {255, 0, 0}},
    {Tone::Spawns, {255, 0, 255}},
    {Tone::Compass, {255, 128, 0}},
    {Tone::Triangulation, {255, 255, 255}},
}};

constexpr bool AreInOrder() {
    std::size_t next = 0;
    for (const auto& [tone, color] : kColors) {
        if (static_cast<std::size_t>(tone) != next++) {
            return false;
        }
    }
    return next == static_cast<std::size_t>(Tone::Triangulation) + 1;
}
static_assert(AreInOrder());

constexpr Color kGraphColor{164, 202, 214};

// Three bits a row, from the top: 0 to 9, then the comma.
constexpr std::array<std::uint16_t, 11> kGlyphs{075557, 026227, 071747, 071717, 055711, 074717,
                                                074757, 071111, 075757, 075717, 000024};
constexpr std::int32_t kGlyphWidth = 3;
constexpr std::int32_t kGlyphHeight = 5;

std::uint16_t GlyphOf(char character) {
    if (character >= '0' && character <= '9') {
        return kGlyphs[static_cast<std::size_t>(character - '0')];
    }
    return character == ',' ? kGlyphs.back() : std::uint16_t{0};
}

// Islands and names, with their shadows, stay readable where lines of the graph pass.
bool IsAboveGraph(Tone tone) {
    return tone == Tone::Land || tone == Tone::Shore || tone == Tone::Label || tone == Tone::Void;
}

std::uint8_t PixelOf(Tone tone) {
    return static_cast<std::uint8_t>(static_cast<int>(tone) << kToneShift);
}

std::uint8_t Blend(std::uint8_t below, std::uint8_t above, int cover) {
    return static_cast<std::uint8_t>((below * (kFullCover - cover) + above * cover) / kFullCover);
}

} // namespace

std::string TextOf(Color color) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "#";
    for (const std::uint8_t part : {color.r, color.g, color.b}) {
        text += digits[part >> 4];
        text += digits[part & 15];
    }
    return text;
}

Picture::Picture(std::int32_t pictureWidth, std::int32_t pictureHeight)
    : width(pictureWidth), height(pictureHeight),
      pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0) {}

Color Picture::ColorOf(std::uint8_t pixel) {
    const std::size_t tone = pixel >> kToneShift;
    const int cover = pixel & kFullCover;
    const Color below = kColors[tone].second;
    return {Blend(below.r, kGraphColor.r, cover), Blend(below.g, kGraphColor.g, cover),
            Blend(below.b, kGraphColor.b, cover)};
}

Color Picture::ColorOf(Tone tone) {
    return kColors[static_cast<std::size_t>(tone)].second;
}

Color Picture::GraphColor() {
    return kGraphColor;
}

void Picture::Set(Vec2i point, Tone tone) {
    if (Holds(point)) {
        At(point) = PixelOf(tone);
    }
}

void Picture::Cover(Vec2i point, float share) {
    if (!Holds(point) || share <= 0.0f) {
        return;
    }
    const auto cover = static_cast<std::uint8_t>(std::min(share, 1.0f) * kFullCover + 0.5f);
    std::uint8_t& pixel = At(point);
    if (!IsAboveGraph(static_cast<Tone>(pixel >> kToneShift)) && cover > (pixel & kFullCover)) {
        pixel = static_cast<std::uint8_t>((pixel & ~kFullCover) | cover);
    }
}

void Picture::Fill(Area area, Tone tone) {
    const std::int32_t left = std::max(area.x, 0);
    const std::int32_t right = std::min(area.x + area.w, width);
    if (left >= right) {
        return;
    }
    for (std::int32_t y = std::max(area.y, 0); y < std::min(area.y + area.h, height); ++y) {
        std::fill_n(&At({left, y}), right - left, PixelOf(tone));
    }
}

void Picture::Outline(Area area, Tone tone) {
    Fill({area.x, area.y, area.w, 1}, tone);
    Fill({area.x, area.y + area.h - 1, area.w, 1}, tone);
    Fill({area.x, area.y, 1, area.h}, tone);
    Fill({area.x + area.w - 1, area.y, 1, area.h}, tone);
}

// Bresenham's line.
void Picture::Line(Vec2i from, Vec2i to, Tone tone) {
    const Vec2i reach{std::abs(to.x - from.x), -std::abs(to.y - from.y)};
    const Vec2i step{from.x < to.x ? 1 : -1, from.y < to.y ? 1 : -1};
    std::int32_t error = reach.x + reach.y;
    Set(from, tone);
    while (from != to) {
        const std::int32_t twice = 2 * error;
        if (twice >= reach.y) {
            error += reach.y;
            from.x += step.x;
        }
        if (twice <= reach.x) {
            error += reach.x;
            from.y += step.y;
        }
        Set(from, tone);
    }
}

// Walks along the axis on which the line is longer; across it, a pixel is covered as far as its
// centre lies within half the width of the line. Lines thinner than a pixel are fainter.
void Picture::GraphLine(Vec2i from, Vec2i to, float lineWidth) {
    const bool steep = std::abs(to.y - from.y) > std::abs(to.x - from.x);
    const auto turned = [steep](Vec2i point) { return steep ? Vec2i{point.y, point.x} : point; };
    Vec2i start = turned(from);
    Vec2i end = turned(to);
    if (start.x > end.x) {
        std::swap(start, end);
    }
    const Vec2f along = ToVec2f(end - start);
    const float length = std::sqrt(along.x * along.x + along.y * along.y);
    if (length == 0.0f) {
        return;
    }
    const float shrink = along.x / length; // of a distance across the axis to one from the line
    const float strength = std::min(lineWidth, 1.0f);
    const auto reach = static_cast<std::int32_t>(std::ceil((lineWidth / 2.0f + 0.5f) / shrink));
    const Vec2i size = turned({width, height});
    if (std::max(start.y, end.y) < -reach || std::min(start.y, end.y) > size.y + reach) {
        return;
    }
    const std::int32_t first = std::max(start.x, 0);
    const std::int32_t last = std::min(end.x, size.x - 1);
    for (std::int32_t x = first; x <= last; ++x) {
        const float centre =
            static_cast<float>(start.y) + along.y * static_cast<float>(x - start.x) / along.x;
        const auto middle = static_cast<std::int32_t>(std::floor(centre));
        for (std::int32_t y = middle - reach; y <= middle + reach + 1; ++y) {
            const float distance = std::abs(static_cast<float>(y) - centre) * shrink;
            Cover(turned({x, y}), (lineWidth / 2.0f + 0.5f - distance) * strength);
        }
    }
}

void Picture::Text(Vec2i upperLeft, std::string_view text, std::int32_t size) {
    Dots(upperLeft + Vec2i{size, size}, text, size, Tone::Void);
    Dots(upperLeft, text, size, Tone::Label);
}

void Picture::Dots(Vec2i upperLeft, std::string_view text, std::int32_t size, Tone tone) {
    for (const char character : text) {
        const std::uint16_t glyph = GlyphOf(character);
        for (std::int32_t dot = 0; dot < kGlyphWidth * kGlyphHeight; ++dot) {
            if ((glyph >> (kGlyphWidth * kGlyphHeight - 1 - dot) & 1) != 0) {
                const Vec2i at{dot % kGlyphWidth, dot / kGlyphWidth};
                Fill({upperLeft.x + at.x * size, upperLeft.y + at.y * size, size, size}, tone);
            }
        }
        upperLeft.x += (kGlyphWidth + 1) * size;
    }
}
