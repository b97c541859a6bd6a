#define LOG_TAG "qeltvd"

#include "RecordingWriter.h"

#include <errno.h>
#include <log/log.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "LogText.h"

namespace qeltvd {

namespace {

/** Written in one turn at most; what has arrived beyond waits for the next turn. */
constexpr int64_t kTurnLimit = int64_t{64} << 20;
constexpr int64_t kBlockPackets = 1024;

}  // namespace

RecordingWriter::RecordingWriter(Descriptor file, std::string path,
                                 std::unique_ptr<PacketSource> source)
        : mFile(std::move(file)), mPath(std::move(path)), mSource(std::move(source)) {}

std::chrono::milliseconds RecordingWriter::elapsed() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - mStarted);
}

int64_t RecordingWriter::waiting(std::chrono::milliseconds elapsed, const Limit& limit) const {
    const int64_t due = std::min(mSource->arrived(std::min(elapsed, limit.time)), limit.bytes);
    return wholePackets(std::min(due - mWritten, kTurnLimit));
}

int RecordingWriter::write(int64_t bytes) {
    std::vector<uint8_t> block;
    int failure = 0;
    for (int64_t left = bytes; left > 0;) {
        block.resize(static_cast<size_t>(std::min(left, kBlockPackets * kPacketSize)));
        const size_t size = mSource->read(block.data(), block.size());
        if (!writeAll(mFile.get(), block.data(), size)) {
            failure = errno;
            break;
        }
        mWritten += static_cast<int64_t>(size);
        left -= static_cast<int64_t>(size);
        if (size < block.size()) break;
    }
    if (failure != 0 && ftruncate(mFile.get(), mWritten) != 0) {
        ALOGW("%s cannot be cut: %s", logText(mPath).c_str(), strerror(errno));
    }
    if (fdatasync(mFile.get()) != 0 && failure == 0) failure = errno;
    if (failure != 0) ALOGE("%s: %s", logText(mPath).c_str(), strerror(failure));
    return failure;
}

void RecordingWriter::writeRest(const Limit& limit) {
    const auto until = elapsed();
    const int64_t before = mSource->arrived(until);
    mSource->finish();
    // What is simulated has no units.
    if (mSource->arrived(until) == before) return;
    const int64_t rest = waiting(until, limit);
    // The recording has ended in any case, and write() logs its failures.
    if (rest > 0) (void)write(rest);
}

void RecordingWriter::close() {
    if (fdatasync(mFile.get()) != 0) ALOGE("%s: %s", logText(mPath).c_str(), strerror(errno));
    mFile = Descriptor();
}

}  // namespace qeltvd
