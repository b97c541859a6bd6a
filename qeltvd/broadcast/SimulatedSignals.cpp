#include "SimulatedSignals.h"

#include "ServiceGenerator.h"
#include "SimulatedGuide.h"
#include "SimulatedPackets.h"
#include "SimulatedTeletext.h"
#include "layouts/channel_records.h"

namespace qeltvd {

namespace {

/** Below this quality the tuner does not lock. */
constexpr uint32_t kLockQuality = 20;
/** From this quality on there are no bit errors. */
constexpr uint32_t kCleanQuality = 60;
constexpr uint32_t kLowestLevel = 55;
constexpr uint32_t kLevels = 41;
constexpr uint32_t kQualities = 40;
/** The fraction of the golden ratio, which spreads neighbouring frequencies. */
constexpr uint32_t kSpread = 2654435761u;

constexpr char kUndetermined[] = "und";

}  // namespace

Survey SimulatedSignals::survey(const Region& region, const Multiplex& multiplex,
                                const std::function<bool()>&) {
    Survey survey;
    survey.signal = true;
    survey.multiplex = multiplex;
    survey.services = generateServices(region, multiplex);
    return survey;
}

std::unique_ptr<Tuning> SimulatedSignals::tune(const Channel&) {
    return std::make_unique<Tuning>();
}

Reception SimulatedSignals::reception(const Multiplex& multiplex) const {
    const auto kHz = static_cast<uint32_t>(multiplex.frequencyHz / 1000);
    const uint32_t noise = kHz * kSpread >> 16;
    std::lock_guard<std::mutex> guard(mLock);
    const auto weakened = mStrengths.find(kHz);
    const uint32_t strength = weakened != mStrengths.end() ? weakened->second : mStrength;
    Reception reception;
    reception.level = (kLowestLevel + noise % kLevels) * strength / 100;
    reception.quality = (kCleanQuality + noise / kLevels % kQualities) * strength / 100;
    reception.signal = reception.quality >= kLockQuality;
    if (reception.quality < kCleanQuality) {
        const uint32_t lack = kCleanQuality - reception.quality;
        reception.bitErrors = lack * lack * 100;
    }
    return reception;
}

std::optional<VideoFormat> SimulatedSignals::video(const Channel& channel,
                                                   const Multiplex& multiplex) const {
    if (channel.type != ServiceType::kTelevision) return std::nullopt;
    const DeliverySystem system = multiplex.system;
    const bool america = broadcastTypeOf(system) == BroadcastType::kAtsc;
    const bool high = (channel.flags & CHANNEL_FLAG_HD) != 0;
    const bool newest = system == DeliverySystem::kDvbT2;
    VideoFormat format;
    format.width = high ? 1920 : 720;
    format.height = high ? 1080 : america ? 480 : 576;
    format.interlaced = !newest;
    format.frameRate = america ? 29970 : newest ? 50000 : 25000;
    format.codec = newest             ? QELTV_VIDEO_HEVC
                   : high && !america ? QELTV_VIDEO_AVC
                                      : QELTV_VIDEO_MPEG2;
    return format;
}

std::vector<SoundTrack> SimulatedSignals::tracks(const Channel& channel) const {
    if (channel.type == ServiceType::kData) return {};
    const std::string language = channel.language.size() == 3 ? channel.language : kUndetermined;
    const uint32_t pid = channel.audioPid;
    std::vector<SoundTrack> tracks{{pid, language, QELTV_AUDIO_MPEG, 2, QELTV_AUDIO_MAIN, 192}};
    if (channel.type != ServiceType::kTelevision) return tracks;
    const std::string second = language == "eng" ? "spa" : "eng";
    tracks.push_back({pid + 1, second, QELTV_AUDIO_MPEG, 2, QELTV_AUDIO_ORIGINAL, 192});
    tracks.push_back({pid + 2, language, QELTV_AUDIO_MPEG, 2, QELTV_AUDIO_DESCRIPTION, 128});
    if ((channel.flags & CHANNEL_FLAG_HD) != 0) {
        tracks.push_back({pid + 3, language, QELTV_AUDIO_AC3, 6, QELTV_AUDIO_MAIN, 448});
    }
    return tracks;
}

bool SimulatedSignals::scrambled(const Channel& channel, bool descrambler) const {
    return (channel.flags & CHANNEL_FLAG_SCRAMBLED) != 0 && !descrambler;
}

TeletextView SimulatedSignals::teletext(const Channel&, uint16_t number, uint32_t subpage,
                                        const TeletextTopics& topics) const {
    return SimulatedTeletext::view(number, subpage, topics);
}

std::vector<stream::TopPage> SimulatedSignals::teletextTop(const Channel&) const {
    return SimulatedTeletext::top();
}

std::vector<SubtitleTrack> SimulatedSignals::subtitles(const Channel&) const {
    return {{"eng", QELTV_SUBTITLE_DVB, 0},
            {"deu", QELTV_SUBTITLE_DVB, 0},
            {"eng", QELTV_SUBTITLE_HEARING, 0},
            {"deu", QELTV_SUBTITLE_TELETEXT, SimulatedTeletext::kSubtitlePage}};
}

std::optional<CaptionStreams> SimulatedSignals::captionStreams(const Channel&) const {
    return std::nullopt;
}

std::vector<std::string> SimulatedSignals::captions(const Channel&, uint8_t) const {
    return {};
}

std::unique_ptr<PacketSource> SimulatedSignals::packets(const Channel& channel, uint32_t rate) {
    return std::make_unique<SimulatedPackets>(channel, rate);
}

std::unique_ptr<PacketSource> SimulatedSignals::viewerPackets(const Channel&) {
    return nullptr;
}

void SimulatedSignals::setKey(const Channel&, const std::vector<uint8_t>&) {}

std::vector<Event> SimulatedSignals::events(const Channel& channel, int64_t from, int64_t to,
                                            int64_t now) const {
    return SimulatedGuide::events(channel, from, to, now);
}

std::optional<Event> SimulatedSignals::event(const Channel& channel, uint16_t id,
                                             int64_t now) const {
    return SimulatedGuide::event(channel, id, now);
}

std::optional<Event> SimulatedSignals::present(const Channel& channel, int64_t now) const {
    auto events = SimulatedGuide::events(channel, now, now + 1, now);
    if (events.empty()) return std::nullopt;
    return std::move(events.front());
}

std::optional<Event> SimulatedSignals::following(const Channel& channel, int64_t now) const {
    const auto current = present(channel, now);
    if (!current) return std::nullopt;
    auto events = SimulatedGuide::events(channel, current->end(), current->end() + 1, now);
    if (events.empty()) return std::nullopt;
    return std::move(events.front());
}

std::vector<TargetRegion> SimulatedSignals::targetRegions() const {
    return {
            {1, 1, 0, 0, "Berlin"}, {1, 2, 0, 0, "Brandenburg"}, {2, 1, 1, 0, "Mitte"},
            {2, 1, 2, 0, "Pankow"}, {2, 2, 1, 0, "Potsdam"},     {3, 1, 1, 1, "Wedding"},
            {3, 1, 1, 2, "Moabit"},
    };
}

void SimulatedSignals::setStrength(uint32_t percent, std::optional<uint32_t> kHz) {
    std::lock_guard<std::mutex> guard(mLock);
    if (kHz) {
        mStrengths[*kHz] = percent;
    } else {
        mStrength = percent;
        mStrengths.clear();
    }
}

}  // namespace qeltvd
