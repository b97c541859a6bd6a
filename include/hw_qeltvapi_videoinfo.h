/**
 * Video information: generic values and data blocks, and notification of changes.
 *
 * The functions ask IQelTvApi, but for the registration, and return -1 when the service is not
 * there and -1 after a lost reply. The missing service is not logged. Ids and layouts are the
 * service's.
 */
#ifndef HW_QELTVAPI_VIDEOINFO_H
#define HW_QELTVAPI_VIDEOINFO_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of changed video information, in place of the one before, and
 * asks for the callback object to be registered (see registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_videoinfo_reg_common_nfy(qeltvapi_video_common_nfy_fct_t fn);

/**
 * Sets a video value. Asks method 244.
 *
 * @param id    which one
 * @param value the value
 * @return the service's code
 */
int a_qeltvapi_videoinfo_set_value(int32_t id, int32_t value);

/**
 * Reads a video value. Asks method 245.
 *
 * @param id    which one
 * @param value [out] the value
 * @return the service's code
 */
int a_qeltvapi_videoinfo_get_value(int32_t id, uint32_t* value);

/**
 * Sets a video data block. Asks method 246.
 *
 * @param id   which one
 * @param data the block
 * @param len  its length in bytes
 * @return the service's code
 */
int a_qeltvapi_videoinfo_set_data(int32_t id, const void* data, int32_t len);

/**
 * Reads a video data block. Asks method 247.
 *
 * @param id  which one; block 4, the data range, starts with four 32-bit words, which are traced
 *            while debugging
 * @param buf [in,out] the request, sent as it stands; then the block, as many bytes as the
 *            service sends, whatever `len`
 * @param len length of the request in bytes
 * @return the service's code
 */
int a_qeltvapi_videoinfo_get_data(int32_t id, void* buf, int32_t len);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_VIDEOINFO_H */
