#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "Canvas.h"

struct AVFrame;
struct SwsContext;

namespace screen {

/**
 * The pictures of a streamed service. The television sends the packets of what a path shows to who
 * connects to a local stream socket, and closes the connection when the path shows something else
 * or what is simulated; the decoder connects again and again as long as it lives.
 */
class Decoder {
  public:
    /** @param socket path of the socket, which need not be there yet */
    explicit Decoder(std::string socket);
    ~Decoder();
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    /** The decoder of a path, shared by all who look at it and gone with the last one. */
    static std::shared_ptr<Decoder> of(uint32_t path);

    /**
     * Waits for the first picture.
     *
     * @return false if there is none in time, or if the path shows no stream, which is known sooner
     */
    bool waitForPicture(std::chrono::milliseconds timeout);

    /** The pictures for one viewer. */
    class Reader {
      public:
        Reader() = default;
        ~Reader();
        Reader(const Reader&) = delete;
        Reader& operator=(const Reader&) = delete;

        enum Result { kNone, kSame, kNew };
        /**
         * Waits for a picture that the reader has not had.
         *
         * @param canvas [out] receives the picture when it is new, as large as it fits at the
         * aspect ratio of the broadcast, on black
         * @return kNone while the path shows no stream, kSame when there is no newer picture in
         * time
         */
        Result next(Decoder& decoder, Canvas* canvas, std::chrono::milliseconds timeout);

      private:
        bool scale(const AVFrame& frame, Canvas* canvas);

        uint64_t mNumber = 0;
        SwsContext* mScaler = nullptr;
        std::unique_ptr<Canvas> mScaled;
    };

  private:
    class Session;

    void run();
    int connected() const;
    void show(const AVFrame* frame);
    void clear();

    const std::string mSocket;
    std::atomic<bool> mEnds{false};
    std::mutex mLock;
    std::condition_variable mNews;
    // Guarded by mLock.
    std::shared_ptr<AVFrame> mFrame;
    uint64_t mNumber = 0;
    /** Connections that have ended or could not be made. */
    uint64_t mAttempts = 0;
    std::thread mThread;
};

}  // namespace screen
