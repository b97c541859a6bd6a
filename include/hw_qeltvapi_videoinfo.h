/**
 * Video information: generic values and data blocks, and notification of changes.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_VIDEOINFO_H
#define HW_QELTVAPI_VIDEOINFO_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for changed video information, replacing the previous one, and requests
 * the registration of the callback object with the service.
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_videoinfo_reg_common_nfy(qeltvapi_video_common_nfy_fct_t fn);

/**
 * Sets a video value.
 *
 * @param id    service-defined; reference television: a QELTV_VIDEO_VALUE that is not read only
 * @param value the value; reference television: range by @p id
 * @return the service's code
 */
int a_qeltvapi_videoinfo_set_value(int32_t id, int32_t value);

/**
 * Reads a video value.
 *
 * @param id    service-defined; reference television: a QELTV_VIDEO_VALUE
 * @param value [out] the value
 * @return the service's code
 */
int a_qeltvapi_videoinfo_get_value(int32_t id, uint32_t* value);

/**
 * Sets a video data block.
 *
 * @param id   service-defined; reference television: a QELTV_VIDEO_DATA; only QELTV_VIDEO_DATA_USER
 *             can be set
 * @param data the block; reference television: at most QELTV_VIDEO_DATA_USER_SIZE bytes
 * @param len  size of the block in bytes
 * @return the service's code
 */
int a_qeltvapi_videoinfo_set_data(int32_t id, const void* data, int32_t len);

/**
 * Reads a video data block.
 *
 * @param id  which block; block 4, the data range, starts with four 32-bit words, which are traced
 *            while debugging; reference television: a QELTV_VIDEO_DATA
 * @param buf [in,out] the request, sent as it stands; then the block, as many bytes as the service
 *            sends, not bounded by @p len; reference television: at most @p len bytes
 * @param len size of the request in bytes
 * @return the service's code
 */
int a_qeltvapi_videoinfo_get_data(int32_t id, void* buf, int32_t len);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_VIDEOINFO_H */
