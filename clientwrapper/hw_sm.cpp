#include "hw_sm.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_sm)(client)";

constexpr Family<IQelTvApi> kSm{kTag, getQelTvApiService};

constexpr int kUnknownType = -2;

#if __SIZEOF_POINTER__ == 4
static_assert(sizeof(qeltvapi_scc_cmd_t) == 8 && offsetof(qeltvapi_scc_cmd_t, value) == 4);
#endif

/** The last name among the commands behind the first, null when there is none. */
const char* nameAmong(const qeltvapi_scc_cmd_t* cmds) {
    const char* name = nullptr;
    for (const qeltvapi_scc_cmd_t* cmd = cmds + 1; cmd->code != QELTVAPI_SCC_CMD_END; ++cmd) {
        if (cmd->code == QELTVAPI_SCC_CMD_NAME) {
            name = static_cast<const char*>(cmd->value.pointer);
        }
    }
    return name;
}

/**
 * Looks for the block among the commands behind the first. Returns the marker that goes with it.
 * The trace line shows this function's name.
 */
uint8_t _set_cmd_array(const qeltvapi_scc_cmd_t* cmds, const void** block) {
    uint8_t marker = 0;
    for (const qeltvapi_scc_cmd_t* cmd = cmds + 1; cmd->code != QELTVAPI_SCC_CMD_END; ++cmd) {
        QELTVAPI_TRACE_AT(kTag, 119, "%d,%d", QELTVAPI_SCC_CMD_BLOCK, static_cast<int>(cmd->code));
        if (cmd->code == QELTVAPI_SCC_CMD_BLOCK) {
            *block = cmd->value.pointer;
            marker = QELTVAPI_SCC_CMD_BLOCK;
        }
    }
    return marker;
}

}  // namespace

int c_scc_comp_open(const qeltvapi_scc_cmd_t* cmds, uint32_t* comp) {
    const uint32_t type = cmds->code == QELTVAPI_SCC_CMD_TYPE ? cmds->value.number : 0;
    const char* name = nameAmong(cmds);
    const void* block = nullptr;
    uint8_t marker = 0;
    if (type == 0) {
        marker = _set_cmd_array(cmds, &block);
    } else if (type != 1 && type != 2) {
        QELTVAPI_LOG(kTag, "%d", kUnknownType);
        return kUnknownType;
    }
    // Unlike its siblings it gives 0 without a service.
    return ask(
            kSm.withPreset(0).withMissing(0), HERE, &IQelTvApi::a_hidl_c_scc_comp_open,
            [=](uint32_t handle, int32_t code) {
                QELTVAPI_TRACE(kTag, "resuit %d %d", static_cast<int>(handle), code);
                *comp = handle;
                return code;
            },
            type, text(name), marker, over(block, QELTVAPI_SCC_BLOCK_SIZE));
}

int c_scc_comp_close(uint32_t comp) {
    return direct(kSm, HERE, &IQelTvApi::a_hidl_c_scc_comp_close, comp);
}

int c_scc_vid_set_src_detect_nfy(uint32_t comp, qeltvapi_src_detect_nfy_cb_t fn, void* tag) {
    Call<IQelTvApi> call(kSm, HERE);
    if (!call) return kSm.missing;
    QelTvApiCallbackImpl::pf_src_detect_nfy_cb.set(fn);
    return call.direct(&IQelTvApi::a_hidl_c_scc_vid_set_src_detect_nfy, comp,
                       static_cast<uint64_t>(reinterpret_cast<uintptr_t>(tag)));
}
