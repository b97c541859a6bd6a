#include "StreamPackets.h"

#include <algorithm>
#include <cstring>

namespace qeltvd {

StreamPackets::StreamPackets(std::shared_ptr<StreamMultiplex> multiplex, uint16_t service,
                             size_t limit)
        : mMultiplex(std::move(multiplex)),
          mService(service),
          mQueue(std::make_shared<Queue>(limit)) {
    mMultiplex->tune(mService);
    attach();
}

StreamPackets::~StreamPackets() {
    detach();
    mMultiplex->release(mService);
}

void StreamPackets::attach() {
    auto receiver = mMultiplex->receiver();
    if (receiver != mReceiver) {
        detach();
        mReceiver = std::move(receiver);
    }
    if (mOutput || !mReceiver) return;
    mOutput = mReceiver->addOutput(
            mService, [queue = mQueue](const std::vector<uint8_t>& packets, double seconds) {
                queue->push(packets, seconds);
            });
}

void StreamPackets::detach() {
    if (mReceiver && mOutput) mReceiver->removeOutput(*mOutput);
    mOutput.reset();
    mReceiver.reset();
    std::lock_guard<std::mutex> guard(mQueue->lock);
    mQueue->before = mQueue->lengths.empty() ? mQueue->length : mQueue->lengths.back().second;
}

void StreamPackets::Queue::push(const std::vector<uint8_t>& more, double seconds) {
    std::lock_guard<std::mutex> guard(lock);
    if (packets.size() - read + more.size() > limit) return;
    if (read > packets.size() / 2) {
        packets.erase(packets.begin(), packets.begin() + static_cast<ptrdiff_t>(read));
        read = 0;
    }
    packets.insert(packets.end(), more.begin(), more.end());
    arrived += static_cast<int64_t>(more.size());
    lengths.emplace_back(arrived, before + seconds);
}

int64_t StreamPackets::arrived(std::chrono::milliseconds) {
    if (!mFinished) attach();
    std::lock_guard<std::mutex> guard(mQueue->lock);
    return mQueue->arrived;
}

void StreamPackets::finish() {
    mFinished = true;
    detach();
}

size_t StreamPackets::read(uint8_t* buffer, size_t size) {
    std::lock_guard<std::mutex> guard(mQueue->lock);
    Queue& queue = *mQueue;
    const size_t count = std::min(size, queue.packets.size() - queue.read);
    if (count == 0) return 0;
    memcpy(buffer, queue.packets.data() + queue.read, count);
    queue.read += count;
    const auto waiting = static_cast<int64_t>(queue.packets.size() - queue.read);
    while (!queue.lengths.empty() && queue.lengths.front().first <= queue.arrived - waiting) {
        queue.length = queue.lengths.front().second;
        queue.lengths.pop_front();
    }
    return count;
}

std::optional<std::chrono::milliseconds> StreamPackets::length() const {
    std::lock_guard<std::mutex> guard(mQueue->lock);
    constexpr double kMs = 1000;
    return std::chrono::milliseconds(static_cast<int64_t>(mQueue->length * kMs));
}

}  // namespace qeltvd
