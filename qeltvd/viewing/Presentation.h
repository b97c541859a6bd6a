#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Alarm.h"
#include "ChannelDatabase.h"
#include "Code.h"
#include "ConfigItems.h"
#include "DigitEntry.h"
#include "Guide.h"
#include "Inputs.h"
#include "Notifier.h"
#include "PacketSockets.h"
#include "Power.h"
#include "ServiceContexts.h"
#include "Sound.h"
#include "SoundTracks.h"
#include "VideoPaths.h"
#include "ViewingRights.h"
#include "layouts/presentation.h"

namespace qeltvd {

/** How viewers see a channel that is shifted in time. Called on any thread. */
struct ViewerShift {
    /** The packets of a channel for a viewer, given those that are broadcast. */
    std::function<std::unique_ptr<PacketSource>(uint32_t channelId,
                                                std::unique_ptr<PacketSource> live)>
            packets;
    /** Whether viewers of a channel see what was broadcast before. */
    std::function<bool(uint32_t channelId)> behind;
};

/**
 * What the television shows: two video paths, the one tuner that they share, and the service
 * contexts and stream components that look at them.
 *
 * A selection answers at once and goes on by itself, on the thread of the timers; every step is
 * notified. All functions may be called on any thread. Functions that take a path number expect 0
 * or 1.
 */
class Presentation : private VideoPaths::Observer {
  public:
    /** @param camName the name of the CAM, empty while none works; called in a lock of this */
    Presentation(Timers& timers, Notifier& notifier, ConfigItems& config, ChannelDatabase& channels,
                 Broadcast& broadcast, Guide& guide, Inputs& inputs, Sound& sound, Power& power,
                 PacketSockets& sockets, std::function<std::string()> camName, ViewerShift shift);
    ~Presentation();

    static constexpr uint32_t kMain = 0;
    static constexpr uint32_t kSub = 1;
    /** The number of a path by its name. */
    static std::optional<uint32_t> pathOf(const std::string& name);

    // Selecting

    /** Selects a channel. kRefused in standby and while the other path has the tuner. */
    [[nodiscard]] Code select(uint32_t path, uint32_t channelId, bool banner);
    /** Selects by number in the list of the current channel, with minor number if not 0. */
    [[nodiscard]] Code selectNumber(uint32_t path, uint32_t major, uint32_t minor, bool banner);
    [[nodiscard]] Code selectServiceId(uint32_t path, uint16_t serviceId);
    /** The next channel that is not to be skipped. */
    [[nodiscard]] Code zap(uint32_t path, Direction direction);
    [[nodiscard]] Code selectLast(uint32_t path);
    [[nodiscard]] Code changeFrequency(uint32_t path, uint32_t kHz, uint32_t system,
                                       uint32_t polarisation);
    /** Shows an input; the tuner with the channel that it had. */
    [[nodiscard]] Code changeSource(uint32_t path, int32_t source);
    /** Gives kOk. */
    Code stop(uint32_t path);
    /** The main path with what it showed last. */
    [[nodiscard]] Code start();
    void stopAll();
    /** Goes to standby: QELTV_POWER_DOWN or QELTV_POWER_SUSPEND. */
    int32_t standBy(QELTV_POWER_EVENT how);

    /** The channel that a number selects; the next one above if it need not be exact. */
    std::optional<Channel> byNumber(uint16_t list, uint32_t major, uint32_t minor,
                                    bool exact) const;
    /** The list that the current channel is in; the first one when there is none. */
    uint16_t currentList() const;

    /** A key of the remote control. */
    int32_t key(int32_t key);
    bool digitsKeyHandled() const;
    void resetDigitsKeyHandled();
    void showBanner(bool visible);

    // State

    struct Status {
        int32_t source;
        QELTV_TUNING_STATUS status;
        QELTV_TUNING_ERROR error;
        std::optional<Channel> channel;
    };
    Status status(uint32_t path) const;
    /** The path that has the tuner, if one has. */
    std::optional<uint32_t> tunerPath() const;
    /** Of the tuner; no signal while it is not in use. */
    Reception reception() const;
    /** Weakens all frequencies, or one, to a percentage of what they are. */
    void setReception(uint32_t percent, std::optional<uint32_t> kHz);
    QELTV_CONNECTION_T connection(uint32_t path) const;
    QELTV_VIDEO_SOURCE_T video(uint32_t path) const;
    /** Name of the CAM that descrambles; empty for none. */
    std::string camName() const { return mRights.camName(); }
    /** The CAM has come, gone, or been switched. */
    void camChanged();

    // Blocks

    /** Whether a viewer who chooses an input would see nothing. */
    bool isBlockedNow(int32_t source) const;
    /**
     * Shows what is blocked on a path until something else is selected, or blocks it again. The
     * rating lock holds again with the next programme.
     */
    [[nodiscard]] Code unlock(uint32_t path, bool unlocked);
    void swapUnlocked();
    /** Blocks of inputs or programmes have changed. */
    void blocksChanged();

    // Pictures

    [[nodiscard]] Code setFrozen(uint32_t path, bool frozen);
    bool frozen(uint32_t path) const;
    [[nodiscard]] Code setMuted(uint32_t path, bool muted);
    bool muted(uint32_t path) const;
    [[nodiscard]] Code setVideoOn(uint32_t path, bool on);
    bool videoOn(uint32_t path) const;

    using Region = VideoPath::Region;
    [[nodiscard]] Code setRegion(uint32_t path, const Region& region);
    [[nodiscard]] Code setTvMode(int32_t mode);
    /** What is on the screen beside the pictures, with the place of a path. */
    QELTV_SCREEN_T screen(uint32_t path) const;
    /** Starts a path with an input and a place; all zeros leaves the place. */
    [[nodiscard]] Code startVideo(uint32_t path, int32_t source, const Region& region);
    [[nodiscard]] Code startWithoutPath(uint32_t path, int32_t source);
    [[nodiscard]] Code stopWithoutPath(uint32_t path);
    QELTV_VIDEO_RESOURCE resource(uint32_t path) const;
    uint32_t audioFocus() const;
    /** Gives a path the sound. @param evenStopped one that shows nothing, too */
    [[nodiscard]] Code setAudioFocus(uint32_t path, bool evenStopped = false);
    /** Whether a path may show an input beside what the other path shows. */
    bool isAvailable(uint32_t path, int32_t source) const;
    /** The path that shows an input, if one does. */
    std::optional<uint32_t> pathWith(int32_t source) const;

    // Sound tracks

    SoundTracks::Records tracks(uint32_t path) const;
    [[nodiscard]] Code selectTrack(uint32_t path, uint32_t track);
    [[nodiscard]] Code nextLanguage(uint32_t path);
    [[nodiscard]] Code selectLanguage(uint32_t path, const std::string& language);

    // Service contexts and stream components

    using Bytes = ServiceContexts::Bytes;

    [[nodiscard]] Code openContext(const std::string& name, uint32_t* context);
    [[nodiscard]] Code closeContext(uint32_t context);
    std::optional<uint32_t> pathOfContext(uint32_t context) const;
    /** The tag of a selection, which its notifications carry. */
    void setTag(uint32_t context, uint64_t tag);
    /** Keeps a block with a context. */
    [[nodiscard]] Code setBlock(uint32_t context, uint32_t key, const Bytes& block);
    std::optional<Bytes> block(uint32_t context, uint32_t key) const;

    [[nodiscard]] Code openComponent(uint32_t type, const std::string& name, uint32_t* component);
    [[nodiscard]] Code closeComponent(uint32_t component);
    /** Notifies of the state of the source at once, and from then on of its changes. */
    [[nodiscard]] Code watchSource(uint32_t component, uint64_t tag);

  private:
    using Clock = Alarm::Clock;
    using Guard = std::lock_guard<std::mutex>;

    // With mLock held.
    void stepped(uint32_t path, QELTV_BROADCAST_EVENT event) override;
    void contentChanged(uint32_t path) override;
    SoundTracks::Wish soundWish() const override;
    void begin(uint32_t path);
    /** Has the sockets of a path follow what it plays. */
    void showPackets(uint32_t path);
    /** Lets the paths follow what has changed. */
    void review();
    void setBanner(bool visible);
    void broadcast(QELTV_BROADCAST_EVENT event, uint64_t first, uint64_t second = 0,
                   uint64_t third = 0);
    /** Sets the alarm for the step or the digits that are due first. */
    void schedule();

    // Without it.
    void ring();
    void inputChanged(int32_t source, bool on);
    void broadcastChanged(uint32_t changes);
    void channelsChanged(const ChannelChange& change);
    [[nodiscard]] Code addDigit(char digit);
    void finishDigits();

    Notifier& mNotifier;
    ConfigItems& mConfig;
    ChannelDatabase& mChannels;
    Broadcast& mBroadcast;
    Inputs& mInputs;
    Sound& mSound;
    Power& mPower;
    Guide& mGuide;
    PacketSockets& mSockets;
    const ViewerShift mShift;
    const ViewingRights mRights;

    mutable std::mutex mLock;
    // Guarded by mLock.
    VideoPaths mPaths;
    ServiceContexts mContexts;
    DigitEntry mDigits;
    bool mBanner = false;
    int32_t mTvMode = QELTV_TV_NORMAL;
    uint32_t mAudioFocus = kMain;
    /** The channels whose packets the sockets of the paths give; 0 for none. */
    std::array<uint32_t, QELTV_PATHS> mServed{};
    Alarm mAlarm;
};

}  // namespace qeltvd
