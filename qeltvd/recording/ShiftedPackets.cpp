#include "ShiftedPackets.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qeltvd {

namespace {

using stream::kPacketSize;

constexpr size_t kBlock = 1024 * kPacketSize;
/** How far a viewer that reads slowly may be behind what is played. */
constexpr int64_t kLatest = 2 << 20;

constexpr uint8_t kUnitStart = 0x40, kAdaptation = 0x20, kPayload = 0x10;

}  // namespace

ShiftedPackets::ShiftedPackets(std::unique_ptr<PacketSource> live, std::function<Place()> place)
        : mLive(std::move(live)), mPlace(std::move(place)) {
    const Place now = mPlace();
    mTurn = now.turn;
    mNext = now.end;
    mAwaitsTables = now.ring != nullptr;
}

void ShiftedPackets::interrupt() {
    ++mInterruptions;
    mAwaitsTables = true;
}

int64_t ShiftedPackets::arrived(std::chrono::milliseconds elapsed) {
    const Place place = mPlace();
    if (place.turn != mTurn) {
        mTurn = place.turn;
        mNext = place.end;
        interrupt();
    }
    if (mGiven >= kBlock) {
        mPackets.erase(mPackets.begin(), mPackets.begin() + static_cast<ptrdiff_t>(mGiven));
        mGiven = 0;
    }
    takeLive(elapsed, place.ring != nullptr);
    if (place.ring != nullptr) takeShifted(place);
    return mRead + static_cast<int64_t>(mPackets.size() - mGiven);
}

void ShiftedPackets::takeLive(std::chrono::milliseconds elapsed, bool shifted) {
    const int64_t waiting = mLive->arrived(elapsed) - mLiveRead;
    std::vector<uint8_t> block;
    for (int64_t left = waiting; left > 0;) {
        // What the viewer does not read waits in the source, up to its limit.
        if (!shifted && mPackets.size() - mGiven >= kBlock) return;
        block.resize(static_cast<size_t>(std::min<int64_t>(left, kBlock)));
        const size_t size = mLive->read(block.data(), block.size());
        if (size == 0) return;
        mLiveRead += static_cast<int64_t>(size);
        left -= static_cast<int64_t>(size);
        // What is broadcast meanwhile passes by.
        if (!shifted) append(block.data(), size);
    }
}

void ShiftedPackets::takeShifted(const Place& place) {
    if (place.end - mNext > kLatest) {
        mNext = place.end;
        interrupt();
    }
    std::vector<uint8_t> block;
    while (mNext < place.end && mPackets.size() - mGiven < kBlock) {
        block.resize(static_cast<size_t>(std::min<int64_t>(place.end - mNext, kBlock)));
        const size_t size = place.ring->read(mNext, block.data(), block.size());
        if (size == 0) {
            // Overwritten before it was read.
            mNext = place.end;
            interrupt();
            return;
        }
        mNext += static_cast<int64_t>(size);
        append(block.data(), size);
    }
}

void ShiftedPackets::append(const uint8_t* packets, size_t size) {
    for (size_t at = 0; at < size; at += kPacketSize) append(packets + at);
}

void ShiftedPackets::append(const uint8_t* packet) {
    const uint16_t pid = stream::pidOf(packet);
    const bool begins = (packet[1] & kUnitStart) != 0;
    if (pid != stream::kNullPid) {
        constexpr uint16_t kAssociation = 0;
        if (mAwaitsTables && !(pid == kAssociation && begins)) return;
        mAwaitsTables = false;
        const bool payload = (packet[3] & kPayload) != 0;
        Pid& seen = mPids[pid];
        if (seen.interruption != mInterruptions) seen.begun = false;
        // A clock reference alone belongs to no unit.
        if (payload && !seen.begun && !begins) return;
        if (seen.given && seen.interruption != mInterruptions) markDiscontinuity(packet);
        seen = {true, seen.begun || payload, mInterruptions};
    }
    mPackets.insert(mPackets.end(), packet, packet + kPacketSize);
}

/** Appends an empty packet that marks the PID of the next one. Its counter is the one before. */
void ShiftedPackets::markDiscontinuity(const uint8_t* next) {
    constexpr uint8_t kLength = kPacketSize - 5, kDiscontinuity = 0x80, kFiller = 0xff;
    const int step = (next[3] & kPayload) != 0 ? 1 : 0;
    const size_t at = mPackets.size();
    mPackets.resize(at + kPacketSize, kFiller);
    uint8_t* mark = mPackets.data() + at;
    mark[0] = stream::kSyncByte;
    mark[1] = next[1] & 0x1f;
    mark[2] = next[2];
    mark[3] = static_cast<uint8_t>(kAdaptation | ((next[3] - step) & 0x0f));
    mark[4] = kLength;
    mark[5] = kDiscontinuity;
}

size_t ShiftedPackets::read(uint8_t* buffer, size_t size) {
    const size_t count = std::min(size, mPackets.size() - mGiven);
    if (count > 0) memcpy(buffer, mPackets.data() + mGiven, count);
    mGiven += count;
    mRead += static_cast<int64_t>(count);
    if (mGiven == mPackets.size()) {
        mPackets.clear();
        mGiven = 0;
    }
    return count;
}

}  // namespace qeltvd
