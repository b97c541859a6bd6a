#define LOG_TAG "qeltvd"

#include <algorithm>
#include <cstdio>

#include "Code.h"
#include "MainService.h"

namespace qeltvd {

using android::hardware::Void;

namespace {

/** At most so many bytes, cut before a character. */
std::string cut(std::string text, int64_t room) {
    if (room < 0) return "";
    size_t length = static_cast<size_t>(std::min<int64_t>(room, static_cast<int64_t>(text.size())));
    while (length < text.size() && length > 0 &&
           (static_cast<uint8_t>(text[length]) & 0xc0) == 0x80) {
        --length;
    }
    text.resize(length);
    return text;
}

HIDL_QELTVAPI_EVENT_ATSC_INFO_T atscRecord(const Television& tv, const Event& event) {
    HIDL_QELTVAPI_EVENT_ATSC_INFO_T info{};
    info.ui2_at_0 = event.id;
    info.ui4_at_4 = event.channelId;
    info.ui2_at_8 = static_cast<uint16_t>(tv.atsc.tableOf(event));
    info.ui8_at_12 = static_cast<uint64_t>(event.start);
    info.ui8_at_20 = event.duration;
    info.ui1_at_28 = event.genre;
    info.ui2_at_30 = tv.guide.flagsOf(event);
    info.s_text_256 = cut(titleOf(event), 255);
    info.ui2_at_288 = static_cast<uint16_t>(detailsOf(event).size());
    info.s_text_20 = cut(tv.ratings.text(event.rating).label, 19);
    info.s_text_32 = "eng";
    return info;
}

std::string clockText(const Television& tv, int64_t time) {
    const auto local = tv.clock.localRecord(time);
    if (!local) return "";
    char text[16];
    snprintf(text, sizeof(text), "%02u:%02u", local->hour, local->minute);
    return text;
}

/** The text of a banner item; none for one that there is not. */
std::optional<std::string> bannerText(const Television& tv, int32_t page, int32_t item) {
    const int32_t items = page == QELTV_BANNER_SIMPLE     ? int32_t{QELTV_BANNER_GENRE}
                          : page == QELTV_BANNER_DETAILED ? int32_t{QELTV_BANNER_ITEMS}
                                                          : 0;
    if (item < 0 || item >= items) return std::nullopt;
    if (item == QELTV_BANNER_CLOCK) return clockText(tv, tv.clock.now());
    const auto channel = tv.channels.current();
    if (!channel) return "";
    if (item == QELTV_BANNER_NUMBER) {
        const uint32_t major = channel->number >> 16, minor = channel->number & 0xffff;
        return major == 0 ? std::to_string(minor)
                          : std::to_string(major) + "-" + std::to_string(minor);
    }
    if (item == QELTV_BANNER_CHANNEL) return channel->name;
    if (item == QELTV_BANNER_SOUND) return channel->language;
    if (item == QELTV_BANNER_PICTURE) {
        if (channel->type != ServiceType::kTelevision) return "";
        return (channel->flags & CHANNEL_FLAG_HD) != 0 ? "HD" : "SD";
    }
    if (item == QELTV_BANNER_FOLLOWING) {
        const auto event = tv.guide.following(channel->channelId);
        return event ? clockText(tv, event->start) + " " + titleOf(*event) : "";
    }
    const auto event = tv.guide.present(channel->channelId);
    if (!event) return "";
    const bool blocked = tv.guide.blocked(*event);
    switch (item) {
        case QELTV_BANNER_TITLE:
            // The title of what a child must not see is not for it either.
            return blocked ? "" : titleOf(*event);
        case QELTV_BANNER_TIMES:
            return clockText(tv, event->start) + " - " + clockText(tv, event->end());
        case QELTV_BANNER_GENRE:
            return nameOfGenre(event->genre);
        case QELTV_BANNER_RATING:
            return tv.ratings.text(event->rating).label;
        case QELTV_BANNER_LOCK:
            return blocked ? "locked" : "";
        case QELTV_BANNER_DETAILS:
            return blocked ? "" : detailsOf(*event);
        default:
            return "";
    }
}

}  // namespace

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_load_events(
        int32_t p1, int64_t p2, int32_t p3, a_hidl_qeltvapi_event_atsc_load_events_cb reply) {
    std::vector<int32_t> ids;
    const int32_t code = mTv.atsc.load(static_cast<uint32_t>(p1), p2, p3, &ids);
    reply(ids, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_get_details_info(
        int32_t p1, int32_t p3, a_hidl_qeltvapi_event_atsc_get_details_info_cb reply) {
    Event event;
    const int32_t code = mTv.atsc.find(p1, &event);
    reply(code == kOk ? cut(detailsOf(event), p3) : "", code);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_event_atsc_freeEvent(int32_t p1) {
    return mTv.atsc.free(p1);
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_load_events_by_EIT(
        int32_t p1, int32_t p2, a_hidl_qeltvapi_event_atsc_load_events_by_EIT_cb reply) {
    uint32_t count = 0;
    const int32_t code = mTv.atsc.loadTable(static_cast<uint32_t>(p1), p2, &count);
    reply(count, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_get_event_number_in_EIT(
        int32_t p1, a_hidl_qeltvapi_event_atsc_get_event_number_in_EIT_cb reply) {
    uint32_t count = 0;
    const int32_t code = mTv.atsc.count(p1, &count);
    reply(count, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_get_detail_info_by_index(
        int32_t p1, int32_t p2, int32_t len,
        a_hidl_qeltvapi_event_atsc_get_detail_info_by_index_cb reply) {
    Event event;
    const int32_t code = mTv.atsc.find(p1, p2, &event);
    reply(code == kOk ? cut(detailsOf(event), len) : "", code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_check_EIT_status(
        int32_t p1, int32_t p3, a_hidl_qeltvapi_event_atsc_check_EIT_status_cb reply) {
    std::vector<uint32_t> states;
    int32_t status = QELTV_EIT_NONE;
    const int32_t code = mTv.atsc.status(static_cast<uint32_t>(p1), p3, &states, &status);
    reply(states, static_cast<uint8_t>(states.size()), status, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_getEvent_detail_len_by_index(
        int32_t p1, int32_t p2, a_hidl_qeltvapi_event_atsc_getEvent_detail_len_by_index_cb reply) {
    Event event;
    const int32_t code = mTv.atsc.find(p1, p2, &event);
    reply(code == kOk ? static_cast<uint32_t>(detailsOf(event).size()) : 0, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_getEvent_general(
        int32_t p1, a_hidl_qeltvapi_event_atsc_getEvent_general_cb reply) {
    Event event;
    const int32_t code = mTv.atsc.find(p1, &event);
    reply(code == kOk ? atscRecord(mTv, event) : HIDL_QELTVAPI_EVENT_ATSC_INFO_T{}, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_getEvent_general_by_index(
        int32_t p1, int32_t p2, a_hidl_qeltvapi_event_atsc_getEvent_general_by_index_cb reply) {
    Event event;
    const int32_t code = mTv.atsc.find(p1, p2, &event);
    reply(code == kOk ? atscRecord(mTv, event) : HIDL_QELTVAPI_EVENT_ATSC_INFO_T{}, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_event_atsc_get_rating_map_by_index(
        int32_t p1, int32_t p2, a_hidl_qeltvapi_event_atsc_get_rating_map_by_index_cb reply) {
    Event event;
    const int32_t code = mTv.atsc.find(p1, p2, &event);
    HIDL_T_RATING_MAP_TO_G map;
    if (code == kOk) {
        const RatingText text = mTv.ratings.text(event.rating);
        map = {text.label, text.system, text.description};
    }
    reply(map, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_banner_get_item_state(
        int32_t p1, int32_t p2, a_hidl_qeltvapi_banner_get_item_state_cb reply) {
    const auto text = bannerText(mTv, p1, p2);
    reply(text && !text->empty() ? QELTV_BANNER_SHOWN : QELTV_BANNER_HIDDEN,
          text ? kOk : kNotFound);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_banner_get_item_id(
        int32_t p1, int32_t p2, a_hidl_qeltvapi_banner_get_item_id_cb reply) {
    const bool known = bannerText(mTv, p1, p2).has_value();
    const auto page = static_cast<uint32_t>(p1), item = static_cast<uint32_t>(p2);
    reply(known ? QELTV_BANNER_ID_BIT | page << 16 | item : 0, known ? kOk : kNotFound);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_banner_get_item_content(
        int32_t p1, int32_t p2, uint32_t room, a_hidl_qeltvapi_banner_get_item_content_cb reply) {
    const auto text = bannerText(mTv, p1, p2);
    reply(text ? cut(*text, room) : "", text ? kOk : kNotFound);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_banner_get_item_content_len(
        int32_t p1, int32_t p2, a_hidl_qeltvapi_banner_get_item_content_len_cb reply) {
    const auto text = bannerText(mTv, p1, p2);
    reply(text ? static_cast<uint32_t>(text->size()) : 0, text ? kOk : kNotFound);
    return Void();
}

/** A QELTV_PIN_ANSWER: callers only see the low 8 bits. */
MainService::Return<int32_t> MainService::a_hidl_qeltvapi_PWDDLG_checkPWD(
        const android::hardware::hidl_string& pin) {
    return mTv.pin.check(pin);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_PWDDLG_show() {
    return mTv.pin.show();
}

}  // namespace qeltvd
