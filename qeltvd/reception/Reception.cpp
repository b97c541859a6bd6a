#include "Reception.h"

#include "Guarded.h"

namespace qeltvd::stream {

Reception::Reception(std::unique_ptr<Source> source, Listener listener)
        : mSource(std::move(source)), mListener(std::move(listener)), mThread([this] { run(); }) {}

Reception::~Reception() {
    mEnd = true;
    mSource->interrupt();
    mThread.join();
}

void Reception::run() {
    using Clock = std::chrono::steady_clock;
    Clock::time_point last = Clock::now();
    bool silent = false;
    while (!mEnd) {
        Batch batch;
        Source::State state = Source::State::kError;
        if (!guarded("reading a stream", [&] { state = mSource->read(&batch, kSilenceAfter); })) {
            state = Source::State::kError;
        }
        if (mEnd) return;
        if (state == Source::State::kPackets) {
            last = Clock::now();
            if (silent) guarded("a listener of a stream", [&] { mListener.silence(false); });
            silent = false;
            guarded("a listener of a stream", [&] { mListener.packets(batch); });
        } else if (state == Source::State::kSilence) {
            if (silent || Clock::now() - last < kSilenceAfter) continue;
            silent = true;
            guarded("a listener of a stream", [&] { mListener.silence(true); });
        } else {
            const bool error = state == Source::State::kError;
            guarded("a listener of a stream", [&] { mListener.ended(error, mSource->reason()); });
            return;
        }
    }
}

}  // namespace qeltvd::stream
