#include <cstring>

#include "Agent.h"
#include "Blocks.h"
#include "Captions.h"
#include "Code.h"
#include "ConfigItems.h"
#include "MainService.h"
#include "Teletext.h"

namespace qeltvd {

namespace {

Bytes table(const std::vector<QELTV_TOP_ENTRY_T>& entries) {
    const auto count = static_cast<uint32_t>(entries.size());
    Bytes bytes(sizeof(count) + count * sizeof(QELTV_TOP_ENTRY_T));
    memcpy(bytes.data(), &count, sizeof(count));
    if (count != 0)
        memcpy(&bytes[sizeof(count)], entries.data(), count * sizeof(QELTV_TOP_ENTRY_T));
    return bytes;
}

}  // namespace

// Closed captions

Return<int32_t> MainService::a_hidl_qeltvapi_isdbcc_enable(bool on) {
    return mModels.captions.enable(Captions::kIsdb, on);
}

Return<int32_t> MainService::a_hidl_qeltvapi_isdbcc_next_stream() {
    return mModels.captions.next(Captions::kIsdb);
}

Return<int32_t> MainService::a_hidl_qeltvapi_isdbcc_get_CCString() {
    return mModels.captions.shown(Captions::kIsdb);
}

Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_enable(bool on) {
    return mModels.captions.enable(Captions::kAtsc, on);
}

Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_next_stream() {
    return mModels.captions.next(Captions::kAtsc);
}

Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_get_CCString() {
    return mModels.captions.shown(Captions::kAtsc);
}

Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_set_visible(bool visible) {
    return mModels.captions.setVisible(Captions::kAtsc, visible);
}

Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_demo_set(uint32_t a, uint32_t b) {
    return mModels.captions.setDemo(a, b);
}

Return<int32_t> MainService::a_hidl_qeltvapi_analogcc_enable(bool on) {
    return mModels.captions.enable(Captions::kAnalogue, on);
}

Return<int32_t> MainService::a_hidl_qeltvapi_analogcc_next_stream() {
    return mModels.captions.next(Captions::kAnalogue);
}

Return<int32_t> MainService::a_hidl_qeltvapi_analogcc_get_CCString() {
    return mModels.captions.shown(Captions::kAnalogue);
}

Return<int32_t> MainService::a_hidl_qeltvapi_analogcc_set_visible(bool visible) {
    return mModels.captions.setVisible(Captions::kAnalogue, visible);
}

// Subtitles

/** As many words as the caller has sent: it takes all of the answer into them. */
Return<void> MainService::a_hidl_qeltvapi_subtitle_get_loop(
        const Vector<int32_t>& data, a_hidl_qeltvapi_subtitle_get_loop_cb reply) {
    std::vector<int32_t> loop = mModels.captions.subtitles();
    loop.resize(std::min(loop.size(), data.size()));
    reply(loop, kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_subtitle_play(uint32_t value) {
    return mModels.captions.playSubtitle(value);
}

Return<int32_t> MainService::a_hidl_qeltvapi_subtitle_set_next() {
    return mModels.captions.nextSubtitle();
}

// Teletext

Return<void> MainService::a_hidl_qeltvapi_teletext_get_cur_page(
        a_hidl_qeltvapi_teletext_get_cur_page_cb reply) {
    reply(bytesOf(mModels.teletext.current()), kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_teletext_set_page(uint32_t page) {
    return mModels.teletext.setPage(page);
}

Return<int32_t> MainService::a_hidl_qeltvapi_teletext_is_top_stream() {
    return mModels.teletext.hasTop() ? 1 : 0;
}

Return<void> MainService::a_hidl_qeltvapi_teletext_top_get_block_content(
        a_hidl_qeltvapi_teletext_top_get_block_content_cb reply) {
    reply(table(mModels.teletext.blocks()), kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_teletext_top_get_group_content(
        uint16_t key, a_hidl_qeltvapi_teletext_top_get_group_content_cb reply) {
    const auto groups = mModels.teletext.groups(key);
    reply(groups ? table(*groups) : Bytes(), groups ? kOk : kNotFound);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_teletext_top_get_page_content(
        uint16_t key, a_hidl_qeltvapi_teletext_top_get_page_content_cb reply) {
    const auto pages = mModels.teletext.pages(key);
    reply(pages ? table(*pages) : Bytes(), pages ? kOk : kNotFound);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_teletext_get_ttx_rating_on() {
    return mModels.config.value("parental.rating_lock");
}

// HTML agent and metadata

Return<void> MainService::a_hidl_qeltvapi_html_agent_exchange_data(
        const Bytes& data, a_hidl_qeltvapi_html_agent_exchange_data_cb reply) {
    std::vector<int32_t> words(data.size() / sizeof(int32_t));
    if (!words.empty()) memcpy(words.data(), data.data(), words.size() * sizeof(int32_t));
    const std::vector<int32_t> answer = mModels.agent.exchange(words);
    reply(bytesOf(answer), answer[0]);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_mds_fvpMtdtOperator(const String& text) {
    return mModels.agent.setOperator(text);
}

/** The value is the capacity of the caller, which gets all of the text. */
Return<void> MainService::a_hidl_qeltvapi_mds_getValue(const String& key, uint32_t value,
                                                       a_hidl_qeltvapi_mds_getValue_cb reply) {
    std::string text;
    int32_t code = mModels.agent.value(key, &text);
    if (code == kOk && text.size() > value) code = kBadValue;
    reply(code == kOk ? text : std::string(), code);
    return Void();
}

}  // namespace qeltvd
