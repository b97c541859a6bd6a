#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <vector>

#include "Code.h"
#include "Notifier.h"
#include "Settings.h"
#include "StoredValues.h"
#include "layouts/presentation.h"

namespace qeltvd {

/**
 * Volumes and mutes by type, the sound effect, audio values and the equaliser. Mutes end with the
 * process, everything else is kept. Every change is notified.
 */
class Sound {
  public:
    /** @throws StoreError */
    Sound(Store& store, Notifier& notifier);

    /** The volume, or a code. */
    int32_t volume(int32_t type) const;
    [[nodiscard]] Code setVolume(int32_t type, int32_t volume);
    /** The volume after a step up (which also ends a mute) or down, or a code. */
    int32_t step(int32_t type, bool up);
    bool muted(int32_t type) const;
    [[nodiscard]] Code setMuted(int32_t type, bool muted);

    static const std::vector<uint16_t>& effects();
    uint16_t effect() const;
    [[nodiscard]] Code setEffect(int32_t effect);

    /** A QELTV_AUDIO_VALUE that can be set. */
    [[nodiscard]] Code value(int32_t id, uint32_t* value) const;
    [[nodiscard]] Code setValue(int32_t id, int32_t value);

    std::vector<uint8_t> equaliser() const;
    [[nodiscard]] Code setEqualiser(const std::vector<uint8_t>& bands);

    /** Sends an audio notification. */
    void notify(QELTV_AUDIO_EVENT event, uint64_t first, uint64_t second = 0);

  private:
    static bool isType(int32_t type) { return type >= 0 && type < QELTV_VOLUME_TYPES; }
    /** With mLock held: stores and notifies. */
    [[nodiscard]] Code put(int32_t type, int32_t volume);

    Settings mSettings;
    Notifier& mNotifier;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::array<int32_t, QELTV_VOLUME_TYPES> mVolumes;
    std::array<bool, QELTV_VOLUME_TYPES> mMuted{};
    uint16_t mEffect;
    StoredValues mValues;
    std::vector<uint8_t> mEqualiser;
};

}  // namespace qeltvd
