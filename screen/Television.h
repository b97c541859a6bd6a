#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "layouts/event.h"
#include "layouts/presentation.h"
#include "layouts/teletext.h"

namespace screen {

/** A function of the library that was called. */
struct Call {
    std::string function;
    std::string arguments;
    int64_t result;
    std::chrono::microseconds duration;
};

/** A programme of the guide. */
struct Programme {
    uint16_t event = 0;
    int64_t start = 0;
    int64_t seconds = 0;
    std::string title, rating, genre;
    bool locked = false, subtitles = false, description = false;
};

/** The channel that a path shows. */
struct ShownChannel {
    uint32_t id = 0;
    std::string number, name, provider, language;
    bool highDefinition = false, scrambled = false, locked = false, favourite = false;
    bool radio = false;
    uint16_t serviceId = 0, pmtPid = 0, videoPid = 0, audioPid = 0;
};

/** One video path. */
struct ShownPath {
    QELTV_CONNECTION_T connection{};
    QELTV_VIDEO_SOURCE_T video{};
    QELTV_AUDIO_TRACK_T audio{};
    QELTV_SCREEN_T screen{};
    bool frozen = false, muted = false;
    std::string source; /**< name of the input */
    std::optional<ShownChannel> channel;

    bool running() const { return connection.status != QELTV_TUNING_STOPPED; }
    bool plays() const { return connection.status == QELTV_TUNING_PLAYS; }
};

/** Everything that is on the screen, and what the banner has to say. */
struct Shown {
    bool reachable = false;
    int64_t time = 0;   /**< the television's clock, UTC seconds */
    int64_t offset = 0; /**< local time minus UTC in seconds */
    std::array<ShownPath, QELTV_PATHS> paths;
    int volume = 0;
    bool muted = false;
    std::optional<Programme> present, following;
    std::string sound; /**< text of the audio track, as in "German, stereo" */
    int alert = 0, alertArea = 0;
    bool scans = false;
    int scanPercent = 0, scanServices = 0;
    std::string subtitle; /**< language of the subtitle that is shown; empty for none */
    int captions = 0;     /**< caption stream that is shown; 0 for none */

    /**
     * What only notifications and the viewer say. A program that has just started, as a screenshot
     * is, leaves it as it is.
     */
    struct Passing {
        bool volume = false;    /**< the volume has changed */
        bool source = false;    /**< the input has changed */
        bool recording = false; /**< a recording runs */
        bool pin = false;       /**< the PIN dialog is open */
        bool pinWrong = false;  /**< the last PIN was wrong */
        std::optional<QELTV_TELETEXT_PAGE_T> teletext;
    } passing;

    bool standby() const { return paths[0].screen.standby != 0; }
    uint32_t mode() const { return paths[0].screen.mode; }
};

/** Number that the viewer enters for a channel, as in "5" or "7.1". */
std::string numberText(uint32_t number);

/** Time of the day, as in "20:15". */
std::string clockText(int64_t localSeconds);

/**
 * The television as the library shows it. Functions may be called on any thread; each makes calls
 * that wait for the television. Those that can fail return nothing, or an empty list.
 */
class Television {
  public:
    using Json = nlohmann::ordered_json;

    /** @param observer receives every call after it has returned, on the calling thread */
    explicit Television(std::function<void(const Call&)> observer = {})
            : mObserver(std::move(observer)) {}

    /** Everything but the passing part. */
    Shown read() const;
    std::optional<QELTV_TELETEXT_PAGE_T> teletext() const;
    /** Page 0x100 to 0x8ff. */
    void setTeletextPage(uint32_t page) const;

    /** All visible channels, in the order of lists and numbers. */
    Json channels() const;
    /** Programmes of channels between two times in UTC seconds. */
    Json guide(const std::vector<uint32_t>& channels, int64_t from, int64_t to) const;
    /** All there is to say about a programme. */
    Json programme(uint32_t channel, uint16_t event) const;
    Json recordings() const;
    Json inputs() const;

    /** Calls a function of the library for the viewer; its arguments are shown to the observer. */
    template <class R, class... A, class... B>
    int64_t call(const char* name, R (*function)(A...), const std::string& shown,
                 B... arguments) const {
        const auto begin = std::chrono::steady_clock::now();
        const auto result = static_cast<int64_t>(function(arguments...));
        if (mObserver) {
            mObserver({name, shown, result,
                       std::chrono::duration_cast<std::chrono::microseconds>(
                               std::chrono::steady_clock::now() - begin)});
        }
        return result;
    }

  private:
    ShownPath path(uint32_t number) const;
    std::optional<Programme> programmeOf(uint32_t channel, uint16_t event) const;

    std::function<void(const Call&)> mObserver;
};

}  // namespace screen
