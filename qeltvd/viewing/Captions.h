#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "Notifier.h"
#include "Settings.h"
#include "layouts/teletext.h"

namespace qeltvd {

/** Closed captions of the three standards, and subtitles. */
class Captions {
  public:
    enum Standard { kAnalogue, kAtsc, kIsdb, kStandards };

    /** @throws StoreError */
    Captions(Settings& settings, Notifier& notifier);

    int32_t enable(Standard standard, bool on);
    int32_t setVisible(Standard standard, bool on);
    /** The stream that is chosen now, from 1; kRefused while switched off. */
    int32_t next(Standard standard);
    /** The stream that is shown, 0 while there is none to see. */
    int32_t shown(Standard standard) const;
    /** @param style one of eight looks that the demonstration shows, when it is on */
    int32_t setDemo(uint32_t on, uint32_t style);

    /** Loop of subtitles as words: number of entries, the one that plays, then the entries. */
    std::vector<int32_t> subtitles() const;
    int32_t playSubtitle(uint32_t number);
    int32_t nextSubtitle();

  private:
    struct State {
        bool enabled;
        bool visible;
        int32_t stream;
    };
    int32_t change(Standard standard, State state);

    Settings& mSettings;
    Notifier& mNotifier;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::array<State, kStandards> mStates;
    int32_t mDemo = -1;
    uint32_t mSubtitle = 0;
};

}  // namespace qeltvd
