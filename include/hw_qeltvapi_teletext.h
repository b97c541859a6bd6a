/**
 * Teletext: the current page, TOP navigation and the rating.
 *
 * Results: the service's code, unless a function says otherwise; 0 without a service and after a
 * transport failure. The missing service is logged regardless of the debug switch, except by
 * a_qeltvapi_teletext_is_top_stream().
 *
 * Tables are stored whole, not bounded by the buffer's size. Reference television: the number of
 * entries in 32 bits, then a QELTV_TOP_ENTRY_T for each, at most QELTV_TOP_ENTRIES (3204 bytes).
 */
#ifndef HW_QELTVAPI_TELETEXT_H
#define HW_QELTVAPI_TELETEXT_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for events of teletext, replacing the previous one. It does not register
 * the callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_teletext_register_msg_callback(qeltvapi_teletext_msg_cb_t fn);

/**
 * Reads the current page.
 *
 * @param out [out] the page, as many bytes as the service sends; reference television: a
 *            QELTV_TELETEXT_PAGE_T
 * @return the service's code
 */
int a_qeltvapi_teletext_get_cur_page(void* out);

/**
 * Sets the current page. Reference television: a page that has not been received is shown when it
 * comes, with a notification.
 *
 * @param page the page record, 32 bits; reference television: page number, 0x100 to 0x8ff, |
 *             subpage << QELTV_TELETEXT_SUBPAGE_SHIFT
 * @return 0, regardless of the service's answer
 */
int a_qeltvapi_teletext_set_page(const uint32_t* page);

/**
 * Reports whether the stream has TOP navigation.
 *
 * @return the service's answer; reference television: 1 or 0
 */
int a_qeltvapi_teletext_is_top_stream(void);

/**
 * Reads the block table.
 *
 * @param out [out] the table, as many bytes as the service sends; reference television: at most
 * 3204 bytes
 * @return the service's code
 */
int a_qeltvapi_teletext_top_get_block_content(void* out);

/**
 * Reads the group table of a page.
 *
 * @param key the page key, 16 bits; reference television: number of the page
 * @param out [out] the table, as many bytes as the service sends; reference television: at most
 * 3204 bytes
 * @return the service's code
 */
int a_qeltvapi_teletext_top_get_group_content(const uint16_t* key, void* out);

/**
 * Reads the page table of a page.
 *
 * @param key the page key, 16 bits; reference television: number of the page
 * @param out [out] the table, as many bytes as the service sends; reference television: at most
 * 3204 bytes
 * @return the service's code
 */
int a_qeltvapi_teletext_top_get_page_content(const uint16_t* key, void* out);

/**
 * Reports whether teletext rating is on.
 *
 * @return the low 8 bits of the service's answer; reference television: 1 or 0
 */
int a_qeltvapi_teletext_get_ttx_rating_on(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_TELETEXT_H */
