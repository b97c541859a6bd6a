/**
 * Named configuration items of the television: integer values with their ranges, texts, visibility
 * and enabled state, and the notification of changes.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 *
 * A name addresses an item, a terminated text, null counts as ""; the integer and state functions
 * take a selector before it. Selectors and flags are service-defined. Reference television: the
 * selector is the item's group, QELTV_CONFIG_PICTURE to QELTV_CONFIG_NETWORK, or
 * QELTV_CONFIG_ANY_GROUP; the flag QELTV_CONFIG_QUIET sets without a notification.
 */
#ifndef HW_QELTVAPI_CONFIG_H
#define HW_QELTVAPI_CONFIG_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for changed items, replacing the previous one.
 * a_qeltvapi_config_add_value_changed_callback() selects the items. It does not register the
 * callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_config_reg_callback(qeltvapi_config_update_nfy_fct_t fn);

/**
 * Reads the range of an integer item. While debugging, `*out` is traced on every return and must
 * then be readable even if the call fails.
 *
 * @param selector service-defined; reference television: group of the item, or
 *                 QELTV_CONFIG_ANY_GROUP
 * @param name     the item
 * @param out      [out] minimum and maximum, packed into one word by the service; reference
 *                 television: each 16 bits with a sign, the minimum in the low half
 * @return the service's code
 */
int a_qeltvapi_config_get_minmaxvalue(uint32_t selector, const char* name, uint32_t* out);

/**
 * Reads an integer item. While debugging, `*out` is traced on every return and must then be
 * readable even if the call fails.
 *
 * @param selector service-defined; reference television: group of the item, or
 *                 QELTV_CONFIG_ANY_GROUP
 * @param name     the item
 * @param out      [out] the value
 * @return the service's code
 */
int a_qeltvapi_config_get_value(uint32_t selector, const char* name, int32_t* out);

/**
 * Stores an integer item.
 *
 * @param selector service-defined; reference television: group of the item, or
 *                 QELTV_CONFIG_ANY_GROUP
 * @param name     the item
 * @param value    the new value
 * @param flags    service-defined; reference television: QELTV_CONFIG_QUIET, else 0
 * @return the service's code
 */
int a_qeltvapi_config_set_value(uint32_t selector, const char* name, int32_t value, int32_t flags);

/**
 * Reports whether an item is visible.
 *
 * @param selector service-defined; reference television: group of the item, or
 *                 QELTV_CONFIG_ANY_GROUP
 * @param name     the item
 * @return the service's answer; reference television: 1 or 0
 */
int a_qeltvapi_config_is_visible(uint32_t selector, const char* name);

/**
 * Reports whether an item is visible, as a_qeltvapi_config_is_visible() does, whose method it
 * calls: it does not report the enabled state.
 *
 * @param selector service-defined; reference television: group of the item, or
 *                 QELTV_CONFIG_ANY_GROUP
 * @param name     the item
 * @return the service's answer; reference television: 1 or 0
 */
int a_qeltvapi_config_is_enabled(uint32_t selector, const char* name);

/**
 * Resets items to their defaults.
 *
 * @param selector which items; reference television: a group, 0 for all
 * @return the service's code
 */
int a_qeltvapi_config_reset_values(uint32_t selector);

/**
 * Reads a text item.
 *
 * @param name the item
 * @param buf  [out] the text, without a terminating zero; not bounded by the buffer's size;
 *             reference television: at most 4095 bytes
 * @param n    [out] length of the text in bytes, as the service sends it
 * @return the service's code
 */
int a_qeltvapi_config_get_str_value(const char* name, char* buf, uint32_t* n);

/**
 * Stores a text item.
 *
 * @param name  the item
 * @param value the new text, null counts as ""; reference television: at most 4095 bytes
 * @return the service's code
 */
int a_qeltvapi_config_set_str_value(const char* name, const char* value);

/**
 * Stores a text item, with one more word for the service.
 *
 * @param name  the item
 * @param value the new text, null counts as ""; reference television: at most 4095 bytes
 * @param extra service-defined; reference television: QELTV_CONFIG_QUIET, else 0
 * @return the service's code
 */
int a_qeltvapi_config_set_str_value_ex(const char* name, const char* value, uint32_t extra);

/**
 * Requests notifications of changes of an item.
 *
 * @param name the item
 * @return the service's code
 */
int a_qeltvapi_config_add_value_changed_callback(const char* name);

/**
 * Ends the notifications of a_qeltvapi_config_add_value_changed_callback().
 *
 * @param name the item
 * @return the service's code
 */
int a_qeltvapi_config_remove_value_changed_callback(const char* name);

/**
 * Reads which elements of an item are enabled.
 *
 * @param selector service-defined; reference television: group of the item, or
 *                 QELTV_CONFIG_ANY_GROUP
 * @param name     the item
 * @param buf      [out] the elements as the service writes them, without a terminating zero; not
 *                 bounded by the buffer's size; reference television: '1' or '0' for each value of
 *                 the item's range
 * @param n        [out] number of elements that the service sends
 * @param v        [out] service-defined; reference television: the item's value
 * @return the service's code
 */
int a_qeltvapi_config_get_items_enabled(uint32_t selector, const char* name, char* buf, uint32_t* n,
                                        int32_t* v);

/**
 * Sends two words about the Android side to the service.
 *
 * @param a, b service-defined; reference television: any value, which is only kept
 * @return the service's code
 */
int a_qeltvapi_config_set_android_world_info(uint32_t a, uint32_t b);

/**
 * Reads the video resolution record.
 *
 * @param buf [out] the record, as many bytes as the service sends; reference television: four
 *            32-bit words: width and height in pixels, frames per second times 1000, 1 for
 *            interlaced; zeros without video
 * @return the service's code
 */
int a_qeltvapi_config_get_video_resolution(void* buf);

/**
 * Stores an integer item for all elements.
 *
 * @param selector service-defined; reference television: group of the item, or
 *                 QELTV_CONFIG_ANY_GROUP
 * @param name     the item
 * @param value    the new value
 * @param flags    service-defined; reference television: QELTV_CONFIG_QUIET, else 0
 * @return the service's code
 */
int a_qeltvapi_config_set_value_for_all_elems(uint32_t selector, const char* name, int32_t value,
                                              int32_t flags);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CONFIG_H */
