#include <cstring>

#include "Blocks.h"
#include "Code.h"
#include "MainService.h"

namespace qeltvd {

using android::hardware::hidl_vec;
using android::hardware::Void;

namespace {

hidl_vec<uint8_t> table(const std::vector<QELTV_TOP_ENTRY_T>& entries) {
    const auto count = static_cast<uint32_t>(entries.size());
    hidl_vec<uint8_t> bytes(sizeof(count) + count * sizeof(QELTV_TOP_ENTRY_T));
    memcpy(bytes.data(), &count, sizeof(count));
    if (count != 0)
        memcpy(&bytes[sizeof(count)], entries.data(), count * sizeof(QELTV_TOP_ENTRY_T));
    return bytes;
}

}  // namespace

// Closed captions

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_isdbcc_enable(bool on) {
    return mTv.captions.enable(Captions::kIsdb, on);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_isdbcc_next_stream() {
    return mTv.captions.next(Captions::kIsdb);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_isdbcc_get_CCString() {
    return mTv.captions.shown(Captions::kIsdb);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_enable(bool on) {
    return mTv.captions.enable(Captions::kAtsc, on);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_next_stream() {
    return mTv.captions.next(Captions::kAtsc);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_get_CCString() {
    return mTv.captions.shown(Captions::kAtsc);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_set_visible(bool visible) {
    return mTv.captions.setVisible(Captions::kAtsc, visible);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_atsccc_demo_set(uint32_t a, uint32_t b) {
    return mTv.captions.setDemo(a, b);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_analogcc_enable(bool on) {
    return mTv.captions.enable(Captions::kAnalogue, on);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_analogcc_next_stream() {
    return mTv.captions.next(Captions::kAnalogue);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_analogcc_get_CCString() {
    return mTv.captions.shown(Captions::kAnalogue);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_analogcc_set_visible(bool visible) {
    return mTv.captions.setVisible(Captions::kAnalogue, visible);
}

// Subtitles

/** As many words as the caller has sent: it takes all of the answer into them. */
MainService::Return<void> MainService::a_hidl_qeltvapi_subtitle_get_loop(
        const hidl_vec<int32_t>& data, a_hidl_qeltvapi_subtitle_get_loop_cb reply) {
    std::vector<int32_t> loop = mTv.captions.subtitles();
    loop.resize(std::min(loop.size(), data.size()));
    reply(loop, kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_subtitle_play(uint32_t value) {
    return mTv.captions.playSubtitle(value);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_subtitle_set_next() {
    return mTv.captions.nextSubtitle();
}

// Teletext

MainService::Return<void> MainService::a_hidl_qeltvapi_teletext_get_cur_page(
        a_hidl_qeltvapi_teletext_get_cur_page_cb reply) {
    reply(bytesOf(mTv.teletext.current()), kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_teletext_set_page(uint32_t page) {
    return mTv.teletext.setPage(page);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_teletext_is_top_stream() {
    return 1;
}

MainService::Return<void> MainService::a_hidl_qeltvapi_teletext_top_get_block_content(
        a_hidl_qeltvapi_teletext_top_get_block_content_cb reply) {
    reply(table(mTv.teletext.blocks()), kOk);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_teletext_top_get_group_content(
        uint16_t key, a_hidl_qeltvapi_teletext_top_get_group_content_cb reply) {
    const auto groups = mTv.teletext.groups(key);
    reply(groups ? table(*groups) : hidl_vec<uint8_t>(), groups ? kOk : kNotFound);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_teletext_top_get_page_content(
        uint16_t key, a_hidl_qeltvapi_teletext_top_get_page_content_cb reply) {
    const auto pages = mTv.teletext.pages(key);
    reply(pages ? table(*pages) : hidl_vec<uint8_t>(), pages ? kOk : kNotFound);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_teletext_get_ttx_rating_on() {
    return mTv.config.value("parental.rating_lock");
}

// HTML agent and metadata

MainService::Return<void> MainService::a_hidl_qeltvapi_html_agent_exchange_data(
        const hidl_vec<uint8_t>& data, a_hidl_qeltvapi_html_agent_exchange_data_cb reply) {
    std::vector<int32_t> words(data.size() / sizeof(int32_t));
    if (!words.empty()) memcpy(words.data(), data.data(), words.size() * sizeof(int32_t));
    const std::vector<int32_t> answer = mTv.agent.exchange(words);
    reply(bytesOf(answer), answer[0]);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_mds_fvpMtdtOperator(
        const android::hardware::hidl_string& text) {
    return mTv.agent.setOperator(text);
}

/** The value is the room that the caller has, which gets all of the text. */
MainService::Return<void> MainService::a_hidl_qeltvapi_mds_getValue(
        const android::hardware::hidl_string& key, uint32_t value,
        a_hidl_qeltvapi_mds_getValue_cb reply) {
    std::string text;
    int32_t code = mTv.agent.value(key, &text);
    if (code == kOk && text.size() > value) code = kBadValue;
    reply(code == kOk ? text : std::string(), code);
    return Void();
}

}  // namespace qeltvd
