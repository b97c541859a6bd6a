// The records cross processes, languages and versions: their sizes and offsets are pinned.
#include "layouts/alert.h"
#include "layouts/channel_ids.h"
#include "layouts/channel_records.h"
#include "layouts/ci.h"
#include "layouts/codes.h"
#include "layouts/config.h"
#include "layouts/event.h"
#include "layouts/presentation.h"
#include "layouts/rating.h"
#include "layouts/record.h"
#include "layouts/scan.h"
#include "layouts/teletext.h"
#include "layouts/time.h"
#include "layouts/upgrade.h"

#include <cstddef>

static_assert(sizeof(QELTV_WARNING_ENTRY_T) == 16);
static_assert(sizeof(QELTV_ALERT_ENTRY_T) == 20);
static_assert(sizeof(channel_record_t) == 396);
static_assert(sizeof(multiplex_record_t) == 628);
static_assert(sizeof(favourite_list_record_t) == 820);
static_assert(sizeof(satellite_record_t) == 276);
static_assert(sizeof(network_record_t) == 304);
static_assert(sizeof(biss_header_t) == 16);
static_assert(sizeof(biss_record_t) == 32);
static_assert(sizeof(channel_query_t) == 12);
static_assert(sizeof(channel_request_t) == 8);
static_assert(sizeof(uart_setting_t) == 16);
static_assert(sizeof(QELTV_EVENT_GENERAL_T) == 136);
static_assert(offsetof(QELTV_EVENT_GENERAL_T, title) == 40);
static_assert(sizeof(QELTV_EVENT_COMMON_T) == 8);
static_assert(sizeof(QELTV_EVENT_RATING_T) == 8);
static_assert(sizeof(QELTV_CONTENT_IDENTIFIER_T) == 64);
static_assert(sizeof(QELTV_AUDIO_COMPONENT_T) == 8);
static_assert(sizeof(QELTV_FREQUENCY_HEAD_T) == 16);
static_assert(sizeof(QELTV_SELECT_CHANNEL_T) == 64);
static_assert(sizeof(QELTV_SELECT_INPUT_T) == 32);
static_assert(sizeof(QELTV_VIDEO_SOURCE_T) == 132);
static_assert(sizeof(QELTV_AUDIO_TRACK_T) == 24);
static_assert(sizeof(QELTV_CONNECTION_T) == 48);
static_assert(sizeof(QELTV_SCREEN_T) == 64);
static_assert(sizeof(QELTV_DATA_RANGE_T) == 16);
static_assert(sizeof(QELTV_OPEN_VCHIP_TABLE_T) == 64);
static_assert(sizeof(QELTV_SCHEDULE_RECORD_T) == 248);
static_assert(offsetof(QELTV_SCHEDULE_RECORD_T, start) == 8);
static_assert(offsetof(QELTV_SCHEDULE_RECORD_T, programme) == 40);
static_assert(sizeof(QELTV_SOURCE_RECORD_T) == 72);
static_assert(sizeof(QELTV_DISK_RECORD_T) == 20);
static_assert(sizeof(QELTV_BROWSER_ITEM_T) == 496);
static_assert(sizeof(QELTV_BROWSER_INFO_T) == 24);
static_assert(sizeof(QELTV_TELETEXT_PAGE_T) == 3012);
static_assert(offsetof(QELTV_TELETEXT_PAGE_T, characters) == 1008);
static_assert(sizeof(QELTV_TOP_ENTRY_T) == 32);
static_assert(sizeof(QELTV_SUBTITLE_ENTRY_T) == 12);
static_assert(sizeof(QELTV_DTG_T) == 10);
static_assert(offsetof(QELTV_DTG_T, flags) == 8);
static_assert(sizeof(QELTV_OPEN_VCHIP_DIMENSION_T) == 12);
static_assert(sizeof(uart_state_t) == 32);
