#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qeltvd::stream {

class VbiDecoder;

/** How the pictures of a stream are coded, which is where they carry captions. */
enum class CaptionCarrier : uint8_t { kMpeg2, kH264, kH265 };

/**
 * Closed captions of line 21 (CEA-608) from the pictures of a video stream, in the order in which
 * pictures are shown.
 */
class CaptionDecoder {
  public:
    /** Channels 1 to 4 are captions, 5 to 8 text. */
    static constexpr uint8_t kChannels = 8;

    explicit CaptionDecoder(CaptionCarrier carrier);
    ~CaptionDecoder();
    CaptionDecoder(const CaptionDecoder&) = delete;
    CaptionDecoder& operator=(const CaptionDecoder&) = delete;

    /**
     * Takes one picture.
     *
     * @param presentation when it is shown and decoded, in ticks of 90 kHz; one without times is
     *                     shown at once
     */
    void push(const uint8_t* picture, size_t size, std::optional<uint64_t> presentation,
              std::optional<uint64_t> decoding);
    /** The next picture does not continue those before. */
    void interrupt();

    /** Rows that a channel shows, without those that are blank; UTF-8. */
    std::vector<std::string> rows(uint8_t channel) const;
    /** Bit 0 for channel 1: which channels have had text. */
    uint8_t channels() const { return mChannels; }
    /** Counts the changes of what channels show. */
    uint64_t changes() const { return mChanges; }

  private:
    /** The bytes of both fields that one picture carries. */
    struct Pairs {
        std::vector<std::array<uint8_t, 2>> fields[2];
    };

    void collect(const uint8_t* picture, size_t size, Pairs* pairs) const;
    /** Control codes come twice; the library sees to that on the first field alone. */
    bool isRepeated(const std::array<uint8_t, 2>& pair);
    void show(const Pairs& pairs);

    const CaptionCarrier mCarrier;
    std::unique_ptr<VbiDecoder> mLibrary;
    /** By presentation time, made continuous across its wrap. */
    std::map<int64_t, Pairs> mWaiting;
    int64_t mLastTime = 0;
    /** The control codes of the second field that have just come. */
    std::array<uint8_t, 2> mLastCommand{};
    uint8_t mChannels = 0;
    uint64_t mChanges = 0;
};

}  // namespace qeltvd::stream
