/**
 * Named configuration items of the television: integer values with their ranges, texts,
 * visibility and enabled state, and the notification of changes.
 *
 * Every function but a_qeltvapi_config_reg_callback() asks IQelTvApiConfig and returns -1 when
 * the service is not there and -1 after a lost reply. The missing service is not logged.
 *
 * An item is addressed by its name, a terminated text (null counts as ""); the integer and state
 * functions take a selector before it. The meaning of selectors and flags is the service's.
 */
#ifndef HW_QELTVAPI_CONFIG_H
#define HW_QELTVAPI_CONFIG_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of changed items, in place of the one before. Which items it is
 * told of is up to a_qeltvapi_config_add_value_changed_callback(). Asks no service, and does not
 * ask for the callback object to be registered either (see registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_config_reg_callback(qeltvapi_config_update_nfy_fct_t fn);

/**
 * Reads the range of an integer item.
 *
 * Asks method 0. While debugging, `*out` is traced on every return, so it must then be readable
 * even when the call fails.
 *
 * @param selector passed to the service unchanged
 * @param name     the item
 * @param out      [out] minimum and maximum, packed into one word by the service
 * @return the service's code
 */
int a_qeltvapi_config_get_minmaxvalue(uint32_t selector, const char* name, uint32_t* out);

/**
 * Reads an integer item.
 *
 * Asks method 1. While debugging, `*out` is traced on every return, so it must then be readable
 * even when the call fails.
 *
 * @param selector passed to the service unchanged
 * @param name     the item
 * @param out      [out] the value
 * @return the service's code
 */
int a_qeltvapi_config_get_value(uint32_t selector, const char* name, int32_t* out);

/**
 * Stores an integer item. Asks method 2.
 *
 * @param selector passed to the service unchanged
 * @param name     the item
 * @param value    the new value
 * @param flags    passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_config_set_value(uint32_t selector, const char* name, int32_t value, int32_t flags);

/**
 * Tells whether an item is visible. Asks method 3.
 *
 * @param selector passed to the service unchanged
 * @param name     the item
 * @return the service's answer
 */
int a_qeltvapi_config_is_visible(uint32_t selector, const char* name);

/**
 * Tells whether an item is visible, as a_qeltvapi_config_is_visible() does: it asks method 3 as
 * well, not the enabled state.
 *
 * @param selector passed to the service unchanged
 * @param name     the item
 * @return the service's answer
 */
int a_qeltvapi_config_is_enabled(uint32_t selector, const char* name);

/**
 * Sets items back to their defaults. Asks method 5.
 *
 * @param selector which items; the service decides
 * @return the service's code
 */
int a_qeltvapi_config_reset_values(uint32_t selector);

/**
 * Reads a text item. Asks method 6.
 *
 * @param name the item
 * @param buf  [out] the text, without a terminating zero and whatever the room
 * @param n    [out] the length that the service tells
 * @return the service's code
 */
int a_qeltvapi_config_get_str_value(const char* name, char* buf, uint32_t* n);

/**
 * Stores a text item. Asks method 7.
 *
 * @param name  the item
 * @param value the new text; null counts as ""
 * @return the service's code
 */
int a_qeltvapi_config_set_str_value(const char* name, const char* value);

/**
 * Stores a text item with one more word for the service. Asks method 8.
 *
 * @param name  the item
 * @param value the new text; null counts as ""
 * @param extra passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_config_set_str_value_ex(const char* name, const char* value, uint32_t extra);

/**
 * Asks the service to notify about changes of an item. Asks method 9.
 *
 * @param name the item
 * @return the service's code
 */
int a_qeltvapi_config_add_value_changed_callback(const char* name);

/**
 * Takes back a_qeltvapi_config_add_value_changed_callback(). Asks method 10.
 *
 * @param name the item
 * @return the service's code
 */
int a_qeltvapi_config_remove_value_changed_callback(const char* name);

/**
 * Reads which elements of an item are enabled. Asks method 11.
 *
 * @param selector passed to the service unchanged
 * @param name     the item
 * @param buf      [out] the elements as the service writes them, without a terminating zero and
 *                 whatever the room
 * @param n        [out] the count that the service tells
 * @param v        [out] a second value of the service
 * @return the service's code
 */
int a_qeltvapi_config_get_items_enabled(uint32_t selector, const char* name, char* buf, uint32_t* n,
                                        int32_t* v);

/**
 * Passes two words about the Android side to the service. Asks method 12.
 *
 * @param a passed unchanged
 * @param b passed unchanged
 * @return the service's code
 */
int a_qeltvapi_config_set_android_world_info(uint32_t a, uint32_t b);

/**
 * Reads the video resolution record. Asks method 13.
 *
 * @param buf [out] the record, as many bytes as the service sends
 * @return the service's code
 */
int a_qeltvapi_config_get_video_resolution(void* buf);

/**
 * Stores an integer item for all elements. Asks method 14.
 *
 * @param selector passed to the service unchanged
 * @param name     the item
 * @param value    the new value
 * @param flags    passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_config_set_value_for_all_elems(uint32_t selector, const char* name, int32_t value,
                                              int32_t flags);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CONFIG_H */
