#include <bitstream/dvb/si.h>
#include <bitstream/mpeg/psi.h>

#include <cstring>

#include "Descriptors.h"
#include "StreamText.h"
#include "Tables.h"

namespace qeltvd::stream {

namespace {

constexpr uint8_t kExtensionDescriptor = 0x7f;
constexpr uint8_t kAuthorityDescriptor = 0x73;
constexpr uint8_t kCaptionDescriptor = 0x86;
/** NorDig as the specifier of private data. */
constexpr uint32_t kNorthern = 0x29;

void readStreamType(Component* component) {
    const auto video = [&](Codec codec) {
        component->kind = ComponentKind::kVideo;
        component->codec = codec;
    };
    const auto audio = [&](Codec codec) {
        component->kind = ComponentKind::kAudio;
        component->codec = codec;
    };
    constexpr uint8_t kCableMpeg2Video = 0x80;
    switch (component->streamType) {
        case PMT_STREAMTYPE_VIDEO_MPEG1:
            return video(Codec::kMpeg1Video);
        case PMT_STREAMTYPE_VIDEO_MPEG2:
        case kCableMpeg2Video:
            return video(Codec::kMpeg2Video);
        case PMT_STREAMTYPE_VIDEO_MPEG4:
            return video(Codec::kMpeg4Video);
        case PMT_STREAMTYPE_VIDEO_AVC:
            return video(Codec::kH264);
        case PMT_STREAMTYPE_VIDEO_HEVC:
            return video(Codec::kH265);
        case PMT_STREAMTYPE_AUDIO_MPEG1:
        case PMT_STREAMTYPE_AUDIO_MPEG2:
            return audio(Codec::kMpegAudio);
        case PMT_STREAMTYPE_AUDIO_ADTS:
            return audio(Codec::kAac);
        case PMT_STREAMTYPE_AUDIO_LATM:
            return audio(Codec::kAacLatm);
        case PMT_STREAMTYPE_ATSC_A52:
            return audio(Codec::kAc3);
        case PMT_STREAMTYPE_ATSC_A52E:
            return audio(Codec::kEac3);
        default:
            return;
    }
}

void setAudio(Component* component, Codec codec) {
    if (component->kind == ComponentKind::kVideo) return;
    component->kind = ComponentKind::kAudio;
    if (component->codec == Codec::kUnknown) component->codec = codec;
}

/** The component type of AC-3: service in bits 3 to 5, channels in the lowest three. */
void readAc3Type(uint8_t type, Component* component) {
    constexpr uint8_t kChannels[] = {1, 2, 2, 2, 6, 8, 0, 0};
    component->channels = kChannels[type & 7];
    switch (type >> 3 & 7) {
        case 1:
            component->role = AudioRole::kCleanEffects;
            break;
        case 2:
            component->role = AudioRole::kVisuallyImpaired;
            break;
        case 3:
            component->role = AudioRole::kHearingImpaired;
            break;
        default:
            break;
    }
}

/** The descriptor of ATSC's AC-3, which comes without a language in older streams. */
void readAtscAc3(Bytes body, Component* component) {
    Reader reader(body);
    reader.skip(2);
    const uint8_t modes = reader.u8();
    if (!reader.ok()) return;
    const uint8_t service = modes >> 5, channels = modes >> 1 & 0x0f;
    constexpr uint8_t kChannels[] = {2, 1, 2, 3, 3, 4, 4, 5, 1, 2, 3, 4, 5, 6, 0, 0};
    component->channels = kChannels[channels];
    if (service == 1) component->role = AudioRole::kCleanEffects;
    if (service == 2) component->role = AudioRole::kVisuallyImpaired;
    if (service == 3) component->role = AudioRole::kHearingImpaired;
    reader.u8();
    if (channels == 0) reader.u8();
    reader.u8();
    const uint8_t textSize = reader.u8();
    reader.skip(textSize >> 1);
    const uint8_t flags = reader.u8();
    if ((flags & 0x80) == 0) return;
    const Bytes language = reader.take(3);
    if (reader.ok() && component->language.empty()) {
        component->language = languageOf(language.data);
    }
}

void readLanguages(const Descriptor& descriptor, Component* component) {
    if (!desc0a_validate(descriptor.raw())) return;
    for (uint8_t i = 0; i < 2; ++i) {
        const uint8_t* entry = desc0a_get_language(descriptor.raw(), i);
        if (entry == nullptr) return;
        const std::string language = languageOf(desc0an_get_code(entry));
        (i == 0 ? component->language : component->secondLanguage) = language;
        const uint8_t type = desc0an_get_audiotype(entry);
        if (type >= 1 && type <= 3) component->role = static_cast<AudioRole>(type);
    }
}

void readSupplementaryAudio(Bytes body, Component* component) {
    if (body.size < 1) return;
    component->mixed = (body.data[0] & 0x80) == 0;
    switch (body.data[0] >> 2 & 0x1f) {
        case 1:
        case 3:
            component->role = AudioRole::kVisuallyImpaired;
            break;
        case 2:
            component->role = AudioRole::kHearingImpaired;
            break;
        default:
            component->mixed = false;
            break;
    }
    if ((body.data[0] & 1) != 0 && body.size >= 4) component->language = languageOf(body.data + 1);
}

void readTeletext(const Descriptor& descriptor, Component* component) {
    if (!desc56_validate(descriptor.raw())) return;
    component->kind = ComponentKind::kTeletext;
    for (uint8_t i = 0;; ++i) {
        const uint8_t* entry = desc56_get_language(descriptor.raw(), i);
        if (entry == nullptr) return;
        const uint8_t magazine = desc56n_get_teletextmagazine(entry);
        component->teletext.push_back({languageOf(desc56n_get_code(entry)),
                                       desc56n_get_teletexttype(entry),
                                       static_cast<uint16_t>((magazine == 0 ? 8 : magazine) << 8 |
                                                             desc56n_get_teletextpage(entry))});
        if (component->language.empty()) {
            component->language = component->teletext.back().language;
        }
    }
}

void readSubtitles(const Descriptor& descriptor, Component* component) {
    if (!desc59_validate(descriptor.raw())) return;
    component->kind = ComponentKind::kSubtitles;
    for (uint8_t i = 0;; ++i) {
        const uint8_t* entry = desc59_get_language(descriptor.raw(), i);
        if (entry == nullptr) return;
        component->subtitles.push_back(
                {languageOf(desc59n_get_code(entry)), desc59n_get_subtitlingtype(entry),
                 desc59n_get_compositionpage(entry), desc59n_get_ancillarypage(entry)});
        if (component->language.empty()) {
            component->language = component->subtitles.back().language;
        }
    }
}

void readRegistration(const Descriptor& descriptor, Component* component) {
    if (!desc05_validate(descriptor.raw())) return;
    if (component->streamType != PMT_STREAMTYPE_PRIVATE_PES) return;
    const char* identifier = reinterpret_cast<const char*>(desc05_get_identifier(descriptor.raw()));
    const auto is = [&](const char* name) { return memcmp(identifier, name, 4) == 0; };
    if (is("AC-3")) setAudio(component, Codec::kAc3);
    if (is("EAC3")) setAudio(component, Codec::kEac3);
    if (is("AC-4")) setAudio(component, Codec::kAc4);
    if (is("DTS1") || is("DTS2") || is("DTS3")) setAudio(component, Codec::kDts);
    if (is("HEVC")) {
        component->kind = ComponentKind::kVideo;
        component->codec = Codec::kH265;
    }
}

void readExtension(Bytes body, Component* component) {
    constexpr uint8_t kSupplementaryAudio = 0x06, kDtsHd = 0x0e, kAc4 = 0x15;
    if (body.size < 1) return;
    const Bytes rest{body.data + 1, body.size - 1};
    if (body.data[0] == kSupplementaryAudio) readSupplementaryAudio(rest, component);
    if (body.data[0] == kDtsHd) setAudio(component, Codec::kDts);
    if (body.data[0] == kAc4) setAudio(component, Codec::kAc4);
}

std::optional<CaSystem> caSystem(const Descriptor& descriptor) {
    if (!desc09_validate(descriptor.raw())) return std::nullopt;
    return CaSystem{desc09_get_sysid(descriptor.raw()), desc09_get_pid(descriptor.raw())};
}

void readComponent(const Descriptors& descriptors, Component* component) {
    constexpr uint8_t kAtscAc3 = 0x81, kApplicationSignalling = 0x6f;
    readStreamType(component);
    // The kind of private data first: what a descriptor means can depend on it.
    for (const Descriptor descriptor : descriptors) {
        uint8_t* raw = descriptor.raw();
        switch (descriptor.tag()) {
            case 0x05:
                readRegistration(descriptor, component);
                break;
            case 0x09:
                if (const auto ca = caSystem(descriptor)) component->ca.push_back(*ca);
                break;
            case 0x0a:
                readLanguages(descriptor, component);
                break;
            case 0x46:
            case 0x56:
                readTeletext(descriptor, component);
                break;
            case 0x52:
                if (descriptor.body().size >= 1) component->tag = descriptor.body().data[0];
                break;
            case 0x59:
                readSubtitles(descriptor, component);
                break;
            case 0x6a:
                setAudio(component, Codec::kAc3);
                if (desc6a_validate(raw) && desc6a_get_component_type_flag(raw)) {
                    readAc3Type(desc6a_get_component_type(raw), component);
                }
                break;
            case 0x7a:
                setAudio(component, Codec::kEac3);
                if (desc7a_validate(raw) && desc7a_get_component_type_flag(raw)) {
                    readAc3Type(desc7a_get_component_type(raw), component);
                }
                break;
            case 0x7b:
                setAudio(component, Codec::kDts);
                break;
            case 0x7c:
                setAudio(component, Codec::kAac);
                break;
            case kExtensionDescriptor:
                readExtension(descriptor.body(), component);
                break;
            case kApplicationSignalling:
                component->kind = ComponentKind::kApplications;
                break;
            case kAtscAc3:
                if (component->codec == Codec::kAc3) readAtscAc3(descriptor.body(), component);
                break;
            case kCaptionDescriptor:
                component->captions = captionServices(descriptor.body());
                break;
            default:
                break;
        }
    }
}

ServiceDescription serviceDescription(const uint8_t* entry) {
    ServiceDescription service;
    service.serviceId = sdtn_get_sid(entry);
    service.running = sdtn_get_running(entry);
    service.scrambled = sdtn_get_ca(entry);
    service.eitSchedule = sdtn_get_eitschedule(entry);
    service.eitPresentFollowing = sdtn_get_eitpresent(entry);
    for (const Descriptor descriptor : Descriptors::of(entry + 3)) {
        if (descriptor.tag() == 0x48 && desc48_validate(descriptor.raw())) {
            uint8_t size = 0;
            service.type = desc48_get_type(descriptor.raw());
            const uint8_t* provider = desc48_get_provider(descriptor.raw(), &size);
            service.provider = dvbText({provider, size});
            const uint8_t* name = desc48_get_service(descriptor.raw(), &size);
            service.name = dvbText({name, size});
        } else if (descriptor.tag() == kAuthorityDescriptor) {
            service.authority = asciiText(descriptor.body());
        }
    }
    return service;
}

void readLogicalNumbers(const Descriptor& descriptor, uint32_t specifier, bool hd,
                        NetworkStream* stream) {
    if (!desc83p28_validate(descriptor.raw())) return;
    for (uint8_t i = 0;; ++i) {
        const uint8_t* entry = desc83p28_get_service(descriptor.raw(), i);
        if (entry == nullptr) return;
        LogicalNumber number;
        number.serviceId = desc83p28n_get_sid(entry);
        number.visible = desc83p28n_get_visible(entry);
        number.number = desc83p28n_get_lcn(entry);
        // NorDig's descriptor of the same tag has numbers of 14 bits.
        if (specifier == kNorthern) {
            number.number = static_cast<uint16_t>((entry[2] & 0x3f) << 8 | entry[3]);
        }
        number.hd = hd;
        stream->numbers.push_back(number);
    }
}

/** NorDig's second descriptor: lists for countries, of which the first one is taken. */
void readNorthernNumbers(Bytes body, NetworkStream* stream) {
    Reader reader(body);
    reader.u8();
    reader.skip(reader.u8());
    reader.skip(3);
    Reader entries(reader.take(reader.u8()));
    while (entries.left() >= 4) {
        LogicalNumber number;
        number.serviceId = entries.u16();
        const uint16_t word = entries.u16();
        number.visible = (word & 0x8000) != 0;
        number.number = word & 0x3ff;
        number.second = true;
        stream->numbers.push_back(number);
    }
}

std::optional<Delivery> terrestrial2(Bytes body) {
    constexpr uint32_t kBandwidths[] = {8000000, 7000000, 6000000, 5000000, 10000000, 1712000};
    Reader reader(body);
    reader.skip(4);
    const uint16_t modes = reader.u16();
    reader.u16();
    const bool slicing = (modes & 1) != 0;
    if (slicing) reader.u8();
    const uint32_t frequency = reader.u32();
    if (!reader.ok()) return std::nullopt;
    Delivery delivery;
    delivery.system = Delivery::kTerrestrial2;
    const unsigned code = modes >> 10 & 0x0f;
    if (code < sizeof(kBandwidths) / sizeof(kBandwidths[0])) {
        delivery.bandwidthHz = kBandwidths[code];
    }
    delivery.frequencyHz = frequency * uint64_t{10};
    return delivery;
}

std::optional<Delivery> deliveryOf(const Descriptor& descriptor) {
    uint8_t* raw = descriptor.raw();
    Delivery delivery;
    switch (descriptor.tag()) {
        case 0x43:
            if (!desc43_validate(raw)) return std::nullopt;
            delivery.system = desc43_get_dvbs2(raw) ? Delivery::kSatellite2 : Delivery::kSatellite;
            delivery.frequencyHz = desc43_get_frequency(raw) * uint64_t{1000};
            delivery.symbolRate = desc43_get_symbolrate(raw);
            delivery.polarisation = desc43_get_polarization(raw);
            delivery.position = static_cast<int32_t>(desc43_get_position(raw));
            if (!desc43_get_east(raw)) delivery.position = -delivery.position;
            return delivery;
        case 0x44:
            if (!desc44_validate(raw)) return std::nullopt;
            delivery.system = Delivery::kCable;
            delivery.frequencyHz = desc44_get_frequency(raw);
            delivery.symbolRate = desc44_get_symbolrate(raw);
            return delivery;
        case 0x5a:
            if (!desc5a_validate(raw)) return std::nullopt;
            delivery.frequencyHz = desc5a_get_frequency(raw);
            if (desc5a_get_bandwidth(raw) < 4) {
                delivery.bandwidthHz = (8u - desc5a_get_bandwidth(raw)) * 1000000;
            }
            return delivery;
        case kExtensionDescriptor: {
            constexpr uint8_t kTerrestrial2 = 0x04;
            const Bytes body = descriptor.body();
            if (body.size < 1 || body.data[0] != kTerrestrial2) return std::nullopt;
            return terrestrial2({body.data, body.size});
        }
        default:
            return std::nullopt;
    }
}

NetworkStream networkStream(const uint8_t* entry) {
    NetworkStream stream;
    stream.streamId = nitn_get_tsid(entry);
    stream.originalNetworkId = nitn_get_onid(entry);
    uint32_t specifier = 0;
    for (const Descriptor descriptor : Descriptors::of(entry + 4)) {
        const Bytes body = descriptor.body();
        switch (descriptor.tag()) {
            case 0x41:
                for (size_t i = 0; i + DESC41_SERVICE_SIZE <= body.size; i += DESC41_SERVICE_SIZE) {
                    stream.services.emplace_back(desc41n_get_sid(body.data + i),
                                                 desc41n_get_type(body.data + i));
                }
                break;
            case 0x5f:
                specifier = Reader(body).u32();
                break;
            case 0x83:
                readLogicalNumbers(descriptor, specifier, false, &stream);
                break;
            case 0x87:
                if (specifier == 0 || specifier == kNorthern) readNorthernNumbers(body, &stream);
                break;
            case 0x88:
                readLogicalNumbers(descriptor, specifier, true, &stream);
                break;
            case kAuthorityDescriptor:
                stream.authority = asciiText(body);
                break;
            default:
                if (const auto delivery = deliveryOf(descriptor)) stream.delivery = delivery;
                break;
        }
    }
    return stream;
}

}  // namespace

std::optional<TableHeader> tableHeader(Bytes section) {
    if (!isLongSection(section, PSI_HEADER_SIZE_SYNTAX1)) return std::nullopt;
    TableHeader header;
    readHeader(section, &header);
    return header;
}

bool isWhole(Bytes section) {
    if (section.size < PSI_HEADER_SIZE) return false;
    if (section.size != psi_get_length(section.data) + size_t{PSI_HEADER_SIZE}) return false;
    if (!psi_validate(section.data)) return false;
    const bool checked = psi_get_syntax(section.data) || section.data[0] == TOT_TABLE_ID;
    if (!checked) return true;
    return section.size >= PSI_HEADER_SIZE + PSI_CRC_SIZE && psi_check_crc(section.data);
}

std::vector<CaptionService> captionServices(Bytes body) {
    std::vector<CaptionService> services;
    Reader reader(body);
    const uint8_t count = reader.u8() & 0x1f;
    for (uint8_t i = 0; i < count; ++i) {
        const Bytes language = reader.take(3);
        const uint8_t kind = reader.u8();
        const uint16_t flags = reader.u16();
        if (!reader.ok()) break;
        CaptionService service;
        service.language = languageOf(language.data);
        service.digital = (kind & 0x80) != 0;
        service.number = service.digital ? kind & 0x3f : static_cast<uint8_t>((kind & 1) + 1);
        service.easyReader = (flags & 0x8000) != 0;
        service.wide = (flags & 0x4000) != 0;
        services.push_back(service);
    }
    return services;
}

std::optional<ProgramAssociation> programAssociation(Bytes section) {
    if (!isLongSection(section, PAT_HEADER_SIZE) || !pat_validate(section.data))
        return std::nullopt;
    ProgramAssociation table;
    readHeader(section, &table);
    for (const uint8_t* at = section.data + PAT_HEADER_SIZE;
         at + PAT_PROGRAM_SIZE <= endOfBody(section); at += PAT_PROGRAM_SIZE) {
        const uint16_t number = patn_get_program(at), pid = patn_get_pid(at);
        if (number == 0) {
            table.networkPid = pid;
        } else {
            table.programs.push_back({number, pid});
        }
    }
    return table;
}

std::optional<ProgramMap> programMap(Bytes section) {
    if (!isLongSection(section, PMT_HEADER_SIZE) || !pmt_validate(section.data))
        return std::nullopt;
    ProgramMap table;
    readHeader(section, &table);
    table.pcrPid = pmt_get_pcrpid(section.data);
    for (const Descriptor descriptor : Descriptors::of(section.data + 10)) {
        if (descriptor.tag() != 0x09) continue;
        if (const auto ca = caSystem(descriptor)) table.ca.push_back(*ca);
    }
    const uint8_t* at = section.data + PMT_HEADER_SIZE + pmt_get_desclength(section.data);
    for (; at + PMT_ES_SIZE <= endOfBody(section); at += PMT_ES_SIZE + pmtn_get_desclength(at)) {
        Component component;
        component.streamType = pmtn_get_streamtype(at);
        component.pid = pmtn_get_pid(at);
        readComponent(Descriptors::of(at + 3), &component);
        table.components.push_back(std::move(component));
    }
    return table;
}

std::optional<ServiceTable> serviceTable(Bytes section) {
    if (!isLongSection(section, SDT_HEADER_SIZE) || !sdt_validate(section.data))
        return std::nullopt;
    ServiceTable table;
    readHeader(section, &table);
    table.actual = table.tableId == SDT_TABLE_ID_ACTUAL;
    table.originalNetworkId = sdt_get_onid(section.data);
    for (const uint8_t* at = section.data + SDT_HEADER_SIZE;
         at + SDT_SERVICE_SIZE <= endOfBody(section);
         at += SDT_SERVICE_SIZE + sdtn_get_desclength(at)) {
        table.services.push_back(serviceDescription(at));
    }
    return table;
}

std::optional<NetworkTable> networkTable(Bytes section) {
    if (!isLongSection(section, NIT_HEADER_SIZE + NIT_HEADER2_SIZE)) return std::nullopt;
    const bool bouquet = section.data[0] == BAT_TABLE_ID;
    if (bouquet ? !bat_validate(section.data) : !nit_validate(section.data)) return std::nullopt;
    NetworkTable table;
    readHeader(section, &table);
    table.bouquet = bouquet;
    table.actual = table.tableId == NIT_TABLE_ID_ACTUAL;
    for (const Descriptor descriptor : Descriptors::of(section.data + 8)) {
        if (descriptor.tag() == 0x40 || descriptor.tag() == 0x47) {
            table.name = dvbText(descriptor.body());
        } else if (descriptor.tag() == kAuthorityDescriptor) {
            table.authority = asciiText(descriptor.body());
        }
    }
    const uint8_t* at =
            section.data + NIT_HEADER_SIZE + nit_get_desclength(section.data) + NIT_HEADER2_SIZE;
    for (; at + NIT_TS_SIZE <= endOfBody(section); at += NIT_TS_SIZE + nitn_get_desclength(at)) {
        table.streams.push_back(networkStream(at));
    }
    return table;
}

}  // namespace qeltvd::stream
