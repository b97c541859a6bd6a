#include "EmptyStream.h"

#include <bitstream/mpeg/mp2v.h>
#include <bitstream/mpeg/pes.h>
#include <bitstream/mpeg/psi.h>

#include <algorithm>
#include <cstring>

#include "Tables.h"

namespace qeltvd::stream {

namespace {

constexpr uint16_t kPatPid = 0x00, kSdtPid = 0x11, kPmtPid = 0x100, kVideoPid = 0x101,
                   kAudioPid = 0x102;
constexpr uint64_t kTicks = 90000;
constexpr uint64_t kFrameTicks = kTicks / EmptyStream::kFramesPerSecond;
/** Pictures are shown this long after they have come. */
constexpr uint64_t kDelay = kTicks / 5;
constexpr uint64_t kFirst = kTicks;
constexpr uint64_t kPicturesPerGroup = 25;
constexpr unsigned kColumns = 22, kRows = 18;
constexpr uint64_t kSoundTicks = 1152 * kTicks / 48000;
/** Frames of sound in one packet. */
constexpr uint64_t kSoundsPerPacket = 5;

class BitWriter {
  public:
    explicit BitWriter(std::vector<uint8_t>* bytes) : mBytes(bytes) {}
    void put(uint32_t value, unsigned count) {
        for (unsigned i = count; i-- > 0;) {
            if (mFree == 0) {
                mBytes->push_back(0);
                mFree = 8;
            }
            --mFree;
            mBytes->back() = static_cast<uint8_t>(mBytes->back() | (value >> i & 1) << mFree);
        }
    }
    void align() { mFree = 0; }

  private:
    std::vector<uint8_t>* mBytes;
    unsigned mFree = 0;
};

void startCode(std::vector<uint8_t>* bytes, uint8_t code) {
    bytes->insert(bytes->end(), {0, 0, 1, code});
}

/** One row of macroblocks, all black. */
void writeIntraSlice(uint8_t row, std::vector<uint8_t>* bytes) {
    startCode(bytes, static_cast<uint8_t>(row + 1));
    BitWriter bits(bytes);
    bits.put(1, 5);
    bits.put(0, 1);
    for (unsigned column = 0; column < kColumns; ++column) {
        // The next address, intra.
        bits.put(3, 2);
        for (unsigned block = 0; block < 6; ++block) {
            if (column == 0 && block == 0) {
                // From the grey of the prediction to the black of 16: a difference of 7 bits.
                bits.put(0x3e, 6);
                bits.put(0x7f - 112, 7);
            } else if (block < 4) {
                bits.put(4, 3);
            } else {
                bits.put(0, 2);
            }
            // End of the block.
            bits.put(2, 2);
        }
    }
}

/** A row that repeats the picture before: the first and the last macroblock without a change. */
void writeSkippedSlice(uint8_t row, std::vector<uint8_t>* bytes) {
    startCode(bytes, static_cast<uint8_t>(row + 1));
    BitWriter bits(bytes);
    bits.put(1, 5);
    bits.put(0, 1);
    for (unsigned i = 0; i < 2; ++i) {
        // The next address, or that of the last column; forward, without motion.
        i == 0 ? bits.put(1, 1) : bits.put(0x12, 10);
        bits.put(1, 3);
        bits.put(3, 2);
    }
}

std::vector<uint8_t> mapSection(const Service& service, bool radio, const std::string& language) {
    PSI_DECLARE(section);
    pmt_init(section);
    pmt_set_program(section, service.id);
    psi_set_version(section, 0);
    psi_set_current(section);
    pmt_set_pcrpid(section, service.pcrPid);
    pmt_set_desclength(section, 0);
    uint8_t* entry = section + PMT_HEADER_SIZE;
    if (!radio) {
        pmtn_init(entry);
        pmtn_set_streamtype(entry, PMT_STREAMTYPE_VIDEO_MPEG2);
        pmtn_set_pid(entry, kVideoPid);
        pmtn_set_desclength(entry, 0);
        entry += PMT_ES_SIZE;
    }
    pmtn_init(entry);
    pmtn_set_streamtype(entry, PMT_STREAMTYPE_AUDIO_MPEG1);
    pmtn_set_pid(entry, kAudioPid);
    const bool named = language.size() == 3;
    constexpr uint16_t kLanguageSize = DESC0A_HEADER_SIZE + DESC0A_LANGUAGE_SIZE;
    pmtn_set_desclength(entry, named ? kLanguageSize : uint16_t{0});
    uint8_t* end = entry + PMT_ES_SIZE;
    if (named) {
        desc0a_init(end);
        desc_set_length(end, DESC0A_LANGUAGE_SIZE);
        uint8_t* code = end + DESC0A_HEADER_SIZE;
        desc0an_set_code(code, reinterpret_cast<const uint8_t*>(language.data()));
        desc0an_set_audiotype(code, 0);
        end += kLanguageSize;
    }
    pmt_set_length(section, static_cast<uint16_t>(end - section - PMT_HEADER_SIZE));
    psi_set_crc(section);
    return {section, section + psi_get_length(section) + PSI_HEADER_SIZE};
}

std::vector<uint8_t> pes(uint8_t streamId, uint64_t time, const std::vector<uint8_t>& payload,
                         bool open) {
    std::vector<uint8_t> bytes(PES_HEADER_SIZE_PTS);
    pes_init(bytes.data());
    pes_set_streamid(bytes.data(), streamId);
    const size_t length = payload.size() + PES_HEADER_SIZE_PTS - PES_HEADER_SIZE;
    pes_set_length(bytes.data(), open ? uint16_t{0} : static_cast<uint16_t>(length));
    pes_set_headerlength(bytes.data(), PES_HEADER_SIZE_PTS - PES_HEADER_SIZE_NOPTS);
    pes_set_pts(bytes.data(), time % (uint64_t{1} << 33));
    pes_set_dataalignment(bytes.data());
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

}  // namespace

EmptyStream::EmptyStream(uint16_t streamId, uint16_t originalNetworkId, uint16_t serviceId,
                         const std::string& name, const std::string& provider, bool radio,
                         const std::string& language)
        : mAssociationWriter(kPatPid),
          mMapWriter(kPmtPid),
          mDescriptionWriter(kSdtPid),
          mVideoWriter(kVideoPid),
          mAudioWriter(kAudioPid) {
    mService.id = serviceId;
    mService.pmtPid = kPmtPid;
    mService.pcrPid = radio ? kAudioPid : kVideoPid;
    mService.mapVersion = 0;
    mService.description.emplace();
    mService.description->serviceId = serviceId;
    mService.description->type = radio ? 2 : 1;
    mService.description->name = name;
    mService.description->provider = provider;
    mAssociation = associationSection(streamId, serviceId, kPmtPid);
    mMap = mapSection(mService, radio, language);
    mDescription = descriptionSection(streamId, originalNetworkId, mService);
    if (const auto map = programMap({mMap.data(), mMap.size()})) {
        mService.components = map->components;
    }
}

std::vector<uint8_t> EmptyStream::picture() const {
    const uint64_t number = mFrame % kPicturesPerGroup;
    const bool intra = number == 0;
    std::vector<uint8_t> bytes;
    BitWriter bits(&bytes);
    if (intra) {
        startCode(&bytes, MP2VSEQ_START_CODE);
        bits.put(kColumns * 16, 12);
        bits.put(kRows * 16, 12);
        bits.put(MP2VSEQ_ASPECT_4_3, 4);
        bits.put(MP2VSEQ_FRAMERATE_25, 4);
        // 400 kbit/s, a marker, a buffer of 8 times 2 KiB, and no matrices.
        bits.put(1000, 18);
        bits.put(1, 1);
        bits.put(8, 10);
        bits.put(0, 3);
        bits.align();
        startCode(&bytes, MP2VX_START_CODE);
        bits.put(MP2VX_ID_SEQX, 4);
        // Main profile at low level, progressive, 4:2:0.
        bits.put(0x4a, 8);
        bits.put(1, 1);
        bits.put(MP2VSEQX_CHROMA_420, 2);
        bits.put(0, 4 + 12);
        bits.put(1, 1);
        bits.put(0, 8 + 1 + 7);
        bits.align();
        // A group of pictures that needs none before it, without a time.
        startCode(&bytes, 0xb8);
        bits.put(1 << 12, 25);
        bits.put(2, 2);
        bits.align();
    }
    startCode(&bytes, 0x00);
    bits.put(static_cast<uint32_t>(number), 10);
    bits.put(intra ? 1 : 2, 3);
    bits.put(0xffff, 16);
    // No vectors of MPEG-1.
    if (!intra) bits.put(7, 4);
    bits.put(0, 1);
    bits.align();
    startCode(&bytes, MP2VX_START_CODE);
    bits.put(MP2VX_ID_PICX, 4);
    bits.put(intra ? 0xffff : 0x11ff, 16);
    // 8 bits for the first coefficient; a whole picture; frames predict frames.
    bits.put(0, 2);
    bits.put(3, 2);
    bits.put(0x41, 8);
    // Progressive, without a description of a composite signal.
    bits.put(2, 2);
    bits.align();
    for (unsigned row = 0; row < kRows; ++row) {
        if (intra) {
            writeIntraSlice(static_cast<uint8_t>(row), &bytes);
        } else {
            writeSkippedSlice(static_cast<uint8_t>(row), &bytes);
        }
    }
    return bytes;
}

std::vector<uint8_t> EmptyStream::sound() const {
    // Layer II, 32 kbit/s, 48 kHz, one channel. No bits are allocated to any band.
    constexpr uint8_t kHeader[] = {0xff, 0xfd, 0x14, 0xc0};
    constexpr size_t kSize = 96;
    std::vector<uint8_t> bytes;
    for (uint64_t i = 0; i < kSoundsPerPacket; ++i) {
        const size_t at = bytes.size();
        bytes.resize(at + kSize);
        std::copy(std::begin(kHeader), std::end(kHeader),
                  bytes.begin() + static_cast<std::ptrdiff_t>(at));
    }
    return bytes;
}

void EmptyStream::frame(std::vector<uint8_t>* packets) {
    const uint64_t time = kFirst + mFrame * kFrameTicks;
    const bool radio = mService.pcrPid == kAudioPid;
    if (mFrame % 2 == 0) {
        mAssociationWriter.writeSection(mAssociation, packets);
        mMapWriter.writeSection(mMap, packets);
    }
    if (mFrame % kFramesPerSecond == 0) mDescriptionWriter.writeSection(mDescription, packets);
    if (!radio) {
        mVideoWriter.writePes(pes(PES_STREAM_ID_VIDEO_MPEG, time + kDelay, picture(), true),
                              packets, time % (uint64_t{1} << 33), mFrame % kPicturesPerGroup == 0);
    }
    while (mSounds * kSoundTicks <= mFrame * kFrameTicks) {
        const uint64_t at = kFirst + mSounds * kSoundTicks;
        std::optional<uint64_t> reference;
        if (radio) reference = time % (uint64_t{1} << 33);
        mAudioWriter.writePes(pes(PES_STREAM_ID_AUDIO_MPEG, at + kDelay, sound(), false), packets,
                              reference, radio);
        mSounds += kSoundsPerPacket;
    }
    ++mFrame;
}

}  // namespace qeltvd::stream
