/**
 * Serial (UART) device of the television: opening, block reads and writes through shared memory,
 * output, and notification of incoming data.
 *
 * The functions ask IQelTvApi and return -1 when the service is not there and -1 after a lost
 * reply; those that move blocks also when the shared buffer cannot be made. The missing service
 * is not logged.
 */
#ifndef HW_IOM_H
#define HW_IOM_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** The one device type that can be opened. */
#define QELTVAPI_IOM_UART 8

/** Size of a UART setting in bytes. */
#define QELTVAPI_IOM_UART_SETTING_SIZE 16

/** UART setting; the layout within the two words is the service's. */
typedef struct {
    uint64_t words[2];
} qeltvapi_iom_uart_setting_t;

/** Bytes to put out. */
typedef struct {
    uint32_t len;     /**< number of bytes */
    const void* data; /**< the bytes */
} qeltvapi_iom_buffer_t;

/**
 * Opens the UART and sets the function that is told of incoming data, in place of the one before.
 * The function stays set when the opening fails, but for a wrong type. Asks method 171.
 *
 * @param type    QELTVAPI_IOM_UART; anything else is refused with -1 at once
 * @param a       passed to the service unchanged
 * @param name    name of the device; null counts as ""
 * @param setting the setting, 16 bytes
 * @param tag     comes back in the notifications
 * @param nfy     called on a thread of the HIDL runtime with the data and its length; null for
 *                none
 * @param handle  [out] the device
 * @return the service's code; -1 for a wrong type
 */
int c_iom_open_uart(uint32_t type, uint32_t a, const char* name,
                    const qeltvapi_iom_uart_setting_t* setting, void* tag,
                    qeltvapi_iom_notify_cb_t nfy, uint32_t* handle);

/**
 * Closes the device. Asks method 172.
 *
 * @param handle the device
 * @return the service's code
 */
int c_iom_close(uint32_t handle);

/**
 * Reads a block. Asks method 173.
 *
 * @param handle the device
 * @param op     operation code, of which the low 16 bits are sent
 * @param buf    [out] the block: as many bytes as the service tells, whatever the room. After a
 *               lost reply `*len` bytes of the shared buffer
 * @param len    [in,out] bytes to make room for, of which the low 32 bits count; then the length
 *               that the service tells. Read even when the service is not there
 * @return the service's code
 */
int c_iom_get(uint32_t handle, uint32_t op, void* buf, uint64_t* len);

/**
 * Writes a block. Asks method 174.
 *
 * @param handle the device
 * @param op     operation code, of which the low 16 bits are sent
 * @param data   the block; read even when the service is not there
 * @param len    its length in bytes, of which the low 32 bits count
 * @return the service's code
 */
int c_iom_set(uint32_t handle, uint32_t op, const void* data, uint64_t len);

/**
 * Puts bytes out. Asks method 175.
 *
 * @param handle the device
 * @param b      the bytes
 * @return the service's code
 */
int c_iom_output(uint32_t handle, const qeltvapi_iom_buffer_t* b);

QELTVAPI_END_DECLS

#endif /* HW_IOM_H */
