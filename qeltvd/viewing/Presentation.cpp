#define LOG_TAG "qeltvd"

#include "Presentation.h"

#include <log/log.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "ChannelIds.h"
#include "Code.h"
#include "Stored.h"

namespace qeltvd {

using Callback = Notifier::Callback;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds kLockTime{120};
constexpr milliseconds kDecoderTime{80};
/** After the last digit of a channel number. */
constexpr milliseconds kDigitsTime{2000};
constexpr size_t kMaximumDigits = 4;
constexpr size_t kMinorDigits = 3;
constexpr char kInputLockItem[] = "parental.input_lock";
/** Below this quality the tuner does not lock. */
constexpr uint32_t kLockQuality = 20;

/** The language of a track as its four bytes. */
void setLanguage(QELTV_AUDIO_TRACK_T& track, const std::string& language) {
    memcpy(track.language, language.data(), std::min<size_t>(language.size(), 3));
}

QELTV_AUDIO_TRACK_T track(uint32_t number, uint32_t pid, const std::string& language,
                          QELTV_AUDIO_CODEC codec, uint8_t channels, QELTV_AUDIO_PURPOSE purpose,
                          uint32_t kbit) {
    QELTV_AUDIO_TRACK_T track{number,   pid,
                              {},       static_cast<uint8_t>(codec),
                              channels, static_cast<uint8_t>(purpose),
                              0,        48000,
                              kbit};
    setLanguage(track, language);
    return track;
}

}  // namespace

Presentation::Presentation(Timers& timers, Notifier& notifier, ConfigItems& config,
                           ChannelDatabase& channels, Guide& guide, Inputs& inputs, Sound& sound,
                           Power& power, std::function<std::string()> camName)
        : mNotifier(notifier),
          mConfig(config),
          mChannels(channels),
          mGuide(guide),
          mInputs(inputs),
          mSound(sound),
          mPower(power),
          mCamName(std::move(camName)),
          mAlarm(timers, "the presentation", [this] { ring(); }) {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path)
        mContexts[QELTV_CONTEXT_OF_MAIN + path] = {path, {}, {}};
    mPaths[kSub].region = {6500, 6500, 3000, 3000};
    mInputs.setListener([this](int32_t source, bool on) { inputChanged(source, on); });
    mChannels.addListener([this](const ChannelChange& change) { channelsChanged(change); });
    mConfig.addListener([this](const ConfigItems::Item& item, bool) {
        if (item.name == kInputLockItem) blocksChanged();
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

bool Presentation::available(uint32_t path, int32_t source) const {
    const uint32_t other = 1 - path;
    if (!running(other)) return true;
    const int32_t taken = mPaths[other].source;
    return taken != source && !Inputs::conflict(taken, source);
}

int32_t Presentation::select(uint32_t path, uint32_t channelId, bool banner) {
    if (mPower.standby()) return kRefused;
    const auto found = mChannels.pair(channelId);
    if (!found) return kNotFound;
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (!available(path, Inputs::kTuner)) return kRefused;
    }
    // Without the lock: listeners of the channels may ask for what is shown.
    const int32_t code =
            path == kMain ? mChannels.setCurrent(channelId) : mChannels.setSecondCurrent(channelId);
    if (code != kOk) return code;

    std::lock_guard<std::mutex> guard(mLock);
    if (!available(path, Inputs::kTuner)) return kRefused;
    Path& shown = mPaths[path];
    if (shown.channel && shown.channel->channelId != channelId) {
        shown.lastChannel = shown.channel->channelId;
    }
    shown.channel = found->first;
    shown.multiplex = found->second;
    shown.banner = banner;
    shown.source = Inputs::kTuner;
    begin(path);
    if (banner && path == kMain) broadcast(QELTV_BROADCAST_BANNER, 1);
    return kOk;
}

uint16_t Presentation::currentList() const {
    if (const auto current = mChannels.current()) return current->list;
    const auto lists = mChannels.lists();
    return lists.empty() ? uint16_t{0} : lists.front();
}

std::optional<Channel> Presentation::byNumber(uint16_t list, uint32_t major, uint32_t minor,
                                              bool exact) const {
    // Each of two parts has 16 bits of the number.
    if (minor > 0xffff || (minor != 0 && major > 0xffff)) return std::nullopt;
    const uint32_t number = minor != 0 ? major << 16 | minor : major;
    if (auto channel = mChannels.byNumber(list, number)) return channel;
    if (exact) return std::nullopt;
    for (const Channel& channel : mChannels.find(list)) {
        if (channel.number >= number) return channel;
    }
    return std::nullopt;
}

int32_t Presentation::selectNumber(uint32_t path, uint32_t major, uint32_t minor, bool banner) {
    const auto channel = byNumber(currentList(), major, minor, true);
    return channel ? select(path, channel->channelId, banner) : kNotFound;
}

int32_t Presentation::selectServiceId(uint32_t path, uint16_t serviceId) {
    for (const Channel& channel : mChannels.find(currentList())) {
        if (channel.serviceId == serviceId) return select(path, channel.channelId, false);
    }
    return kNotFound;
}

int32_t Presentation::zap(uint32_t path, bool backwards) {
    const auto current = path == kMain ? mChannels.current() : mChannels.secondCurrent();
    std::optional<Channel> next;
    if (current) {
        next = mChannels.next(current->channelId, ChannelQuery::zapping(),
                              backwards ? Direction::kBackwards : Direction::kForwards);
    } else {
        next = mChannels.byIndex(currentList(), 0);
    }
    return next ? select(path, next->channelId, true) : kNotFound;
}

int32_t Presentation::selectLast(uint32_t path) {
    uint32_t channel = 0;
    {
        std::lock_guard<std::mutex> guard(mLock);
        channel = mPaths[path].lastChannel;
    }
    return channel != 0 ? select(path, channel, true) : kNotFound;
}

int32_t Presentation::changeFrequency(uint32_t path, uint32_t kHz, uint32_t system,
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
    std::lock_guard<std::mutex> guard(mLock);
    if (!available(path, Inputs::kTuner)) return kRefused;
    Path& shown = mPaths[path];
    if (shown.channel) shown.lastChannel = shown.channel->channelId;
    shown.channel.reset();
    shown.multiplex = found;
    shown.source = Inputs::kTuner;
    begin(path);
    return kOk;
}

int32_t Presentation::startOn(uint32_t path, int32_t source, QELTV_VIDEO_RESOURCE resource) {
    Path& shown = mPaths[path];
    if (!available(path, source)) return kRefused;
    shown.source = source;
    shown.resource = resource;
    begin(path);
    return kOk;
}

int32_t Presentation::changeSource(uint32_t path, int32_t source) {
    if (!Inputs::exists(source)) return kNotFound;
    if (mPower.standby()) return kRefused;
    if (source == Inputs::kTuner) {
        auto channel = path == kMain ? mChannels.current() : mChannels.secondCurrent();
        if (!channel) channel = mChannels.byIndex(currentList(), 0);
        return channel ? select(path, channel->channelId, false) : kNotFound;
    }
    std::lock_guard<std::mutex> guard(mLock);
    return startOn(path, source, QELTV_RESOURCE_PATH);
}

int32_t Presentation::stop(uint32_t path) {
    std::lock_guard<std::mutex> guard(mLock);
    if (running(path))
        end(path, QELTV_TUNING_STOPPED, QELTV_TUNING_NO_ERROR, QELTV_BROADCAST_STOPPED);
    mPaths[path].resource = QELTV_RESOURCE_NONE;
    return kOk;
}

int32_t Presentation::start() {
    int32_t source = Inputs::kTuner;
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (running(kMain)) return kOk;
        source = mPaths[kMain].source;
    }
    return changeSource(kMain, source);
}

void Presentation::stopAll() {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) stop(path);
}

int32_t Presentation::standBy(QELTV_POWER_EVENT how) {
    return mPower.powerDown(how);
}

// The steps of a selection

void Presentation::begin(uint32_t path) {
    Path& shown = mPaths[path];
    if (shown.resource == QELTV_RESOURCE_NONE) shown.resource = QELTV_RESOURCE_PATH;
    shown.unlocked = false;
    shown.unlockedEvent.reset();
    shown.frozen = false;
    shown.status = QELTV_TUNING_SEARCHES;
    shown.error = QELTV_TUNING_NO_ERROR;
    shown.due = Clock::now() + kLockTime;
    watchProgrammes(path);
    tell(path, QELTV_BROADCAST_SELECTING);
    schedule();
}

void Presentation::advance(uint32_t path) {
    Path& shown = mPaths[path];
    shown.due.reset();
    if (!hasSignal(shown)) {
        end(path, QELTV_TUNING_FAILED, QELTV_TUNING_NO_SIGNAL, QELTV_BROADCAST_FAILED);
        return;
    }
    const bool tuner = shown.source == Inputs::kTuner;
    if (shown.status == QELTV_TUNING_SEARCHES) {
        shown.status = QELTV_TUNING_LOCKED;
        // A frequency without a service stays as it is.
        if (!tuner || shown.channel) shown.due = Clock::now() + kDecoderTime;
        tell(path, QELTV_BROADCAST_LOCKED);
        return;
    }
    if (tuner && !shown.channel) return;
    if (blocked(shown)) {
        end(path, QELTV_TUNING_FAILED, QELTV_TUNING_BLOCKED, QELTV_BROADCAST_FAILED);
        return;
    }
    if (scrambled(shown)) {
        end(path, QELTV_TUNING_FAILED, QELTV_TUNING_SCRAMBLED, QELTV_BROADCAST_FAILED);
        return;
    }
    shown.status = QELTV_TUNING_PLAYS;
    shown.error = QELTV_TUNING_NO_ERROR;
    chooseTrack(path);
    tell(path, QELTV_BROADCAST_PLAYS);
    tellVideo(path);
    mSound.tell(QELTV_AUDIO_TRACKS_CHANGED, path, tracksOf(shown).size());
}

void Presentation::end(uint32_t path, QELTV_TUNING_STATUS status, QELTV_TUNING_ERROR error,
                       QELTV_BROADCAST_EVENT event) {
    Path& shown = mPaths[path];
    const bool played = shown.status == QELTV_TUNING_PLAYS;
    shown.status = status;
    shown.error = error;
    shown.frozen = false;
    shown.due.reset();
    tell(path, event);
    if (!played) return;
    tellVideo(path);
    mSound.tell(QELTV_AUDIO_TRACKS_CHANGED, path, 0);
}

void Presentation::review() {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        Path& shown = mPaths[path];
        switch (shown.status) {
            case QELTV_TUNING_LOCKED:
            case QELTV_TUNING_PLAYS:
                if (!hasSignal(shown)) {
                    end(path, QELTV_TUNING_FAILED, QELTV_TUNING_NO_SIGNAL,
                        QELTV_BROADCAST_SIGNAL_LOST);
                } else if (shown.status == QELTV_TUNING_PLAYS && blocked(shown)) {
                    end(path, QELTV_TUNING_FAILED, QELTV_TUNING_BLOCKED, QELTV_BROADCAST_FAILED);
                } else if (shown.status == QELTV_TUNING_PLAYS && scrambled(shown)) {
                    end(path, QELTV_TUNING_FAILED, QELTV_TUNING_SCRAMBLED, QELTV_BROADCAST_FAILED);
                }
                break;
            case QELTV_TUNING_FAILED:
                if (shown.error == QELTV_TUNING_NO_SIGNAL && hasSignal(shown)) {
                    const bool unlocked = shown.unlocked;
                    const auto unlockedEvent = shown.unlockedEvent;
                    begin(path);
                    shown.unlocked = unlocked;
                    shown.unlockedEvent = unlockedEvent;
                } else if ((shown.error == QELTV_TUNING_BLOCKED && !blocked(shown)) ||
                           (shown.error == QELTV_TUNING_SCRAMBLED && !scrambled(shown))) {
                    shown.status = QELTV_TUNING_LOCKED;
                    shown.due = Clock::now() + kDecoderTime;
                }
                break;
            default:
                break;
        }
    }
    schedule();
}

void Presentation::tell(uint32_t path, QELTV_BROADCAST_EVENT event) {
    const Path& shown = mPaths[path];
    const uint32_t channel =
            shown.source == Inputs::kTuner && shown.channel ? shown.channel->channelId : 0;
    if (shown.source == Inputs::kTuner) {
        mNotifier.event(&Callback::a_hidl_qeltvapi_broadcast_callback_fct, event,
                        {channel, path, shown.error, shown.banner});
    }
    for (const auto& [handle, context] : mContexts) {
        if (context.path != path) continue;
        mNotifier.notify(&Callback::a_hidl_x_svctx_listener_nfy_fct, handle,
                         static_cast<uint16_t>(event), static_cast<uint16_t>(shown.error),
                         static_cast<uint16_t>(path), context.tag.value_or(0));
        if (context.tag) {
            mNotifier.notify(&Callback::a_hidl_x_svctx_select_nfy_fct, handle,
                             static_cast<uint32_t>(event), channel,
                             static_cast<uint32_t>(shown.error), *context.tag);
        }
    }
}

void Presentation::broadcast(QELTV_BROADCAST_EVENT event, uint64_t first, uint64_t second,
                             uint64_t third) {
    mNotifier.event(&Callback::a_hidl_qeltvapi_broadcast_callback_fct, event,
                    {first, second, third});
}

void Presentation::tellVideo(uint32_t path) {
    const QELTV_VIDEO_SOURCE_T video = videoOf(mPaths[path]);
    mNotifier.event(&Callback::a_hidl_qeltvapi_videoinfo_common_callback_fct, QELTV_VIDEO_FORMAT,
                    {path, video.width, video.height, video.frameRate, video.interlaced});
    for (const auto& [handle, component] : mComponents) {
        if (component.path == path) tellSource(handle, component);
    }
}

void Presentation::tellSource(uint32_t handle, const Component& component) {
    if (!component.tag) return;
    const QELTV_VIDEO_SOURCE_T video = videoOf(mPaths[component.path]);
    const QELTV_SOURCE_DETECT what = video.width != 0 ? QELTV_SOURCE_DETECTED : QELTV_SOURCE_LOST;
    mNotifier.notify(&Callback::a_hidl_x_scc_vid_src_detect_nfy_fct, handle,
                     static_cast<uint32_t>(what), *component.tag, video.width, video.height);
}

/** Sets the alarm for the step or the digits that are due first. */
void Presentation::schedule() {
    std::optional<Clock::time_point> next = mDigitsDue;
    for (const Path& path : mPaths) {
        if (path.due && (!next || *path.due < *next)) next = path.due;
    }
    if (next) {
        mAlarm.set(*next);
    } else {
        mAlarm.clear();
    }
}

void Presentation::ring() {
    bool digits = false;
    {
        std::lock_guard<std::mutex> guard(mLock);
        const auto now = Clock::now();
        for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
            if (mPaths[path].due && *mPaths[path].due <= now) advance(path);
        }
        digits = mDigitsDue && *mDigitsDue <= now;
        if (!digits) schedule();
    }
    if (!digits) return;
    finishDigits();
    std::lock_guard<std::mutex> guard(mLock);
    schedule();
}

// What may be seen

Reception Presentation::receive(const std::optional<Multiplex>& multiplex) const {
    if (!multiplex) return {};
    const auto kHz = static_cast<uint32_t>(multiplex->frequencyHz / 1000);
    // Every frequency has a reception of its own, always the same.
    const uint32_t noise = kHz * 2654435761u >> 16;
    const auto weakened = mStrengths.find(kHz);
    const uint32_t strength = weakened != mStrengths.end() ? weakened->second : mStrength;
    Reception reception;
    reception.level = (55 + noise % 41) * strength / 100;
    reception.quality = (60 + noise / 41 % 40) * strength / 100;
    reception.signal = reception.quality >= kLockQuality;
    if (reception.quality < 60) {
        reception.bitErrors = (60 - reception.quality) * (60 - reception.quality) * 100;
    }
    return reception;
}

bool Presentation::hasSignal(const Path& path) const {
    return path.source == Inputs::kTuner ? receive(path.multiplex).signal
                                         : mInputs.hasSignal(path.source);
}

bool Presentation::inputsLocked() const {
    try {
        return mConfig.value(kInputLockItem) != 0;
    } catch (const StoreError& e) {
        // What cannot be told is not shown.
        ALOGE("%s", e.what());
        return true;
    }
}

bool Presentation::blocked(const Path& path) const {
    if (path.source == Inputs::kTuner && path.channel && programmeBlocked(path)) return true;
    if (path.unlocked) return false;
    if (path.source == Inputs::kTuner && path.channel &&
        (path.channel->flags & CHANNEL_FLAG_LOCKED) != 0) {
        return true;
    }
    return mInputs.blocked(path.source) && inputsLocked();
}

bool Presentation::programmeBlocked(const Path& path) const {
    try {
        const auto event = mGuide.present(path.channel->channelId);
        return event && event->id != path.unlockedEvent && mGuide.blocked(*event);
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
        return true;
    }
}

void Presentation::watchProgrammes(uint32_t path) {
    const Path& shown = mPaths[path];
    const bool channel = shown.source == Inputs::kTuner && shown.channel;
    mGuide.show(path, channel ? shown.channel->channelId : 0);
}

bool Presentation::scrambled(const Path& path) const {
    return path.source == Inputs::kTuner && path.channel &&
           (path.channel->flags & CHANNEL_FLAG_SCRAMBLED) != 0 && mCamName().empty() &&
           !mChannels.bissKeyFor(*path.channel);
}

bool Presentation::isBlockedNow(int32_t source) const {
    std::lock_guard<std::mutex> guard(mLock);
    for (const Path& path : mPaths) {
        if (path.source == source && path.unlocked) return false;
    }
    return mInputs.blocked(source) && inputsLocked();
}

int32_t Presentation::unlock(uint32_t path, bool unlocked) {
    std::lock_guard<std::mutex> guard(mLock);
    if (!running(path)) return kRefused;
    Path& shown = mPaths[path];
    shown.unlocked = unlocked;
    shown.unlockedEvent.reset();
    if (unlocked && shown.source == Inputs::kTuner && shown.channel) {
        const auto event = mGuide.present(shown.channel->channelId);
        if (event) shown.unlockedEvent = event->id;
    }
    review();
    return kOk;
}

void Presentation::swapUnlocked() {
    std::lock_guard<std::mutex> guard(mLock);
    std::swap(mPaths[kMain].unlocked, mPaths[kSub].unlocked);
    std::swap(mPaths[kMain].unlockedEvent, mPaths[kSub].unlockedEvent);
    review();
}

void Presentation::blocksChanged() {
    std::lock_guard<std::mutex> guard(mLock);
    review();
}

void Presentation::inputChanged(int32_t source, bool on) {
    const Inputs::Socket& socket = Inputs::socket(source);
    if (socket.gpio >= 0) mPower.driveGpio(static_cast<uint32_t>(socket.gpio), on);
    {
        std::lock_guard<std::mutex> guard(mLock);
        review();
        if (!on || mPaths[kMain].source == source) return;
    }
    const bool jumps = mInputs.autoDetect(source) &&
                       (socket.type != QELTV_INPUT_SCART || mInputs.scartAutoJump());
    if (jumps) changeSource(kMain, source);
}

void Presentation::channelsChanged(const ChannelChange& change) {
    switch (change.kind) {
        case ChannelChange::kChannels:
        case ChannelChange::kChannelsRemoved:
        case ChannelChange::kList:
        case ChannelChange::kMultiplexes:
        case ChannelChange::kSatellites:
        case ChannelChange::kBissKeys:
            break;
        default:
            return;
    }
    std::lock_guard<std::mutex> guard(mLock);
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        Path& shown = mPaths[path];
        if (!shown.channel) continue;
        const auto channel = mChannels.byRecord(shown.channel->list, shown.channel->recordId);
        if (channel) {
            // A channel that has been moved has another id.
            const bool moved = shown.channel->channelId != channel->channelId;
            shown.channel = channel;
            if (moved) watchProgrammes(path);
        } else if (shown.source == Inputs::kTuner && running(path) &&
                   shown.status != QELTV_TUNING_FAILED) {
            end(path, QELTV_TUNING_FAILED, QELTV_TUNING_NO_SERVICE, QELTV_BROADCAST_FAILED);
        }
        if (!channel) shown.channel.reset();
    }
    review();
}

Presentation::Status Presentation::status(uint32_t path) const {
    std::lock_guard<std::mutex> guard(mLock);
    const Path& shown = mPaths[path];
    return {shown.source, shown.status, shown.error,
            shown.source == Inputs::kTuner ? shown.channel : std::nullopt};
}

std::optional<uint32_t> Presentation::pathWith(int32_t source) const {
    std::lock_guard<std::mutex> guard(mLock);
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        if (running(path) && mPaths[path].source == source) return path;
    }
    return std::nullopt;
}

std::optional<uint32_t> Presentation::tunerPath() const {
    return pathWith(Inputs::kTuner);
}

Reception Presentation::reception() const {
    std::lock_guard<std::mutex> guard(mLock);
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        if (running(path) && mPaths[path].source == Inputs::kTuner) {
            return receive(mPaths[path].multiplex);
        }
    }
    return {};
}

void Presentation::setReception(uint32_t percent, std::optional<uint32_t> kHz) {
    std::lock_guard<std::mutex> guard(mLock);
    if (kHz) {
        mStrengths[*kHz] = percent;
    } else {
        mStrength = percent;
        mStrengths.clear();
    }
    review();
}

QELTV_CONNECTION_T Presentation::connection(uint32_t path) const {
    std::lock_guard<std::mutex> guard(mLock);
    const Path& shown = mPaths[path];
    QELTV_CONNECTION_T all{};
    all.path = path;
    all.source = static_cast<uint32_t>(shown.source);
    all.status = static_cast<uint32_t>(shown.status);
    all.error = static_cast<uint32_t>(shown.error);
    if (shown.source != Inputs::kTuner || !running(path)) return all;
    if (shown.channel) all.channel = shown.channel->channelId;
    const Reception reception = receive(shown.multiplex);
    all.level = reception.level;
    all.quality = reception.quality;
    all.bitErrors = reception.bitErrors;
    if (const auto& multiplex = shown.multiplex) {
        all.frequencyKHz = static_cast<uint32_t>(multiplex->frequencyHz / 1000);
        all.symbolRate =
                (multiplex->symbolRate != 0 ? multiplex->symbolRate : multiplex->bandwidthHz) /
                1000;
        all.modulation = static_cast<uint32_t>(multiplex->modulation);
        all.system = static_cast<uint32_t>(multiplex->system);
    }
    return all;
}

QELTV_VIDEO_SOURCE_T Presentation::videoOf(const Path& path) const {
    QELTV_VIDEO_SOURCE_T video{};
    if (path.status != QELTV_TUNING_PLAYS) return video;
    video.aspectWidth = 16;
    video.aspectHeight = 9;
    video.bits = 8;
    if (path.source != Inputs::kTuner) {
        const Inputs::Socket& socket = Inputs::socket(path.source);
        const bool analogue = socket.type != QELTV_INPUT_HDMI && socket.type != QELTV_INPUT_VGA;
        video.width = socket.width != 0 ? socket.width : analogue ? 720 : 1920;
        video.height = socket.height != 0 ? socket.height : analogue ? 576 : 1080;
        video.frameRate = socket.frameRate != 0 ? socket.frameRate : analogue ? 25000 : 60000;
        video.interlaced = analogue;
        video.codec = QELTV_VIDEO_RAW;
        if (analogue) {
            video.aspectWidth = 4;
            video.aspectHeight = 3;
        }
    } else if (!path.channel || path.channel->type != ServiceType::kTelevision) {
        return {};
    } else {
        const DeliverySystem system =
                path.multiplex ? path.multiplex->system : DeliverySystem::kUnknown;
        const bool america = broadcastTypeOf(system) == BroadcastType::kAtsc;
        const bool high = (path.channel->flags & CHANNEL_FLAG_HD) != 0;
        const bool newest = system == DeliverySystem::kDvbT2;
        video.width = high ? 1920 : 720;
        video.height = high ? 1080 : america ? 480 : 576;
        video.interlaced = !newest;
        video.frameRate = america ? 29970 : newest ? 50000 : 25000;
        video.codec = newest             ? QELTV_VIDEO_HEVC
                      : high && !america ? QELTV_VIDEO_AVC
                                         : QELTV_VIDEO_MPEG2;
    }
    snprintf(video.text, sizeof(video.text), "%ux%u%c %.6g", video.width, video.height,
             video.interlaced != 0 ? 'i' : 'p', video.frameRate / 1000.0);
    return video;
}

QELTV_VIDEO_SOURCE_T Presentation::video(uint32_t path) const {
    std::lock_guard<std::mutex> guard(mLock);
    return videoOf(mPaths[path]);
}

void Presentation::camChanged() {
    std::lock_guard<std::mutex> guard(mLock);
    review();
}

// Keys

bool Presentation::digitsKeyHandled() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mDigitsHandled;
}

void Presentation::resetDigitsKeyHandled() {
    std::lock_guard<std::mutex> guard(mLock);
    mDigitsHandled = false;
    mDigits.clear();
    mDigitsDue.reset();
}

void Presentation::showBanner(bool visible) {
    std::lock_guard<std::mutex> guard(mLock);
    broadcast(QELTV_BROADCAST_BANNER, visible);
}

namespace {

/** "12" or "7.1": major and minor number; the minor is 0 where there is none. */
std::pair<uint32_t, uint32_t> numbersIn(const std::string& digits) {
    const size_t point = digits.find('.');
    const auto number = [](const std::string& text) {
        return text.empty() ? 0u : static_cast<uint32_t>(std::stoul(text));
    };
    return {number(digits.substr(0, point)),
            point == std::string::npos ? 0u : number(digits.substr(point + 1))};
}

}  // namespace

int32_t Presentation::addDigit(char digit) {
    bool complete = false;
    {
        std::lock_guard<std::mutex> guard(mLock);
        const bool hasPoint = mDigits.find('.') != std::string::npos;
        if (digit == '.' && (hasPoint || mDigits.empty())) return kRefused;
        mDigits += digit;
        mDigitsHandled = true;
        mDigitsDue = Clock::now() + kDigitsTime;
        const auto [major, minor] = numbersIn(mDigits);
        broadcast(QELTV_BROADCAST_DIGITS, minor != 0 ? major << 16 | minor : major, mDigits.size());
        const size_t point = mDigits.find('.');
        complete = point == std::string::npos ? mDigits.size() == kMaximumDigits
                                              : mDigits.size() - point - 1 == kMinorDigits;
        schedule();
    }
    if (complete) finishDigits();
    return kOk;
}

void Presentation::finishDigits() {
    std::string digits;
    {
        std::lock_guard<std::mutex> guard(mLock);
        mDigits.swap(digits);
        mDigitsDue.reset();
        if (digits.empty()) return;
        const auto [major, minor] = numbersIn(digits);
        broadcast(QELTV_BROADCAST_DIGITS, minor != 0 ? major << 16 | minor : major, digits.size(),
                  1);
    }
    const auto numbers = numbersIn(digits);
    const int32_t code =
            stored([&] { return selectNumber(kMain, numbers.first, numbers.second, true); });
    if (code == kNotFound) {
        ALOGI("no channel has the number %s", digits.c_str());
    }
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
            return addDigit('.');
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
        case QELTV_KEY_CHANNEL_DOWN:
            return zap(kMain, key == QELTV_KEY_CHANNEL_DOWN);
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

int32_t Presentation::setFrozen(uint32_t path, bool frozen) {
    std::lock_guard<std::mutex> guard(mLock);
    Path& shown = mPaths[path];
    if (frozen && shown.status != QELTV_TUNING_PLAYS) return kRefused;
    if (shown.frozen == frozen) return kOk;
    shown.frozen = frozen;
    mNotifier.event(&Callback::a_hidl_qeltvapi_videoinfo_common_callback_fct, QELTV_VIDEO_FREEZE,
                    {path, frozen});
    return kOk;
}

bool Presentation::frozen(uint32_t path) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mPaths[path].frozen;
}

int32_t Presentation::setMuted(uint32_t path, bool muted) {
    std::lock_guard<std::mutex> guard(mLock);
    if (mPaths[path].muted == muted) return kOk;
    mPaths[path].muted = muted;
    mNotifier.event(&Callback::a_hidl_qeltvapi_videoinfo_common_callback_fct, QELTV_VIDEO_MUTE,
                    {path, muted});
    return kOk;
}

bool Presentation::muted(uint32_t path) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mPaths[path].muted;
}

int32_t Presentation::setVideoOn(uint32_t path, bool on) {
    std::lock_guard<std::mutex> guard(mLock);
    mPaths[path].videoOn = on;
    return kOk;
}

bool Presentation::videoOn(uint32_t path) const {
    std::lock_guard<std::mutex> guard(mLock);
    return running(path) && mPaths[path].videoOn;
}

int32_t Presentation::setRegion(uint32_t path, const Region& region) {
    if (region.width == 0 || region.height == 0 || region.width > QELTV_REGION_FULL ||
        region.height > QELTV_REGION_FULL || region.x > QELTV_REGION_FULL - region.width ||
        region.y > QELTV_REGION_FULL - region.height) {
        return kBadValue;
    }
    std::lock_guard<std::mutex> guard(mLock);
    mPaths[path].region = region;
    return kOk;
}

int32_t Presentation::setTvMode(int32_t mode) {
    if (mode < QELTV_TV_NORMAL || mode > QELTV_TV_SIDE_BY_SIDE) return kBadValue;
    {
        std::lock_guard<std::mutex> guard(mLock);
        mTvMode = mode;
        if (mode == QELTV_TV_SIDE_BY_SIDE) {
            mPaths[kMain].region = {0, 2500, 5000, 5000};
            mPaths[kSub].region = {5000, 2500, 5000, 5000};
        } else {
            mPaths[kMain].region = {0, 0, QELTV_REGION_FULL, QELTV_REGION_FULL};
            mPaths[kSub].region = {6500, 6500, 3000, 3000};
        }
        if (mode == QELTV_TV_NORMAL) mAudioFocus = kMain;
    }
    return mode == QELTV_TV_NORMAL ? stop(kSub) : kOk;
}

int32_t Presentation::startVideo(uint32_t path, int32_t source, const Region& region) {
    if (!Inputs::exists(source)) return kNotFound;
    if (region.x != 0 || region.y != 0 || region.width != 0 || region.height != 0) {
        const int32_t code = setRegion(path, region);
        if (code != kOk) return code;
    }
    const int32_t code = changeSource(path, source);
    if (code == kOk && path == kSub) {
        std::lock_guard<std::mutex> guard(mLock);
        if (mTvMode == QELTV_TV_NORMAL) mTvMode = QELTV_TV_PICTURE_IN_PICTURE;
    }
    return code;
}

int32_t Presentation::startWithoutPath(uint32_t path, int32_t source) {
    const int32_t code = changeSource(path, source);
    if (code != kOk) return code;
    std::lock_guard<std::mutex> guard(mLock);
    mPaths[path].resource = QELTV_RESOURCE_WITHOUT_PATH;
    return kOk;
}

int32_t Presentation::stopWithoutPath(uint32_t path) {
    if (resource(path) != QELTV_RESOURCE_WITHOUT_PATH) return kRefused;
    return stop(path);
}

QELTV_VIDEO_RESOURCE Presentation::resource(uint32_t path) const {
    std::lock_guard<std::mutex> guard(mLock);
    return running(path) ? mPaths[path].resource : QELTV_RESOURCE_NONE;
}

uint32_t Presentation::audioFocus() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mAudioFocus;
}

bool Presentation::isAvailable(uint32_t path, int32_t source) const {
    std::lock_guard<std::mutex> guard(mLock);
    return available(path, source);
}

int32_t Presentation::setAudioFocus(uint32_t path, bool evenStopped) {
    std::lock_guard<std::mutex> guard(mLock);
    if (!running(path) && !evenStopped) return kRefused;
    mAudioFocus = path;
    return kOk;
}

// Sound tracks

std::vector<QELTV_AUDIO_TRACK_T> Presentation::tracksOf(const Path& path) const {
    std::vector<QELTV_AUDIO_TRACK_T> tracks;
    if (path.status != QELTV_TUNING_PLAYS) return tracks;
    if (path.source != Inputs::kTuner) {
        tracks.push_back(track(1, 0, "und", QELTV_AUDIO_PCM, 2, QELTV_AUDIO_MAIN, 1536));
    } else if (path.channel && path.channel->type != ServiceType::kData) {
        const Channel& channel = *path.channel;
        const std::string language = channel.language.size() == 3 ? channel.language : "und";
        const uint32_t pid = channel.audioPid;
        tracks.push_back(track(1, pid, language, QELTV_AUDIO_MPEG, 2, QELTV_AUDIO_MAIN, 192));
        if (channel.type == ServiceType::kTelevision) {
            const std::string second = language == "eng" ? "spa" : "eng";
            tracks.push_back(
                    track(2, pid + 1, second, QELTV_AUDIO_MPEG, 2, QELTV_AUDIO_ORIGINAL, 192));
            tracks.push_back(
                    track(3, pid + 2, language, QELTV_AUDIO_MPEG, 2, QELTV_AUDIO_DESCRIPTION, 128));
            if ((channel.flags & CHANNEL_FLAG_HD) != 0) {
                tracks.push_back(
                        track(4, pid + 3, language, QELTV_AUDIO_AC3, 6, QELTV_AUDIO_MAIN, 448));
            }
        }
    }
    for (QELTV_AUDIO_TRACK_T& one : tracks) one.current = one.track == path.track;
    return tracks;
}

void Presentation::chooseTrack(uint32_t path) {
    Path& shown = mPaths[path];
    std::string wanted;
    uint32_t description = 0;
    try {
        wanted = mConfig.text("sound.audio_language");
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
    }
    mSound.value(QELTV_AUDIO_DESCRIPTION_ON, &description);
    shown.track = 1;
    int best = -1;
    for (const QELTV_AUDIO_TRACK_T& one : tracksOf(shown)) {
        const bool describes = one.purpose == QELTV_AUDIO_DESCRIPTION;
        const int worth = (describes == (description != 0) ? 2 : 0) +
                          (wanted == std::string(one.language, 3) ? 1 : 0) -
                          (describes && description == 0 ? 4 : 0);
        if (worth > best) {
            best = worth;
            shown.track = one.track;
        }
    }
}

std::vector<QELTV_AUDIO_TRACK_T> Presentation::tracks(uint32_t path) const {
    std::lock_guard<std::mutex> guard(mLock);
    return tracksOf(mPaths[path]);
}

int32_t Presentation::selectTrack(uint32_t path, uint32_t track) {
    std::lock_guard<std::mutex> guard(mLock);
    Path& shown = mPaths[path];
    if (shown.status != QELTV_TUNING_PLAYS) return kRefused;
    for (const QELTV_AUDIO_TRACK_T& one : tracksOf(shown)) {
        if (one.track != track) continue;
        if (shown.track != track) {
            shown.track = track;
            mSound.tell(QELTV_AUDIO_TRACK_SELECTED, path, track);
        }
        return kOk;
    }
    return kNotFound;
}

int32_t Presentation::nextLanguage(uint32_t path) {
    const auto all = tracks(path);
    if (all.empty()) return kRefused;
    const auto current =
            std::find_if(all.begin(), all.end(), [](const auto& one) { return one.current != 0; });
    const size_t at = current != all.end() ? static_cast<size_t>(current - all.begin()) : 0;
    for (size_t i = 1; i < all.size(); ++i) {
        const QELTV_AUDIO_TRACK_T& next = all[(at + i) % all.size()];
        if (memcmp(next.language, all[at].language, 3) != 0) return selectTrack(path, next.track);
    }
    return kOk;
}

int32_t Presentation::selectLanguage(uint32_t path, const std::string& language) {
    for (const QELTV_AUDIO_TRACK_T& one : tracks(path)) {
        if (one.purpose != QELTV_AUDIO_DESCRIPTION && language == std::string(one.language, 3)) {
            return selectTrack(path, one.track);
        }
    }
    return kNotFound;
}

// Service contexts and stream components

int32_t Presentation::openContext(const std::string& name, uint32_t* context) {
    const auto path = pathOf(name);
    if (!path) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    if (mContexts.size() >= kMaximumContexts + QELTV_PATHS) return kRefused;
    *context = mNextHandle++;
    mContexts[*context] = {*path, {}, {}};
    return kOk;
}

int32_t Presentation::closeContext(uint32_t context) {
    std::lock_guard<std::mutex> guard(mLock);
    // Those of the paths themselves stay.
    if (context <= QELTV_PATHS) return kRefused;
    return mContexts.erase(context) != 0 ? kOk : kNotFound;
}

std::optional<uint32_t> Presentation::pathOfContext(uint32_t context) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mContexts.find(context);
    if (found == mContexts.end()) return std::nullopt;
    return found->second.path;
}

void Presentation::setTag(uint32_t context, uint64_t tag) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mContexts.find(context);
    if (found != mContexts.end()) found->second.tag = tag;
}

int32_t Presentation::setBlock(uint32_t context, uint32_t key, const Bytes& block) {
    constexpr size_t kMaximumBlocks = 64;
    if (block.size() > kMaximumAttribute) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mContexts.find(context);
    if (found == mContexts.end()) return kNotFound;
    auto& blocks = found->second.blocks;
    if (blocks.size() >= kMaximumBlocks && blocks.count(key) == 0) return kRefused;
    blocks[key] = block;
    return kOk;
}

std::optional<Presentation::Bytes> Presentation::block(uint32_t context, uint32_t key) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mContexts.find(context);
    if (found == mContexts.end()) return std::nullopt;
    const auto block = found->second.blocks.find(key);
    if (block == found->second.blocks.end()) return std::nullopt;
    return block->second;
}

int32_t Presentation::openComponent(uint32_t type, const std::string& name, uint32_t* component) {
    const auto path = pathOf(name);
    if (!path) return kNotFound;
    if (type > QELTV_COMPONENT_SUBTITLE) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    if (mComponents.size() >= kMaximumContexts) return kRefused;
    *component = mNextHandle++;
    mComponents[*component] = {type, *path, {}};
    return kOk;
}

int32_t Presentation::closeComponent(uint32_t component) {
    std::lock_guard<std::mutex> guard(mLock);
    return mComponents.erase(component) != 0 ? kOk : kNotFound;
}

int32_t Presentation::watchSource(uint32_t component, uint64_t tag) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mComponents.find(component);
    if (found == mComponents.end()) return kNotFound;
    if (found->second.type != QELTV_COMPONENT_VIDEO) return kBadValue;
    found->second.tag = tag;
    tellSource(component, found->second);
    return kOk;
}

}  // namespace qeltvd
