#include "PacketAligner.h"

#include <algorithm>

namespace qeltvd::stream {

bool PacketAligner::push(const uint8_t* bytes, size_t size, std::vector<uint8_t>* packets) {
    mBytes.insert(mBytes.end(), bytes, bytes + size);
    return take(packets, kCertain);
}

bool PacketAligner::finish(std::vector<uint8_t>* packets) {
    const bool dropped = take(packets, 1);
    mBytes.clear();
    return dropped;
}

void PacketAligner::reset() {
    mBytes.clear();
    mStride = 0;
    mSkip = 0;
    mFirst = true;
}

bool PacketAligner::find(size_t certain) {
    for (size_t at = 0; at + kPacketSize <= mBytes.size(); ++at) {
        if (mBytes[at] != kSyncByte) continue;
        for (const size_t stride : {size_t{188}, size_t{192}, size_t{204}}) {
            size_t found = 1;
            while (found < kCertain && at + found * stride < mBytes.size() &&
                   mBytes[at + found * stride] == kSyncByte) {
                ++found;
            }
            const bool all = at + found * stride >= mBytes.size();
            if (found < certain || (found < kCertain && !all)) continue;
            mBytes.erase(mBytes.begin(), mBytes.begin() + static_cast<std::ptrdiff_t>(at));
            mStride = stride;
            mSkip = 0;
            return true;
        }
    }
    return false;
}

bool PacketAligner::take(std::vector<uint8_t>* packets, size_t certain) {
    bool dropped = false;
    for (;;) {
        if (mStride == 0) {
            const size_t before = mBytes.size();
            const bool found = find(certain);
            // The bytes before the very first packet are no loss.
            if (before != mBytes.size() && !mFirst) dropped = true;
            if (!found) {
                if (mBytes.size() > kLongest) {
                    mBytes.erase(mBytes.begin(),
                                 mBytes.end() - static_cast<std::ptrdiff_t>(kLongest));
                }
                return dropped;
            }
        }
        size_t at = 0;
        for (;;) {
            const size_t skipped = std::min(mSkip, mBytes.size() - at);
            at += skipped;
            mSkip -= skipped;
            if (mBytes.size() - at < kPacketSize) break;
            if (mBytes[at] != kSyncByte) {
                // One packet with a damaged first byte, or nothing that continues?
                if (mBytes.size() - at <= mStride && certain > 1) break;
                dropped = true;
                const bool goesOn =
                        mBytes.size() - at > mStride && mBytes[at + mStride] == kSyncByte;
                if (!goesOn) {
                    mStride = 0;
                    break;
                }
            } else {
                packets->insert(packets->end(), mBytes.begin() + static_cast<std::ptrdiff_t>(at),
                                mBytes.begin() + static_cast<std::ptrdiff_t>(at + kPacketSize));
                mFirst = false;
            }
            at += kPacketSize;
            mSkip = mStride - kPacketSize;
        }
        mBytes.erase(mBytes.begin(), mBytes.begin() + static_cast<std::ptrdiff_t>(at));
        if (mStride != 0) return dropped;
    }
}

}  // namespace qeltvd::stream
