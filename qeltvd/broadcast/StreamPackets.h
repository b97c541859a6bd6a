#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "PacketSource.h"
#include "StreamMultiplex.h"

namespace qeltvd {

/** The packets of a received service, as a stream of its own. Tunes to it as long as it lives. */
class StreamPackets : public PacketSource {
  public:
    /** Bytes that wait for a slow reader, a disk or a program. */
    static constexpr size_t kRecordingLimit = 16 << 20;
    static constexpr size_t kViewerLimit = 2 << 20;

    /** @param limit of the bytes that wait; later packets are lost until some have been read */
    StreamPackets(std::shared_ptr<StreamMultiplex> multiplex, uint16_t service, size_t limit);
    ~StreamPackets() override;

    int64_t arrived(std::chrono::milliseconds elapsed) override;
    size_t read(uint8_t* buffer, size_t size) override;
    void finish() override;
    std::optional<std::chrono::milliseconds> length() const override;

  private:
    /** Filled on the receiver's thread, which may outlast the source. */
    struct Queue {
        explicit Queue(size_t maximum) : limit(maximum) {}

        const size_t limit;
        std::mutex lock;
        // Guarded by lock.
        std::vector<uint8_t> packets;
        size_t read = 0;
        int64_t arrived = 0;
        /** Lengths in seconds by the number of bytes that they end at; of what is not read yet. */
        std::deque<std::pair<int64_t, double>> lengths;
        double length = 0;
        /** What the receivers before the present one have added to the length. */
        double before = 0;

        void push(const std::vector<uint8_t>& more, double seconds);
    };

    /** Takes the packets of the present receiver as soon as there is a programme map. */
    void attach();
    void detach();

    const std::shared_ptr<StreamMultiplex> mMultiplex;
    const uint16_t mService;
    const std::shared_ptr<Queue> mQueue;
    std::shared_ptr<stream::StreamReceiver> mReceiver;
    std::optional<uint32_t> mOutput;
    bool mFinished = false;
};

}  // namespace qeltvd
