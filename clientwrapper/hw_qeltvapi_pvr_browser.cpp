#include "hw_qeltvapi_pvr_browser.h"

#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiPvrbrowser;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_pvr_browser)(client)";

void returnLine(const char* tag, const Site& site, long long result) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s return %d\n", site.function, static_cast<int>(result));
}

constexpr Family<IQelTvApiPvrbrowser> kBrowser{
        kTag, getQelTvApiPvrbrowserService, -1, -1, line::name, nullptr, nullptr, returnLine};

auto storeNumber(uint32_t* out) {
    return [=](uint32_t value, int32_t code) {
        *out = value;
        return code;
    };
}

/** All of the text, without a terminator and whatever the room. */
auto storeText(char* out) {
    return [=](const hidl_string& value, int32_t code) {
        copyAll(out, value);
        return code;
    };
}

/** All of the record, whatever the room. */
auto storeRecord(void* out) {
    return [=](const hidl_vec<uint8_t>& value, int32_t code) {
        copyAll(out, value);
        return code;
    };
}

}  // namespace

int a_qeltvapi_mmp_get_pvr_browser_channelid_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_path,
               storeNumber(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_channelname_by_path(const char* path, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_path,
               storeText(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_duration_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_path,
               storeNumber(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path,
               storeNumber(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_programname_by_path(const char* path, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_path,
               storeText(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_start_time_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_path,
               storeNumber(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_item_path_by_index(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_item_path_by_index,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index(uint32_t index, uint32_t* out) {
    return ask(
            kBrowser, HERE,
            &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_index,
            storeNumber(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index(uint32_t index, uint32_t* out) {
    return ask(
            kBrowser, HERE,
            &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index,
            storeNumber(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_channelname_by_index(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_index,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_duration_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_index,
               storeNumber(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index,
               storeNumber(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_start_time_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_index,
               storeNumber(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_programname_by_index(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_index,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_date_by_index(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_index,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_time_by_index(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_index,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_channelid_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_index,
               storeNumber(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_week_by_index(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_index,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_recording_file_num(uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_num,
               storeNumber(out));
}

int a_qeltvapi_mmp_get_pvr_browser_recording_file_name(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_name,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_item_by_path(const char* path, void* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_path,
               storeRecord(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_item_by_index(uint32_t index, void* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_index,
               storeRecord(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_item_count(uint16_t* out) {
    return ask(kBrowser, HERE, &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_item_count,
               [=](uint16_t count, int32_t code) {
                   *out = count;
                   return code;
               });
}

int a_qeltvapi_mmp_get_pvr_browser_recording_file_info(void* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_info,
               storeRecord(out));
}

int a_qeltvapi_mmp_pvr_browser_delete_file_by_index(uint32_t index) {
    return direct(kBrowser, HERE,
                  &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_pvr_browser_delete_file_by_index,
                  index);
}

int a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path,
               storeNumber(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path,
               storeNumber(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_date_by_path(const char* path, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_date_by_path,
               storeText(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_week_by_path(const char* path, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_path,
               storeText(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_time_by_path(const char* path, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_time_by_path,
               storeText(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_first_rating_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_index,
               storeNumber(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_first_rating_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_path,
               storeNumber(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_retention_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_index,
               storeNumber(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_retention_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_path,
               storeNumber(out), text(path));
}
