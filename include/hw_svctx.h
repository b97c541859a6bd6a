/**
 * Service contexts in the middleware's older C interface: a context is one presentation pipeline, a
 * tuner path and its decoders. The service owns it; the caller has a 32-bit handle.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service and after a
 * transport failure. The missing service is not logged. An answer of an unexpected size leaves the
 * caller's block as it is and is logged regardless of the debug switch; the result is the service's
 * code then, too.
 *
 * The layouts of the blocks and the meaning of the codes are service-defined; the sizes are fixed.
 * Reference television: layouts/presentation.h has them.
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
    /** a text, null counts as ""; reference television: without a block a channel number or
     *  the name of an input */
    const char* first;
    uint8_t type;          /**< stream type: 0, 1 or 4 */
    uint8_t reserved_1[3]; /**< sent as it stands */
    /** block of the stream type, 64, 192 or 32 bytes; reference television: a
     *  QELTV_SELECT_CHANNEL_T for type 0, a QELTV_SELECT_INPUT_T for type 4 */
    const void* specific;
    uint8_t reserved_2[204]; /**< sent as it stands */
    const char* second;      /**< a text, null counts as "" */
    uint8_t reserved_3[40];  /**< sent as it stands */
} qeltvapi_svctx_select_t;

/** Select request of c_svctx_select_svc_64(): the same fields at other offsets. */
typedef struct {
    /** a text, null counts as ""; reference television: without a block a channel number or
     *  the name of an input */
    const char* first;
    uint32_t reserved_0;   /**< sent as it stands */
    uint8_t type;          /**< stream type: 0, 1 or 4 */
    uint8_t reserved_1[3]; /**< sent as it stands */
    /** block of the stream type, 64, 192 or 32 bytes; reference television: a
     *  QELTV_SELECT_CHANNEL_T for type 0, a QELTV_SELECT_INPUT_T for type 4 */
    const void* specific;
    uint8_t reserved_2[232]; /**< sent as it stands */
    const char* second;      /**< a text, null counts as "" */
    uint8_t reserved_3[8];   /**< sent as it stands */
} qeltvapi_svctx_select_64_t;

/**
 * Registers the callback for the events of all contexts, replacing the previous one. It does not
 * register the callback object with the service; a_qeltvapi_channellist_register_callback(), for
 * example, requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param ctx      ignored
 * @param listener the callback; null to remove it
 * @return 0
 */
int c_svctx_set_listener(uint32_t ctx, qeltvapi_svctx_listener_t listener);

/**
 * Opens a context.
 *
 * @param name the pipeline, null counts as ""; reference television: the video path, "main" (also
 *             "") or "sub"
 * @param ctx  [out] the context
 * @return the service's code
 */
int c_svctx_open(const char* name, uint32_t* ctx);

/**
 * Closes a context.
 *
 * @param ctx the context
 * @return the service's code
 */
int c_svctx_close(uint32_t ctx);

/**
 * Reads an attribute of a context.
 *
 * @param ctx  the context
 * @param type the attribute; reference television: a QELTV_CONTEXT_ATTRIBUTE
 * @param buf  [in,out] buffer with the capacity in @p len, sent as it stands; then the attribute,
 *             if it fits
 * @param len  [in,out] capacity of @p buf in bytes, of which the low 32 bits count; then the length
 *             of the attribute, if it fits. Read while debugging even without a service
 * @return the service's code, even if the attribute does not fit; reference television:
 *         QELTV_BAD_VALUE then
 */
int c_svctx_get_64(uint32_t ctx, uint32_t type, void* buf, uint64_t* len);

/**
 * Reads an attribute of a context, with a 32-bit length.
 *
 * @param ctx  the context
 * @param type the attribute; reference television: a QELTV_CONTEXT_ATTRIBUTE
 * @param buf  [in,out] as of c_svctx_get_64()
 * @param len  [in,out] as of c_svctx_get_64(); read even without a service
 * @return the service's code, even if the attribute does not fit
 */
int c_svctx_get(uint32_t ctx, uint32_t type, void* buf, uint32_t* len);

/**
 * Reads the resolution of the video source.
 *
 * @param ctx the context
 * @param buf [out] QELTVAPI_SVCTX_VIDEO_SRC_RESOLUTION_SIZE bytes; reference television: a
 *            QELTV_VIDEO_SOURCE_T
 * @return the service's code
 */
int c_svctx_get_video_src_resolution(uint32_t ctx, void* buf);

/**
 * Selects a service. The block of an unknown stream type is sent empty, and that is logged
 * regardless of the debug switch.
 *
 * @param ctx     the context
 * @param v       service-defined; reference television: QELTV_SELECT_WITH_BANNER to show the
 *                banner, else 0
 * @param request the request; null sends empty blocks and texts
 * @param side    side block of QELTVAPI_SVCTX_SIDE_SIZE bytes; null sends an empty one; reference
 *                television: ignored
 * @param unused  ignored
 * @param tag     returned in the notifications
 * @return the service's code
 */
int c_svctx_select_svc(uint32_t ctx, uint32_t v, const qeltvapi_svctx_select_t* request,
                       const void* side, uint32_t unused, void* tag);

/**
 * Selects a service, with the other layout of the request. The service distinguishes the two by the
 * size of the side block.
 *
 * @param ctx     the context
 * @param v       service-defined; reference television: QELTV_SELECT_WITH_BANNER to show the
 *                banner, else 0
 * @param request the request; null sends empty blocks and texts
 * @param side    side block of QELTVAPI_SVCTX_SIDE_64_SIZE bytes; null sends an empty one;
 *                reference television: ignored
 * @param unused  ignored
 * @param tag     returned in the notifications
 * @return the service's code
 */
int c_svctx_select_svc_64(uint32_t ctx, uint32_t v, const qeltvapi_svctx_select_64_t* request,
                          const void* side, uint32_t unused, void* tag);

/**
 * Sets an attribute of a stream.
 *
 * @param ctx    the context
 * @param stream service-defined; reference television: a QELTV_STREAM
 * @param attr   service-defined; reference television: QELTV_STREAM_TRACK of the audio stream
 *               selects a track; others, to 255, are only kept
 * @param buf    the attribute; reference television: the track in 32 bits
 * @param len    size of the attribute in bytes, of which the low 32 bits count
 * @return the service's code
 */
int c_svctx_set_stream_attr_64(uint32_t ctx, uint32_t stream, uint32_t attr, const void* buf,
                               uint64_t len);

/**
 * Sets an attribute of a stream, with a 32-bit length.
 *
 * @param ctx    the context
 * @param stream service-defined; reference television: a QELTV_STREAM
 * @param attr   service-defined; reference television: QELTV_STREAM_TRACK of the audio stream
 *               selects a track; others, to 255, are only kept
 * @param buf    the attribute; reference television: the track in 32 bits
 * @param len    size of the attribute in bytes
 * @return the service's code
 */
int c_svctx_set_stream_attr(uint32_t ctx, uint32_t stream, uint32_t attr, const void* buf,
                            uint32_t len);

/**
 * Reads an attribute of a connection.
 *
 * @param ctx  the context
 * @param conn service-defined; reference television: ignored
 * @param code the attribute: 0xC1000004 has 48 bytes; 0xC1000007, 0xC1000008, 0xC100000C and
 *             0xC1000013 have 4; reference television: a QELTV_CONNECTION_ value
 * @param buf  [out] the attribute, 48 or 4 bytes by @p code; reference television: a
 *             QELTV_CONNECTION_T of 48
 * @return the service's code; -2 for any other attribute, with and without a service, which is
 *         logged regardless of the debug switch
 */
int c_svctx_get_conn_attr(uint32_t ctx, uint32_t conn, uint32_t code, void* buf);

/**
 * Sets an attribute of a connection.
 *
 * @param ctx  the context
 * @param conn service-defined; reference television: ignored
 * @param code the attribute: 0xC0000065 has 32 bytes, 0xC100021F 16, 0xC0000069 4; reference
 *             television: a QELTV_CONNECTION_ value
 * @param buf  [in,out] the attribute, 32, 16 or 4 bytes by @p code; then the attribute as the
 *             service has set it
 * @return the service's code; -2 for any other attribute, with and without a service, which is
 *         logged regardless of the debug switch
 */
int c_svctx_set_conn_attr(uint32_t ctx, uint32_t conn, uint32_t code, void* buf);

/**
 * Reads the audio information of a context.
 *
 * @param ctx the context
 * @param buf [out] QELTVAPI_SVCTX_AUDIO_INFO_SIZE bytes; reference television: a
 *            QELTV_AUDIO_TRACK_T
 * @return the service's code
 */
int c_svctx_get_audio_info(uint32_t ctx, void* buf);

QELTVAPI_END_DECLS

#endif /* HW_SVCTX_H */
