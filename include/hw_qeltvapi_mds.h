/**
 * The metadata service.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_MDS_H
#define HW_QELTVAPI_MDS_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for messages of the metadata service, replacing the previous one. It does
 * not register the callback object with the service; a_qeltvapi_channellist_register_callback(),
 * for example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_mds_reg_msg_callback(qeltvapi_mds_msg_callback_fct_t fn);

/**
 * Sends an operator text to the metadata service.
 *
 * @param s service-defined text, null counts as ""; reference television: name of the operator, 1
 *          to 64 bytes
 * @return the service's code
 */
int a_qeltvapi_mds_fvpMtdtOperator(const char* s);

/**
 * Reads a value as text. While debugging, the text at @p out is traced after the call and must then
 * be terminated: clear the buffer before.
 *
 * @param key   which value, null counts as ""; reference television: "operator", "channel.id",
 *              "channel.name", "channel.number", "application.url", "captions.text" or
 *              "subtitle.text"
 * @param out   [out] the text, without a terminating zero; not bounded by the buffer's size;
 *              reference television: at most @p value bytes
 * @param value service-defined; reference television: capacity of @p out in bytes; a longer text is
 *              refused
 * @return the service's code
 */
int a_qeltvapi_mds_getValue(const char* key, char* out, uint32_t value);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_MDS_H */
