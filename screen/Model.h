#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "Hub.h"
#include "Notifications.h"
#include "Television.h"

namespace screen {

/**
 * What is on the screen, kept up to date while somebody looks: read anew after every notification
 * and once in a second. All functions may be called on any thread.
 */
class Model {
  public:
    /**
     * @param hub      receives the state, the notifications, and the calls made for the viewer
     * @param returned called on a thread of the model when the television has been away and is back
     */
    Model(Hub& hub, std::function<void()> returned);
    /** Ends with the process only: notifications arrive until then. */
    ~Model() = delete;

    /** What was read last. */
    Shown shown() const;
    const Television& television() const { return mTelevision; }

    /** Somebody looks at the screen as long as the object lives. */
    class Viewer {
      public:
        explicit Viewer(Model& model);
        ~Viewer();
        Viewer(const Viewer&) = delete;
        Viewer& operator=(const Viewer&) = delete;

      private:
        Model& mModel;
    };

    // For the viewer.

    /** Has the model read the television anew. */
    void wake();
    /** @param page 0x100 to 0x8ff to show it; 0 to leave teletext */
    void showTeletext(uint32_t page);
    void closePin();
    /** A PIN has been judged. */
    void pinJudged(bool right);

  private:
    using Clock = std::chrono::steady_clock;

    void run();
    /** Reads and publishes. */
    void refresh();
    void received(const Notification& notification);
    /** With the lock held: the passing part of what is shown. */
    Shown::Passing passing(const Shown& shown, Clock::time_point now);

    Hub& mHub;
    const std::function<void()> mReturned;
    const Television mTelevision;
    std::atomic<int> mViewers{0};

    mutable std::mutex mLock;
    std::condition_variable mWoken;
    // Guarded by mLock.
    bool mWake = false;
    Shown mShown;
    std::string mSource;
    Clock::time_point mVolumeUntil, mSourceUntil, mBannerUntil;
    bool mBannerSeen = false;
    bool mTeletext = false;
    bool mPinAsked = false, mPinClosed = false, mPinWrong = false;
    bool mRecords = false;
};

/** The state as the page receives it, JSON. */
std::string stateOf(const Shown& shown);

}  // namespace screen
