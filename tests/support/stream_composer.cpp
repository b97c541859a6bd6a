#include "stream_composer.h"

#include <bitstream/dvb/si.h>
#include <bitstream/mpeg/pes.h>
#include <bitstream/mpeg/psi.h>
#include <bitstream/mpeg/ts.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "EmptyStream.h"
#include "StreamTime.h"

namespace composed {

namespace {

constexpr int64_t kGpsEpoch = 315964800, kLeapSeconds = 18;
constexpr uint32_t kFrames = 25;

uint64_t digits(int64_t seconds) {
    return dvb_time_encode_duration(static_cast<unsigned>(seconds));
}

/** UTF-8 behind the byte that chooses it. */
std::string utf8(const std::string& text) {
    return "\x15" + text;
}

Octets languageDescriptor(const std::string& language, uint8_t type) {
    return descriptor(0x0a, Writer().text(language).u8(type));
}

Octets shortEvent(const std::string& language, const std::string& title,
                  const std::string& summary) {
    return descriptor(0x4d, Writer().text(language).counted(title).counted(summary));
}

Octets event(uint16_t id, int64_t start, int64_t seconds, uint8_t running,
             const Octets& descriptors) {
    Writer writer;
    writer.u16(id).u40(qeltvd::stream::dvbOfTime(start)).u24(digits(seconds));
    writer.u16(static_cast<uint64_t>(running) << 13 | descriptors.size()).bytes(descriptors);
    return writer;
}

Octets eit(uint8_t table, uint16_t service, const Octets& events, uint8_t number, uint8_t last) {
    Writer body;
    body.u16(kStream).u16(kNetwork).u8(last).u8(table >= 0x50 ? 0x50 : table).bytes(events);
    return section(table, service, body, 0, number, last);
}

/** The first event of the first service, with every descriptor that the television reads. */
Octets richDescriptors() {
    Writer all;
    // "Café" in the table without a name: an accent before its letter.
    all.bytes(shortEvent("deu", "Nachrichten im Caf\xc2\x65", "Das Wetter\x8aund mehr"));
    all.bytes(shortEvent("eng", "News at the caf\xc2\x65", "The weather"));
    const Octets items = Writer().counted(utf8("Regie"))
                                 .counted(utf8("Änne Öhm"))
                                 .counted("")
                                 .counted(" und Co");
    all.bytes(descriptor(
            0x4e, Writer().u8(0x01).text("deu").counted(items).counted(utf8("Erster Teil, "))));
    all.bytes(descriptor(0x4e, Writer().u8(0x11).text("deu").u8(0).counted("zweiter Teil €")));
    all.bytes(descriptor(0x50, Writer().u8(0xf1).u8(0x03).u8(1).text("deu").text("16:9")));
    all.bytes(descriptor(0x54, Writer().u8(0x20).u8(0)));
    all.bytes(descriptor(0x55, Writer().text("DEU").u8(9)));
    all.bytes(descriptor(0x76,
                         Writer().u8(0x01 << 2).counted("/news/1").u8(0x02 << 2).counted("/news")));
    return all;
}

void addDvbTables(const Options& options, bool changed, Packets* packets) {
    packets->addSection(0x00, section(0x00, kStream,
                                      Writer().u16(0)
                                              .u16(0xe010)
                                              .u16(kFirstService)
                                              .u16(0xe000 | kFirstPmt)
                                              .u16(kSecondService)
                                              .u16(0xe000 | kSecondPmt)));
    Writer first;
    first.u16(0xe000 | kFirstVideo).list({});
    first.u8(options.pictureType).u16(0xe000 | kFirstVideo).list(descriptor(0x52, {1}));
    first.u8(0x03).u16(0xe000 | kFirstAudio).list(languageDescriptor("deu", 0));
    if (changed) first.u8(0x03).u16(0xe000 | kFirstDescription).list(languageDescriptor("eng", 3));
    const Octets pages =
            Writer().text("deu").u8(0x01 << 3 | 1).u8(0x00).text("deu").u8(0x05 << 3 | 0).u8(0x88);
    first.u8(0x06).u16(0xe000 | kFirstTeletext).list(descriptor(0x56, pages));
    const Octets subtitles =
            Writer().text("deu").u8(0x10).u16(1).u16(2).text("deu").u8(0x20).u16(3).u16(4);
    first.u8(0x06).u16(0xe000 | kFirstSubtitles).list(descriptor(0x59, subtitles));
    first.u8(0x05).u16(0xe000 | kFirstApplications).list(descriptor(0x6f, {0x00, 0x10, 0xe1}));
    packets->addSection(kFirstPmt, section(0x02, kFirstService, first, changed ? 1 : 0));
    Writer second;
    second.u16(0xe000 | kSecondAudio).list({});
    second.u8(0x03).u16(0xe000 | kSecondAudio).list(languageDescriptor("rus", 0));
    packets->addSection(kSecondPmt, section(0x02, kSecondService, second));

    // The second name is in ISO 8859-5.
    const std::string volna = "\x01\xc0\xd0\xd4\xd8\xde \xb2\xde\xdb\xdd\xd0";
    const Octets firstName = descriptor(
            0x48,
            Writer().u8(0x01).counted("K\xc8\x75stenprogramme").counted("K\xc8\x75stenfunk TV"));
    const Octets secondName = descriptor(0x48, Writer().u8(0x02).counted("").counted(volna));
    packets->addSection(0x11, section(0x42, kStream,
                                      Writer().u16(kNetwork)
                                              .u8(0xff)
                                              .u16(kFirstService)
                                              .u8(0xff)
                                              .u16(0x8000 | firstName.size())
                                              .bytes(firstName)
                                              .u16(kSecondService)
                                              .u8(0xff)
                                              .u16(0x8000 | secondName.size())
                                              .bytes(secondName)));
    const Octets other = descriptor(0x48, Writer().u8(0x19).counted("P").counted("Elsewhere HD"));
    packets->addSection(0x11, section(0x46, 0x0442,
                                      Writer().u16(kNetwork)
                                              .u8(0xff)
                                              .u16(0x2001)
                                              .u8(0xfd)
                                              .u16(0x9000 | other.size())
                                              .bytes(other)));
    Writer numbers;
    numbers.bytes(descriptor(0x41, Writer().u16(kFirstService).u8(1).u16(kSecondService).u8(2)));
    numbers.bytes(descriptor(0x5a, Writer().u32(50600000).u8(0x1f).u8(0x80).u8(0).u32(0xffffffff)));
    numbers.bytes(descriptor(0x5f, Writer().u32(0x28)));
    numbers.bytes(descriptor(0x83, Writer().u16(kFirstService)
                                           .u16(0xfc00 | kFirstNumber)
                                           .u16(kSecondService)
                                           .u16(0x7c00 | kSecondNumber)));
    numbers.bytes(descriptor(0x88, Writer().u16(kFirstService).u16(0xfc00 | kFirstHdNumber)));
    const Octets streams = Writer().u16(kStream).u16(kNetwork).list(numbers);
    packets->addSection(
            0x10,
            section(0x40, kNetwork,
                    Writer().list(descriptor(0x40, Writer().text(kNetworkName))).list(streams)));
    packets->addSection(
            0x11, section(0x4a, 0x0077,
                          Writer().list(descriptor(0x47, Writer().text("Bouquet"))).list({})));

    const int64_t now = options.time;
    const int64_t begin = now - now % 1800;
    const Octets present = event(100, begin, 1800, 4, richDescriptors());
    const Octets following = event(101, begin + 1800, 3600, 1, shortEvent("deu", "Film", ""));
    packets->addSection(0x12, eit(0x4e, kFirstService, present, 0, 1));
    packets->addSection(0x12, eit(0x4e, kFirstService, following, 1, 1));
    // The schedule has the same events, one later, and one without a time.
    Writer schedule;
    schedule.bytes(present).bytes(following);
    schedule.bytes(event(102, begin + 9000, 1200, 1, shortEvent("deu", utf8("Spät"), "")));
    Octets undefined = event(103, begin, 60, 0, shortEvent("deu", "Never", ""));
    std::fill(undefined.begin() + 2, undefined.begin() + 7, uint8_t{0xff});
    schedule.bytes(undefined);
    packets->addSection(0x12, eit(0x50, kFirstService, schedule, 0, 0));
    packets->addSection(0x12, eit(0x4e, kSecondService,
                                  event(200, begin, 7200, 4,
                                        shortEvent("rus", "\x01\xbc\xe3\xd7\xeb\xda\xd0", "")),
                                  0, 1));

    Octets page = descriptor(
            0x00, Writer().counted(Writer().u16(0).u8(1).u8(1).u8(1)).u8(0xff).u8(1).u8(1));
    const Octets name = descriptor(0x01, Writer().text("deu").counted("Startleiste"));
    const Octets transport =
            descriptor(0x02, Writer().u16(3).u8(1).counted("http://hbbtv.example/").u8(0));
    const Octets location = descriptor(0x15, Writer().text("app/index.html"));
    page.insert(page.end(), name.begin(), name.end());
    page.insert(page.end(), transport.begin(), transport.end());
    page.insert(page.end(), location.begin(), location.end());
    const Octets application = Writer().u32(0x19).u16(1).u8(1).list(page);
    packets->addSection(kFirstApplications,
                        section(0x74, 0x0010, Writer().list({}).list(application)));
}

void addDvbTime(int64_t time, bool offsets, Packets* packets) {
    const uint64_t utc = qeltvd::stream::dvbOfTime(time);
    Octets tdt = Writer().u8(0x70).u16(0x7005).u40(utc);
    packets->addSection(0x14, tdt);
    if (!offsets) return;
    const Octets offset = descriptor(0x58, Writer().text("DEU")
                                                   .u8(0x02)
                                                   .u16(0x0100)
                                                   .u40(qeltvd::stream::dvbOfTime(kChange))
                                                   .u16(0x0200));
    const Octets body = Writer().u40(utc).list(offset);
    packets->addSection(0x14, shortSection(0x73, body));
}

// Teletext

uint8_t odd(uint8_t character) {
    return static_cast<uint8_t>(__builtin_parity(character) != 0 ? character : character | 0x80);
}

Octets teletextText(const std::string& text) {
    Octets bytes;
    for (const char c : text) bytes.push_back(odd(static_cast<uint8_t>(c)));
    return bytes;
}

/** A page number in the tables of TOP; kind 2 for a page of titles. */
Octets topLink(uint16_t page, uint8_t kind) {
    Octets bytes{hamming(static_cast<uint8_t>(page >> 8)), hamming(static_cast<uint8_t>(page >> 4)),
                 hamming(static_cast<uint8_t>(page))};
    bytes.resize(7, hamming(0));
    bytes.push_back(hamming(kind));
    return bytes;
}

Octets topTitle(uint16_t page, std::string title) {
    title.resize(12, ' ');
    Octets bytes = topLink(page, 0);
    const Octets text = teletextText(title);
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

/** The table of TOP: two blocks, a group, and which pages there are. */
void addTop(std::vector<Octets>* units) {
    constexpr uint16_t kTable = 0x1f0, kTitles = 0x1f1;
    constexpr uint8_t kBlock = 4, kGroup = 6, kNormal = 8, kSubpages = 9, kSubtitle = 1;
    std::map<size_t, uint8_t> codes{{100, kBlock},   {101, kSubpages}, {110, kGroup},
                                    {111, kNormal},  {150, kNormal},   {200, kBlock},
                                    {888, kSubtitle}};
    units->push_back(teletextHeader({kTable}));
    for (uint8_t row = 1; row <= 20; ++row) {
        Octets table;
        for (size_t i = 0; i < 40; ++i) table.push_back(hamming(codes[60u + row * 40u + i]));
        units->push_back(teletextPacket(kTable, row, table));
    }
    Octets links = topLink(kTitles, 2);
    links.resize(40, hamming(0x0f));
    units->push_back(teletextPacket(kTable, 21, links));
    units->push_back(teletextHeader({kTitles}));
    Octets titles = topTitle(0x100, "K}ste");
    for (const uint8_t byte : topTitle(0x110, "Wetter")) titles.push_back(byte);
    units->push_back(teletextPacket(kTitles, 1, titles));
}

void addTeletext(uint64_t presentation, uint32_t frame, const Options& options, Packets* packets) {
    const int64_t time = (options.time + frame / kFrames) % 86400;
    char clock[64];
    snprintf(clock, sizeof(clock), "%-24s%02d:%02d:%02d", "K}stentext",
             static_cast<int>(time / 3600), static_cast<int>(time / 60 % 60),
             static_cast<int>(time % 60));
    std::vector<Octets> units;
    const auto header = [&](uint16_t page, uint16_t subpage) {
        TeletextHeader header{page, subpage};
        header.text = clock;
        units.push_back(teletextHeader(header));
    };
    header(0x100, 0);
    units.push_back(teletextRow(0x100, 1, "Startseite"));
    // A subpage a second.
    if (frame / kFrames % 2 == 0) {
        header(0x101, 1);
        units.push_back(teletextRow(0x101, 1, "Erste Unterseite"));
    } else {
        header(0x101, 2);
        units.push_back(teletextRow(0x101, 1, "Zweite Unterseite"));
    }
    if (frame >= options.seconds * kFrames / 2) {
        header(kLatePage, 0);
        units.push_back(teletextRow(kLatePage, 24, "Sp{t"));
    }
    units.push_back(teletextHeader({kSubtitlePage, 0, true, true, true}));
    units.push_back(
            teletextRow(kSubtitlePage, 22, std::string("\x0b\x0b") + kSubtitleText + "\x0a"));
    addTop(&units);
    units.push_back(teletextHeader({0x8ff}));
    units.push_back(teletextHeader({0x1ff}));
    packets->addPes(kFirstTeletext, PES_STREAM_ID_PRIVATE_1, presentation, teletextPayload(units));
}

// ATSC

uint32_t gps(int64_t time) {
    return static_cast<uint32_t>(time - kGpsEpoch + kLeapSeconds);
}

Octets wide(const std::string& name) {
    Octets bytes(14);
    for (size_t i = 0; i < name.size() && i < 7; ++i)
        bytes[2 * i + 1] = static_cast<uint8_t>(name[i]);
    return bytes;
}

Octets atscChannel(const std::string& name, uint16_t minor, uint16_t program, uint16_t source) {
    const Octets longName = descriptor(0xa0, atscString("eng", name + " Television"));
    Writer writer;
    writer.bytes(wide(name))
            .u24(0xf00000 | 8 << 10 | minor)
            .u8(4)
            .u32(0)
            .u16(kAtscStream)
            .u16(program);
    writer.u16(0x0dc2).u16(source).u16(0xfc00 | longName.size()).bytes(longName);
    return writer;
}

void addAtscTables(const Options& options, Packets* packets) {
    packets->addSection(0x00, section(0x00, kAtscStream,
                                      Writer().u16(kAtscFirst)
                                              .u16(0xe000 | kFirstPmt)
                                              .u16(kAtscSecond)
                                              .u16(0xe000 | kSecondPmt)));
    const Octets captions = descriptor(
            0x86,
            Writer().u8(0xc2).text("eng").u8(0x7e).u16(0x3fff).text("eng").u8(0xc1).u16(0xbfff));
    Writer first;
    first.u16(0xe000 | kFirstVideo).list({});
    first.u8(0x02).u16(0xe000 | kFirstVideo).list(captions);
    const Octets ac3 =
            Writer().u8(0x08).u8(0x30).u8(0x0e).u8(0xff).u8(0x1f).u8(0).u8(0x80).text("eng");
    first.u8(0x81).u16(0xe000 | kFirstAudio).list(descriptor(0x81, ac3));
    packets->addSection(kFirstPmt, section(0x02, kAtscFirst, first));
    Writer second;
    second.u16(0xe000 | kSecondAudio).list({});
    second.u8(0x03).u16(0xe000 | kSecondAudio).list(languageDescriptor("spa", 0));
    packets->addSection(kSecondPmt, section(0x02, kAtscSecond, second));

    constexpr uint16_t kPsip = 0x1ffb, kEvents = 0x1d00, kTexts = 0x1e00;
    Writer guide;
    guide.u8(0).u16(4);
    const auto entry = [&](uint16_t type, uint16_t pid) {
        guide.u16(type).u16(0xe000 | pid).u8(0xe0).u32(100).list({});
    };
    entry(0x0000, kPsip);
    entry(0x0301, kPsip);
    entry(0x0100, kEvents);
    entry(0x0200, kTexts);
    guide.list({});
    packets->addSection(kPsip, section(0xc7, 0, guide));
    Writer channels;
    channels.u8(0).u8(2);
    channels.bytes(atscChannel("WABC-D", 1, kAtscFirst, kAtscFirstSource));
    channels.bytes(atscChannel("RADIO", 2, kAtscSecond, kAtscSecondSource)).u16(0xfc00);
    packets->addSection(kPsip, section(0xc8, kAtscStream, channels));
    const int64_t begin = options.time - options.time % 1800;
    const Octets advisory = descriptor(
            0x87, Writer().u8(0xc1).u8(1).u8(1).u8(0).u8(0xf4).counted(atscString("eng", "TV-PG")));
    Writer events;
    events.u8(0)
            .u8(1)
            .u16(0xc000 | 7)
            .u32(gps(begin))
            .u24(0xd00000 | 1800)
            .counted(atscString("eng", "Evening Report"))
            .list(advisory);
    packets->addSection(kEvents, section(0xcb, kAtscFirstSource, events));
    const uint32_t textId = static_cast<uint32_t>(kAtscFirstSource) << 16 | 7 << 2 | 2;
    packets->addSection(
            kTexts,
            section(0xcc, 1, Writer().u8(0).u32(textId).bytes(atscString("eng", "All the news."))));
    Writer ratings;
    ratings.u8(0).counted(atscString("eng", "Region Five")).u8(1);
    ratings.counted(atscString("eng", "Age")).u8(0xf2);
    for (const char* value : {"A", "B"}) {
        ratings.counted(atscString("eng", value))
                .counted(atscString("eng", std::string("Value ") + value));
    }
    ratings.u16(0xfc00);
    packets->addSection(kPsip, section(0xca, 0xff05, ratings));
    Writer alert;
    alert.u8(0).u16(99).text("EAS").counted("TOR").counted(atscString("eng", "Tornado Warning"));
    alert.u8(30).u32(0).u16(15).u16(0xfff0 | 11).u16(0).u16(0xfc00 | 8).u16(0xfc00 | 1).u16(0);
    const Octets message = atscString("eng", "Take cover now.");
    alert.u16(message.size()).bytes(message).u8(1).u8(6).u16(0x1c00 | 37).u8(0).u16(0xfc00);
    packets->addSection(kPsip, section(0xd8, 0, alert, 5));
}

void addAtscTime(int64_t time, Packets* packets) {
    packets->addSection(
            0x1ffb, section(0xcd, 0, Writer().u8(0).u32(gps(time)).u8(kLeapSeconds).u16(0xe000)));
}

/** User data of a picture with one pair of bytes for the first field. */
Octets captionData(uint8_t first, uint8_t second) {
    return {0, 0, 1, 0xb2, 'G', 'A', '9', '4', 3, 0x41, 0xff, 0xfc, odd(first), odd(second), 0xff};
}

/** The pairs of a caption that pops on: cleared, loaded, shown. */
std::vector<std::pair<uint8_t, uint8_t>> captionPairs() {
    std::vector<std::pair<uint8_t, uint8_t>> pairs{{0x14, 0x20}, {0x14, 0x2e}, {0x14, 0x70}};
    const std::string text = kCaption;
    for (size_t i = 0; i < text.size(); i += 2) {
        pairs.emplace_back(text[i], i + 1 < text.size() ? text[i + 1] : 0);
    }
    pairs.emplace_back(0x14, 0x2f);
    return pairs;
}

/** Pictures and sound of one service, under PIDs and on a clock of its own. */
class Programme {
  public:
    Programme(uint16_t video, uint16_t audio, const Options& options)
            : mStream(1, 1, 1, "", "", video == 0, ""),
              mVideo(video),
              mAudio(audio),
              mShift(options.clock),
              mPicture(video != 0 ? options.picture : nullptr) {}

    /** @param captions goes in front of the picture */
    void frame(Packets* packets, const Octets& captions = {}) {
        constexpr uint16_t kVideo = 0x101, kAudio = 0x102;
        Octets bytes;
        mStream.frame(&bytes);
        for (size_t at = 0; at < bytes.size(); at += TS_SIZE) {
            uint8_t* packet = bytes.data() + at;
            const uint16_t pid = ts_get_pid(packet);
            if (pid != kVideo && pid != kAudio) continue;
            if (pid == kVideo && mPicture) {
                if (ts_get_unitstart(packet)) addPicture(packet, packets);
                continue;
            }
            const bool reference =
                    ts_has_adaptation(packet) && packet[4] > 6 && tsaf_has_pcr(packet);
            if (reference) tsaf_set_pcr(packet, shifted(tsaf_get_pcr(packet)));
            uint8_t* payload = ts_payload(packet);
            if (ts_get_unitstart(packet)) {
                pes_set_pts(payload, shifted(pes_get_pts(payload)));
                if (pid == kVideo && !captions.empty()) {
                    // A packet of its own carries the captions before the picture.
                    packets->addPes(mVideo, PES_STREAM_ID_VIDEO_MPEG, pes_get_pts(payload),
                                    captions);
                }
            }
            packets->addPacket(packet, pid == kVideo ? mVideo : mAudio);
        }
    }

  private:
    /** Replaces the black picture that begins with a packet, which has a clock reference. */
    void addPicture(uint8_t* packet, Packets* packets) {
        packets->addPicture(mVideo, shifted(pes_get_pts(ts_payload(packet))),
                            shifted(tsaf_get_pcr(packet)), mPicture(mFrame++));
    }
    uint64_t shifted(uint64_t time) const { return (time + mShift) % (uint64_t{1} << 33); }
    qeltvd::stream::EmptyStream mStream;
    const uint16_t mVideo, mAudio;
    const uint64_t mShift;
    const std::function<Picture(uint32_t)> mPicture;
    uint32_t mFrame = 0;
};

}  // namespace

Writer& Writer::number(uint64_t value, size_t size) {
    for (size_t i = size; i-- > 0;) mBytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    return *this;
}

Writer& Writer::bytes(const Octets& more) {
    mBytes.insert(mBytes.end(), more.begin(), more.end());
    return *this;
}

Writer& Writer::text(const std::string& more) {
    mBytes.insert(mBytes.end(), more.begin(), more.end());
    return *this;
}

Writer& Writer::counted(const Octets& more) {
    return u8(more.size()).bytes(more);
}

Writer& Writer::counted(const std::string& more) {
    return u8(more.size()).text(more);
}

Writer& Writer::list(const Octets& more) {
    return u16(0xf000 | more.size()).bytes(more);
}

uint8_t hamming(uint8_t nibble) {
    constexpr uint8_t kCodes[] = {0x15, 0x02, 0x49, 0x5e, 0x64, 0x73, 0x38, 0x2f,
                                  0xd0, 0xc7, 0x8c, 0x9b, 0xa1, 0xb6, 0xfd, 0xea};
    return kCodes[nibble & 0x0f];
}

Octets teletextPacket(uint16_t page, uint8_t number, const Octets& bytes) {
    const uint8_t magazine = page >> 8 & 7;
    // The bits of a data unit stand in the order of the broadcast.
    Octets unit{0x02, 0x2c, static_cast<uint8_t>(0xe0 | (7 + number % 10)), 0xe4};
    Octets line{hamming(static_cast<uint8_t>(magazine | (number & 1) << 3)),
                hamming(static_cast<uint8_t>(number >> 1))};
    line.insert(line.end(), bytes.begin(), bytes.end());
    line.resize(42, odd(' '));
    for (const uint8_t byte : line) {
        uint8_t reversed = 0;
        for (int bit = 0; bit < 8; ++bit) {
            reversed = static_cast<uint8_t>(reversed | (byte >> bit & 1) << (7 - bit));
        }
        unit.push_back(reversed);
    }
    return unit;
}

Octets teletextRow(uint16_t page, uint8_t row, const std::string& text) {
    return teletextPacket(page, row, teletextText(text));
}

Octets teletextHeader(const TeletextHeader& header) {
    const uint16_t page = header.page, subpage = header.subpage;
    Octets bytes{hamming(static_cast<uint8_t>(page)),
                 hamming(static_cast<uint8_t>(page >> 4)),
                 hamming(static_cast<uint8_t>(subpage)),
                 hamming(static_cast<uint8_t>((subpage >> 4 & 7) | (header.erase ? 8 : 0))),
                 hamming(static_cast<uint8_t>(subpage >> 8)),
                 hamming(static_cast<uint8_t>((subpage >> 12 & 3) | (header.subtitle ? 8 : 0))),
                 hamming(header.headless ? 1 : 0),
                 hamming(static_cast<uint8_t>((header.serial ? 1 : 0) | header.national << 1))};
    const Octets text = teletextText(header.text);
    bytes.insert(bytes.end(), text.begin(), text.end());
    return teletextPacket(page, 0, bytes);
}

Octets teletextPayload(const std::vector<Octets>& units) {
    Octets payload{0x10};
    for (const Octets& unit : units) payload.insert(payload.end(), unit.begin(), unit.end());
    return payload;
}

Octets descriptor(uint8_t tag, const Octets& body) {
    return Writer().u8(tag).counted(body);
}

Octets section(uint8_t table, uint16_t extension, const Octets& body, uint8_t version,
               uint8_t number, uint8_t last, bool current) {
    Octets bytes(PSI_HEADER_SIZE_SYNTAX1);
    psi_init(bytes.data(), true);
    psi_set_tableid(bytes.data(), table);
    psi_set_tableidext(bytes.data(), extension);
    psi_set_version(bytes.data(), version);
    if (current) psi_set_current(bytes.data());
    psi_set_section(bytes.data(), number);
    psi_set_lastsection(bytes.data(), last);
    bytes.insert(bytes.end(), body.begin(), body.end());
    bytes.resize(bytes.size() + PSI_CRC_SIZE);
    psi_set_length(bytes.data(), static_cast<uint16_t>(bytes.size() - PSI_HEADER_SIZE));
    psi_set_crc(bytes.data());
    return bytes;
}

Octets shortSection(uint8_t table, const Octets& body) {
    Octets bytes = Writer().u8(table).u16(0x7000 | (body.size() + PSI_CRC_SIZE)).bytes(body).u32(0);
    psi_set_crc(bytes.data());
    return bytes;
}

Octets atscString(const std::string& language, const std::string& text) {
    return Writer().u8(1).text(language).u8(1).u8(0).u8(0).counted(text);
}

void Packets::add(uint16_t pid, const Octets& payload, bool padded) {
    for (size_t at = 0; at < payload.size();) {
        uint8_t packet[TS_SIZE];
        memset(packet, 0xff, sizeof(packet));
        ts_init(packet);
        ts_set_pid(packet, pid);
        ts_set_payload(packet);
        ts_set_cc(packet, mCounters[pid]++);
        if (at == 0) ts_set_unitstart(packet);
        const size_t size = std::min<size_t>(payload.size() - at, TS_SIZE - TS_HEADER_SIZE);
        size_t begin = TS_HEADER_SIZE;
        if (!padded && size < TS_SIZE - TS_HEADER_SIZE) {
            begin = TS_SIZE - size;
            ts_set_adaptation(packet, static_cast<uint8_t>(begin - TS_HEADER_SIZE - 1));
        }
        memcpy(packet + begin, payload.data() + at, size);
        at += size;
        mBytes.insert(mBytes.end(), packet, packet + TS_SIZE);
    }
}

void Packets::addSection(uint16_t pid, const Octets& section) {
    Octets payload{0};
    payload.insert(payload.end(), section.begin(), section.end());
    add(pid, payload, true);
}

void Packets::addPes(uint16_t pid, uint8_t streamId, uint64_t presentation, const Octets& payload) {
    Octets bytes(PES_HEADER_SIZE_PTS);
    pes_init(bytes.data());
    pes_set_streamid(bytes.data(), streamId);
    pes_set_length(bytes.data(), static_cast<uint16_t>(payload.size() + 8));
    pes_set_headerlength(bytes.data(), 5);
    pes_set_pts(bytes.data(), presentation % (uint64_t{1} << 33));
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    add(pid, bytes, false);
}

void Packets::addPicture(uint16_t pid, uint64_t presentation, uint64_t reference,
                         const Picture& picture) {
    Octets pes(PES_HEADER_SIZE_PTS);
    pes_init(pes.data());
    pes_set_streamid(pes.data(), PES_STREAM_ID_VIDEO_MPEG);
    pes_set_length(pes.data(), 0);
    pes_set_headerlength(pes.data(), 5);
    pes_set_dataalignment(pes.data());
    pes_set_pts(pes.data(), presentation);
    pes.insert(pes.end(), picture.bytes.begin(), picture.bytes.end());
    mWriters.try_emplace(pid, pid).first->second.writePes(pes, &mBytes, reference,
                                                          picture.randomAccess);
}

void Packets::addPacket(const uint8_t* packet, uint16_t pid) {
    Octets copy(packet, packet + TS_SIZE);
    ts_set_pid(copy.data(), pid);
    ts_set_cc(copy.data(), mCounters[pid]++);
    mBytes.insert(mBytes.end(), copy.begin(), copy.end());
}

void Packets::addNull(size_t count) {
    uint8_t packet[TS_SIZE];
    ts_pad(packet);
    for (size_t i = 0; i < count; ++i) mBytes.insert(mBytes.end(), packet, packet + TS_SIZE);
}

Octets dvb(const Options& options) {
    Packets packets;
    Programme first(kFirstVideo, kFirstAudio, options), second(0, kSecondAudio, options);
    for (uint32_t frame = 0; frame < options.seconds * kFrames; ++frame) {
        const bool changed = options.changeMap && frame >= options.seconds * kFrames / 2;
        if (frame % 10 == 0) addDvbTables(options, changed, &packets);
        if (frame % kFrames == 0)
            addDvbTime(options.time + frame / kFrames, options.offsets, &packets);
        first.frame(&packets);
        second.frame(&packets);
        if (frame % 5 == 0) {
            addTeletext(options.clock + frame * 3600, frame, options, &packets);
        }
        packets.addNull(options.nulls);
    }
    return packets.bytes();
}

Octets atsc(const Options& options) {
    Packets packets;
    Programme first(kFirstVideo, kFirstAudio, options), second(0, kSecondAudio, options);
    const auto pairs = captionPairs();
    for (uint32_t frame = 0; frame < options.seconds * kFrames; ++frame) {
        if (frame % 10 == 0) addAtscTables(options, &packets);
        if (frame % kFrames == 0) addAtscTime(options.time + frame / kFrames, &packets);
        const auto [one, two] = pairs[std::min<size_t>(frame, pairs.size() - 1)];
        first.frame(&packets, frame < pairs.size() ? captionData(one, two) : Octets{});
        second.frame(&packets);
        packets.addNull(options.nulls);
    }
    return packets.bytes();
}

void writeFile(const std::string& path, const Octets& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error(path + ": cannot be written");
}

}  // namespace composed
