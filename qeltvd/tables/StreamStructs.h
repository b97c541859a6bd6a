#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/**
 * The contents of broadcasts as plain structs. Languages are three letters of ISO 639 in lower
 * case, countries three of ISO 3166 in capitals; times are seconds since 1970, UTC. Texts are
 * UTF-8.
 */
namespace qeltvd::stream {

/** A conditional access system and the PID of its messages. */
struct CaSystem {
    uint16_t systemId = 0;
    uint16_t pid = 0;
};

enum class ComponentKind : uint8_t {
    kOther = 0,
    kVideo = 1,
    kAudio = 2,
    kTeletext = 3,
    /** Bitmap subtitles of DVB. */
    kSubtitles = 4,
    /** A table of applications (HbbTV). */
    kApplications = 5,
};

enum class Codec : uint8_t {
    kUnknown = 0,
    kMpeg1Video = 1,
    kMpeg2Video = 2,
    kMpeg4Video = 3,
    kH264 = 4,
    kH265 = 5,
    kMpegAudio = 16,
    kAac = 17,
    /** AAC in LATM, as DVB carries it. */
    kAacLatm = 18,
    kAc3 = 19,
    kEac3 = 20,
    kAc4 = 21,
    kDts = 22,
};

/** "H.264", "AC-3". */
const char* nameOf(Codec codec);

/** The purpose of a sound track. */
enum class AudioRole : uint8_t {
    kMain = 0,
    /** Without speech. */
    kCleanEffects = 1,
    kHearingImpaired = 2,
    /** Audio description. */
    kVisuallyImpaired = 3,
};

/** A page of teletext that the programme map names. */
struct TeletextService {
    enum Type : uint8_t {
        kInitial = 1,
        kSubtitles = 2,
        kInformation = 3,
        kSchedule = 4,
        kHearingImpaired = 5,
    };
    std::string language = {};
    uint8_t type = 0;
    /** 0x100 to 0x8ff. */
    uint16_t page = 0;
};

/** Subtitles in the component that names them; types as in EN 300 468, table 26. */
struct SubtitleService {
    std::string language = {};
    uint8_t type = 0;
    uint16_t compositionPage = 0;
    uint16_t ancillaryPage = 0;
    bool hearingImpaired() const { return type >= 0x20 && type <= 0x2f; }
};

/** Closed captions of ATSC. */
struct CaptionService {
    std::string language = {};
    /** Whether it is a service of CEA-708; line 21 otherwise. */
    bool digital = false;
    /** The number of the service of CEA-708; the field, 1 or 2, of line 21. */
    uint8_t number = 0;
    bool easyReader = false;
    bool wide = false;
};

/** One elementary stream of a service. */
struct Component {
    uint16_t pid = 0;
    uint8_t streamType = 0;
    ComponentKind kind = ComponentKind::kOther;
    Codec codec = Codec::kUnknown;
    /** The component tag; none where the broadcast gives none. */
    std::optional<uint8_t> tag = {};
    std::string language = {};
    /** The second language of a track with two. */
    std::string secondLanguage = {};
    AudioRole role = AudioRole::kMain;
    /** Whether the sound is to be mixed with that of another track. */
    bool mixed = false;
    /** Channels of a sound track; 0 unknown. */
    uint8_t channels = 0;
    std::vector<TeletextService> teletext = {};
    std::vector<SubtitleService> subtitles = {};
    std::vector<CaptionService> captions = {};
    std::vector<CaSystem> ca = {};
};

/** Describes a component of an event by its tag (component descriptor). */
struct ComponentText {
    uint8_t tag = 0;
    /** Content and type as in EN 300 468, table 26. */
    uint8_t content = 0;
    uint8_t type = 0;
    std::string language = {};
    std::string text = {};
};

/** The texts of an event in one language. */
struct EventText {
    std::string language = {};
    std::string title = {};
    std::string summary = {};
    /** The text of the extended descriptors. */
    std::string details = {};
    /** Items of the extended descriptors: "Director", "...". */
    std::vector<std::pair<std::string, std::string>> items = {};
};

struct ParentalRating {
    std::string country = {};
    /** The value as broadcast; 1 to 15 stand for an age of value + 3. */
    uint8_t value = 0;
    /** 0 for a value that the broadcaster defines. */
    uint8_t age() const { return value >= 1 && value <= 0x0f ? uint8_t(value + 3) : uint8_t{0}; }
};

/** The value of one dimension of a region's rating table (ATSC). */
struct AdvisoryRating {
    uint8_t region = 0;
    uint8_t dimension = 0;
    uint8_t value = 0;
};

struct Event {
    uint16_t id = 0;
    int64_t start = 0;
    /** Seconds; 0 when the broadcast leaves it open. */
    uint32_t duration = 0;
    /** 0 undefined, 1 not running, 2 starts soon, 3 paused, 4 running. */
    uint8_t running = 0;
    bool scrambled = false;
    std::vector<EventText> texts = {};
    /** Content nibbles: 0x10 to 0x1f film, 0x20 to 0x2f news, ... */
    std::vector<uint8_t> contents = {};
    std::vector<ParentalRating> ratings = {};
    std::vector<AdvisoryRating> advisories = {};
    /** The text of the advisory, "TV-PG-L". */
    std::string advisory = {};
    std::vector<ComponentText> components = {};
    std::vector<CaptionService> captions = {};
    /** Content references; may lack the authority, which is then that of the service. */
    std::string programmeCrid = {};
    std::string seriesCrid = {};

    int64_t end() const { return start + duration; }
    /** The texts in a language, or the first ones; nullptr for an event without. */
    const EventText* text(const std::string& language = {}) const;
};

/** A service as its broadcaster describes it. */
struct ServiceDescription {
    uint16_t serviceId = 0;
    /** EN 300 468, table 87: 0x01 television, 0x02 radio, 0x0c data, 0x19 HD, 0x1f UHD, ... */
    uint8_t type = 0;
    uint8_t running = 0;
    bool scrambled = false;
    bool eitSchedule = false;
    bool eitPresentFollowing = false;
    std::string name = {};
    std::string provider = {};
    /** The begin of the content references of its events. */
    std::string authority = {};
};

struct LogicalNumber {
    uint16_t serviceId = 0;
    uint16_t number = 0;
    bool visible = true;
    /** The number for receivers of HD, where a service has two. */
    bool hd = false;
    /** From NorDig's second descriptor, which comes before the first one. */
    bool second = false;
};

/** How a transport stream is sent. */
struct Delivery {
    enum System : uint8_t {
        kTerrestrial = 1,
        kTerrestrial2 = 2,
        kCable = 3,
        kSatellite = 4,
        kSatellite2 = 5
    };
    System system = kTerrestrial;
    uint64_t frequencyHz = 0;
    uint32_t symbolRate = 0;
    uint32_t bandwidthHz = 0;
    /** 0 horizontal, 1 vertical, 2 left, 3 right; of satellites. */
    uint8_t polarisation = 0;
    /** Tenths of a degree, east positive; of satellites. */
    int32_t position = 0;
};

/** A transport stream in a network or bouquet. */
struct NetworkStream {
    uint16_t streamId = 0;
    uint16_t originalNetworkId = 0;
    std::optional<Delivery> delivery = {};
    /** Service ids and types. */
    std::vector<std::pair<uint16_t, uint8_t>> services = {};
    std::vector<LogicalNumber> numbers = {};
    std::string authority = {};
};

/** The clock of a region that differs from UTC. */
struct LocalOffset {
    std::string country = {};
    /** 0 for a country without zones. */
    uint8_t region = 0;
    int32_t seconds = 0;
    /** When the offset changes; 0 where the broadcast names no time. */
    int64_t changeAt = 0;
    int32_t nextSeconds = 0;
};

struct Time {
    int64_t utc = 0;
    std::vector<LocalOffset> offsets = {};
    /** Whether `offsets` says anything: TOT does, TDT does not. */
    bool hasOffsets = false;
    /** Whether daylight saving time holds; ATSC only. */
    std::optional<bool> daylightSaving = {};
};

/** An application that a service comes with. */
struct Application {
    uint32_t organisation = 0;
    uint16_t id = 0;
    /** 0x0010 for HbbTV. */
    uint16_t type = 0;
    /** 1 starts by itself, 2 present, 3 destroy, 4 kill, ... */
    uint8_t control = 0;
    uint8_t priority = 0;
    std::string name = {};
    /** Where its first page is; empty where it does not come by HTTP. */
    std::string url = {};
};

/** A cable emergency alert. */
struct Alert {
    uint8_t sequence = 0;
    uint16_t id = 0;
    /** "EAS", "CIV", "WXR", "PEP". */
    std::string originator = {};
    /** "TOR", "RWT". */
    std::string code = {};
    std::string nature = {};
    std::string text = {};
    /** Seconds that the message is to be shown; 0 without limit. */
    uint8_t remaining = 0;
    /** 0 for immediately. */
    int64_t start = 0;
    /** Minutes; 0 for not known. */
    uint16_t durationMinutes = 0;
    /** 0 a test, 3 low, 7 medium, 11 high, 15 maximum. */
    uint8_t priority = 0;
    /** The channel that has details; 0 for none. */
    uint16_t major = 0;
    uint16_t minor = 0;
    struct Location {
        uint8_t state = 0;
        uint8_t subdivision = 0;
        uint16_t county = 0;
    };
    std::vector<Location> locations = {};
};

/** One channel of a virtual channel table. */
struct VirtualChannel {
    std::string name = {};
    std::string longName = {};
    uint16_t major = 0;
    /** 0 for a number of one part, which `major` is then. */
    uint16_t minor = 0;
    uint16_t streamId = 0;
    uint16_t programNumber = 0;
    uint16_t sourceId = 0;
    /** 1 analogue, 2 television, 3 radio, 4 data. */
    uint8_t type = 0;
    bool scrambled = false;
    bool hidden = false;
    bool hideGuide = false;
};

/** The ratings of a region (ATSC). */
struct RatingRegion {
    uint8_t region = 0;
    std::string name = {};
    struct Value {
        std::string abbreviation = {};
        std::string text = {};
    };
    struct Dimension {
        std::string name = {};
        bool graduated = false;
        std::vector<Value> values = {};
    };
    std::vector<Dimension> dimensions = {};
};

/** The picture as its sequence header describes it. */
struct PictureFormat {
    Codec codec = Codec::kUnknown;
    uint16_t width = 0;
    uint16_t height = 0;
    /** Pictures per 1000 seconds; 0 where the stream does not say. */
    uint32_t rate = 0;
    bool interlaced = false;
    /** Width to height of the screen in thousandths, 1778 for 16:9; 0 unknown. */
    uint32_t aspect = 0;

    bool operator==(const PictureFormat& other) const {
        return codec == other.codec && width == other.width && height == other.height &&
               rate == other.rate && interlaced == other.interlaced && aspect == other.aspect;
    }
    bool operator!=(const PictureFormat& other) const { return !(*this == other); }
};

}  // namespace qeltvd::stream
