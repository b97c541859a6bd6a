/**
 * Serial (UART) device of the television: opening, block reads and writes through shared memory,
 * output, and notification of incoming data.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure, and -1 if a function that moves blocks cannot make its shared buffer. The
 * missing service is not logged.
 *
 * Reference television: four simulated devices that return what is sent to them; blocks of at most
 * 1 MiB.
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

/** UART setting, 16 bytes; the layout is service-defined. Reference television: a uart_setting_t.
 */
typedef struct {
    uint64_t words[2]; /**< the setting */
} qeltvapi_iom_uart_setting_t;

/** Bytes to send. */
typedef struct {
    uint32_t len;     /**< number of bytes */
    const void* data; /**< the bytes */
} qeltvapi_iom_buffer_t;

/**
 * Opens the UART and registers the callback for incoming data, replacing the previous one. The
 * callback stays registered if the opening fails, except for a wrong type.
 *
 * @param type    QELTVAPI_IOM_UART; any other value is refused with -1 at once
 * @param a       service-defined; reference television: ignored
 * @param name    name of the device, null counts as ""; reference television: "loop0" (also "") to
 *                "loop3"
 * @param setting the setting, 16 bytes; reference television: a uart_setting_t
 * @param tag     returned in the notifications
 * @param nfy     the callback; null to remove it
 * @param handle  [out] handle of the device
 * @return the service's code; -1 for a wrong type
 */
int c_iom_open_uart(uint32_t type, uint32_t a, const char* name,
                    const qeltvapi_iom_uart_setting_t* setting, void* tag,
                    qeltvapi_iom_notify_cb_t nfy, uint32_t* handle);

/**
 * Closes the device.
 *
 * @param handle handle of the device
 * @return the service's code
 */
int c_iom_close(uint32_t handle);

/**
 * Reads a block.
 *
 * @param handle handle of the device
 * @param op     operation code, of which the low 16 bits are sent; reference television: a UART_OP_
 *               value
 * @param buf    [out] the block, as many bytes as the service sends, not bounded by the buffer's
 *               size (reference television: at most the size in @p len); after a transport failure
 *               `*len` bytes of the shared buffer
 * @param len    [in,out] size of the shared buffer in bytes, of which the low 32 bits count; then
 *               the length that the service sends. Read even without a service; reference
 *               television: no block is longer than the shared buffer
 * @return the service's code
 */
int c_iom_get(uint32_t handle, uint32_t op, void* buf, uint64_t* len);

/**
 * Writes a block.
 *
 * @param handle handle of the device
 * @param op     operation code, of which the low 16 bits are sent; reference television: a UART_OP_
 *               value
 * @param data   the block; read even without a service
 * @param len    size of the block in bytes, of which the low 32 bits count
 * @return the service's code
 */
int c_iom_set(uint32_t handle, uint32_t op, const void* data, uint64_t len);

/**
 * Sends bytes.
 *
 * @param handle handle of the device
 * @param b      the bytes
 * @return the service's code
 */
int c_iom_output(uint32_t handle, const qeltvapi_iom_buffer_t* b);

QELTVAPI_END_DECLS

#endif /* HW_IOM_H */
