#include "Captions.h"

#include "Stored.h"
#include "Text.h"

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

int32_t languageWord(const std::string& code) {
    return code.size() == 3 ? language(code[0], code[1], code[2]) : language('u', 'n', 'd');
}

void appendRow(std::string* text, const std::string& row) {
    const size_t first = row.find_first_not_of(' ');
    if (first == std::string::npos) return;
    if (!text->empty()) *text += '\n';
    *text += row.substr(first, row.find_last_not_of(' ') + 1 - first);
}

}  // namespace

Captions::Captions(Settings& settings, Notifier& notifier, const ConfigItems& config,
                   const ChannelDatabase& channels, Broadcast& broadcast)
        : mSettings(settings),
          mNotifier(notifier),
          mConfig(config),
          mChannels(channels),
          mBroadcast(broadcast) {
    for (size_t i = 0; i < kStandards; ++i) {
        const int64_t value = settings.number(kKeys[i], kFirstState);
        mStates[i] = {(value & kEnabled) != 0, (value & kVisible) != 0,
                      static_cast<int32_t>(value >> kStreamShift)};
    }
    broadcast.addListener([this](uint32_t changes) { follow(changes); });
}

std::optional<Captions::Service> Captions::service() const {
    auto pair = mChannels.currentPair();
    if (!pair) return std::nullopt;
    return Service{std::move(pair->first), mBroadcast.of(pair->second)};
}

Captions::Tracks Captions::tracks(const std::optional<Service>& service) {
    return service ? service->signals->subtitles(service->channel) : Tracks();
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
    const auto service = this->service();
    std::lock_guard<std::mutex> guard(mLock);
    return shown(standard, service);
}

int32_t Captions::shown(Standard standard, const std::optional<Service>& service) const {
    const State& state = mStates[index(standard)];
    if (!state.enabled || !state.visible) return 0;
    const auto streams = service ? service->signals->captionStreams(service->channel)
                                 : std::optional<CaptionStreams>();
    if (!streams) return state.stream;
    const uint8_t present = standard == kAnalogue ? streams->line21
                            : standard == kAtsc   ? streams->digital
                                                  : uint8_t{0};
    return (present >> (state.stream - 1) & 1) != 0 ? state.stream : 0;
}

Code Captions::setDemo(uint32_t on, uint32_t style) {
    if (on > 1 || style >= kStyles) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    mDemo = on == 1 ? static_cast<int32_t>(style) : -1;
    return kOk;
}

uint32_t Captions::playing(const Tracks& tracks) const {
    if (!mWish) return 0;
    // The one that was chosen, then one of its kind, then one of its language, then the viewer's.
    const std::string preferred = mConfig.text("sound.subtitle_language");
    uint32_t best = 0;
    int most = 0;
    for (uint32_t number = 1; number <= tracks.size(); ++number) {
        const SubtitleTrack& track = tracks[number - 1];
        int worth = track.language == preferred ? 1 : 0;
        if (track.language == mWish->language) {
            worth = track.kind != mWish->kind ? 2 : number != mWish->number ? 3 : 4;
        }
        if (worth <= most) continue;
        most = worth;
        best = number;
    }
    return best;
}

std::vector<int32_t> Captions::subtitles() const {
    const Tracks all = tracks(service());
    std::lock_guard<std::mutex> guard(mLock);
    std::vector<int32_t> words{static_cast<int32_t>(all.size()),
                               static_cast<int32_t>(playing(all))};
    int32_t number = 0;
    for (const SubtitleTrack& track : all) {
        words.insert(words.end(), {++number, languageWord(track.language), track.kind});
    }
    return words;
}

Code Captions::playSubtitle(uint32_t number) {
    const Tracks all = tracks(service());
    std::lock_guard<std::mutex> guard(mLock);
    if (number > all.size()) return kNotFound;
    if (number == 0) {
        mWish.reset();
    } else {
        mWish = Wish{all[number - 1].language, all[number - 1].kind, number};
    }
    announce(all);
    return kOk;
}

Code Captions::nextSubtitle() {
    uint32_t number;
    {
        const Tracks all = tracks(service());
        std::lock_guard<std::mutex> guard(mLock);
        number = playing(all);
        number = number == all.size() ? 0 : number + 1;
    }
    return playSubtitle(number);
}

void Captions::announce(const Tracks& tracks) {
    const uint32_t number = playing(tracks);
    const SubtitleTrack track = number != 0 ? tracks[number - 1] : SubtitleTrack{};
    if (number == mPlaying && track.language == mTrack.language && track.kind == mTrack.kind &&
        track.page == mTrack.page) {
        return;
    }
    mPlaying = number;
    mTrack = track;
    mNotifier.event(
            &Notifier::Callback::a_hidl_qeltvapi_subtitle_callback, QELTV_SUBTITLE_CHANGED,
            {number, number != 0 ? languageWord(track.language) : 0, track.kind, track.page});
}

std::optional<std::string> Captions::captionsOf(const std::optional<Service>& service) const {
    // The first service of CEA-708 has the text of the first channel of line 21.
    int32_t channel = shown(kAnalogue, service);
    if (channel == 0 && shown(kAtsc, service) == 1) channel = 1;
    if (channel == 0 || !service) return std::nullopt;
    std::string text;
    for (const std::string& row :
         service->signals->captions(service->channel, static_cast<uint8_t>(channel))) {
        appendRow(&text, row);
    }
    return text;
}

std::optional<std::string> Captions::subtitlesOf(const std::optional<Service>& service) const {
    if (!mWish) return std::nullopt;
    const Tracks all = tracks(service);
    const uint32_t number = playing(all);
    if (number == 0 || all[number - 1].page == 0) return std::nullopt;
    const TeletextView view =
            service->signals->teletext(service->channel, all[number - 1].page, 0, {});
    std::string text;
    if (view.state != TeletextView::State::kShown) return text;
    const stream::TeletextCharacters characters = stream::charactersOf(view.page);
    for (size_t row = 1; row < characters.size(); ++row) {
        std::string line;
        for (const uint16_t c : characters[row]) appendUtf8(&line, c);
        appendRow(&text, line);
    }
    return text;
}

Code Captions::captionText(std::string* text) const {
    const auto service = this->service();
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = captionsOf(service);
    if (found) *text = *found;
    return found ? kOk : kNotFound;
}

Code Captions::subtitleText(std::string* text) const {
    const auto service = this->service();
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = subtitlesOf(service);
    if (found) *text = *found;
    return found ? kOk : kNotFound;
}

void Captions::follow(uint32_t changes) {
    // The time changes with what is received.
    constexpr uint32_t kTracks = stream::kServicesChanged | stream::kTimeChanged;
    const bool captions = (changes & (kTracks | stream::kCaptionsChanged)) != 0;
    const bool subtitles = (changes & (kTracks | stream::kTeletextChanged)) != 0;
    if (!captions && !subtitles) return;
    const auto service = this->service();
    const auto notify = [this](const char* key, const std::string& value, std::string* known) {
        if (value == *known) return;
        *known = value;
        const std::string text = key + value;
        mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_mds_msg_callback, uint64_t{0},
                         android::hardware::hidl_string(text), static_cast<uint32_t>(text.size()));
    };
    std::lock_guard<std::mutex> guard(mLock);
    if ((changes & kTracks) != 0) announce(tracks(service));
    if (captions) notify("captions.text=", captionsOf(service).value_or(""), &mCaptionText);
    if (subtitles) notify("subtitle.text=", subtitlesOf(service).value_or(""), &mSubtitleText);
}

}  // namespace qeltvd
