#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Broadcast.h"
#include "ChannelDatabase.h"
#include "Code.h"
#include "ConfigItems.h"
#include "Notifier.h"
#include "Settings.h"
#include "layouts/teletext.h"

namespace qeltvd {

/**
 * Closed captions of the three standards, and subtitles, of the channel that is being watched. A
 * choice of subtitles holds over services by language and kind.
 */
class Captions {
  public:
    enum class Standard { kAnalogue, kAtsc, kIsdb };
    static constexpr Standard kAnalogue = Standard::kAnalogue;
    static constexpr Standard kAtsc = Standard::kAtsc;
    static constexpr Standard kIsdb = Standard::kIsdb;

    /** @throws StoreError */
    Captions(Settings& settings, Notifier& notifier, const ConfigItems& config,
             const ChannelDatabase& channels, Broadcast& broadcast);

    [[nodiscard]] Code enable(Standard standard, bool on);
    [[nodiscard]] Code setVisible(Standard standard, bool on);
    /** Chooses the next stream. @return its number, from 1; kRefused while switched off */
    int32_t next(Standard standard);
    /** The number of the stream that is shown; 0 for none, also if the service has none. */
    int32_t shown(Standard standard) const;
    /** @param style one of eight looks that the demonstration shows, when it is on */
    [[nodiscard]] Code setDemo(uint32_t on, uint32_t style);

    /** Loop of subtitles as words: number of entries, the one that plays, then the entries. */
    std::vector<int32_t> subtitles() const;
    [[nodiscard]] Code playSubtitle(uint32_t number);
    [[nodiscard]] Code nextSubtitle();

    /** The text of the captions that are shown, lines between rows; kNotFound without captions. */
    [[nodiscard]] Code captionText(std::string* text) const;
    /** The text of the subtitles that play; kNotFound if none do that are text. */
    [[nodiscard]] Code subtitleText(std::string* text) const;

  private:
    static constexpr size_t kStandards = 3;
    static size_t index(Standard standard) { return static_cast<size_t>(standard); }

    struct State {
        bool enabled;
        bool visible;
        int32_t stream;
    };
    /** What a viewer wants to read; nothing for no subtitles. */
    struct Wish {
        std::string language;
        QELTV_SUBTITLE_KIND kind;
        /** The number among the subtitles, from 1, where it was chosen. */
        uint32_t number;
    };
    using Tracks = std::vector<SubtitleTrack>;
    /** The current channel, and where its signals come from. */
    struct Service {
        Channel channel;
        std::shared_ptr<Signals> signals;
    };

    std::optional<Service> service() const;
    static Tracks tracks(const std::optional<Service>& service);

    // With mLock held.
    [[nodiscard]] Code change(Standard standard, State state);
    int32_t shown(Standard standard, const std::optional<Service>& service) const;
    /** The number of the subtitles that fit the wish best; 0 for none. */
    uint32_t playing(const Tracks& tracks) const;
    /** Notifies of what plays if it is not what clients know. */
    void announce(const Tracks& tracks);
    std::optional<std::string> captionsOf(const std::optional<Service>& service) const;
    std::optional<std::string> subtitlesOf(const std::optional<Service>& service) const;

    /** Takes what has been received. */
    void follow(uint32_t changes);

    Settings& mSettings;
    Notifier& mNotifier;
    const ConfigItems& mConfig;
    const ChannelDatabase& mChannels;
    const Broadcast& mBroadcast;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::array<State, kStandards> mStates;
    int32_t mDemo = -1;
    std::optional<Wish> mWish;
    /** What clients know to play. */
    uint32_t mPlaying = 0;
    SubtitleTrack mTrack{};
    std::string mCaptionText;
    std::string mSubtitleText;
};

}  // namespace qeltvd
