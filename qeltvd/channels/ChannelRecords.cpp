#include "ChannelRecords.h"

#include <cstring>

#include "Text.h"

namespace qeltvd {

channel_record_t pack(const Channel& channel, const Multiplex& multiplex) {
    channel_record_t record{};
    record.list = channel.list;
    record.record_id = channel.recordId;
    record.channel_id = channel.channelId;
    record.number = channel.number;
    record.flags = channel.flags;
    record.tsl_record_id = channel.multiplex;
    record.original_network_id = channel.originalNetworkId;
    record.stream_id = channel.streamId;
    record.service_id = channel.serviceId;
    record.pmt_pid = channel.pmtPid;
    record.pcr_pid = channel.pcrPid;
    record.video_pid = channel.videoPid;
    record.audio_pid = channel.audioPid;
    record.service_type = static_cast<uint8_t>(channel.type);
    record.broadcast_type = static_cast<uint8_t>(broadcastTypeOf(multiplex.system));
    copyText(record.name, channel.name);
    copyText(record.provider, channel.provider);
    copyText(record.language, channel.language);
    return record;
}

multiplex_record_t pack(const Multiplex& multiplex) {
    multiplex_record_t record{};
    record.list = multiplex.list;
    record.record_id = multiplex.recordId;
    record.satellite_record_id = multiplex.satellite;
    record.network_record_id = multiplex.network;
    record.frequency_low = static_cast<uint32_t>(multiplex.frequencyHz);
    record.frequency_high = static_cast<uint32_t>(multiplex.frequencyHz >> 32);
    record.symbol_rate = multiplex.symbolRate;
    record.bandwidth = multiplex.bandwidthHz;
    record.system = static_cast<uint8_t>(multiplex.system);
    record.modulation = static_cast<uint8_t>(multiplex.modulation);
    record.polarisation = static_cast<uint8_t>(multiplex.polarisation);
    record.code_rate = multiplex.codeRate;
    record.original_network_id = multiplex.originalNetworkId;
    record.network_id = multiplex.networkId;
    record.stream_id = multiplex.streamId;
    record.rf_channel = multiplex.rfChannel;
    copyText(record.name, multiplex.name);
    return record;
}

satellite_record_t pack(const Satellite& satellite) {
    satellite_record_t record{};
    record.record_id = satellite.recordId;
    record.position = satellite.position;
    record.low_oscillator_khz = satellite.lowOscillatorKHz;
    record.high_oscillator_khz = satellite.highOscillatorKHz;
    record.switch_khz = satellite.switchKHz;
    record.switch_port = satellite.switchPort;
    record.enabled = satellite.enabled ? 1 : 0;
    copyText(record.name, satellite.name);
    return record;
}

network_record_t pack(const Network& network) {
    network_record_t record{};
    record.list = network.list;
    record.network_id = network.networkId;
    record.record_id = network.recordId;
    record.satellite_record_id = network.satellite;
    copyText(record.name, network.name);
    return record;
}

biss_record_t pack(const BissKey& key) {
    biss_record_t record{};
    record.header.frequency_khz = key.frequencyKHz;
    record.header.symbol_rate = key.symbolRate;
    record.header.service_id = key.serviceId;
    record.header.position = key.position;
    record.header.polarisation = static_cast<uint8_t>(key.polarisation);
    record.record_id = key.recordId;
    record.key_size = static_cast<uint8_t>(std::min(key.key.size(), sizeof(record.key)));
    std::copy_n(key.key.begin(), record.key_size, record.key);
    record.enabled = key.enabled ? 1 : 0;
    return record;
}

Channel unpack(const channel_record_t& record) {
    Channel channel;
    channel.list = record.list;
    channel.recordId = record.record_id;
    channel.channelId = record.channel_id;
    channel.number = record.number;
    channel.flags = record.flags;
    channel.multiplex = record.tsl_record_id;
    channel.originalNetworkId = record.original_network_id;
    channel.streamId = record.stream_id;
    channel.serviceId = record.service_id;
    channel.pmtPid = record.pmt_pid;
    channel.pcrPid = record.pcr_pid;
    channel.videoPid = record.video_pid;
    channel.audioPid = record.audio_pid;
    channel.type = static_cast<ServiceType>(record.service_type);
    channel.name = textOf(record.name);
    channel.provider = textOf(record.provider);
    channel.language = textOf(record.language);
    return channel;
}

Multiplex unpack(const multiplex_record_t& record) {
    Multiplex multiplex;
    multiplex.list = record.list;
    multiplex.recordId = record.record_id;
    multiplex.satellite = record.satellite_record_id;
    multiplex.network = record.network_record_id;
    multiplex.frequencyHz = uint64_t{record.frequency_high} << 32 | record.frequency_low;
    multiplex.symbolRate = record.symbol_rate;
    multiplex.bandwidthHz = record.bandwidth;
    multiplex.system = static_cast<DeliverySystem>(record.system);
    multiplex.modulation = static_cast<Modulation>(record.modulation);
    multiplex.polarisation = static_cast<Polarisation>(record.polarisation);
    multiplex.codeRate = record.code_rate;
    multiplex.originalNetworkId = record.original_network_id;
    multiplex.networkId = record.network_id;
    multiplex.streamId = record.stream_id;
    multiplex.rfChannel = record.rf_channel;
    multiplex.name = textOf(record.name);
    return multiplex;
}

Satellite unpack(const satellite_record_t& record) {
    Satellite satellite;
    satellite.recordId = record.record_id;
    satellite.name = textOf(record.name);
    satellite.position = record.position;
    satellite.lowOscillatorKHz = record.low_oscillator_khz;
    satellite.highOscillatorKHz = record.high_oscillator_khz;
    satellite.switchKHz = record.switch_khz;
    satellite.switchPort = record.switch_port;
    satellite.enabled = record.enabled != 0;
    return satellite;
}

Network unpack(const network_record_t& record) {
    return {record.list, record.record_id, record.network_id, record.satellite_record_id,
            textOf(record.name)};
}

BissKey unpack(const biss_record_t& record) {
    BissKey key;
    key.recordId = record.record_id;
    key.frequencyKHz = record.header.frequency_khz;
    key.symbolRate = record.header.symbol_rate;
    key.serviceId = record.header.service_id;
    key.position = record.header.position;
    key.polarisation = static_cast<Polarisation>(record.header.polarisation);
    key.enabled = record.enabled != 0;
    key.key.assign(record.key, record.key + std::min<size_t>(record.key_size, sizeof(record.key)));
    return key;
}

}  // namespace qeltvd
