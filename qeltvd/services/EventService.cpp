#define LOG_TAG "qeltvd"

#include "EventService.h"

#include <algorithm>
#include <cstring>

#include "Blocks.h"
#include "Code.h"
#include "Text.h"

namespace qeltvd {

using qeltvapi::service::zeros;

namespace {

/** A window without an end is as long as this. */
constexpr int64_t kWindowSeconds = 3 * 3600;

bool serves(int32_t room) {
    return room >= 0 && room <= QELTV_EVENT_BLOCK_MAXIMUM;
}

/** A text that ends with a zero, cut before a character. */
Bytes textBlock(const std::string& text, int32_t room) {
    Bytes block = zeros(room);
    if (block.size() == 0) return block;
    const std::string fitting = cut(text, block.size() - 1);
    memcpy(block.data(), fitting.data(), fitting.size());
    return block;
}

/** As many whole records as fit. */
template <class T>
Bytes arrayBlock(const std::vector<T>& records, int32_t room) {
    Bytes block = zeros(room);
    const size_t count = std::min(records.size(), block.size() / sizeof(T));
    if (count != 0) memcpy(block.data(), records.data(), count * sizeof(T));
    return block;
}

uint16_t lengthOf(const std::string& text) {
    return static_cast<uint16_t>(std::min<size_t>(text.size(), UINT16_MAX));
}

/** Answers with what `make` makes of the event, or with zeros if there is none. */
template <class Make, class Reply>
void answer(const std::optional<Event>& event, int32_t room, const Make& make, const Reply& reply) {
    if (!serves(room)) {
        reply(Bytes(), kBadValue);
    } else if (!event) {
        reply(zeros(room), kNotFound);
    } else {
        reply(make(*event), kOk);
    }
}

}  // namespace

EventService::EventService(const ChannelDatabase& channels, const Clock& clock,
                           const ConfigItems& config, Guide& guide, const Ratings& ratings)
        : mChannels(channels), mClock(clock), mConfig(config), mGuide(guide), mRatings(ratings) {}

std::optional<Event> EventService::find(int32_t channel, int32_t event) const {
    if (event < 0 || event > UINT16_MAX) return std::nullopt;
    return mGuide.find(static_cast<uint32_t>(channel), static_cast<uint16_t>(event));
}

int32_t EventService::setWindow(const Vector<uint32_t>& channels, int64_t start, int64_t end,
                                int32_t count) {
    if (count < 0 || static_cast<size_t>(count) > channels.size()) return kBadValue;
    return mGuide.setWindow({{channels.begin(), channels.begin() + count}, start, end});
}

Return<int32_t> EventService::a_hidl_qeltvapi_event_setCurrentActiveWindow(
        const Vector<uint32_t>& channels, int64_t time, int32_t count) {
    if (time > INT64_MAX - kWindowSeconds) return kBadValue;
    return setWindow(channels, time, time + kWindowSeconds, count);
}

Return<int32_t> EventService::a_hidl_qeltvapi_event_setCurrentActiveWindow_Ex(
        const Vector<uint32_t>& channels, int64_t start, int64_t end, int32_t count) {
    return setWindow(channels, start, end, count);
}

Return<int32_t> EventService::a_hidl_qeltvapi_event_clear_active_win() {
    return mGuide.setWindow({});
}

Return<void> EventService::a_hidl_qeltvapi_event_query_event_id_by_range(
        int32_t channel, int64_t start, int64_t end, uint16_t capacity,
        a_hidl_qeltvapi_event_query_event_id_by_range_cb reply) {
    std::vector<uint16_t> ids;
    const auto id = static_cast<uint32_t>(channel);
    int32_t code = kOk;
    if (end < start) {
        code = kBadValue;
    } else if (!mChannels.byChannelId(id)) {
        code = kNotFound;
    } else {
        for (const Event& event : mGuide.range(id, start, end)) {
            if (ids.size() == capacity) break;
            if (mGuide.passes(event)) ids.push_back(event.id);
        }
    }
    reply(static_cast<uint16_t>(ids.size()), ids, code);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_details_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_details_info_cb reply) {
    answer(
            find(channel, event), room,
            [&](const Event& found) { return textBlock(found.details, room); }, reply);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_guidance_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_guidance_info_cb reply) {
    answer(
            find(channel, event), room,
            [&](const Event& found) { return textBlock(guidanceOf(found), room); }, reply);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_details_extend_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_details_extend_info_cb reply) {
    answer(
            find(channel, event), room,
            [&](const Event& found) { return textBlock(found.extended, room); }, reply);
    return Void();
}

Return<bool> EventService::a_hidl_qeltvapi_event_check_block(int32_t channel, int32_t event) {
    const auto found = find(channel, event);
    return found && mGuide.blocked(*found);
}

Return<void> EventService::a_hidl_qeltvapi_event_get_active_win_channel_num(
        a_hidl_qeltvapi_event_get_active_win_channel_num_cb reply) {
    reply(static_cast<uint16_t>(mGuide.window().channels.size()), kOk);
    return Void();
}

/** No more channels than the capacity of the caller, which copies all that arrive. */
Return<void> EventService::a_hidl_qeltvapi_event_get_active_win_list(
        int32_t count, a_hidl_qeltvapi_event_get_active_win_list_cb reply) {
    auto window = mGuide.window();
    const auto room = static_cast<size_t>(std::max(count, 0));
    if (window.channels.size() > room) window.channels.resize(room);
    reply(window.channels, window.start, window.end, count >= 0 ? kOk : kBadValue);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_pf_event_id(
        int32_t channel, bool present, a_hidl_qeltvapi_event_get_pf_event_id_cb reply) {
    const auto id = static_cast<uint32_t>(channel);
    const auto event = present ? mGuide.present(id) : mGuide.following(id);
    reply(event ? event->id : uint16_t{0}, event ? kOk : kNotFound);
    return Void();
}

std::vector<QELTV_EVENT_COMMON_T> EventService::episodes(const Event& event) const {
    std::vector<QELTV_EVENT_COMMON_T> entries;
    for (const Event& episode : mGuide.episodes(event)) {
        entries.push_back({episode.channelId, episode.id, 0});
    }
    return entries;
}

Return<void> EventService::a_hidl_qeltvapi_event_get_group_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_group_info_cb reply) {
    answer(
            find(channel, event), room,
            [&](const Event& found) { return arrayBlock(episodes(found), room); }, reply);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_series_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_series_info_cb reply) {
    return a_hidl_qeltvapi_event_get_group_info(channel, event, room, reply);
}

Return<void> EventService::a_hidl_qeltvapi_event_get_rating_map(
        int32_t channel, int32_t event, a_hidl_qeltvapi_event_get_rating_map_cb reply) {
    HIDL_T_RATING_MAP_TO_G map;
    const auto found = find(channel, event);
    if (found) {
        const RatingText text = mRatings.text(found->rating);
        map = {text.label, text.system, text.description};
    }
    reply(map, found ? kOk : kNotFound);
    return Void();
}

Return<int32_t> EventService::a_hidl_qeltvapi_event_set_query_parameter(
        const HIDL_EVENT_QUERY_PARAM_T& param) {
    if (!isSound(param) || (param.second != 0 && param.second < param.first)) return kBadValue;
    mGuide.setParameters(
            {param.first, param.second, param.third, param.a1, param.a2, param.b1, param.b2});
    return kOk;
}

Return<void> EventService::a_hidl_qeltvapi_event_query_event_id_by_filter(
        int32_t channel, const HIDL_EVENT_FILTER_T& filter, uint16_t capacity,
        a_hidl_qeltvapi_event_query_event_id_by_filter_cb reply) {
    std::vector<uint16_t> ids;
    std::vector<uint32_t> channels;
    const auto id = static_cast<uint32_t>(channel);
    int32_t code = kOk;
    if (!isSound(filter) || filter.count > filter.list.size()) {
        code = kBadValue;
    } else if (id != QELTV_EVERY_CHANNEL && !mChannels.byChannelId(id)) {
        code = kNotFound;
    } else {
        Guide::Filter wanted;
        wanted.channelId = id;
        wanted.from = filter.value != 0 ? int64_t{filter.value} : mClock.now();
        wanted.to = filter.word != 0 ? wanted.from + int64_t{filter.word} * 3600 : mGuide.end();
        const auto* text = reinterpret_cast<const char*>(filter.block.data());
        wanted.text.assign(text, strnlen(text, filter.block.size()));
        wanted.genres.assign(filter.list.data(), filter.list.data() + filter.count);
        wanted.age = filter.last;
        wanted.unblocked = filter.flag;
        for (const Event& event : mGuide.search(wanted, capacity)) {
            ids.push_back(event.id);
            channels.push_back(event.channelId);
        }
    }
    reply(static_cast<uint16_t>(ids.size()), ids, channels, code);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_general_info(
        int32_t channel, int32_t event, a_hidl_qeltvapi_event_get_general_info_cb reply) {
    const auto found = find(channel, event);
    if (!found) {
        reply(Bytes(), kNotFound);
        return Void();
    }
    QELTV_EVENT_GENERAL_T general{};
    general.channelId = found->channelId;
    general.eventId = found->id;
    general.genre = found->genre;
    general.age = found->rating.known ? found->rating.age : QELTV_AGE_UNRATED;
    general.start = found->start;
    general.duration = found->duration;
    general.flags = mGuide.flagsOf(*found);
    general.detailsLength = lengthOf(found->details);
    general.guidanceLength = lengthOf(guidanceOf(*found));
    general.extendedLength = lengthOf(found->extended);
    general.series = found->series;
    general.episode = found->episode;
    copyText(general.language, found->language);
    copyText(general.title, cut(found->title, sizeof(general.title) - 1));
    reply(bytesOf(general), kOk);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_rating_list(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_rating_list_cb reply) {
    const auto make = [&](const Event& found) {
        std::vector<Event::Age> ages = found.ages;
        if (ages.empty() && found.rating.known) {
            ages.push_back({mConfig.text("channels.country"), found.rating.age});
        }
        std::vector<QELTV_EVENT_RATING_T> ratings;
        for (const auto& [country, age] : ages) {
            QELTV_EVENT_RATING_T rating{};
            copyText(rating.country, country);
            rating.age = age;
            rating.content = found.rating.content;
            rating.film = found.rating.film;
            rating.children = found.rating.children;
            ratings.push_back(rating);
        }
        return arrayBlock(ratings, room);
    };
    answer(find(channel, event), room, make, reply);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_content_identifier(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_content_identifier_cb reply) {
    const auto make = [&](const Event& found) {
        constexpr uint8_t kProgramme = 1, kSeries = 2;
        std::vector<QELTV_CONTENT_IDENTIFIER_T> all;
        const auto add = [&all](uint8_t type, const std::string& reference) {
            if (reference.empty()) return;
            all.push_back({type, {}});
            copyText(all.back().crid, reference);
        };
        add(kProgramme, found.reference);
        add(kSeries, found.seriesReference);
        return arrayBlock(all, room);
    };
    answer(find(channel, event), room, make, reply);
    return Void();
}

Return<void> EventService::a_hidl_qeltvapi_event_get_audio_comp_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_audio_comp_info_cb reply) {
    const auto make = [&](const Event& found) {
        std::vector<QELTV_AUDIO_COMPONENT_T> all;
        for (const Event::Sound& sound : found.sounds) {
            all.push_back({"", sound.codec, sound.channels, uint8_t{sound.description}, 0});
            copyText(all.back().language, sound.language);
        }
        return arrayBlock(all, room);
    };
    answer(find(channel, event), room, make, reply);
    return Void();
}

}  // namespace qeltvd
