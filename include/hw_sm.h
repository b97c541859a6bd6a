/**
 * Stream components in the middleware's older C interface: the video and audio sinks of a
 * presentation pipeline, and notification of a detected video source.
 *
 * The functions ask IQelTvApi and return -1 when the service is not there and -1 after a lost
 * reply, except c_scc_comp_open(). The missing service is not logged.
 */
#ifndef HW_SM_H
#define HW_SM_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** End of an array of commands; not looked for in the first one. */
#define QELTVAPI_SCC_CMD_END 0u

/** Component type, a number. Understood in the first command only. */
#define QELTVAPI_SCC_CMD_TYPE 0x80000000u

/** Name of the component, a pointer to a text. Not understood in the first command. */
#define QELTVAPI_SCC_CMD_NAME 16u

/** Pointer to a block of QELTVAPI_SCC_BLOCK_SIZE bytes, for type 0. Not in the first command. */
#define QELTVAPI_SCC_CMD_BLOCK 80u

/** Size of the block of QELTVAPI_SCC_CMD_BLOCK; its layout is the service's. */
#define QELTVAPI_SCC_BLOCK_SIZE 12

/** Command of an opening. */
typedef struct {
    uint32_t code;
    union {
        uint32_t number;
        const void* pointer;
    } value;
} qeltvapi_scc_cmd_t;

/**
 * Opens a stream component. Asks method 27.
 *
 * @param cmds the commands, two at least, ended by QELTVAPI_SCC_CMD_END. The type is 0 when the
 *             first is not QELTVAPI_SCC_CMD_TYPE; of several names or blocks the last one counts
 * @param comp [out] the component
 * @return the service's code; 0 when the service is not there and after a lost reply; -2 for a
 *         type above 2, without a call, which is logged whatever the debug switch
 */
int c_scc_comp_open(const qeltvapi_scc_cmd_t* cmds, uint32_t* comp);

/**
 * Closes a stream component. Asks method 28.
 *
 * @param comp the component
 * @return the service's code
 */
int c_scc_comp_close(uint32_t comp);

/**
 * Sets the function that is told when a video source is detected, in place of the one before, and
 * asks the service to notify. Asks method 29. Nothing is set when the service is not there.
 *
 * @param comp the component
 * @param fn   called on a thread of the HIDL runtime; null for none
 * @param tag  comes back in the notifications
 * @return the service's code
 */
int c_scc_vid_set_src_detect_nfy(uint32_t comp, qeltvapi_src_detect_nfy_cb_t fn, void* tag);

QELTVAPI_END_DECLS

#endif /* HW_SM_H */
