/**
 * The programme guide: the active window (the channels and the time that a guide shows), the
 * events of a channel by time range or filter, the present and the following event, and what is
 * known of one event.
 *
 * Every function but a_qeltvapi_event_register_callback() and the two inert ones at the end asks
 * IQelTvApiEvent. A null pointer that its @param calls required gives -1 before the service is
 * looked for, and is logged. When the service is not there the result is -1, which is logged too;
 * both lines are written whatever the debug switch. A lost reply gives 0, so an output must be
 * looked at with care: it is untouched then.
 *
 * p1 names the channel and p2 the event; both pass to the service unchanged, as the times do.
 *
 * Blocks of event information are copied raw. Where a length is given the library copies exactly
 * that many bytes, and the service must send at least as many; otherwise it copies all that is
 * sent, and the caller must have room for the largest. What a block holds is the service's,
 * except for ::QELTVAPI_EVENT_COMMON_T.
 */
#ifndef HW_QELTVAPI_EVENT_H
#define HW_QELTVAPI_EVENT_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_rating_map.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** One entry of the group block. */
typedef struct {
    uint32_t ui4_channel_id;
    uint16_t ui2_event_id;
} QELTVAPI_EVENT_COMMON_T;

/** A filter for events; the meaning of its fields is the service's. */
typedef struct {
    uint16_t word;
    uint32_t value;
    uint8_t block[16];
    uint8_t flag;  /**< sent as 1 when not 0 */
    uint8_t count; /**< bytes of `list` in use, at most 8: more is not noticed and overruns */
    uint8_t list[8];
    uint8_t last;
} QELTVAPI_EVENT_FILTER_T;

/** Parameters of later queries; the meaning of its fields is the service's. */
typedef struct {
    uint32_t first;
    uint32_t second;
    uint32_t third;
    uint8_t flag[4]; /**< two pairs, each byte sent as 1 when not 0 */
} QELTVAPI_EVENT_QUERY_PARAM_T;

/**
 * Sets the function that is told of changed events, in place of the one before. Asks no service,
 * and does not ask for the callback object to be registered either.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_event_register_callback(qeltvapi_event_nfy_cb_t fn);

/**
 * Tells the service which channels the guide shows. Asks method 0.
 *
 * @param list the channel ids, 32 bits each; required
 * @param p2   the time of the window
 * @param n    the number of ids
 * @return the service's code
 */
int a_qeltvapi_event_setCurrentActiveWindow(void* list, int64_t p2, int n);

/**
 * Tells the service which channels the guide shows and from when to when. Asks method 1.
 *
 * @param list the channel ids, 32 bits each; required
 * @param p2   the start of the window
 * @param p3   the end of the window
 * @param n    the number of ids
 * @return the service's code
 */
int a_qeltvapi_event_setCurrentActiveWindow_Ex(void* list, int64_t p2, int64_t p3, int n);

/**
 * Empties the active window. Asks method 2.
 *
 * @return the service's code
 */
int a_qeltvapi_event_clear_active_win(void);

/**
 * Lists the events of a channel within a time range. Asks method 3.
 *
 * @param p1  the channel
 * @param p2  first bound of the range
 * @param p3  second bound of the range
 * @param num [in, out] room in `ids`, which is sent; then the number of ids that came. Not tested
 *            for null
 * @param ids [out] as many ids as came, even beyond the room; required
 * @return the service's code
 */
int a_qeltvapi_event_query_event_id_by_range(int p1, int64_t p2, int64_t p3, uint16_t* num,
                                             uint16_t* ids);

/**
 * Reads the details text of an event. Asks method 4. While debugging, the buffer is traced as a
 * text and must hold a terminated one.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the text; required
 * @param len bytes to copy
 * @return the service's code
 */
int a_qeltvapi_event_get_details_info(int p1, int p2, void* buf, int len);

/**
 * Reads the guidance text of an event. Asks method 5. While debugging, the buffer is traced as a
 * text and must hold a terminated one.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the text; required
 * @param len bytes to copy
 * @return the service's code
 */
int a_qeltvapi_event_get_guidance_info(int p1, int p2, void* buf, int len);

/**
 * Reads the extended details text of an event. Asks method 6. While debugging, the buffer is
 * traced as a text and must hold a terminated one.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the text; required
 * @param len bytes to copy
 * @return the service's code
 */
int a_qeltvapi_event_get_details_extend_info(int p1, int p2, void* buf, int len);

/**
 * Tells whether an event is blocked. Asks method 7.
 *
 * @param p1 the channel
 * @param p2 the event
 * @return 1 or 0; 0 also when the service is not there
 */
int a_qeltvapi_event_check_block(int p1, int p2);

/**
 * Counts the channels of the active window. Asks method 8.
 *
 * @param num [out] the number of channels; required
 * @return the service's code
 */
int a_qeltvapi_event_get_active_win_channel_num(uint16_t* num);

/**
 * Reads the active window. Asks method 9.
 *
 * @param ids   [out] all channel ids that came, whatever the room; nothing when null
 * @param n     room in `ids`, which is sent; 0 to leave `ids` alone. While debugging, so many ids
 *              are traced
 * @param start [out] start of the window; may be null
 * @param end   [out] end of the window; may be null
 * @return the service's code
 */
int a_qeltvapi_event_get_active_win_list(uint32_t* ids, int n, int64_t* start, int64_t* end);

/**
 * Finds the present or the following event of a channel. Asks method 10.
 *
 * @param p1       the channel
 * @param event_id [out] the event; required
 * @param now      0 for the following event, any other value for the present one
 * @return the service's code
 */
int a_qeltvapi_event_get_pf_event_id(int p1, uint16_t* event_id, int now);

/**
 * Reads the group of an event: a packed array of ::QELTVAPI_EVENT_COMMON_T. Asks method 11.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required
 * @param len bytes to copy
 * @return the service's code
 */
int a_qeltvapi_event_get_group_info(int p1, int p2, void* buf, int len);

/**
 * Reads the series information of an event. Asks method 11 as well, so that the block is that of
 * a_qeltvapi_event_get_group_info().
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required
 * @param len bytes to copy
 * @return the service's code
 */
int a_qeltvapi_event_get_series_info(int p1, int p2, void* buf, int len);

/**
 * Reads the rating of an event as display texts. Asks method 13.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param out [out] the texts; to be cleared before; required
 * @return the service's code
 */
int a_qeltvapi_event_get_rating_map(int p1, int p2, QELTVAPI_RATING_MAP_T* out);

/**
 * Sets the parameters of later queries. Asks method 14.
 *
 * @param r the parameters; required
 * @return the service's code
 */
int a_qeltvapi_event_set_query_parameter(const QELTVAPI_EVENT_QUERY_PARAM_T* r);

/**
 * Lists the events that pass a filter. Asks method 15.
 *
 * @param p1    the channel
 * @param f     the filter; not tested for null
 * @param num   [in, out] room in `ids` and `extra`, which is sent; then the number of events that
 *              came; required
 * @param ids   [out] as many ids as came, even beyond the room; required
 * @param extra [out] one more value for each id; required
 * @return the service's code
 */
int a_qeltvapi_event_query_event_id_by_filter(int p1, const QELTVAPI_EVENT_FILTER_T* f,
                                              uint16_t* num, uint16_t* ids, uint32_t* extra);

/**
 * Reads the general block of an event. Asks method 16.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block, as many bytes as come; required
 * @return the service's code
 */
int a_qeltvapi_event_get_general_info(int p1, int p2, void* buf);

/**
 * The same as a_qeltvapi_event_get_general_info(), method 16 included.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block, as many bytes as come; required
 * @return the service's code
 */
int a_qeltvapi_event_get_general_info_64(int p1, int p2, void* buf);

/**
 * Reads the rating list of an event. Asks method 17.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required
 * @param len bytes to copy
 * @return the service's code
 */
int a_qeltvapi_event_get_rating_list(int p1, int p2, void* buf, int len);

/**
 * Reads the content identifiers of an event. Asks method 18.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required
 * @param len bytes to copy
 * @return the service's code
 */
int a_qeltvapi_event_get_content_identifier(int p1, int p2, void* buf, int len);

/**
 * Reads what is known of the audio components of an event. Asks method 19.
 *
 * @param p1  the channel
 * @param p2  the event
 * @param buf [out] the block; required
 * @param len bytes to copy
 * @return the service's code
 */
int a_qeltvapi_event_get_audio_comp_info(int p1, int p2, void* buf, int len);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_event_getEventInformation(QELTVAPI_ANY_ARGS);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_event_getEvent_len(QELTVAPI_ANY_ARGS);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EVENT_H */
