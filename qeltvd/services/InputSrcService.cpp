#include "InputSrcService.h"

#include "Code.h"

namespace qeltvd {

using android::hardware::Void;

namespace {

int32_t known(int32_t id) {
    return Inputs::exists(id) ? kOk : kNotFound;
}

uint8_t mhlPort() {
    for (int32_t id = 0; Inputs::exists(id); ++id) {
        if (Inputs::socket(id).mhl) return Inputs::socket(id).number;
    }
    return 0;
}

}  // namespace

InputSrcService::InputSrcService(Television& tv)
        : IQelTvApiInputSrcDefault(kUnsupported, false), mTv(tv) {}

/** A name in a form; a QELTV_NAME_FORM that there is not is refused. */
template <class Reply>
void InputSrcService::answerName(int32_t id, int32_t form, const Reply& reply) const {
    const bool isForm = form == QELTV_NAME_PLAIN || form == QELTV_NAME_SHOWN;
    reply(isForm ? mTv.inputs.name(id, static_cast<QELTV_NAME_FORM>(form)) : "",
          isForm ? known(id) : kBadValue);
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_isVideoSignalAvailable(
        const String& path, a_hidl_qeltvapi_inputsource_isVideoSignalAvailable_cb reply) {
    const auto number = Presentation::pathOf(path);
    const bool plays = number && mTv.presentation.video(*number).width != 0;
    reply(plays, number ? kOk : kNotFound);
    return Void();
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_isAudioSignalAvailable(
        const String& path, a_hidl_qeltvapi_inputsource_isAudioSignalAvailable_cb reply) {
    const auto number = Presentation::pathOf(path);
    const bool plays = number && !mTv.presentation.tracks(*number).empty();
    reply(plays, number ? kOk : kNotFound);
    return Void();
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_gpioid_byidx(
        int32_t idx, a_hidl_qeltvapi_inputsource_get_gpioid_byidx_cb reply) {
    const int32_t gpio = Inputs::exists(idx) ? Inputs::socket(idx).gpio : -1;
    reply(gpio, gpio >= 0 ? kOk : kNotFound);
    return Void();
}

InputSrcService::Return<uint8_t>
InputSrcService::a_hidl_qeltvapi_inputsource_get_hybrid_video_internal_id() {
    return static_cast<uint8_t>(*Inputs::byName("AV"));
}

InputSrcService::Return<uint8_t>
InputSrcService::a_hidl_qeltvapi_inputsource_get_hybrid_comp_internal_id() {
    return static_cast<uint8_t>(*Inputs::byName("Component"));
}

InputSrcService::Return<uint8_t> InputSrcService::a_hidl_qeltvapi_inputsource_get_sourcetotalnum() {
    return static_cast<uint8_t>(Inputs::kCount);
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_sharepinrec_byidx(
        int32_t idx, a_hidl_qeltvapi_inputsource_get_sharepinrec_byidx_cb reply) {
    int32_t left = idx;
    for (uint8_t a = 0; Inputs::exists(a); ++a) {
        for (uint8_t b = a; Inputs::exists(b); ++b) {
            if (!Inputs::conflict(a, b) || left-- != 0) continue;
            reply({a, b}, kOk);
            return Void();
        }
    }
    reply({}, kNotFound);
    return Void();
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_sourcerec_byidx(
        int32_t idx, a_hidl_qeltvapi_inputsource_get_sourcerec_byidx_cb reply) {
    if (!Inputs::exists(idx)) {
        reply({}, kNotFound);
        return Void();
    }
    const Inputs::Socket& socket = Inputs::socket(idx);
    HIDL_QELTVAPI_INPUT_SOURCE_RECORD_T record{};
    record.byte0 = static_cast<uint8_t>(idx);
    record.byte1 = socket.type;
    record.byte2 = socket.number;
    record.name = mTv.inputs.name(idx, QELTV_NAME_PLAIN);
    record.tail = static_cast<uint8_t>((mTv.inputs.hasSignal(idx) ? QELTV_INPUT_HAS_SIGNAL : 0) |
                                       (socket.mhl ? QELTV_INPUT_MHL : 0));
    reply(record, kOk);
    return Void();
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_currentsourcename(
        int32_t p2, a_hidl_qeltvapi_inputsource_get_currentsourcename_cb reply) {
    answerName(mTv.presentation.status(Presentation::kMain).source, p2, reply);
    return Void();
}

InputSrcService::Return<void>
InputSrcService::a_hidl_qeltvapi_inputsource_get_currentsourcename_bypath(
        int32_t p2, const String& path,
        a_hidl_qeltvapi_inputsource_get_currentsourcename_bypath_cb reply) {
    const auto number = Presentation::pathOf(path);
    answerName(number ? mTv.presentation.status(*number).source : -1, p2, reply);
    return Void();
}

InputSrcService::Return<void>
InputSrcService::a_hidl_qeltvapi_inputsource_get_sourcename_bysourceid(
        int32_t id, int32_t p3, a_hidl_qeltvapi_inputsource_get_sourcename_bysourceid_cb reply) {
    answerName(id, p3, reply);
    return Void();
}

InputSrcService::Return<int32_t>
InputSrcService::a_hidl_qeltvapi_inputsource_changesource_bysourceid(int32_t id) {
    return mTv.presentation.changeSource(Presentation::kMain, id);
}

InputSrcService::Return<void>
InputSrcService::a_hidl_qeltvapi_inputsource_is_source_available_bysourceidandpath(
        int32_t id, const String& path,
        a_hidl_qeltvapi_inputsource_is_source_available_bysourceidandpath_cb reply) {
    const auto number = Presentation::pathOf(path);
    const bool known = number && Inputs::exists(id);
    reply(known && mTv.presentation.isAvailable(*number, id), known ? kOk : kNotFound);
    return Void();
}

InputSrcService::Return<int32_t>
InputSrcService::a_hidl_qeltvapi_inputsource_changesource_bysourceidandpath(int32_t id,
                                                                            const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mTv.presentation.changeSource(*number, id) : kNotFound;
}

InputSrcService::Return<int32_t>
InputSrcService::a_hidl_qeltvapi_inputsource_cs_bysourceidandpathandpriority(int32_t id,
                                                                             const String& path,
                                                                             int32_t prio) {
    const auto number = Presentation::pathOf(path);
    if (!number) return kNotFound;
    if (prio < 0) return kBadValue;
    // The lowest priority takes only a path that shows nothing.
    if (prio == 0 && mTv.presentation.resource(*number) != QELTV_RESOURCE_NONE) return kRefused;
    return mTv.presentation.changeSource(*number, id);
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_is_block_bysourceid(
        int32_t id, a_hidl_qeltvapi_inputsource_is_block_bysourceid_cb reply) {
    reply(mTv.presentation.isBlockedNow(id), known(id));
    return Void();
}

InputSrcService::Return<void>
InputSrcService::a_hidl_qeltvapi_inputsource_is_source_block_bysourceid(
        int32_t id, a_hidl_qeltvapi_inputsource_is_source_block_bysourceid_cb reply) {
    reply(mTv.inputs.blocked(id), known(id));
    return Void();
}

InputSrcService::Return<void>
InputSrcService::a_hidl_qeltvapi_inputsource_is_source_autodetect_bysourceid(
        int32_t id, a_hidl_qeltvapi_inputsource_is_source_autodetect_bysourceid_cb reply) {
    reply(mTv.inputs.autoDetect(id), known(id));
    return Void();
}

InputSrcService::Return<int32_t>
InputSrcService::a_hidl_qeltvapi_inputsource_set_source_blockstatus_bysourceid(int32_t id,
                                                                               bool block) {
    const int32_t code = mTv.inputs.setBlocked(id, block);
    if (code == kOk) mTv.presentation.blocksChanged();
    return code;
}

InputSrcService::Return<int32_t>
InputSrcService::a_hidl_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(int32_t id,
                                                                                    bool on) {
    return mTv.inputs.setAutoDetect(id, on);
}

InputSrcService::Return<void>
InputSrcService::a_hidl_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid(
        int32_t id, a_hidl_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid_cb reply) {
    reply(mTv.inputs.label(id), known(id));
    return Void();
}

InputSrcService::Return<int32_t>
InputSrcService::a_hidl_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(int32_t id,
                                                                                 int32_t label) {
    return mTv.inputs.setLabel(id, label);
}

InputSrcService::Return<void>
InputSrcService::a_hidl_qeltvapi_inputsource_get_userdefname_bysourceid(
        int32_t id, int32_t /*p3*/,
        a_hidl_qeltvapi_inputsource_get_userdefname_bysourceid_cb reply) {
    reply(mTv.inputs.userName(id), known(id));
    return Void();
}

InputSrcService::Return<int32_t>
InputSrcService::a_hidl_qeltvapi_inputsource_set_userdefname_bysourceid(int32_t id,
                                                                        const String& name) {
    return mTv.inputs.setUserName(id, name);
}

InputSrcService::Return<void>
InputSrcService::a_hidl_qeltvapi_inputsource_get_external_device_has_signal(
        int32_t p1, int32_t /*p2*/,
        a_hidl_qeltvapi_inputsource_get_external_device_has_signal_cb reply) {
    reply(mTv.inputs.hasSignal(p1), known(p1));
    return Void();
}

InputSrcService::Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_sync_stop(
        const String& path, bool /*p2*/) {
    const auto number = Presentation::pathOf(path);
    return number ? mTv.presentation.stop(*number) : kNotFound;
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_query_conflict(
        int32_t p1, int32_t p2, a_hidl_qeltvapi_inputsource_query_conflict_cb reply) {
    const bool exist = Inputs::exists(p1) && Inputs::exists(p2);
    reply(exist && (p1 == p2 || Inputs::conflict(p1, p2)), exist ? kOk : kNotFound);
    return Void();
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_mhl_port_num(
        a_hidl_qeltvapi_inputsource_get_mhl_port_num_cb reply) {
    reply(mhlPort(), kOk);
    return Void();
}

InputSrcService::Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_check_menu_tv_block(
        a_hidl_qeltvapi_inputsource_check_menu_tv_block_cb reply) {
    reply(mTv.presentation.isBlockedNow(Inputs::kTuner), kOk);
    return Void();
}

InputSrcService::Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_set_scart_auto_jump(
        bool on) {
    return mTv.inputs.setScartAutoJump(on);
}

}  // namespace qeltvd
