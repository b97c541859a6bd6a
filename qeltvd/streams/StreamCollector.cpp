#include "StreamCollector.h"

#include <algorithm>
#include <climits>

namespace qeltvd::stream {

namespace {

constexpr uint16_t kPatPid = 0x00, kNitPid = 0x10, kSdtPid = 0x11, kEitPid = 0x12, kTdtPid = 0x14,
                   kPsipPid = 0x1ffb;
constexpr uint8_t kPat = 0x00, kPmt = 0x02, kNitActual = 0x40, kNitOther = 0x41, kSdtActual = 0x42,
                  kSdtOther = 0x46, kBat = 0x4a, kEitFirst = 0x4e, kEitLast = 0x6f, kTdt = 0x70,
                  kTot = 0x73, kAit = 0x74, kMgt = 0xc7, kTvct = 0xc8, kCvct = 0xc9, kRrt = 0xca,
                  kAtscEit = 0xcb, kEtt = 0xcc, kStt = 0xcd, kAlert = 0xd8;

/** Sequence headers and captions stand at the begin of a picture. */
constexpr size_t kPictureBegin = 4096;
constexpr size_t kMostPlaces = 100000;
constexpr size_t kMostPrograms = 1024;
constexpr size_t kMostOthers = 8192;
constexpr size_t kMostNetworks = 256;
constexpr size_t kMostNetworkSections = 1024;
constexpr size_t kMostApplicationSections = 64;
constexpr size_t kMostAlerts = 16;
constexpr size_t kMostGuidePids = 512;

std::optional<CaptionCarrier> carrierOf(Codec codec) {
    switch (codec) {
        case Codec::kMpeg2Video:
            return CaptionCarrier::kMpeg2;
        case Codec::kH264:
            return CaptionCarrier::kH264;
        case Codec::kH265:
            return CaptionCarrier::kH265;
        default:
            return std::nullopt;
    }
}

}  // namespace

bool StreamCollector::Progress::add(const TableHeader& header) {
    const bool begins = header.version != version || header.lastSection != last;
    if (begins) seen.clear();
    version = header.version;
    last = header.lastSection;
    seen.insert(header.section);
    return begins;
}

StreamCollector::StreamCollector() {
    for (const uint16_t pid : {kPatPid, kNitPid, kSdtPid, kEitPid, kTdtPid, kPsipPid}) {
        filterTable(pid);
    }
}

void StreamCollector::filterTable(uint16_t pid) {
    if (!mTablePids.insert(pid).second) return;
    mDemux.filterSections(pid, [this](uint16_t from, const uint8_t* data, size_t size) {
        section(from, data, size);
    });
}

uint32_t StreamCollector::push(const Batch& batch) {
    mChanges = 0;
    if (batch.count > 0) mSignal = true;
    if (batch.discontinuity) {
        for (const auto& [pid, decoder] : mTeletext) decoder->interrupt();
        for (const auto& [pid, decoder] : mCaptions) decoder->interrupt();
    }
    const uint64_t scramblingChanges = mDemux.scramblingChanges();
    mDemux.push(batch);
    if (mDemux.scramblingChanges() != scramblingChanges) mChanges |= kServicesChanged;
    return mChanges;
}

bool StreamCollector::isNew(uint16_t pid, Bytes section) {
    const uint8_t* data = section.data;
    if ((data[1] & 0x80) == 0 || section.size < 14) return true;
    // What holds later only; beside the table of now it would begin that anew each time.
    if ((data[5] & 1) == 0) return false;
    uint64_t place = 0xcbf29ce484222325;
    const auto mix = [&place](uint8_t byte) { place = (place ^ byte) * 0x100000001b3; };
    mix(static_cast<uint8_t>(pid >> 8));
    mix(static_cast<uint8_t>(pid));
    for (const size_t i : {0u, 3u, 4u, 6u}) mix(data[i]);
    // The same service id in several streams: events say which.
    if (data[0] >= kEitFirst && data[0] <= kEitLast) {
        for (size_t i = 8; i < 12; ++i) mix(data[i]);
    }
    if (data[0] == kSdtOther || data[0] == kEtt) {
        for (size_t i = 8; i < 13; ++i) mix(data[i]);
    }
    const uint8_t* end = data + section.size - 4;
    const uint32_t checksum = static_cast<uint32_t>(end[0]) << 24 |
                              static_cast<uint32_t>(end[1] << 16 | end[2] << 8 | end[3]);
    mLastPlace = place;
    if (mKnown.size() > kMostPlaces) mKnown.clear();
    const auto [known, inserted] = mKnown.emplace(place, checksum);
    if (!inserted && known->second == checksum) return false;
    known->second = checksum;
    return true;
}

void StreamCollector::section(uint16_t pid, const uint8_t* data, size_t size) {
    const Bytes bytes{data, size};
    if (!isNew(pid, bytes)) return;
    const uint8_t table = data[0];
    if (pid == kPatPid) {
        if (table == kPat) readAssociation(bytes);
    } else if (table == kPmt) {
        readMap(pid, bytes);
    } else if (table == kAit) {
        readApplications(pid, bytes);
    } else if (pid == kNitPid || pid == kSdtPid || pid == mNetworkPid) {
        if (table == kNitActual || table == kNitOther || table == kBat) readNetwork(bytes);
        if (table == kSdtActual || table == kSdtOther) readDescriptions(bytes);
    } else if (pid == kEitPid) {
        const auto events = eventTable(bytes);
        if (!events) return;
        if (events->actual) {
            mGuideKeys[events->serviceId()] = {events->originalNetworkId, events->streamId,
                                               events->serviceId()};
        }
        if (mEvents.add(*events)) mChanges |= kEventsChanged;
    } else if (pid == kTdtPid && (table == kTdt || table == kTot)) {
        auto time = timeTable(bytes);
        if (!time) return;
        if (!time->hasOffsets && mTime && mTime->hasOffsets) {
            time->offsets = mTime->offsets;
            time->hasOffsets = true;
        }
        mTime = time;
        mChanges |= kTimeChanged;
    } else if (table >= kMgt) {
        readAtsc(pid, bytes);
    }
}

void StreamCollector::readAssociation(Bytes section) {
    const auto table = programAssociation(section);
    if (!table || !table->current) return;
    // Programs that this section has lost go, and those of sections beyond the last one.
    const bool begins = mAssociation.add(*table);
    const auto lists = [&](uint16_t number) {
        return std::any_of(table->programs.begin(), table->programs.end(),
                           [&](const auto& program) { return program.number == number; });
    };
    for (auto it = mPrograms.begin(); it != mPrograms.end();) {
        const bool stale = begins ? it->second.section > table->lastSection : false;
        const bool gone = it->second.section == table->section && !lists(it->first);
        it = stale || gone ? mPrograms.erase(it) : std::next(it);
    }
    if (mStreamId != table->streamId()) {
        // Another multiplex comes over the same source.
        mStreamId = table->streamId();
        mDescriptions.clear();
        mDescriptionProgress = {};
        mChannels.clear();
        mChannelProgress = {};
        mChannelsOfStream = false;
        mGuideKeys.clear();
        for (auto& [number, program] : mPrograms) program.map.reset();
        mKnown.clear();
    }
    if (table->networkPid) mNetworkPid = *table->networkPid;
    for (const auto& each : table->programs) {
        if (mPrograms.size() >= kMostPrograms && mPrograms.count(each.number) == 0) break;
        Program& program = mPrograms[each.number];
        program.section = table->section;
        if (program.pmtPid != each.pid) program.map.reset();
        program.pmtPid = each.pid;
        filterTable(each.pid);
    }
    mChanges |= kServicesChanged;
    setFilters();
}

void StreamCollector::readMap(uint16_t pid, Bytes section) {
    auto map = programMap(section);
    if (!map || !map->current) return;
    const auto found = mPrograms.find(map->serviceId());
    if (found == mPrograms.end() || found->second.pmtPid != pid) {
        // The association table that names it may be on its way.
        mKnown.erase(mLastPlace);
        return;
    }
    found->second.map = std::move(map);
    found->second.bytes.assign(section.data, section.data + section.size);
    found->second.format.reset();
    mChanges |= kServicesChanged;
    setFilters();
}

void StreamCollector::readDescriptions(Bytes section) {
    auto table = serviceTable(section);
    if (!table || !table->current) return;
    for (ServiceDescription& service : table->services) {
        if (table->actual) {
            if (mDescriptions.size() >= kMostPrograms &&
                mDescriptions.count(service.serviceId) == 0) {
                break;
            }
            mDescriptions[service.serviceId] = std::move(service);
        } else if (mOthers.size() < kMostOthers) {
            const ServiceKey key{table->originalNetworkId, table->streamId(), service.serviceId};
            mOthers[key] = std::move(service);
        }
    }
    if (table->actual) {
        mDescriptionProgress.add(*table);
        mOriginalNetworkId = table->originalNetworkId;
    }
    mChanges |= kServicesChanged;
}

void StreamCollector::readNetwork(Bytes section) {
    auto table = networkTable(section);
    if (!table || !table->current) return;
    const std::pair<bool, uint16_t> key{table->bouquet, table->id()};
    if (mNetworks.size() >= kMostNetworks && mNetworks.count(key) == 0) return;
    size_t sections = 0;
    for (const auto& [other, network] : mNetworks) sections += network.streams.size();
    if (sections >= kMostNetworkSections) return;
    NetworkSections& network = mNetworks[key];
    if (network.progress.add(*table)) network.streams.clear();
    network.actual = table->actual;
    if (!table->name.empty()) network.name = table->name;
    network.streams[table->section] = std::move(table->streams);
    mChanges |= kServicesChanged;
}

void StreamCollector::readApplications(uint16_t pid, Bytes section) {
    auto table = applicationTable(section);
    if (!table || !table->current) return;
    auto& sections = mApplications[pid];
    if (sections.size() >= kMostApplicationSections) sections.clear();
    sections[{table->extension, table->section}] = std::move(table->applications);
    mChanges |= kApplicationsChanged;
}

void StreamCollector::readGuide(Bytes section) {
    using Entry = MasterGuide::Entry;
    const auto guide = masterGuide(section);
    if (!guide || !guide->current) return;
    mAtsc = true;
    for (const Entry& entry : guide->tables) {
        const bool events = entry.type >= Entry::kFirstEvents && entry.type <= Entry::kLastEvents;
        const bool texts =
                entry.type == Entry::kChannelText ||
                (entry.type >= Entry::kFirstEventText && entry.type <= Entry::kLastEventText);
        if (!events && !texts) continue;
        if (mGuidePids.size() >= kMostGuidePids && mGuidePids.count(entry.pid) == 0) continue;
        if (events) {
            mGuidePids[entry.pid] = static_cast<uint16_t>(entry.type - Entry::kFirstEvents);
        } else {
            mGuidePids.emplace(entry.pid, 0);
        }
        filterTable(entry.pid);
    }
}

void StreamCollector::readAtsc(uint16_t pid, Bytes section) {
    switch (section.data[0]) {
        case kMgt:
            readGuide(section);
            break;
        case kTvct:
        case kCvct: {
            auto table = channelTable(section);
            if (!table || !table->current) break;
            // The id may differ from that of the association table.
            const bool same = table->streamId() == mStreamId;
            if (!same && mChannelsOfStream) break;
            mChannelsOfStream = same;
            for (VirtualChannel& each : table->channels) {
                if (each.streamId == table->streamId()) each.streamId = mStreamId;
            }
            mAtsc = true;
            if (mChannelProgress.add(*table)) mChannels.clear();
            mChannels[table->section] = std::move(table->channels);
            mChanges |= kServicesChanged;
            break;
        }
        case kRrt:
            if (const auto region = ratingRegion(section)) {
                mRatings[region->region] = *region;
                mChanges |= kRatingsChanged;
            }
            break;
        case kAtscEit: {
            const auto events = atscEventTable(section, mUtcOffset);
            const auto number = mGuidePids.find(pid);
            if (!events || number == mGuidePids.end()) break;
            if (mEvents.add(mStreamId, *events, number->second)) mChanges |= kEventsChanged;
            break;
        }
        case kEtt:
            if (const auto text = extendedText(section)) {
                if (mEvents.add(*text)) mChanges |= kEventsChanged;
            }
            break;
        case kStt:
            if (const auto time = systemTime(section)) {
                mAtsc = true;
                mTime = time->time;
                // Tables that were read with another offset are read again.
                if (mUtcOffset != time->utcOffset) mKnown.clear();
                mUtcOffset = time->utcOffset;
                mChanges |= kTimeChanged;
            }
            break;
        case kAlert:
            if (const auto message = alert(section, mUtcOffset)) {
                // The number of the sequence changes with the message.
                if (mAlerts.size() >= kMostAlerts) mAlerts.erase(mAlerts.begin());
                mAlerts.push_back(*message);
                mChanges |= kAlertChanged;
            }
            break;
        default:
            break;
    }
}

void StreamCollector::setFilters() {
    std::set<uint16_t> tables{kPatPid, kNitPid, kSdtPid, kEitPid, kTdtPid, kPsipPid, mNetworkPid};
    for (const auto& [pid, number] : mGuidePids) tables.insert(pid);
    std::set<uint16_t> pictures;
    /** Languages by PID. */
    std::map<uint16_t, std::string> teletext;
    std::map<uint16_t, CaptionCarrier> captions;
    for (const auto& [id, program] : mPrograms) {
        tables.insert(program.pmtPid);
        if (!program.map) continue;
        const bool watched = mWatched.count(id) != 0;
        for (const Component& each : program.map->components) {
            if (each.kind == ComponentKind::kApplications) tables.insert(each.pid);
            if (each.kind == ComponentKind::kTeletext && watched) {
                teletext.emplace(each.pid,
                                 each.teletext.empty() ? "" : each.teletext.front().language);
            }
            if (each.kind != ComponentKind::kVideo) continue;
            const auto carrier = carrierOf(each.codec);
            if (watched && carrier) captions.emplace(each.pid, *carrier);
            if (watched || !program.format) pictures.insert(each.pid);
        }
    }
    for (auto it = mTablePids.begin(); it != mTablePids.end();) {
        if (tables.count(*it) != 0) {
            ++it;
            continue;
        }
        mDemux.removeFilter(*it);
        mApplications.erase(*it);
        it = mTablePids.erase(it);
    }
    for (const uint16_t pid : tables) filterTable(pid);

    std::set<uint16_t> wanted = pictures;
    for (const auto& [pid, language] : teletext) wanted.insert(pid);
    for (const uint16_t pid : mPesPids) {
        if (wanted.count(pid) != 0 || mTablePids.count(pid) != 0) continue;
        mDemux.removeFilter(pid);
    }
    for (auto it = mTeletext.begin(); it != mTeletext.end();) {
        it = teletext.count(it->first) == 0 ? mTeletext.erase(it) : std::next(it);
    }
    for (auto it = mCaptions.begin(); it != mCaptions.end();) {
        it = captions.count(it->first) == 0 ? mCaptions.erase(it) : std::next(it);
    }
    for (const auto& [pid, carrier] : captions) {
        auto& decoder = mCaptions[pid];
        if (!decoder) decoder = std::make_unique<CaptionDecoder>(carrier);
    }
    for (const uint16_t pid : wanted) {
        if (mTablePids.count(pid) != 0 || mPesPids.count(pid) != 0) continue;
        const auto text = teletext.find(pid);
        if (text != teletext.end()) {
            mTeletext[pid] = std::make_unique<TeletextDecoder>(text->second);
            mDemux.filterPes(pid, [this, pid](const PesPacket& packet) {
                const auto found = mTeletext.find(pid);
                if (found == mTeletext.end()) return;
                const uint64_t before = found->second->arrivals();
                found->second->push(packet.payload, packet.payloadSize);
                if (found->second->arrivals() != before) mChanges |= kTeletextChanged;
            });
        } else {
            mDemux.filterPes(
                    pid, [this, pid](const PesPacket& packet) { picture(pid, packet); },
                    kPictureBegin);
        }
    }
    mPesPids = wanted;
}

void StreamCollector::picture(uint16_t pid, const PesPacket& packet) {
    const auto captions = mCaptions.find(pid);
    if (captions != mCaptions.end()) {
        CaptionDecoder& decoder = *captions->second;
        const uint64_t before = decoder.changes();
        decoder.push(packet.payload, packet.payloadSize, packet.presentation, packet.decoding);
        if (decoder.changes() != before) mChanges |= kCaptionsChanged;
    }
    bool done = false;
    for (auto& [id, program] : mPrograms) {
        if (!program.map) continue;
        for (const Component& each : program.map->components) {
            if (each.pid != pid || each.kind != ComponentKind::kVideo) continue;
            const auto format = pictureFormat(each.codec, {packet.payload, packet.payloadSize});
            if (!format || program.format == format) continue;
            program.format = format;
            mChanges |= kFormatChanged;
            done = true;
        }
    }
    if (done) setFilters();
}

ServiceKey StreamCollector::keyOf(uint16_t serviceId) const {
    if (mAtsc) {
        for (const auto& [section, channels] : mChannels) {
            for (const VirtualChannel& each : channels) {
                if (each.programNumber == serviceId && each.streamId == mStreamId) {
                    return {0, mStreamId, each.sourceId};
                }
            }
        }
    }
    const ServiceKey key{mOriginalNetworkId, mStreamId, serviceId};
    // Events of this stream may come under other ids, or without a description of the service.
    const auto sent = mGuideKeys.find(serviceId);
    return sent == mGuideKeys.end() || mEvents.has(key) ? key : sent->second;
}

std::vector<uint8_t> StreamCollector::mapSection(uint16_t serviceId) const {
    const auto found = mPrograms.find(serviceId);
    return found == mPrograms.end() ? std::vector<uint8_t>{} : found->second.bytes;
}

void StreamCollector::watch(const std::set<uint16_t>& services) {
    if (mWatched == services) return;
    mWatched = services;
    setFilters();
}

std::vector<const TeletextDecoder*> StreamCollector::teletext(uint16_t serviceId) const {
    std::vector<const TeletextDecoder*> decoders;
    const auto found = mPrograms.find(serviceId);
    if (found == mPrograms.end() || !found->second.map) return decoders;
    for (const Component& each : found->second.map->components) {
        const auto decoder = mTeletext.find(each.pid);
        if (decoder != mTeletext.end()) decoders.push_back(decoder->second.get());
    }
    return decoders;
}

const CaptionDecoder* StreamCollector::captions(uint16_t serviceId) const {
    const auto found = mPrograms.find(serviceId);
    if (found == mPrograms.end() || !found->second.map) return nullptr;
    for (const Component& each : found->second.map->components) {
        const auto decoder = mCaptions.find(each.pid);
        if (decoder != mCaptions.end()) return decoder->second.get();
    }
    return nullptr;
}

const LogicalNumber* StreamCollector::numberOf(uint16_t serviceId, bool hd) const {
    // The network's own list before that of a bouquet, and other networks last; the entry of this
    // stream before one that only has its id.
    const LogicalNumber* best = nullptr;
    int rank = INT_MAX;
    for (const auto& [key, network] : mNetworks) {
        const int own = network.actual ? 0 : key.first ? 1 : 2;
        for (const auto& [section, streams] : network.streams) {
            for (const NetworkStream& stream : streams) {
                if (stream.streamId != mStreamId) continue;
                const bool other = mDescriptionProgress.version != 0xff &&
                                   stream.originalNetworkId != mOriginalNetworkId;
                if (other && !network.actual) continue;
                for (const LogicalNumber& each : stream.numbers) {
                    if (each.serviceId != serviceId || each.hd != hd) continue;
                    const int order = own * 4 + (other ? 2 : 0) + (each.second ? 0 : 1);
                    if (order >= rank) continue;
                    best = &each;
                    rank = order;
                }
            }
        }
    }
    return best;
}

StreamFacts StreamCollector::facts() const {
    StreamFacts facts;
    facts.signal = mSignal;
    facts.locked = mAssociation.version != 0xff;
    facts.atsc = mAtsc;
    facts.streamId = mStreamId;
    facts.originalNetworkId = mOriginalNetworkId;
    facts.others = mOthers;
    facts.time = mTime;
    facts.alerts = mAlerts;
    for (const auto& [number, region] : mRatings) facts.ratings.push_back(region);
    for (const auto& [key, sections] : mNetworks) {
        Network network;
        network.bouquet = key.first;
        network.id = key.second;
        network.actual = sections.actual;
        network.name = sections.name;
        for (const auto& [number, streams] : sections.streams) {
            network.streams.insert(network.streams.end(), streams.begin(), streams.end());
        }
        if (network.actual) {
            facts.networkId = network.id;
            facts.networkName = network.name;
            facts.networkComplete = sections.progress.complete();
            if (mDescriptionProgress.version == 0xff) {
                for (const NetworkStream& stream : network.streams) {
                    if (stream.streamId == mStreamId) {
                        facts.originalNetworkId = stream.originalNetworkId;
                    }
                }
            }
        }
        facts.networks.push_back(std::move(network));
    }
    facts.mapsComplete = mAssociation.complete();
    for (const auto& [id, program] : mPrograms) {
        Service service;
        service.id = id;
        service.pmtPid = program.pmtPid;
        service.format = program.format;
        service.guideKey = keyOf(id);
        const auto description = mDescriptions.find(id);
        if (description != mDescriptions.end()) service.description = description->second;
        for (const auto& [section, channels] : mChannels) {
            for (const VirtualChannel& each : channels) {
                if (each.programNumber == id && each.streamId == mStreamId) service.channel = each;
            }
        }
        if (const LogicalNumber* number = numberOf(id, false)) service.number = *number;
        if (const LogicalNumber* number = numberOf(id, true)) service.hdNumber = *number;
        if (!program.map) {
            facts.mapsComplete = false;
            facts.services[id] = std::move(service);
            continue;
        }
        service.pcrPid = program.map->pcrPid;
        service.mapVersion = program.map->version;
        service.components = program.map->components;
        service.ca = program.map->ca;
        for (const Component& each : service.components) {
            const bool shown =
                    each.kind == ComponentKind::kVideo || each.kind == ComponentKind::kAudio;
            if (shown && mDemux.counters(each.pid).scrambledNow) service.scrambledNow = true;
            const auto applications = mApplications.find(each.pid);
            if (each.kind != ComponentKind::kApplications || applications == mApplications.end()) {
                continue;
            }
            for (const auto& [place, list] : applications->second) {
                service.applications.insert(service.applications.end(), list.begin(), list.end());
            }
        }
        facts.services[id] = std::move(service);
    }
    facts.descriptionsComplete =
            mDescriptionProgress.complete() || (mAtsc && mChannelProgress.complete());
    return facts;
}

}  // namespace qeltvd::stream
