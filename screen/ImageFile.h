#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Canvas.h"

namespace screen {

/** Pictures of a Canvas as bytes. Each throws std::runtime_error when memory does not suffice. */
class JpegEncoder {
  public:
    JpegEncoder();
    ~JpegEncoder();
    JpegEncoder(const JpegEncoder&) = delete;
    JpegEncoder& operator=(const JpegEncoder&) = delete;

    /** @return the JPEG file, valid until the next call */
    std::pair<const uint8_t*, size_t> encode(const Canvas& canvas);

  private:
    void* mHandle;
    std::vector<uint8_t> mBuffer;
};

/**
 * Writes a picture to a file, which is replaced as a whole.
 *
 * @param path a name that ends in ".png", ".jpg" or ".jpeg"
 * @throws std::runtime_error with the reason when the name has another ending or the file cannot
 *         be written
 */
void writeImage(const Canvas& canvas, const std::string& path);

}  // namespace screen
