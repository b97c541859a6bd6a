/**
 * Teletext: the current page, TOP navigation and the rating.
 *
 * Every function but a_qeltvapi_teletext_register_msg_callback() asks IQelTvApi and returns 0 when
 * the service is not there and 0 after a lost reply. The missing service is always logged, except
 * by a_qeltvapi_teletext_is_top_stream().
 *
 * The layout of page record, page key and tables is the service's. The tables are stored whole,
 * whatever the room: size the buffer for the largest one.
 */
#ifndef HW_QELTVAPI_TELETEXT_H
#define HW_QELTVAPI_TELETEXT_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of events of teletext, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_teletext_register_msg_callback(qeltvapi_teletext_msg_cb_t fn);

/**
 * Reads the current page. Asks method 231.
 *
 * @param out [out] the page record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_teletext_get_cur_page(void* out);

/**
 * Sets the current page. Asks method 232.
 *
 * @param page the page record, 32 bits
 * @return 0, whatever the service answers
 */
int a_qeltvapi_teletext_set_page(const uint32_t* page);

/**
 * Asks whether the stream carries TOP navigation. Asks method 233.
 *
 * @return the service's answer
 */
int a_qeltvapi_teletext_is_top_stream(void);

/**
 * Reads the block table. Asks method 234.
 *
 * @param out [out] the table, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_teletext_top_get_block_content(void* out);

/**
 * Reads the group table of a page. Asks method 235.
 *
 * @param key the page key, 16 bits
 * @param out [out] the table, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_teletext_top_get_group_content(const uint16_t* key, void* out);

/**
 * Reads the page table of a page. Asks method 236.
 *
 * @param key the page key, 16 bits
 * @param out [out] the table, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_teletext_top_get_page_content(const uint16_t* key, void* out);

/**
 * Asks whether teletext rating is on. Asks method 237.
 *
 * @return the low 8 bits of the service's answer
 */
int a_qeltvapi_teletext_get_ttx_rating_on(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_TELETEXT_H */
