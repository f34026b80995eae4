// The shipped pictures, decoded by SDL_image as the program does, checked where the program cuts
// them.
#include <memory>
#include <ostream>
#include <set>
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

// A picture's pixels by place.
class Picture {
public:
    explicit Picture(const char* file) : surface(nullptr, &SDL_FreeSurface) {
        const Surface loaded = Load(file);
        if (loaded) {
            surface.reset(SDL_ConvertSurfaceFormat(loaded.get(), SDL_PIXELFORMAT_RGBA32, 0));
        }
    }

    bool Holds(SDL_Point p) const {
        return surface && p.x >= 0 && p.y >= 0 && p.x < surface->w && p.y < surface->h;
    }

    SDL_Color At(SDL_Point p) const {
        return reinterpret_cast<const SDL_Color*>(static_cast<const Uint8*>(surface->pixels) +
                                                  p.y * surface->pitch)[p.x];
    }

private:
    Surface surface;
};

// The pixels of a cut, row by row; none when it leaves the picture.
std::vector<SDL_Color> Pixels(const Cut& cut) {
    const Picture picture(cut.file);
    const SDL_Rect& source = cut.source;
    if (!picture.Holds({source.x + source.w - 1, source.y + source.h - 1})) {
        return {};
    }
    std::vector<SDL_Color> pixels;
    for (int i = 0; i < source.w * source.h; ++i) {
        pixels.push_back(picture.At({source.x + i % source.w, source.y + i / source.w}));
    }
    return pixels;
}

// The pixels just outside a rectangle, those at its corners too.
std::vector<SDL_Point> RingAround(const SDL_Rect& rect) {
    std::vector<SDL_Point> ring;
    for (int y = rect.y - 1; y <= rect.y + rect.h; ++y) {
        for (int x = rect.x - 1; x <= rect.x + rect.w; ++x) {
            const SDL_Point point{x, y};
            if (!SDL_PointInRect(&point, &rect)) {
                ring.push_back(point);
            }
        }
    }
    return ring;
}

unsigned Packed(SDL_Color color) {
    return static_cast<unsigned>(color.r) << 24U | static_cast<unsigned>(color.g) << 16U |
           static_cast<unsigned>(color.b) << 8U | static_cast<unsigned>(color.a);
}

std::set<unsigned> Colors(const std::vector<SDL_Color>& pixels) {
    std::set<unsigned> colors;
    for (const SDL_Color color : pixels) {
        colors.insert(Packed(color));
    }
    return colors;
}

class PictureTest : public ::testing::TestWithParam<Cut> {};
class TileTest : public PictureTest {};
class FigureTest : public PictureTest {};

// Without an alpha channel SDL copies tiles instead of blending them.
TEST_P(TileTest, IsOpaqueWithoutAlphaChannelAndNotFlat) {
    const Surface loaded = Load(GetParam().file);
    ASSERT_TRUE(loaded) << IMG_GetError();
    EXPECT_EQ(loaded->format->Amask, 0U);
    EXPECT_FALSE(SDL_HasColorKey(loaded.get()));
    const auto pixels = Pixels(GetParam());
    ASSERT_FALSE(pixels.empty()) << "the cut leaves the picture";
    EXPECT_GT(Colors(pixels).size(), 1U);
}

TEST_P(FigureTest, HasABodyOnAClearGround) {
    const auto pixels = Pixels(GetParam());
    ASSERT_FALSE(pixels.empty()) << "no such picture, or the cut leaves it";
    std::size_t body = 0;
    for (const SDL_Color color : pixels) {
        ASSERT_TRUE(color.a == 0 || color.a == 255) << "half clear pixel";
        ASSERT_TRUE(color.a == 255 || Packed(color) == 0) << "colour in a clear pixel";
        body += color.a == 255 ? 1U : 0U;
    }
    EXPECT_GT(body, pixels.size() / 4);
    EXPECT_LT(body, pixels.size());
    EXPECT_GE(Colors(pixels).size(), 5U) << "an outline, a ground and some colours";
}

// What touches the clear ground is the dark outline, so the silhouette stands out everywhere. The
// foam at a ship's water line is the exception.
TEST_P(FigureTest, HasADarkOutline) {
    const auto pixels = Pixels(GetParam());
    ASSERT_FALSE(pixels.empty());
    const SDL_Color foam{169, 214, 222, 255};
    const int width = GetParam().source.w;
    const int height = GetParam().source.h;
    const auto clear = [&](int x, int y) {
        return x < 0 || y < 0 || x >= width || y >= height ||
               pixels[static_cast<std::size_t>(y * width + x)].a == 0;
    };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const SDL_Color color = pixels[static_cast<std::size_t>(y * width + x)];
            const bool edge =
                clear(x - 1, y) || clear(x + 1, y) || clear(x, y - 1) || clear(x, y + 1);
            if (color.a != 0 && edge && Packed(color) != Packed(foam)) {
                EXPECT_LT(color.r + color.g + color.b, 150) << "at " << x << ", " << y;
            }
        }
    }
}

// What lies around a cut can show at its edge when the renderer rounds outward: another figure must
// not, a tile's own continuation may.
TEST_P(FigureTest, HasNothingBesideIt) {
    const Picture picture(GetParam().file);
    for (const SDL_Point point : RingAround(GetParam().source)) {
        if (picture.Holds(point)) {
            EXPECT_EQ(picture.At(point).a, 0) << "at " << point.x << ", " << point.y;
        }
    }
}

TEST_P(TileTest, ContinuesBeyondItsEdges) {
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
                const auto one = Pixels(group[i]);
                const auto other = Pixels(group[j]);
                std::size_t different = 0;
                for (std::size_t k = 0; k < one.size(); ++k) {
                    different += Packed(one[k]) != Packed(other[k]) ? 1U : 0U;
                }
                EXPECT_GT(different, one.size() / 10) << group[i].file << ", " << i << " and " << j;
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
