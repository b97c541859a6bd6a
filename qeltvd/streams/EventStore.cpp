#include "EventStore.h"

#include <algorithm>
#include <cstdlib>

namespace qeltvd::stream {

namespace {

constexpr uint16_t kPresentFollowing = 0x4e;
/** Bytes of a section beside its events, about. */
constexpr size_t kPlaceSize = 256;
/** Seconds that the present event may begin earlier or later than the schedule has it. */
constexpr int64_t kMostMoved = 12 * 3600;

size_t sizeOf(const Event& event) {
    size_t size = sizeof(event) + event.contents.size() +
                  event.ratings.size() * sizeof(ParentalRating) +
                  event.advisories.size() * sizeof(AdvisoryRating);
    for (const EventText& text : event.texts) {
        size += sizeof(text) + text.title.size() + text.summary.size() + text.details.size();
        for (const auto& [name, value] : text.items) {
            size += 2 * sizeof(std::string) + name.size() + value.size();
        }
    }
    for (const ComponentText& each : event.components) size += sizeof(each) + each.text.size();
    return size;
}

/** Adds the texts of a table of their own, each to the title in its language if there is one. */
void addDetails(const std::vector<LanguageText>& texts, Event* event) {
    for (const LanguageText& each : texts) {
        const auto known =
                std::find_if(event->texts.begin(), event->texts.end(),
                             [&](const EventText& text) { return text.language == each.language; });
        if (known != event->texts.end()) {
            known->details = each.text;
        } else {
            event->texts.emplace_back();
            event->texts.back().language = each.language;
            event->texts.back().details = each.text;
        }
    }
}

}  // namespace

bool EventStore::put(Sections* sections, std::pair<uint16_t, uint8_t> place, Section section) {
    section.size = kPlaceSize;
    for (const Event& event : section.events) section.size += sizeOf(event);
    const auto found = sections->find(place);
    const size_t before = found == sections->end() ? 0 : found->second.size;
    if (mSize - before + section.size > kLimit) return false;
    mSize = mSize - before + section.size;
    (*sections)[place] = std::move(section);
    return true;
}

void EventStore::drop(Sections* sections, Sections::iterator first, Sections::iterator last) {
    for (auto it = first; it != last; ++it) mSize -= it->second.size;
    sections->erase(first, last);
}

bool EventStore::add(const EventTable& table) {
    if (!table.current || mSize + kPlaceSize > kLimit) return false;
    const ServiceKey key{table.originalNetworkId, table.streamId, table.serviceId()};
    Sections& sections = mServices[key];
    // Present and following of this stream and of others are one table, and so are the schedules.
    const auto number = static_cast<uint16_t>(
            table.presentFollowing ? kPresentFollowing : 0x50 + (table.tableId & 0x0f));
    const std::pair<uint16_t, uint8_t> place{number, table.section};
    Section section;
    section.version = table.version;
    section.events = table.events;
    // The table may have become shorter.
    if (table.lastSection < 0xff) {
        drop(&sections, sections.upper_bound({number, table.lastSection}),
             sections.lower_bound({static_cast<uint16_t>(number + 1), 0}));
    }
    if (!table.presentFollowing) {
        // Sections come in segments of eight, which may end early.
        const auto segment = static_cast<uint8_t>(table.section | 7);
        if (table.segmentLastSection >= table.section && table.segmentLastSection < segment) {
            drop(&sections, sections.upper_bound({number, table.segmentLastSection}),
                 sections.upper_bound({number, segment}));
        }
    }
    return put(&sections, place, std::move(section));
}

bool EventStore::add(uint16_t streamId, const AtscEventTable& events, uint16_t table) {
    if (!events.current || mSize + kPlaceSize > kLimit) return false;
    const ServiceKey key{0, streamId, events.sourceId()};
    Section section;
    section.version = events.version;
    section.events = events.events;
    return put(&mServices[key], {static_cast<uint16_t>(0x100 + table), events.section},
               std::move(section));
}

bool EventStore::add(const ExtendedText& text) {
    const auto sizeOf = [](const std::vector<LanguageText>& texts) {
        size_t size = kPlaceSize;
        for (const LanguageText& each : texts) size += sizeof(each) + each.text.size();
        return size;
    };
    if (!text.eventId || mSize + sizeOf(text.texts) > kLimit) return false;
    const auto [stored, added] = mTexts.try_emplace({text.sourceId, *text.eventId});
    if (!added && stored->second == text.texts) return false;
    if (!added) mSize -= sizeOf(stored->second);
    stored->second = text.texts;
    mSize += sizeOf(stored->second);
    return true;
}

std::vector<Event> EventStore::events(const ServiceKey& service) const {
    const auto found = mServices.find(service);
    if (found == mServices.end()) return {};
    std::vector<Event> events;
    // The present comes first and is the newest, also if it begins later than the schedule has it.
    std::map<uint16_t, size_t> newest;
    // Two events of a schedule may have one id.
    std::map<std::pair<uint16_t, int64_t>, size_t> places;
    for (const auto& [place, section] : found->second) {
        for (const Event& event : section.events) {
            const size_t next = events.size();
            const auto now = newest.find(event.id);
            const bool moved = now != newest.end() &&
                               std::abs(events[now->second].start - event.start) < kMostMoved;
            const size_t known =
                    moved ? now->second
                          : places.emplace(std::pair(event.id, event.start), next).first->second;
            if (place.first == kPresentFollowing) newest.emplace(event.id, known);
            if (known != next) {
                // The extended text of the present may be in the schedule only.
                for (EventText& text : events[known].texts) {
                    const EventText* other = event.text(text.language);
                    if (other == nullptr || other->language != text.language) continue;
                    if (text.details.empty()) text.details = other->details;
                    if (text.items.empty()) text.items = other->items;
                }
                continue;
            }
            events.push_back(event);
            const auto text = mTexts.find({service.serviceId, event.id});
            if (text == mTexts.end()) continue;
            addDetails(text->second, &events.back());
        }
    }
    std::stable_sort(events.begin(), events.end(),
                     [](const Event& a, const Event& b) { return a.start < b.start; });
    return events;
}

std::optional<Event> EventStore::present(const ServiceKey& service) const {
    const auto found = mServices.find(service);
    if (found == mServices.end()) return std::nullopt;
    const auto section = found->second.find({kPresentFollowing, 0});
    if (section == found->second.end() || section->second.events.empty()) return std::nullopt;
    return section->second.events.front();
}

std::optional<Event> EventStore::following(const ServiceKey& service) const {
    const auto found = mServices.find(service);
    if (found == mServices.end()) return std::nullopt;
    const auto section = found->second.find({kPresentFollowing, 1});
    if (section == found->second.end() || section->second.events.empty()) return std::nullopt;
    return section->second.events.front();
}

std::vector<ServiceKey> EventStore::services() const {
    std::vector<ServiceKey> keys;
    for (const auto& [key, sections] : mServices) keys.push_back(key);
    return keys;
}

void EventStore::clear() {
    mServices.clear();
    mTexts.clear();
    mSize = 0;
}

}  // namespace qeltvd::stream
