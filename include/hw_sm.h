/**
 * Stream components in the middleware's older C interface: the video and audio sinks of a
 * presentation pipeline, and notification of a detected video source.
 *
 * Results: the service's code; -1 without a service and after a transport failure, except of
 * c_scc_comp_open(). The missing service is not logged.
 */
#ifndef HW_SM_H
#define HW_SM_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** End of an array of commands; not recognised in the first command. */
#define QELTVAPI_SCC_CMD_END 0u

/** Component type, a number. Recognised in the first command only. */
#define QELTVAPI_SCC_CMD_TYPE 0x80000000u

/** Name of the component, a pointer to a text. Not recognised in the first command. */
#define QELTVAPI_SCC_CMD_NAME 16u

/** Pointer to a block of QELTVAPI_SCC_BLOCK_SIZE bytes, for type 0. Not recognised in the first
 * command. */
#define QELTVAPI_SCC_CMD_BLOCK 80u

/** Size of the block of QELTVAPI_SCC_CMD_BLOCK in bytes; its layout is service-defined. */
#define QELTVAPI_SCC_BLOCK_SIZE 12

/** Command of an opening. */
typedef struct {
    uint32_t code; /**< a QELTVAPI_SCC_CMD_ constant */
    union {
        uint32_t number;     /**< of QELTVAPI_SCC_CMD_TYPE */
        const void* pointer; /**< of QELTVAPI_SCC_CMD_NAME and QELTVAPI_SCC_CMD_BLOCK */
    } value;                 /**< its value */
} qeltvapi_scc_cmd_t;

/**
 * Opens a stream component.
 *
 * @param cmds the commands, two at least, ended by QELTVAPI_SCC_CMD_END. The type is 0 if the first
 *             command is not QELTVAPI_SCC_CMD_TYPE; the last of several names or blocks counts.
 *             Reference television: type a QELTV_COMPONENT_TYPE, name the video path
 * @param comp [out] the component
 * @return the service's code; 0 without a service and after a transport failure; -2 for a type
 *         above 2, without a transaction, which is logged regardless of the debug switch
 */
int c_scc_comp_open(const qeltvapi_scc_cmd_t* cmds, uint32_t* comp);

/**
 * Closes a stream component.
 *
 * @param comp the component
 * @return the service's code
 */
int c_scc_comp_close(uint32_t comp);

/**
 * Registers the callback for a detected video source, replacing the previous one, and requests
 * notifications from the service. Nothing is registered without a service.
 *
 * @param comp the component
 * @param fn   the callback; null to remove it
 * @param tag  returned in the notifications
 * @return the service's code
 */
int c_scc_vid_set_src_detect_nfy(uint32_t comp, qeltvapi_src_detect_nfy_cb_t fn, void* tag);

QELTVAPI_END_DECLS

#endif /* HW_SM_H */
