#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "Source.h"

namespace qeltvd::stream {

/**
 * Reads a source on a thread of its own, which ends with the object. The functions are called on
 * that thread; none of them may destroy the object or wait for who does.
 */
class Reception {
  public:
    struct Listener {
        std::function<void(const Batch&)> packets;
        /** No packet for kSilenceAfter; and again when there are some (`silent` false). */
        std::function<void(bool silent)> silence;
        /** Nothing more comes. */
        std::function<void(bool error, const std::string& reason)> ended;
    };
    static constexpr std::chrono::milliseconds kSilenceAfter{1500};

    Reception(std::unique_ptr<Source> source, Listener listener);
    ~Reception();
    Reception(const Reception&) = delete;
    Reception& operator=(const Reception&) = delete;

  private:
    void run();

    const std::unique_ptr<Source> mSource;
    const Listener mListener;
    std::atomic<bool> mEnd{false};
    std::thread mThread;
};

}  // namespace qeltvd::stream
