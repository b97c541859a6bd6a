/**
 * The eARC controls of the HDMI audio return channel.
 *
 * Results: each function says what it returns without a service; the missing service is logged
 * while debugging. A transport failure ends the process.
 */
#ifndef HW_QELTVAPI_CEC_H
#define HW_QELTVAPI_CEC_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Reports whether eARC is supported.
 *
 * @return 1 or 0; 0 without a service
 */
int a_qeltvapi_get_earc_caps(void);

/**
 * Switches eARC on or off.
 *
 * @param flag 0 for off, any other value for on
 * @return the service's code; -1 without a service
 */
int a_qeltvapi_set_earc_enable(int flag);

/**
 * Reads a status of eARC.
 *
 * @param value service-defined; reference television: a QELTV_EARC_STATUS
 * @return the status, 0 or 1; 0 without a service
 */
int a_qeltvapi_get_earc_status(uint32_t value);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_CEC_H */
