// A picture in memory, one byte per pixel: a tone in the upper half of the byte and, in the lower,
// how much of the pixel the lines of the neighbour graph cover.
//
// Points are pixels with x to the right and y down; whatever lies outside the picture is cut off. A
// graph line only ever raises a pixel's coverage, so lines may be drawn in any order and any number
// of times. Several threads may draw at once as long as they touch different pixels.
#pragma once

#include "gfx/Vec2.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

enum class Tone : std::uint8_t {
    Void, // beyond the world, and the shadows of names
    Sea,
    SeaShade, // of every other cluster
    Hallway,
    Room,
    Land,  // of a whole cell
    Shore, // around it
    Grid,
    Label,
    Border,
    Rooms,
    Tree,
    Hallways,
    Spawns,
    Compass,
    Triangulation
};

struct Color {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
};

/// As style sheets write a colour: #rrggbb.
std::string TextOf(Color color);

struct Area {
    std::int32_t x = 0; ///< upper left corner
    std::int32_t y = 0;
    std::int32_t w = 0;
    std::int32_t h = 0;
};

class Picture {
public:
    /// All void; both sides are at least 1.
    Picture(std::int32_t pictureWidth, std::int32_t pictureHeight);

    void Fill(Area area, Tone tone);
    /// The area's outermost pixels.
    void Outline(Area area, Tone tone);
    /// One pixel wide, both ends included.
    void Line(Vec2i from, Vec2i to, Tone tone);
    /// A line of the neighbour graph, with soft edges. It passes below whole cells of land and
    /// names.
    void GraphLine(Vec2i from, Vec2i to, float lineWidth);
    /// Digits and commas, 3 x 5 dots of `size` pixels each, with a shadow; other characters are
    /// left blank.
    void Text(Vec2i upperLeft, std::string_view text, std::int32_t size);

    std::int32_t Width() const { return width; }
    std::int32_t Height() const { return height; }
    const std::vector<std::uint8_t>& Pixels() const { return pixels; } ///< rows from the top

    /// The colour of a pixel's byte.
    static Color ColorOf(std::uint8_t pixel);
    static Color ColorOf(Tone tone);
    static Color GraphColor();

private:
    bool Holds(Vec2i point) const {
        return point.x >= 0 && point.x < width && point.y >= 0 && point.y < height;
    }
    std::uint8_t& At(Vec2i point) {
        return pixels[static_cast<std::size_t>(point.y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(point.x)];
    }
    void Set(Vec2i point, Tone tone);
    void Cover(Vec2i point, float share);
    void Dots(Vec2i upperLeft, std::string_view text, std::int32_t size, Tone tone);

    std::int32_t width;
    std::int32_t height;
    std::vector<std::uint8_t> pixels;
};
