#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "Code.h"
#include "Notifier.h"
#include "Settings.h"
#include "layouts/teletext.h"

namespace qeltvd {

/** Closed captions of the three standards, and subtitles. */
class Captions {
  public:
    enum class Standard { kAnalogue, kAtsc, kIsdb };
    static constexpr Standard kAnalogue = Standard::kAnalogue;
    static constexpr Standard kAtsc = Standard::kAtsc;
    static constexpr Standard kIsdb = Standard::kIsdb;

    /** @throws StoreError */
    Captions(Settings& settings, Notifier& notifier);

    [[nodiscard]] Code enable(Standard standard, bool on);
    [[nodiscard]] Code setVisible(Standard standard, bool on);
    /** Chooses the next stream. @return its number, from 1; kRefused while switched off */
    int32_t next(Standard standard);
    /** The number of the stream that is shown; 0 for none. */
    int32_t shown(Standard standard) const;
    /** @param style one of eight looks that the demonstration shows, when it is on */
    [[nodiscard]] Code setDemo(uint32_t on, uint32_t style);

    /** Loop of subtitles as words: number of entries, the one that plays, then the entries. */
    std::vector<int32_t> subtitles() const;
    [[nodiscard]] Code playSubtitle(uint32_t number);
    [[nodiscard]] Code nextSubtitle();

  private:
    static constexpr size_t kStandards = 3;
    static size_t index(Standard standard) { return static_cast<size_t>(standard); }

    struct State {
        bool enabled;
        bool visible;
        int32_t stream;
    };
    [[nodiscard]] Code change(Standard standard, State state);

    Settings& mSettings;
    Notifier& mNotifier;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::array<State, kStandards> mStates;
    int32_t mDemo = -1;
    uint32_t mSubtitle = 0;
};

}  // namespace qeltvd
