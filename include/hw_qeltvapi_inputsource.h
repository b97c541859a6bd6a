/**
 * Input sources: their number, records, names and labels, signals, blocking, the change of the
 * source and conflicts between sources.
 *
 * Every function asks IQelTvApiInputSrc and returns -1 when the service is not there and -1 after a
 * lost reply; the three that return an id or a number of 8 bits return 255 in both cases. The
 * missing service is not logged. No pointer is checked but a text, of which null counts as "".
 *
 * Names are stored without a terminating zero, as many bytes as the service sends: the caller
 * clears the buffer and makes it large enough. The meaning of the unnamed arguments is the
 * service's. While debugging, outputs are traced on every reply, so they must then be readable,
 * and names terminated, even when the reply is lost.
 */
#ifndef HW_QELTVAPI_INPUTSOURCE_H
#define HW_QELTVAPI_INPUTSOURCE_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** A pair of inputs that share pins, 2 bytes. */
typedef struct {
    uint8_t first;
    uint8_t second;
} QELTVAPI_INPUT_SHARE_PIN_RECORD_T;

/** An input source, 41 bytes. The first three bytes and the last are defined by the service. */
typedef struct {
    uint8_t byte0;
    uint8_t byte1;
    uint8_t byte2;
    char name[32];       /**< padded with zeros; no terminating zero when all bytes are used */
    uint8_t reserved[5]; /**< never written */
    uint8_t tail;
} QELTVAPI_INPUT_SOURCE_RECORD_T;

/**
 * Tells whether a path has a video signal. Asks method 0.
 *
 * @param path video path
 * @param val  [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_isVideoSignalAvailable(const char* path, uint8_t* val);

/**
 * Tells whether a path has an audio signal. Asks method 1.
 *
 * @param path video path
 * @param val  [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_isAudioSignalAvailable(const char* path, uint8_t* val);

/**
 * Reads the GPIO line of an input. Asks method 2.
 *
 * @param idx index, from 0
 * @param val [out] the GPIO id
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_gpioid_byidx(int32_t idx, int32_t* val);

/**
 * Reads the internal id of the hybrid video input. Asks method 3.
 *
 * @return the id; 255 without an answer
 */
uint8_t a_qeltvapi_inputsource_get_hybrid_video_internal_id(void);

/**
 * Reads the internal id of the hybrid component input. Asks method 4.
 *
 * @return the id; 255 without an answer
 */
uint8_t a_qeltvapi_inputsource_get_hybrid_comp_internal_id(void);

/**
 * Reads the number of input sources. Asks method 5.
 *
 * @return the number; 255 without an answer
 */
uint8_t a_qeltvapi_inputsource_get_sourcetotalnum(void);

/**
 * Reads a pair of inputs that share pins. Asks method 6.
 *
 * @param idx index, from 0
 * @param out [out] the pair
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_sharepinrec_byidx(int32_t idx,
                                                 QELTVAPI_INPUT_SHARE_PIN_RECORD_T* out);

/**
 * Reads an input source. Asks method 7.
 *
 * @param idx index, from 0
 * @param out [out] the source
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_sourcerec_byidx(int32_t idx, QELTVAPI_INPUT_SOURCE_RECORD_T* out);

/**
 * Reads the name of the current source. Asks method 8.
 *
 * @param name [out] the name
 * @param p2   passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_currentsourcename(char* name, int32_t p2);

/**
 * Reads the name of the current source of a path. Asks method 9.
 *
 * @param name [out] the name
 * @param p2   passed to the service unchanged
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_currentsourcename_bypath(char* name, int32_t p2, const char* path);

/**
 * Reads the name of a source. Asks method 10.
 *
 * @param id   source id
 * @param name [out] the name
 * @param p3   passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_sourcename_bysourceid(int32_t id, char* name, int32_t p3);

/**
 * Changes to a source. Asks method 11.
 *
 * @param id source id
 * @return the service's code
 */
int a_qeltvapi_inputsource_changesource_bysourceid(int32_t id);

/**
 * Tells whether a source is available on a path. Asks method 12.
 *
 * @param id   source id
 * @param path video path
 * @param val  [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_is_source_available_bysourceidandpath(int32_t id, const char* path,
                                                                 uint8_t* val);

/**
 * Changes the source of a path. Asks method 13.
 *
 * @param id   source id
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_inputsource_changesource_bysourceidandpath(int32_t id, const char* path);

/**
 * Changes the source of a path with a priority. Asks method 14.
 *
 * @param id   source id
 * @param path video path
 * @param prio priority
 * @return the service's code
 */
int a_qeltvapi_inputsource_cs_bysourceidandpathandpriority(int32_t id, const char* path,
                                                           int32_t prio);

/**
 * Tells whether a source is blocked at the moment. Asks method 15.
 *
 * @param id  source id
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_is_block_bysourceid(int32_t id, uint8_t* val);

/**
 * Tells whether a source is set to be blocked. Asks method 16.
 *
 * @param id  source id
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_is_source_block_bysourceid(int32_t id, uint8_t* val);

/**
 * Tells whether a source is detected automatically. Asks method 17.
 *
 * @param id  source id
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_is_source_autodetect_bysourceid(int32_t id, uint8_t* val);

/**
 * Blocks or unblocks a source. Asks method 18.
 *
 * @param id    source id
 * @param block not 0 blocks it
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(int32_t id, int block);

/**
 * Switches the automatic detection of a source. Asks method 19.
 *
 * @param id source id
 * @param on not 0 switches it on
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(int32_t id, int on);

/**
 * Reads the label of a source. Asks method 20.
 *
 * @param id  source id
 * @param val [out] index of the label
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid(int32_t id, uint8_t* val);

/**
 * Sets the label of a source. Asks method 21.
 *
 * @param id    source id
 * @param label index of the label
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(int32_t id, int32_t label);

/**
 * Reads the user's name of a source. Asks method 22.
 *
 * @param id   source id
 * @param name [out] the name
 * @param p3   passed to the service unchanged
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_userdefname_bysourceid(int32_t id, char* name, int32_t p3);

/**
 * Sets the user's name of a source. Asks method 23.
 *
 * @param id   source id
 * @param name the name
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_userdefname_bysourceid(int32_t id, const char* name);

/**
 * Tells whether an external device has a signal. Asks method 24.
 *
 * @param p1  passed unchanged
 * @param p2  passed unchanged
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_external_device_has_signal(int32_t p1, int32_t p2, uint8_t* val);

/**
 * Stops the source of a path and waits for its end. Asks method 25.
 *
 * @param path video path
 * @param p2   switch, not 0 is true
 * @return the service's code
 */
int a_qeltvapi_inputsource_sync_stop(const char* path, int p2);

/**
 * Tells whether two sources exclude each other. Asks method 26.
 *
 * @param p1  passed unchanged
 * @param p2  passed unchanged
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_query_conflict(int32_t p1, int32_t p2, uint8_t* val);

/**
 * Reads the number of the MHL port. Asks method 27.
 *
 * @param val [out] the number
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_mhl_port_num(uint8_t* val);

/**
 * Tells whether the TV entry of the menu is blocked. Asks method 28.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_check_menu_tv_block(uint8_t* val);

/**
 * Switches the automatic change to a SCART input. Asks method 29.
 *
 * @param on not 0 switches it on
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_scart_auto_jump(int on);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_INPUTSOURCE_H */
