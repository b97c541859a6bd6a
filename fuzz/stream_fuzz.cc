// Streams of broadcasters: any bytes as a transport stream, as sections whose checksums are made
// right, as teletext and as pictures. The first byte says which.

#include <bitstream/mpeg/psi.h>

#include <cstdlib>
#include <set>

#include "CaptionDecoder.h"
#include "PacketAligner.h"
#include "ServiceStream.h"
#include "StreamCollector.h"
#include "TeletextDecoder.h"
#include "stream_composer.h"

using namespace qeltvd::stream;

namespace {

void checkText(const std::string& text) {
    for (size_t i = 0; i < text.size();) {
        const auto c = static_cast<uint8_t>(text[i]);
        const size_t size = c < 0x80 ? 1 : c >= 0xf0 ? 4 : c >= 0xe0 ? 3 : c >= 0xc2 ? 2 : 0;
        if (size == 0 || i + size > text.size()) abort();
        for (size_t j = 1; j < size; ++j) {
            if ((static_cast<uint8_t>(text[i + j]) & 0xc0) != 0x80) abort();
        }
        i += size;
    }
}

void readText(const TeletextDecoder& teletext) {
    // Each takes a decoder of the library.
    size_t most = 8;
    for (const uint16_t page : teletext.pages()) {
        for (const uint16_t code : teletext.subpages(page)) {
            teletext.subpageNumber(page, code);
            if (most == 0) break;
            --most;
            for (const std::string& row : teletext.text(page, code)) checkText(row);
        }
        teletext.isAbsent(page);
    }
    for (const TopPage& each : teletext.top()) checkText(each.title);
}

void receive(std::vector<uint8_t> packets) {
    StreamCollector collector;
    collector.watch({1, 2, 3, 4, composed::kFirstService, composed::kSecondService});
    const Batch batch{packets.data(), packets.size() / kPacketSize, false};
    collector.push(batch);
    const StreamFacts facts = collector.facts();
    if (collector.events().size() > EventStore::kLimit) abort();
    for (const auto& [id, service] : facts.services) {
        checkText(service.name());
        for (const Application& each : service.applications) checkText(each.name + each.url);
        for (const Event& event : collector.events().events(collector.keyOf(id))) {
            if (event.start < 0) abort();
            for (const EventText& text : event.texts) {
                checkText(text.title + text.summary + text.details + text.language);
            }
        }
        std::vector<uint8_t> output;
        ServiceStream stream(facts.streamId, facts.originalNetworkId, service,
                             collector.mapSection(id));
        stream.push(batch, &output);
        if (output.size() % kPacketSize != 0) abort();
        for (size_t at = 0; at < output.size(); at += kPacketSize) {
            if (output[at] != kSyncByte) abort();
        }
        for (const TeletextDecoder* teletext : collector.teletext(id)) readText(*teletext);
        if (const CaptionDecoder* captions = collector.captions(id)) captions->rows(1);
    }
    for (const Alert& each : facts.alerts) checkText(each.text + each.nature + each.code);
    for (const Network& each : facts.networks) checkText(each.name);
}

/** Sections behind their PID and length, 16 bits each. */
void receiveSections(const uint8_t* data, size_t size) {
    composed::Packets packets;
    while (size >= 4) {
        const auto pid = static_cast<uint16_t>((data[0] << 8 | data[1]) & 0x1fff);
        const size_t length =
                std::min<size_t>(static_cast<size_t>(data[2] << 8 | data[3]), size - 4);
        data += 4;
        size -= 4;
        composed::Octets section(data, data + length);
        data += length;
        size -= length;
        if (length < 12 || length > 4096) continue;
        psi_set_length(section.data(), static_cast<uint16_t>(length - 3));
        psi_set_crc(section.data());
        packets.addSection(pid, section);
    }
    receive(packets.bytes());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const uint8_t kind = data[0] % 4;
    ++data;
    --size;
    switch (kind) {
        case 0: {
            PacketAligner aligner;
            std::vector<uint8_t> packets;
            // In two pieces, which cut a packet.
            aligner.push(data, size / 3, &packets);
            aligner.push(data + size / 3, size - size / 3, &packets);
            aligner.finish(&packets);
            receive(std::move(packets));
            break;
        }
        case 1:
            receiveSections(data, size);
            break;
        case 2: {
            TeletextDecoder teletext;
            for (int i = 0; i < 2; ++i) teletext.push(data, size);
            readText(teletext);
            break;
        }
        default: {
            pictureFormat(Codec::kMpeg2Video, {data, size});
            pictureFormat(Codec::kH264, {data, size});
            pictureFormat(Codec::kH265, {data, size});
            CaptionDecoder captions(static_cast<CaptionCarrier>(data[0] % 3));
            captions.push(data, size, std::nullopt, std::nullopt);
            captions.push(data, size, data[0], std::nullopt);
            captions.interrupt();
            for (const std::string& row : captions.rows(1)) checkText(row);
            break;
        }
    }
    return 0;
}
