/**
 * The items of the channel banner, for applications that draw the banner themselves.
 *
 * Every function but a_qeltvapi_banner_register_callback() asks IQelTvApi and returns -1 when the
 * service is not there and -1 after a lost reply. The missing service is not logged.
 *
 * An item is addressed by two numbers; the numbering of banners and items is the service's.
 */
#ifndef HW_QELTVAPI_BANNER_H
#define HW_QELTVAPI_BANNER_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of changes of the banner, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_banner_register_callback(qeltvapi_banner_cb_t fn);

/**
 * Reads the display state of an item. Asks method 97.
 *
 * @param p1    first number of the item
 * @param p2    second number of the item
 * @param state [out] the state, a value of the service
 * @return the service's code
 */
int a_qeltvapi_banner_get_item_state(int p1, int p2, uint8_t* state);

/**
 * Reads the id of an item. Asks method 98.
 *
 * @param p1 first number of the item
 * @param p2 second number of the item
 * @param id [out] the id
 * @return the service's code
 */
int a_qeltvapi_banner_get_item_id(int p1, int p2, uint32_t* id);

/**
 * Reads the text of an item.
 *
 * Asks method 99. The room is only told to the service: the text is stored whole, so ask
 * a_qeltvapi_banner_get_item_content_len() first.
 *
 * @param p1  first number of the item
 * @param p2  second number of the item
 * @param buf [out] the text, without a terminating zero and whatever the room
 * @param len [in] the room at @p buf in bytes, [out] the length of the text in bytes
 * @return the service's code
 */
int a_qeltvapi_banner_get_item_content(int p1, int p2, char* buf, uint32_t* len);

/**
 * Reads the length of an item's text. Asks method 100.
 *
 * @param p1  first number of the item
 * @param p2  second number of the item
 * @param len [out] the length in bytes
 * @return the service's code
 */
int a_qeltvapi_banner_get_item_content_len(int p1, int p2, uint32_t* len);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_BANNER_H */
