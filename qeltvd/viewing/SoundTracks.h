#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Signals.h"
#include "layouts/presentation.h"

namespace qeltvd {

/** Choices among the sound tracks of a picture, as pure functions of their records. */
class SoundTracks {
  public:
    using Records = std::vector<QELTV_AUDIO_TRACK_T>;

    /** What a viewer wants to hear. */
    struct Wish {
        /** ISO 639-2 code; empty for none. */
        std::string language;
        bool description = false;
    };

    /** The records of tracks, numbered from 1. @param current number of the one that plays */
    static Records records(const std::vector<SoundTrack>& tracks, uint32_t current);
    /** The number of the track that fits best; 1 without tracks. */
    static uint32_t best(const Records& tracks, const Wish& wish);
    /** The number of the next track with another language than the current one. */
    static std::optional<uint32_t> nextLanguage(const Records& tracks);
    /** The number of the first track with a language that is no description. */
    static std::optional<uint32_t> withLanguage(const Records& tracks, const std::string& language);
    static bool has(const Records& tracks, uint32_t number);
};

}  // namespace qeltvd
