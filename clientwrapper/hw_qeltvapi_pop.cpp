#include "hw_qeltvapi_pop.h"

#include "hw_qeltvapi_common.h"

namespace {

constexpr char kTag[] = "(hw_qeltvapi_pop)(client)";

}  // namespace

int a_qeltvapi_pop_register_callback(void) {
    QELTVAPI_TRACE_AT(kTag, 126, "%s", __func__);
    return 0;
}

int a_qeltvapi_pop_enter_next_tv_mode(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_pop_swap_win(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_pop_switch_audio_focus(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_pop_goto_next_win_size(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_pop_goto_next_win_pos(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_pop_get_focus_win_info(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}

int a_qeltvapi_pop_get_focus_id(QELTVAPI_ANY_ARGS) {
    QELTVAPI_TRACE(kTag, "%s", __func__);
    return 0;
}
