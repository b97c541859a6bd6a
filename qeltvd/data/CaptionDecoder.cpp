#include "CaptionDecoder.h"

#include <algorithm>
#include <cstring>

#include "Text.h"
#include "VbiDecoder.h"

namespace qeltvd::stream {

namespace {

constexpr double kFrame = 1001.0 / 30000;
constexpr size_t kLongestWait = 64;

/** A unit of user data without the bytes that keep start codes out of it. */
std::vector<uint8_t> unescaped(const uint8_t* bytes, size_t size) {
    std::vector<uint8_t> plain;
    size_t zeros = 0;
    for (size_t i = 0; i < size; ++i) {
        if (zeros >= 2 && bytes[i] == 3) {
            zeros = 0;
            continue;
        }
        zeros = bytes[i] == 0 ? zeros + 1 : 0;
        plain.push_back(bytes[i]);
    }
    return plain;
}

}  // namespace

CaptionDecoder::CaptionDecoder(CaptionCarrier carrier) : mCarrier(carrier) {
    const auto changed = [](vbi_event* event, void* data) {
        auto* self = static_cast<CaptionDecoder*>(data);
        const int channel = event->ev.caption.pgno;
        if (channel < 1 || channel > kChannels) return;
        self->mChannels = static_cast<uint8_t>(self->mChannels | 1 << (channel - 1));
        ++self->mChanges;
    };
    mLibrary = std::make_unique<VbiDecoder>(VBI_EVENT_CAPTION, changed, this, kFrame);
}

CaptionDecoder::~CaptionDecoder() = default;

void CaptionDecoder::push(const uint8_t* picture, size_t size, std::optional<uint64_t> presentation,
                          std::optional<uint64_t> decoding) {
    Pairs pairs;
    collect(picture, size, &pairs);
    if (!presentation) {
        show(pairs);
        return;
    }
    // The clock of 33 bits as a distance to the last time.
    constexpr int64_t kWrap = int64_t{1} << 33;
    const auto continuous = [this](uint64_t time) {
        int64_t step = (static_cast<int64_t>(time) - mLastTime % kWrap) % kWrap;
        if (step > kWrap / 2) step -= kWrap;
        if (step < -kWrap / 2) step += kWrap;
        return mLastTime + step;
    };
    const int64_t shown = continuous(*presentation);
    const int64_t decoded = continuous(decoding.value_or(*presentation));
    mLastTime = std::max<int64_t>(decoded, 0);
    // The second field of a picture may come in a packet of its own with the same time.
    for (size_t field = 0; field < 2; ++field) {
        auto& to = mWaiting[shown].fields[field];
        to.insert(to.end(), pairs.fields[field].begin(), pairs.fields[field].end());
    }
    // No picture that is still to come is shown before it is decoded.
    while (!mWaiting.empty() &&
           (mWaiting.begin()->first <= decoded || mWaiting.size() > kLongestWait)) {
        show(mWaiting.begin()->second);
        mWaiting.erase(mWaiting.begin());
    }
}

void CaptionDecoder::interrupt() {
    for (const auto& [time, pairs] : mWaiting) show(pairs);
    mWaiting.clear();
    mLastTime = 0;
}

void CaptionDecoder::collect(const uint8_t* picture, size_t size, Pairs* pairs) const {
    const auto readData = [pairs](const uint8_t* bytes, size_t left) {
        constexpr uint8_t kCaptionData = 3, kFields = 2;
        if (left < 7 || memcmp(bytes, "GA94", 4) != 0 || bytes[4] != kCaptionData) return;
        if ((bytes[5] & 0x40) == 0) return;
        const size_t count = bytes[5] & 0x1f;
        for (size_t i = 0; i < count && 7 + (i + 1) * 3 <= left; ++i) {
            const uint8_t* entry = bytes + 7 + i * 3;
            const uint8_t field = entry[0] & 3;
            if ((entry[0] & 4) == 0 || field >= kFields) continue;
            pairs->fields[field].push_back({entry[1], entry[2]});
        }
    };
    const auto readMessages = [&](const std::vector<uint8_t>& unit, size_t at) {
        constexpr size_t kRegistered = 4;
        while (at + 2 < unit.size()) {
            size_t kind = 0, length = 0;
            for (; at < unit.size() && unit[at] == 0xff; ++at) kind += 0xff;
            if (at < unit.size()) kind += unit[at++];
            for (; at < unit.size() && unit[at] == 0xff; ++at) length += 0xff;
            if (at < unit.size()) length += unit[at++];
            if (length > unit.size() - at) return;
            const uint8_t* message = unit.data() + at;
            // Registered by the United States to ATSC.
            if (kind == kRegistered && length > 3 && message[0] == 0xb5 && message[1] == 0x00 &&
                message[2] == 0x31) {
                readData(message + 3, length - 3);
            }
            at += length;
        }
    };
    for (size_t i = 0; i + 4 < size; ++i) {
        if (picture[i] != 0 || picture[i + 1] != 0 || picture[i + 2] != 1) continue;
        const uint8_t code = picture[i + 3];
        const uint8_t* unit = picture + i + 3;
        constexpr uint8_t kStart[] = {0, 0, 1};
        const auto length = [&] {
            return static_cast<size_t>(std::search(unit, picture + size, kStart, kStart + 3) -
                                       unit);
        };
        if (mCarrier == CaptionCarrier::kMpeg2 && code == 0xb2) {
            readData(unit + 1, length() - 1);
        } else if (mCarrier == CaptionCarrier::kH264 && (code & 0x1f) == 6) {
            readMessages(unescaped(unit, length()), 1);
        } else if (mCarrier == CaptionCarrier::kH265 && (code >> 1 & 0x3f) == 39) {
            readMessages(unescaped(unit, length()), 2);
        }
        i += 2;
    }
}

bool CaptionDecoder::isRepeated(const std::array<uint8_t, 2>& pair) {
    const uint8_t first = pair[0] & 0x7f;
    const bool command = first >= 0x10 && first < 0x20;
    const bool repeated = command && pair == mLastCommand;
    mLastCommand = command && !repeated ? pair : std::array<uint8_t, 2>{};
    return repeated;
}

void CaptionDecoder::show(const Pairs& pairs) {
    constexpr uint32_t kLines[] = {21, 284};
    constexpr uint32_t kIds[] = {VBI_SLICED_CAPTION_525_F1, VBI_SLICED_CAPTION_525_F2};
    const size_t frames = std::max({pairs.fields[0].size(), pairs.fields[1].size(), size_t{1}});
    for (size_t frame = 0; frame < frames; ++frame) {
        vbi_sliced lines[2] = {};
        int count = 0;
        for (size_t field = 0; field < 2; ++field) {
            if (frame >= pairs.fields[field].size()) continue;
            if (field == 1 && isRepeated(pairs.fields[field][frame])) continue;
            vbi_sliced& line = lines[count++];
            line.id = kIds[field];
            line.line = kLines[field];
            memcpy(line.data, pairs.fields[field][frame].data(), 2);
        }
        mLibrary->decode(lines, count);
    }
}

std::vector<std::string> CaptionDecoder::rows(uint8_t channel) const {
    vbi_page page{};
    if (channel < 1 || channel > kChannels ||
        !vbi_fetch_cc_page(mLibrary->get(), &page, channel, FALSE)) {
        return {};
    }
    std::vector<std::string> rows;
    for (int row = 0; row < page.rows; ++row) {
        std::string text;
        for (int column = 0; column < page.columns; ++column) {
            const vbi_char& c = page.text[row * page.columns + column];
            const bool blank = c.unicode < ' ' || c.opacity == VBI_TRANSPARENT_SPACE;
            appendUtf8(&text, blank ? ' ' : static_cast<uint16_t>(c.unicode));
        }
        const size_t first = text.find_first_not_of(' ');
        if (first == std::string::npos) continue;
        rows.push_back(text.substr(first, text.find_last_not_of(' ') + 1 - first));
    }
    return rows;
}

}  // namespace qeltvd::stream
