#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Broadcast.h"
#include "ChannelDatabase.h"
#include "Guide.h"
#include "Inputs.h"
#include "SoundTracks.h"
#include "VideoPath.h"
#include "ViewingRights.h"
#include "layouts/presentation.h"

namespace qeltvd {

/**
 * The video paths and the one tuner that they share. A selection goes on in steps: the tuner
 * locks, the decoders start, or one of them fails. Used under its owner's lock; functions that
 * take a path number expect 0 or 1.
 */
class VideoPaths {
  public:
    using Clock = std::chrono::steady_clock;

    /** Called with the owner's lock held. */
    class Observer {
      public:
        /** A selection has made a step, or has ended. */
        virtual void stepped(uint32_t path, QELTV_BROADCAST_EVENT event) = 0;
        /** A path has started or ended to play a picture and its sound tracks. */
        virtual void contentChanged(uint32_t path) = 0;
        /** What the viewer wants to hear. */
        virtual SoundTracks::Wish soundWish() const = 0;

      protected:
        ~Observer() = default;
    };

    VideoPaths(const ViewingRights& rights, const Inputs& inputs, Guide& guide,
               const Broadcast& broadcast, Observer& observer);

    VideoPath& at(uint32_t path) { return mPaths[path]; }
    const VideoPath& at(uint32_t path) const { return mPaths[path]; }
    /** Whether a path may show an input beside what the other path shows. */
    bool available(uint32_t path, int32_t source) const;
    /** The path that shows an input, if one does. */
    std::optional<uint32_t> with(int32_t source) const;

    /** Begins to show the source and channel that have been set. */
    void begin(uint32_t path);
    void stop(uint32_t path);
    /** Does the steps that are due. */
    void advance(Clock::time_point now);
    /** When the next step is due. */
    std::optional<Clock::time_point> due() const;
    /** Lets the paths follow signals and rights that have changed. */
    void review();
    /** Notifies new contents of paths that play a channel. */
    void announceContents();
    /** Takes over changed channel data; what shows a channel that is gone fails. */
    void refresh(const ChannelDatabase& channels);

    bool unlocked(int32_t source) const;
    /** Rights of one path until its next selection. @throws StoreError */
    void setUnlocked(uint32_t path, bool unlocked);
    void swapUnlocked();

    /** Of the tuner for a path. */
    Reception reception(uint32_t path) const;
    QELTV_CONNECTION_T connection(uint32_t path) const;
    /** Zeros while the path plays no picture. */
    QELTV_VIDEO_SOURCE_T video(uint32_t path) const;
    SoundTracks::Records tracks(uint32_t path) const;

    /** Makes the live packets of what a path plays, on any thread; null if it plays no channel. */
    using Service = std::function<std::unique_ptr<PacketSource>()>;
    Service service(uint32_t path) const;

  private:
    /** Descrambles what a path shows with the key that there is for it. */
    void setKey(const VideoPath& path) const;
    void advance(uint32_t path);
    void end(uint32_t path, QELTV_TUNING_STATUS status, QELTV_TUNING_ERROR error,
             QELTV_BROADCAST_EVENT event);
    void fail(uint32_t path, QELTV_TUNING_ERROR error,
              QELTV_BROADCAST_EVENT event = QELTV_BROADCAST_FAILED);
    void review(uint32_t path);
    /** Has the guide watch the programmes of what a path shows. */
    void watchProgrammes(uint32_t path);
    bool hasSignal(const VideoPath& path) const;

    const ViewingRights& mRights;
    const Inputs& mInputs;
    Guide& mGuide;
    const Broadcast& mBroadcast;
    Observer& mObserver;
    std::array<VideoPath, QELTV_PATHS> mPaths;
};

}  // namespace qeltvd
