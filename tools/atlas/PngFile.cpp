#include "atlas/PngFile.h"

#include "atlas/Parallel.h"

#include <png.h>

#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <new>
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
                colors.push_back({color.r, color.g, color.b});
            }
        }
    }

    std::size_t Size() const { return colors.size(); }
    const png_color* Colors() const { return colors.data(); }
    std::uint8_t NumberOf(std::uint8_t pixel) const { return numbers[pixel]; }

private:
    std::array<std::uint8_t, 256> numbers{};
    std::vector<png_color> colors;
};

// The bits of a pixel that tell so many colours apart.
int DepthFor(std::size_t colors) {
    return colors > 16 ? 8 : colors > 4 ? 4 : colors > 2 ? 2 : 1;
}

// libpng calls these and knows no exceptions: what the file throws waits until libpng has gone.
struct Target {
    OutputFile& file;
    std::exception_ptr failure;
};

void WriteBytes(png_structp png, png_bytep bytes, std::size_t count) {
    auto& target = *static_cast<Target*>(png_get_io_ptr(png));
    try {
        target.file.Write(bytes, count);
        return;
    } catch (...) {
        target.failure = std::current_exception();
    }
    png_error(png, "");
}

[[noreturn]] void Leave(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void Ignore(png_structp, png_const_charp) {}

// A writer of libpng's, with what it holds.
class Writer {
public:
    explicit Writer(Target& target)
        : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Leave, Ignore)),
          info(png == nullptr ? nullptr : png_create_info_struct(png)) {
        if (info != nullptr) {
            png_set_write_fn(png, &target, WriteBytes, nullptr);
        }
    }
    ~Writer() { png_destroy_write_struct(&png, &info); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    // False when libpng gave up. Nothing that it jumps over has a destructor.
    bool Write(const Picture& picture, const Palette& palette, std::vector<std::uint8_t>& row,
               Progress& progress) {
        if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) {
            return false;
        }
        WriteHead(picture, palette);
        const std::uint8_t* pixel = picture.Pixels().data();
        for (std::int32_t y = 0; y < picture.Height(); ++y) {
            for (std::uint8_t& number : row) {
                number = palette.NumberOf(*pixel++);
            }
            png_write_row(png, row.data());
            progress.Add();
        }
        png_write_end(png, info);
        return true;
    }

private:
    void WriteHead(const Picture& picture, const Palette& palette) {
        png_set_IHDR(png, info, static_cast<png_uint_32>(picture.Width()),
                     static_cast<png_uint_32>(picture.Height()), DepthFor(palette.Size()),
                     PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                     PNG_FILTER_TYPE_DEFAULT);
        png_set_PLTE(png, info, palette.Colors(), static_cast<int>(palette.Size()));
        png_set_sRGB(png, info, PNG_sRGB_INTENT_PERCEPTUAL);
        png_write_info(png, info);
        png_set_packing(png);
    }

    png_structp png;
    png_infop info;
};

} // namespace

void WritePng(const Picture& picture, OutputFile& file) {
    const Palette palette(picture.Pixels());
    std::vector<std::uint8_t> row(static_cast<std::size_t>(picture.Width()));
    Progress progress("packing", static_cast<std::size_t>(picture.Height()));
    Target target{file, nullptr};
    if (Writer(target).Write(picture, palette, row, progress)) {
        return;
    }
    if (target.failure) {
        std::rethrow_exception(target.failure);
    }
    throw std::bad_alloc(); // all else that libpng could lack
}
