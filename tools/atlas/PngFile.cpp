#include "atlas/PngFile.h"

#include <png.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// The values of pixels that a picture uses, numbered from 0: a short palette lets PNG pack several
// pixels into a byte.
class Palette {
public:
    explicit Palette(const std::vector<std::uint8_t>& pixels) {
        std::array<bool, 256> used{};
        for (const std::uint8_t pixel : pixels) {
            used[pixel] = true;
        }
        for (std::size_t pixel = 0; pixel < used.size(); ++pixel) {
            if (used[pixel]) {
                numbers[pixel] = static_cast<std::uint8_t>(Size());
                const Color color = Picture::ColorOf(static_cast<std::uint8_t>(pixel));
                colors.insert(colors.end(), {color.r, color.g, color.b});
            }
        }
    }

    std::size_t Size() const { return colors.size() / 3; }
    const std::uint8_t* Colors() const { return colors.data(); }
    std::uint8_t NumberOf(std::uint8_t pixel) const { return numbers[pixel]; }

private:
    std::array<std::uint8_t, 256> numbers{};
    std::vector<std::uint8_t> colors;
};

} // namespace

std::string WritePng(const Picture& picture, const std::string& file) {
    const Palette palette(picture.Pixels());
    std::vector<std::uint8_t> numbers(picture.Pixels());
    for (std::uint8_t& pixel : numbers) {
        pixel = palette.NumberOf(pixel);
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.Width());
    image.height = static_cast<png_uint_32>(picture.Height());
    image.format = PNG_FORMAT_RGB_COLORMAP;
    image.colormap_entries = static_cast<png_uint_32>(palette.Size());
    const bool written =
        png_image_write_to_file(&image, file.c_str(), 0, numbers.data(), 0, palette.Colors()) != 0;
    return written ? std::string() : std::string(image.message);
}
