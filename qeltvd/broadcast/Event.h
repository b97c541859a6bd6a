#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "layouts/event.h"

namespace qeltvd {

/** Where ratings differ; given by the region of the television, or by the broadcast. */
enum class RatingSystem { kDvb, kUnitedStates, kCanada, kIsdb };

/** The rating of a programme. */
struct Rating {
    /** Years; 0 for everybody. */
    uint8_t age = 0;
    /** False: the broadcaster gives none. */
    bool known = true;
    /** A film: US films have ratings of their own. */
    bool film = false;
    /** Made for children, which the US and Canada rate apart. */
    bool children = false;
    /** Bits: dialogue, language, sex, violence (QELTV_US_TV_FLAG has them in this order). */
    uint8_t content = 0;
    /** What the broadcast rates by; nothing if it is rated by age. */
    std::optional<RatingSystem> system = {};

    bool operator==(const Rating& o) const {
        return age == o.age && known == o.known && film == o.film && children == o.children &&
               content == o.content && system == o.system;
    }
};

/** One programme of the guide. */
struct Event {
    uint32_t channelId = 0;
    uint16_t id = 0;
    int64_t start = 0;
    /** Seconds; 0 if the broadcast leaves it open. */
    uint32_t duration = 0;
    uint8_t genre = 0;
    /** QELTV_EVENT_FLAG, but for those that the moment decides. */
    uint16_t flags = 0;
    uint16_t series = 0;
    uint16_t episode = 0;
    Rating rating = {};

    /** Lowest ages by country, ISO 3166; empty if one rating holds wherever it is. */
    struct Age {
        std::string country;
        uint8_t age;
    };
    std::vector<Age> ages = {};

    /** ISO 639-2 code of the texts. */
    std::string language = {};
    std::string title = {};
    std::string details = {};
    std::string extended = {};

    /** Content references (CRID) of the programme and its series; empty for none. */
    std::string reference = {};
    std::string seriesReference = {};

    struct Sound {
        std::string language;
        /** As QELTV_AUDIO_COMPONENT_T has it. */
        uint8_t codec;
        uint8_t channels;
        bool description;
    };
    /** The main one first. */
    std::vector<Sound> sounds = {};

    int64_t end() const { return start + duration; }
};

/** A text for people about the content of a rating; empty if there is nothing to warn of. */
std::string guidanceOf(const Event& event);
const char* nameOfGenre(uint8_t genre);

}  // namespace qeltvd
