// The shipped pictures, decoded by SDL_image as the program does, checked where the program cuts
// them.
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <SDL_image.h>
#include <SDL_rect.h>
#include <SDL_surface.h>
#include <gtest/gtest.h>

namespace {

using Surface = std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)>;

struct Cut {
    const char* file;
    SDL_Rect source;
};

void PrintTo(const Cut& cut, std::ostream* out) {
    *out << cut.file << " at " << cut.source.x << ", " << cut.source.y;
}

const std::vector<Cut> kTiles{{"image.png", {100, 0, 16, 16}},
                              {"image.png", {100, 100, 16, 16}},
                              {"terrain_transition.png", {48, 64, 16, 16}}};
const std::vector<Cut> kShips{{"ships.png", {0, 0, 32, 32}},
                              {"ships.png", {0, 32, 32, 32}},
                              {"ships.png", {0, 64, 32, 32}},
                              {"ships.png", {0, 96, 32, 32}}};
const std::vector<Cut> kFigures{{"link_raw.png", {0, 0, 16, 16}},
                                {"link_raw.png", {30, 0, 16, 16}},
                                {"link_raw.png", {62, 0, 16, 16}},
                                {"link_raw.png", {91, 0, 16, 16}}};
const std::vector<Cut> kSingles{{"enemies.png", {0, 0, 16, 16}}, {"compass.png", {0, 0, 128, 128}}};
const std::vector<Cut> kWhole{{"hud_compass.png", {0, 0, 100, 100}},
                              {"island_icon.png", {0, 0, 11, 11}}};

Surface Load(const char* file) {
    return {IMG_Load((std::string(VESK_SHIPPED_DATA) + file).c_str()), &SDL_FreeSurface};
}

// A picture's pixels by place; clear black outside.
class Picture {
public:
    explicit Picture(const char* file)
        : surface(SDL_ConvertSurfaceFormat(Load(file).get(), SDL_PIXELFORMAT_RGBA32, 0),
                  &SDL_FreeSurface) {}

    bool Holds(SDL_Point p) const {
        return surface && p.x >= 0 && p.y >= 0 && p.x < surface->w && p.y < surface->h;
    }

    SDL_Color At(SDL_Point p) const {
        return !Holds(p)
                   ? SDL_Color{}
                   : reinterpret_cast<const SDL_Color*>(static_cast<const Uint8*>(surface->pixels) +
                                                        p.y * surface->pitch)[p.x];
    }

private:
    Surface surface;
};

// The places of a rectangle, row by row.
std::vector<SDL_Point> Places(const SDL_Rect& rect) {
    std::vector<SDL_Point> places;
    for (int i = 0; i < rect.w * rect.h; ++i) {
        places.push_back({rect.x + i % rect.w, rect.y + i / rect.w});
    }
    return places;
}

// The places just outside a rectangle, those at its corners too.
std::vector<SDL_Point> RingAround(const SDL_Rect& rect) {
    std::vector<SDL_Point> ring = Places({rect.x - 1, rect.y - 1, rect.w + 2, rect.h + 2});
    std::erase_if(ring, [&](SDL_Point point) { return SDL_PointInRect(&point, &rect); });
    return ring;
}

unsigned Packed(SDL_Color color) {
    return static_cast<unsigned>(color.r) << 24U | static_cast<unsigned>(color.g) << 16U |
           static_cast<unsigned>(color.b) << 8U | static_cast<unsigned>(color.a);
}

// The cut's colours, how often each. Fails when the cut leaves the picture.
std::map<unsigned, std::size_t> Colors(const Cut& cut) {
    const Picture picture(cut.file);
    std::map<unsigned, std::size_t> colors;
    for (const SDL_Point place : Places(cut.source)) {
        EXPECT_TRUE(picture.Holds(place)) << "no such picture, or the cut leaves it";
        ++colors[Packed(picture.At(place))];
    }
    return colors;
}

class TileTest : public ::testing::TestWithParam<Cut> {};
class FigureTest : public ::testing::TestWithParam<Cut> {};

// Without an alpha channel SDL copies tiles instead of blending them. What lies around a cut can
// show at its edge when the renderer rounds outward, so a tile continues there.
TEST_P(TileTest, IsOpaqueAndContinuesBeyondItsEdges) {
    const Surface loaded = Load(GetParam().file);
    ASSERT_TRUE(loaded) << IMG_GetError();
    EXPECT_EQ(loaded->format->Amask, 0U);
    EXPECT_FALSE(SDL_HasColorKey(loaded.get()));
    EXPECT_GT(Colors(GetParam()).size(), 1U);
    const Picture picture(GetParam().file);
    const SDL_Rect& source = GetParam().source;
    int beside = 0;
    for (const SDL_Point point : RingAround(source)) {
        if (picture.Holds(point)) {
            const SDL_Point same{source.x + (point.x - source.x + source.w) % source.w,
                                 source.y + (point.y - source.y + source.h) % source.h};
            EXPECT_EQ(Packed(picture.At(point)), Packed(picture.At(same)))
                << "at " << point.x << ", " << point.y;
            ++beside;
        }
    }
    EXPECT_GT(beside, 0);
}

TEST_P(FigureTest, HasABodyOnAClearGround) {
    auto colors = Colors(GetParam());
    EXPECT_GE(colors.size(), 5U) << "an outline, a ground and some colours";
    const auto pixels = static_cast<std::size_t>(GetParam().source.w * GetParam().source.h);
    const std::size_t body = pixels - colors[0];
    EXPECT_GT(body, pixels / 4);
    EXPECT_LT(body, pixels);
    colors.erase(0);
    for (const auto& [color, count] : colors) {
        EXPECT_EQ(color & 255U, 255U) << "half clear, or colour in a clear pixel";
    }
}

// What touches the clear ground is the dark outline, so the silhouette stands out everywhere; the
// foam at a ship's water line is the exception. No other figure is beside this one, where the
// renderer may round outward.
TEST_P(FigureTest, HasADarkOutlineAndNothingBesideIt) {
    const Picture picture(GetParam().file);
    const SDL_Rect& source = GetParam().source;
    const SDL_Color foam{169, 214, 222, 255};
    for (const SDL_Point point : RingAround(source)) {
        EXPECT_EQ(picture.At(point).a, 0) << "at " << point.x << ", " << point.y;
    }
    for (const auto& [x, y] : Places(source)) {
        const SDL_Color color = picture.At({x, y});
        const bool edge = picture.At({x - 1, y}).a == 0 || picture.At({x + 1, y}).a == 0 ||
                          picture.At({x, y - 1}).a == 0 || picture.At({x, y + 1}).a == 0;
        if (color.a != 0 && edge && Packed(color) != Packed(foam)) {
            EXPECT_LT(color.r + color.g + color.b, 150) << "at " << x << ", " << y;
        }
    }
}

std::vector<Cut> AllFigures() {
    std::vector<Cut> all;
    for (const auto& group : {kShips, kFigures, kSingles, kWhole}) {
        all.insert(all.end(), group.begin(), group.end());
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(Shipped, TileTest, ::testing::ValuesIn(kTiles));
INSTANTIATE_TEST_SUITE_P(Shipped, FigureTest, ::testing::ValuesIn(AllFigures()));

TEST(PictureTest, HeadingsAndGroundsDiffer) {
    for (const auto& group : {kShips, kFigures, kTiles}) {
        for (std::size_t i = 0; i < group.size(); ++i) {
            for (std::size_t j = i + 1; j < group.size(); ++j) {
                const Picture one(group[i].file);
                const Picture other(group[j].file);
                const auto here = Places(group[i].source);
                const auto there = Places(group[j].source);
                std::size_t different = 0;
                for (std::size_t k = 0; k < here.size(); ++k) {
                    different += Packed(one.At(here[k])) != Packed(other.At(there[k])) ? 1U : 0U;
                }
                EXPECT_GT(different, here.size() / 10)
                    << group[i].file << ", " << i << " and " << j;
            }
        }
    }
}

// Drawn whole, so the sizes decide the place: an odd icon has a pixel in its middle, and the plate
// reaches as far as the icons on its rim.
TEST(PictureTest, RadarPicturesHaveTheirSizes) {
    for (const Cut& cut : kWhole) {
        const Surface loaded = Load(cut.file);
        ASSERT_TRUE(loaded) << IMG_GetError();
        EXPECT_EQ(loaded->w, cut.source.w) << cut.file;
        EXPECT_EQ(loaded->h, cut.source.h) << cut.file;
    }
}

} // namespace
