/**
 * Input sources: their number, records, names and labels, signals, blocking, the change of the
 * source and conflicts between sources.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure; 255 in both cases of the three functions that return an id or a number of 8
 * bits. The missing service is not logged. Pointers are not checked for null, except texts, of
 * which null counts as "".
 *
 * Names are stored without a terminating zero, as many bytes as the service sends: clear the
 * buffer, and make it large enough. Reference television: names of at most 32 bytes; sources 0 (TV)
 * to 8; paths "main" (also "") and "sub".
 *
 * While debugging, outputs are traced on every reply and must then be readable, and names
 * terminated, even after a transport failure.
 */
#ifndef HW_QELTVAPI_INPUTSOURCE_H
#define HW_QELTVAPI_INPUTSOURCE_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** A pair of inputs that share pins, 2 bytes. */
typedef struct {
    uint8_t first;  /**< one source id */
    uint8_t second; /**< the other source id */
} QELTVAPI_INPUT_SHARE_PIN_RECORD_T;

/** An input source, 41 bytes. */
typedef struct {
    uint8_t byte0; /**< service-defined; reference television: source id */
    uint8_t byte1; /**< service-defined; reference television: a QELTV_INPUT_TYPE */
    /** service-defined; reference television: number among the inputs of the type */
    uint8_t byte2;
    char name[32];       /**< padded with zeros; no terminating zero when all bytes are used */
    uint8_t reserved[5]; /**< never written */
    /** service-defined; reference television: QELTV_INPUT_HAS_SIGNAL and QELTV_INPUT_MHL */
    uint8_t tail;
} QELTVAPI_INPUT_SOURCE_RECORD_T;

/**
 * Reports whether a path has a video signal.
 *
 * @param path video path
 * @param val  [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_isVideoSignalAvailable(const char* path, uint8_t* val);

/**
 * Reports whether a path has an audio signal.
 *
 * @param path video path
 * @param val  [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_isAudioSignalAvailable(const char* path, uint8_t* val);

/**
 * Reads the GPIO line of an input.
 *
 * @param idx index of the input, from 0
 * @param val [out] the GPIO id
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_gpioid_byidx(int32_t idx, int32_t* val);

/**
 * Reads the internal id of the hybrid video input.
 *
 * @return the id; 255 without a service and after a transport failure
 */
uint8_t a_qeltvapi_inputsource_get_hybrid_video_internal_id(void);

/**
 * Reads the internal id of the hybrid component input.
 *
 * @return the id; 255 without a service and after a transport failure
 */
uint8_t a_qeltvapi_inputsource_get_hybrid_comp_internal_id(void);

/**
 * Reads the number of input sources.
 *
 * @return the number; 255 without a service and after a transport failure
 */
uint8_t a_qeltvapi_inputsource_get_sourcetotalnum(void);

/**
 * Reads a pair of inputs that share pins.
 *
 * @param idx index of the pair, from 0
 * @param out [out] the pair
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_sharepinrec_byidx(int32_t idx,
                                                 QELTVAPI_INPUT_SHARE_PIN_RECORD_T* out);

/**
 * Reads an input source.
 *
 * @param idx index of the input, from 0
 * @param out [out] the source
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_sourcerec_byidx(int32_t idx, QELTVAPI_INPUT_SOURCE_RECORD_T* out);

/**
 * Reads the name of the current source.
 *
 * @param name [out] the name, without a terminating zero; not bounded by the buffer's size;
 *             reference television: at most 32 bytes
 * @param p2   service-defined; reference television: a QELTV_NAME_FORM
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_currentsourcename(char* name, int32_t p2);

/**
 * Reads the name of the current source of a path.
 *
 * @param name [out] the name, without a terminating zero; not bounded by the buffer's size;
 *             reference television: at most 32 bytes
 * @param p2   service-defined; reference television: a QELTV_NAME_FORM
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_currentsourcename_bypath(char* name, int32_t p2, const char* path);

/**
 * Reads the name of a source.
 *
 * @param id   source id
 * @param name [out] the name, without a terminating zero; not bounded by the buffer's size;
 *             reference television: at most 32 bytes
 * @param p3   service-defined; reference television: a QELTV_NAME_FORM
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_sourcename_bysourceid(int32_t id, char* name, int32_t p3);

/**
 * Changes to a source.
 *
 * @param id source id
 * @return the service's code
 */
int a_qeltvapi_inputsource_changesource_bysourceid(int32_t id);

/**
 * Reports whether a source is available on a path.
 *
 * @param id   source id
 * @param path video path
 * @param val  [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_is_source_available_bysourceidandpath(int32_t id, const char* path,
                                                                 uint8_t* val);

/**
 * Changes the source of a path.
 *
 * @param id   source id
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_inputsource_changesource_bysourceidandpath(int32_t id, const char* path);

/**
 * Changes the source of a path with a priority.
 *
 * @param id   source id
 * @param path video path
 * @param prio priority; reference television: 0 takes only a path that shows nothing, any higher
 *             value every path
 * @return the service's code
 */
int a_qeltvapi_inputsource_cs_bysourceidandpathandpriority(int32_t id, const char* path,
                                                           int32_t prio);

/**
 * Reports whether a source is blocked at present.
 *
 * @param id  source id
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_is_block_bysourceid(int32_t id, uint8_t* val);

/**
 * Reports whether a source is set to be blocked.
 *
 * @param id  source id
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_is_source_block_bysourceid(int32_t id, uint8_t* val);

/**
 * Reports whether a source is detected automatically.
 *
 * @param id  source id
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_is_source_autodetect_bysourceid(int32_t id, uint8_t* val);

/**
 * Blocks or unblocks a source.
 *
 * @param id    source id
 * @param block 0 to unblock, any other value to block
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(int32_t id, int block);

/**
 * Switches the automatic detection of a source on or off.
 *
 * @param id source id
 * @param on 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(int32_t id, int on);

/**
 * Reads the label of a source.
 *
 * @param id  source id
 * @param val [out] index of the label; reference television: 0 (none) to 8 (the user's name)
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid(int32_t id, uint8_t* val);

/**
 * Sets the label of a source.
 *
 * @param id    source id
 * @param label index of the label; reference television: 0 (none) to 8 (the user's name)
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(int32_t id, int32_t label);

/**
 * Reads the user's name of a source.
 *
 * @param id   source id
 * @param name [out] the name, without a terminating zero; not bounded by the buffer's size;
 *             reference television: at most 32 bytes
 * @param p3   service-defined; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_userdefname_bysourceid(int32_t id, char* name, int32_t p3);

/**
 * Sets the user's name of a source.
 *
 * @param id   source id
 * @param name the name; reference television: at most 32 bytes
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_userdefname_bysourceid(int32_t id, const char* name);

/**
 * Reports whether an external device has a signal.
 *
 * @param p1  service-defined; reference television: source id
 * @param p2  service-defined; reference television: ignored
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_external_device_has_signal(int32_t p1, int32_t p2, uint8_t* val);

/**
 * Stops the source of a path and waits until it has stopped.
 *
 * @param path video path
 * @param p2   0 for false, any other value for true; reference television: ignored
 * @return the service's code
 */
int a_qeltvapi_inputsource_sync_stop(const char* path, int p2);

/**
 * Reports whether two sources exclude each other.
 *
 * @param p1  service-defined; reference television: source id
 * @param p2  service-defined; reference television: the other source id
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_query_conflict(int32_t p1, int32_t p2, uint8_t* val);

/**
 * Reads the number of the MHL port.
 *
 * @param val [out] the number
 * @return the service's code
 */
int a_qeltvapi_inputsource_get_mhl_port_num(uint8_t* val);

/**
 * Reports whether the TV entry of the menu is blocked.
 *
 * @param val [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_inputsource_check_menu_tv_block(uint8_t* val);

/**
 * Switches the automatic change to a SCART input on or off.
 *
 * @param on 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_inputsource_set_scart_auto_jump(int on);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_INPUTSOURCE_H */
