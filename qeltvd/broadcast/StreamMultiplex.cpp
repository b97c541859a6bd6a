#define LOG_TAG "qeltvd"

#include "StreamMultiplex.h"

#include <log/log.h>

#include <cstdlib>

#include "Days.h"
#include "LogText.h"
#include "Source.h"

namespace qeltvd {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using std::chrono::system_clock;
using stream::StreamReceiver;

constexpr milliseconds kPoll{100};
constexpr int64_t kMilliseconds = 1000;
/** Seconds that a time may be ahead of what is expected without another one that confirms it. */
constexpr int64_t kFar = 600;
/** Seconds that a confirmation may differ. */
constexpr int64_t kConfirms = 60;

bool isWhole(const stream::StreamFacts& facts) {
    return facts.mapsComplete && facts.descriptionsComplete && facts.networkComplete;
}

void shiftTimes(stream::StreamFacts* facts, int64_t by) {
    if (facts->time) {
        facts->time->utc += by;
        for (stream::LocalOffset& offset : facts->time->offsets) {
            if (offset.changeAt != 0) offset.changeAt += by;
        }
    }
    for (stream::Alert& alert : facts->alerts) {
        if (alert.start != 0) alert.start += by;
    }
}

void logFailure(const std::string& source, const char* what) {
    ALOGW("the stream %s cannot be received: %s", logText(source).c_str(), logText(what).c_str());
}

}  // namespace

StreamMultiplex::StreamMultiplex(std::string source, std::string directory, StreamTime time,
                                 Listener listener)
        : mSource(std::move(source)),
          mDirectory(std::move(directory)),
          mTime(time),
          mListener(std::move(listener)) {}

bool StreamMultiplex::survey(const std::function<bool()>& wanted) {
    const auto collector = std::make_shared<stream::StreamCollector>();
    const bool file = !live();
    const auto end = steady_clock::now() + kSurveyTime;
    std::optional<int64_t> first;
    try {
        const auto source = stream::openSource(mSource, mDirectory, {false, false});
        for (bool done = false; !done && wanted();) {
            stream::Batch batch;
            switch (source->read(&batch, kPoll)) {
                case stream::Source::State::kPackets:
                    collector->push(batch);
                    if (!first && collector->time()) first = collector->time()->utc;
                    break;
                case stream::Source::State::kSilence:
                    break;
                case stream::Source::State::kEnd:
                    done = true;
                    break;
                case stream::Source::State::kError:
                    logFailure(mSource, source->reason().c_str());
                    done = true;
                    break;
            }
            if (!file) done |= steady_clock::now() >= end || isWhole(collector->facts());
        }
    } catch (const std::exception& e) {
        logFailure(mSource, e.what());
        return false;
    }
    const stream::StreamFacts facts = collector->facts();
    if (!facts.locked) return false;
    std::lock_guard<std::mutex> guard(mLock);
    // The time of a survey is not that of a reception: a file is read faster than it is sent.
    if (!mFirstTime) mFirstTime = first;
    mSurveyed = collector;
    return true;
}

bool StreamMultiplex::live() const {
    return stream::sourceKindOf(mSource) != stream::SourceKind::kFile;
}

void StreamMultiplex::tune(uint16_t service) {
    // Ends after the lock is released, because its end waits for its thread.
    std::shared_ptr<StreamReceiver> ended;
    std::lock_guard<std::mutex> guard(mLock);
    mTuned.insert(service);
    if (mReceiver && mReceiver->state() == StreamReceiver::State::kEnded) ended.swap(mReceiver);
    if (!mReceiver) {
        try {
            mReceiver = std::make_shared<StreamReceiver>(
                    mSource, mDirectory, stream::SourceOptions{},
                    StreamReceiver::Listener{mListener, [this](StreamReceiver::State) {
                                                 mListener(stream::kServicesChanged);
                                             }});
        } catch (const std::exception& e) {
            logFailure(mSource, e.what());
            return;
        }
        for (const auto& [id, word] : mKeys) mReceiver->setKey(id, word);
    }
    mReceiver->watch({mTuned.begin(), mTuned.end()});
    mListener(stream::kTimeChanged);
}

void StreamMultiplex::release(uint16_t service) {
    // Ends after the lock is released, because its end waits for its thread.
    std::shared_ptr<StreamReceiver> ended;
    std::lock_guard<std::mutex> guard(mLock);
    const auto tuned = mTuned.find(service);
    if (tuned == mTuned.end()) return;
    mTuned.erase(tuned);
    if (!mReceiver) return;
    if (mTuned.empty()) {
        ended = std::move(mReceiver);
        mReceiver.reset();
        mListener(stream::kTimeChanged);
    } else {
        mReceiver->watch({mTuned.begin(), mTuned.end()});
    }
}

std::shared_ptr<StreamReceiver> StreamMultiplex::receiver() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mReceiver;
}

void StreamMultiplex::setKey(uint16_t service, const std::optional<stream::ControlWord>& word) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto known = mKeys.find(service);
    if (word == (known != mKeys.end() ? std::optional(known->second) : std::nullopt)) return;
    if (word) {
        mKeys[service] = *word;
    } else {
        mKeys.erase(known);
    }
    if (mReceiver) mReceiver->setKey(service, word);
}

bool StreamMultiplex::signal() const {
    std::lock_guard<std::mutex> guard(mLock);
    if (mReceiver) return mReceiver->state() == StreamReceiver::State::kReceiving;
    return mTuned.empty() && mSurveyed != nullptr;
}

stream::StreamFacts StreamMultiplex::facts() const {
    std::lock_guard<std::mutex> guard(mLock);
    stream::StreamFacts facts;
    if (mReceiver) {
        facts = mReceiver->facts();
        noteTime(facts.time);
    }
    // A reception that has just begun knows less than the survey before it.
    if (!facts.mapsComplete && mSurveyed) facts = mSurveyed->facts();
    shiftTimes(&facts, shift());
    return facts;
}

std::optional<stream::Service> StreamMultiplex::service(uint16_t id) const {
    stream::StreamFacts all = facts();
    const auto found = all.services.find(id);
    if (found == all.services.end()) return std::nullopt;
    return std::move(found->second);
}

std::vector<stream::Event> StreamMultiplex::events(uint16_t service) const {
    std::lock_guard<std::mutex> guard(mLock);
    std::vector<stream::Event> found;
    if (mReceiver) found = mReceiver->events(mReceiver->keyOf(service));
    if (mSurveyed) {
        std::vector<stream::Event> before = mSurveyed->events().events(mSurveyed->keyOf(service));
        if (before.size() > found.size()) found = std::move(before);
    }
    const int64_t by = shift();
    for (stream::Event& event : found) event.start += by;
    return found;
}

std::optional<stream::Event> StreamMultiplex::present(uint16_t service) const {
    std::lock_guard<std::mutex> guard(mLock);
    std::optional<stream::Event> found;
    if (mReceiver) found = mReceiver->present(mReceiver->keyOf(service));
    if (!found && mSurveyed) found = mSurveyed->events().present(mSurveyed->keyOf(service));
    if (found) found->start += shift();
    return found;
}

std::optional<stream::Event> StreamMultiplex::following(uint16_t service) const {
    std::lock_guard<std::mutex> guard(mLock);
    std::optional<stream::Event> found;
    if (mReceiver) found = mReceiver->following(mReceiver->keyOf(service));
    if (!found && mSurveyed) found = mSurveyed->events().following(mSurveyed->keyOf(service));
    if (found) found->start += shift();
    return found;
}

std::optional<int64_t> StreamMultiplex::now() const {
    std::lock_guard<std::mutex> guard(mLock);
    if (!mReceiver) return std::nullopt;
    noteTime(mReceiver->time());
    if (!mAnchor) return std::nullopt;
    const auto since = duration_cast<milliseconds>(steady_clock::now() - mAnchor->at);
    return (mAnchor->utc + shift()) * kMilliseconds + since.count();
}

int64_t StreamMultiplex::shift() const {
    if (mTime == StreamTime::kBroadcast || !mFirstTime) return 0;
    const auto host = duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
    return (dayOf(host) - dayOf(*mFirstTime)) * kDay;
}

void StreamMultiplex::noteTime(const std::optional<stream::Time>& time) const {
    if (!time) return;
    if (!mFirstTime) mFirstTime = time->utc;
    const auto at = steady_clock::now();
    const auto expectedOf = [at](const Anchor& anchor) {
        return anchor.utc + duration_cast<seconds>(at - anchor.at).count();
    };
    if (mAnchor) {
        // A file that begins anew does not turn the clock back.
        if (time->utc <= expectedOf(*mAnchor)) return;
        // A table of the time has no checksum, so one alone does not turn the clock far.
        const bool far = time->utc - expectedOf(*mAnchor) > kFar;
        const bool confirmed = mDoubted && time->utc != mDoubted->utc &&
                               std::abs(time->utc - expectedOf(*mDoubted)) <= kConfirms;
        if (far && !confirmed) {
            if (!mDoubted || mDoubted->utc != time->utc) mDoubted = Anchor{time->utc, at};
            return;
        }
    }
    mDoubted.reset();
    mAnchor = Anchor{time->utc, at};
}

}  // namespace qeltvd
