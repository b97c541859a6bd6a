/**
 * Data exchange with the HTML agent.
 */
#ifndef HW_QELTVAPI_HTML_AGENT_H
#define HW_QELTVAPI_HTML_AGENT_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Sets the function that is told of messages of the agent, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_html_agent_reg_callback(qeltvapi_html_agent_callback_fct_t fn);

/**
 * Sends words to the agent and takes its reply. Asks method 248 of IQelTvApi.
 *
 * @param data  [in] the words, [out] the reply, cut to the size of what was sent; a shorter one
 *              leaves the rest as it is
 * @param count number of 32-bit words at @p data; when their size in bytes is 0 in 32 bits,
 *              nothing is asked and a line is logged, whatever the debug switch
 * @return the service's code; -1 for a size of 0, when the service is not there (which is not
 *         logged) and after a lost reply
 */
int a_qeltvapi_html_agent_exchange_data(void* data, uint32_t count);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_HTML_AGENT_H */
