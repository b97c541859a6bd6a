/**
 * Live television: channel selection, tuning state and signal, the channel banner, the limits of
 * channel numbers, DVB target regions and the operator of the CAM.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service, with one
 * line in the log regardless of the debug switch; 0 after a transport failure, which cannot be
 * distinguished from success.
 *
 * A null video path or record that must not be null is refused with -1 and one line in the log,
 * before the service is fetched. Other pointers are not checked.
 *
 * The selection arguments (p1, p2, ...), states, errors, masks and attributes are service-defined.
 * Reference television: video paths are "main" (also "") and "sub", or the numbers 0 and 1; list 0
 * is any list.
 *
 * While debugging, the getters trace their output on every reply, so it must be readable even after
 * a transport failure.
 */
#ifndef HW_QELTVAPI_BROADCAST_H
#define HW_QELTVAPI_BROADCAST_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** One DVB target region, 40 bytes. */
typedef struct {
    /** byte 0: level of the region, reference television: 1 to 3; byte 1 is padding and never
     *  written */
    uint8_t level;
    uint16_t code1; /**< code of the primary region */
    uint16_t code2; /**< code of the secondary region; 0 for none */
    uint16_t code3; /**< code of the tertiary region; 0 for none */
    char name[32];  /**< padded with zeros; no terminating zero when all bytes are used */
} QELTVAPI_SB_DVB_REGION_T;

/** Frequency change, 28 bytes; the layout is service-defined. */
typedef struct {
    /** service-defined; reference television: a QELTV_FREQUENCY_HEAD_T */
    uint8_t head[16];
    uint32_t word1; /**< service-defined; reference television: frequency in kHz */
    uint32_t word2; /**< service-defined; reference television: ignored */
    uint32_t word3; /**< service-defined; reference television: ignored */
} QELTVAPI_CHANGE_FREQ_T;

/** State of an external user interface, 8 bytes. */
typedef struct {
    /** service-defined; reference television: number of the user interface, 0 to 31 */
    int32_t status;
    uint32_t on; /**< sent as a truth value: 0 for false, any other value for true */
} QELTVAPI_EXTERNAL_UI_STATUS_T;

/**
 * Registers the callback for events of live television, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_broadcast_register_callback(qeltvapi_broadcast_callback_cb_t fn);

/**
 * Selects a channel by three keys.
 *
 * @param p1 service-defined; reference television: list id, CHANNEL_LIST_; 0 for any
 * @param p2 service-defined; reference television: channel id
 * @param p3 service-defined; reference television: video path, 0 or 1
 * @param p4 0 for false, any other value for true; reference television: true to show the banner
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel(int32_t p1, int32_t p2, int32_t p3, int p4);

/**
 * Selects a channel for a focus.
 *
 * @param p1 service-defined; reference television: video path, 0 or 1
 * @param p2 service-defined; reference television: list id, CHANNEL_LIST_; 0 for any
 * @param p3 service-defined; reference television: channel id
 * @param p4 0 for false, any other value for true; reference television: true to show the banner
 * @param p5 service-defined; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_by_focusid(int32_t p1, int32_t p2, int32_t p3, int p4,
                                                   int32_t p5);

/**
 * Selects a channel by its number.
 *
 * @param p1 service-defined; reference television: channel number, of two parts the major number
 * @param p2 service-defined; reference television: minor number, 0 for a number of one part
 * @param p3 0 for false, any other value for true; reference television: true to show the banner
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_by_chan_num(int32_t p1, int32_t p2, int p3);

/**
 * Selects a channel by its id.
 *
 * @param p1 service-defined; reference television: channel id
 * @param p2 0 for false, any other value for true; reference television: true to show the banner
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_by_chan_id(int32_t p1, int p2);

/**
 * Selects a channel by its programme number.
 *
 * @param p1 service-defined; reference television: service id
 * @param p2 service-defined; reference television: video path, 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_by_prog_no(int32_t p1, int32_t p2);

/**
 * Selects a channel without the banner. All five arguments are sent as numbers, p4 too.
 *
 * @param p1 service-defined; reference television: list id, CHANNEL_LIST_; 0 for any
 * @param p2 service-defined; reference television: channel id
 * @param p3 service-defined; reference television: video path, 0 or 1
 * @param p4, p5 service-defined; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_broadcast_select_channel_silently(int32_t p1, int32_t p2, int32_t p3, int32_t p4,
                                                 int32_t p5);

/**
 * Shows or hides the channel banner.
 *
 * @param visible 0 to hide it, any other value to show it
 * @return the service's code
 */
int a_qeltvapi_broadcast_set_banner_visibility(int visible);

/**
 * Reads the tuning status.
 *
 * @param status [out] the status; reference television: a QELTV_TUNING_STATUS
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_tuning_status(int32_t* status);

/**
 * Reads the tuning error.
 *
 * @param val [out] the error; reference television: a QELTV_TUNING_ERROR
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_tuning_error(int32_t* val);

/**
 * Sends a key of the remote control to the service.
 *
 * @param key key code; reference television: a QELTV_KEY, or another code of Android
 * @return the service's code
 */
int a_qeltvapi_broadcast_key_handler(int32_t key);

/**
 * Selects the tuner as the input.
 *
 * @return the service's code
 */
int a_qeltvapi_broadcast_switch_input_to_tv(void);

/**
 * Reports whether a CAM is installed.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_cam_installed(uint8_t* val);

/**
 * Reports whether an additional service is available.
 *
 * @param val [out] 0 or 1; reference television: 1 with more than one audio track
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_additional_service_available(uint8_t* val);

/**
 * Reports whether channel numbers may have four digits.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_support_4_digits_chan_no(uint8_t* val);

/**
 * Reports whether channel numbers may have four digits, as
 * a_qeltvapi_broadcast_is_support_4_digits_chan_no() does, whose method it calls: it does not
 * report whether a digit key was handled.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_digits_key_handled(uint8_t* val);

/**
 * Reports whether a channel number is valid.
 *
 * @param p1  service-defined; reference television: channel number, of two parts the major number
 * @param p2  service-defined; reference television: minor number, 0 for a number of one part
 * @param p3  0 for false, any other value for true; reference television: true for exactly this
 *            number, false for the next one above it, too
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_is_channel_number_valid(int32_t p1, int32_t p2, int p3, uint8_t* val);

/**
 * Shows or hides the favourite icon on the banner.
 *
 * @param show 0 to hide it, any other value to show it
 * @return the service's code
 */
int a_qeltvapi_broadcast_set_favorite_icon_on_banner(int show);

/**
 * Resets whether a digit key was handled.
 *
 * @return the service's code
 */
int a_qeltvapi_broadcast_reset_digits_key_handled(void);

/**
 * Reads the number of DVB target regions.
 *
 * @param p1  service-defined; reference television: level of the regions, 1 to 3
 * @param num [out] the number
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_target_region_num(int32_t p1, uint16_t* num);

/**
 * Reads one DVB target region.
 *
 * @param p1  service-defined; reference television: level of the regions, 1 to 3
 * @param p2  service-defined; reference television: code of the primary region, 0 for any
 * @param p3  service-defined; reference television: index among these regions, from 0
 * @param out [out] the region
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_target_regions(int32_t p1, int32_t p2, int32_t p3,
                                            QELTVAPI_SB_DVB_REGION_T* out);

/**
 * Reads the largest possible major channel number.
 *
 * @param p1  service-defined; reference television: list id, CHANNEL_LIST_; 0 for the current list
 * @param val [out] the number
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_max_possible_major_chan_no(int32_t p1, int32_t* val);

/**
 * Reads the largest possible minor channel number.
 *
 * @param p1  service-defined; reference television: list id, CHANNEL_LIST_; 0 for the current list
 * @param val [out] the number
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_max_possible_minor_chan_no(int32_t p1, int32_t* val);

/**
 * Reads how many digits a major channel number may have.
 *
 * @param p1  service-defined; reference television: list id, CHANNEL_LIST_; 0 for the current list
 * @param val [out] number of digits
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_max_possible_major_digits(int32_t p1, int32_t* val);

/**
 * Reads how many digits a minor channel number may have.
 *
 * @param p1  service-defined; reference television: list id, CHANNEL_LIST_; 0 for the current list
 * @param val [out] number of digits
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_max_possible_minor_digits(int32_t p1, int32_t* val);

/**
 * Reads the name of the CAM's operator.
 *
 * @param len capacity of @p buf in bytes, sent to the service too; at least 1, not checked
 * @param buf [out] the name, cut to @p len - 1 bytes, always terminated; not null
 * @return the service's code; 0 without a service, with no line in the log
 */
int a_qeltvapi_broadcast_get_cam_operator_name(int32_t len, char* buf);

/**
 * Reads which input events MHEG takes.
 *
 * @param p1   service-defined; reference television: ignored
 * @param mask [out] the mask; reference television: 0 while another user interface is shown, else
 *             all events
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_mheg_input_event_mask(int32_t p1, uint8_t* mask);

/**
 * Stops a stream and waits until it has stopped.
 *
 * @param name video path; not null
 * @param p2   0 for false, any other value for true; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_broadcast_sync_stop(const char* name, int p2);

/**
 * Reports whether the signal is lost.
 *
 * @return 1 without a signal, else 0; 0 without a service (with the line in the log) and after a
 *         transport failure
 */
int a_qeltvapi_broadcast_is_signal_loss(void);

/**
 * Reads the signal level.
 *
 * @return the level (reference television: 0 to 100), or the service's code
 */
int a_qeltvapi_broadcast_get_signal_level(void);

/**
 * Reads the signal quality.
 *
 * @return the quality (reference television: 0 to 100), or the service's code
 */
int a_qeltvapi_broadcast_get_signal_quality(void);

/**
 * Reports whether a stream is scrambled as it is broadcast.
 *
 * @param name video path; not null
 * @param p2   the stream; reference television: ignored
 * @param val  [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_broadcast_strm_is_orig_scramble(const char* name, int32_t p2, uint8_t* val);

/**
 * Changes the frequency of the tuner.
 *
 * @param name video path; not null
 * @param r    the new frequency; not null; reference television: a QELTV_FREQUENCY_HEAD_T in head,
 *             the frequency in kHz in word1
 * @return the service's code
 */
int a_qeltvapi_broadcast_change_freq(const char* name, const QELTVAPI_CHANGE_FREQ_T* r);

/**
 * Fine-tunes an analogue channel.
 *
 * @param name video path; not null
 * @param p2   service-defined; reference television: ignored
 * @param p3   0 for false, any other value for true; reference television: ignored, there is no
 *             analogue channel
 * @return the service's code
 */
int a_qeltvapi_broadcast_ana_channel_fine_tune(const char* name, int32_t p2, int p3);

/**
 * Reads an attribute of a connection.
 *
 * @param name video path; not null
 * @param p2   which attribute; reference television: a QELTV_CONNECT_ATTRIBUTE
 * @param val  [out] its value
 * @return the service's code
 */
int a_qeltvapi_broadcast_get_connect_attr(const char* name, int32_t p2, int32_t* val);

/**
 * Reports the state of an external user interface to the service.
 *
 * @param r the state; not null; reference television: status is the number of the user interface, 0
 *          to 31
 * @return the service's code
 */
int a_qeltvapi_broadcast_transfer_external_ui_status(const QELTVAPI_EXTERNAL_UI_STATUS_T* r);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_BROADCAST_H */
