/**
 * Service contexts in the middleware's older C interface: a context is one presentation pipeline,
 * a tuner path and its decoders. It lives in the service; the caller holds a 32-bit handle.
 *
 * The functions ask IQelTvApi and return -1 when the service is not there and -1 after a lost
 * reply, except c_svctx_set_listener(). The missing service is not logged. An answer of an
 * unexpected size leaves the caller's block alone and is logged whatever the debug switch; the
 * result is the service's code then too.
 *
 * The layouts of the blocks and the meaning of the codes are the service's; the sizes are fixed.
 */
#ifndef HW_SVCTX_H
#define HW_SVCTX_H

#include "hw_qeltvapi_callback_types.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Bytes of a select request that reach the service, in both layouts. */
#define QELTVAPI_SVCTX_SELECT_SIZE 260

/** Size of the side block of c_svctx_select_svc(). */
#define QELTVAPI_SVCTX_SIDE_SIZE 76

/** Size of the side block of c_svctx_select_svc_64(). */
#define QELTVAPI_SVCTX_SIDE_64_SIZE 140

/** Size of a video source resolution. */
#define QELTVAPI_SVCTX_VIDEO_SRC_RESOLUTION_SIZE 132

/** Size of audio information. */
#define QELTVAPI_SVCTX_AUDIO_INFO_SIZE 24

/**
 * Select request of c_svctx_select_svc(), 260 bytes in a 32-bit process. It is sent as it stands,
 * reserved bytes and pointers included, besides what the named fields point to.
 */
typedef struct {
    const char* first; /**< a text; null counts as "" */
    uint8_t type;      /**< stream type: 0, 1 or 4 */
    uint8_t reserved_1[3];
    const void* specific; /**< block of the stream type: 64, 192 or 32 bytes by it */
    uint8_t reserved_2[204];
    const char* second; /**< a text; null counts as "" */
    uint8_t reserved_3[40];
} qeltvapi_svctx_select_t;

/** Select request of c_svctx_select_svc_64(): the same in other places. */
typedef struct {
    const char* first; /**< a text; null counts as "" */
    uint32_t reserved_0;
    uint8_t type; /**< stream type: 0, 1 or 4 */
    uint8_t reserved_1[3];
    const void* specific; /**< block of the stream type: 64, 192 or 32 bytes by it */
    uint8_t reserved_2[232];
    const char* second; /**< a text; null counts as "" */
    uint8_t reserved_3[8];
} qeltvapi_svctx_select_64_t;

/**
 * Sets the function that is told of the events of all contexts, in place of the one before. Asks
 * no service, and does not ask for the callback object to be registered either (see
 * registerCallbackHandler()).
 *
 * @param ctx      ignored
 * @param listener called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int c_svctx_set_listener(uint32_t ctx, qeltvapi_svctx_listener_t listener);

/**
 * Opens a context. Asks method 16.
 *
 * @param name the pipeline; null counts as ""
 * @param ctx  [out] the context
 * @return the service's code
 */
int c_svctx_open(const char* name, uint32_t* ctx);

/**
 * Closes a context. Asks method 17.
 *
 * @param ctx the context
 * @return the service's code
 */
int c_svctx_close(uint32_t ctx);

/**
 * Reads an attribute of a context. Asks method 18.
 *
 * @param ctx  the context
 * @param type the attribute
 * @param buf  [in,out] sent as it stands; then the attribute, when it fits
 * @param len  [in,out] room in `buf` in bytes, of which the low 32 bits count; then the length of
 *             the attribute, when it fits. Read while debugging even when the service is not there
 * @return the service's code, also when the attribute does not fit
 */
int c_svctx_get_64(uint32_t ctx, uint32_t type, void* buf, uint64_t* len);

/**
 * As c_svctx_get_64(), with a 32-bit length.
 *
 * @param ctx  the context
 * @param type the attribute
 * @param buf  [in,out] as there
 * @param len  [in,out] as there; read even when the service is not there
 * @return the service's code, also when the attribute does not fit
 */
int c_svctx_get(uint32_t ctx, uint32_t type, void* buf, uint32_t* len);

/**
 * Reads the resolution of the video source. Asks method 19.
 *
 * @param ctx the context
 * @param buf [out] QELTVAPI_SVCTX_VIDEO_SRC_RESOLUTION_SIZE bytes
 * @return the service's code
 */
int c_svctx_get_video_src_resolution(uint32_t ctx, void* buf);

/**
 * Selects a service. Asks method 20. The block of an unknown stream type is sent empty, and that
 * is logged whatever the debug switch.
 *
 * @param ctx     the context
 * @param v       passed to the service unchanged
 * @param request the request; null sends empty blocks and texts
 * @param side    side block of QELTVAPI_SVCTX_SIDE_SIZE bytes; null sends an empty one
 * @param unused  not looked at
 * @param tag     comes back in notifications
 * @return the service's code
 */
int c_svctx_select_svc(uint32_t ctx, uint32_t v, const qeltvapi_svctx_select_t* request,
                       const void* side, uint32_t unused, void* tag);

/**
 * As c_svctx_select_svc(), with the other layout of the request. The service tells the two apart
 * by the size of the side block.
 *
 * @param ctx     the context
 * @param v       passed to the service unchanged
 * @param request the request; null sends empty blocks and texts
 * @param side    side block of QELTVAPI_SVCTX_SIDE_64_SIZE bytes; null sends an empty one
 * @param unused  not looked at
 * @param tag     comes back in notifications
 * @return the service's code
 */
int c_svctx_select_svc_64(uint32_t ctx, uint32_t v, const qeltvapi_svctx_select_64_t* request,
                          const void* side, uint32_t unused, void* tag);

/**
 * Sets an attribute of a stream. Asks method 21.
 *
 * @param ctx    the context
 * @param stream passed to the service unchanged
 * @param attr   passed to the service unchanged
 * @param buf    the attribute
 * @param len    its length in bytes, of which the low 32 bits count
 * @return the service's code
 */
int c_svctx_set_stream_attr_64(uint32_t ctx, uint32_t stream, uint32_t attr, const void* buf,
                               uint64_t len);

/**
 * As c_svctx_set_stream_attr_64(), with a 32-bit length.
 *
 * @param ctx    the context
 * @param stream passed to the service unchanged
 * @param attr   passed to the service unchanged
 * @param buf    the attribute
 * @param len    its length in bytes
 * @return the service's code
 */
int c_svctx_set_stream_attr(uint32_t ctx, uint32_t stream, uint32_t attr, const void* buf,
                            uint32_t len);

/**
 * Reads an attribute of a connection. Asks method 22.
 *
 * @param ctx  the context
 * @param conn passed to the service unchanged
 * @param code 0xC1000004 for 48 bytes; 0xC1000007, 0xC1000008, 0xC100000C or 0xC1000013 for 4
 * @param buf  [out] the attribute
 * @return the service's code; -2 for any other attribute, whether or not the service is there,
 *         which is logged whatever the debug switch
 */
int c_svctx_get_conn_attr(uint32_t ctx, uint32_t conn, uint32_t code, void* buf);

/**
 * Sets an attribute of a connection. Asks method 23.
 *
 * @param ctx  the context
 * @param conn passed to the service unchanged
 * @param code 0xC0000065 for 32 bytes, 0xC100021F for 16, 0xC0000069 for 4
 * @param buf  [in,out] the attribute; then what the service made of it
 * @return the service's code; -2 for any other attribute, whether or not the service is there,
 *         which is logged whatever the debug switch
 */
int c_svctx_set_conn_attr(uint32_t ctx, uint32_t conn, uint32_t code, void* buf);

/**
 * Reads the audio information of a context. Asks method 24.
 *
 * @param ctx the context
 * @param buf [out] QELTVAPI_SVCTX_AUDIO_INFO_SIZE bytes
 * @return the service's code
 */
int c_svctx_get_audio_info(uint32_t ctx, void* buf);

QELTVAPI_END_DECLS

#endif /* HW_SVCTX_H */
