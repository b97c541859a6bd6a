#include "Demux.h"

#include <bitstream/mpeg/pes.h>
#include <bitstream/mpeg/psi.h>
#include <bitstream/mpeg/ts.h>

#include <algorithm>

namespace qeltvd::stream {

namespace {

constexpr uint8_t kStuffing = 0xff;
/** This table of the short form has a checksum all the same. */
constexpr uint8_t kTimeOffsetTable = 0x73;

bool isChecked(const uint8_t* section) {
    return psi_get_syntax(section) || psi_get_tableid(section) == kTimeOffsetTable;
}

bool isValid(const uint8_t* section, size_t size) {
    if (!psi_validate(section)) return false;
    if (!isChecked(section)) return true;
    return size >= PSI_HEADER_SIZE + PSI_CRC_SIZE && psi_check_crc(section);
}

}  // namespace

struct Demux::Filter {
    SectionHandler onSection;
    PesHandler onPes;
    size_t limit = 0;
    std::vector<uint8_t> bytes;
    /** Whether `bytes` begin with a header. */
    bool begun = false;
    /** Bytes of the packet so far, of which `bytes` has those up to the limit. */
    size_t received = 0;
    bool removed = false;

    void reset() {
        bytes.clear();
        begun = false;
        received = 0;
    }
};

Demux::Demux() : mCounters(kPids), mContinuity(kPids), mFilters(kPids) {}

Demux::~Demux() = default;

void Demux::filterSections(uint16_t pid, SectionHandler handler) {
    if (pid >= kPids) return;
    removeFilter(pid);
    mFilters[pid] = std::make_shared<Filter>();
    mFilters[pid]->onSection = std::move(handler);
}

void Demux::filterPes(uint16_t pid, PesHandler handler, size_t limit) {
    if (pid >= kPids) return;
    removeFilter(pid);
    mFilters[pid] = std::make_shared<Filter>();
    mFilters[pid]->onPes = std::move(handler);
    mFilters[pid]->limit = std::max<size_t>(limit, PES_HEADER_SIZE_PTSDTS);
}

void Demux::removeFilter(uint16_t pid) {
    if (pid >= kPids || !mFilters[pid]) return;
    mFilters[pid]->removed = true;
    mFilters[pid].reset();
}

const PidCounters& Demux::counters(uint16_t pid) const {
    return mCounters[pid % kPids];
}

double Demux::seconds() const {
    return static_cast<double>(mElapsed.elapsed()) / ElapsedClock::kFrequency;
}

uint64_t Demux::bitsPerSecond(uint16_t pid) const {
    const double length = seconds();
    if (length <= 0) return 0;
    const uint64_t bits = counters(pid).packets * kPacketSize * 8;
    return static_cast<uint64_t>(static_cast<double>(bits) / length);
}

void Demux::push(const Batch& batch) {
    if (batch.discontinuity) {
        ++mGeneration;
        mElapsed.interrupt();
        for (const auto& filter : mFilters) {
            if (filter) filter->reset();
        }
    }
    for (size_t i = 0; i < batch.count; ++i) packet(batch.packets + i * kPacketSize);
}

void Demux::packet(const uint8_t* packet) {
    const uint16_t pid = pidOf(packet);
    PidCounters& counters = mCounters[pid];
    ++mPackets;
    ++counters.packets;
    if (!ts_validate(packet) || ts_get_transporterror(packet)) {
        ++counters.transportErrors;
        return;
    }
    if (pid == kNullPid) return;

    const bool adaptation = ts_has_adaptation(packet);
    const size_t adaptationSize = adaptation ? size_t{1} + ts_get_adaptation(packet) : 0;
    if (TS_HEADER_SIZE + adaptationSize > kPacketSize) {
        ++counters.transportErrors;
        return;
    }
    bool discontinuity = false;
    if (adaptationSize > 1) discontinuity = tsaf_has_discontinuity(packet);
    if (const auto reference = clockReference(packet)) {
        counters.reference = reference;
        if (!mReferencePid) mReferencePid = pid;
        if (*mReferencePid == pid) mElapsed.add(*reference);
    }
    if (!ts_has_payload(packet)) return;

    const std::shared_ptr<Filter> filter = mFilters[pid];
    Continuity& continuity = mContinuity[pid];
    const uint8_t counter = ts_get_cc(packet);
    if (continuity.generation == mGeneration && !discontinuity) {
        const auto expected = static_cast<uint8_t>((continuity.counter + 1) & 0x0f);
        if (counter == continuity.counter && !continuity.repeated) {
            // A packet may be sent twice.
            continuity.repeated = true;
            return;
        }
        if (counter != expected) {
            ++counters.continuityErrors;
            if (filter) filter->reset();
        }
    } else if (discontinuity && filter) {
        filter->reset();
    }
    continuity = {mGeneration, counter, false};

    const bool scrambled = ts_get_scrambling(packet) != 0;
    if (counters.scrambledNow != scrambled) ++mScramblingChanges;
    counters.scrambledNow = scrambled;
    if (counters.scrambledNow) {
        ++counters.scrambled;
        return;
    }
    if (!filter) return;
    const uint8_t* payload = packet + TS_HEADER_SIZE + adaptationSize;
    const size_t size = kPacketSize - TS_HEADER_SIZE - adaptationSize;
    if (size == 0) return;
    if (filter->onSection) {
        section(pid, filter, payload, size, ts_get_unitstart(packet));
    } else {
        pes(pid, filter, payload, size, ts_get_unitstart(packet));
    }
}

void Demux::section(uint16_t pid, const std::shared_ptr<Filter>& filter, const uint8_t* payload,
                    size_t size, bool start) {
    if (start) {
        const size_t pointer = size_t{payload[0]} + 1;
        if (pointer > size) {
            ++mCounters[pid].sectionErrors;
            filter->reset();
            return;
        }
        if (filter->begun) {
            filter->bytes.insert(filter->bytes.end(), payload + 1, payload + pointer);
            if (!finishSections(pid, filter)) return;
        }
        filter->reset();
        filter->begun = true;
        payload += pointer;
        size -= pointer;
    }
    if (!filter->begun) return;
    filter->bytes.insert(filter->bytes.end(), payload, payload + size);
    finishSections(pid, filter);
}

bool Demux::finishSections(uint16_t pid, const std::shared_ptr<Filter>& filter) {
    size_t at = 0;
    while (filter->bytes.size() - at >= PSI_HEADER_SIZE) {
        const uint8_t* section = filter->bytes.data() + at;
        if (section[0] == kStuffing) {
            filter->reset();
            return true;
        }
        const size_t size = size_t{psi_get_length(section)} + PSI_HEADER_SIZE;
        if (size > PSI_PRIVATE_MAX_SIZE + PSI_HEADER_SIZE) {
            ++mCounters[pid].sectionErrors;
            filter->reset();
            return true;
        }
        if (filter->bytes.size() - at < size) break;
        if (isValid(section, size)) {
            filter->onSection(pid, section, size);
            if (filter->removed) return false;
        } else {
            ++mCounters[pid].sectionErrors;
        }
        at += size;
    }
    filter->bytes.erase(filter->bytes.begin(),
                        filter->bytes.begin() + static_cast<std::ptrdiff_t>(at));
    // Stuffing shorter than a header.
    if (!filter->bytes.empty() && filter->bytes[0] == kStuffing) filter->reset();
    if (filter->bytes.empty()) filter->begun = false;
    return true;
}

void Demux::pes(uint16_t pid, const std::shared_ptr<Filter>& filter, const uint8_t* payload,
                size_t size, bool start) {
    if (start) {
        if (filter->begun) finishPes(pid, filter);
        if (filter->removed) return;
        filter->reset();
        filter->begun = true;
    }
    if (!filter->begun) return;
    filter->received += size;
    const size_t space = filter->limit - std::min(filter->limit, filter->bytes.size());
    filter->bytes.insert(filter->bytes.end(), payload, payload + std::min(size, space));
    if (filter->bytes.size() < PES_HEADER_SIZE) return;
    const size_t length = pes_get_length(filter->bytes.data());
    // Only video leaves its length open; its end is the begin of the next one.
    if (length == 0 || filter->received < length + PES_HEADER_SIZE) return;
    filter->bytes.resize(std::min(filter->bytes.size(), length + PES_HEADER_SIZE));
    finishPes(pid, filter);
    if (!filter->removed) filter->reset();
}

void Demux::finishPes(uint16_t pid, const std::shared_ptr<Filter>& filter) {
    const std::vector<uint8_t>& bytes = filter->bytes;
    if (bytes.size() < PES_HEADER_SIZE_NOPTS || !pes_validate(bytes.data())) return;
    PesPacket packet;
    packet.pid = pid;
    packet.streamId = pes_get_streamid(bytes.data());
    packet.data = bytes.data();
    packet.size = bytes.size();
    size_t header = PES_HEADER_SIZE;
    if (pes_validate_header(bytes.data())) {
        header = size_t{PES_HEADER_SIZE_NOPTS} + pes_get_headerlength(bytes.data());
        if (header > bytes.size()) return;
        if (pes_has_pts(bytes.data()) && header >= PES_HEADER_SIZE_PTS) {
            packet.presentation = pes_get_pts(bytes.data());
        }
        if (pes_has_dts(bytes.data()) && header >= PES_HEADER_SIZE_PTSDTS) {
            packet.decoding = pes_get_dts(bytes.data());
        }
    }
    packet.payload = bytes.data() + header;
    packet.payloadSize = bytes.size() - header;
    filter->onPes(packet);
}

}  // namespace qeltvd::stream
