#include "Model.h"

#include "Osd.h"
#include "Pictures.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_record.h"
#include "layouts/rating.h"
#include "layouts/record.h"

namespace screen {
namespace {

using Json = nlohmann::ordered_json;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds kVolumeTime{3};
constexpr seconds kSourceTime{4};
constexpr seconds kBannerTime{5};
/** How often the television is looked for while it is away. */
constexpr milliseconds kAwayTime{100};

std::string textOf(const Json& json) {
    // A name is anything that was broadcast.
    return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string colourText(Colour colour) {
    char text[16];
    snprintf(text, sizeof(text), "#%02x%02x%02x%02x", colour.red, colour.green, colour.blue,
             colour.alpha);
    return text;
}

/** Tenths of a unit are finer than a screen. */
double rounded(double value) {
    return static_cast<double>(static_cast<int64_t>(value * 10 + 0.5)) / 10;
}

Json sceneJson(const Scene& scene) {
    Json groups = Json::array();
    constexpr const char* kFaces[] = {"plain", "bold", "fixed"};
    for (const Group& group : scene) {
        Json shapes = Json::array();
        for (const Shape& shape : group.shapes) {
            Json one = Json::array({rounded(shape.box.x), rounded(shape.box.y),
                                    rounded(shape.box.width), rounded(shape.box.height),
                                    colourText(shape.colour)});
            if (!shape.text.empty()) {
                one.push_back(shape.text);
                one.push_back(rounded(shape.size));
                one.push_back(kFaces[static_cast<size_t>(shape.face)]);
            }
            shapes.push_back(std::move(one));
        }
        groups.push_back({{"part", group.part}, {"label", group.label}, {"shapes", shapes}});
    }
    return groups;
}

}  // namespace

std::string stateOf(const Shown& shown) {
    Json paths = Json::array();
    for (const ShownPath& path : shown.paths) {
        const Box place = placeOf(path, 100, 100);
        const std::string name = path.channel ? path.channel->name : path.source;
        paths.push_back({{"running", path.running()},
                         {"plays", path.plays()},
                         {"name", name},
                         {"channel", path.connection.channel},
                         {"source", path.connection.source},
                         {"place", {place.x, place.y, place.width, place.height}}});
    }
    // To the minute: what changes every second is in the picture.
    return textOf({{"reachable", shown.reachable},
                   {"standby", shown.standby()},
                   {"time", shown.time / 60 * 60},
                   {"offset", shown.offset},
                   {"mode", shown.mode()},
                   {"volume", shown.volume},
                   {"muted", shown.muted},
                   {"scans", shown.scans},
                   {"alert", shown.alert != 0},
                   {"pin", shown.passing.pin},
                   {"recording", shown.passing.recording},
                   {"teletext", shown.passing.teletext.has_value()},
                   {"paths", paths},
                   {"scene", sceneJson(sceneOf(shown))}});
}

Model::Model(Hub& hub, std::function<void()> returned)
        : mHub(hub), mReturned(std::move(returned)), mTelevision([&hub](const Call& call) {
              hub.add("call", textOf({{"function", call.function},
                                      {"arguments", call.arguments},
                                      {"result", call.result},
                                      {"us", call.duration.count()}}));
          }) {
    std::thread([this] { run(); }).detach();
}

Model::Viewer::Viewer(Model& model) : mModel(model) {
    if (mModel.mViewers++ == 0) mModel.wake();
}

Model::Viewer::~Viewer() {
    --mModel.mViewers;
}

Shown Model::shown() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mShown;
}

void Model::wake() {
    std::lock_guard<std::mutex> guard(mLock);
    mWake = true;
    mWoken.notify_one();
}

void Model::run() {
    android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi> first;
    for (;;) {
        const auto service = getQelTvApiService();
        milliseconds pause = seconds(1);
        if (service != nullptr && first == nullptr) {
            first = service;
            listen([this](const Notification& notification) { received(notification); });
            // Nobody notifies of a recording that runs already.
            const bool records = a_qeltvapi_record_pvr_get_current_handle() != 0;
            std::lock_guard<std::mutex> guard(mLock);
            mRecords = records;
        } else if (service != nullptr && service != first) {
            mReturned();
            return;
        }
        if (service == nullptr) {
            pause = kAwayTime;
            Shown away;
            {
                std::lock_guard<std::mutex> guard(mLock);
                mShown = away;
            }
            mHub.setState(stateOf(away));
        } else if (mViewers > 0) {
            refresh();
        }
        std::unique_lock<std::mutex> guard(mLock);
        mWoken.wait_for(guard, pause, [this] { return mWake; });
        mWake = false;
    }
}

void Model::refresh() {
    Shown shown = mTelevision.read();
    const auto now = Clock::now();
    bool hideBanner = false, readTeletext = false;
    {
        std::lock_guard<std::mutex> guard(mLock);
        shown.passing = passing(shown, now);
        readTeletext = mTeletext;
        const bool banner = shown.paths[0].screen.banner != 0;
        if (banner && !mBannerSeen) mBannerUntil = now + kBannerTime;
        mBannerSeen = banner;
        hideBanner = banner && now >= mBannerUntil;
    }
    if (readTeletext) shown.passing.teletext = mTelevision.teletext();
    const auto state = stateOf(shown);
    {
        std::lock_guard<std::mutex> guard(mLock);
        mShown = std::move(shown);
    }
    // Not before: what a page asks for on seeing it goes by what is shown.
    mHub.setState(state);
    // As the application of a television does; its notification has the state read again.
    if (hideBanner) {
        mTelevision.call("a_qeltvapi_broadcast_set_banner_visibility",
                         a_qeltvapi_broadcast_set_banner_visibility, "0", 0);
    }
}

Shown::Passing Model::passing(const Shown& shown, Clock::time_point now) {
    const ShownPath& main = shown.paths[0];
    if (!main.source.empty() && main.source != mSource) {
        // What is on when the model starts has not been changed to.
        if (!mSource.empty()) mSourceUntil = now + kSourceTime;
        mSource = main.source;
    }
    const bool blocked = main.connection.status == QELTV_TUNING_FAILED &&
                         main.connection.error == QELTV_TUNING_BLOCKED;
    if (!blocked && !mPinAsked) {
        mPinClosed = false;
        mPinWrong = false;
    }
    Shown::Passing passing;
    passing.volume = now < mVolumeUntil;
    passing.source = now < mSourceUntil;
    passing.recording = mRecords;
    passing.pin = mPinAsked || (blocked && !mPinClosed);
    passing.pinWrong = mPinWrong;
    return passing;
}

void Model::received(const Notification& notification) {
    Json json{{"kind", notification.kind},
              {"event", notification.event},
              {"values", notification.values}};
    mHub.add("notification", textOf(json));
    const auto is = [&](const char* kind, int64_t type) {
        return notification.kind == kind && notification.type == type;
    };
    const auto now = Clock::now();
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (is("audio", QELTV_AUDIO_VOLUME) || is("audio", QELTV_AUDIO_MUTE)) {
            mVolumeUntil = now + kVolumeTime;
        } else if (is("broadcast", QELTV_BROADCAST_BANNER)) {
            mBannerUntil = now + kBannerTime;
        } else if (is("pvr_status", QELTV_RECORDING_STARTED_EVENT)) {
            mRecords = true;
        } else if (is("pvr_status", QELTV_RECORDING_STOPPED_EVENT) ||
                   is("pvr_status", QELTV_RECORDING_FAILED_EVENT)) {
            mRecords = false;
        } else if (is("pwddlg", QELTV_PIN_EVENT_SHOW)) {
            mPinAsked = true;
            mPinWrong = false;
        } else if (is("pwddlg", QELTV_PIN_EVENT_ACCEPTED)) {
            mPinAsked = false;
        }
        mWake = true;
    }
    mWoken.notify_one();
}

void Model::showTeletext(uint32_t page) {
    if (page != 0) mTelevision.setTeletextPage(page);
    {
        std::lock_guard<std::mutex> guard(mLock);
        mTeletext = page != 0;
    }
    wake();
}

void Model::closePin() {
    {
        std::lock_guard<std::mutex> guard(mLock);
        mPinAsked = false;
        mPinClosed = true;
        mPinWrong = false;
    }
    wake();
}

void Model::pinJudged(bool right) {
    {
        std::lock_guard<std::mutex> guard(mLock);
        mPinWrong = !right;
        if (right) mPinAsked = false;
    }
    wake();
}

}  // namespace screen
