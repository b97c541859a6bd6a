#include "Captions.h"

#include "Stored.h"

namespace qeltvd {

namespace {

constexpr const char* kKeys[] = {"captions.analogue", "captions.atsc", "captions.isdb"};
/** CC1 to CC4 and T1 to T4; six services; two languages. */
constexpr int32_t kStreams[] = {8, 6, 2};
constexpr uint32_t kStyles = 8;

// A state as it is stored: the stream above two flags.
constexpr int64_t kEnabled = 1;
constexpr int64_t kVisible = 2;
constexpr int kStreamShift = 2;
/** Visible, not enabled, the first stream. */
constexpr int64_t kFirstState = 1 << kStreamShift | kVisible;

constexpr int32_t language(char a, char b, char c) {
    return a << 16 | b << 8 | c;
}

constexpr QELTV_SUBTITLE_ENTRY_T kSubtitles[] = {
        {1, language('e', 'n', 'g'), QELTV_SUBTITLE_DVB},
        {2, language('d', 'e', 'u'), QELTV_SUBTITLE_DVB},
        {3, language('e', 'n', 'g'), QELTV_SUBTITLE_HEARING},
        {4, language('d', 'e', 'u'), QELTV_SUBTITLE_TELETEXT},
};

}  // namespace

Captions::Captions(Settings& settings, Notifier& notifier)
        : mSettings(settings), mNotifier(notifier) {
    for (size_t i = 0; i < kStandards; ++i) {
        const int64_t value = settings.number(kKeys[i], kFirstState);
        mStates[i] = {(value & kEnabled) != 0, (value & kVisible) != 0,
                      static_cast<int32_t>(value >> kStreamShift)};
    }
}

Code Captions::change(Standard standard, State state) {
    const Code code = stored([&] {
        mSettings.set(kKeys[index(standard)], int64_t{state.stream} << kStreamShift |
                                                      (state.visible ? kVisible : 0) |
                                                      (state.enabled ? kEnabled : 0));
        return kOk;
    });
    if (code == kOk) mStates[index(standard)] = state;
    return code;
}

Code Captions::enable(Standard standard, bool on) {
    std::lock_guard<std::mutex> guard(mLock);
    State state = mStates[index(standard)];
    state.enabled = on;
    return change(standard, state);
}

Code Captions::setVisible(Standard standard, bool on) {
    std::lock_guard<std::mutex> guard(mLock);
    State state = mStates[index(standard)];
    state.visible = on;
    return change(standard, state);
}

int32_t Captions::next(Standard standard) {
    std::lock_guard<std::mutex> guard(mLock);
    State state = mStates[index(standard)];
    if (!state.enabled) return kRefused;
    state.stream = state.stream % kStreams[index(standard)] + 1;
    const Code code = change(standard, state);
    return code == kOk ? state.stream : code;
}

int32_t Captions::shown(Standard standard) const {
    std::lock_guard<std::mutex> guard(mLock);
    const State& state = mStates[index(standard)];
    return state.enabled && state.visible ? state.stream : 0;
}

Code Captions::setDemo(uint32_t on, uint32_t style) {
    if (on > 1 || style >= kStyles) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    mDemo = on == 1 ? static_cast<int32_t>(style) : -1;
    return kOk;
}

std::vector<int32_t> Captions::subtitles() const {
    std::lock_guard<std::mutex> guard(mLock);
    std::vector<int32_t> words{static_cast<int32_t>(std::size(kSubtitles)),
                               static_cast<int32_t>(mSubtitle)};
    for (const QELTV_SUBTITLE_ENTRY_T& entry : kSubtitles) {
        words.insert(words.end(), {entry.number, entry.language, entry.kind});
    }
    return words;
}

Code Captions::playSubtitle(uint32_t number) {
    std::lock_guard<std::mutex> guard(mLock);
    if (number > std::size(kSubtitles)) return kNotFound;
    if (number == mSubtitle) return kOk;
    mSubtitle = number;
    const QELTV_SUBTITLE_ENTRY_T entry =
            number != 0 ? kSubtitles[number - 1] : QELTV_SUBTITLE_ENTRY_T{};
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_subtitle_callback, QELTV_SUBTITLE_CHANGED,
                    {number, entry.language, entry.kind});
    return kOk;
}

Code Captions::nextSubtitle() {
    uint32_t number;
    {
        std::lock_guard<std::mutex> guard(mLock);
        number = mSubtitle == std::size(kSubtitles) ? 0 : mSubtitle + 1;
    }
    return playSubtitle(number);
}

}  // namespace qeltvd
