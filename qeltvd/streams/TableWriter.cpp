#include "TableWriter.h"

#include <bitstream/dvb/si.h>
#include <bitstream/mpeg/psi.h>
#include <bitstream/mpeg/ts.h>

#include <algorithm>
#include <cstring>

#include "Descriptors.h"
#include "Packets.h"

namespace qeltvd::stream {

namespace {

/** A text as DVB carries UTF-8, cut between characters. */
std::vector<uint8_t> field(const std::string& text) {
    constexpr size_t kLongest = 100;
    constexpr uint8_t kUtf8 = 0x15;
    size_t size = std::min(text.size(), kLongest);
    while (size > 0 && size < text.size() && (text[size] & 0xc0) == 0x80) --size;
    std::vector<uint8_t> bytes;
    // biTStream copies from the address even of nothing.
    bytes.reserve(kLongest + 1);
    if (size == 0) return bytes;
    bytes.push_back(kUtf8);
    bytes.insert(bytes.end(), text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
    return bytes;
}

std::vector<uint8_t> finished(const uint8_t* section) {
    return {section, section + psi_get_length(section) + PSI_HEADER_SIZE};
}

/** Appends a list of descriptors behind its length, without those of conditional access. */
void appendClear(const uint8_t* list, std::vector<uint8_t>* section) {
    constexpr uint8_t kConditionalAccess = 0x09;
    const size_t head = section->size();
    section->push_back(list[0] & 0xf0);
    section->push_back(0);
    for (const Descriptor descriptor : Descriptors::of(list)) {
        if (descriptor.tag() == kConditionalAccess) continue;
        const Bytes body = descriptor.body();
        section->insert(section->end(), body.data - DESC_HEADER_SIZE, body.data + body.size);
    }
    const size_t size = section->size() - head - DESCS_HEADER_SIZE;
    (*section)[head] = static_cast<uint8_t>((*section)[head] | size >> 8);
    (*section)[head + 1] = static_cast<uint8_t>(size);
}

}  // namespace

std::vector<uint8_t> associationSection(uint16_t streamId, uint16_t serviceId, uint16_t pmtPid) {
    PSI_DECLARE(section);
    pat_init(section);
    pat_set_length(section, PAT_PROGRAM_SIZE);
    pat_set_tsid(section, streamId);
    psi_set_version(section, 0);
    psi_set_current(section);
    psi_set_section(section, 0);
    psi_set_lastsection(section, 0);
    uint8_t* program = section + PAT_HEADER_SIZE;
    patn_init(program);
    patn_set_program(program, serviceId);
    patn_set_pid(program, pmtPid);
    psi_set_crc(section);
    return finished(section);
}

std::vector<uint8_t> descriptionSection(uint16_t streamId, uint16_t originalNetworkId,
                                        const Service& service) {
    constexpr uint8_t kTelevision = 0x01, kRadio = 0x02, kRunning = 4;
    const std::vector<uint8_t> name = field(service.name());
    const std::vector<uint8_t> provider =
            field(service.description ? service.description->provider : std::string());
    uint8_t type = service.isRadio() ? kRadio : kTelevision;
    if (service.description && service.description->type != 0) type = service.description->type;
    const size_t descriptorSize = DESC48_HEADER_SIZE + 2 + name.size() + provider.size();

    PSI_DECLARE(section);
    sdt_init(section, true);
    sdt_set_length(section, static_cast<uint16_t>(SDT_SERVICE_SIZE + descriptorSize));
    sdt_set_tsid(section, streamId);
    sdt_set_onid(section, originalNetworkId);
    psi_set_version(section, 0);
    psi_set_current(section);
    psi_set_section(section, 0);
    psi_set_lastsection(section, 0);
    uint8_t* entry = section + SDT_HEADER_SIZE;
    sdtn_init(entry);
    sdtn_set_sid(entry, service.id);
    sdtn_set_running(entry, kRunning);
    sdtn_set_desclength(entry, static_cast<uint16_t>(descriptorSize));
    uint8_t* descriptor = entry + SDT_SERVICE_SIZE;
    desc48_init(descriptor);
    desc48_set_type(descriptor, type);
    desc48_set_provider(descriptor, provider.data(), static_cast<uint8_t>(provider.size()));
    desc48_set_service(descriptor, name.data(), static_cast<uint8_t>(name.size()));
    desc48_set_length(descriptor);
    psi_set_crc(section);
    return finished(section);
}

std::vector<uint8_t> clearMapSection(const std::vector<uint8_t>& section) {
    if (!programMap({section.data(), section.size()})) return {};
    const uint8_t* from = section.data();
    std::vector<uint8_t> clear(from, from + PMT_HEADER_SIZE - DESCS_HEADER_SIZE);
    appendClear(from + 10, &clear);
    const uint8_t* at = from + PMT_HEADER_SIZE + pmt_get_desclength(from);
    const uint8_t* end = from + section.size() - PSI_CRC_SIZE;
    for (; at + PMT_ES_SIZE <= end; at += PMT_ES_SIZE + pmtn_get_desclength(at)) {
        clear.insert(clear.end(), at, at + PMT_ES_SIZE - DESCS_HEADER_SIZE);
        appendClear(at + 3, &clear);
    }
    clear.resize(clear.size() + PSI_CRC_SIZE);
    psi_set_length(clear.data(), static_cast<uint16_t>(clear.size() - PSI_HEADER_SIZE));
    psi_set_crc(clear.data());
    return clear;
}

void PacketWriter::writeSection(const std::vector<uint8_t>& section,
                                std::vector<uint8_t>* packets) {
    for (size_t at = 0; at < section.size();) {
        uint8_t packet[TS_SIZE];
        memset(packet, 0xff, sizeof(packet));
        ts_init(packet);
        ts_set_pid(packet, mPid);
        ts_set_payload(packet);
        ts_set_cc(packet, mCounter++);
        size_t begin = TS_HEADER_SIZE;
        if (at == 0) {
            ts_set_unitstart(packet);
            packet[begin++] = 0;
        }
        const size_t size = std::min(section.size() - at, TS_SIZE - begin);
        memcpy(packet + begin, section.data() + at, size);
        at += size;
        packets->insert(packets->end(), packet, packet + TS_SIZE);
    }
}

void PacketWriter::writePes(const std::vector<uint8_t>& pes, std::vector<uint8_t>* packets,
                            std::optional<uint64_t> reference, bool randomAccess) {
    for (size_t at = 0; at < pes.size();) {
        uint8_t packet[TS_SIZE];
        ts_init(packet);
        ts_set_pid(packet, mPid);
        ts_set_payload(packet);
        ts_set_cc(packet, mCounter++);
        size_t adaptation = 0;
        if (at == 0) {
            ts_set_unitstart(packet);
            // Its length, the flags and the reference.
            if (reference) {
                adaptation = 8;
            } else if (randomAccess) {
                adaptation = 2;
            }
        }
        const size_t space = TS_SIZE - TS_HEADER_SIZE - adaptation;
        const size_t size = std::min(pes.size() - at, space);
        // The rest is stuffing of the adaptation field.
        adaptation += space - size;
        if (adaptation > 0) {
            ts_set_adaptation(packet, static_cast<uint8_t>(adaptation - 1));
            if (at == 0 && reference) tsaf_set_pcr(packet, *reference);
            if (at == 0 && randomAccess) tsaf_set_randomaccess(packet);
        }
        memcpy(packet + TS_HEADER_SIZE + adaptation, pes.data() + at, size);
        at += size;
        packets->insert(packets->end(), packet, packet + TS_SIZE);
    }
}

}  // namespace qeltvd::stream
