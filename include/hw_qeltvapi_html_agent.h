/**
 * Data exchange with the HTML agent.
 */
#ifndef HW_QELTVAPI_HTML_AGENT_H
#define HW_QELTVAPI_HTML_AGENT_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for messages of the agent, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_html_agent_reg_callback(qeltvapi_html_agent_callback_fct_t fn);

/**
 * Sends words to the agent and stores its reply.
 *
 * @param data  [in,out] the words (reference television: at most 258 words, the first a
 *              QELTV_HTML_COMMAND); then the reply, cut to the size that was sent; a shorter reply
 *              leaves the rest as it is
 * @param count number of 32-bit words at @p data; if their size in bytes is 0 in 32 bits, no
 *              transaction is made, and a line is logged regardless of the debug switch
 * @return the service's code; -1 for a size of 0, without a service (not logged) and after a
 *         transport failure
 */
int a_qeltvapi_html_agent_exchange_data(void* data, uint32_t count);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_HTML_AGENT_H */
