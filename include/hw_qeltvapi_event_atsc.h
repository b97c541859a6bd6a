/**
 * The programme guide of ATSC broadcasts, organised by event information table (EIT).
 *
 * Every function asks IQelTvApi and returns -1 when the service is not there and -1 after a lost
 * reply, except the register function and the three that are kept for old callers. The missing
 * service is not logged. No pointer is tested for null.
 *
 * The meaning of the numbers that address channels, tables and events is the service's.
 */
#ifndef HW_QELTVAPI_EVENT_ATSC_H
#define HW_QELTVAPI_EVENT_ATSC_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_rating_map.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** An unsigned 64-bit field that is aligned to 4 bytes, on every machine. */
typedef uint64_t qeltvapi_packed_u64_t __attribute__((aligned(4)));

/**
 * General information of an event. The numbers in the names are offsets in bytes, in a 32-bit
 * process; the meaning of the integers is the service's. The texts are padded with zeros and not
 * terminated when they fill their field.
 */
typedef struct {
    uint16_t ui2_at_0;               /**< integer */
    uint32_t ui4_at_4;               /**< integer */
    uint16_t ui2_at_8;               /**< integer */
    qeltvapi_packed_u64_t ui8_at_12; /**< integer */
    qeltvapi_packed_u64_t ui8_at_20; /**< integer */
    uint8_t ui1_at_28;               /**< integer */
    uint16_t ui2_at_30;              /**< integer */
    char s_at_32[256];               /**< first text */
    uint16_t ui2_at_288;             /**< integer */
    char* ps_at_292;                 /**< the caller's 20 bytes for the second text, or null */
    char s_at_296[32];               /**< third text */
} QELTVAPI_EVENT_ATSC_INFO_T;

/**
 * Sets the function that is told of changes of ATSC events, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_event_atsc_register_callback(qeltvapi_event_atsc_cb_t fn);

/**
 * Loads the events of a channel for a span of time. Asks method 135.
 *
 * @param p1  first number, passed to the service unchanged
 * @param p2  second number, passed to the service unchanged
 * @param p3  third number, passed to the service unchanged
 * @param ids [out] ids of the events, all that the service sends
 * @return the service's code
 */
int a_qeltvapi_event_atsc_load_events(int p1, int64_t p2, int p3, int32_t* ids);

/**
 * Reads the detail text of an event. Asks method 136.
 *
 * @param p1  the event
 * @param buf [out] the text, without a terminating zero and whatever the room
 * @param p3  passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_event_atsc_get_details_info(int p1, char* buf, int p3);

/**
 * Frees a loaded event. Asks method 137.
 *
 * @param p1 the event
 * @return the service's code
 */
int a_qeltvapi_event_atsc_freeEvent(int p1);

/**
 * Loads the events of one table. Asks method 139.
 *
 * @param p1  first number, passed to the service unchanged
 * @param p2  second number, passed to the service unchanged
 * @param num [out] how many events were loaded
 * @return the service's code
 */
int a_qeltvapi_event_atsc_load_events_by_EIT(int p1, int p2, uint32_t* num);

/**
 * Counts the events of one table. Asks method 140.
 *
 * @param p1  the table
 * @param num [out] number of events
 * @return the service's code
 */
int a_qeltvapi_event_atsc_get_event_number_in_EIT(int p1, uint32_t* num);

/**
 * Reads the detail text of an event by its index.
 *
 * Asks method 141. The room is only told to the service: ask
 * a_qeltvapi_event_atsc_getEvent_detail_len_by_index() first.
 *
 * @param p1  first number, passed to the service unchanged
 * @param p2  second number, passed to the service unchanged
 * @param buf [out] the text, without a terminating zero and whatever the room
 * @param len the room at @p buf in bytes
 * @return the service's code
 */
int a_qeltvapi_event_atsc_get_detail_info_by_index(int p1, int p2, char* buf, int len);

/**
 * Reads the status of a table. Asks method 142.
 *
 * @param p1     first number, passed to the service unchanged
 * @param list   [out] entries of 4 bytes, as many as the service counts, at most 255
 * @param p3     third number, passed to the service unchanged
 * @param status [out] the status
 * @return the service's code
 */
int a_qeltvapi_event_atsc_check_EIT_status(int p1, uint32_t* list, int p3, int32_t* status);

/**
 * Reads the length of an event's detail text by the event's index. Asks method 143.
 *
 * @param p1  first number, passed to the service unchanged
 * @param p2  second number, passed to the service unchanged
 * @param len [out] the length in bytes
 * @return the service's code
 */
int a_qeltvapi_event_atsc_getEvent_detail_len_by_index(int p1, int p2, uint32_t* len);

/**
 * Reads the general information of an event. Asks method 144.
 *
 * @param p1  the event
 * @param out [out] the information; set its pointer before the call, to null for no second text
 * @return the service's code
 */
int a_qeltvapi_event_atsc_getEvent_general(int p1, QELTVAPI_EVENT_ATSC_INFO_T* out);

/**
 * Reads the general information of an event by its index. Asks method 145.
 *
 * @param p1  first number, passed to the service unchanged
 * @param p2  second number, passed to the service unchanged
 * @param out [out] the information; set its pointer before the call, to null for no second text
 * @return the service's code
 */
int a_qeltvapi_event_atsc_getEvent_general_by_index(int p1, int p2,
                                                    QELTVAPI_EVENT_ATSC_INFO_T* out);

/**
 * Reads the rating of an event by its index.
 *
 * Asks method 161. Unlike in the other families each text is stored whole and not padded: one
 * that is longer than its field runs into what follows.
 *
 * @param p1  first number, passed to the service unchanged
 * @param p2  second number, passed to the service unchanged
 * @param out [out] the texts, without terminating zeros; clear the record before
 * @return the service's code
 */
int a_qeltvapi_event_atsc_get_rating_map_by_index(int p1, int p2, QELTVAPI_RATING_MAP_T* out);

/**
 * Kept for old callers: takes any arguments, does nothing.
 *
 * @return 0
 */
int a_qeltvapi_event_atsc_getEvent_general_64(QELTVAPI_ANY_ARGS);

/**
 * Kept for old callers: takes any arguments, does nothing.
 *
 * @return 0
 */
int a_qeltvapi_event_atsc_getEvent_general_by_index_64(QELTVAPI_ANY_ARGS);

/**
 * Kept for old callers: takes any arguments, does nothing.
 *
 * @return 0
 */
int a_qeltvapi_event_atsc_check_block(QELTVAPI_ANY_ARGS);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EVENT_ATSC_H */
