#include "VideoPaths.h"

#include <cstdio>
#include <utility>

#include "InputSignals.h"

namespace qeltvd {

namespace {

constexpr std::chrono::milliseconds kLockTime{120};
constexpr std::chrono::milliseconds kDecoderTime{80};
/** How long a tuner waits for the first packet of a stream. */
constexpr std::chrono::milliseconds kSearchTime{3000};

uint32_t kHzOf(uint64_t hz) {
    return static_cast<uint32_t>(hz / 1000);
}

}  // namespace

VideoPaths::VideoPaths(const ViewingRights& rights, const Inputs& inputs, Guide& guide,
                       const Broadcast& broadcast, Observer& observer)
        : mRights(rights),
          mInputs(inputs),
          mGuide(guide),
          mBroadcast(broadcast),
          mObserver(observer) {}

bool VideoPaths::available(uint32_t path, int32_t source) const {
    const VideoPath& other = mPaths[1 - path];
    return !other.running() || (other.source != source && !Inputs::conflict(other.source, source));
}

std::optional<uint32_t> VideoPaths::with(int32_t source) const {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        if (mPaths[path].running() && mPaths[path].source == source) return path;
    }
    return std::nullopt;
}

void VideoPaths::begin(uint32_t path) {
    VideoPath& shown = mPaths[path];
    if (shown.resource == QELTV_RESOURCE_NONE) shown.resource = QELTV_RESOURCE_PATH;
    shown.unlocked = false;
    shown.unlockedEvent.reset();
    shown.frozen = false;
    shown.status = QELTV_TUNING_SEARCHES;
    shown.error = QELTV_TUNING_NO_ERROR;
    shown.due = Clock::now() + kLockTime;
    shown.searchEnd = Clock::now() + kSearchTime;
    // The new tuning begins before the old one ends, so a multiplex is received on.
    setKey(shown);
    shown.tuning = shown.shownChannel() != nullptr && shown.multiplex
                           ? mBroadcast.of(*shown.multiplex)->tune(*shown.channel)
                           : nullptr;
    watchProgrammes(path);
    mObserver.stepped(path, QELTV_BROADCAST_SELECTING);
}

void VideoPaths::stop(uint32_t path) {
    if (mPaths[path].running()) {
        end(path, QELTV_TUNING_STOPPED, QELTV_TUNING_NO_ERROR, QELTV_BROADCAST_STOPPED);
    }
    mPaths[path].tuning.reset();
    mPaths[path].resource = QELTV_RESOURCE_NONE;
}

void VideoPaths::advance(Clock::time_point now) {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        if (mPaths[path].due && *mPaths[path].due <= now) advance(path);
    }
}

void VideoPaths::advance(uint32_t path) {
    VideoPath& shown = mPaths[path];
    shown.due.reset();
    if (shown.showsTv() && reception(path).waiting && Clock::now() < shown.searchEnd) {
        shown.due = Clock::now() + kLockTime;
        return;
    }
    if (!hasSignal(shown)) {
        fail(path, QELTV_TUNING_NO_SIGNAL);
        return;
    }
    const bool frequencyOnly = shown.showsTv() && !shown.channel;
    if (shown.status == QELTV_TUNING_SEARCHES) {
        shown.status = QELTV_TUNING_LOCKED;
        if (!frequencyOnly) shown.due = Clock::now() + kDecoderTime;
        mObserver.stepped(path, QELTV_BROADCAST_LOCKED);
        return;
    }
    if (frequencyOnly) return;
    if (mRights.blocked(shown)) {
        fail(path, QELTV_TUNING_BLOCKED);
        return;
    }
    if (mRights.scrambled(shown)) {
        fail(path, QELTV_TUNING_SCRAMBLED);
        return;
    }
    shown.status = QELTV_TUNING_PLAYS;
    shown.error = QELTV_TUNING_NO_ERROR;
    shown.track = SoundTracks::best(tracks(path), mObserver.soundWish());
    mObserver.stepped(path, QELTV_BROADCAST_PLAYS);
    mObserver.contentChanged(path);
}

std::optional<VideoPaths::Clock::time_point> VideoPaths::due() const {
    std::optional<Clock::time_point> next;
    for (const VideoPath& path : mPaths) {
        if (path.due && (!next || *path.due < *next)) next = path.due;
    }
    return next;
}

void VideoPaths::end(uint32_t path, QELTV_TUNING_STATUS status, QELTV_TUNING_ERROR error,
                     QELTV_BROADCAST_EVENT event) {
    VideoPath& shown = mPaths[path];
    const bool played = shown.plays();
    shown.status = status;
    shown.error = error;
    shown.frozen = false;
    shown.due.reset();
    mObserver.stepped(path, event);
    if (played) mObserver.contentChanged(path);
}

void VideoPaths::fail(uint32_t path, QELTV_TUNING_ERROR error, QELTV_BROADCAST_EVENT event) {
    end(path, QELTV_TUNING_FAILED, error, event);
}

void VideoPaths::review() {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) review(path);
}

void VideoPaths::review(uint32_t path) {
    VideoPath& shown = mPaths[path];
    switch (shown.status) {
        case QELTV_TUNING_LOCKED:
        case QELTV_TUNING_PLAYS:
            if (!hasSignal(shown)) {
                fail(path, QELTV_TUNING_NO_SIGNAL, QELTV_BROADCAST_SIGNAL_LOST);
            } else if (shown.plays() && mRights.blocked(shown)) {
                fail(path, QELTV_TUNING_BLOCKED);
            } else if (shown.plays() && mRights.scrambled(shown)) {
                fail(path, QELTV_TUNING_SCRAMBLED);
            }
            break;
        case QELTV_TUNING_FAILED:
            if (shown.error == QELTV_TUNING_NO_SIGNAL && hasSignal(shown)) {
                const bool unlocked = shown.unlocked;
                const auto unlockedEvent = shown.unlockedEvent;
                begin(path);
                shown.unlocked = unlocked;
                shown.unlockedEvent = unlockedEvent;
            } else if ((shown.error == QELTV_TUNING_BLOCKED && !mRights.blocked(shown)) ||
                       (shown.error == QELTV_TUNING_SCRAMBLED && !mRights.scrambled(shown))) {
                shown.status = QELTV_TUNING_LOCKED;
                shown.due = Clock::now() + kDecoderTime;
            }
            break;
        default:
            break;
    }
}

void VideoPaths::announceContents() {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        if (mPaths[path].plays() && mPaths[path].showsTv()) mObserver.contentChanged(path);
    }
}

void VideoPaths::refresh(const ChannelDatabase& channels) {
    for (uint32_t path = 0; path < QELTV_PATHS; ++path) {
        VideoPath& shown = mPaths[path];
        if (!shown.channel) continue;
        const auto channel = channels.byRecord(shown.channel->list, shown.channel->recordId);
        if (channel) {
            // A channel that has been moved has another id.
            const bool moved = shown.channel->channelId != channel->channelId;
            shown.channel = channel;
            if (moved) watchProgrammes(path);
        } else if (shown.showsTv() && shown.running() && shown.status != QELTV_TUNING_FAILED) {
            fail(path, QELTV_TUNING_NO_SERVICE);
        }
        if (!channel) shown.channel.reset();
        setKey(shown);
    }
}

void VideoPaths::setKey(const VideoPath& path) const {
    if (path.shownChannel() == nullptr || !path.multiplex) return;
    mBroadcast.of(*path.multiplex)->setKey(*path.channel, mRights.key(path));
}

VideoPaths::Service VideoPaths::service(uint32_t path) const {
    const VideoPath& shown = mPaths[path];
    if (!shown.plays() || shown.shownChannel() == nullptr || !shown.multiplex) return nullptr;
    return [signals = mBroadcast.of(*shown.multiplex), channel = *shown.channel] {
        return signals->viewerPackets(channel);
    };
}

void VideoPaths::watchProgrammes(uint32_t path) {
    const Channel* const channel = mPaths[path].shownChannel();
    mGuide.show(path, channel != nullptr ? channel->channelId : 0);
}

bool VideoPaths::unlocked(int32_t source) const {
    for (const VideoPath& path : mPaths) {
        if (path.source == source && path.unlocked) return true;
    }
    return false;
}

void VideoPaths::setUnlocked(uint32_t path, bool unlocked) {
    VideoPath& shown = mPaths[path];
    shown.unlocked = unlocked;
    shown.unlockedEvent.reset();
    if (unlocked) shown.unlockedEvent = mRights.programme(shown);
}

void VideoPaths::swapUnlocked() {
    std::swap(mPaths[0].unlocked, mPaths[1].unlocked);
    std::swap(mPaths[0].unlockedEvent, mPaths[1].unlockedEvent);
}

Reception VideoPaths::reception(uint32_t path) const {
    const auto& multiplex = mPaths[path].multiplex;
    return multiplex ? mBroadcast.of(*multiplex)->reception(*multiplex) : Reception{};
}

bool VideoPaths::hasSignal(const VideoPath& path) const {
    if (!path.showsTv()) return mInputs.hasSignal(path.source);
    return path.multiplex && mBroadcast.of(*path.multiplex)->reception(*path.multiplex).signal;
}

QELTV_CONNECTION_T VideoPaths::connection(uint32_t path) const {
    const VideoPath& shown = mPaths[path];
    QELTV_CONNECTION_T all{};
    all.path = path;
    all.source = static_cast<uint32_t>(shown.source);
    all.status = static_cast<uint32_t>(shown.status);
    all.error = static_cast<uint32_t>(shown.error);
    if (!shown.showsTv() || !shown.running()) return all;
    if (shown.channel) all.channel = shown.channel->channelId;
    const Reception reception = this->reception(path);
    all.level = reception.level;
    all.quality = reception.quality;
    all.bitErrors = reception.bitErrors;
    if (const auto& multiplex = shown.multiplex) {
        all.frequencyKHz = kHzOf(multiplex->frequencyHz);
        all.symbolRate =
                kHzOf(multiplex->symbolRate != 0 ? multiplex->symbolRate : multiplex->bandwidthHz);
        all.modulation = static_cast<uint32_t>(multiplex->modulation);
        all.system = static_cast<uint32_t>(multiplex->system);
    }
    return all;
}

QELTV_VIDEO_SOURCE_T VideoPaths::video(uint32_t path) const {
    const VideoPath& shown = mPaths[path];
    std::optional<VideoFormat> format;
    if (shown.plays() && !shown.showsTv()) {
        format = videoOf(Inputs::socket(shown.source));
    } else if (shown.plays() && shown.channel) {
        const Multiplex multiplex = shown.multiplex.value_or(Multiplex{});
        format = mBroadcast.of(multiplex)->video(*shown.channel, multiplex);
    }
    QELTV_VIDEO_SOURCE_T video{};
    if (!format) return video;
    video.width = format->width;
    video.height = format->height;
    video.frameRate = format->frameRate;
    video.interlaced = format->interlaced;
    video.aspectWidth = format->aspectWidth;
    video.aspectHeight = format->aspectHeight;
    video.codec = format->codec;
    video.bits = format->bits;
    video.kbitPerSecond = format->kbitPerSecond;
    snprintf(video.text, sizeof(video.text), "%ux%u%c %.6g", video.width, video.height,
             format->interlaced ? 'i' : 'p', video.frameRate / 1000.0);
    return video;
}

SoundTracks::Records VideoPaths::tracks(uint32_t path) const {
    const VideoPath& shown = mPaths[path];
    std::vector<SoundTrack> tracks;
    if (shown.plays() && !shown.showsTv()) {
        tracks = inputTracks();
    } else if (shown.plays() && shown.channel) {
        tracks = mBroadcast.of(shown.multiplex.value_or(Multiplex{}))->tracks(*shown.channel);
    }
    return SoundTracks::records(tracks, shown.track);
}

}  // namespace qeltvd
