#include "StreamEvents.h"

#include <algorithm>

namespace qeltvd {

namespace {

using stream::AdvisoryRating;
using stream::ComponentText;

/** Bits of the content of a rating. */
constexpr uint8_t kDialogue = 1, kViolence = 8;

// Contents of component descriptors, EN 300 468, table 26.
constexpr uint8_t kMpeg2Video = 1, kMpegAudio = 2, kSubtitles = 3, kAc3 = 4, kAvcVideo = 5,
                  kAacAudio = 6, kHevcVideo = 9;

bool isHigh(const ComponentText& each) {
    switch (each.content) {
        case kMpeg2Video:
            return each.type >= 0x09 && each.type <= 0x10;
        case kAvcVideo:
            return each.type >= 0x0b;
        case kHevcVideo:
            return each.type <= 0x05;
        default:
            return false;
    }
}

bool isVideo(const ComponentText& each) {
    return each.content == kMpeg2Video || each.content == kAvcVideo || each.content == kHevcVideo;
}

bool isSound(const ComponentText& each) {
    return each.content == kMpegAudio || each.content == kAc3 || each.content == kAacAudio;
}

bool isSubtitle(const ComponentText& each) {
    const bool dvb =
            (each.type >= 0x10 && each.type <= 0x15) || (each.type >= 0x20 && each.type <= 0x25);
    return each.content == kSubtitles && (each.type == 0x01 || dvb);
}

/** Sound for the visually impaired. */
bool isDescription(const ComponentText& each) {
    if (each.content == kAc3) return (each.type >> 3 & 7) == 2;
    return each.content == kMpegAudio
                   ? each.type == 0x40 || each.type == 0x47 || each.type == 0x48
                   : each.content == kAacAudio && (each.type == 0x40 || each.type == 0x44 ||
                                                   each.type == 0x47 || each.type == 0x48);
}

uint8_t channelsOf(const ComponentText& each) {
    constexpr uint8_t kMono = 1, kStereo = 2, kSurround = 6;
    if (each.content == kAc3) {
        const int mode = each.type & 7;
        return mode == 0 ? kMono : mode <= 3 ? kStereo : kSurround;
    }
    if (each.type == 0x01) return kMono;
    return each.type == 0x05 ? kSurround : kStereo;
}

uint16_t flagsOf(const stream::Event& event, bool high) {
    uint16_t flags = 0;
    bool video = false;
    for (const ComponentText& each : event.components) {
        if (isVideo(each)) video = true;
        if (isHigh(each)) flags |= QELTV_EVENT_HD;
        if (isSubtitle(each)) flags |= QELTV_EVENT_SUBTITLES;
        if (isDescription(each)) flags |= QELTV_EVENT_AUDIO_DESCRIPTION;
    }
    if (!video && high) flags |= QELTV_EVENT_HD;
    if (!event.captions.empty()) flags |= QELTV_EVENT_SUBTITLES;
    if (event.scrambled) flags |= QELTV_EVENT_SCRAMBLED;
    return flags;
}

uint8_t genreOf(const stream::Event& event) {
    for (const uint8_t content : event.contents) {
        const auto genre = static_cast<uint8_t>(content >> 4);
        if (genre >= QELTV_GENRE_FILM && genre <= QELTV_GENRE_LEISURE) return genre;
    }
    return 0;
}

/** A value of the rating region of the United States. */
void takeUnitedStates(const AdvisoryRating& advisory, Rating* rating) {
    constexpr uint8_t kTvAges[] = {0, 0, 0, 7, 14, 17};
    constexpr uint8_t kFilmAges[] = {0, 0, 0, 7, 13, 16, 18, 18};
    // The last value of the films stands for one that is not rated.
    constexpr uint8_t kFirstAge = 2;
    const uint8_t value = advisory.value;
    switch (advisory.dimension) {
        case 0:
            if (value < kFirstAge || value >= std::size(kTvAges)) break;
            rating->known = true;
            rating->age = std::max(rating->age, kTvAges[value]);
            break;
        case 1:
        case 2:
        case 3:
        case 4:
            if (value == 0) break;
            rating->content |= static_cast<uint8_t>(kDialogue << (advisory.dimension - 1));
            break;
        case 5:
            if (value == 0) break;
            rating->known = true;
            rating->children = true;
            if (value > 1) rating->age = std::max<uint8_t>(rating->age, 7);
            break;
        case 6:
            if (value != 0) rating->content |= kViolence;
            break;
        case 7:
            if (value < kFirstAge || value >= std::size(kFilmAges)) break;
            rating->known = true;
            rating->film = true;
            rating->age = std::max(rating->age, kFilmAges[value]);
            break;
        default:
            break;
    }
}

/** A value of the rating region of Canada. */
void takeCanada(const AdvisoryRating& advisory, Rating* rating) {
    constexpr uint8_t kEnglishAges[] = {0, 0, 8, 0, 8, 14, 18};
    constexpr uint8_t kFrenchAges[] = {0, 0, 8, 13, 16, 18};
    // Value 0 is exempt from ratings.
    const uint8_t value = advisory.value;
    if (value == 0) return;
    if (advisory.dimension == 0 && value < std::size(kEnglishAges)) {
        rating->known = true;
        rating->children = value <= 2;
        rating->age = std::max(rating->age, kEnglishAges[value]);
    }
    if (advisory.dimension == 1 && value < std::size(kFrenchAges)) {
        rating->known = true;
        rating->age = std::max(rating->age, kFrenchAges[value]);
    }
}

Rating ratingOf(const stream::Event& event) {
    constexpr uint8_t kUnitedStates = 1, kCanada = 2;
    Rating rating;
    rating.known = false;
    for (const AdvisoryRating& each : event.advisories) {
        if (each.region != kUnitedStates && each.region != kCanada) continue;
        const auto system =
                each.region == kUnitedStates ? RatingSystem::kUnitedStates : RatingSystem::kCanada;
        if (rating.system.value_or(system) != system) continue;
        rating.system = system;
        if (each.region == kUnitedStates) {
            takeUnitedStates(each, &rating);
        } else {
            takeCanada(each, &rating);
        }
    }
    if (rating.system) return rating;
    for (const stream::ParentalRating& each : event.ratings) {
        if (each.age() == 0) continue;
        rating.known = true;
        rating.age = each.age();
        break;
    }
    return rating;
}

/** A number for a series; 0 for none. */
uint16_t seriesOf(const std::string& reference) {
    if (reference.empty()) return 0;
    // FNV-1a, folded.
    uint32_t hash = 2166136261u;
    for (const char c : reference) hash = (hash ^ static_cast<uint8_t>(c)) * 16777619u;
    return static_cast<uint16_t>(std::max<uint32_t>((hash >> 16 ^ hash) & 0xffff, 1));
}

std::string whole(const std::string& reference, const std::string& authority) {
    if (reference.empty() || reference.front() != '/' || authority.empty()) return reference;
    return "crid://" + authority + reference;
}

std::string extendedOf(const stream::EventText& text) {
    std::string all;
    for (const auto& [name, value] : text.items) all += name + ": " + value + "\n";
    return all + text.details;
}

/** One code for a language that has two, that of bibliographies and that of terminology. */
std::string languageCode(const std::string& language) {
    constexpr const char* kBoth[][2] = {
            {"alb", "sqi"}, {"arm", "hye"}, {"baq", "eus"}, {"bur", "mya"}, {"chi", "zho"},
            {"cze", "ces"}, {"dut", "nld"}, {"fre", "fra"}, {"geo", "kat"}, {"ger", "deu"},
            {"gre", "ell"}, {"ice", "isl"}, {"mac", "mkd"}, {"mao", "mri"}, {"may", "msa"},
            {"per", "fas"}, {"rum", "ron"}, {"slo", "slk"}, {"tib", "bod"}, {"wel", "cym"}};
    for (const auto& [bibliographic, terminology] : kBoth) {
        if (language == bibliographic) return terminology;
    }
    return language;
}

/** The texts in a language, else the first ones that have a title, else the first ones. */
const stream::EventText* textIn(const stream::Event& event, const std::string& language) {
    const std::string wanted = languageCode(language);
    const stream::EventText* first = nullptr;
    for (const stream::EventText& each : event.texts) {
        if (each.title.empty()) continue;
        if (languageCode(each.language) == wanted) return &each;
        if (first == nullptr) first = &each;
    }
    return first != nullptr ? first : event.text();
}

/** The text of an event of ATSC, which comes apart from its titles. */
std::string detailsOf(const stream::Event& event, const stream::EventText& text) {
    if (!text.details.empty()) return text.details;
    for (const stream::EventText& each : event.texts) {
        if (!each.details.empty()) return each.details;
    }
    return {};
}

}  // namespace

Event eventOf(const Channel& channel, const stream::Event& received, const EventContext& context) {
    Event event;
    event.channelId = channel.channelId;
    event.id = received.id;
    event.start = received.start;
    event.duration = received.duration;
    event.genre = genreOf(received);
    event.flags = flagsOf(received, context.high);
    event.rating = ratingOf(received);
    for (const stream::ParentalRating& each : received.ratings) {
        if (each.age() != 0) event.ages.push_back({each.country, each.age()});
    }
    if (const stream::EventText* text = textIn(received, context.language)) {
        event.language = text->language;
        event.title = text->title;
        event.details = context.atsc ? detailsOf(received, *text) : text->summary;
        event.extended = extendedOf(*text);
    }
    event.reference = whole(received.programmeCrid, context.authority);
    event.seriesReference = whole(received.seriesCrid, context.authority);
    event.series = seriesOf(event.seriesReference);
    constexpr uint8_t kCodecMpeg = 1, kCodecAc3 = 2, kCodecAac = 3;
    for (const ComponentText& each : received.components) {
        if (!isSound(each)) continue;
        const uint8_t codec = each.content == kAc3        ? kCodecAc3
                              : each.content == kAacAudio ? kCodecAac
                                                          : kCodecMpeg;
        event.sounds.push_back({each.language, codec, channelsOf(each), isDescription(each)});
    }
    std::stable_partition(event.sounds.begin(), event.sounds.end(),
                          [](const Event::Sound& sound) { return !sound.description; });
    return event;
}

}  // namespace qeltvd
