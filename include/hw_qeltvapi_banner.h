/**
 * The items of the channel banner, for applications that draw the banner themselves.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 *
 * Two numbers address an item. Reference television: the page, a QELTV_BANNER_PAGE, and the item, a
 * QELTV_BANNER_ITEM.
 */
#ifndef HW_QELTVAPI_BANNER_H
#define HW_QELTVAPI_BANNER_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for changes of the banner, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_banner_register_callback(qeltvapi_banner_cb_t fn);

/**
 * Reads the display state of an item.
 *
 * @param p1    first number of the item; reference television: a QELTV_BANNER_PAGE
 * @param p2    second number of the item; reference television: a QELTV_BANNER_ITEM
 * @param state [out] the state; reference television: a QELTV_BANNER_STATE
 * @return the service's code
 */
int a_qeltvapi_banner_get_item_state(int p1, int p2, uint8_t* state);

/**
 * Reads the id of an item.
 *
 * @param p1 first number of the item; reference television: a QELTV_BANNER_PAGE
 * @param p2 second number of the item; reference television: a QELTV_BANNER_ITEM
 * @param id [out] the id; reference television: page << 16 | item | QELTV_BANNER_ID_BIT
 * @return the service's code
 */
int a_qeltvapi_banner_get_item_id(int p1, int p2, uint32_t* id);

/**
 * Reads the text of an item. The capacity is only sent to the service, and the text is stored
 * whole: call a_qeltvapi_banner_get_item_content_len() first.
 *
 * @param p1  first number of the item; reference television: a QELTV_BANNER_PAGE
 * @param p2  second number of the item; reference television: a QELTV_BANNER_ITEM
 * @param buf [out] the text, without a terminating zero; not bounded by the buffer's size;
 *            reference television: cut to the capacity in @p len
 * @param len [in,out] capacity of @p buf in bytes; then the length of the text in bytes
 * @return the service's code
 */
int a_qeltvapi_banner_get_item_content(int p1, int p2, char* buf, uint32_t* len);

/**
 * Reads the length of an item's text.
 *
 * @param p1  first number of the item; reference television: a QELTV_BANNER_PAGE
 * @param p2  second number of the item; reference television: a QELTV_BANNER_ITEM
 * @param len [out] the length in bytes
 * @return the service's code
 */
int a_qeltvapi_banner_get_item_content_len(int p1, int p2, uint32_t* len);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_BANNER_H */
