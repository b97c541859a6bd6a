#include "Picture.h"

#include <algorithm>

#include "Stored.h"

namespace qeltvd {

namespace {

constexpr int32_t kFirstOverscan = 25;

std::string overscanKey(size_t side) {
    return "picture.overscan." + std::to_string(side);
}

std::string screenKey(bool input) {
    return input ? "picture.screen.input" : "picture.screen.tuner";
}

}  // namespace

Picture::Picture(Store& store, Notifier& notifier)
        : mStore(store),
          mSettings(store),
          mNotifier(notifier),
          mValues(mSettings, "picture.value.",
                  {{QELTV_VIDEO_GAME_MODE, 1, 0},
                   {QELTV_VIDEO_FILM_MODE, 1, 1},
                   {QELTV_VIDEO_MOTION, 3, 2}}) {
    mPictureMode = static_cast<uint16_t>(mSettings.number("picture.mode", pictureModes().front()));
    for (const bool input : {false, true}) {
        mScreenModes[input] = static_cast<uint16_t>(
                mSettings.number(screenKey(input), screenModes(input).front()));
    }
    for (size_t side = 0; side < mOverscan.size(); ++side) {
        mOverscan[side] = static_cast<int32_t>(mSettings.number(overscanKey(side), kFirstOverscan));
    }
    mUserData = mSettings.bytes("picture.user_data");
}

void Picture::notify(QELTV_VIDEO_EVENT event, const std::vector<uint64_t>& values) {
    std::array<uint64_t, 6> all{};
    std::copy_n(values.begin(), std::min(values.size(), all.size()), all.begin());
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_videoinfo_common_callback_fct, event,
                    {all[0], all[1], all[2], all[3], all[4], all[5]});
}

/** Standard, vivid, film, sport, game, photo, user. */
const std::vector<uint16_t>& Picture::pictureModes() {
    static const std::vector<uint16_t> all{1, 2, 3, 4, 5, 6, 7};
    return all;
}

uint16_t Picture::pictureMode() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mPictureMode;
}

Code Picture::setPictureMode(int32_t mode) {
    const auto& modes = pictureModes();
    if (std::find(modes.begin(), modes.end(), mode) == modes.end()) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    if (mPictureMode == mode) return kOk;
    return stored([&] {
        mSettings.set("picture.mode", mode);
        mPictureMode = static_cast<uint16_t>(mode);
        notify(QELTV_VIDEO_PICTURE_MODE, {mPictureMode});
        return kOk;
    });
}

/** Automatic, 16:9, 4:3, zoom 14:9, zoom 16:9, wide; on inputs pixel by pixel as well. */
std::vector<uint16_t> Picture::screenModes(bool input) {
    std::vector<uint16_t> modes{1, 2, 3, 4, 5, 6};
    if (input) modes.push_back(kPixelByPixel);
    return modes;
}

uint16_t Picture::screenMode(bool input) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mScreenModes[input];
}

Code Picture::setScreenMode(bool input, int32_t mode) {
    const auto modes = screenModes(input);
    if (std::find(modes.begin(), modes.end(), mode) == modes.end()) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    if (mScreenModes[input] == mode) return kOk;
    return stored([&] {
        mSettings.set(screenKey(input), mode);
        mScreenModes[input] = static_cast<uint16_t>(mode);
        notify(QELTV_VIDEO_SCREEN_MODE, {mScreenModes[input]});
        return kOk;
    });
}

Picture::Overscan Picture::overscan() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mOverscan;
}

Code Picture::setOverscan(const Overscan& overscan) {
    for (const int32_t side : overscan) {
        if (side < 0 || side > QELTV_OVERSCAN_MAXIMUM) return kBadValue;
    }
    std::lock_guard<std::mutex> guard(mLock);
    if (mOverscan == overscan) return kOk;
    mOverscan = overscan;
    notify(QELTV_VIDEO_OVERSCAN, {overscan.begin(), overscan.end()});
    return kOk;
}

Code Picture::keepOverscan() {
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        Store::Transaction transaction(mStore);
        for (size_t side = 0; side < mOverscan.size(); ++side) {
            mSettings.set(overscanKey(side), mOverscan[side]);
        }
        transaction.commit();
        return kOk;
    });
}

Code Picture::value(int32_t id, uint32_t* value) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mValues.get(id, value);
}

Code Picture::setValue(int32_t id, int32_t value) {
    std::lock_guard<std::mutex> guard(mLock);
    return mValues.set(id, value, [&] {
        notify(QELTV_VIDEO_VALUE_CHANGED,
               {static_cast<uint64_t>(id), static_cast<uint64_t>(value)});
    });
}

std::vector<uint8_t> Picture::userData() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mUserData;
}

Code Picture::setUserData(const std::vector<uint8_t>& data) {
    if (data.size() > QELTV_VIDEO_DATA_USER_SIZE) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set("picture.user_data", data);
        mUserData = data;
        return kOk;
    });
}

}  // namespace qeltvd
