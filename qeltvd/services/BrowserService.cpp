#include "BrowserService.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>

#include "Blocks.h"
#include "Code.h"
#include "Stored.h"
#include "Text.h"

namespace qeltvd {

namespace {

std::string dateOf(const QELTV_DTG_T& local) {
    char text[32];
    snprintf(text, sizeof(text), "%04u-%02u-%02u", local.year, local.month, local.day);
    return text;
}

std::string timeOf(const QELTV_DTG_T& local) {
    char text[32];
    snprintf(text, sizeof(text), "%02u:%02u:%02u", local.hour, local.minute, local.second);
    return text;
}

std::string weekOf(const QELTV_DTG_T& local) {
    return weekdayName(local);
}

std::string fileOf(const RecordedItem& item) {
    return item.path.substr(item.path.rfind('/') + 1);
}

uint32_t startOf(const RecordedItem& item) {
    return static_cast<uint32_t>(item.start);
}

Bytes record(const RecordedItem& item) {
    QELTV_BROWSER_ITEM_T record{};
    record.item = static_cast<uint32_t>(item.id);
    record.channel = item.channel;
    record.major = item.major;
    record.minor = item.minor;
    record.start = item.start;
    record.bytes = item.bytes;
    record.seconds = item.seconds;
    record.stopReason = item.stopReason;
    record.rating = item.rating;
    record.retention = item.retention;
    copyText(record.channelName, item.channelName);
    copyText(record.programme, item.programme);
    copyText(record.path, item.path);
    return bytesOf(record);
}

}  // namespace

BrowserService::BrowserService(const Clock& clock, Recorder& recorder)
        : mClock(clock), mRecorder(recorder) {}

BrowserService::Found BrowserService::find(const std::string& path) const {
    Found found{std::nullopt, kOk};
    found.code = stored([&]() -> int32_t {
        found.item = mRecorder.itemOf(path);
        return found.item ? kOk : kNotFound;
    });
    return found;
}

BrowserService::Found BrowserService::find(uint32_t index) const {
    Found found{std::nullopt, kOk};
    found.code = stored([&]() -> int32_t {
        found.item = mRecorder.itemAt(index);
        return found.item ? kOk : kNotFound;
    });
    return found;
}

template <class Reply, class Value>
void BrowserService::answer(const Reply& reply, const Found& found, Value value) {
    if (found.code == kOk) {
        reply(std::invoke(value, *found.item), kOk);
    } else {
        reply({}, found.code);
    }
}

/** The value is one of the local time at which the recording has begun. */
template <class Reply>
void BrowserService::answerLocal(const Reply& reply, const Found& found,
                                 std::string (*value)(const QELTV_DTG_T&)) const {
    answer(reply, found, [&](const RecordedItem& item) {
        return value(mClock.localRecord(item.start).value_or(QELTV_DTG_T{}));
    });
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_num(
        a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_num_cb reply) {
    uint32_t count = 0;
    const Code code = stored([&] {
        count = static_cast<uint32_t>(mRecorder.itemCount());
        return kOk;
    });
    reply(count, code);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_item_count(
        a_hidl_qeltvapi_mmp_get_pvr_browser_item_count_cb reply) {
    size_t count = 0;
    const Code code = stored([&] {
        count = mRecorder.itemCount();
        return kOk;
    });
    reply(static_cast<uint16_t>(std::min<size_t>(count, std::numeric_limits<uint16_t>::max())),
          code);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_info(
        a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_info_cb reply) {
    QELTV_BROWSER_INFO_T info{};
    const Code code = stored([&] {
        for (const RecordedItem& item : mRecorder.items()) {
            ++info.items;
            info.bytes += item.bytes;
        }
        return kOk;
    });
    info.free = mRecorder.freeBytes(0);
    reply(code == kOk ? bytesOf(info) : Bytes(), code);
    return Void();
}

Return<int32_t> BrowserService::a_hidl_qeltvapi_mmp_pvr_browser_delete_file_by_index(
        uint32_t index) {
    return mRecorder.deleteItem(index);
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::channel);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::channelName);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::seconds);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::stopReason);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::programme);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_path_cb reply) {
    answer(reply, find(path), startOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_item_path_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_item_path_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::path);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::major);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::minor);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::channelName);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::seconds);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::stopReason);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_index_cb reply) {
    answer(reply, find(index), startOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::programme);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_index_cb reply) {
    answerLocal(reply, find(index), dateOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_index_cb reply) {
    answerLocal(reply, find(index), timeOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::channel);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_index_cb reply) {
    answerLocal(reply, find(index), weekOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_name(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_name_cb reply) {
    answer(reply, find(index), fileOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_path_cb reply) {
    answer(reply, find(path), record);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_index_cb reply) {
    answer(reply, find(index), record);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path(
        const String& path,
        a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::major);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path(
        const String& path,
        a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::minor);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_path_cb reply) {
    answerLocal(reply, find(path), dateOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_path_cb reply) {
    answerLocal(reply, find(path), weekOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_path_cb reply) {
    answerLocal(reply, find(path), timeOf);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::rating);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::rating);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_index(
        uint32_t index, a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_index_cb reply) {
    answer(reply, find(index), &RecordedItem::retention);
    return Void();
}

Return<void> BrowserService::a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_path(
        const String& path, a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_path_cb reply) {
    answer(reply, find(path), &RecordedItem::retention);
    return Void();
}

}  // namespace qeltvd
