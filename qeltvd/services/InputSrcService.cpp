#include "InputSrcService.h"

#include "Code.h"

namespace qeltvd {

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

InputSrcService::InputSrcService(Inputs& inputs, Presentation& presentation)
        : mInputs(inputs), mPresentation(presentation) {}

/** A name in a form; a QELTV_NAME_FORM that there is not is refused. */
template <class Reply>
void InputSrcService::answerName(int32_t id, int32_t form, const Reply& reply) const {
    const bool isForm = form == QELTV_NAME_PLAIN || form == QELTV_NAME_SHOWN;
    reply(isForm ? mInputs.name(id, static_cast<QELTV_NAME_FORM>(form)) : "",
          isForm ? known(id) : kBadValue);
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_isVideoSignalAvailable(
        const String& path, a_hidl_qeltvapi_inputsource_isVideoSignalAvailable_cb reply) {
    const auto number = Presentation::pathOf(path);
    const bool plays = number && mPresentation.video(*number).width != 0;
    reply(plays, number ? kOk : kNotFound);
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_isAudioSignalAvailable(
        const String& path, a_hidl_qeltvapi_inputsource_isAudioSignalAvailable_cb reply) {
    const auto number = Presentation::pathOf(path);
    const bool plays = number && !mPresentation.tracks(*number).empty();
    reply(plays, number ? kOk : kNotFound);
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_gpioid_byidx(
        int32_t idx, a_hidl_qeltvapi_inputsource_get_gpioid_byidx_cb reply) {
    const int32_t gpio = Inputs::exists(idx) ? Inputs::socket(idx).gpio : -1;
    reply(gpio, gpio >= 0 ? kOk : kNotFound);
    return Void();
}

Return<uint8_t> InputSrcService::a_hidl_qeltvapi_inputsource_get_hybrid_video_internal_id() {
    return static_cast<uint8_t>(*Inputs::byName("AV"));
}

Return<uint8_t> InputSrcService::a_hidl_qeltvapi_inputsource_get_hybrid_comp_internal_id() {
    return static_cast<uint8_t>(*Inputs::byName("Component"));
}

Return<uint8_t> InputSrcService::a_hidl_qeltvapi_inputsource_get_sourcetotalnum() {
    return static_cast<uint8_t>(Inputs::kCount);
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_sharepinrec_byidx(
        int32_t idx, a_hidl_qeltvapi_inputsource_get_sharepinrec_byidx_cb reply) {
    int32_t next = 0;
    for (uint8_t a = 0; Inputs::exists(a); ++a) {
        for (uint8_t b = a; Inputs::exists(b); ++b) {
            if (!Inputs::conflict(a, b) || next++ != idx) continue;
            reply({a, b}, kOk);
            return Void();
        }
    }
    reply({}, kNotFound);
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_sourcerec_byidx(
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
    record.name = mInputs.name(idx, QELTV_NAME_PLAIN);
    record.tail = static_cast<uint8_t>((mInputs.hasSignal(idx) ? QELTV_INPUT_HAS_SIGNAL : 0) |
                                       (socket.mhl ? QELTV_INPUT_MHL : 0));
    reply(record, kOk);
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_currentsourcename(
        int32_t capacity, a_hidl_qeltvapi_inputsource_get_currentsourcename_cb reply) {
    answerName(mPresentation.status(Presentation::kMain).source, capacity, reply);
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_currentsourcename_bypath(
        int32_t capacity, const String& path,
        a_hidl_qeltvapi_inputsource_get_currentsourcename_bypath_cb reply) {
    const auto number = Presentation::pathOf(path);
    answerName(number ? mPresentation.status(*number).source : -1, capacity, reply);
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_sourcename_bysourceid(
        int32_t id, int32_t capacity,
        a_hidl_qeltvapi_inputsource_get_sourcename_bysourceid_cb reply) {
    answerName(id, capacity, reply);
    return Void();
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_changesource_bysourceid(int32_t id) {
    return mPresentation.changeSource(Presentation::kMain, id);
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_is_source_available_bysourceidandpath(
        int32_t id, const String& path,
        a_hidl_qeltvapi_inputsource_is_source_available_bysourceidandpath_cb reply) {
    const auto number = Presentation::pathOf(path);
    const bool known = number && Inputs::exists(id);
    reply(known && mPresentation.isAvailable(*number, id), known ? kOk : kNotFound);
    return Void();
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_changesource_bysourceidandpath(
        int32_t id, const String& path) {
    const auto number = Presentation::pathOf(path);
    return number ? mPresentation.changeSource(*number, id) : kNotFound;
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_cs_bysourceidandpathandpriority(
        int32_t id, const String& path, int32_t prio) {
    const auto number = Presentation::pathOf(path);
    if (!number) return kNotFound;
    if (prio < 0) return kBadValue;
    // The lowest priority takes only a path that shows nothing.
    if (prio == 0 && mPresentation.resource(*number) != QELTV_RESOURCE_NONE) return kRefused;
    return mPresentation.changeSource(*number, id);
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_is_block_bysourceid(
        int32_t id, a_hidl_qeltvapi_inputsource_is_block_bysourceid_cb reply) {
    reply(mPresentation.isBlockedNow(id), known(id));
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_is_source_block_bysourceid(
        int32_t id, a_hidl_qeltvapi_inputsource_is_source_block_bysourceid_cb reply) {
    reply(mInputs.blocked(id), known(id));
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_is_source_autodetect_bysourceid(
        int32_t id, a_hidl_qeltvapi_inputsource_is_source_autodetect_bysourceid_cb reply) {
    reply(mInputs.autoDetect(id), known(id));
    return Void();
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_set_source_blockstatus_bysourceid(
        int32_t id, bool block) {
    const int32_t code = mInputs.setBlocked(id, block);
    if (code == kOk) mPresentation.blocksChanged();
    return code;
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(
        int32_t id, bool on) {
    return mInputs.setAutoDetect(id, on);
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid(
        int32_t id, a_hidl_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid_cb reply) {
    reply(mInputs.label(id), known(id));
    return Void();
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(
        int32_t id, int32_t label) {
    return mInputs.setLabel(id, label);
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_userdefname_bysourceid(
        int32_t id, int32_t /*capacity*/,
        a_hidl_qeltvapi_inputsource_get_userdefname_bysourceid_cb reply) {
    reply(mInputs.userName(id), known(id));
    return Void();
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_set_userdefname_bysourceid(
        int32_t id, const String& name) {
    return mInputs.setUserName(id, name);
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_external_device_has_signal(
        int32_t id, int32_t /*extra*/,
        a_hidl_qeltvapi_inputsource_get_external_device_has_signal_cb reply) {
    reply(mInputs.hasSignal(id), known(id));
    return Void();
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_sync_stop(const String& path,
                                                                       bool /*extra*/) {
    const auto number = Presentation::pathOf(path);
    return number ? mPresentation.stop(*number) : kNotFound;
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_query_conflict(
        int32_t first, int32_t second, a_hidl_qeltvapi_inputsource_query_conflict_cb reply) {
    const bool exist = Inputs::exists(first) && Inputs::exists(second);
    reply(exist && (first == second || Inputs::conflict(first, second)), exist ? kOk : kNotFound);
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_get_mhl_port_num(
        a_hidl_qeltvapi_inputsource_get_mhl_port_num_cb reply) {
    reply(mhlPort(), kOk);
    return Void();
}

Return<void> InputSrcService::a_hidl_qeltvapi_inputsource_check_menu_tv_block(
        a_hidl_qeltvapi_inputsource_check_menu_tv_block_cb reply) {
    reply(mPresentation.isBlockedNow(Inputs::kTuner), kOk);
    return Void();
}

Return<int32_t> InputSrcService::a_hidl_qeltvapi_inputsource_set_scart_auto_jump(bool on) {
    return mInputs.setScartAutoJump(on);
}

}  // namespace qeltvd
