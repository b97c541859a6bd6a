#define LOG_TAG "qeltvd"

#include <algorithm>
#include <cstdio>

#include "ChannelDatabase.h"
#include "Clock.h"
#include "Code.h"
#include "Guide.h"
#include "MainService.h"
#include "PinLock.h"
#include "Ratings.h"
#include "Text.h"

namespace qeltvd {

namespace {

// What the texts of a record hold.
constexpr size_t kTitleLimit = 255;
constexpr size_t kLabelLimit = 19;
constexpr size_t kLanguageLength = 3;

/** What a caller's buffer holds. */
size_t sizeOf(int64_t capacity) {
    return static_cast<size_t>(std::max<int64_t>(0, capacity));
}

HIDL_QELTVAPI_EVENT_ATSC_INFO_T atscRecord(const MainService::Models& models, const Event& event) {
    HIDL_QELTVAPI_EVENT_ATSC_INFO_T info{};
    info.ui2_at_0 = event.id;
    info.ui4_at_4 = event.channelId;
    info.ui2_at_8 = static_cast<uint16_t>(models.atsc.tableOf(event));
    info.ui8_at_12 = static_cast<uint64_t>(event.start);
    info.ui8_at_20 = event.duration;
    info.ui1_at_28 = event.genre;
    info.ui2_at_30 = models.guide.flagsOf(event);
    info.s_text_256 = cut(event.title, kTitleLimit);
    info.ui2_at_288 = static_cast<uint16_t>(event.details.size());
    info.s_text_20 = cut(models.ratings.text(event.rating).label, kLabelLimit);
    info.s_text_32 = cut(event.language, kLanguageLength);
    return info;
}

std::string clockText(const MainService::Models& models, int64_t time) {
    const auto local = models.clock.localRecord(time);
    if (!local) return "";
    char text[16];
    snprintf(text, sizeof(text), "%02u:%02u", local->hour, local->minute);
    return text;
}

/** The text of a banner item; none for one that there is not. */
std::optional<std::string> bannerText(const MainService::Models& models, int32_t page,
                                      int32_t item) {
    const int32_t items = page == QELTV_BANNER_SIMPLE     ? int32_t{QELTV_BANNER_GENRE}
                          : page == QELTV_BANNER_DETAILED ? int32_t{QELTV_BANNER_ITEMS}
                                                          : 0;
    if (item < 0 || item >= items) return std::nullopt;
    if (item == QELTV_BANNER_CLOCK) return clockText(models, models.clock.now());
    const auto channel = models.channels.current();
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
        const auto event = models.guide.following(channel->channelId);
        return event ? clockText(models, event->start) + " " + event->title : "";
    }
    const auto event = models.guide.present(channel->channelId);
    if (!event) return "";
    const bool blocked = models.guide.blocked(*event);
    switch (item) {
        case QELTV_BANNER_TITLE:
            // The title of what a child must not see is not for it either.
            return blocked ? "" : event->title;
        case QELTV_BANNER_TIMES:
            return clockText(models, event->start) + " - " + clockText(models, event->end());
        case QELTV_BANNER_GENRE:
            return nameOfGenre(event->genre);
        case QELTV_BANNER_RATING:
            return models.ratings.text(event->rating).label;
        case QELTV_BANNER_LOCK:
            return blocked ? "locked" : "";
        case QELTV_BANNER_DETAILS:
            return blocked ? "" : event->details;
        default:
            return "";
    }
}

}  // namespace

Return<void> MainService::a_hidl_qeltvapi_event_atsc_load_events(
        int32_t channel, int64_t start, int32_t seconds,
        a_hidl_qeltvapi_event_atsc_load_events_cb reply) {
    return replyWith(reply, mModels.atsc.load(static_cast<uint32_t>(channel), start, seconds));
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_get_details_info(
        int32_t id, int32_t capacity, a_hidl_qeltvapi_event_atsc_get_details_info_cb reply) {
    const Result<Event> event = mModels.atsc.find(id);
    reply(event ? cut(event->details, sizeOf(capacity)) : "", event.code());
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_event_atsc_freeEvent(int32_t id) {
    return mModels.atsc.free(id);
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_load_events_by_EIT(
        int32_t channel, int32_t table, a_hidl_qeltvapi_event_atsc_load_events_by_EIT_cb reply) {
    return replyWith(reply, mModels.atsc.loadTable(static_cast<uint32_t>(channel), table));
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_get_event_number_in_EIT(
        int32_t table, a_hidl_qeltvapi_event_atsc_get_event_number_in_EIT_cb reply) {
    return replyWith(reply, mModels.atsc.count(table));
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_get_detail_info_by_index(
        int32_t table, int32_t index, int32_t capacity,
        a_hidl_qeltvapi_event_atsc_get_detail_info_by_index_cb reply) {
    const Result<Event> event = mModels.atsc.find(table, index);
    reply(event ? cut(event->details, sizeOf(capacity)) : "", event.code());
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_check_EIT_status(
        int32_t channel, int32_t tables, a_hidl_qeltvapi_event_atsc_check_EIT_status_cb reply) {
    const auto found = mModels.atsc.status(static_cast<uint32_t>(channel), tables);
    const auto status = found.valueOr({});
    reply(status.states, static_cast<uint8_t>(status.states.size()), status.whole, found.code());
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_getEvent_detail_len_by_index(
        int32_t table, int32_t index,
        a_hidl_qeltvapi_event_atsc_getEvent_detail_len_by_index_cb reply) {
    const Result<Event> event = mModels.atsc.find(table, index);
    reply(event ? static_cast<uint32_t>(event->details.size()) : 0, event.code());
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_getEvent_general(
        int32_t id, a_hidl_qeltvapi_event_atsc_getEvent_general_cb reply) {
    const Result<Event> event = mModels.atsc.find(id);
    reply(event ? atscRecord(mModels, *event) : HIDL_QELTVAPI_EVENT_ATSC_INFO_T{}, event.code());
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_getEvent_general_by_index(
        int32_t table, int32_t index,
        a_hidl_qeltvapi_event_atsc_getEvent_general_by_index_cb reply) {
    const Result<Event> event = mModels.atsc.find(table, index);
    reply(event ? atscRecord(mModels, *event) : HIDL_QELTVAPI_EVENT_ATSC_INFO_T{}, event.code());
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_event_atsc_get_rating_map_by_index(
        int32_t table, int32_t index, a_hidl_qeltvapi_event_atsc_get_rating_map_by_index_cb reply) {
    const Result<Event> event = mModels.atsc.find(table, index);
    HIDL_T_RATING_MAP_TO_G map;
    if (event) {
        const RatingText text = mModels.ratings.text(event->rating);
        map = {text.label, text.system, text.description};
    }
    reply(map, event.code());
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_banner_get_item_state(
        int32_t page, int32_t item, a_hidl_qeltvapi_banner_get_item_state_cb reply) {
    const auto text = bannerText(mModels, page, item);
    reply(text && !text->empty() ? QELTV_BANNER_SHOWN : QELTV_BANNER_HIDDEN,
          text ? kOk : kNotFound);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_banner_get_item_id(
        int32_t page, int32_t item, a_hidl_qeltvapi_banner_get_item_id_cb reply) {
    const bool known = bannerText(mModels, page, item).has_value();
    const auto id =
            QELTV_BANNER_ID_BIT | static_cast<uint32_t>(page) << 16 | static_cast<uint32_t>(item);
    reply(known ? id : 0, known ? kOk : kNotFound);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_banner_get_item_content(
        int32_t page, int32_t item, uint32_t capacity,
        a_hidl_qeltvapi_banner_get_item_content_cb reply) {
    const auto text = bannerText(mModels, page, item);
    reply(text ? cut(*text, capacity) : "", text ? kOk : kNotFound);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_banner_get_item_content_len(
        int32_t page, int32_t item, a_hidl_qeltvapi_banner_get_item_content_len_cb reply) {
    const auto text = bannerText(mModels, page, item);
    reply(text ? static_cast<uint32_t>(text->size()) : 0, text ? kOk : kNotFound);
    return Void();
}

/** A QELTV_PIN_ANSWER: callers only see the low 8 bits. */
Return<int32_t> MainService::a_hidl_qeltvapi_PWDDLG_checkPWD(const String& pin) {
    return mModels.pin.check(pin);
}

Return<int32_t> MainService::a_hidl_qeltvapi_PWDDLG_show() {
    return mModels.pin.show();
}

}  // namespace qeltvd
