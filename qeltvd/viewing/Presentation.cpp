#define LOG_TAG "qeltvd"

#include "Presentation.h"

#include <log/log.h>

#include <utility>

#include "ChannelIds.h"
#include "Stored.h"

namespace qeltvd {

using Callback = Notifier::Callback;

namespace {

/** Each of two parts of a channel number has 16 bits. */
constexpr uint32_t kPartLimit = 0xffff;

constexpr VideoPath::Region kWholeScreen{0, 0, QELTV_REGION_FULL, QELTV_REGION_FULL};
constexpr VideoPath::Region kInset{6500, 6500, 3000, 3000};
constexpr VideoPath::Region kLeftHalf{0, 2500, 5000, 5000};
constexpr VideoPath::Region kRightHalf{5000, 2500, 5000, 5000};

}  // namespace

Presentation::Presentation(Timers& timers, Notifier& notifier, ConfigItems& config,
                           ChannelDatabase& channels, Broadcast& broadcast, Guide& guide,
                           Inputs& inputs, Sound& sound, Power& power, PacketSockets& sockets,
                           std::function<std::string()> camName, ViewerShift shift)
        : mNotifier(notifier),
          mConfig(config),
          mChannels(channels),
          mBroadcast(broadcast),
          mInputs(inputs),
          mSound(sound),
          mPower(power),
          mGuide(guide),
          mSockets(sockets),
          mShift(std::move(shift)),
          mRights(config, channels, broadcast, guide, inputs, std::move(camName)),
          mPaths(mRights, inputs, guide, broadcast, *this),
          mContexts(notifier),
          mAlarm(timers, "the presentation", [this] { ring(); }) {
    mPaths.at(kSub).region = kInset;
    mInputs.setListener([this](int32_t source, bool on) { inputChanged(source, on); });
    mChannels.addListener([this](const ChannelChange& change) { channelsChanged(change); });
    mBroadcast.addListener([this](uint32_t changes) { broadcastChanged(changes); });
    mConfig.addListener([this](const ConfigItems::Item& item, Audience) {
        if (item.name == ViewingRights::kInputLockItem) blocksChanged();
    });
    mGuide.setListener([this] { blocksChanged(); });
    mPower.addListener([this](bool standby) {
        if (standby) stopAll();
    });
    if (changeSource(kMain, mConfig.value("system.power_on_source")) != kOk) {
        ALOGW("nothing to show: no channels");
    }
}

Presentation::~Presentation() {
    mInputs.setListener(nullptr);
    mGuide.setListener(nullptr);
}

std::optional<uint32_t> Presentation::pathOf(const std::string& name) {
    if (name.empty() || name == "main") return kMain;
    if (name == "sub") return kSub;
    return std::nullopt;
}

// Selecting

Code Presentation::select(uint32_t path, uint32_t channelId, bool banner) {
    if (mPower.standby()) return kRefused;
    const auto found = mChannels.pair(channelId);
    if (!found) return kNotFound;
    {
        Guard guard(mLock);
        if (!mPaths.available(path, Inputs::kTuner)) return kRefused;
    }
    // Without the lock: listeners of the channels may read what is shown.
    const auto code = static_cast<Code>(path == kMain ? mChannels.setCurrent(channelId)
                                                      : mChannels.setSecondCurrent(channelId));
    if (code != kOk) return code;

    Guard guard(mLock);
    if (!mPaths.available(path, Inputs::kTuner)) return kRefused;
    VideoPath& shown = mPaths.at(path);
    if (shown.channel && shown.channel->channelId != channelId) {
        shown.lastChannel = shown.channel->channelId;
    }
    shown.channel = found->first;
    shown.multiplex = found->second;
    shown.banner = banner;
    shown.source = Inputs::kTuner;
    begin(path);
    if (banner && path == kMain) setBanner(true);
    return kOk;
}

uint16_t Presentation::currentList() const {
    if (const auto current = mChannels.current()) return current->list;
    const auto lists = mChannels.lists();
    return lists.empty() ? uint16_t{0} : lists.front();
}

std::optional<Channel> Presentation::byNumber(uint16_t list, uint32_t major, uint32_t minor,
                                              bool exact) const {
    if (minor > kPartLimit || (minor != 0 && major > kPartLimit)) return std::nullopt;
    const uint32_t number = minor != 0 ? major << 16 | minor : major;
    if (auto channel = mChannels.byNumber(list, number)) return channel;
    if (exact) return std::nullopt;
    for (const Channel& channel : mChannels.find(list)) {
        if (channel.number >= number) return channel;
    }
    return std::nullopt;
}

Code Presentation::selectNumber(uint32_t path, uint32_t major, uint32_t minor, bool banner) {
    const auto channel = byNumber(currentList(), major, minor, true);
    return channel ? select(path, channel->channelId, banner) : kNotFound;
}

Code Presentation::selectServiceId(uint32_t path, uint16_t serviceId) {
    for (const Channel& channel : mChannels.find(currentList())) {
        if (channel.serviceId == serviceId) return select(path, channel.channelId, false);
    }
    return kNotFound;
}

Code Presentation::zap(uint32_t path, Direction direction) {
    const auto current = path == kMain ? mChannels.current() : mChannels.secondCurrent();
    std::optional<Channel> next;
    if (current) {
        next = mChannels.next(current->channelId, ChannelQuery::zapping(), direction);
    } else {
        next = mChannels.byIndex(currentList(), 0);
    }
    return next ? select(path, next->channelId, true) : kNotFound;
}

Code Presentation::selectLast(uint32_t path) {
    uint32_t channel = 0;
    {
        Guard guard(mLock);
        channel = mPaths.at(path).lastChannel;
    }
    return channel != 0 ? select(path, channel, true) : kNotFound;
}

Code Presentation::changeFrequency(uint32_t path, uint32_t kHz, uint32_t system,
                                   uint32_t polarisation) {
    if (mPower.standby()) return kRefused;
    if (kHz == 0) return kBadValue;
    std::optional<Multiplex> found;
    for (const uint16_t list : mChannels.lists()) {
        for (const Multiplex& multiplex : mChannels.multiplexes(list)) {
            if (multiplex.frequencyHz / 1000 != kHz) continue;
            if (system != 0 && static_cast<uint32_t>(multiplex.system) != system) continue;
            if (polarisation != 0 &&
                static_cast<uint32_t>(multiplex.polarisation) != polarisation) {
                continue;
            }
            if (!found) found = multiplex;
        }
    }
    Guard guard(mLock);
    if (!mPaths.available(path, Inputs::kTuner)) return kRefused;
    VideoPath& shown = mPaths.at(path);
    if (shown.channel) shown.lastChannel = shown.channel->channelId;
    shown.channel.reset();
    shown.multiplex = found;
    shown.source = Inputs::kTuner;
    begin(path);
    return kOk;
}

Code Presentation::changeSource(uint32_t path, int32_t source) {
    if (!Inputs::exists(source)) return kNotFound;
    if (mPower.standby()) return kRefused;
    if (source == Inputs::kTuner) {
        auto channel = path == kMain ? mChannels.current() : mChannels.secondCurrent();
        if (!channel) channel = mChannels.byIndex(currentList(), 0);
        return channel ? select(path, channel->channelId, false) : kNotFound;
    }
    Guard guard(mLock);
    if (!mPaths.available(path, source)) return kRefused;
    mPaths.at(path).source = source;
    mPaths.at(path).resource = QELTV_RESOURCE_PATH;
    begin(path);
    return kOk;
}

Code Presentation::stop(uint32_t path) {
    Guard guard(mLock);
    mPaths.stop(path);
    return kOk;
}

Code Presentation::start() {
    int32_t source = Inputs::kTuner;
    {
        Guard guard(mLock);
        if (mPaths.at(kMain).running()) return kOk;
        source = mPaths.at(kMain).source;
    }
    return changeSource(kMain, source);
}

void Presentation::stopAll() {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        Guard guard(mLock);
        mPaths.stop(path);
    }
}

int32_t Presentation::standBy(QELTV_POWER_EVENT how) {
    return mPower.powerDown(how);
}

// The steps of a selection

void Presentation::begin(uint32_t path) {
    mPaths.begin(path);
    schedule();
}

void Presentation::review() {
    mPaths.review();
    schedule();
}

void Presentation::stepped(uint32_t path, QELTV_BROADCAST_EVENT event) {
    const VideoPath& shown = mPaths.at(path);
    const Channel* const channel = shown.shownChannel();
    const uint32_t channelId = channel != nullptr ? channel->channelId : 0;
    if (shown.showsTv()) {
        mNotifier.event(&Callback::a_hidl_qeltvapi_broadcast_callback_fct, event,
                        {channelId, path, shown.error, shown.banner});
    }
    mContexts.notifyStep({path, event, shown.error, channelId});
    showPackets(path);
}

void Presentation::showPackets(uint32_t path) {
    const VideoPath& shown = mPaths.at(path);
    const Channel* const channel = shown.shownChannel();
    const uint32_t channelId = channel != nullptr ? channel->channelId : 0;
    // Viewers who are behind do not need the signal.
    const bool fails =
            shown.status == QELTV_TUNING_STOPPED ||
            (shown.status == QELTV_TUNING_FAILED && shown.error != QELTV_TUNING_NO_SIGNAL);
    if (!fails && channelId != 0 && mServed[path] == channelId && mShift.behind(channelId)) return;
    auto live = mPaths.service(path);
    mServed[path] = live ? channelId : 0;
    if (!live) {
        mSockets.show(path, nullptr);
        return;
    }
    mSockets.show(path, [this, channelId, live = std::move(live)] {
        auto packets = live();
        return packets ? mShift.packets(channelId, std::move(packets)) : nullptr;
    });
}

void Presentation::contentChanged(uint32_t path) {
    const QELTV_VIDEO_SOURCE_T video = mPaths.video(path);
    mNotifier.event(&Callback::a_hidl_qeltvapi_videoinfo_common_callback_fct, QELTV_VIDEO_FORMAT,
                    {path, video.width, video.height, video.frameRate, video.interlaced});
    mContexts.notifySource(path, video);
    mSound.notify(QELTV_AUDIO_TRACKS_CHANGED, path, mPaths.tracks(path).size());
}

SoundTracks::Wish Presentation::soundWish() const {
    SoundTracks::Wish wish;
    try {
        wish.language = mConfig.text("sound.audio_language");
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
    }
    uint32_t description = 0;
    wish.description =
            mSound.value(QELTV_AUDIO_DESCRIPTION_ON, &description) == kOk && description != 0;
    return wish;
}

void Presentation::broadcast(QELTV_BROADCAST_EVENT event, uint64_t first, uint64_t second,
                             uint64_t third) {
    mNotifier.event(&Callback::a_hidl_qeltvapi_broadcast_callback_fct, event,
                    {first, second, third});
}

void Presentation::schedule() {
    auto next = mPaths.due();
    const auto digits = mDigits.due();
    if (digits && (!next || *digits < *next)) next = digits;
    if (next) {
        mAlarm.set(*next);
    } else {
        mAlarm.clear();
    }
}

void Presentation::ring() {
    bool digits = false;
    {
        Guard guard(mLock);
        const auto now = Clock::now();
        mPaths.advance(now);
        digits = mDigits.due() && *mDigits.due() <= now;
        if (!digits) schedule();
    }
    if (!digits) return;
    finishDigits();
    Guard guard(mLock);
    schedule();
}

// What may be seen

bool Presentation::isBlockedNow(int32_t source) const {
    Guard guard(mLock);
    return !mPaths.unlocked(source) && mRights.inputBlocked(source);
}

Code Presentation::unlock(uint32_t path, bool unlocked) {
    Guard guard(mLock);
    if (!mPaths.at(path).running()) return kRefused;
    mPaths.setUnlocked(path, unlocked);
    review();
    return kOk;
}

void Presentation::swapUnlocked() {
    Guard guard(mLock);
    mPaths.swapUnlocked();
    review();
}

void Presentation::blocksChanged() {
    Guard guard(mLock);
    review();
}

void Presentation::camChanged() {
    Guard guard(mLock);
    review();
}

void Presentation::inputChanged(int32_t source, bool on) {
    const Inputs::Socket& socket = Inputs::socket(source);
    if (socket.gpio >= 0) mPower.driveGpio(static_cast<uint32_t>(socket.gpio), on);
    {
        Guard guard(mLock);
        review();
        if (!on || mPaths.at(kMain).source == source) return;
    }
    const bool jumps = mInputs.autoDetect(source) &&
                       (socket.type != QELTV_INPUT_SCART || mInputs.scartAutoJump());
    if (jumps && changeSource(kMain, source) != kOk) ALOGI("%s is not shown now", socket.name);
}

void Presentation::broadcastChanged(uint32_t changes) {
    // Text comes many times a second, and changes no picture.
    constexpr uint32_t kText = stream::kTeletextChanged | stream::kCaptionsChanged;
    if ((changes & ~kText) == 0) return;
    std::lock_guard<std::mutex> guard(mLock);
    review();
    if ((changes & (stream::kServicesChanged | stream::kFormatChanged)) != 0) {
        mPaths.announceContents();
    }
}

void Presentation::channelsChanged(const ChannelChange& change) {
    switch (change.kind) {
        case ChannelChange::Kind::kChannels:
        case ChannelChange::Kind::kChannelsRemoved:
        case ChannelChange::Kind::kList:
        case ChannelChange::Kind::kMultiplexes:
        case ChannelChange::Kind::kSatellites:
        case ChannelChange::Kind::kBissKeys:
            break;
        default:
            return;
    }
    Guard guard(mLock);
    mPaths.refresh(mChannels);
    review();
}

Presentation::Status Presentation::status(uint32_t path) const {
    Guard guard(mLock);
    const VideoPath& shown = mPaths.at(path);
    return {shown.source, shown.status, shown.error,
            shown.showsTv() ? shown.channel : std::nullopt};
}

std::optional<uint32_t> Presentation::pathWith(int32_t source) const {
    Guard guard(mLock);
    return mPaths.with(source);
}

std::optional<uint32_t> Presentation::tunerPath() const {
    return pathWith(Inputs::kTuner);
}

Reception Presentation::reception() const {
    Guard guard(mLock);
    const auto path = mPaths.with(Inputs::kTuner);
    return path ? mPaths.reception(*path) : Reception{};
}

void Presentation::setReception(uint32_t percent, std::optional<uint32_t> kHz) {
    Guard guard(mLock);
    mBroadcast.simulated().setStrength(percent, kHz);
    review();
}

QELTV_CONNECTION_T Presentation::connection(uint32_t path) const {
    Guard guard(mLock);
    return mPaths.connection(path);
}

QELTV_VIDEO_SOURCE_T Presentation::video(uint32_t path) const {
    Guard guard(mLock);
    return mPaths.video(path);
}

// Keys

bool Presentation::digitsKeyHandled() const {
    Guard guard(mLock);
    return mDigits.used();
}

void Presentation::resetDigitsKeyHandled() {
    Guard guard(mLock);
    mDigits.reset();
}

void Presentation::showBanner(bool visible) {
    Guard guard(mLock);
    setBanner(visible);
}

void Presentation::setBanner(bool visible) {
    mBanner = visible;
    broadcast(QELTV_BROADCAST_BANNER, visible);
}

Code Presentation::addDigit(char digit) {
    bool complete = false;
    {
        Guard guard(mLock);
        if (!mDigits.add(digit, Clock::now())) return kRefused;
        const DigitEntry::Number number = mDigits.number();
        broadcast(QELTV_BROADCAST_DIGITS, number.word(), number.keys);
        complete = mDigits.complete();
        schedule();
    }
    if (complete) finishDigits();
    return kOk;
}

void Presentation::finishDigits() {
    std::optional<DigitEntry::Number> number;
    {
        Guard guard(mLock);
        number = mDigits.take();
        if (!number) return;
        broadcast(QELTV_BROADCAST_DIGITS, number->word(), number->keys, 1);
    }
    const Code code =
            stored([&] { return selectNumber(kMain, number->major, number->minor, true); });
    if (code == kNotFound) ALOGI("no channel has the number %s", number->text().c_str());
}

int32_t Presentation::key(int32_t key) {
    if (key == QELTV_KEY_POWER) {
        if (!mPower.standby()) return standBy(QELTV_POWER_DOWN);
        const int32_t code = mPower.wake(QELTV_WAKE_REMOTE, {0, static_cast<uint32_t>(key)});
        return code == kOk ? start() : code;
    }
    if (mPower.standby()) return kRefused;
    if (key >= QELTV_KEY_DIGIT_0 && key <= QELTV_KEY_DIGIT_9) {
        return addDigit(static_cast<char>('0' + (key - QELTV_KEY_DIGIT_0)));
    }
    switch (key) {
        case QELTV_KEY_PERIOD:
            return addDigit(DigitEntry::kPoint);
        case QELTV_KEY_OK:
            finishDigits();
            return kOk;
        case QELTV_KEY_VOLUME_UP:
        case QELTV_KEY_VOLUME_DOWN: {
            const int32_t code = mSound.step(QELTV_VOLUME_SPEAKER, key == QELTV_KEY_VOLUME_UP);
            return code < 0 ? code : kOk;
        }
        case QELTV_KEY_MUTE:
            return mSound.setMuted(QELTV_VOLUME_SPEAKER, !mSound.muted(QELTV_VOLUME_SPEAKER));
        case QELTV_KEY_INFO:
            showBanner(true);
            return kOk;
        case QELTV_KEY_CHANNEL_UP:
            return zap(kMain, Direction::kForwards);
        case QELTV_KEY_CHANNEL_DOWN:
            return zap(kMain, Direction::kBackwards);
        case QELTV_KEY_LAST_CHANNEL:
            return selectLast(kMain);
        case QELTV_KEY_AUDIO_TRACK:
            return nextLanguage(audioFocus());
        case QELTV_KEY_INPUT:
            return changeSource(kMain,
                                (status(kMain).source + 1) % static_cast<int32_t>(Inputs::kCount));
        default:
            break;
    }
    mNotifier.event(&Callback::a_hidl_qeltvapi_util_nousedkey_callback, key, {0});
    return kOk;
}

// Pictures

Code Presentation::setFrozen(uint32_t path, bool frozen) {
    Guard guard(mLock);
    VideoPath& shown = mPaths.at(path);
    if (frozen && !shown.plays()) return kRefused;
    if (shown.frozen == frozen) return kOk;
    shown.frozen = frozen;
    mNotifier.event(&Callback::a_hidl_qeltvapi_videoinfo_common_callback_fct, QELTV_VIDEO_FREEZE,
                    {path, frozen});
    return kOk;
}

bool Presentation::frozen(uint32_t path) const {
    Guard guard(mLock);
    return mPaths.at(path).frozen;
}

Code Presentation::setMuted(uint32_t path, bool muted) {
    Guard guard(mLock);
    VideoPath& shown = mPaths.at(path);
    if (shown.muted == muted) return kOk;
    shown.muted = muted;
    mNotifier.event(&Callback::a_hidl_qeltvapi_videoinfo_common_callback_fct, QELTV_VIDEO_MUTE,
                    {path, muted});
    return kOk;
}

bool Presentation::muted(uint32_t path) const {
    Guard guard(mLock);
    return mPaths.at(path).muted;
}

Code Presentation::setVideoOn(uint32_t path, bool on) {
    Guard guard(mLock);
    mPaths.at(path).videoOn = on;
    return kOk;
}

bool Presentation::videoOn(uint32_t path) const {
    Guard guard(mLock);
    return mPaths.at(path).running() && mPaths.at(path).videoOn;
}

Code Presentation::setRegion(uint32_t path, const Region& region) {
    if (region.width == 0 || region.height == 0 || region.width > QELTV_REGION_FULL ||
        region.height > QELTV_REGION_FULL || region.x > QELTV_REGION_FULL - region.width ||
        region.y > QELTV_REGION_FULL - region.height) {
        return kBadValue;
    }
    Guard guard(mLock);
    mPaths.at(path).region = region;
    return kOk;
}

Code Presentation::setTvMode(int32_t mode) {
    if (mode < QELTV_TV_NORMAL || mode > QELTV_TV_SIDE_BY_SIDE) return kBadValue;
    Guard guard(mLock);
    mTvMode = mode;
    const bool sideBySide = mode == QELTV_TV_SIDE_BY_SIDE;
    mPaths.at(kMain).region = sideBySide ? kLeftHalf : kWholeScreen;
    mPaths.at(kSub).region = sideBySide ? kRightHalf : kInset;
    if (mode == QELTV_TV_NORMAL) {
        mAudioFocus = kMain;
        mPaths.stop(kSub);
    }
    return kOk;
}

QELTV_SCREEN_T Presentation::screen(uint32_t path) const {
    QELTV_SCREEN_T screen{};
    screen.standby = mPower.standby();
    Guard guard(mLock);
    const Region& region = mPaths.at(path).region;
    screen.mode = static_cast<uint32_t>(mTvMode);
    screen.x = region.x;
    screen.y = region.y;
    screen.width = region.width;
    screen.height = region.height;
    screen.banner = mBanner && screen.standby == 0;
    screen.soundPath = mAudioFocus;
    mDigits.keys().copy(screen.digits, sizeof(screen.digits) - 1);
    return screen;
}

Code Presentation::startVideo(uint32_t path, int32_t source, const Region& region) {
    if (!Inputs::exists(source)) return kNotFound;
    if (region.x != 0 || region.y != 0 || region.width != 0 || region.height != 0) {
        const Code code = setRegion(path, region);
        if (code != kOk) return code;
    }
    const Code code = changeSource(path, source);
    if (code == kOk && path == kSub) {
        Guard guard(mLock);
        if (mTvMode == QELTV_TV_NORMAL) mTvMode = QELTV_TV_PICTURE_IN_PICTURE;
    }
    return code;
}

Code Presentation::startWithoutPath(uint32_t path, int32_t source) {
    const Code code = changeSource(path, source);
    if (code != kOk) return code;
    Guard guard(mLock);
    mPaths.at(path).resource = QELTV_RESOURCE_WITHOUT_PATH;
    return kOk;
}

Code Presentation::stopWithoutPath(uint32_t path) {
    if (resource(path) != QELTV_RESOURCE_WITHOUT_PATH) return kRefused;
    return stop(path);
}

QELTV_VIDEO_RESOURCE Presentation::resource(uint32_t path) const {
    Guard guard(mLock);
    return mPaths.at(path).running() ? mPaths.at(path).resource : QELTV_RESOURCE_NONE;
}

uint32_t Presentation::audioFocus() const {
    Guard guard(mLock);
    return mAudioFocus;
}

Code Presentation::setAudioFocus(uint32_t path, bool evenStopped) {
    Guard guard(mLock);
    if (!mPaths.at(path).running() && !evenStopped) return kRefused;
    mAudioFocus = path;
    return kOk;
}

bool Presentation::isAvailable(uint32_t path, int32_t source) const {
    Guard guard(mLock);
    return mPaths.available(path, source);
}

// Sound tracks

SoundTracks::Records Presentation::tracks(uint32_t path) const {
    Guard guard(mLock);
    return mPaths.tracks(path);
}

Code Presentation::selectTrack(uint32_t path, uint32_t track) {
    Guard guard(mLock);
    VideoPath& shown = mPaths.at(path);
    if (!shown.plays()) return kRefused;
    if (!SoundTracks::has(mPaths.tracks(path), track)) return kNotFound;
    if (shown.track == track) return kOk;
    shown.track = track;
    mSound.notify(QELTV_AUDIO_TRACK_SELECTED, path, track);
    return kOk;
}

Code Presentation::nextLanguage(uint32_t path) {
    const auto all = tracks(path);
    if (all.empty()) return kRefused;
    const auto next = SoundTracks::nextLanguage(all);
    return next ? selectTrack(path, *next) : kOk;
}

Code Presentation::selectLanguage(uint32_t path, const std::string& language) {
    const auto track = SoundTracks::withLanguage(tracks(path), language);
    return track ? selectTrack(path, *track) : kNotFound;
}

// Service contexts and stream components

Code Presentation::openContext(const std::string& name, uint32_t* context) {
    const auto path = pathOf(name);
    if (!path) return kNotFound;
    Guard guard(mLock);
    return mContexts.open(*path, context);
}

Code Presentation::closeContext(uint32_t context) {
    Guard guard(mLock);
    return mContexts.close(context);
}

std::optional<uint32_t> Presentation::pathOfContext(uint32_t context) const {
    Guard guard(mLock);
    return mContexts.pathOf(context);
}

void Presentation::setTag(uint32_t context, uint64_t tag) {
    Guard guard(mLock);
    mContexts.setTag(context, tag);
}

Code Presentation::setBlock(uint32_t context, uint32_t key, const Bytes& block) {
    Guard guard(mLock);
    return mContexts.setBlock(context, key, block);
}

std::optional<Presentation::Bytes> Presentation::block(uint32_t context, uint32_t key) const {
    Guard guard(mLock);
    return mContexts.block(context, key);
}

Code Presentation::openComponent(uint32_t type, const std::string& name, uint32_t* component) {
    const auto path = pathOf(name);
    if (!path) return kNotFound;
    Guard guard(mLock);
    return mContexts.openComponent(type, *path, component);
}

Code Presentation::closeComponent(uint32_t component) {
    Guard guard(mLock);
    return mContexts.closeComponent(component);
}

Code Presentation::watchSource(uint32_t component, uint64_t tag) {
    Guard guard(mLock);
    return mContexts.watchSource(component, tag,
                                 [this](uint32_t path) { return mPaths.video(path); });
}

}  // namespace qeltvd
