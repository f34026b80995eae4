// The shipped typeface as SDL_ttf renders it at the size that the program uses.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <SDL_surface.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

namespace {

constexpr int kSize = 20;
constexpr int kButtonHeight = 20;
constexpr int kButtonWidth = 260;
constexpr int kListingStep = 15; ///< lines of the debug listings, window pixels apart

using Surface = std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)>;

class TypefaceTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(TTF_Init(), 0) << TTF_GetError();
        font = TTF_OpenFont(VESK_SHIPPED_DATA "sample.ttf", kSize);
        ASSERT_NE(font, nullptr) << TTF_GetError();
    }

    void TearDown() override {
        if (font != nullptr) {
            TTF_CloseFont(font);
        }
        TTF_Quit();
    }

    Surface Render(const std::string& text) const {
        return {TTF_RenderText_Blended(font, text.c_str(), {255, 255, 255, 255}), &SDL_FreeSurface};
    }

    int Advance(char character) const {
        int advance = -1;
        TTF_GlyphMetrics(font, static_cast<Uint16>(character), nullptr, nullptr, nullptr, nullptr,
                         &advance);
        return advance;
    }

    TTF_Font* font = nullptr;
};

std::string Printable() {
    std::string all;
    for (char c = 0x20; c <= 0x7E; ++c) {
        all += c;
    }
    return all;
}

// One string per row, '#' for ink; '?' for any grey, which a crisp face has not.
std::vector<std::string> Ink(const SDL_Surface& surface) {
    std::vector<std::string> rows;
    for (int y = 0; y < surface.h; ++y) {
        const auto* pixels = reinterpret_cast<const Uint32*>(
            static_cast<const Uint8*>(surface.pixels) + y * surface.pitch);
        std::string row;
        for (int x = 0; x < surface.w; ++x) {
            SDL_Color color{};
            SDL_GetRGBA(pixels[x], surface.format, &color.r, &color.g, &color.b, &color.a);
            row += color.a == 0 ? '.' : color.a == 255 ? '#' : '?';
        }
        rows.push_back(row);
    }
    return rows;
}

TEST_F(TypefaceTest, EveryPrintableCharacterHasItsOwnGlyph) {
    std::map<std::vector<std::string>, char> seen;
    for (const char character : Printable()) {
        ASSERT_NE(TTF_GlyphIsProvided(font, static_cast<Uint16>(character)), 0) << character;
        const Surface glyph = Render(std::string(1, character));
        ASSERT_TRUE(glyph) << TTF_GetError();
        if (character >= '0' && character <= '9') {
            EXPECT_EQ(Advance(character), Advance('0')) << "figures align";
        }
        const auto [entry, fresh] = seen.emplace(Ink(*glyph), character);
        EXPECT_TRUE(fresh) << character << " looks like " << entry->second;
    }
}

// A line is all ink or clear, fills a button and no more, and the ink of lines in a listing never
// touches.
TEST_F(TypefaceTest, LinesFitButtonsAndListings) {
    EXPECT_LE(TTF_FontHeight(font), kButtonHeight);
    const Surface line = Render(Printable());
    ASSERT_TRUE(line) << TTF_GetError();
    EXPECT_LE(line->h, kButtonHeight);
    int first = line->h;
    int last = -1;
    const auto rows = Ink(*line);
    for (int y = 0; y < line->h; ++y) {
        EXPECT_EQ(rows[static_cast<std::size_t>(y)].find('?'), std::string::npos) << "grey " << y;
        if (rows[static_cast<std::size_t>(y)].find('#') != std::string::npos) {
            first = first > y ? y : first;
            last = y;
        }
    }
    EXPECT_GE(first, 1) << "below a button's upper border";
    EXPECT_LE(last, kButtonHeight - 2) << "above its lower border";
    EXPECT_LT(last - first + 1, kListingStep);
}

TEST_F(TypefaceTest, MenuTextsFitTheirButtons) {
    for (const char* text : {"Render cell border : false", "Render dungeon rooms : false",
                             "Render min spanning tree : false", "Render hallways : false",
                             "Hide player info", "Go to map location", "Show loaded assets",
                             "Show compasses on map", "Hide compasses on map"}) {
        const Surface line = Render(text);
        ASSERT_TRUE(line) << TTF_GetError();
        EXPECT_LE(line->w, kButtonWidth - 4) << text;
        for (const std::string& row : Ink(*line)) {
            EXPECT_NE(row.find('#'), 0U) << "ink on the button's left border: " << text;
        }
    }
}

// Text is never cut at its right end, though the last pixel of a letter lies outside its advance.
TEST_F(TypefaceTest, LastLetterIsWhole) {
    for (const char character : Printable()) {
        const Surface alone = Render(std::string(1, character));
        const Surface before = Render(std::string(1, character) + "|");
        ASSERT_TRUE(alone && before) << TTF_GetError();
        const auto rows = Ink(*alone);
        const auto longer = Ink(*before);
        const auto width = static_cast<std::size_t>(alone->w);
        for (std::size_t y = 0; y < rows.size(); ++y) {
            EXPECT_EQ(rows[y], longer[y].substr(0, width)) << character;
            EXPECT_EQ(longer[y].substr(width, 1).find('#'), std::string::npos) << character;
        }
    }
}

} // namespace
