#include <bitstream/dvb/si.h>
#include <bitstream/mpeg/psi.h>

#include "Descriptors.h"
#include "StreamText.h"
#include "StreamTime.h"
#include "Tables.h"

namespace qeltvd::stream {

namespace {

constexpr uint64_t kUndefinedTime = 0xffffffffff;
constexpr int64_t kDay = 86400;
/** The day 1970-01-01 as a Modified Julian Date. */
constexpr int64_t kEpochDay = 40587;
constexpr int64_t kDays = 0x10000;

/** Two decimal digits; none where they are not. */
std::optional<uint32_t> decimal(uint64_t byte) {
    const auto high = static_cast<uint32_t>(byte >> 4 & 0xf),
               low = static_cast<uint32_t>(byte & 0xf);
    if (high > 9 || low > 9) return std::nullopt;
    return high * 10 + low;
}

std::optional<uint32_t> secondsOf(uint64_t digits) {
    const auto hours = decimal(digits >> 16), minutes = decimal(digits >> 8),
               seconds = decimal(digits);
    if (!hours || !minutes || !seconds) return std::nullopt;
    return *hours * 3600 + *minutes * 60 + *seconds;
}

/** Hours and minutes of an offset, with its sign. */
int32_t offsetOf(uint16_t digits, bool negative) {
    const auto seconds = secondsOf(uint64_t{digits} << 8);
    if (!seconds) return 0;
    return negative ? -static_cast<int32_t>(*seconds) : static_cast<int32_t>(*seconds);
}

/** A text in parts, each of which may choose its table anew or go on in that of the one before. */
class JoinedText {
  public:
    void add(Bytes part) {
        if (part.size == 0) return;
        const std::string bytes(reinterpret_cast<const char*>(part.data), part.size);
        const std::string table = bytes.substr(0, tableSize(part));
        if (!table.empty() && table != mTable) {
            flush();
            mTable = table;
        }
        mBytes += bytes.substr(table.size());
    }
    std::string finish() {
        flush();
        return mText;
    }

  private:
    static size_t tableSize(Bytes part) {
        if (part.data[0] >= 0x20) return 0;
        if (part.data[0] == 0x10) return std::min<size_t>(3, part.size);
        return part.data[0] == 0x1f ? std::min<size_t>(2, part.size) : 1;
    }
    void flush() {
        const std::string whole = mTable + mBytes;
        if (!mBytes.empty()) {
            mText += dvbText({reinterpret_cast<const uint8_t*>(whole.data()), whole.size()});
        }
        mBytes.clear();
    }

    std::string mTable;
    std::string mBytes;
    std::string mText;
};

/** The extended descriptors of one language. */
struct ExtendedParts {
    std::string language;
    JoinedText details;
    std::vector<std::pair<JoinedText, JoinedText>> items;
};

EventText& textIn(Event* event, const std::string& language) {
    for (EventText& each : event->texts) {
        if (each.language == language) return each;
    }
    event->texts.emplace_back();
    event->texts.back().language = language;
    return event->texts.back();
}

void readShortEvent(const Descriptor& descriptor, Event* event) {
    uint8_t* raw = descriptor.raw();
    if (!desc4d_validate(raw)) return;
    EventText& text = textIn(event, languageOf(desc4d_get_lang(raw)));
    uint8_t size = 0;
    const uint8_t* name = desc4d_get_event_name(raw, &size);
    text.title = dvbText({name, size});
    const uint8_t* summary = desc4d_get_text(raw, &size);
    text.summary = dvbText({summary, size});
}

void readExtendedEvent(const Descriptor& descriptor, std::vector<ExtendedParts>* all) {
    uint8_t* raw = descriptor.raw();
    if (!desc4e_validate(raw)) return;
    const std::string language = languageOf(desc4e_get_lang(raw));
    ExtendedParts* parts = nullptr;
    for (ExtendedParts& each : *all) {
        if (each.language == language) parts = &each;
    }
    if (parts == nullptr) {
        all->emplace_back();
        parts = &all->back();
        parts->language = language;
    }
    Reader items({raw + DESC4E_HEADER_SIZE + 1, desc4e_get_items_length(raw)});
    while (items.left() > 0) {
        const Bytes name = items.take(items.u8());
        const Bytes text = items.take(items.u8());
        if (!items.ok()) break;
        // One without a name continues the one before.
        if (name.size > 0 || parts->items.empty()) parts->items.emplace_back();
        parts->items.back().first.add(name);
        parts->items.back().second.add(text);
    }
    uint8_t size = 0;
    const uint8_t* text = desc4e_get_text(raw, &size);
    parts->details.add({text, size});
}

void readRatings(const Descriptor& descriptor, Event* event) {
    if (!desc55_validate(descriptor.raw())) return;
    for (uint8_t i = 0;; ++i) {
        uint8_t* entry = desc55_get_rating(descriptor.raw(), i);
        if (entry == nullptr) return;
        event->ratings.push_back(
                {countryOf(desc55n_get_country_code(entry)), desc55n_get_rating(entry)});
    }
}

/** References of TV-Anytime: the programme's own and that of its series. */
void readReferences(Bytes body, Event* event) {
    constexpr uint8_t kProgramme = 0x01, kSeries = 0x02, kOther = 0x30;
    Reader reader(body);
    while (reader.left() > 0) {
        const uint8_t head = reader.u8();
        // Other locations of the reference are in a table that few broadcasts have.
        if ((head & 3) != 0) return;
        const std::string reference = asciiText(reader.take(reader.u8()));
        if (!reader.ok()) return;
        // Some countries number the types from 0x31.
        uint8_t type = head >> 2;
        if (type > kOther) type = static_cast<uint8_t>(type - kOther);
        if (type == kProgramme) event->programmeCrid = reference;
        if (type == kSeries) event->seriesCrid = reference;
    }
}

void readComponentText(const Descriptor& descriptor, Event* event) {
    uint8_t* raw = descriptor.raw();
    if (!desc50_validate(raw)) return;
    uint8_t size = 0;
    const uint8_t* text = desc50_get_text(raw, &size);
    event->components.push_back({desc50_get_component_tag(raw), desc50_get_stream_content(raw),
                                 desc50_get_component_type(raw),
                                 languageOf(desc50_get_language(raw)), dvbText({text, size})});
}

void readEventDescriptors(const Descriptors& descriptors, Event* event) {
    constexpr uint8_t kReferences = 0x76;
    std::vector<ExtendedParts> extended;
    for (const Descriptor descriptor : descriptors) {
        const Bytes body = descriptor.body();
        switch (descriptor.tag()) {
            case 0x4d:
                readShortEvent(descriptor, event);
                break;
            case 0x4e:
                readExtendedEvent(descriptor, &extended);
                break;
            case 0x50:
                readComponentText(descriptor, event);
                break;
            case 0x54:
                if (!desc54_validate(descriptor.raw())) break;
                for (size_t i = 0; i < body.size; i += DESC54_CONTENT_SIZE) {
                    event->contents.push_back(body.data[i]);
                }
                break;
            case 0x55:
                readRatings(descriptor, event);
                break;
            case kReferences:
                readReferences(body, event);
                break;
            default:
                break;
        }
    }
    for (ExtendedParts& parts : extended) {
        EventText& text = textIn(event, parts.language);
        text.details = parts.details.finish();
        for (auto& [name, value] : parts.items) {
            text.items.emplace_back(name.finish(), value.finish());
        }
    }
}

void readOffsets(const Descriptor& descriptor, Time* time) {
    if (!desc58_validate(descriptor.raw())) return;
    for (uint8_t i = 0;; ++i) {
        const uint8_t* entry = desc58_get_lto(descriptor.raw(), i);
        if (entry == nullptr) return;
        const bool negative = desc58n_get_lto_polarity(entry) != 0;
        LocalOffset offset;
        offset.country = countryOf(desc58n_get_country_code(entry));
        offset.region = desc58n_get_country_region_id(entry);
        offset.seconds = offsetOf(desc58n_get_lt_offset(entry), negative);
        offset.changeAt = timeOfDvb(desc58n_get_time_of_change(entry)).value_or(0);
        offset.nextSeconds = offsetOf(desc58n_get_next_offset(entry), negative);
        time->offsets.push_back(offset);
    }
}

}  // namespace

std::optional<int64_t> timeOfDvb(uint64_t time) {
    if (time == kUndefinedTime) return std::nullopt;
    const auto seconds = secondsOf(time & 0xffffff);
    if (!seconds || *seconds >= kDay) return std::nullopt;
    auto day = static_cast<int64_t>(time >> 24 & 0xffff);
    // The 16 bits of the day begin anew on 2038-04-23. No broadcast is older than 1970.
    if (day < kEpochDay) day += kDays;
    return (day - kEpochDay) * kDay + *seconds;
}

uint64_t dvbOfTime(int64_t time) {
    const auto digits = [](int64_t number) {
        return static_cast<uint64_t>(number / 10 << 4 | number % 10);
    };
    const int64_t day = time / kDay + kEpochDay, second = time % kDay;
    return static_cast<uint64_t>(day % kDays) << 24 | digits(second / 3600) << 16 |
           digits(second / 60 % 60) << 8 | digits(second % 60);
}

std::optional<EventTable> eventTable(Bytes section) {
    if (!isLongSection(section, EIT_HEADER_SIZE) || !eit_validate(section.data)) {
        return std::nullopt;
    }
    EventTable table;
    readHeader(section, &table);
    table.presentFollowing = table.tableId <= EIT_TABLE_ID_PF_OTHER;
    table.actual = table.tableId == EIT_TABLE_ID_PF_ACTUAL ||
                   (table.tableId >= EIT_TABLE_ID_SCHED_ACTUAL_FIRST &&
                    table.tableId <= EIT_TABLE_ID_SCHED_ACTUAL_LAST);
    table.streamId = eit_get_tsid(section.data);
    table.originalNetworkId = eit_get_onid(section.data);
    table.segmentLastSection = eit_get_segment_last_sec_number(section.data);
    table.lastTableId = eit_get_last_table_id(section.data);
    for (const uint8_t* at = section.data + EIT_HEADER_SIZE;
         at + EIT_EVENT_SIZE <= endOfBody(section);
         at += EIT_EVENT_SIZE + eitn_get_desclength(at)) {
        const auto start = timeOfDvb(eitn_get_start_time(at));
        if (!start) continue;
        Event event;
        event.id = eitn_get_event_id(at);
        event.start = *start;
        event.duration = secondsOf(eitn_get_duration_bcd(at)).value_or(0);
        event.running = eitn_get_running(at);
        event.scrambled = eitn_get_ca(at);
        readEventDescriptors(Descriptors::of(at + 10), &event);
        table.events.push_back(std::move(event));
    }
    return table;
}

std::optional<Time> timeTable(Bytes section) {
    if (!isWhole(section)) return std::nullopt;
    const bool offsets = section.data[0] == TOT_TABLE_ID;
    if (offsets ? !tot_validate(section.data) : !tdt_validate(section.data)) return std::nullopt;
    const auto utc = timeOfDvb(tdt_get_utc(section.data));
    if (!utc) return std::nullopt;
    Time time;
    time.utc = *utc;
    time.hasOffsets = offsets;
    if (offsets) {
        // The list may reach into the checksum, which the validator does not mind.
        const size_t size = tot_get_desclength(section.data);
        if (size + TOT_HEADER_SIZE + PSI_CRC_SIZE > section.size) return std::nullopt;
        for (const Descriptor descriptor : Descriptors::of(section.data + 8)) {
            if (descriptor.tag() == 0x58) readOffsets(descriptor, &time);
        }
    }
    return time;
}

}  // namespace qeltvd::stream
