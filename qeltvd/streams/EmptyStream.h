#pragma once

#include <cstdint>
#include <vector>

#include "StreamFacts.h"
#include "TableWriter.h"

namespace qeltvd::stream {

/**
 * The stream of a simulated service: a black picture of 352 by 288 in MPEG-2 and silence in MPEG
 * audio, which every player opens; about 100 kbit/s. A radio service has silence alone.
 */
class EmptyStream {
  public:
    static constexpr uint32_t kFramesPerSecond = 25;

    /** Its service with the components that the stream has, for the tables of others. */
    EmptyStream(uint16_t streamId, uint16_t originalNetworkId, uint16_t serviceId,
                const std::string& name, const std::string& provider, bool radio,
                const std::string& language);

    /** Appends the packets of the next frame, 1/25 of a second. */
    void frame(std::vector<uint8_t>* packets);
    const Service& service() const { return mService; }

  private:
    std::vector<uint8_t> picture() const;
    std::vector<uint8_t> sound() const;

    Service mService;
    std::vector<uint8_t> mAssociation, mMap, mDescription;
    PacketWriter mAssociationWriter, mMapWriter, mDescriptionWriter, mVideoWriter, mAudioWriter;
    uint64_t mFrame = 0;
    /** Frames of sound so far. */
    uint64_t mSounds = 0;
};

}  // namespace qeltvd::stream
