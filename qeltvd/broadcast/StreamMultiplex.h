#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "StreamCollector.h"
#include "StreamReceiver.h"

namespace qeltvd {

/** Which time the tables of a stream have in the television. */
enum class StreamTime : uint8_t {
    /** As broadcast. */
    kBroadcast,
    /** Whole days later, so that the stream begins today. */
    kNow,
};

/**
 * One transport stream that the television can tune to. Packets are read during a survey and while
 * somebody is tuned; what the tables said is kept after that. All functions may be called on any
 * thread but the receiver's.
 */
class StreamMultiplex {
  public:
    /** How long a survey of a live source waits for its tables. */
    static constexpr std::chrono::milliseconds kSurveyTime{10000};

    /**
     * Called with bits of stream::Change, on the receiver's thread or in a call of tune() or
     * release(); must not call this object. Times change when a reception begins and ends, too.
     */
    using Listener = std::function<void(uint32_t changes)>;

    /**
     * @param source    as openSource() has it
     * @param directory that a file is relative to
     */
    StreamMultiplex(std::string source, std::string directory, StreamTime time, Listener listener);
    StreamMultiplex(const StreamMultiplex&) = delete;
    StreamMultiplex& operator=(const StreamMultiplex&) = delete;

    /**
     * Reads the tables: a file once from its begin to its end without waiting, any other source
     * until they are whole or the time is over.
     *
     * @param wanted called from time to time; false ends the survey
     * @return whether there is a signal
     */
    bool survey(const std::function<bool()>& wanted);

    /** Whether its source is no file. */
    bool live() const;

    /**
     * Receives from now on and decodes the teletext and captions of a service. A source that has
     * ended is opened again.
     */
    void tune(uint16_t service);
    /** Ends what a tune() of the same service has begun. */
    void release(uint16_t service);
    /** What receives; nullptr while nobody is tuned or the source cannot be opened. */
    std::shared_ptr<stream::StreamReceiver> receiver() const;
    /** Descrambles a service, or ends that, if the build can. */
    void setKey(uint16_t service, const std::optional<stream::ControlWord>& word);

    /** Whether packets arrive; while nobody is tuned, whether they did in the last survey. */
    bool signal() const;
    /** What is known, times shifted. */
    stream::StreamFacts facts() const;
    std::optional<stream::Service> service(uint16_t id) const;
    /** The events of a service of this stream in order of their begin, times shifted. */
    std::vector<stream::Event> events(uint16_t service) const;
    /** What the table of the present and following event has. */
    std::optional<stream::Event> present(uint16_t service) const;
    std::optional<stream::Event> following(uint16_t service) const;
    /**
     * The time of the stream at this moment, shifted, in milliseconds since 1970; nothing while it
     * is not received or has sent none. Never goes back, not even if a file begins anew.
     */
    std::optional<int64_t> now() const;

  private:
    int64_t shift() const;
    /** Takes a time that has been received. */
    void noteTime(const std::optional<stream::Time>& time) const;

    const std::string mSource;
    const std::string mDirectory;
    const StreamTime mTime;
    const Listener mListener;

    mutable std::mutex mLock;
    // Guarded by mLock.
    std::multiset<uint16_t> mTuned;
    std::map<uint16_t, stream::ControlWord> mKeys;
    std::shared_ptr<stream::StreamReceiver> mReceiver;
    /** Of the last survey. */
    std::shared_ptr<const stream::StreamCollector> mSurveyed;
    mutable std::optional<int64_t> mFirstTime;
    /** The last time of the stream, and when it came. */
    struct Anchor {
        int64_t utc;
        std::chrono::steady_clock::time_point at;
    };
    mutable std::optional<Anchor> mAnchor;
    /** A time that differs much from what was expected, until another one confirms it. */
    mutable std::optional<Anchor> mDoubted;
};

}  // namespace qeltvd
