#include "StreamSignals.h"

#include <algorithm>

#include "Descrambler.h"
#include "StreamPackets.h"
#include "layouts/channel_records.h"

namespace qeltvd {

namespace {

using stream::Codec;
using stream::Component;
using stream::ComponentKind;
using stream::Service;

/** What a receiver shows for a signal without errors. */
constexpr uint32_t kFullLevel = 100;
/** Errors in 10^9 bits that cost one percent of quality. */
constexpr uint32_t kErrorsPerPercent = 1000;
constexpr uint16_t kNoPid = 0x1fff;
constexpr char kUndetermined[] = "und";

class StreamTuning : public Tuning {
  public:
    StreamTuning(std::shared_ptr<StreamMultiplex> multiplex, uint16_t service)
            : mMultiplex(std::move(multiplex)), mService(service) {
        mMultiplex->tune(mService);
    }
    ~StreamTuning() override { mMultiplex->release(mService); }

  private:
    const std::shared_ptr<StreamMultiplex> mMultiplex;
    const uint16_t mService;
};

/** Damaged packets and lost steps of continuity counters, in 10^9 bits. */
uint32_t bitErrors(const stream::StreamReceiver& receiver) {
    uint64_t packets = 0, errors = 0;
    for (uint16_t pid = 0; pid < stream::kNullPid; ++pid) {
        const stream::PidCounters counters = receiver.counters(pid);
        packets += counters.packets;
        errors += uint64_t{counters.transportErrors} + counters.continuityErrors;
    }
    if (packets == 0) return 0;
    constexpr uint64_t kBits = 1000000000;
    const uint64_t rate = errors * kBits / (packets * stream::kPacketSize * 8);
    return static_cast<uint32_t>(std::min<uint64_t>(rate, UINT32_MAX));
}

bool isHigh(const Service& service) {
    constexpr uint8_t kMpeg2Hd = 0x11, kAvcHd = 0x19, kLastHd = 0x1e, kUhd = 0x1f, kLastUhd = 0x20;
    if (service.format && service.format->height >= 720) return true;
    const uint8_t type = service.description ? service.description->type : uint8_t{0};
    return type == kMpeg2Hd || (type >= kAvcHd && type <= kLastHd) ||
           (type >= kUhd && type <= kLastUhd);
}

bool isScrambled(const Service& service) {
    if (service.scrambledNow) return true;
    if (service.description && service.description->scrambled) return true;
    if (service.channel && service.channel->scrambled) return true;
    if (!service.ca.empty()) return true;
    return std::any_of(service.components.begin(), service.components.end(),
                       [](const Component& each) { return !each.ca.empty(); });
}

/** Number and visibility as broadcast: of HD, of DVB or of ATSC; number 0 for none. */
std::pair<uint32_t, bool> numberOf(const Service& service) {
    if (service.channel) {
        const uint32_t major = service.channel->major;
        const uint32_t minor = service.channel->minor;
        return {minor == 0 ? major : major << 16 | minor, !service.channel->hidden};
    }
    const auto& number = service.hdNumber ? service.hdNumber : service.number;
    if (!number) return {0, true};
    return {number->number, number->visible};
}

QELTV_AUDIO_CODEC audioCodec(Codec codec) {
    switch (codec) {
        case Codec::kAc3:
        case Codec::kEac3:
        case Codec::kAc4:
            return QELTV_AUDIO_AC3;
        case Codec::kAac:
        case Codec::kAacLatm:
            return QELTV_AUDIO_AAC;
        default:
            return QELTV_AUDIO_MPEG;
    }
}

QELTV_VIDEO_CODEC videoCodec(Codec codec) {
    switch (codec) {
        case Codec::kMpeg1Video:
        case Codec::kMpeg2Video:
            return QELTV_VIDEO_MPEG2;
        case Codec::kH264:
            return QELTV_VIDEO_AVC;
        case Codec::kH265:
            return QELTV_VIDEO_HEVC;
        default:
            return QELTV_VIDEO_NONE;
    }
}

}  // namespace

Survey StreamSignals::survey(const Region&, const Multiplex& multiplex,
                             const std::function<bool()>& wanted) {
    Survey survey;
    survey.multiplex = multiplex;
    survey.firstNumber = kFirstUnnumbered;
    survey.signal = mMultiplex->survey(wanted);
    if (!survey.signal) return survey;
    const stream::StreamFacts facts = mMultiplex->facts();
    survey.network = facts.networkName;
    survey.multiplex.streamId = facts.streamId;
    survey.multiplex.originalNetworkId = facts.originalNetworkId;
    survey.multiplex.networkId = facts.networkId;
    for (const auto& [id, service] : facts.services) {
        Channel channel;
        channel.list = multiplex.list;
        channel.serviceId = id;
        channel.originalNetworkId = facts.originalNetworkId;
        channel.streamId = facts.streamId;
        channel.type = service.isData()    ? ServiceType::kData
                       : service.isRadio() ? ServiceType::kRadio
                                           : ServiceType::kTelevision;
        channel.name = service.name();
        if (service.description) channel.provider = service.description->provider;
        const auto [number, visible] = numberOf(service);
        channel.number = number;
        if (visible) channel.flags |= CHANNEL_FLAG_VISIBLE;
        if (number != 0) channel.flags |= CHANNEL_FLAG_LCN;
        if (isScrambled(service)) channel.flags |= CHANNEL_FLAG_SCRAMBLED;
        if (isHigh(service)) channel.flags |= CHANNEL_FLAG_HD;
        channel.pmtPid = service.pmtPid;
        channel.pcrPid = service.pcrPid == kNoPid ? uint16_t{0} : service.pcrPid;
        if (const Component* video = service.find(ComponentKind::kVideo)) {
            channel.videoPid = video->pid;
        }
        if (const Component* audio = service.find(ComponentKind::kAudio)) {
            channel.audioPid = audio->pid;
            channel.language = audio->language;
        }
        survey.services.push_back(std::move(channel));
    }
    return survey;
}

std::unique_ptr<Tuning> StreamSignals::tune(const Channel& channel) {
    return std::make_unique<StreamTuning>(mMultiplex, channel.serviceId);
}

Reception StreamSignals::reception(const Multiplex&) const {
    Reception reception;
    reception.signal = mMultiplex->signal();
    const auto receiver = mMultiplex->receiver();
    reception.waiting = receiver && receiver->state() == stream::StreamReceiver::State::kWaiting;
    if (!reception.signal) return reception;
    if (receiver) reception.bitErrors = bitErrors(*receiver);
    reception.level = kFullLevel;
    reception.quality =
            kFullLevel - std::min(reception.bitErrors / kErrorsPerPercent, kFullLevel / 2);
    return reception;
}

uint32_t StreamSignals::kbitPerSecond(uint16_t pid) const {
    constexpr uint64_t kBits = 1000;
    const auto receiver = mMultiplex->receiver();
    return receiver ? static_cast<uint32_t>(receiver->bitsPerSecond(pid) / kBits) : 0;
}

std::optional<VideoFormat> StreamSignals::video(const Channel& channel, const Multiplex&) const {
    const std::optional<Service> service = mMultiplex->service(channel.serviceId);
    if (!service) return std::nullopt;
    const Component* video = service->find(ComponentKind::kVideo);
    if (video == nullptr) return std::nullopt;
    VideoFormat format;
    format.codec = videoCodec(video->codec);
    format.kbitPerSecond = kbitPerSecond(video->pid);
    if (!service->format) return format;
    format.codec = videoCodec(service->format->codec);
    format.width = service->format->width;
    format.height = service->format->height;
    format.frameRate = service->format->rate;
    format.interlaced = service->format->interlaced;
    // 4:3 is 1333 thousandths, 16:9 is 1778.
    constexpr uint32_t kBetween = 1500;
    if (service->format->aspect != 0 && service->format->aspect < kBetween) {
        format.aspectWidth = 4;
        format.aspectHeight = 3;
    }
    return format;
}

std::vector<SoundTrack> StreamSignals::tracks(const Channel& channel) const {
    const std::optional<Service> service = mMultiplex->service(channel.serviceId);
    std::vector<SoundTrack> tracks;
    if (!service) return tracks;
    constexpr uint8_t kStereo = 2;
    for (const Component& each : service->components) {
        if (each.kind != ComponentKind::kAudio) continue;
        tracks.push_back({each.pid, each.language.empty() ? kUndetermined : each.language,
                          audioCodec(each.codec), each.channels != 0 ? each.channels : kStereo,
                          each.role == stream::AudioRole::kVisuallyImpaired
                                  ? QELTV_AUDIO_DESCRIPTION
                                  : QELTV_AUDIO_MAIN,
                          kbitPerSecond(each.pid)});
    }
    return tracks;
}

bool StreamSignals::scrambled(const Channel& channel, bool) const {
    const std::optional<Service> service = mMultiplex->service(channel.serviceId);
    return service && service->scrambledNow;
}

bool StreamSignals::hasTeletext(const Channel& channel) const {
    // A reception that has just begun knows less than the survey before it.
    const std::optional<Service> service = mMultiplex->service(channel.serviceId);
    return service && service->find(ComponentKind::kTeletext) != nullptr;
}

TeletextView StreamSignals::teletext(const Channel& channel, uint16_t number, uint32_t subpage,
                                     const TeletextTopics&) const {
    constexpr size_t kClock = 32;
    TeletextView view;
    view.received = true;
    view.page.number = number;
    const auto receiver = mMultiplex->receiver();
    if (!receiver) return view;
    const stream::TeletextReception text =
            receiver->teletext(channel.serviceId, number, static_cast<uint16_t>(subpage));
    view.subpages = text.subpages;
    if (text.page) {
        view.state = TeletextView::State::kShown;
        view.page = *text.page;
        view.subpage = text.subpage;
    } else if (!text.absent && (text.carried || hasTeletext(channel))) {
        view.state = TeletextView::State::kAwaited;
        view.subpage = subpage;
    }
    auto& header = view.page.rows[0];
    if (view.page.headless) {
        header.fill(' ');
    } else if (text.header) {
        // The clock goes on, and while a page is awaited the headers pass by.
        const size_t first = text.page ? kClock : stream::TeletextPage::kReserved;
        const auto& row = text.header->row;
        std::copy(row.begin() + first, row.end(), header.begin() + first);
        if (!text.page) {
            view.page.national = text.header->national;
            view.page.region = text.header->region;
        }
    }
    return view;
}

std::vector<stream::TopPage> StreamSignals::teletextTop(const Channel& channel) const {
    const auto receiver = mMultiplex->receiver();
    return receiver ? receiver->teletextTop(channel.serviceId) : std::vector<stream::TopPage>();
}

std::vector<SubtitleTrack> StreamSignals::subtitles(const Channel& channel) const {
    const std::optional<Service> service = mMultiplex->service(channel.serviceId);
    std::vector<SubtitleTrack> tracks;
    if (!service) return tracks;
    const auto add = [&](const std::string& language, QELTV_SUBTITLE_KIND kind, uint16_t page) {
        tracks.push_back({language.empty() ? kUndetermined : language, kind, page});
    };
    for (const Component& each : service->components) {
        for (const stream::SubtitleService& subtitle : each.subtitles) {
            add(subtitle.language,
                subtitle.hearingImpaired() ? QELTV_SUBTITLE_HEARING : QELTV_SUBTITLE_DVB, 0);
        }
        for (const stream::TeletextService& text : each.teletext) {
            using Type = stream::TeletextService;
            if (text.type == Type::kSubtitles) {
                add(text.language, QELTV_SUBTITLE_TELETEXT, text.page);
            } else if (text.type == Type::kHearingImpaired) {
                add(text.language, QELTV_SUBTITLE_HEARING, text.page);
            }
        }
    }
    return tracks;
}

std::optional<CaptionStreams> StreamSignals::captionStreams(const Channel& channel) const {
    constexpr uint8_t kMost = 6;
    CaptionStreams streams;
    const auto add = [&](const std::vector<stream::CaptionService>& services) {
        for (const stream::CaptionService& each : services) {
            if (!each.digital || each.number < 1 || each.number > kMost) continue;
            streams.digital = static_cast<uint8_t>(streams.digital | 1 << (each.number - 1));
        }
    };
    if (const auto receiver = mMultiplex->receiver()) {
        streams.line21 = receiver->captionChannels(channel.serviceId);
    }
    if (const auto service = mMultiplex->service(channel.serviceId)) {
        for (const Component& each : service->components) add(each.captions);
    }
    // A station announces them in either place.
    if (const auto event = mMultiplex->present(channel.serviceId)) add(event->captions);
    return streams;
}

std::vector<std::string> StreamSignals::captions(const Channel& channel, uint8_t line21) const {
    const auto receiver = mMultiplex->receiver();
    return receiver ? receiver->captions(channel.serviceId, line21) : std::vector<std::string>();
}

std::unique_ptr<PacketSource> StreamSignals::packets(const Channel& channel, uint32_t) {
    return std::make_unique<StreamPackets>(mMultiplex, channel.serviceId,
                                           StreamPackets::kRecordingLimit);
}

std::unique_ptr<PacketSource> StreamSignals::viewerPackets(const Channel& channel) {
    return std::make_unique<StreamPackets>(mMultiplex, channel.serviceId,
                                           StreamPackets::kViewerLimit);
}

void StreamSignals::setKey(const Channel& channel, const std::vector<uint8_t>& key) {
    mMultiplex->setKey(channel.serviceId, stream::controlWord(key));
}

EventContext StreamSignals::contextOf(const Channel& channel) const {
    const stream::StreamFacts facts = mMultiplex->facts();
    EventContext context;
    context.atsc = facts.atsc;
    if (mLanguage) context.language = mLanguage();
    context.high = (channel.flags & CHANNEL_FLAG_HD) != 0;
    const auto service = facts.services.find(channel.serviceId);
    if (service != facts.services.end() && service->second.description) {
        context.authority = service->second.description->authority;
    }
    return context;
}

std::vector<Event> StreamSignals::all(const Channel& channel) const {
    const std::vector<stream::Event> received = mMultiplex->events(channel.serviceId);
    if (received.empty()) return {};
    const EventContext context = contextOf(channel);
    std::vector<Event> events;
    events.reserve(received.size());
    for (const stream::Event& each : received) events.push_back(eventOf(channel, each, context));
    for (size_t i = 0; i + 1 < events.size(); ++i) {
        if (events[i].duration != 0) continue;
        constexpr int64_t kLongest = 86400;
        const int64_t gap = events[i + 1].start - events[i].start;
        if (gap <= kLongest) events[i].duration = static_cast<uint32_t>(gap);
    }
    return events;
}

std::vector<Event> StreamSignals::events(const Channel& channel, int64_t from, int64_t to,
                                         int64_t) const {
    std::vector<Event> events = all(channel);
    events.erase(std::remove_if(events.begin(), events.end(),
                                [&](const Event& event) {
                                    return event.start >= to || event.end() <= from;
                                }),
                 events.end());
    return events;
}

std::optional<Event> StreamSignals::event(const Channel& channel, uint16_t id, int64_t) const {
    for (Event& event : all(channel)) {
        if (event.id == id) return std::move(event);
    }
    return std::nullopt;
}

std::optional<Event> StreamSignals::present(const Channel& channel, int64_t now) const {
    constexpr uint8_t kRunning = 4;
    const auto table = mMultiplex->present(channel.serviceId);
    if (table && table->start <= now &&
        (table->duration == 0 || table->running == kRunning || now < table->end())) {
        auto present = event(channel, table->id, now);
        // One that runs late has no end that is known; longer than a day it is just not received.
        constexpr int64_t kDay = 86400, kMinute = 60;
        if (present && present->end() <= now && now - present->end() < kDay) {
            present->duration = static_cast<uint32_t>(now + kMinute - present->start);
        }
        return present;
    }
    std::optional<Event> found;
    for (Event& event : all(channel)) {
        if (event.start <= now && now < event.end()) found = std::move(event);
    }
    return found;
}

std::optional<Event> StreamSignals::following(const Channel& channel, int64_t now) const {
    const auto table = mMultiplex->following(channel.serviceId);
    if (table && table->start > now) return event(channel, table->id, now);
    for (Event& event : all(channel)) {
        if (event.start > now) return std::move(event);
    }
    return std::nullopt;
}

std::optional<int64_t> StreamSignals::time() const {
    return mMultiplex->now();
}

std::optional<stream::Time> StreamSignals::timeTable() const {
    return mMultiplex->facts().time;
}

std::vector<stream::RatingRegion> StreamSignals::ratings() const {
    return mMultiplex->facts().ratings;
}

std::vector<stream::Alert> StreamSignals::alerts() const {
    return mMultiplex->facts().alerts;
}

std::vector<stream::Application> StreamSignals::applications(const Channel& channel) const {
    const std::optional<Service> service = mMultiplex->service(channel.serviceId);
    return service ? service->applications : std::vector<stream::Application>();
}

}  // namespace qeltvd
