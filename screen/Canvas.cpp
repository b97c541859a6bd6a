#include "Canvas.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <stdexcept>

#include "unicode.h"

namespace screen {
namespace {

constexpr char32_t kReplacement = 0xfffd;

/** The characters of a UTF-8 text. */
std::u32string charactersOf(const std::string& text) {
    std::u32string characters;
    for (size_t i = 0; i < text.size();) {
        const auto first = static_cast<uint8_t>(text[i]);
        const size_t length = first < 0x80         ? 1
                              : first >> 5 == 0x6  ? 2
                              : first >> 4 == 0xe  ? 3
                              : first >> 3 == 0x1e ? 4
                                                   : 0;
        char32_t character = length == 1 ? first : first & (0x7fU >> length);
        bool valid = length != 0 && i + length <= text.size();
        for (size_t next = 1; valid && next < length; ++next) {
            const auto byte = static_cast<uint8_t>(text[i + next]);
            valid = byte >> 6 == 2;
            character = character << 6 | (byte & 0x3fU);
        }
        characters += valid ? character : kReplacement;
        i += valid ? length : 1;
    }
    return characters;
}

std::string utf8(const std::u32string& characters) {
    std::string text;
    for (const char32_t c : characters) tool::appendUtf8(&text, c);
    return text;
}

/** The faces, loaded once. FreeType allows one thread at a time in a face. */
class Fonts {
  public:
    static Fonts& instance() {
        // Never destroyed: threads that draw may outlive main().
        static Fonts& fonts = *new Fonts;
        return fonts;
    }

    std::mutex& lock() { return mLock; }
    FT_Face face(Face face) { return mFaces[static_cast<size_t>(face)]; }

  private:
    Fonts() {
        if (FT_Init_FreeType(&mLibrary) != 0) throw std::runtime_error("FreeType does not start");
        constexpr const char* kFiles[] = {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf",
                                          "DejaVuSansMono.ttf"};
        for (size_t i = 0; i < mFaces.size(); ++i) {
            const std::string path = std::string(QELTV_FONT_DIRECTORY "/") + kFiles[i];
            if (FT_New_Face(mLibrary, path.c_str(), 0, &mFaces[i]) != 0) {
                throw std::runtime_error("the font " + path +
                                         " cannot be read; install the package fonts-dejavu-core");
            }
        }
    }

    std::mutex mLock;
    FT_Library mLibrary = nullptr;
    std::array<FT_Face, 3> mFaces{};
};

/** With the lock held. */
double widthOf(const std::u32string& characters, double size, FT_Face face) {
    double units = 0;
    for (const char32_t c : characters) {
        if (FT_Load_Char(face, c, FT_LOAD_NO_SCALE) == 0) {
            units += static_cast<double>(face->glyph->metrics.horiAdvance);
        }
    }
    return units * size / face->units_per_EM;
}

}  // namespace

double textWidth(const std::string& text, double size, Face face) {
    Fonts& fonts = Fonts::instance();
    std::lock_guard<std::mutex> guard(fonts.lock());
    return widthOf(charactersOf(text), size, fonts.face(face));
}

std::string fitted(const std::string& text, double size, Face face, double width) {
    if (textWidth(text, size, face) <= width) return text;
    std::u32string characters = charactersOf(text);
    std::string shorter;
    do {
        if (characters.empty()) return "";
        characters.pop_back();
        while (!characters.empty() && characters.back() == U' ') characters.pop_back();
        shorter = utf8(characters + U"\u2026");
    } while (textWidth(shorter, size, face) > width);
    return shorter;
}

Canvas::Canvas(int width, int height)
        : mWidth(width),
          mHeight(height),
          mPixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 4) {}

void Canvas::blend(int x, int y, Colour colour, uint32_t alpha) {
    uint8_t* pixel = &mPixels[(static_cast<size_t>(y) * static_cast<size_t>(mWidth) +
                               static_cast<size_t>(x)) *
                              4];
    const auto mix = [&](uint8_t* below, uint8_t above) {
        *below = static_cast<uint8_t>((above * alpha + *below * (255 - alpha) + 127) / 255);
    };
    mix(pixel, colour.red);
    mix(pixel + 1, colour.green);
    mix(pixel + 2, colour.blue);
}

void Canvas::fill(const Box& box, Colour colour) {
    const auto edge = [](double at, int limit) {
        return static_cast<int>(std::clamp(std::round(at), 0.0, static_cast<double>(limit)));
    };
    const int left = edge(box.x, mWidth), right = edge(box.x + box.width, mWidth);
    const int top = edge(box.y, mHeight), bottom = edge(box.y + box.height, mHeight);
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) blend(x, y, colour, colour.alpha);
    }
}

void Canvas::text(const std::string& text, double x, double y, double size, Face face,
                  Colour colour, double width) {
    Fonts& fonts = Fonts::instance();
    std::lock_guard<std::mutex> guard(fonts.lock());
    const FT_Face ft = fonts.face(face);
    const std::u32string characters = charactersOf(text);
    const double natural = widthOf(characters, size, ft);
    if (natural <= 0) return;
    const double stretch = width > 0 ? width / natural : 1;
    const auto points = [](double value) {
        return static_cast<FT_F26Dot6>(std::max(64.0, std::round(value * 64)));
    };
    FT_Set_Char_Size(ft, points(size * stretch), points(size), 72, 72);
    const int baseline = static_cast<int>(std::lround(y));
    for (const char32_t c : characters) {
        if (FT_Load_Char(ft, c, FT_LOAD_RENDER | FT_LOAD_NO_HINTING) != 0) continue;
        const FT_Bitmap& bitmap = ft->glyph->bitmap;
        const int left = static_cast<int>(std::lround(x)) + ft->glyph->bitmap_left;
        const int top = baseline - ft->glyph->bitmap_top;
        for (int row = 0; row < static_cast<int>(bitmap.rows); ++row) {
            if (top + row < 0 || top + row >= mHeight) continue;
            const uint8_t* line = bitmap.buffer + std::ptrdiff_t{row} * bitmap.pitch;
            for (int column = 0; column < static_cast<int>(bitmap.width); ++column) {
                if (left + column < 0 || left + column >= mWidth || line[column] == 0) continue;
                blend(left + column, top + row, colour,
                      static_cast<uint32_t>(line[column]) * colour.alpha / 255);
            }
        }
        x += static_cast<double>(ft->glyph->linearHoriAdvance) / 65536;
    }
}

void Canvas::picture(const Canvas& other, const Box& box) {
    const int left = std::max(0, static_cast<int>(std::lround(box.x)));
    const int top = std::max(0, static_cast<int>(std::lround(box.y)));
    const int right = std::min(mWidth, static_cast<int>(std::lround(box.x + box.width)));
    const int bottom = std::min(mHeight, static_cast<int>(std::lround(box.y + box.height)));
    for (int y = top; y < bottom; ++y) {
        const auto row = std::clamp(static_cast<int>((y - box.y) * other.mHeight / box.height), 0,
                                    other.mHeight - 1);
        for (int x = left; x < right; ++x) {
            const auto column = std::clamp(static_cast<int>((x - box.x) * other.mWidth / box.width),
                                           0, other.mWidth - 1);
            const size_t from = (static_cast<size_t>(row) * static_cast<size_t>(other.mWidth) +
                                 static_cast<size_t>(column)) *
                                4;
            const size_t to = (static_cast<size_t>(y) * static_cast<size_t>(mWidth) +
                               static_cast<size_t>(x)) *
                              4;
            std::copy_n(&other.mPixels[from], 4, &mPixels[to]);
        }
    }
}

}  // namespace screen
