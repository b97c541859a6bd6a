#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Alarm.h"
#include "ChannelDatabase.h"
#include "ConfigItems.h"
#include "Guide.h"
#include "Inputs.h"
#include "Notifier.h"
#include "Power.h"
#include "Sound.h"
#include "layouts/presentation.h"

namespace qeltvd {

/** How well a frequency is received. */
struct Reception {
    bool signal = false;
    uint32_t level = 0;
    uint32_t quality = 0;
    uint32_t bitErrors = 0;
};

/**
 * What the television shows: two video paths, the one tuner that they share, and the service
 * contexts and stream components that look at them.
 *
 * A selection answers at once and goes on by itself, on the thread of the timers: the tuner locks,
 * the decoders start, or one of them fails; every step is notified. All functions may be called on
 * any thread. Functions that take a path number expect 0 or 1.
 */
class Presentation {
  public:
    /** @param camName the name of the CAM, empty while none works; called in a lock of this */
    Presentation(Timers& timers, Notifier& notifier, ConfigItems& config, ChannelDatabase& channels,
                 Guide& guide, Inputs& inputs, Sound& sound, Power& power,
                 std::function<std::string()> camName);
    ~Presentation();

    static constexpr uint32_t kMain = 0;
    static constexpr uint32_t kSub = 1;
    /** The number of a path by its name. */
    static std::optional<uint32_t> pathOf(const std::string& name);

    // Selecting. Each gives a code.

    /** Selects a channel. kRefused in standby and while the other path has the tuner. */
    int32_t select(uint32_t path, uint32_t channelId, bool banner);
    /** Selects by number in the list of the current channel, with minor number where not 0. */
    int32_t selectNumber(uint32_t path, uint32_t major, uint32_t minor, bool banner);
    int32_t selectServiceId(uint32_t path, uint16_t serviceId);
    /** The next channel that is not to be skipped. */
    int32_t zap(uint32_t path, bool backwards);
    int32_t selectLast(uint32_t path);
    int32_t changeFrequency(uint32_t path, uint32_t kHz, uint32_t system, uint32_t polarisation);
    /** Shows an input; the tuner with the channel that it had. */
    int32_t changeSource(uint32_t path, int32_t source);
    int32_t stop(uint32_t path);
    /** The main path with what it showed last. */
    int32_t start();
    void stopAll();
    /** Goes to standby: QELTV_POWER_DOWN or QELTV_POWER_SUSPEND. */
    int32_t standBy(QELTV_POWER_EVENT how);

    /** The channel that a number selects; the next one above where it need not be exact. */
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
    std::string camName() const { return mCamName(); }
    /** The CAM has come, gone, or been switched. */
    void camChanged();

    // Blocks

    /** Whether a viewer who chooses an input would see nothing. */
    bool isBlockedNow(int32_t source) const;
    /**
     * Shows what is blocked on a path until something else is selected, or blocks it again. The
     * rating lock holds again with the next programme.
     */
    int32_t unlock(uint32_t path, bool unlocked);
    void swapUnlocked();
    /** Blocks of inputs or programmes have changed. */
    void blocksChanged();

    // Pictures

    int32_t setFrozen(uint32_t path, bool frozen);
    bool frozen(uint32_t path) const;
    int32_t setMuted(uint32_t path, bool muted);
    bool muted(uint32_t path) const;
    int32_t setVideoOn(uint32_t path, bool on);
    bool videoOn(uint32_t path) const;

    struct Region {
        uint32_t x, y, width, height;
    };
    int32_t setRegion(uint32_t path, const Region& region);
    int32_t setTvMode(int32_t mode);
    /** Starts a path with an input and a place; all zeros leaves the place. */
    int32_t startVideo(uint32_t path, int32_t source, const Region& region);
    int32_t startWithoutPath(uint32_t path, int32_t source);
    int32_t stopWithoutPath(uint32_t path);
    QELTV_VIDEO_RESOURCE resource(uint32_t path) const;
    uint32_t audioFocus() const;
    /** Gives a path the sound; one that shows nothing only where told. */
    int32_t setAudioFocus(uint32_t path, bool evenStopped = false);
    /** Whether a path may show an input beside what the other path shows. */
    bool isAvailable(uint32_t path, int32_t source) const;
    /** The path that shows an input, if one does. */
    std::optional<uint32_t> pathWith(int32_t source) const;

    // Sound tracks

    std::vector<QELTV_AUDIO_TRACK_T> tracks(uint32_t path) const;
    int32_t selectTrack(uint32_t path, uint32_t track);
    int32_t nextLanguage(uint32_t path);
    int32_t selectLanguage(uint32_t path, const std::string& language);

    // Service contexts and stream components

    using Bytes = std::vector<uint8_t>;
    static constexpr size_t kMaximumContexts = 16;
    static constexpr size_t kMaximumAttribute = 4096;

    int32_t openContext(const std::string& name, uint32_t* context);
    int32_t closeContext(uint32_t context);
    std::optional<uint32_t> pathOfContext(uint32_t context) const;
    /** The tag of a selection, which its notifications carry. */
    void setTag(uint32_t context, uint64_t tag);
    /** Blocks that are kept with a context. */
    int32_t setBlock(uint32_t context, uint32_t key, const Bytes& block);
    std::optional<Bytes> block(uint32_t context, uint32_t key) const;

    int32_t openComponent(uint32_t type, const std::string& name, uint32_t* component);
    int32_t closeComponent(uint32_t component);
    /** Tells the state of the source at once, and from then on its changes. */
    int32_t watchSource(uint32_t component, uint64_t tag);

  private:
    using Clock = Alarm::Clock;

    struct Path {
        int32_t source = Inputs::kTuner;
        QELTV_TUNING_STATUS status = QELTV_TUNING_STOPPED;
        QELTV_TUNING_ERROR error = QELTV_TUNING_NO_ERROR;
        std::optional<Channel> channel;
        std::optional<Multiplex> multiplex;
        /** When the step that is under way is done. */
        std::optional<Clock::time_point> due;
        uint32_t lastChannel = 0;
        uint32_t track = 1;
        bool banner = false;
        bool unlocked = false;
        /** The programme for which that lifts the rating lock. */
        std::optional<uint16_t> unlockedEvent;
        bool frozen = false;
        bool muted = false;
        bool videoOn = true;
        QELTV_VIDEO_RESOURCE resource = QELTV_RESOURCE_NONE;
        Region region{0, 0, QELTV_REGION_FULL, QELTV_REGION_FULL};
    };
    struct Context {
        uint32_t path;
        std::optional<uint64_t> tag;
        std::map<uint32_t, Bytes> blocks;
    };
    struct Component {
        uint32_t type;
        uint32_t path;
        std::optional<uint64_t> tag;
    };

    // With mLock held, all of them.
    bool running(uint32_t path) const { return mPaths[path].status != QELTV_TUNING_STOPPED; }
    bool available(uint32_t path, int32_t source) const;
    bool blocked(const Path& path) const;
    bool programmeBlocked(const Path& path) const;
    /** Has the guide watch the programmes of what a path shows. */
    void watchProgrammes(uint32_t path);
    bool scrambled(const Path& path) const;
    bool inputsLocked() const;
    Reception receive(const std::optional<Multiplex>& multiplex) const;
    bool hasSignal(const Path& path) const;
    QELTV_VIDEO_SOURCE_T videoOf(const Path& path) const;
    std::vector<QELTV_AUDIO_TRACK_T> tracksOf(const Path& path) const;
    void chooseTrack(uint32_t path);
    void begin(uint32_t path);
    void advance(uint32_t path);
    void end(uint32_t path, QELTV_TUNING_STATUS status, QELTV_TUNING_ERROR error,
             QELTV_BROADCAST_EVENT event);
    /** What the signals and blocks of now make of the paths. */
    void review();
    void tell(uint32_t path, QELTV_BROADCAST_EVENT event);
    void tellVideo(uint32_t path);
    void tellSource(uint32_t handle, const Component& component);
    void broadcast(QELTV_BROADCAST_EVENT event, uint64_t first, uint64_t second = 0,
                   uint64_t third = 0);
    int32_t startOn(uint32_t path, int32_t source, QELTV_VIDEO_RESOURCE resource);

    void schedule();

    // Without it.
    void ring();
    void inputChanged(int32_t source, bool on);
    void channelsChanged(const ChannelChange& change);
    int32_t addDigit(char digit);
    void finishDigits();

    Notifier& mNotifier;
    ConfigItems& mConfig;
    ChannelDatabase& mChannels;
    Guide& mGuide;
    Inputs& mInputs;
    Sound& mSound;
    Power& mPower;
    const std::function<std::string()> mCamName;

    mutable std::mutex mLock;
    // Guarded by mLock.
    std::array<Path, QELTV_PATHS> mPaths;
    std::map<uint32_t, Context> mContexts;
    std::map<uint32_t, Component> mComponents;
    uint32_t mNextHandle = 0x100;
    std::string mDigits;
    std::optional<Clock::time_point> mDigitsDue;
    bool mDigitsHandled = false;
    uint32_t mStrength = 100;
    std::map<uint32_t, uint32_t> mStrengths;
    int32_t mTvMode = QELTV_TV_NORMAL;
    uint32_t mAudioFocus = kMain;
    Alarm mAlarm;
};

}  // namespace qeltvd
