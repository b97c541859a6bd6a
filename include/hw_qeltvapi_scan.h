/**
 * The channel scan: starting and ending it, its parameters for each broadcast standard, the
 * exchange of data with it and the texts that it has for the user.
 *
 * Every function asks IQelTvApiScan and returns -1 when the service is not there and -1 after a
 * lost reply, except for a_qeltvapi_scan_reg_callback() and the inert functions at the end. The
 * missing service is not logged. No pointer is tested for null.
 *
 * An answer is stored whole, whatever the caller's room: how many elements a standard exchanges
 * is agreed with the service. The parameters of DVB scans travel through the exchange only.
 */
#ifndef HW_QELTVAPI_SCAN_H
#define HW_QELTVAPI_SCAN_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Parameters of an ATSC scan. */
typedef struct {
    uint32_t ui4_first_scan_index;
    uint32_t ui4_end_scan_index;
    uint32_t ui4_mod_mask;
    uint32_t ui4_freq_plan;
} QELTVAPI_ATSC_SCAN_PARAM_T;

/** Parameters of an ISDB scan. */
typedef struct {
    uint32_t ui4_first_scan_index;
    uint32_t ui4_end_scan_index;
    uint32_t ui4_configFlag;
} QELTVAPI_ISDB_SCAN_PARAM_T;

/** Parameters of an NTSC scan. */
typedef struct {
    uint32_t ui4_first_scan_index;
    uint32_t ui4_end_scan_index;
} QELTVAPI_NTSC_SCAN_PARAM_T;

/**
 * Sets the function that is told of the progress of a scan, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_scan_reg_callback(qeltvapi_scan_callback_cb_t fn);

/**
 * Selects the current channel, or the first one, after a scan. Asks method 0.
 *
 * @param b_skip_fake 1 to pass over placeholder channels; every other value, 2 as well as 0,
 *                    means no
 * @return the service's code
 */
int a_qeltvapi_scan_select_crnt_or_first_channel(int b_skip_fake);

/**
 * Tells whether a scan is running. Asks method 1.
 *
 * @return 1 or 0; 0 also when the service is not there and after a lost reply
 */
int a_qeltvapi_is_scan_active(void);

/**
 * Starts a scan; its progress is told to the function of a_qeltvapi_scan_reg_callback(). Asks
 * method 2.
 *
 * @param scan_arg passed to the service unchanged
 * @param flag     0 or any other value
 * @return the service's code
 */
int a_qeltvapi_start_scan(uint64_t scan_arg, int flag);

/**
 * Ends a running scan. Asks method 3.
 *
 * @return the service's code
 */
int a_qeltvapi_cancel_scan(void);

/**
 * Reads the market region. Asks method 4.
 *
 * @return the region
 */
int a_qeltvapi_get_market_region(void);

/**
 * Sets the parameters of an ATSC scan. Asks method 5. While debugging, they are traced even when
 * the service is not there.
 *
 * @param scan_arg passed to the service unchanged
 * @param param    the parameters; not tested for null
 * @return the service's code
 */
int a_qeltvapi_set_atsc_scan_param(uint64_t scan_arg, const QELTVAPI_ATSC_SCAN_PARAM_T* param);

/**
 * Sets the parameters of an ISDB scan. Asks method 6. While debugging, they are traced even when
 * the service is not there.
 *
 * @param scan_arg passed to the service unchanged
 * @param param    the parameters; not tested for null
 * @return the service's code
 */
int a_qeltvapi_set_isdb_scan_param(uint64_t scan_arg, const QELTVAPI_ISDB_SCAN_PARAM_T* param);

/**
 * Sets the parameters of an NTSC scan. Asks method 7. While debugging, they are traced even when
 * the service is not there.
 *
 * @param scan_arg passed to the service unchanged
 * @param param    the parameters; not tested for null
 * @return the service's code
 */
int a_qeltvapi_set_ntsc_scan_param(uint64_t scan_arg, const QELTVAPI_NTSC_SCAN_PARAM_T* param);

/**
 * Exchanges data with the ATSC scan. Asks method 8.
 *
 * @param data  [in, out] the elements to send; then all elements of the answer, however many
 * @param count number of elements to send
 * @return the service's code
 */
int a_qeltvapi_atsc_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the ISDB scan. Asks method 9.
 *
 * @param data  [in, out] the elements to send; then all elements of the answer, however many
 * @param count number of elements to send
 * @return the service's code
 */
int a_qeltvapi_isdb_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the part of the scan that all standards share. Asks method 10.
 *
 * @param data  [in, out] the elements to send; then all elements of the answer, however many
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_ce_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the DTMB scan. Asks method 11.
 *
 * @param data  [in, out] the elements to send; then all elements of the answer, however many
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_dtmb_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the PAL and SECAM scan. Asks method 12.
 *
 * @param data  [in, out] the elements to send; then all elements of the answer, however many
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_pal_secam_exchange_data(int32_t* data, uint32_t count);

/**
 * Exchanges data with the DVB-S scan. Asks method 13.
 *
 * @param data  [in, out] the elements to send; then all elements of the answer, however many
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_dvbs_exchange_data(int32_t* data, uint32_t count);

/**
 * Reads a text that the scan has for the user. Asks method 14.
 *
 * @param buf [in, out] a terminated text, at least an empty one, which is sent; then the answer,
 *            as many bytes as the service tells, without a terminating zero and whatever the
 *            room
 * @param len size of the buffer, for the service
 * @return the service's code; 4294967295 when the service is not there and after a lost reply
 */
uint32_t a_qeltvapi_get_user_message(char* buf, uint32_t len);

/**
 * Exchanges data with the DVB-C scan. Asks method 15.
 *
 * @param data  [in, out] the elements to send; then all elements of the answer, however many
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_dvbc_exchange_data(int32_t* data, uint32_t count);

/**
 * Reads one text of the DVB-C scan. Asks method 16.
 *
 * @param id  which text; passed to the service unchanged
 * @param buf [in, out] a terminated text, at least an empty one, which is sent; then the answer,
 *            as many bytes as the service tells, without a terminating zero and whatever the
 *            room
 * @param len size of the buffer, for the service
 * @return the service's code
 */
int a_qeltvapi_scan_dvbc_get_str_data(uint32_t id, char* buf, int32_t len);

/**
 * Exchanges data with the DVB-T scan. Asks method 17.
 *
 * @param data  [in, out] the elements to send; then all elements of the answer, however many
 * @param count number of elements to send
 * @return the service's code
 */
int a_scan_dvbt_exchange_data(int32_t* data, uint32_t count);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_set_dvbt_scan_param(QELTVAPI_ANY_ARGS);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_set_dvbc_manual_scan_param(QELTVAPI_ANY_ARGS);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_set_dvbc_scan_param(QELTVAPI_ANY_ARGS);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_set_dvbs_scan_param(QELTVAPI_ANY_ARGS);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_scan_maps_fct(QELTVAPI_ANY_ARGS);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_dvb_scan_complete_ui_mode(QELTVAPI_ANY_ARGS);

/**
 * Does nothing; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_scan_dvbc_get_country_id(QELTVAPI_ANY_ARGS);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_SCAN_H */
