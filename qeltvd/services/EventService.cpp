#define LOG_TAG "qeltvd"

#include "EventService.h"

#include <algorithm>
#include <cstring>

#include "Blocks.h"
#include "Code.h"

namespace qeltvd {

using android::hardware::hidl_vec;
using android::hardware::Void;

namespace {

/** A window without an end is as long as this. */
constexpr int64_t kWindowSeconds = 3 * 3600;

using Block = hidl_vec<uint8_t>;

bool serves(int32_t room) {
    return room >= 0 && room <= QELTV_EVENT_BLOCK_MAXIMUM;
}

/** A block of exactly the length that the caller copies, all zeros. */
Block emptyBlock(int32_t room) {
    Block block(static_cast<size_t>(serves(room) ? room : 0));
    if (block.size() != 0) memset(block.data(), 0, block.size());
    return block;
}

/** A text that ends with a zero, cut before a character. */
Block textBlock(const std::string& text, int32_t room) {
    Block block = emptyBlock(room);
    if (block.size() == 0) return block;
    size_t length = std::min(text.size(), block.size() - 1);
    while (length < text.size() && length > 0 &&
           (static_cast<uint8_t>(text[length]) & 0xc0) == 0x80) {
        --length;
    }
    memcpy(block.data(), text.data(), length);
    return block;
}

/** As many whole records as there is room for. */
template <class T>
Block arrayBlock(const std::vector<T>& records, int32_t room) {
    Block block = emptyBlock(room);
    const size_t count = std::min(records.size(), block.size() / sizeof(T));
    if (count != 0) memcpy(block.data(), records.data(), count * sizeof(T));
    return block;
}

template <size_t N>
void copyText(char (&field)[N], const std::string& text) {
    memcpy(field, text.data(), std::min(text.size(), N - 1));
}

/** Answers with what `make` makes of the event, or with zeros where there is none. */
template <class Make, class Reply>
void answer(const std::optional<Event>& event, int32_t room, const Make& make, const Reply& reply) {
    if (!serves(room)) {
        reply(Block(), kBadValue);
    } else if (!event) {
        reply(emptyBlock(room), kNotFound);
    } else {
        reply(make(*event), kOk);
    }
}

}  // namespace

EventService::EventService(Television& tv) : IQelTvApiEventDefault(kUnsupported, false), mTv(tv) {}

std::optional<Event> EventService::find(int32_t channel, int32_t event) const {
    if (event < 0 || event > UINT16_MAX) return std::nullopt;
    return mTv.guide.find(static_cast<uint32_t>(channel), static_cast<uint16_t>(event));
}

int32_t EventService::setWindow(const Vector<uint32_t>& channels, int64_t start, int64_t end,
                                int32_t count) {
    if (count < 0 || static_cast<size_t>(count) > channels.size()) return kBadValue;
    return mTv.guide.setWindow({{channels.begin(), channels.begin() + count}, start, end});
}

EventService::Return<int32_t> EventService::a_hidl_qeltvapi_event_setCurrentActiveWindow(
        const Vector<uint32_t>& channels, int64_t time, int32_t count) {
    if (time > INT64_MAX - kWindowSeconds) return kBadValue;
    return setWindow(channels, time, time + kWindowSeconds, count);
}

EventService::Return<int32_t> EventService::a_hidl_qeltvapi_event_setCurrentActiveWindow_Ex(
        const Vector<uint32_t>& channels, int64_t start, int64_t end, int32_t count) {
    return setWindow(channels, start, end, count);
}

EventService::Return<int32_t> EventService::a_hidl_qeltvapi_event_clear_active_win() {
    return mTv.guide.setWindow({});
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_query_event_id_by_range(
        int32_t channel, int64_t start, int64_t end, uint16_t capacity,
        a_hidl_qeltvapi_event_query_event_id_by_range_cb reply) {
    std::vector<uint16_t> ids;
    const auto id = static_cast<uint32_t>(channel);
    int32_t code = kOk;
    if (end < start) {
        code = kBadValue;
    } else if (!mTv.channels.byChannelId(id)) {
        code = kNotFound;
    } else {
        for (const Event& event : mTv.guide.range(id, start, end)) {
            if (ids.size() == capacity) break;
            if (mTv.guide.passes(event)) ids.push_back(event.id);
        }
    }
    reply(static_cast<uint16_t>(ids.size()), ids, code);
    return Void();
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_details_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_details_info_cb reply) {
    answer(
            find(channel, event), room,
            [&](const Event& found) { return textBlock(detailsOf(found), room); }, reply);
    return Void();
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_guidance_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_guidance_info_cb reply) {
    answer(
            find(channel, event), room,
            [&](const Event& found) { return textBlock(guidanceOf(found), room); }, reply);
    return Void();
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_details_extend_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_details_extend_info_cb reply) {
    answer(
            find(channel, event), room,
            [&](const Event& found) { return textBlock(extendedOf(found), room); }, reply);
    return Void();
}

EventService::Return<bool> EventService::a_hidl_qeltvapi_event_check_block(int32_t channel,
                                                                           int32_t event) {
    const auto found = find(channel, event);
    return found && mTv.guide.blocked(*found);
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_active_win_channel_num(
        a_hidl_qeltvapi_event_get_active_win_channel_num_cb reply) {
    reply(static_cast<uint16_t>(mTv.guide.window().channels.size()), kOk);
    return Void();
}

/** No more channels than the caller has room for: it copies all that come. */
EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_active_win_list(
        int32_t count, a_hidl_qeltvapi_event_get_active_win_list_cb reply) {
    auto window = mTv.guide.window();
    const auto room = static_cast<size_t>(std::max(count, 0));
    if (window.channels.size() > room) window.channels.resize(room);
    reply(window.channels, window.start, window.end, count >= 0 ? kOk : kBadValue);
    return Void();
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_pf_event_id(
        int32_t channel, bool present, a_hidl_qeltvapi_event_get_pf_event_id_cb reply) {
    const auto id = static_cast<uint32_t>(channel);
    const auto event = present ? mTv.guide.present(id) : mTv.guide.following(id);
    reply(event ? event->id : uint16_t{0}, event ? kOk : kNotFound);
    return Void();
}

std::vector<QELTV_EVENT_COMMON_T> EventService::episodes(const Event& event) const {
    std::vector<QELTV_EVENT_COMMON_T> entries;
    for (const Event& episode : mTv.guide.episodes(event)) {
        entries.push_back({episode.channelId, episode.id, 0});
    }
    return entries;
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_group_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_group_info_cb reply) {
    answer(
            find(channel, event), room,
            [&](const Event& found) { return arrayBlock(episodes(found), room); }, reply);
    return Void();
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_series_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_series_info_cb reply) {
    return a_hidl_qeltvapi_event_get_group_info(channel, event, room, reply);
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_rating_map(
        int32_t channel, int32_t event, a_hidl_qeltvapi_event_get_rating_map_cb reply) {
    HIDL_T_RATING_MAP_TO_G map;
    const auto found = find(channel, event);
    if (found) {
        const RatingText text = mTv.ratings.text(found->rating);
        map = {text.label, text.system, text.description};
    }
    reply(map, found ? kOk : kNotFound);
    return Void();
}

EventService::Return<int32_t> EventService::a_hidl_qeltvapi_event_set_query_parameter(
        const HIDL_EVENT_QUERY_PARAM_T& param) {
    if (!isSound(param) || (param.second != 0 && param.second < param.first)) return kBadValue;
    mTv.guide.setParameters(
            {param.first, param.second, param.third, param.a1, param.a2, param.b1, param.b2});
    return kOk;
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_query_event_id_by_filter(
        int32_t channel, const HIDL_EVENT_FILTER_T& filter, uint16_t capacity,
        a_hidl_qeltvapi_event_query_event_id_by_filter_cb reply) {
    std::vector<uint16_t> ids;
    std::vector<uint32_t> channels;
    const auto id = static_cast<uint32_t>(channel);
    int32_t code = kOk;
    if (!isSound(filter) || filter.count > filter.list.size()) {
        code = kBadValue;
    } else if (id != QELTV_EVERY_CHANNEL && !mTv.channels.byChannelId(id)) {
        code = kNotFound;
    } else {
        Guide::Filter wanted;
        wanted.channelId = id;
        wanted.from = filter.value != 0 ? int64_t{filter.value} : mTv.clock.now();
        wanted.to = filter.word != 0 ? wanted.from + int64_t{filter.word} * 3600 : mTv.guide.end();
        const auto* text = reinterpret_cast<const char*>(filter.block.data());
        wanted.text.assign(text, strnlen(text, filter.block.size()));
        wanted.genres.assign(filter.list.data(), filter.list.data() + filter.count);
        wanted.age = filter.last;
        wanted.unblocked = filter.flag;
        for (const Event& event : mTv.guide.search(wanted, capacity)) {
            ids.push_back(event.id);
            channels.push_back(event.channelId);
        }
    }
    reply(static_cast<uint16_t>(ids.size()), ids, channels, code);
    return Void();
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_general_info(
        int32_t channel, int32_t event, a_hidl_qeltvapi_event_get_general_info_cb reply) {
    const auto found = find(channel, event);
    if (!found) {
        reply(Block(), kNotFound);
        return Void();
    }
    QELTV_EVENT_GENERAL_T general{};
    general.channelId = found->channelId;
    general.eventId = found->id;
    general.genre = found->genre;
    general.age = found->rating.told ? found->rating.age : QELTV_AGE_UNRATED;
    general.start = found->start;
    general.duration = found->duration;
    general.flags = mTv.guide.flagsOf(*found);
    general.detailsLength = static_cast<uint16_t>(detailsOf(*found).size());
    general.guidanceLength = static_cast<uint16_t>(guidanceOf(*found).size());
    general.extendedLength = static_cast<uint16_t>(extendedOf(*found).size());
    general.series = found->series;
    general.episode = found->episode;
    copyText(general.language, "eng");
    copyText(general.title, titleOf(*found));
    reply(bytesOf(general), kOk);
    return Void();
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_rating_list(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_rating_list_cb reply) {
    const auto make = [&](const Event& found) {
        std::vector<QELTV_EVENT_RATING_T> ratings;
        if (found.rating.told) {
            QELTV_EVENT_RATING_T rating{};
            copyText(rating.country, mTv.config.text("channels.country"));
            rating.age = found.rating.age;
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

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_content_identifier(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_content_identifier_cb reply) {
    const auto make = [&](const Event& found) {
        const std::string base = "crid://television.example/" + std::to_string(found.channelId);
        std::vector<QELTV_CONTENT_IDENTIFIER_T> all(1);
        all[0].type = 1;
        copyText(all[0].crid, base + "/" + std::to_string(found.start));
        if (found.series != 0) {
            all.push_back({2, {}});
            copyText(all[1].crid, base + "/series/" + std::to_string(found.series));
        }
        return arrayBlock(all, room);
    };
    answer(find(channel, event), room, make, reply);
    return Void();
}

EventService::Return<void> EventService::a_hidl_qeltvapi_event_get_audio_comp_info(
        int32_t channel, int32_t event, int32_t room,
        a_hidl_qeltvapi_event_get_audio_comp_info_cb reply) {
    const auto make = [&](const Event& found) {
        const bool hd = (found.flags & QELTV_EVENT_HD) != 0;
        std::vector<QELTV_AUDIO_COMPONENT_T> all{
                {"", static_cast<uint8_t>(hd ? 2 : 1), static_cast<uint8_t>(hd ? 6 : 2), 0, 0}};
        copyText(all[0].language, "eng");
        if ((found.flags & QELTV_EVENT_AUDIO_DESCRIPTION) != 0) {
            all.push_back({"", 1, 2, 1, 0});
            copyText(all[1].language, "eng");
        }
        return arrayBlock(all, room);
    };
    answer(find(channel, event), room, make, reply);
    return Void();
}

}  // namespace qeltvd
