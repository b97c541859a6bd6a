#pragma once

#include <chrono>
#include <cstdint>

#include "Canvas.h"
#include "Model.h"
#include "TestCard.h"
#ifdef QELTV_DECODER
#include "Decoder.h"
#endif

namespace screen {

/** The pictures of a path, one after the other, for one viewer. */
class PictureSource {
  public:
    /** @param width of the picture in pixels */
    PictureSource(uint32_t path, int width);

    /**
     * Waits for the next picture.
     *
     * @return the picture, valid until the next call; null after a while without a new one
     */
    const Canvas* next(const Model& model);

  private:
    using Clock = std::chrono::steady_clock;

    const uint32_t mPath;
    Canvas mCanvas;
    TestCard mCard;
#ifdef QELTV_DECODER
    std::shared_ptr<Decoder> mDecoder;
    Decoder::Reader mReader;
#endif
    Clock::time_point mDue = Clock::now();
    Clock::time_point mSent;
    bool mPlayed = true;
};

}  // namespace screen
