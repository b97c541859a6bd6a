/**
 * The EPG: the active window (the channels and the time that a guide shows), the events of a
 * channel by time range or filter, the present and the following event, and the information about
 * one event.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service; 0 after a
 * transport failure, which cannot be distinguished from success: outputs are untouched then. A null
 * pointer where a parameter says "required" gives -1 before the service is fetched. Missing service
 * and null pointer are logged regardless of the debug switch.
 *
 * p1 is the channel and p2 the event; both are service-defined, and so are times. Reference
 * television: p1 is a channel id, p2 an event id, times are seconds since 1970, UTC.
 *
 * Blocks of event information are copied as they are. Where a length is given, the library copies
 * exactly so many bytes, and the service must send at least as many; otherwise it copies all that
 * the service sends, and the buffer must be large enough for the largest block. The content of a
 * block is service-defined, except of ::QELTVAPI_EVENT_COMMON_T. Reference television:
 * layouts/event.h; a block of a given length is padded with zeros, and has at most
 * QELTV_EVENT_BLOCK_MAXIMUM bytes.
 */
#ifndef HW_QELTVAPI_EVENT_H
#define HW_QELTVAPI_EVENT_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_rating_map.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** One entry of the group block. */
typedef struct {
    uint32_t ui4_channel_id; /**< channel id */
    uint16_t ui2_event_id;   /**< event id */
} QELTVAPI_EVENT_COMMON_T;

/** A filter for events; the meaning of its fields is service-defined. */
typedef struct {
    /** service-defined; reference television: length of the window in hours; 0 to the end of
     *  the EPG */
    uint16_t word;
    /** service-defined; reference television: start of the window, seconds since 1970, UTC; 0
     *  for the present time */
    uint32_t value;
    /** service-defined; reference television: text in the title, UTF-8, padded with zeros;
     *  empty for any */
    uint8_t block[16];
    /** sent as 1 unless it is 0; reference television: leaves blocked events out */
    uint8_t flag;
    /** bytes of `list` in use, at most 8: more is not noticed and overruns */
    uint8_t count;
    /** service-defined; reference television: a QELTV_GENRE each; none for all */
    uint8_t list[8];
    /** service-defined; reference television: highest age in years; 0 for any */
    uint8_t last;
} QELTVAPI_EVENT_FILTER_T;

/** Parameters of later queries; the meaning of its fields is service-defined. */
typedef struct {
    /** service-defined; reference television: shortest duration in seconds; 0 for any */
    uint32_t first;
    /** service-defined; reference television: longest duration in seconds; 0 for any */
    uint32_t second;
    /** service-defined; reference television: bit n for QELTV_GENRE n; 0 for all */
    uint32_t third;
    /** two pairs, each byte sent as 1 unless it is 0; reference television: only events
     *  present or to come, only unblocked ones, only ones with subtitles, only ones in high
     *  definition */
    uint8_t flag[4];
} QELTVAPI_EVENT_QUERY_PARAM_T;

/**
 * Registers the callback for changed events, replacing the previous one. It does not register the
 * callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_event_register_callback(qeltvapi_event_nfy_cb_t fn);

/**
 * Sets the channels that the guide shows.
 *
 * @param list the channel ids, 32 bits each; required; reference television: at most 4096
 * @param p2   service-defined; reference television: start of the window, which has three hours
 * @param n    number of channel ids
 * @return the service's code
 */
int a_qeltvapi_event_setCurrentActiveWindow(void* list, int64_t p2, int n);

/**
 * Sets the channels and the time that the guide shows.
 *
 * @param list the channel ids, 32 bits each; required; reference television: at most 4096
 * @param p2   the start of the window
 * @param p3   the end of the window
 * @param n    number of channel ids
 * @return the service's code
 */
int a_qeltvapi_event_setCurrentActiveWindow_Ex(void* list, int64_t p2, int64_t p3, int n);

/**
 * Empties the active window.
 *
 * @return the service's code
 */
int a_qeltvapi_event_clear_active_win(void);

/**
 * Lists the events of a channel within a time range.
 *
 * @param p1  the channel
 * @param p2  first bound of the range
 * @param p3  second bound of the range
 * @param num [in,out] capacity of @p ids in ids, which is sent; then the number of ids that
 *            arrived. Not checked for null
 * @param ids [out] all ids that arrived, not bounded by the buffer's size; required; reference
 *            television: at most the capacity in @p num
 * @return the service's code
 */
int a_qeltvapi_event_query_event_id_by_range(int p1, int64_t p2, int64_t p3, uint16_t* num,
                                             uint16_t* ids);

/**
 * Reads the details text of an event. While debugging, the buffer is traced as a text and must
 * contain a terminated one.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the text, @p len bytes; required; reference television: terminated and padded
 *            with zeros
 * @param len number of bytes to copy, the capacity of @p buf
 * @return the service's code
 */
int a_qeltvapi_event_get_details_info(int p1, int p2, void* buf, int len);

/**
 * Reads the guidance text of an event. While debugging, the buffer is traced as a text and must
 * contain a terminated one.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the text, @p len bytes; required; reference television: terminated and padded
 *            with zeros
 * @param len number of bytes to copy, the capacity of @p buf
 * @return the service's code
 */
int a_qeltvapi_event_get_guidance_info(int p1, int p2, void* buf, int len);

/**
 * Reads the extended details text of an event. While debugging, the buffer is traced as a text and
 * must contain a terminated one.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the text, @p len bytes; required; reference television: terminated and padded
 *            with zeros
 * @param len number of bytes to copy, the capacity of @p buf
 * @return the service's code
 */
int a_qeltvapi_event_get_details_extend_info(int p1, int p2, void* buf, int len);

/**
 * Reports whether an event is blocked.
 *
 * @param p1 the channel
 * @param p2 the event
 * @return 1 or 0; 0 without a service
 */
int a_qeltvapi_event_check_block(int p1, int p2);

/**
 * Counts the channels of the active window.
 *
 * @param num [out] the number of channels; required
 * @return the service's code
 */
int a_qeltvapi_event_get_active_win_channel_num(uint16_t* num);

/**
 * Reads the active window.
 *
 * @param ids   [out] all channel ids that arrived, not bounded by the buffer's size; null to store
 *              none; reference television: at most @p n ids
 * @param n     capacity of @p ids in ids, which is sent; 0 to leave @p ids as it is. While
 *              debugging, so many ids are traced
 * @param start [out] start of the window; may be null
 * @param end   [out] end of the window; may be null
 * @return the service's code
 */
int a_qeltvapi_event_get_active_win_list(uint32_t* ids, int n, int64_t* start, int64_t* end);

/**
 * Finds the present or the following event of a channel.
 *
 * @param p1       the channel
 * @param event_id [out] the event; required
 * @param now      0 for the following event, any other value for the present event
 * @return the service's code
 */
int a_qeltvapi_event_get_pf_event_id(int p1, uint16_t* event_id, int now);

/**
 * Reads the group of an event: a packed array of ::QELTVAPI_EVENT_COMMON_T.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required; reference television: a QELTV_EVENT_COMMON_T for each
 *            episode of the series
 * @param len number of bytes to copy, the capacity of @p buf
 * @return the service's code
 */
int a_qeltvapi_event_get_group_info(int p1, int p2, void* buf, int len);

/**
 * Reads the group of an event, as a_qeltvapi_event_get_group_info() does, whose method it calls.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required; reference television: a QELTV_EVENT_COMMON_T for each
 *            episode of the series
 * @param len number of bytes to copy, the capacity of @p buf
 * @return the service's code
 */
int a_qeltvapi_event_get_series_info(int p1, int p2, void* buf, int len);

/**
 * Reads the rating of an event as display texts.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param out [out] the texts: clear the record before; required
 * @return the service's code
 */
int a_qeltvapi_event_get_rating_map(int p1, int p2, QELTVAPI_RATING_MAP_T* out);

/**
 * Sets the parameters of later queries.
 *
 * @param r the parameters; required
 * @return the service's code
 */
int a_qeltvapi_event_set_query_parameter(const QELTVAPI_EVENT_QUERY_PARAM_T* r);

/**
 * Lists the events that pass a filter.
 *
 * @param p1    the channel; reference television: a channel id, QELTV_EVERY_CHANNEL for every
 *              channel
 * @param f     the filter; not checked for null
 * @param num   [in,out] capacity of @p ids and @p extra, which is sent; then the number of events
 *              that arrived; required
 * @param ids   [out] all ids that arrived, not bounded by the buffer's size; required; reference
 *              television: at most the capacity in @p num
 * @param extra [out] one more value for each id; required; reference television: the channel id
 * @return the service's code
 */
int a_qeltvapi_event_query_event_id_by_filter(int p1, const QELTVAPI_EVENT_FILTER_T* f,
                                              uint16_t* num, uint16_t* ids, uint32_t* extra);

/**
 * Reads the general block of an event.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block, as many bytes as the service sends; required; reference television: a
 *            QELTV_EVENT_GENERAL_T
 * @return the service's code
 */
int a_qeltvapi_event_get_general_info(int p1, int p2, void* buf);

/**
 * Reads the general block of an event, as a_qeltvapi_event_get_general_info() does, whose method it
 * calls.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block, as many bytes as the service sends; required; reference television: a
 *            QELTV_EVENT_GENERAL_T
 * @return the service's code
 */
int a_qeltvapi_event_get_general_info_64(int p1, int p2, void* buf);

/**
 * Reads the rating list of an event.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required; reference television: a QELTV_EVENT_RATING_T for each
 *            rating
 * @param len number of bytes to copy, the capacity of @p buf
 * @return the service's code
 */
int a_qeltvapi_event_get_rating_list(int p1, int p2, void* buf, int len);

/**
 * Reads the content identifiers of an event.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required; reference television: a QELTV_CONTENT_IDENTIFIER_T for each
 *            identifier
 * @param len number of bytes to copy, the capacity of @p buf
 * @return the service's code
 */
int a_qeltvapi_event_get_content_identifier(int p1, int p2, void* buf, int len);

/**
 * Reads the audio components of an event.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required; reference television: a QELTV_AUDIO_COMPONENT_T for each
 *            component
 * @param len number of bytes to copy, the capacity of @p buf
 * @return the service's code
 */
int a_qeltvapi_event_get_audio_comp_info(int p1, int p2, void* buf, int len);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_event_getEventInformation(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_event_getEvent_len(QELTVAPI_ANY_ARGS);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EVENT_H */
