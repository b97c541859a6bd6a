#include "SoundTracks.h"

#include <algorithm>
#include <cstring>

namespace qeltvd {

namespace {

constexpr size_t kLanguageSize = 3;

// What a track is worth to a viewer; one that is not wanted is worth less than none.
constexpr int kLanguageFits = 1;
constexpr int kPurposeFits = 2;
constexpr int kUnwantedDescription = -4;
constexpr int kWorthless = -1;

std::string languageOf(const QELTV_AUDIO_TRACK_T& track) {
    return std::string(track.language, kLanguageSize);
}

}  // namespace

SoundTracks::Records SoundTracks::records(const std::vector<SoundTrack>& tracks, uint32_t current) {
    Records records;
    for (const SoundTrack& track : tracks) {
        QELTV_AUDIO_TRACK_T record{};
        record.track = static_cast<uint32_t>(records.size() + 1);
        record.pid = track.pid;
        memcpy(record.language, track.language.data(),
               std::min(track.language.size(), kLanguageSize));
        record.codec = static_cast<uint8_t>(track.codec);
        record.channels = track.channels;
        record.purpose = static_cast<uint8_t>(track.purpose);
        record.current = record.track == current;
        record.sampleRate = track.sampleRate;
        record.kbitPerSecond = track.kbitPerSecond;
        records.push_back(record);
    }
    return records;
}

uint32_t SoundTracks::best(const Records& tracks, const Wish& wish) {
    uint32_t number = 1;
    int most = kWorthless;
    for (const QELTV_AUDIO_TRACK_T& track : tracks) {
        const bool describes = track.purpose == QELTV_AUDIO_DESCRIPTION;
        int worth = 0;
        if (describes == wish.description) worth += kPurposeFits;
        if (languageOf(track) == wish.language) worth += kLanguageFits;
        if (describes && !wish.description) worth += kUnwantedDescription;
        if (worth <= most) continue;
        most = worth;
        number = track.track;
    }
    return number;
}

std::optional<uint32_t> SoundTracks::nextLanguage(const Records& tracks) {
    const auto current = std::find_if(tracks.begin(), tracks.end(),
                                      [](const auto& track) { return track.current != 0; });
    const size_t at = current != tracks.end() ? static_cast<size_t>(current - tracks.begin()) : 0;
    for (size_t i = 1; i < tracks.size(); ++i) {
        const QELTV_AUDIO_TRACK_T& next = tracks[(at + i) % tracks.size()];
        if (languageOf(next) != languageOf(tracks[at])) return next.track;
    }
    return std::nullopt;
}

std::optional<uint32_t> SoundTracks::withLanguage(const Records& tracks,
                                                  const std::string& language) {
    for (const QELTV_AUDIO_TRACK_T& track : tracks) {
        if (track.purpose != QELTV_AUDIO_DESCRIPTION && languageOf(track) == language) {
            return track.track;
        }
    }
    return std::nullopt;
}

bool SoundTracks::has(const Records& tracks, uint32_t number) {
    return std::any_of(tracks.begin(), tracks.end(),
                       [&](const auto& track) { return track.track == number; });
}

}  // namespace qeltvd
