#include "PictureSource.h"

#include <thread>

#include "Pictures.h"

namespace screen {
namespace {

using std::chrono::milliseconds;

/** Time of a picture of the test card. */
constexpr milliseconds kCardTime{100};
#ifdef QELTV_DECODER
/** Shortest times of pictures that are decoded, for 25 and 12.5 a second. */
constexpr milliseconds kSmallTime{36};
constexpr milliseconds kLargeTime{76};
#endif
/** A picture that stands still is sent again, so that a connection that is gone is found. */
constexpr milliseconds kStillTime{2000};

}  // namespace

PictureSource::PictureSource(uint32_t path, int width)
        : mPath(path), mCanvas(width, width * 9 / 16), mCard(width, width * 9 / 16) {
#ifdef QELTV_DECODER
    mDecoder = Decoder::of(path);
#endif
}

const Canvas* PictureSource::next(const Model& model) {
#ifdef QELTV_DECODER
    const Shown decoded = model.shown();
    const ShownPath& streamed = decoded.paths[mPath];
    if (mayBeDecoded(streamed) && !streamed.frozen) {
        switch (mReader.next(*mDecoder, &mCanvas, kCardTime)) {
            case Decoder::Reader::kNew:
                // A large picture every second time: it takes a browser and this long to decode.
                std::this_thread::sleep_until(mDue);
                mDue = Clock::now() + (streamed.video.height > 720 ? kLargeTime : kSmallTime);
                return &mCanvas;
            case Decoder::Reader::kSame:
                return nullptr;
            case Decoder::Reader::kNone:
                break;
        }
    }
#endif
    std::this_thread::sleep_until(mDue);
    const auto now = Clock::now();
    mDue = std::max(mDue + kCardTime, now);
    const Shown shown = model.shown();
    const ShownPath& path = shown.paths[mPath];
    const bool plays = shown.reachable && path.plays() && !path.muted && !path.frozen;
    if (!plays && !mPlayed && now < mSent + kStillTime) return nullptr;
    // A frozen picture is the last one.
    if (plays || !path.frozen) {
        mCard.draw(&mCanvas, shown, mPath,
                   std::chrono::duration_cast<milliseconds>(now.time_since_epoch()));
    }
    mPlayed = plays;
    mSent = now;
    return &mCanvas;
}

}  // namespace screen
