#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "Packets.h"

namespace qeltvd::stream {

/** Where a transport stream comes from. Read by one thread at a time. */
class Source {
  public:
    virtual ~Source() = default;

    enum class State {
        kPackets,
        /** Nothing has come within the time; goes on. */
        kSilence,
        /** The source is at its end, or was interrupted. */
        kEnd,
        kError,
    };

    /** Waits for packets, at most for `timeout`. After kEnd and kError it stays at that. */
    virtual State read(Batch* batch, std::chrono::milliseconds timeout) = 0;
    /** Has read() return kEnd, at once and from then on. May be called on any thread. */
    virtual void interrupt() = 0;
    /** The reason of kEnd or kError; empty before. */
    virtual std::string reason() const = 0;
};

struct SourceOptions {
    /** A file begins anew at its end. */
    bool loop = true;
    /** A file comes as fast as its clock references say; at once otherwise, as a scan wants it. */
    bool paced = true;
};

/** What a text for openSource() names. */
enum class SourceKind { kFile, kUdp, kRtp, kPipe };
SourceKind sourceKindOf(const std::string& text);

/**
 * Opens what a text names:
 *
 * - `name.ts`: a regular file, absolute or relative to `directory`; no link, no device;
 * - `udp://@239.1.1.1:1234` or `udp://@[ff15::1]:1234`: a multicast; `udp://@:1234` (IPv4) or
 *   `udp://@[::]:1234` (both) what is sent to this machine; `udp://INTERFACE@239.1.1.1:1234` by the
 *   name or an address of an interface of this machine, an IPv6 address in brackets;
 * - `rtp://...`: the same with headers of RTP;
 * - `pipe:command`: what a command line of the shell writes to its output. It is ended with the
 *   source.
 *
 * @throws std::runtime_error where the text is none of these, or what it names cannot be opened
 */
std::unique_ptr<Source> openSource(const std::string& text, const std::string& directory,
                                   const SourceOptions& options = {});

}  // namespace qeltvd::stream
