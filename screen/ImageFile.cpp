#include "ImageFile.h"

#include <png.h>
#include <turbojpeg.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace screen {
namespace {

constexpr int kQuality = 80;

bool endsIn(const std::string& text, const char* ending) {
    const size_t length = strlen(ending);
    return text.size() > length && text.compare(text.size() - length, length, ending) == 0;
}

std::vector<uint8_t> pngOf(const Canvas& canvas) {
    // Without the fourth byte of a pixel, which would be an alpha in the file.
    std::vector<uint8_t> rgb;
    rgb.reserve(canvas.stride() / 4 * 3 * static_cast<size_t>(canvas.height()));
    const uint8_t* const end =
            canvas.pixels() + canvas.stride() * static_cast<size_t>(canvas.height());
    for (const uint8_t* pixel = canvas.pixels(); pixel != end; pixel += 4) {
        rgb.insert(rgb.end(), pixel, pixel + 3);
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(canvas.width());
    image.height = static_cast<png_uint_32>(canvas.height());
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<uint8_t> bytes(size);
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, rgb.data(), 0, nullptr) == 0) {
        throw std::runtime_error(std::string("the picture cannot be encoded: ") + image.message);
    }
    bytes.resize(size);
    return bytes;
}

}  // namespace

JpegEncoder::JpegEncoder() : mHandle(tjInitCompress()) {
    if (mHandle == nullptr) throw std::runtime_error("the JPEG encoder does not start");
}

JpegEncoder::~JpegEncoder() {
    tjDestroy(mHandle);
}

std::pair<const uint8_t*, size_t> JpegEncoder::encode(const Canvas& canvas) {
    mBuffer.resize(tjBufSize(canvas.width(), canvas.height(), TJSAMP_420));
    uint8_t* bytes = mBuffer.data();
    unsigned long size = mBuffer.size();
    if (tjCompress2(mHandle, canvas.pixels(), canvas.width(), static_cast<int>(canvas.stride()),
                    canvas.height(), TJPF_RGBX, &bytes, &size, TJSAMP_420, kQuality,
                    TJFLAG_NOREALLOC | TJFLAG_FASTDCT) != 0) {
        throw std::runtime_error(std::string("the picture cannot be encoded: ") +
                                 tjGetErrorStr2(mHandle));
    }
    return {mBuffer.data(), size};
}

void writeImage(const Canvas& canvas, const std::string& path) {
    std::vector<uint8_t> bytes;
    if (endsIn(path, ".png")) {
        bytes = pngOf(canvas);
    } else if (endsIn(path, ".jpg") || endsIn(path, ".jpeg")) {
        JpegEncoder encoder;
        const auto [data, size] = encoder.encode(canvas);
        bytes.assign(data, data + size);
    } else {
        throw std::runtime_error(path + ": a picture is a .png or a .jpg file");
    }
    const std::string temporary = path + ".new";
    FILE* file = fopen(temporary.c_str(), "wb");
    const bool written =
            file != nullptr && fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const bool closed = file != nullptr && fclose(file) == 0;
    if (!written || !closed || rename(temporary.c_str(), path.c_str()) != 0) {
        const std::string reason = strerror(errno);
        remove(temporary.c_str());
        throw std::runtime_error(path + " cannot be written: " + reason);
    }
}

}  // namespace screen
