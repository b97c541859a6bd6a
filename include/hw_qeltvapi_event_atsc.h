/**
 * The EPG of ATSC broadcasts, organised by event information table (EIT).
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged. Pointers are not checked for null.
 *
 * The numbers that address channels, tables and events are service-defined. Reference television:
 * event ids are those that a load returns and stay valid until a_qeltvapi_event_atsc_freeEvent();
 * tables are numbered from 0, the present one, to 55, and the functions by index use a table that
 * is loaded.
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
 * process. The texts are padded with zeros and not terminated if they fill their field.
 */
typedef struct {
    uint16_t ui2_at_0; /**< service-defined; reference television: event id */
    uint32_t ui4_at_4; /**< service-defined; reference television: channel id */
    uint16_t ui2_at_8; /**< service-defined; reference television: number of the table */
    /** service-defined; reference television: start, seconds since 1970, UTC */
    qeltvapi_packed_u64_t ui8_at_12;
    qeltvapi_packed_u64_t
            ui8_at_20;  /**< service-defined; reference television: duration in seconds */
    uint8_t ui1_at_28;  /**< service-defined; reference television: a QELTV_GENRE */
    uint16_t ui2_at_30; /**< service-defined; reference television: QELTV_EVENT_FLAG bits */
    char s_at_32[256];  /**< service-defined; reference television: title */
    /** service-defined; reference television: length of the details in bytes */
    uint16_t ui2_at_288;
    /** the caller's 20 bytes for the second text, or null; reference television: label of the
     *  rating */
    char* ps_at_292;
    char s_at_296[32]; /**< service-defined; reference television: language, ISO 639-2 */
} QELTVAPI_EVENT_ATSC_INFO_T;

/**
 * Registers the callback for changes of ATSC events, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_event_atsc_register_callback(qeltvapi_event_atsc_cb_t fn);

/**
 * Loads the events of a channel for a span of time.
 *
 * @param p1  service-defined; reference television: channel id
 * @param p2  service-defined; reference television: start of the span, seconds since 1970, UTC
 * @param p3  service-defined; reference television: length of the span in seconds, above 0
 * @param ids [out] ids of the events, all that the service sends, not bounded by the buffer's size;
 *            reference television: at most QELTV_ATSC_LIST_MAXIMUM
 * @return the service's code
 */
int a_qeltvapi_event_atsc_load_events(int p1, int64_t p2, int p3, int32_t* ids);

/**
 * Reads the detail text of an event.
 *
 * @param p1  event id
 * @param buf [out] the text, without a terminating zero; not bounded by the buffer's size;
 *            reference television: at most @p p3 bytes
 * @param p3  service-defined; reference television: capacity of @p buf in bytes; a longer text is
 *            cut
 * @return the service's code
 */
int a_qeltvapi_event_atsc_get_details_info(int p1, char* buf, int p3);

/**
 * Frees a loaded event.
 *
 * @param p1 event id
 * @return the service's code
 */
int a_qeltvapi_event_atsc_freeEvent(int p1);

/**
 * Loads the events of one table.
 *
 * @param p1  service-defined; reference television: channel id
 * @param p2  service-defined; reference television: number of the table
 * @param num [out] number of loaded events
 * @return the service's code
 */
int a_qeltvapi_event_atsc_load_events_by_EIT(int p1, int p2, uint32_t* num);

/**
 * Counts the events of one table.
 *
 * @param p1  number of the table
 * @param num [out] number of events
 * @return the service's code
 */
int a_qeltvapi_event_atsc_get_event_number_in_EIT(int p1, uint32_t* num);

/**
 * Reads the detail text of an event by its index. The capacity is only sent to the service, and the
 * text is stored whole: call a_qeltvapi_event_atsc_getEvent_detail_len_by_index() first.
 *
 * @param p1  service-defined; reference television: number of the table
 * @param p2  service-defined; reference television: index of the event in the table, from 0
 * @param buf [out] the text, without a terminating zero; not bounded by the buffer's size;
 *            reference television: cut to @p len bytes
 * @param len the buffer's size at @p buf in bytes
 * @return the service's code
 */
int a_qeltvapi_event_atsc_get_detail_info_by_index(int p1, int p2, char* buf, int len);

/**
 * Reads the status of a table.
 *
 * @param p1     service-defined; reference television: channel id
 * @param list   [out] entries of 4 bytes, as many as the service counts, at most 255; reference
 *               television: an entry for each table from 0, number of its events and
 *               QELTV_EIT_LOADED
 * @param p3     service-defined; reference television: number of tables, at most QELTV_EIT_TABLES
 * @param status [out] the status; reference television: a QELTV_EIT_STATUS
 * @return the service's code
 */
int a_qeltvapi_event_atsc_check_EIT_status(int p1, uint32_t* list, int p3, int32_t* status);

/**
 * Reads the length of an event's detail text by the event's index.
 *
 * @param p1  service-defined; reference television: number of the table
 * @param p2  service-defined; reference television: index of the event in the table, from 0
 * @param len [out] the length in bytes
 * @return the service's code
 */
int a_qeltvapi_event_atsc_getEvent_detail_len_by_index(int p1, int p2, uint32_t* len);

/**
 * Reads the general information of an event.
 *
 * @param p1  event id
 * @param out [out] the information; set its pointer before the call, to null for no second text
 * @return the service's code
 */
int a_qeltvapi_event_atsc_getEvent_general(int p1, QELTVAPI_EVENT_ATSC_INFO_T* out);

/**
 * Reads the general information of an event by its index.
 *
 * @param p1  service-defined; reference television: number of the table
 * @param p2  service-defined; reference television: index of the event in the table, from 0
 * @param out [out] the information; set its pointer before the call, to null for no second text
 * @return the service's code
 */
int a_qeltvapi_event_atsc_getEvent_general_by_index(int p1, int p2,
                                                    QELTVAPI_EVENT_ATSC_INFO_T* out);

/**
 * Reads the rating of an event by its index. Unlike in the other families each text is stored whole
 * and not padded: a text that is longer than its field continues in what follows.
 *
 * @param p1  service-defined; reference television: number of the table
 * @param p2  service-defined; reference television: index of the event in the table, from 0
 * @param out [out] the texts, without terminating zeros: clear the record before
 * @return the service's code
 */
int a_qeltvapi_event_atsc_get_rating_map_by_index(int p1, int p2, QELTVAPI_RATING_MAP_T* out);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_event_atsc_getEvent_general_64(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_event_atsc_getEvent_general_by_index_64(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_event_atsc_check_block(QELTVAPI_ANY_ARGS);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_EVENT_ATSC_H */
