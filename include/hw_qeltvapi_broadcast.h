/**
 * Live television: channel selection, tuning state and signal, the channel banner, the questions
 * of the channel-number entry, DVB target regions and the operator of the CAM.
 *
 * Every function but a_qeltvapi_broadcast_register_callback() asks IQelTvApiBroadcast and returns,
 * unless it says otherwise, -1 when the service is not there, with one line in the log whatever the
 * debug switch, and 0 after a lost reply, which cannot be told from success.
 *
 * A video path or record that must not be null is refused with -1 and one line in the log, before
 * the service is looked for. Other pointers are not checked. The selection arguments (p1, p2 ...)
 * and the values of states, errors, masks and attributes are defined by the service. While
 * debugging, the getters trace their output on every reply, so it must then be readable even when
 * the reply is lost.
 */
#ifndef HW_QELTVAPI_BROADCAST_H
#define HW_QELTVAPI_BROADCAST_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** One DVB target region, 40 bytes. */
typedef struct {
    uint8_t level; /**< byte 0; byte 1 is padding and never written */
    uint16_t code1;
    uint16_t code2;
    uint16_t code3;
    char name[32]; /**< padded with zeros; no terminating zero when all bytes are used */
} QELTVAPI_SB_DVB_REGION_T;

/** Frequency change, 28 bytes that the service defines. */
typedef struct {
    uint8_t head[16];
    uint32_t word1;
    uint32_t word2;
    uint32_t word3;
} QELTVAPI_CHANGE_FREQ_T;

/** State of an external user interface, 8 bytes. */
typedef struct {
    int32_t status;
    uint32_t on; /**< sent as a truth value: not 0 is true */
} QELTVAPI_EXTERNAL_UI_STATUS_T;

/**
 * Sets the function that is told of events of live television, in place of the one before. Asks
 * no service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_broadcast_register_callback(qeltvapi_broadcast_callback_cb_t fn);

/**
 * Selects a channel by three keys. Asks method 0.
 *
 * @param p1 passed unchanged
 * @param p2 passed unchanged
 * @param p3 passed unchanged
 * @param p4 switch, not 0 is true
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel(int32_t p1, int32_t p2, int32_t p3, int p4);

/**
 * Selects a channel for a focus. Asks method 1.
 *
 * @param p1 passed unchanged
 * @param p2 passed unchanged
 * @param p3 passed unchanged
 * @param p4 switch, not 0 is true
 * @param p5 sent as the number it is
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_by_focusid(int32_t p1, int32_t p2, int32_t p3, int p4,
                                                   int32_t p5);

/**
 * Selects a channel by its number. Asks method 2.
 *
 * @param p1 passed unchanged
 * @param p2 passed unchanged
 * @param p3 switch, not 0 is true
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_by_chan_num(int32_t p1, int32_t p2, int p3);

/**
 * Selects a channel by its id. Asks method 3.
 *
 * @param p1 passed unchanged
 * @param p2 switch, not 0 is true
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_by_chan_id(int32_t p1, int p2);

/**
 * Selects a channel by its programme number. Asks method 4.
 *
 * @param p1 passed unchanged
 * @param p2 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_by_prog_no(int32_t p1, int32_t p2);

/**
 * Selects a channel without the banner. Asks method 5. All five arguments are sent as the numbers
 * they are, p4 too.
 *
 * @param p1 passed unchanged
 * @param p2 passed unchanged
 * @param p3 passed unchanged
 * @param p4 passed unchanged
 * @param p5 passed unchanged
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_silently(int32_t p1, int32_t p2, int32_t p3, int32_t p4,
                                                 int32_t p5);

/**
 * Shows or hides the channel banner. Asks method 6.
 *
 * @param visible not 0 shows it
 * @return the service's code
 */
int a_qeltvapi_broadcast_set_banner_visibility(int visible);

/**
 * Reads the tuning status. Asks method 7.
 *
 * @param status [out] the status
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_tuning_status(int32_t* status);

/**
 * Reads the tuning error. Asks method 8.
 *
 * @param val [out] the error
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_tuning_error(int32_t* val);

/**
 * Hands a key of the remote control to the service. Asks method 9.
 *
 * @param key key code
 * @return the service's code
 */
int a_qeltvapi_broadcast_key_handler(int32_t key);

/**
 * Makes the tuner the input. Asks method 10.
 *
 * @return the service's code
 */
int a_qeltvapi_broadcast_switch_input_to_tv(void);

/**
 * Tells whether a CAM is installed. Asks method 11.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_cam_installed(uint8_t* val);

/**
 * Tells whether an additional service is available. Asks method 12.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_additional_service_available(uint8_t* val);

/**
 * Tells whether channel numbers may have four digits. Asks method 13.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_support_4_digits_chan_no(uint8_t* val);

/**
 * Answers as a_qeltvapi_broadcast_is_support_4_digits_chan_no() does: it asks method 13 as well,
 * not whether a digits key was handled.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_digits_key_handled(uint8_t* val);

/**
 * Tells whether a channel number is valid. Asks method 15.
 *
 * @param p1  passed unchanged
 * @param p2  passed unchanged
 * @param p3  switch, not 0 is true
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_channel_number_valid(int32_t p1, int32_t p2, int p3, uint8_t* val);

/**
 * Shows or hides the favourite icon on the banner. Asks method 16.
 *
 * @param show not 0 shows it
 * @return the service's code
 */
int a_qeltvapi_broadcast_set_favorite_icon_on_banner(int show);

/**
 * Forgets that a digits key was handled. Asks method 17.
 *
 * @return the service's code
 */
int a_qeltvapi_broadcast_reset_digits_key_handled(void);

/**
 * Reads the number of DVB target regions. Asks method 18.
 *
 * @param p1  passed unchanged
 * @param num [out] the number
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_target_region_num(int32_t p1, uint16_t* num);

/**
 * Reads one DVB target region. Asks method 19.
 *
 * @param p1  passed unchanged
 * @param p2  passed unchanged
 * @param p3  passed unchanged
 * @param out [out] the region
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_target_regions(int32_t p1, int32_t p2, int32_t p3,
                                            QELTVAPI_SB_DVB_REGION_T* out);

/**
 * Reads the largest possible major channel number. Asks method 20.
 *
 * @param p1  passed unchanged
 * @param val [out] the number
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_max_possible_major_chan_no(int32_t p1, int32_t* val);

/**
 * Reads the largest possible minor channel number. Asks method 21.
 *
 * @param p1  passed unchanged
 * @param val [out] the number
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_max_possible_minor_chan_no(int32_t p1, int32_t* val);

/**
 * Reads how many digits a major channel number may have. Asks method 22.
 *
 * @param p1  passed unchanged
 * @param val [out] number of digits
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_max_possible_major_digits(int32_t p1, int32_t* val);

/**
 * Reads how many digits a minor channel number may have. Asks method 23.
 *
 * @param p1  passed unchanged
 * @param val [out] number of digits
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_max_possible_minor_digits(int32_t p1, int32_t* val);

/**
 * Reads the name of the CAM's operator. Asks method 24. Unlike its neighbours it returns 0, and
 * writes no line, when the service is not there.
 *
 * @param len size of @p buf in bytes, sent to the service too; at least 1, not checked
 * @param buf [out] the name, cut to @p len - 1 bytes, always terminated; not null
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_cam_operator_name(int32_t len, char* buf);

/**
 * Reads which input events MHEG takes. Asks method 25.
 *
 * @param p1   passed unchanged
 * @param mask [out] the mask
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_mheg_input_event_mask(int32_t p1, uint8_t* mask);

/**
 * Stops a stream and waits for its end. Asks method 26.
 *
 * @param name video path; not null
 * @param p2   switch, not 0 is true
 * @return the service's code
 */
int a_qeltvapi_broadcast_sync_stop(const char* name, int p2);

/**
 * Tells whether the signal is lost. Asks method 27.
 *
 * @return 1 when there is no signal, else 0; 0 also when the service is not there (with the line)
 *         and after a lost reply
 */
int a_qeltvapi_broadcast_is_signal_loss(void);

/**
 * Reads the signal level. Asks method 28.
 *
 * @return the level, or the service's code
 */
int a_qeltvapi_broadcast_get_signal_level(void);

/**
 * Reads the signal quality. Asks method 29.
 *
 * @return the quality, or the service's code
 */
int a_qeltvapi_broadcast_get_signal_quality(void);

/**
 * Tells whether a stream is scrambled as it is broadcast. Asks method 30.
 *
 * @param name video path; not null
 * @param p2   the stream
 * @param val  [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_strm_is_orig_scramble(const char* name, int32_t p2, uint8_t* val);

/**
 * Changes the frequency of the tuner. Asks method 31.
 *
 * @param name video path; not null
 * @param r    the new frequency; not null
 * @return the service's code
 */
int a_qeltvapi_broadcast_change_freq(const char* name, const QELTVAPI_CHANGE_FREQ_T* r);

/**
 * Fine-tunes an analogue channel. Asks method 32.
 *
 * @param name video path; not null
 * @param p2   passed unchanged
 * @param p3   switch, not 0 is true
 * @return the service's code
 */
int a_qeltvapi_broadcast_ana_channel_fine_tune(const char* name, int32_t p2, int p3);

/**
 * Reads an attribute of a connection. Asks method 33.
 *
 * @param name video path; not null
 * @param p2   which attribute
 * @param val  [out] its value
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_connect_attr(const char* name, int32_t p2, int32_t* val);

/**
 * Tells the service about an external user interface. Asks method 34.
 *
 * @param r its state; not null
 * @return the service's code
 */
int a_qeltvapi_broadcast_transfer_external_ui_status(const QELTVAPI_EXTERNAL_UI_STATUS_T* r);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_BROADCAST_H */
