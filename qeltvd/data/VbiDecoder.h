#pragma once

#include <libzvbi.h>

#include <new>

namespace qeltvd::stream {

/** A decoder of libzvbi with one function for its events. */
class VbiDecoder {
  public:
    /**
     * @param events kinds of libzvbi; it skips what no function is registered for
     * @param frame  seconds from one frame to the next; at another distance it misses some
     */
    VbiDecoder(int events, vbi_event_handler function, void* owner, double frame)
            : mDecoder(vbi_decoder_new()), mFrame(frame), mTime(frame) {
        if (mDecoder == nullptr) throw std::bad_alloc();
        if (!vbi_event_handler_register(mDecoder, events, function, owner)) {
            vbi_decoder_delete(mDecoder);
            throw std::bad_alloc();
        }
    }
    ~VbiDecoder() { vbi_decoder_delete(mDecoder); }
    VbiDecoder(const VbiDecoder&) = delete;
    VbiDecoder& operator=(const VbiDecoder&) = delete;

    /** Decodes the lines of one frame. */
    void decode(vbi_sliced* lines, int count) {
        vbi_decode(mDecoder, lines, count, mTime);
        mTime += mFrame;
    }
    vbi_decoder* get() const { return mDecoder; }

  private:
    vbi_decoder* const mDecoder;
    const double mFrame;
    double mTime;
};

}  // namespace qeltvd::stream
