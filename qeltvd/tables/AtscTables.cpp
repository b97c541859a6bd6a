#include "Descriptors.h"
#include "StreamText.h"
#include "StreamTime.h"
#include "Tables.h"

namespace qeltvd::stream {

namespace {

constexpr uint8_t kMasterGuide = 0xc7, kTerrestrialChannels = 0xc8, kCableChannels = 0xc9,
                  kRatingRegion = 0xca, kEvents = 0xcb, kExtendedText = 0xcc, kSystemTime = 0xcd,
                  kAlert = 0xd8;
/** 1980-01-06, when the seconds of GPS begin. */
constexpr int64_t kGpsEpoch = 315964800;

/** The body behind the header and the protocol version, which is to be 0; none otherwise. */
std::optional<Reader> open(Bytes section, uint8_t tableId, TableHeader* header) {
    constexpr size_t kFixed = PSI_HEADER_SIZE_SYNTAX1 + 1;
    if (!isLongSection(section, kFixed) || section.data[0] != tableId) return std::nullopt;
    readHeader(section, header);
    const uint8_t* body = section.data + PSI_HEADER_SIZE_SYNTAX1;
    Reader reader({body, static_cast<size_t>(endOfBody(section) - body)});
    if (reader.u8() != 0) return std::nullopt;
    return reader;
}

void readAdvisory(Bytes body, Event* event) {
    Reader reader(body);
    const uint8_t regions = reader.u8() & 0x3f;
    for (uint8_t i = 0; i < regions && reader.ok(); ++i) {
        const uint8_t region = reader.u8(), dimensions = reader.u8();
        for (uint8_t j = 0; j < dimensions && reader.ok(); ++j) {
            const uint8_t dimension = reader.u8();
            const auto value = static_cast<uint8_t>(reader.u8() & 0x0f);
            if (reader.ok()) event->advisories.push_back({region, dimension, value});
        }
        const std::string text = atscText(reader.take(reader.u8()));
        if (event->advisory.empty()) event->advisory = text;
    }
}

}  // namespace

int64_t timeOfAtsc(uint32_t time, int64_t utcOffset) {
    return kGpsEpoch + time - utcOffset;
}

std::optional<MasterGuide> masterGuide(Bytes section) {
    MasterGuide table;
    auto reader = open(section, kMasterGuide, &table);
    if (!reader) return std::nullopt;
    const uint16_t count = reader->u16();
    for (uint16_t i = 0; i < count; ++i) {
        MasterGuide::Entry entry;
        entry.type = reader->u16();
        entry.pid = reader->u16() & 0x1fff;
        entry.version = reader->u8() & 0x1f;
        reader->u32();
        reader->skip(reader->u16() & 0x0fff);
        if (!reader->ok()) return std::nullopt;
        table.tables.push_back(entry);
    }
    return table;
}

std::optional<ChannelTable> channelTable(Bytes section) {
    constexpr uint8_t kLongName = 0xa0;
    constexpr uint16_t kOnePart = 0x3f0;
    ChannelTable table;
    table.cable = section.size > 0 && section.data[0] == kCableChannels;
    auto reader = open(section, table.cable ? kCableChannels : kTerrestrialChannels, &table);
    if (!reader) return std::nullopt;
    const uint8_t count = reader->u8();
    for (uint8_t i = 0; i < count; ++i) {
        VirtualChannel channel;
        channel.name = utf16Text(reader->take(14));
        const uint32_t numbers = reader->u24();
        channel.major = numbers >> 10 & 0x3ff;
        channel.minor = numbers & 0x3ff;
        // A number of one part is marked in the major number and spread over both.
        if (table.cable && (channel.major & kOnePart) == kOnePart) {
            channel.major = static_cast<uint16_t>((channel.major & 0x0f) << 10 | channel.minor);
            channel.minor = 0;
        }
        reader->u8();
        reader->u32();
        channel.streamId = reader->u16();
        channel.programNumber = reader->u16();
        const uint16_t flags = reader->u16();
        channel.scrambled = (flags & 0x2000) != 0;
        channel.hidden = (flags & 0x1000) != 0;
        channel.hideGuide = (flags & 0x0200) != 0;
        channel.type = flags & 0x3f;
        channel.sourceId = reader->u16();
        const Bytes list = reader->take(reader->u16() & 0x3ff);
        if (!reader->ok()) return std::nullopt;
        for (const Descriptor descriptor : Descriptors(list)) {
            if (descriptor.tag() == kLongName) channel.longName = atscText(descriptor.body());
        }
        table.channels.push_back(std::move(channel));
    }
    return table;
}

std::optional<AtscEventTable> atscEventTable(Bytes section, int64_t utcOffset) {
    constexpr uint8_t kCaptions = 0x86, kAdvisory = 0x87;
    AtscEventTable table;
    auto reader = open(section, kEvents, &table);
    if (!reader) return std::nullopt;
    const uint8_t count = reader->u8();
    for (uint8_t i = 0; i < count; ++i) {
        Event event;
        event.id = reader->u16() & 0x3fff;
        event.start = timeOfAtsc(reader->u32(), utcOffset);
        event.duration = reader->u24() & 0x0fffff;
        const Bytes title = reader->take(reader->u8());
        const Bytes list = reader->take(reader->u16() & 0x0fff);
        if (!reader->ok()) return std::nullopt;
        for (LanguageText& each : atscTexts(title)) {
            event.texts.emplace_back();
            event.texts.back().language = std::move(each.language);
            event.texts.back().title = std::move(each.text);
        }
        for (const Descriptor descriptor : Descriptors(list)) {
            if (descriptor.tag() == kCaptions) {
                event.captions = captionServices(descriptor.body());
            } else if (descriptor.tag() == kAdvisory) {
                readAdvisory(descriptor.body(), &event);
            }
        }
        table.events.push_back(std::move(event));
    }
    return table;
}

std::optional<ExtendedText> extendedText(Bytes section) {
    ExtendedText table;
    auto reader = open(section, kExtendedText, &table);
    if (!reader) return std::nullopt;
    const uint32_t id = reader->u32();
    if (!reader->ok()) return std::nullopt;
    table.sourceId = static_cast<uint16_t>(id >> 16);
    if ((id & 3) == 2) table.eventId = static_cast<uint16_t>(id >> 2 & 0x3fff);
    table.texts = atscTexts(reader->rest());
    return table;
}

std::optional<SystemTime> systemTime(Bytes section) {
    TableHeader header;
    auto reader = open(section, kSystemTime, &header);
    if (!reader) return std::nullopt;
    const uint32_t time = reader->u32();
    SystemTime result;
    result.utcOffset = reader->u8();
    const uint16_t saving = reader->u16();
    if (!reader->ok()) return std::nullopt;
    result.time.utc = timeOfAtsc(time, result.utcOffset);
    result.time.daylightSaving = (saving & 0x8000) != 0;
    return result;
}

std::optional<RatingRegion> ratingRegion(Bytes section) {
    TableHeader header;
    auto reader = open(section, kRatingRegion, &header);
    if (!reader) return std::nullopt;
    RatingRegion region;
    region.region = static_cast<uint8_t>(header.extension);
    region.name = atscText(reader->take(reader->u8()));
    const uint8_t dimensions = reader->u8();
    for (uint8_t i = 0; i < dimensions && reader->ok(); ++i) {
        RatingRegion::Dimension dimension;
        dimension.name = atscText(reader->take(reader->u8()));
        const uint8_t values = reader->u8();
        dimension.graduated = (values & 0x10) != 0;
        for (uint8_t j = 0; j < (values & 0x0f) && reader->ok(); ++j) {
            RatingRegion::Value value;
            value.abbreviation = atscText(reader->take(reader->u8()));
            value.text = atscText(reader->take(reader->u8()));
            dimension.values.push_back(std::move(value));
        }
        region.dimensions.push_back(std::move(dimension));
    }
    if (!reader->ok()) return std::nullopt;
    return region;
}

std::optional<Alert> alert(Bytes section, int64_t utcOffset) {
    TableHeader header;
    auto reader = open(section, kAlert, &header);
    if (!reader) return std::nullopt;
    Alert alert;
    alert.sequence = header.version;
    alert.id = reader->u16();
    alert.originator = asciiText(reader->take(3));
    alert.code = asciiText(reader->take(reader->u8()));
    alert.nature = atscText(reader->take(reader->u8()));
    alert.remaining = reader->u8();
    const uint32_t start = reader->u32();
    if (start != 0) alert.start = timeOfAtsc(start, utcOffset);
    alert.durationMinutes = reader->u16();
    alert.priority = reader->u16() & 0x0f;
    reader->u16();
    alert.major = reader->u16() & 0x3ff;
    alert.minor = reader->u16() & 0x3ff;
    reader->u16();
    alert.text = atscText(reader->take(reader->u16()));
    const uint8_t locations = reader->u8();
    for (uint8_t i = 0; i < locations; ++i) {
        Alert::Location location;
        location.state = reader->u8();
        const uint16_t word = reader->u16();
        location.subdivision = static_cast<uint8_t>(word >> 12);
        location.county = word & 0x3ff;
        alert.locations.push_back(location);
    }
    if (!reader->ok()) return std::nullopt;
    return alert;
}

}  // namespace qeltvd::stream
