#include "Sound.h"

#include <algorithm>

#include "Stored.h"

namespace qeltvd {

namespace {

constexpr int32_t kFirstVolumes[QELTV_VOLUME_TYPES] = {20, 30, 100, 50, 30};

/** Decibels up or down. */
constexpr int kEqualiserLimit = 12;

std::string volumeKey(int32_t type) {
    return "sound.volume." + std::to_string(type);
}

}  // namespace

Sound::Sound(Store& store, Notifier& notifier)
        : mSettings(store),
          mNotifier(notifier),
          mValues(mSettings, "sound.value.",
                  {{QELTV_AUDIO_DESCRIPTION_ON, 1, 0},
                   {QELTV_AUDIO_DESCRIPTION_MIX, 100, 50},
                   {QELTV_AUDIO_DELAY_MS, 250, 0},
                   {QELTV_AUDIO_DIGITAL_OUT, 2, 0},
                   {QELTV_AUDIO_DIALOGUE, 3, 0}}) {
    for (int32_t type = 0; isType(type); ++type) {
        mVolumes[static_cast<size_t>(type)] =
                static_cast<int32_t>(mSettings.number(volumeKey(type), kFirstVolumes[type]));
    }
    mEffect = static_cast<uint16_t>(mSettings.number("sound.effect", effects().front()));
    mEqualiser = mSettings.bytes("sound.equaliser");
    if (mEqualiser.size() != QELTV_AUDIO_EQUALISER_SIZE)
        mEqualiser.assign(QELTV_AUDIO_EQUALISER_SIZE, 0);
}

void Sound::notify(QELTV_AUDIO_EVENT event, uint64_t first, uint64_t second) {
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_audio_update_nfy_fct, event,
                    {first, second});
}

int32_t Sound::volume(int32_t type) const {
    if (!isType(type)) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    return mVolumes[static_cast<size_t>(type)];
}

Code Sound::put(int32_t type, int32_t volume) {
    int32_t& current = mVolumes[static_cast<size_t>(type)];
    if (current == volume) return kOk;
    return stored([&] {
        mSettings.set(volumeKey(type), volume);
        current = volume;
        notify(QELTV_AUDIO_VOLUME, static_cast<uint64_t>(type), static_cast<uint64_t>(volume));
        return kOk;
    });
}

Code Sound::setVolume(int32_t type, int32_t volume) {
    if (!isType(type)) return kNotFound;
    if (volume < 0 || volume > QELTV_VOLUME_MAXIMUM) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    return put(type, volume);
}

int32_t Sound::step(int32_t type, bool up) {
    if (!isType(type)) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    const int32_t now = mVolumes[static_cast<size_t>(type)];
    const int32_t next = std::clamp(now + (up ? 1 : -1), 0, QELTV_VOLUME_MAXIMUM);
    if (const Code code = put(type, next); code != kOk) return code;
    bool& muted = mMuted[static_cast<size_t>(type)];
    if (up && muted) {
        muted = false;
        notify(QELTV_AUDIO_MUTE, static_cast<uint64_t>(type), 0);
    }
    return next;
}

bool Sound::muted(int32_t type) const {
    if (!isType(type)) return false;
    std::lock_guard<std::mutex> guard(mLock);
    return mMuted[static_cast<size_t>(type)];
}

Code Sound::setMuted(int32_t type, bool muted) {
    if (!isType(type)) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    bool& current = mMuted[static_cast<size_t>(type)];
    if (current == muted) return kOk;
    current = muted;
    notify(QELTV_AUDIO_MUTE, static_cast<uint64_t>(type), uint64_t{muted});
    return kOk;
}

/** Standard, music, film, speech, sport, night. */
const std::vector<uint16_t>& Sound::effects() {
    static const std::vector<uint16_t> all{1, 2, 3, 4, 5, 6};
    return all;
}

uint16_t Sound::effect() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mEffect;
}

Code Sound::setEffect(int32_t effect) {
    if (std::find(effects().begin(), effects().end(), effect) == effects().end()) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    if (mEffect == effect) return kOk;
    return stored([&] {
        mSettings.set("sound.effect", effect);
        mEffect = static_cast<uint16_t>(effect);
        notify(QELTV_AUDIO_EFFECT, mEffect);
        return kOk;
    });
}

Code Sound::value(int32_t id, uint32_t* value) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mValues.get(id, value);
}

Code Sound::setValue(int32_t id, int32_t value) {
    std::lock_guard<std::mutex> guard(mLock);
    return mValues.set(id, value, [&] {
        notify(QELTV_AUDIO_VALUE_CHANGED, static_cast<uint64_t>(id), static_cast<uint64_t>(value));
    });
}

std::vector<uint8_t> Sound::equaliser() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mEqualiser;
}

Code Sound::setEqualiser(const std::vector<uint8_t>& bands) {
    if (bands.size() != QELTV_AUDIO_EQUALISER_SIZE) return kBadValue;
    for (const uint8_t band : bands) {
        const int level = static_cast<int8_t>(band);
        if (level < -kEqualiserLimit || level > kEqualiserLimit) return kBadValue;
    }
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set("sound.equaliser", bands);
        mEqualiser = bands;
        return kOk;
    });
}

}  // namespace qeltvd
