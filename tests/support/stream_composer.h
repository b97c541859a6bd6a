/**
 * Composes transport streams for tests: a multiplex of DVB and one of ATSC, each of two services
 * with every table that the television reads, pictures and sound that players decode, teletext and
 * captions. Their contents stand in the constants below.
 */
#ifndef TESTS_SUPPORT_STREAM_COMPOSER_H
#define TESTS_SUPPORT_STREAM_COMPOSER_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "TableWriter.h"

namespace composed {

using Octets = std::vector<uint8_t>;

/** Appends what tables are made of. */
class Writer {
  public:
    Writer& u8(uint64_t value) { return number(value, 1); }
    Writer& u16(uint64_t value) { return number(value, 2); }
    Writer& u24(uint64_t value) { return number(value, 3); }
    Writer& u32(uint64_t value) { return number(value, 4); }
    Writer& u40(uint64_t value) { return number(value, 5); }
    Writer& bytes(const Octets& more);
    Writer& text(const std::string& more);
    /** A length of 8 bits and the bytes. */
    Writer& counted(const Octets& more);
    Writer& counted(const std::string& more);
    /** A length of 12 bits below four set bits, and the bytes. */
    Writer& list(const Octets& more);
    const Octets& done() const { return mBytes; }
    operator Octets() const { return mBytes; }

  private:
    Writer& number(uint64_t value, size_t size);
    Octets mBytes;
};

Octets descriptor(uint8_t tag, const Octets& body);
/** A section of the long form with its checksum; one that is not current holds later. */
Octets section(uint8_t table, uint16_t extension, const Octets& body, uint8_t version = 0,
               uint8_t number = 0, uint8_t last = 0, bool current = true);
/** The same of the short form. */
Octets shortSection(uint8_t table, const Octets& body);
/** A multiple string structure of ATSC with one uncompressed string. */
Octets atscString(const std::string& language, const std::string& text);

/** What the header of a page of teletext says. */
struct TeletextHeader {
    uint16_t page = 0x100;
    uint16_t subpage = 0;
    bool erase = true;
    bool subtitle = false;
    /** Suppresses the header itself. */
    bool headless = false;
    /** C12 in the lowest bit; 4 is German. */
    uint8_t national = 4;
    /** Whether the headers of all magazines end a page. */
    bool serial = true;
    std::string text = "K}stentext";
};
/** A header, a row of a page, or any packet of its magazine with 40 bytes as they are sent. */
Octets teletextHeader(const TeletextHeader& header);
Octets teletextRow(uint16_t page, uint8_t row, const std::string& text);
Octets teletextPacket(uint16_t page, uint8_t number, const Octets& bytes);
/** Four bits with their protection. */
uint8_t hamming(uint8_t nibble);
/** What a packet of the elementary stream carries. */
Octets teletextPayload(const std::vector<Octets>& units);

/** An access unit of a video stream. */
struct Picture {
    Octets bytes;
    bool randomAccess = false;
};

/** Packets of sections and elementary streams, with continuity counters by PID. */
class Packets {
  public:
    void addSection(uint16_t pid, const Octets& section);
    void addPes(uint16_t pid, uint8_t streamId, uint64_t presentation, const Octets& payload);
    /** Adds an access unit of video, with a clock reference in ticks of 90 kHz. */
    void addPicture(uint16_t pid, uint64_t presentation, uint64_t reference,
                    const Picture& picture);
    /** Takes a whole packet over, with another PID and the counter that fits. */
    void addPacket(const uint8_t* packet, uint16_t pid);
    void addNull(size_t count);
    Octets& bytes() { return mBytes; }
    size_t count() const { return mBytes.size() / 188; }

  private:
    void add(uint16_t pid, const Octets& payload, bool padded);
    Octets mBytes;
    std::map<uint16_t, uint8_t> mCounters;
    std::map<uint16_t, qeltvd::stream::PacketWriter> mWriters;
};

/** Sunday 2026-03-29 00:30 UTC, half an hour before the clocks of Europe change. */
constexpr int64_t kTime = 1774744200;
constexpr int64_t kChange = 1774746000;

// DVB: network 0x3085, stream 0x0441, services with names that need a character table.
constexpr uint16_t kNetwork = 0x3085, kStream = 0x0441;
constexpr uint16_t kFirstService = 0x1001, kSecondService = 0x1002;
constexpr uint16_t kFirstPmt = 0x0100, kFirstVideo = 0x0101, kFirstAudio = 0x0102,
                   kFirstDescription = 0x0103, kFirstTeletext = 0x0104, kFirstSubtitles = 0x0105,
                   kFirstApplications = 0x0106;
constexpr uint16_t kSecondPmt = 0x0200, kSecondAudio = 0x0202;
constexpr const char* kFirstName = "Küstenfunk TV";
constexpr const char* kSecondName = "Радио Волна";
constexpr const char* kNetworkName = "Testnetz";
constexpr const char* kUrl = "http://hbbtv.example/app/index.html";
/** The text of the page of subtitles, and of one that comes in the second half only. */
constexpr const char* kSubtitleText = "Untertitel";
constexpr uint16_t kSubtitlePage = 0x888, kLatePage = 0x150;
constexpr uint16_t kFirstNumber = 7, kFirstHdNumber = 107, kSecondNumber = 701;

// ATSC: stream 0x0801, channels 8-1 and 8-2.
constexpr uint16_t kAtscStream = 0x0801, kAtscFirst = 3, kAtscSecond = 4;
constexpr uint16_t kAtscFirstSource = 11, kAtscSecondSource = 12;
constexpr const char* kCaption = "HELLO WORLD";

struct Options {
    /** When the stream begins. */
    int64_t time = kTime;
    uint32_t seconds = 4;
    /** The first clock reference, in ticks of 90 kHz; near 2^33 it wraps. */
    uint64_t clock = 900000;
    /** In the middle the first service gets a second sound track, and its map a new version. */
    bool changeMap = false;
    /**
     * Returns the picture of the first service for a frame of 1/25 s, in decoding order; null for
     * the black picture of EmptyStream.
     */
    std::function<Picture(uint32_t frame)> picture;
    /** Stream type of these pictures, 0x02 for MPEG-2, 0x1b for H.264. */
    uint8_t pictureType = 0x02;
    /** Whether local offsets are sent (TOT); they change at kChange. */
    bool offsets = true;
    /** Null packets per frame of 1/25 s, which make the stream as fast as a real one. */
    size_t nulls = 0;
};

Octets dvb(const Options& options = {});
Octets atsc(const Options& options = {});

/** @throws std::runtime_error if the file cannot be written */
void writeFile(const std::string& path, const Octets& bytes);

}  // namespace composed

#endif  // TESTS_SUPPORT_STREAM_COMPOSER_H
