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

}  // namespace

int a_qeltvapi_mmp_get_pvr_browser_channelid_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelid_by_path,
               storeValue(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_channelname_by_path(const char* path, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_path,
               storeText(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_duration_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_path,
               storeValue(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_path,
               storeValue(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_programname_by_path(const char* path, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_programname_by_path,
               storeText(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_start_time_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_path,
               storeValue(out), text(path));
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
            storeValue(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index(uint32_t index, uint32_t* out) {
    return ask(
            kBrowser, HERE,
            &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_index,
            storeValue(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_channelname_by_index(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelname_by_index,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_duration_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_duration_by_index,
               storeValue(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index,
               storeValue(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_start_time_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_start_time_by_index,
               storeValue(out), index);
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
               storeValue(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_week_by_index(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_week_by_index,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_recording_file_num(uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_num,
               storeValue(out));
}

int a_qeltvapi_mmp_get_pvr_browser_recording_file_name(uint32_t index, char* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_name,
               storeText(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_item_by_path(const char* path, void* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_path,
               storeAll(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_item_by_index(uint32_t index, void* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_item_by_index,
               storeAll(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_item_count(uint16_t* out) {
    return ask(kBrowser, HERE, &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_item_count,
               storeValue(out));
}

int a_qeltvapi_mmp_get_pvr_browser_recording_file_info(void* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_recording_file_info,
               storeAll(out));
}

int a_qeltvapi_mmp_pvr_browser_delete_file_by_index(uint32_t index) {
    return direct(kBrowser, HERE,
                  &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_pvr_browser_delete_file_by_index,
                  index);
}

int a_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelmajornumber_by_path,
               storeValue(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_channelminornumber_by_path,
               storeValue(out), text(path));
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
               storeValue(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_first_rating_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_first_rating_by_path,
               storeValue(out), text(path));
}

int a_qeltvapi_mmp_get_pvr_browser_retention_by_index(uint32_t index, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_index,
               storeValue(out), index);
}

int a_qeltvapi_mmp_get_pvr_browser_retention_by_path(const char* path, uint32_t* out) {
    return ask(kBrowser, HERE,
               &IQelTvApiPvrbrowser::a_hidl_qeltvapi_mmp_get_pvr_browser_retention_by_path,
               storeValue(out), text(path));
}
