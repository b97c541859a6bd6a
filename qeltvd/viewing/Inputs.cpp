#include "Inputs.h"

#include "Stored.h"

namespace qeltvd {

namespace {

constexpr Inputs::Socket kSockets[Inputs::kCount] = {
        {"TV", QELTV_INPUT_TUNER, 1, -1, false, 0, 0, 0},
        {"AV", QELTV_INPUT_COMPOSITE, 1, 8, false, 0, 0, 0},
        {"Component", QELTV_INPUT_COMPONENT, 1, 9, false, 0, 0, 0},
        {"SCART", QELTV_INPUT_SCART, 1, 10, false, 0, 0, 0},
        {"VGA", QELTV_INPUT_VGA, 1, -1, false, 0, 0, 0},
        {"HDMI 1", QELTV_INPUT_HDMI, 1, 11, false, 1920, 1080, 60000},
        {"HDMI 2", QELTV_INPUT_HDMI, 2, 12, true, 0, 0, 0},
        {"HDMI 3", QELTV_INPUT_HDMI, 3, 13, false, 3840, 2160, 50000},
        {"HDMI 4", QELTV_INPUT_HDMI, 4, 14, false, 0, 0, 0},
};

constexpr const char* kLabels[QELTV_INPUT_LABELS] = {
        "", "DVD", "Blu-ray", "Set-top box", "Game", "PC", "Camera", "Sound system", "",
};

std::string key(int32_t id, const char* what) {
    return "input." + std::to_string(id) + "." + what;
}

}  // namespace

Inputs::Inputs(Store& store) : mSettings(store) {
    for (int32_t id = 0; exists(id); ++id) {
        State& state = mStates[static_cast<size_t>(id)];
        state.userName = mSettings.text(key(id, "name"));
        state.label = static_cast<uint8_t>(mSettings.number(key(id, "label"), 0));
        state.blocked = mSettings.number(key(id, "blocked"), 0) != 0;
        state.autoDetect = mSettings.number(key(id, "auto"), 1) != 0;
        state.plugged = id == kTuner || socket(id).width != 0;
    }
    mScartAutoJump = mSettings.number("input.scart_jump", 1) != 0;
}

const Inputs::Socket& Inputs::socket(int32_t id) {
    return kSockets[exists(id) ? id : 0];
}

std::optional<int32_t> Inputs::byName(const std::string& name) {
    for (int32_t id = 0; exists(id); ++id) {
        if (name == socket(id).name) return id;
    }
    return std::nullopt;
}

bool Inputs::conflict(int32_t a, int32_t b) {
    const auto isPair = [](int32_t x, int32_t y) {
        return socket(x).type == QELTV_INPUT_COMPOSITE && socket(y).type == QELTV_INPUT_COMPONENT;
    };
    return exists(a) && exists(b) && (isPair(a, b) || isPair(b, a));
}

std::string Inputs::name(int32_t id, QELTV_NAME_FORM form) const {
    if (!exists(id)) return "";
    std::lock_guard<std::mutex> guard(mLock);
    const State& state = mStates[static_cast<size_t>(id)];
    if (form == QELTV_NAME_SHOWN && state.label == QELTV_INPUT_LABEL_USER &&
        !state.userName.empty()) {
        return state.userName;
    }
    const std::string label = kLabels[state.label < QELTV_INPUT_LABELS ? state.label : 0];
    return form == QELTV_NAME_SHOWN && !label.empty() ? label : socket(id).name;
}

std::string Inputs::userName(int32_t id) const {
    if (!exists(id)) return "";
    std::lock_guard<std::mutex> guard(mLock);
    return mStates[static_cast<size_t>(id)].userName;
}

Code Inputs::setUserName(int32_t id, const std::string& name) {
    if (!exists(id)) return kNotFound;
    if (name.size() > kMaximumName) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set(key(id, "name"), name);
        mStates[static_cast<size_t>(id)].userName = name;
        return kOk;
    });
}

uint8_t Inputs::label(int32_t id) const {
    if (!exists(id)) return 0;
    std::lock_guard<std::mutex> guard(mLock);
    return mStates[static_cast<size_t>(id)].label;
}

Code Inputs::setLabel(int32_t id, int32_t label) {
    if (!exists(id)) return kNotFound;
    if (label < 0 || label >= QELTV_INPUT_LABELS) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set(key(id, "label"), label);
        mStates[static_cast<size_t>(id)].label = static_cast<uint8_t>(label);
        return kOk;
    });
}

bool Inputs::blocked(int32_t id) const {
    if (!exists(id)) return false;
    std::lock_guard<std::mutex> guard(mLock);
    return mStates[static_cast<size_t>(id)].blocked;
}

Code Inputs::setBlocked(int32_t id, bool blocked) {
    if (!exists(id)) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set(key(id, "blocked"), int64_t{blocked});
        mStates[static_cast<size_t>(id)].blocked = blocked;
        return kOk;
    });
}

bool Inputs::autoDetect(int32_t id) const {
    if (!exists(id)) return false;
    std::lock_guard<std::mutex> guard(mLock);
    return mStates[static_cast<size_t>(id)].autoDetect;
}

Code Inputs::setAutoDetect(int32_t id, bool on) {
    if (!exists(id)) return kNotFound;
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set(key(id, "auto"), int64_t{on});
        mStates[static_cast<size_t>(id)].autoDetect = on;
        return kOk;
    });
}

bool Inputs::scartAutoJump() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mScartAutoJump;
}

Code Inputs::setScartAutoJump(bool on) {
    std::lock_guard<std::mutex> guard(mLock);
    return stored([&] {
        mSettings.set("input.scart_jump", int64_t{on});
        mScartAutoJump = on;
        return kOk;
    });
}

bool Inputs::hasSignal(int32_t id) const {
    if (!exists(id)) return false;
    std::lock_guard<std::mutex> guard(mLock);
    return mStates[static_cast<size_t>(id)].plugged;
}

Code Inputs::plug(int32_t id, bool on) {
    if (!exists(id) || id == kTuner) return kNotFound;
    std::function<void(int32_t, bool)> listener;
    {
        std::lock_guard<std::mutex> guard(mLock);
        bool& plugged = mStates[static_cast<size_t>(id)].plugged;
        if (plugged == on) return kOk;
        plugged = on;
        listener = mListener;
    }
    if (listener) listener(id, on);
    return kOk;
}

void Inputs::setListener(std::function<void(int32_t, bool)> listener) {
    std::lock_guard<std::mutex> guard(mLock);
    mListener = std::move(listener);
}

}  // namespace qeltvd
