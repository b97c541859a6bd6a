#include "StreamReceiver.h"

namespace qeltvd::stream {

StreamReceiver::StreamReceiver(const std::string& source, const std::string& directory,
                               const SourceOptions& options, Listener listener)
        : mListener(std::move(listener)) {
    Reception::Listener events;
    events.packets = [this](const Batch& batch) { receive(batch); };
    events.silence = [this](bool silent) { setState(silent ? State::kSilent : State::kReceiving); };
    events.ended = [this](bool, const std::string& reason) {
        {
            std::lock_guard<std::mutex> guard(mLock);
            mReason = reason;
        }
        setState(State::kEnded);
    };
    auto opened = openSource(source, directory, options);
    mReception = std::make_unique<Reception>(std::move(opened), std::move(events));
}

StreamReceiver::~StreamReceiver() = default;

void StreamReceiver::setState(State state) {
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (mState == state) return;
        mState = state;
    }
    if (mListener.state) mListener.state(state);
}

void StreamReceiver::receive(const Batch& batch) {
    uint32_t changes = 0;
    std::vector<std::shared_ptr<Tap>> taps;
    {
        std::lock_guard<std::mutex> guard(mLock);
        mDescrambler.push(batch);
        changes = mCollector.push(batch);
        if ((changes & kServicesChanged) != 0 && (!mKeys.empty() || !mTaps.empty())) {
            const StreamFacts facts = mCollector.facts();
            applyKeys(facts);
            updateTaps(facts);
        }
        for (const auto& [number, tap] : mTaps) {
            tap->packets.clear();
            tap->stream->push(batch, &tap->packets);
            if (tap->packets.empty()) continue;
            tap->busy = true;
            taps.push_back(tap);
        }
    }
    setState(State::kReceiving);
    // Only this thread changes the packets of a tap.
    for (const auto& tap : taps) {
        std::lock_guard<std::recursive_mutex> guard(tap->lock);
        if (!tap->removed) tap->output(tap->packets, tap->stream->seconds());
        tap->busy = false;
    }
    if (changes != 0 && mListener.changed) mListener.changed(changes);
}

void StreamReceiver::applyKeys(const StreamFacts& facts) {
    mDescrambler.clear();
    for (const auto& [serviceId, word] : mKeys) {
        const auto service = facts.services.find(serviceId);
        if (service == facts.services.end()) continue;
        std::set<uint16_t> pids;
        for (const Component& each : service->second.components) pids.insert(each.pid);
        mDescrambler.setKey(pids, word);
    }
}

void StreamReceiver::updateTaps(const StreamFacts& facts) {
    for (const auto& [number, tap] : mTaps) {
        const auto service = facts.services.find(tap->serviceId);
        if (service == facts.services.end() || !service->second.mapVersion) continue;
        tap->stream->update(service->second, mCollector.mapSection(tap->serviceId));
    }
}

StreamReceiver::State StreamReceiver::state() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mState;
}

std::string StreamReceiver::reason() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mReason;
}

StreamFacts StreamReceiver::facts() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.facts();
}

std::optional<Service> StreamReceiver::service(uint16_t serviceId) const {
    const StreamFacts all = facts();
    const auto found = all.services.find(serviceId);
    if (found == all.services.end()) return std::nullopt;
    return found->second;
}

std::vector<Event> StreamReceiver::events(const ServiceKey& service) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.events().events(service);
}

std::optional<Event> StreamReceiver::present(const ServiceKey& service) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.events().present(service);
}

std::optional<Event> StreamReceiver::following(const ServiceKey& service) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.events().following(service);
}

std::vector<ServiceKey> StreamReceiver::guideServices() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.events().services();
}

ServiceKey StreamReceiver::keyOf(uint16_t serviceId) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.keyOf(serviceId);
}

std::optional<Time> StreamReceiver::time() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.time();
}

void StreamReceiver::watch(const std::set<uint16_t>& services) {
    std::lock_guard<std::mutex> guard(mLock);
    mCollector.watch(services);
}

TeletextReception StreamReceiver::teletext(uint16_t serviceId, uint16_t page,
                                           uint16_t subpage) const {
    std::lock_guard<std::mutex> guard(mLock);
    TeletextReception reception;
    for (const TeletextDecoder* decoder : mCollector.teletext(serviceId)) {
        reception.carried = true;
        reception.absent |= decoder->isAbsent(page);
        if (!reception.header) reception.header = decoder->header();
        // One of several streams has the page.
        const std::vector<uint16_t> codes = decoder->subpages(page);
        if (codes.empty() || reception.subpages != 0) continue;
        reception.subpages = static_cast<uint32_t>(codes.size());
        for (const uint16_t code : codes) {
            if (subpage == 0 || decoder->subpageNumber(page, code) != subpage) continue;
            reception.page = decoder->page(page, code);
        }
        if (subpage == 0) reception.page = decoder->page(page);
        if (reception.page) {
            reception.subpage = decoder->subpageNumber(page, reception.page->subpage);
            reception.header = decoder->header();
        }
    }
    return reception;
}

std::vector<TopPage> StreamReceiver::teletextTop(uint16_t serviceId) const {
    std::lock_guard<std::mutex> guard(mLock);
    for (const TeletextDecoder* decoder : mCollector.teletext(serviceId)) {
        std::vector<TopPage> pages = decoder->top();
        if (!pages.empty()) return pages;
    }
    return {};
}

std::vector<std::string> StreamReceiver::captions(uint16_t serviceId, uint8_t channel) const {
    std::lock_guard<std::mutex> guard(mLock);
    const CaptionDecoder* decoder = mCollector.captions(serviceId);
    return decoder == nullptr ? std::vector<std::string>{} : decoder->rows(channel);
}

uint8_t StreamReceiver::captionChannels(uint16_t serviceId) const {
    std::lock_guard<std::mutex> guard(mLock);
    const CaptionDecoder* decoder = mCollector.captions(serviceId);
    return decoder == nullptr ? uint8_t{0} : decoder->channels();
}

void StreamReceiver::setKey(uint16_t serviceId, const std::optional<ControlWord>& word) {
    std::lock_guard<std::mutex> guard(mLock);
    if (word) {
        mKeys[serviceId] = *word;
    } else {
        mKeys.erase(serviceId);
    }
    applyKeys(mCollector.facts());
}

std::optional<uint32_t> StreamReceiver::addOutput(uint16_t serviceId, Output output) {
    std::lock_guard<std::mutex> guard(mLock);
    const StreamFacts facts = mCollector.facts();
    const auto service = facts.services.find(serviceId);
    if (service == facts.services.end() || !service->second.mapVersion) return std::nullopt;
    auto tap = std::make_shared<Tap>();
    tap->serviceId = serviceId;
    tap->output = std::move(output);
    tap->stream =
            std::make_unique<ServiceStream>(facts.streamId, facts.originalNetworkId,
                                            service->second, mCollector.mapSection(serviceId));
    const uint32_t number = mNextTap++;
    mTaps[number] = std::move(tap);
    return number;
}

void StreamReceiver::removeOutput(uint32_t number) {
    std::shared_ptr<Tap> tap;
    std::vector<uint8_t> rest;
    {
        std::lock_guard<std::mutex> guard(mLock);
        const auto found = mTaps.find(number);
        if (found == mTaps.end()) return;
        tap = found->second;
        mTaps.erase(found);
        tap->stream->finish(&rest);
    }
    std::lock_guard<std::recursive_mutex> guard(tap->lock);
    // Packets that are on their way come before these, and are lost with them.
    if (!tap->removed && !tap->busy && !rest.empty()) tap->output(rest, tap->stream->seconds());
    tap->removed = true;
}

PidCounters StreamReceiver::counters(uint16_t pid) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.demux().counters(pid);
}

uint64_t StreamReceiver::bitsPerSecond(uint16_t pid) const {
    std::lock_guard<std::mutex> guard(mLock);
    return mCollector.demux().bitsPerSecond(pid);
}

}  // namespace qeltvd::stream
