#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "Code.h"
#include "Settings.h"
#include "layouts/presentation.h"

namespace qeltvd {

/** The sockets of the television, the tuner as input 0: what is plugged in, labels and blocks. */
class Inputs {
  public:
    static constexpr int32_t kTuner = 0;
    static constexpr size_t kCount = 9;
    static constexpr size_t kMaximumName = 32;

    struct Socket {
        const char* name;
        QELTV_INPUT_TYPE type;
        /** Counts the sockets of a type from 1. */
        uint8_t number;
        /** GPIO line that is high while a plug is in; -1 for none. */
        int32_t gpio;
        bool mhl;
        /** What is plugged in at first: the picture that it sends; 0 for nothing. */
        uint32_t width, height, frameRate;
    };

    /** @throws StoreError */
    explicit Inputs(Store& store);

    static bool exists(int32_t id) { return id >= 0 && id < static_cast<int32_t>(kCount); }
    static const Socket& socket(int32_t id);
    /** By the name beside the socket. */
    static std::optional<int32_t> byName(const std::string& name);
    /** Whether two inputs share pins, so that only one of them can be used at a time. */
    static bool conflict(int32_t a, int32_t b);

    /** Functions that take an id give nothing or kNotFound for an unknown one. */
    std::string name(int32_t id, QELTV_NAME_FORM form) const;
    std::string userName(int32_t id) const;
    [[nodiscard]] Code setUserName(int32_t id, const std::string& name);
    uint8_t label(int32_t id) const;
    [[nodiscard]] Code setLabel(int32_t id, int32_t label);
    /** Whether it is set to be blocked. */
    bool blocked(int32_t id) const;
    [[nodiscard]] Code setBlocked(int32_t id, bool blocked);
    bool autoDetect(int32_t id) const;
    [[nodiscard]] Code setAutoDetect(int32_t id, bool on);
    bool scartAutoJump() const;
    [[nodiscard]] Code setScartAutoJump(bool on);

    /** Whether a source is plugged in and on; the tuner counts as one. */
    bool hasSignal(int32_t id) const;
    [[nodiscard]] Code plug(int32_t id, bool on);
    /** Called after every change of a plug, without a lock. */
    void setListener(std::function<void(int32_t id, bool on)> listener);

  private:
    struct State {
        std::string userName;
        uint8_t label = 0;
        bool blocked = false;
        bool autoDetect = true;
        bool plugged = false;
    };

    Settings mSettings;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::array<State, kCount> mStates;
    bool mScartAutoJump = true;
    std::function<void(int32_t, bool)> mListener;
};

}  // namespace qeltvd
