#include "ServiceStream.h"

#include <bitstream/mpeg/pes.h>
#include <bitstream/mpeg/ts.h>

#include <algorithm>
#include <cstring>

namespace qeltvd::stream {

namespace {

constexpr uint16_t kPatPid = 0x00, kSdtPid = 0x11;
/** How often the tables come: by the clock of the stream, and where it has none by packets. */
constexpr uint64_t kTableTicks = ElapsedClock::kFrequency / 10;
constexpr uint64_t kTablePackets = 2000;

constexpr uint64_t kWrap = uint64_t{1} << 33;
/** Time from the last reference before the source began anew to the first one after; long
 * enough for sound that is ahead of the clock. */
constexpr uint64_t kStep = 90000 / 5;

/** Moves the times of a packet; headers that are not whole in it are left alone. */
void moveTimes(uint8_t* packet, uint64_t offset) {
    if (offset == 0) return;
    if (const auto reference = clockReference(packet)) {
        const auto extension = static_cast<uint16_t>(*reference % 300);
        tsaf_set_pcr(packet, (*reference / 300 + offset) % kWrap);
        tsaf_set_pcrext(packet, extension);
    }
    if (!ts_get_unitstart(packet) || !ts_has_payload(packet) || ts_get_scrambling(packet) != 0) {
        return;
    }
    uint8_t* pes = ts_payload(packet);
    const uint8_t* end = packet + kPacketSize;
    if (end - pes < PES_HEADER_SIZE_PTS || !pes_validate(pes) || !pes_validate_header(pes)) return;
    if (!pes_has_pts(pes) || pes_get_headerlength(pes) < PES_HEADER_TS_SIZE) return;
    const bool both = pes_has_dts(pes) && end - pes >= PES_HEADER_SIZE_PTSDTS &&
                      pes_get_headerlength(pes) >= 2 * PES_HEADER_TS_SIZE;
    const uint64_t decoding = both ? pes_get_dts(pes) : 0;
    pes_set_pts(pes, (pes_get_pts(pes) + offset) % kWrap);
    if (both) pes_set_dts(pes, (decoding + offset) % kWrap);
}

/** Whether a unit begins a picture that needs no other one. */
bool beginsSequence(Codec codec, uint8_t code) {
    switch (codec) {
        case Codec::kMpeg1Video:
        case Codec::kMpeg2Video:
            return code == 0xb3;
        case Codec::kH264:
            return (code & 0x1f) == 7 || (code & 0x1f) == 5;
        case Codec::kH265: {
            const int kind = code >> 1 & 0x3f;
            return (kind >= 16 && kind <= 21) || kind == 32 || kind == 33;
        }
        default:
            return false;
    }
}

}  // namespace

ServiceStream::ServiceStream(uint16_t streamId, uint16_t originalNetworkId, const Service& service,
                             const std::vector<uint8_t>& map)
        : mStreamId(streamId),
          mOriginalNetworkId(originalNetworkId),
          mAssociationWriter(kPatPid),
          mDescriptionWriter(kSdtPid) {
    update(service, map);
}

void ServiceStream::update(const Service& service, const std::vector<uint8_t>& map) {
    mService = service;
    mAssociation = associationSection(mStreamId, service.id, service.pmtPid);
    mDescription = descriptionSection(mStreamId, mOriginalNetworkId, service);
    mMap = service.scrambledNow ? map : clearMapSection(map);
    if (mMapPid != service.pmtPid) mMapWriter.emplace(service.pmtPid);
    mMapPid = service.pmtPid;
    const Component* video = service.find(ComponentKind::kVideo);
    mVideo.reset();
    if (video != nullptr) {
        mVideo = video->pid;
        mCodec = video->codec;
    }
    std::map<uint16_t, Output> outputs;
    const auto keep = [&](uint16_t pid) {
        if (pid == kNullPid || pid == kPatPid || pid == kSdtPid || pid == mMapPid) return;
        const auto known = mOutputs.find(pid);
        outputs[pid] = known == mOutputs.end() ? Output{} : known->second;
    };
    for (const Component& each : service.components) keep(each.pid);
    keep(service.pcrPid);
    mOutputs = std::move(outputs);
    // The tables come again at once.
    mSinceTables = kTablePackets;
}

double ServiceStream::seconds() const {
    return static_cast<double>(mElapsed.elapsed()) / ElapsedClock::kFrequency;
}

bool ServiceStream::isAccessPoint(const uint8_t* packet) const {
    if (!ts_get_unitstart(packet)) return false;
    if (!mVideo) return true;
    if (pidOf(packet) != *mVideo) return false;
    if (ts_get_scrambling(packet) != 0) return true;
    size_t begin = TS_HEADER_SIZE;
    if (ts_has_adaptation(packet)) {
        if (packet[4] > 0 && tsaf_has_randomaccess(packet)) return true;
        begin += size_t{1} + packet[4];
    }
    for (size_t i = begin; i + 4 <= kPacketSize; ++i) {
        if (packet[i] == 0 && packet[i + 1] == 0 && packet[i + 2] == 1 &&
            beginsSequence(mCodec, packet[i + 3])) {
            return true;
        }
    }
    return false;
}

void ServiceStream::writeTables(std::vector<uint8_t>* packets) {
    mAssociationWriter.writeSection(mAssociation, packets);
    if (!mMap.empty()) mMapWriter->writeSection(mMap, packets);
    mDescriptionWriter.writeSection(mDescription, packets);
    mSinceTables = 0;
    mTablesAt = mElapsed.elapsed();
}

void ServiceStream::writePacket(const uint8_t* packet, std::vector<uint8_t>* packets) {
    const auto output = mOutputs.find(pidOf(packet));
    // A component that the service has no more.
    if (output == mOutputs.end()) return;
    const size_t at = packets->size();
    packets->insert(packets->end(), packet, packet + kPacketSize);
    uint8_t* written = packets->data() + at;
    // The counter counts packets with a payload only.
    uint8_t& counter = output->second.counter;
    if (ts_has_payload(written)) counter = static_cast<uint8_t>((counter + 1) & 15);
    ts_set_cc(written, counter);
}

ServiceStream::Step ServiceStream::follow(const uint8_t* packet, Output* output) const {
    const uint8_t counter = ts_get_cc(packet);
    const std::optional<uint8_t> before = output->sourceCounter;
    output->sourceCounter = counter;
    const bool announced =
            ts_has_adaptation(packet) && packet[4] > 0 && tsaf_has_discontinuity(packet);
    if (!before || announced || counter == ((*before + 1) & 15)) {
        output->repeated = false;
        return Step::kNext;
    }
    if (counter == *before && !output->repeated) {
        output->repeated = true;
        return Step::kRepeated;
    }
    output->repeated = false;
    return Step::kLost;
}

void ServiceStream::cut(Output* output) {
    if (output->unit && output->unit->state == Unit::State::kOpen) {
        output->unit->state = Unit::State::kCut;
        if (output->unit->access) output->begun = false;
    }
    output->unit.reset();
}

void ServiceStream::hold(const uint8_t* packet, Output* output, std::vector<uint8_t>* packets) {
    using State = Unit::State;
    std::shared_ptr<Unit> unit;
    if (ts_has_payload(packet)) {
        const size_t header =
                TS_HEADER_SIZE + (ts_has_adaptation(packet) ? size_t{1} + packet[4] : 0);
        const uint8_t* payload = packet + header;
        const size_t size = kPacketSize - header;
        const bool scrambled = ts_get_scrambling(packet) != 0;
        if (ts_get_unitstart(packet)) {
            if (output->unit && output->unit->state == State::kOpen) {
                // A length that was not reached: something is missing.
                output->unit->state = output->unit->left ? State::kCut : State::kWhole;
            }
            output->unit = std::make_shared<Unit>();
            output->unit->access = isAccessPoint(packet);
            if (!scrambled && size >= PES_HEADER_SIZE) {
                // Sections are short and have a checksum.
                if (!pes_validate(payload)) output->unit->state = State::kWhole;
                const size_t length = pes_validate(payload) ? pes_get_length(payload) : 0;
                if (length != 0) output->unit->left = length + PES_HEADER_SIZE;
            }
        }
        unit = output->unit;
        if (unit && unit->left) {
            *unit->left -= std::min(*unit->left, size);
            if (*unit->left == 0 && unit->state == State::kOpen) unit->state = State::kWhole;
        }
    }
    Held& held = mHeld.emplace_back();
    std::copy(packet, packet + kPacketSize, held.packet.begin());
    moveTimes(held.packet.data(), mOffset);
    held.unit = std::move(unit);
    held.at = mElapsed.elapsed();
    release(packets);
}

void ServiceStream::release(std::vector<uint8_t>* packets) {
    while (!mHeld.empty()) {
        const Held& front = mHeld.front();
        if (front.unit && front.unit->state == Unit::State::kOpen) {
            const bool late =
                    mHeld.size() > kMostHeld || mElapsed.elapsed() > front.at + kLongestUnit;
            if (!late) return;
            front.unit->state = Unit::State::kWhole;
        }
        const bool whole = !front.unit || front.unit->state == Unit::State::kWhole;
        if (whole) writePacket(front.packet.data(), packets);
        mHeld.pop_front();
    }
}

void ServiceStream::finish(std::vector<uint8_t>* packets) {
    for (auto& [pid, output] : mOutputs) cut(&output);
    release(packets);
}

bool ServiceStream::mayBegin(const uint8_t* packet) const {
    if (!ts_get_unitstart(packet)) return false;
    if (mVideo && pidOf(packet) != *mVideo) return mBegun;
    return isAccessPoint(packet) || mWaited > kLongestWait;
}

void ServiceStream::followClock(uint64_t reference) {
    if (mLastReference) {
        const uint64_t step = (reference + kWrap * 300 - *mLastReference) % (kWrap * 300);
        if (step > ElapsedClock::kLongestStep) {
            mOffset += *mLastReference / 300 + kStep + kWrap - reference / 300;
            mOffset %= kWrap;
        }
    }
    mLastReference = reference;
    mClockKnown = true;
}

void ServiceStream::push(const Batch& batch, std::vector<uint8_t>* packets) {
    if (batch.discontinuity) {
        mClockKnown = false;
        mWaited = 0;
        // A component that was interrupted goes on with its next unit.
        for (auto& [pid, output] : mOutputs) {
            output.begun = false;
            output.sourceCounter.reset();
        }
        finish(packets);
    }
    for (size_t i = 0; i < batch.count; ++i) {
        const uint8_t* packet = batch.packets + i * kPacketSize;
        const uint16_t pid = pidOf(packet);
        ++mWaited;
        const auto found = mOutputs.find(pid);
        if (found == mOutputs.end() || ts_get_transporterror(packet)) continue;
        if (ts_has_adaptation(packet) && packet[4] > kPacketSize - TS_HEADER_SIZE - 1) continue;
        Output& output = found->second;
        if (ts_has_payload(packet)) {
            const Step step = follow(packet, &output);
            if (step == Step::kRepeated) continue;
            if (step == Step::kLost) cut(&output);
        } else if (packet[4] > 0 && tsaf_has_discontinuity(packet)) {
            output.sourceCounter.reset();
        }
        const auto reference = clockReference(packet);
        if (reference && pid == mService.pcrPid) {
            followClock(*reference);
            if (mBegun) mElapsed.add((*reference + mOffset * 300) % (kWrap * 300));
        }
        if (!mClockKnown && mService.pcrPid != kNullPid && mWaited <= kLongestWait) continue;
        if (!ts_has_payload(packet)) {
            // A clock reference alone belongs to no unit.
            if (mBegun) hold(packet, &output, packets);
            continue;
        }
        if (!output.begun) {
            if (!mayBegin(packet)) continue;
            output.begun = true;
            if (!mBegun) {
                writeTables(packets);
                if (mLastReference) {
                    mElapsed.add((*mLastReference + mOffset * 300) % (kWrap * 300));
                }
            }
            mBegun = true;
        }
        if (mVideo && pid == *mVideo) mWaited = 0;
        // The rest of a unit that has lost packets.
        if (!output.unit && !ts_get_unitstart(packet)) continue;
        if (mSinceTables >= kTablePackets || mElapsed.elapsed() >= mTablesAt + kTableTicks) {
            writeTables(packets);
        }
        hold(packet, &output, packets);
        ++mSinceTables;
    }
}

}  // namespace qeltvd::stream
