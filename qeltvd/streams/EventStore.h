#pragma once

#include <map>
#include <optional>
#include <vector>

#include "StreamFacts.h"
#include "Tables.h"

namespace qeltvd::stream {

/** The events of all services, as received; bounded by kLimit. Not thread-safe. */
class EventStore {
  public:
    /** Bytes of events that are kept, about; what comes when it is full is left out. */
    static constexpr size_t kLimit = 24 << 20;

    /** @return whether something has changed */
    bool add(const EventTable& table);
    /** @param table number of the event information table, from 0 */
    bool add(uint16_t streamId, const AtscEventTable& events, uint16_t table);
    bool add(const ExtendedText& text);

    /** In order of their begin, each id once. */
    std::vector<Event> events(const ServiceKey& service) const;
    std::optional<Event> present(const ServiceKey& service) const;
    std::optional<Event> following(const ServiceKey& service) const;
    std::vector<ServiceKey> services() const;
    /** Whether sections of a service have come, also without events. */
    bool has(const ServiceKey& service) const { return mServices.count(service) != 0; }
    size_t size() const { return mSize; }
    void clear();

  private:
    struct Section {
        uint8_t version = 0;
        std::vector<Event> events;
        size_t size = 0;
    };
    /** By table and section. */
    using Sections = std::map<std::pair<uint16_t, uint8_t>, Section>;

    bool put(Sections* sections, std::pair<uint16_t, uint8_t> place, Section section);
    void drop(Sections* sections, Sections::iterator first, Sections::iterator last);

    std::map<ServiceKey, Sections> mServices;
    /** Texts of ATSC, by source and event. */
    std::map<std::pair<uint16_t, uint16_t>, std::vector<LanguageText>> mTexts;
    size_t mSize = 0;
};

}  // namespace qeltvd::stream
