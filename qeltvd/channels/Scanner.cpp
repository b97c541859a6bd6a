#define LOG_TAG "qeltvd"

#include "Scanner.h"

#include <log/log.h>

#include <algorithm>
#include <map>

#include "Code.h"
#include "Guarded.h"
#include "Stored.h"

namespace qeltvd {

namespace {

/** What a tuner needs to lock, and to read the tables of a stream. */
constexpr std::chrono::milliseconds kLockTime(120);

bool isIn(const Multiplex& multiplex, const Scanner::Range& range) {
    if (range.modulations != 0) {
        const uint32_t bit = multiplex.modulation == Modulation::kVsb8     ? 1
                             : multiplex.modulation == Modulation::kQam64  ? 2
                             : multiplex.modulation == Modulation::kQam256 ? 4
                                                                           : 0;
        if ((range.modulations & bit) == 0) return false;
    }
    if (range.plan == 1 && mediumOf(multiplex.system) != Medium::kAir) return false;
    return range.plan != 2 || mediumOf(multiplex.system) == Medium::kCable;
}

}  // namespace

Scanner::Scanner(ChannelDatabase& channels, Broadcast& broadcast, const ConfigItems& config,
                 Notifier& notifier)
        : mChannels(channels), mBroadcast(broadcast), mConfig(config), mNotifier(notifier) {
    mThread = std::thread([this] { run(); });
}

Scanner::~Scanner() {
    stop();
}

void Scanner::stop() {
    {
        std::lock_guard<std::mutex> guard(mLock);
        mStop = true;
    }
    mChanged.notify_all();
    if (mThread.joinable()) mThread.join();
}

std::vector<Scanner::Stop> Scanner::stops() const {
    std::vector<Stop> stops;
    for (const Region& region : mBroadcast.regions(mConfig.text("channels.region"))) {
        Region head = region;
        head.multiplexes.clear();
        for (const Multiplex& multiplex : region.multiplexes) stops.push_back({head, multiplex});
    }
    return stops;
}

Code Scanner::setRange(const Range& range) {
    if (range.first > range.last || range.modulations > QELTV_SCAN_MODULATIONS ||
        range.plan > QELTV_SCAN_PLANS) {
        return kBadValue;
    }
    std::lock_guard<std::mutex> guard(mLock);
    if (mStatus.state == QELTV_SCAN_STATE_RUNNING) return kRefused;
    mRange = range;
    return kOk;
}

Code Scanner::start(uint64_t argument, bool exclusive) {
    const uint64_t mode = argument & 0xff;
    const auto kHz = static_cast<uint32_t>(argument >> 32);
    if (mode > QELTV_SCAN_FREQUENCY || (argument & 0xffffff00) != 0 ||
        (kHz != 0) != (mode == QELTV_SCAN_FREQUENCY)) {
        return kBadValue;
    }
    const std::vector<Stop> all = stops();

    std::unique_lock<std::mutex> guard(mLock);
    if (mStatus.state == QELTV_SCAN_STATE_RUNNING || mStop) return kRefused;
    // A cancelled scan takes a moment to end.
    mChanged.wait(guard, [&] { return !mRunning; });
    if (mStatus.state == QELTV_SCAN_STATE_RUNNING || mStop) return kRefused;
    std::vector<Stop> chosen;
    std::map<std::string, uint32_t> index;
    for (const Stop& stop : all) {
        const uint32_t at = index[stop.region.name]++;
        if (at < mRange.first || at > mRange.last || !isIn(stop.multiplex, mRange)) continue;
        if (mode != QELTV_SCAN_FULL && mode != QELTV_SCAN_FREQUENCY &&
            static_cast<uint64_t>(stop.region.medium) != mode) {
            continue;
        }
        if (mode == QELTV_SCAN_FREQUENCY && stop.multiplex.frequencyHz / 1000 != kHz) continue;
        chosen.push_back(stop);
    }
    if (chosen.empty()) return kNotFound;
    const bool whole = chosen.size() == all.size() ||
                       (mode != QELTV_SCAN_FREQUENCY && mRange.first == 0 &&
                        mRange.last == UINT32_MAX && mRange.modulations == 0 && mRange.plan == 0);
    mStatus = {};
    mStatus.state = QELTV_SCAN_STATE_RUNNING;
    mStatus.count = static_cast<int32_t>(chosen.size());
    mJob = Job{std::move(chosen), mRange, exclusive, whole};
    mRange = {};
    mRunning = true;
    notify(QELTV_SCAN_STARTED, mStatus.count);
    mChanged.notify_all();
    return kOk;
}

Code Scanner::cancel() {
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (mStatus.state != QELTV_SCAN_STATE_RUNNING) return kRefused;
        mStatus.state = QELTV_SCAN_STATE_CANCELLED;
    }
    mChanged.notify_all();
    return kOk;
}

bool Scanner::active() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mStatus.state == QELTV_SCAN_STATE_RUNNING;
}

Scanner::Status Scanner::status() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mStatus;
}

bool Scanner::tune() {
    std::unique_lock<std::mutex> guard(mLock);
    return !mChanged.wait_for(guard, kLockTime,
                              [&] { return mStop || mStatus.state != QELTV_SCAN_STATE_RUNNING; });
}

uint32_t Scanner::satelliteOf(const Region& region) {
    if (region.medium != Medium::kSatellite) return 0;
    for (const Satellite& satellite : mChannels.satellites()) {
        if (satellite.position == region.position && satellite.name == region.satellite) {
            return satellite.recordId;
        }
    }
    Satellite satellite;
    satellite.name = region.satellite;
    satellite.position = region.position;
    return mChannels.putRecord(satellite).valueOr(0);
}

bool Scanner::wanted() const {
    std::lock_guard<std::mutex> guard(mLock);
    return !mStop && mStatus.state == QELTV_SCAN_STATE_RUNNING;
}

std::optional<Found> Scanner::survey(const Stop& stop, bool noRadio) {
    bool ended = false;
    const auto goesOn = [&] {
        ended = ended || !wanted();
        return !ended;
    };
    Survey survey = mBroadcast.of(stop.multiplex)->survey(stop.region, stop.multiplex, goesOn);
    if (ended) return std::nullopt;
    Found found{survey.multiplex, std::move(survey.services), survey.signal,
                std::move(survey.network), survey.firstNumber};
    found.multiplex.satellite = satelliteOf(stop.region);
    if (noRadio) {
        found.services.erase(
                std::remove_if(found.services.begin(), found.services.end(),
                               [](const Channel& c) { return c.type == ServiceType::kRadio; }),
                found.services.end());
    }
    return found;
}

Code Scanner::take(const Stop& stop, Found found, std::vector<Found>* all) {
    if (!found.signal) {
        ALOGI("%s at %.3f MHz: no signal", nameOf(stop.multiplex.system),
              static_cast<double>(stop.multiplex.frequencyHz) / 1e6);
        all->push_back(std::move(found));
        std::lock_guard<std::mutex> guard(mLock);
        ++mStatus.silent;
        return kOk;
    }
    int32_t television = 0, radio = 0;
    for (const Channel& channel : found.services) {
        if (channel.type == ServiceType::kTelevision) ++television;
        if (channel.type == ServiceType::kRadio) ++radio;
    }
    const auto list = static_cast<uint16_t>(stop.region.medium);
    const Result<Merged> merged = mChannels.merge(list, {found}, Unfound::kKeep);
    if (!merged) return merged.code();
    all->push_back(std::move(found));
    std::lock_guard<std::mutex> guard(mLock);
    mStatus.television += television;
    mStatus.radio += radio;
    mStatus.added += static_cast<int32_t>(merged->added);
    return kOk;
}

Code Scanner::removeOthers(const std::vector<Stop>& stops, const std::vector<Found>& found) {
    std::map<uint16_t, std::vector<Found>> lists;
    for (size_t i = 0; i < stops.size(); ++i) {
        lists[static_cast<uint16_t>(stops[i].region.medium)].push_back(found[i]);
    }
    for (const auto& [list, all] : lists) {
        const Result<Merged> merged = mChannels.merge(list, all, Unfound::kRemove);
        if (!merged) return merged.code();
        std::lock_guard<std::mutex> guard(mLock);
        mStatus.removed += static_cast<int32_t>(merged->removed);
    }
    return kOk;
}

void Scanner::run() {
    for (;;) {
        Job job;
        {
            std::unique_lock<std::mutex> guard(mLock);
            mChanged.wait(guard, [&] { return mStop || mJob; });
            if (mStop) return;
            job = std::move(*mJob);
            mJob.reset();
        }
        scan(job);
    }
}

Code Scanner::search(const Job& job, std::vector<Found>* found) {
    for (size_t i = 0; i < job.stops.size(); ++i) {
        const Stop& stop = job.stops[i];
        const auto kHz = static_cast<uint32_t>(stop.multiplex.frequencyHz / 1000);
        {
            std::lock_guard<std::mutex> guard(mLock);
            mStatus.index = static_cast<int32_t>(i);
            mStatus.kHz = kHz;
            mStatus.transponder = stop.multiplex.name;
        }
        if (!tune()) return kOk;
        std::optional<Found> here = survey(stop, job.range.noRadio);
        if (!here) return kOk;
        const Code code = take(stop, std::move(*here), found);
        if (code != kOk) return code;
        std::lock_guard<std::mutex> guard(mLock);
        mStatus.percent = static_cast<int32_t>((i + 1) * 100 / job.stops.size());
        notify(QELTV_SCAN_PROGRESS, mStatus.percent, kHz, mStatus.television, mStatus.radio);
    }
    return job.exclusive && job.whole ? removeOthers(job.stops, *found) : kOk;
}

void Scanner::scan(const Job& job) {
    std::vector<Found> found;
    Code code = kRefused;
    guarded("the scan", [&] { code = stored([&] { return search(job, &found); }); });
    std::lock_guard<std::mutex> guard(mLock);
    mRunning = false;
    mChanged.notify_all();
    if (code != kOk) {
        ALOGE("the scan ends with code %d", code);
        mStatus.state = QELTV_SCAN_STATE_FAILED;
        notify(QELTV_SCAN_FAILED, code);
        return;
    }
    // A scan that is cancelled in its last moment has found everything all the same.
    const bool complete = found.size() == job.stops.size();
    mStatus.state = complete ? QELTV_SCAN_STATE_COMPLETE : QELTV_SCAN_STATE_CANCELLED;
    notify(complete ? QELTV_SCAN_COMPLETE : QELTV_SCAN_CANCELLED, mStatus.television, mStatus.radio,
           mStatus.added, mStatus.removed);
}

void Scanner::notify(int32_t type, int64_t a1, int64_t a2, int64_t a3, int64_t a4) const {
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_scan_callback_fct, type, {a1, a2, a3, a4});
}

}  // namespace qeltvd
