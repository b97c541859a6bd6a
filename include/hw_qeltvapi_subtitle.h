/**
 * Subtitles: the list of available subtitles, and the choice.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged.
 */
#ifndef HW_QELTVAPI_SUBTITLE_H
#define HW_QELTVAPI_SUBTITLE_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Registers the callback for events of the subtitles, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_subtitle_reg_callback(qeltvapi_subtitle_cb_t fn);

/**
 * Reads the subtitle loop, the list of available subtitles.
 *
 * @param data  [in,out] values that are sent; then the loop, all of it, not bounded by @p count;
 *              reference television: at most @p count values: number of entries, number of the
 *              active one (0 for none), then a QELTV_SUBTITLE_ENTRY_T for each
 * @param count number of 32-bit values that are sent; reference television: the capacity of @p data
 * @return the service's code
 */
int a_qeltvapi_subtitle_get_loop(int32_t* data, uint32_t count);

/**
 * Plays a subtitle.
 *
 * @param value service-defined; reference television: number of the subtitle, from 1; 0 for off
 * @return the service's code
 */
int a_qeltvapi_subtitle_play(uint32_t value);

/**
 * Selects the next subtitle.
 *
 * @return the service's code
 */
int a_qeltvapi_subtitle_set_next(void);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_SUBTITLE_H */
