#include "hw_svctx.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_SVCTX_SELECT_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_svctx)(client)";

constexpr Family<IQelTvApi> kSvctx{kTag, getQelTvApiService};

constexpr int kUnknownAttribute = -2;

#if __SIZEOF_POINTER__ == 4
static_assert(sizeof(qeltvapi_svctx_select_t) == QELTVAPI_SVCTX_SELECT_SIZE);
static_assert(offsetof(qeltvapi_svctx_select_t, type) == 4);
static_assert(offsetof(qeltvapi_svctx_select_t, specific) == 8);
static_assert(offsetof(qeltvapi_svctx_select_t, second) == 216);
static_assert(sizeof(qeltvapi_svctx_select_64_t) == QELTVAPI_SVCTX_SELECT_SIZE);
static_assert(offsetof(qeltvapi_svctx_select_64_t, type) == 8);
static_assert(offsetof(qeltvapi_svctx_select_64_t, specific) == 12);
static_assert(offsetof(qeltvapi_svctx_select_64_t, second) == 248);
#endif

/** A block of `size` bytes: copied when the answer has that size, else only warned about. */
auto storeBlock(void* buf, int size) {
    return [=](const hidl_vec<uint8_t>& data, int32_t code) {
        const int received = static_cast<int>(data.size());
        if (received == size) {
            copyAll(buf, data);
        } else {
            QELTVAPI_LOG(kTag, "warning! %d, %d", size, received);
        }
        return code;
    };
}

/**
 * Both select requests; they differ in the places of the fields and the size of the side block.
 * `unknownType` is the place that the line about an unknown stream type names.
 */
template <class Request>
int select(const Site& here, const Site& unknownType, uint32_t ctx, uint32_t v,
           const Request* request, const void* side, size_t sideSize, void* tag) {
    Call<IQelTvApi> call(kSvctx, here);
    if (!call) return kSvctx.missing;

    HIDL_SVCTX_SELECT_T req;
    if (request != nullptr) {
        size_t specificSize = 0;
        switch (request->type) {
            case 0:
                specificSize = 64;
                break;
            case 1:
                specificSize = 192;
                break;
            case 4:
                specificSize = 32;
                break;
            default:
                QELTVAPI_LOG_SITE(kTag, unknownType, "<%s:%d> .");
                break;
        }
        req.block = over(request, QELTVAPI_SVCTX_SELECT_SIZE);
        req.first = text(request->first);
        req.second = text(request->second);
        req.specific = over(request->specific, specificSize);
    }
    return call.direct(&IQelTvApi::a_hidl_c_svctx_select_svc, ctx, v, req, over(side, sideSize),
                       static_cast<uint64_t>(reinterpret_cast<uintptr_t>(tag)));
}

/** The length of an attribute by its code, 0 for an unknown one. */
int readableLength(uint32_t code) {
    switch (code) {
        case 0xC1000004:
            return 48;
        case 0xC1000007:
        case 0xC1000008:
        case 0xC100000C:
        case 0xC1000013:
            return 4;
        default:
            return 0;
    }
}

int writableLength(uint32_t code) {
    switch (code) {
        case 0xC0000065:
            return 32;
        case 0xC100021F:
            return 16;
        case 0xC0000069:
            return 4;
        default:
            return 0;
    }
}

}  // namespace

int c_svctx_set_listener(uint32_t /* ctx */, qeltvapi_svctx_listener_t listener) {
    QELTVAPI_TRACE_AT(kTag, 55, "%s", __func__);
    QelTvApiCallbackImpl::pf_svctx_listener.set(listener);
    return 0;
}

int c_svctx_open(const char* name, uint32_t* ctx) {
    return ask(kSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_open, storeValue(ctx), text(name));
}

int c_svctx_close(uint32_t ctx) {
    return direct(kSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_close, ctx);
}

int c_svctx_get_64(uint32_t ctx, uint32_t type, void* buf, uint64_t* len) {
    QELTVAPI_TRACE(kTag, "%llu", static_cast<unsigned long long>(*len));
    Call<IQelTvApi> call(kSvctx, HERE);
    if (!call) return kSvctx.missing;
    return call.ask(
            &IQelTvApi::a_hidl_c_svctx_get_64,
            [=](const hidl_vec<uint8_t>& data, int32_t code) {
                if (data.size() <= static_cast<uint32_t>(*len)) {
                    copyAll(buf, data);
                    *len = data.size();
                } else {
                    QELTVAPI_LOG(kTag, "warning! %llu, %d", static_cast<unsigned long long>(*len),
                                 static_cast<int>(data.size()));
                }
                return code;
            },
            ctx, type, over(buf, static_cast<uint32_t>(*len)));
}

int c_svctx_get(uint32_t ctx, uint32_t type, void* buf, uint32_t* len) {
    uint64_t wide = *len;
    const int result = c_svctx_get_64(ctx, type, buf, &wide);
    *len = static_cast<uint32_t>(wide);
    return result;
}

int c_svctx_get_video_src_resolution(uint32_t ctx, void* buf) {
    return ask(kSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_get_video_src_resolution,
               storeBlock(buf, QELTVAPI_SVCTX_VIDEO_SRC_RESOLUTION_SIZE), ctx);
}

int c_svctx_select_svc(uint32_t ctx, uint32_t v, const qeltvapi_svctx_select_t* request,
                       const void* side, uint32_t /* unused */, void* tag) {
    return select(HERE, Site{__func__, 185}, ctx, v, request, side, QELTVAPI_SVCTX_SIDE_SIZE, tag);
}

int c_svctx_select_svc_64(uint32_t ctx, uint32_t v, const qeltvapi_svctx_select_64_t* request,
                          const void* side, uint32_t /* unused */, void* tag) {
    return select(HERE, Site{__func__, 240}, ctx, v, request, side, QELTVAPI_SVCTX_SIDE_64_SIZE,
                  tag);
}

int c_svctx_set_stream_attr_64(uint32_t ctx, uint32_t stream, uint32_t attr, const void* buf,
                               uint64_t len) {
    return direct(kSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_set_stream_attr_64, ctx, stream, attr,
                  over(buf, static_cast<uint32_t>(len)));
}

int c_svctx_set_stream_attr(uint32_t ctx, uint32_t stream, uint32_t attr, const void* buf,
                            uint32_t len) {
    return c_svctx_set_stream_attr_64(ctx, stream, attr, buf, len);
}

int c_svctx_get_conn_attr(uint32_t ctx, uint32_t conn, uint32_t code, void* buf) {
    const int length = readableLength(code);
    if (length == 0) {
        QELTVAPI_LOG(kTag, "not implemented!");
        return kUnknownAttribute;
    }
    return ask(kSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_get_conn_attr, storeBlock(buf, length), ctx,
               conn, code, static_cast<uint32_t>(length));
}

int c_svctx_set_conn_attr(uint32_t ctx, uint32_t conn, uint32_t code, void* buf) {
    const int length = writableLength(code);
    if (length == 0) {
        QELTVAPI_LOG(kTag, "not implemented!");
        return kUnknownAttribute;
    }
    return ask(kSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_set_conn_attr, storeBlock(buf, length), ctx,
               conn, code, over(buf, static_cast<size_t>(length)));
}

int c_svctx_get_audio_info(uint32_t ctx, void* buf) {
    return ask(kSvctx, HERE, &IQelTvApi::a_hidl_c_svctx_get_audio_info,
               storeBlock(buf, QELTVAPI_SVCTX_AUDIO_INFO_SIZE), ctx);
}
