/**
 * The channel scan: starting and ending it, its parameters for each broadcast standard, the
 * exchange of data with it and its texts for the user.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged. Pointers are not checked for null. The
 * functions at the end that do nothing make no transaction.
 *
 * An answer is stored whole, not bounded by the buffer's size: the service and the application
 * agree on the number of elements of a standard. Reference television: the first element of an
 * exchange is a QELTV_SCAN_EXCHANGE; an answer has at most QELTV_SCAN_EXCHANGE_CAPACITY elements.
 * The parameters of DVB scans cross through the exchange only.
 */
#ifndef HW_QELTVAPI_SCAN_H
#define HW_QELTVAPI_SCAN_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Parameters of an ATSC scan. */
typedef struct {
    /** first transponder to scan; reference television: index from 0 */
    uint32_t ui4_first_scan_index;
    uint32_t ui4_end_scan_index; /**< last transponder to scan, included */
    /** modulations; reference television: bits in QELTV_SCAN_MODULATIONS, 0 for all */
    uint32_t ui4_mod_mask;
    /** frequency plan; reference television: 0 as in the tables, 1 air, 2 cable */
    uint32_t ui4_freq_plan;
} QELTVAPI_ATSC_SCAN_PARAM_T;

/** Parameters of an ISDB scan. */
typedef struct {
    /** first transponder to scan; reference television: index from 0 */
    uint32_t ui4_first_scan_index;
    uint32_t ui4_end_scan_index; /**< last transponder to scan, included */
    uint32_t ui4_configFlag;     /**< flags; reference television: QELTV_ISDB_NO_RADIO or 0 */
} QELTVAPI_ISDB_SCAN_PARAM_T;

/** Parameters of an NTSC scan. */
typedef struct {
    /** first transponder to scan; reference television: index from 0 */
    uint32_t ui4_first_scan_index;
    uint32_t ui4_end_scan_index; /**< last transponder to scan, included */
} QELTVAPI_NTSC_SCAN_PARAM_T;

/**
 * Registers the callback for the progress of a scan, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_scan_reg_callback(qeltvapi_scan_callback_cb_t fn);

/**
 * Selects the current channel, or the first one, after a scan.
 *
 * @param b_skip_fake 1 to skip placeholder channels; any other value, 2 as well as 0, does not
 * @return the service's code
 */
int a_qeltvapi_scan_select_crnt_or_first_channel(int b_skip_fake);

/**
 * Reports whether a scan is running.
 *
 * @return 1 or 0; 0 without a service and after a transport failure
 */
int a_qeltvapi_is_scan_active(void);

/**
 * Starts a scan; its progress arrives at the callback of a_qeltvapi_scan_reg_callback().
 *
 * @param scan_arg service-defined; reference television: a QELTV_SCAN_MODE in the low 8 bits; for
 *                 QELTV_SCAN_FREQUENCY the frequency in kHz << QELTV_SCAN_FREQUENCY_SHIFT
 * @param flag     0 for false, any other value for true; reference television: true to remove the
 *                 channels that a complete scan does not find
 * @return the service's code
 */
int a_qeltvapi_start_scan(uint64_t scan_arg, int flag);

/**
 * Ends a running scan.
 *
 * @return the service's code
 */
int a_qeltvapi_cancel_scan(void);

/**
 * Reads the market region.
 *
 * @return the region; reference television: a QELTV_MARKET_REGION
 */
int a_qeltvapi_get_market_region(void);

/**
 * Sets the parameters of an ATSC scan. While debugging, they are traced even without a service.
 *
 * @param scan_arg service-defined; reference television: ignored
 * @param param    the parameters; not checked for null
 * @return the service's code
 */
int a_qeltvapi_set_atsc_scan_param(uint64_t scan_arg, const QELTVAPI_ATSC_SCAN_PARAM_T* param);

/**
 * Sets the parameters of an ISDB scan. While debugging, they are traced even without a service.
 *
 * @param scan_arg service-defined; reference television: ignored
 * @param param    the parameters; not checked for null
 * @return the service's code
 */
int a_qeltvapi_set_isdb_scan_param(uint64_t scan_arg, const QELTVAPI_ISDB_SCAN_PARAM_T* param);

/**
 * Sets the parameters of an NTSC scan. While debugging, they are traced even without a service.
 *
 * @param scan_arg service-defined; reference television: not supported
 * @param param    the parameters; not checked for null
 * @return the service's code
 */
int a_qeltvapi_set_ntsc_scan_param(uint64_t scan_arg, const QELTVAPI_NTSC_SCAN_PARAM_T* param);

/**
 * Exchanges data with the ATSC scan.
 *
 * @param data  [in,out] the elements to send; then all elements of the answer, not bounded by the
 *              buffer's size; reference television: a QELTV_SCAN_EXCHANGE first
 * @param count number of elements to send
 * @return the service's code
 */
int a_qeltvapi_atsc_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the ISDB scan.
 *
 * @param data  [in,out] the elements to send; then all elements of the answer, not bounded by the
 *              buffer's size; reference television: a QELTV_SCAN_EXCHANGE first
 * @param count number of elements to send
 * @return the service's code
 */
int a_qeltvapi_isdb_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the part of the scan that all standards share.
 *
 * @param data  [in,out] the elements to send; then all elements of the answer, not bounded by the
 *              buffer's size; reference television: a QELTV_SCAN_EXCHANGE first
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_ce_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the DTMB scan.
 *
 * @param data  [in,out] the elements to send; then all elements of the answer, not bounded by the
 *              buffer's size; reference television: not supported, the elements as sent
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_dtmb_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the PAL and SECAM scan.
 *
 * @param data  [in,out] the elements to send; then all elements of the answer, not bounded by the
 *              buffer's size; reference television: not supported, the elements as sent
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_pal_secam_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the DVB-S scan.
 *
 * @param data  [in,out] the elements to send; then all elements of the answer, not bounded by the
 *              buffer's size; reference television: a QELTV_SCAN_EXCHANGE first
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_dvbs_exchange_data(int32_t* data, uint32_t count);

/**
 * Reads a text of the scan for the user.
 *
 * @param buf [in,out] a terminated text, at least an empty one, which is sent; then the answer, as
 *            many bytes as the service sends, without a terminating zero, not bounded by the
 *            buffer's size; reference television: cut to @p len bytes
 * @param len capacity of @p buf in bytes, sent to the service
 * @return the service's code; 4294967295 without a service and after a transport failure
 */
uint32_t a_qeltvapi_get_user_message(char* buf, uint32_t len);

/**
 * Exchanges data with the DVB-C scan.
 *
 * @param data  [in,out] the elements to send; then all elements of the answer, not bounded by the
 *              buffer's size; reference television: a QELTV_SCAN_EXCHANGE first
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_dvbc_exchange_data(int32_t* data, uint32_t count);

/**
 * Reads one text of the DVB-C scan.
 *
 * @param id  which text; reference television: a QELTV_SCAN_TEXT
 * @param buf [in,out] a terminated text, at least an empty one, which is sent; then the answer, as
 *            many bytes as the service sends, without a terminating zero, not bounded by the
 *            buffer's size; reference television: cut to @p len bytes
 * @param len capacity of @p buf in bytes, sent to the service
 * @return the service's code
 */
int a_qeltvapi_scan_dvbc_get_str_data(uint32_t id, char* buf, int32_t len);

/**
 * Exchanges data with the DVB-T scan.
 *
 * @param data  [in,out] the elements to send; then all elements of the answer, not bounded by the
 *              buffer's size; reference television: a QELTV_SCAN_EXCHANGE first
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_dvbt_exchange_data(int32_t* data, uint32_t count);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_set_dvbt_scan_param(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_set_dvbc_manual_scan_param(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_set_dvbc_scan_param(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_set_dvbs_scan_param(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_scan_maps_fct(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_dvb_scan_complete_ui_mode(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_scan_dvbc_get_country_id(QELTVAPI_ANY_ARGS);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_SCAN_H */
