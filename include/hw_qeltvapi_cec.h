/**
 * The eARC controls of the HDMI audio return channel.
 *
 * The functions ask IQelTvApiCec. The missing service is logged while debugging. A lost reply ends
 * the process in the HIDL runtime's own failure handling.
 */
#ifndef HW_QELTVAPI_CEC_H
#define HW_QELTVAPI_CEC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Asks whether eARC is supported. Asks method 0.
 *
 * @return 1 when it is, else 0; also 0 when the service is not there
 */
int a_qeltvapi_get_earc_caps(void);

/**
 * Switches eARC on or off. Asks method 1.
 *
 * @param flag off when 0, on otherwise
 * @return the service's code; -1 when the service is not there
 */
int a_qeltvapi_set_earc_enable(int flag);

/**
 * Reads a status of eARC. Asks method 2.
 *
 * @param value which status, passed to the service unchanged
 * @return the status, 0 or 1; also 0 when the service is not there
 */
int a_qeltvapi_get_earc_status(uint32_t value);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CEC_H */
