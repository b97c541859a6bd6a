#pragma once

#include <qeltvapi/service/IQelTvApi.h>
#include <optional>
#include <string>
#include <vector>

#include "ClientWriter.h"
#include "ServiceTypes.h"
#include "Switchboard.h"
#include "layouts/presentation.h"

namespace qeltvd {

class Agent;
class Alerts;
class AtscGuide;
class Captions;
class ChannelDatabase;
class Clock;
class ConfigItems;
class Guide;
class Inputs;
class Notifier;
class OverAirDownload;
class Picture;
class PinLock;
class Power;
class Presentation;
class Ratings;
class Sound;
class Teletext;
class Uart;
class Upgrade;

/**
 * IQelTvApi. A family's methods stand in the source file of the family; this file has what
 * belongs to none: the clients' callback objects, and the control of the television by tests and
 * tools, which is the interface's debug().
 */
class MainService : public Default<IQelTvApi> {
  public:
    /** What the families of the interface work on. */
    struct Models {
        Agent& agent;
        Alerts& alerts;
        AtscGuide& atsc;
        Captions& captions;
        ChannelDatabase& channels;
        const Clock& clock;
        ConfigItems& config;
        Guide& guide;
        Inputs& inputs;
        Notifier& notifier;
        OverAirDownload& overAir;
        Picture& picture;
        PinLock& pin;
        Power& power;
        Presentation& presentation;
        Ratings& ratings;
        Sound& sound;
        Teletext& teletext;
        Uart& uart;
        Upgrade& upgrade;
    };
    MainService(const Models& models, Switchboard& switchboard);

    Return<void> a_hidl_registerCallbackHandler(
            const android::sp<IQelTvApiCallback>& callback) override;

    /**
     * Carries out one command and writes its answer, a text that ends in "ok\n" or in
     * "error: ...\n":
     *
     * dump                 clients, calls per method and faults, as JSON
     * raise METHOD VALUES [TIMES]
     *                      calls a method of every client's callback object; VALUES is a JSON
     *                      array of its arguments
     * fault METHOD die|lose|none
     * fault METHOD code|delay NUMBER
     * die                  ends the process at once
     * plug INPUT on|off    plugs a source into an input that works, or takes it out
     * reception PERCENT [KHZ]
     *                      weakens every signal, or that of one frequency
     */
    Return<void> debug(const Handle& fd, const Vector<String>& options) override;

    // Emergency alerts and warnings
    Return<void> a_hidl_qeltvapi_eas_get_status(a_hidl_qeltvapi_eas_get_status_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_eas_set_android_launch_status(bool enter) override;
    Return<bool> a_hidl_qeltvapi_eas_get_android_launch_status() override;
    Return<int32_t> a_hidl_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(
            bool enter) override;
    Return<void> a_hidl_qeltvapi_ewspa_set(uint32_t a, uint32_t b, const Vector<int32_t>& data,
                                           a_hidl_qeltvapi_ewspa_set_cb reply) override;
    Return<void> a_hidl_qeltvapi_ewspa_get(uint32_t a, uint32_t b, const Vector<int32_t>& data,
                                           a_hidl_qeltvapi_ewspa_get_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_ewspa_create_monitor_inst(uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_ewspa_delete_monitor_inst(uint32_t value) override;

    // Captions, subtitles, teletext, HTML agent and metadata
    Return<int32_t> a_hidl_qeltvapi_isdbcc_enable(bool on) override;
    Return<int32_t> a_hidl_qeltvapi_isdbcc_next_stream() override;
    Return<int32_t> a_hidl_qeltvapi_isdbcc_get_CCString() override;
    Return<void> a_hidl_qeltvapi_subtitle_get_loop(
            const Vector<int32_t>& data, a_hidl_qeltvapi_subtitle_get_loop_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_subtitle_play(uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_subtitle_set_next() override;
    Return<int32_t> a_hidl_qeltvapi_atsccc_enable(bool on) override;
    Return<int32_t> a_hidl_qeltvapi_atsccc_next_stream() override;
    Return<int32_t> a_hidl_qeltvapi_atsccc_get_CCString() override;
    Return<int32_t> a_hidl_qeltvapi_atsccc_set_visible(bool visible) override;
    Return<int32_t> a_hidl_qeltvapi_atsccc_demo_set(uint32_t a, uint32_t b) override;
    Return<int32_t> a_hidl_qeltvapi_analogcc_enable(bool on) override;
    Return<int32_t> a_hidl_qeltvapi_analogcc_next_stream() override;
    Return<int32_t> a_hidl_qeltvapi_analogcc_get_CCString() override;
    Return<int32_t> a_hidl_qeltvapi_analogcc_set_visible(bool visible) override;
    Return<void> a_hidl_qeltvapi_teletext_get_cur_page(
            a_hidl_qeltvapi_teletext_get_cur_page_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_teletext_set_page(uint32_t page) override;
    Return<int32_t> a_hidl_qeltvapi_teletext_is_top_stream() override;
    Return<void> a_hidl_qeltvapi_teletext_top_get_block_content(
            a_hidl_qeltvapi_teletext_top_get_block_content_cb reply) override;
    Return<void> a_hidl_qeltvapi_teletext_top_get_group_content(
            uint16_t key, a_hidl_qeltvapi_teletext_top_get_group_content_cb reply) override;
    Return<void> a_hidl_qeltvapi_teletext_top_get_page_content(
            uint16_t key, a_hidl_qeltvapi_teletext_top_get_page_content_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_teletext_get_ttx_rating_on() override;
    Return<void> a_hidl_qeltvapi_html_agent_exchange_data(
            const Bytes& data, a_hidl_qeltvapi_html_agent_exchange_data_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_mds_fvpMtdtOperator(const String& text) override;
    Return<void> a_hidl_qeltvapi_mds_getValue(const String& key, uint32_t value,
                                              a_hidl_qeltvapi_mds_getValue_cb reply) override;

    // Service contexts and stream components
    Return<void> a_hidl_c_svctx_open(const String& name, a_hidl_c_svctx_open_cb reply) override;
    Return<int32_t> a_hidl_c_svctx_close(uint32_t ctx) override;
    Return<void> a_hidl_c_svctx_get_64(uint32_t ctx, uint32_t type, const Bytes& buf,
                                       a_hidl_c_svctx_get_64_cb reply) override;
    Return<void> a_hidl_c_svctx_get_video_src_resolution(
            uint32_t ctx, a_hidl_c_svctx_get_video_src_resolution_cb reply) override;
    Return<int32_t> a_hidl_c_svctx_select_svc(uint32_t ctx, uint32_t v,
                                              const HIDL_SVCTX_SELECT_T& req, const Bytes& side,
                                              uint64_t tag) override;
    Return<int32_t> a_hidl_c_svctx_set_stream_attr_64(uint32_t ctx, uint32_t stream, uint32_t attr,
                                                      const Bytes& data) override;
    Return<void> a_hidl_c_svctx_get_conn_attr(uint32_t ctx, uint32_t conn, uint32_t code,
                                              uint32_t len,
                                              a_hidl_c_svctx_get_conn_attr_cb reply) override;
    Return<void> a_hidl_c_svctx_set_conn_attr(uint32_t ctx, uint32_t conn, uint32_t code,
                                              const Bytes& data,
                                              a_hidl_c_svctx_set_conn_attr_cb reply) override;
    Return<void> a_hidl_c_svctx_get_audio_info(uint32_t ctx,
                                               a_hidl_c_svctx_get_audio_info_cb reply) override;
    Return<void> a_hidl_c_svctx_generic_get_info(uint32_t ctx, uint32_t v, uint32_t code,
                                                 uint32_t len,
                                                 a_hidl_c_svctx_generic_get_info_cb reply) override;
    Return<void> a_hidl_c_svctx_generic_set_info(uint32_t ctx, uint32_t v, uint32_t code,
                                                 const Bytes& data,
                                                 a_hidl_c_svctx_generic_set_info_cb reply) override;
    Return<void> a_hidl_c_scc_comp_open(uint32_t type, const String& name, uint8_t marker,
                                        const Bytes& block,
                                        a_hidl_c_scc_comp_open_cb reply) override;
    Return<int32_t> a_hidl_c_scc_comp_close(uint32_t comp) override;
    Return<int32_t> a_hidl_c_scc_vid_set_src_detect_nfy(uint32_t comp, uint64_t tag) override;

    // Picture and screen
    Return<int32_t> a_hidl_qeltvapi_freeze_set_freeze(const String& path, bool freeze) override;
    Return<bool> a_hidl_qeltvapi_freeze_is_freeze(const String& path) override;
    Return<uint16_t> a_hidl_qeltvapi_screenmode_get_screen_mode() override;
    Return<int32_t> a_hidl_qeltvapi_screenmode_set_screen_mode(int32_t mode) override;
    Return<void> a_hidl_qeltvapi_screenmode_get_all_screen_mode(
            uint32_t capacity, a_hidl_qeltvapi_screenmode_get_all_screen_mode_cb reply) override;
    Return<void> a_hidl_qeltvapi_screenmode_get_number_screen_mode(
            a_hidl_qeltvapi_screenmode_get_number_screen_mode_cb reply) override;
    Return<bool> a_hidl_qeltvapi_zoom_is_enable() override;
    Return<int32_t> a_hidl_qeltvapi_screenmode_set_crnt_overscan(int32_t top, int32_t bottom,
                                                                 int32_t left,
                                                                 int32_t right) override;
    Return<void> a_hidl_qeltvapi_screenmode_get_crnt_overscan(
            a_hidl_qeltvapi_screenmode_get_crnt_overscan_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_screenmode_update_overscan_ini() override;
    Return<uint16_t> a_hidl_qeltvapi_av_mode_get_picture_mode() override;
    Return<int32_t> a_hidl_qeltvapi_av_mode_set_picture_mode(int32_t mode) override;
    Return<void> a_hidl_qeltvapi_av_mode_get_all_picture_mode(
            uint32_t capacity, a_hidl_qeltvapi_av_mode_get_all_picture_mode_cb reply) override;
    Return<void> a_hidl_qeltvapi_av_mode_get_number_picture_mode(
            a_hidl_qeltvapi_av_mode_get_number_picture_mode_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_videoinfo_set_value(int32_t id, int32_t value) override;
    Return<void> a_hidl_qeltvapi_videoinfo_get_value(
            int32_t id, a_hidl_qeltvapi_videoinfo_get_value_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_videoinfo_set_data(int32_t id, const Bytes& data,
                                                       int32_t len) override;
    Return<void> a_hidl_qeltvapi_videoinfo_get_data(
            int32_t id, const Bytes& request, a_hidl_qeltvapi_videoinfo_get_data_cb reply) override;

    // Sound
    Return<int32_t> a_hidl_c_opera_hbbtv_stm_set_audio(uint32_t track) override;
    Return<void> a_hidl_c_opera_hbbtv_stm_get_audio(
            a_hidl_c_opera_hbbtv_stm_get_audio_cb reply) override;
    Return<void> a_hidl_c_opera_hbbtv_stm_get_audio_lang(
            uint32_t track, a_hidl_c_opera_hbbtv_stm_get_audio_lang_cb reply) override;
    Return<void> a_hidl_c_opera_hbbtv_stm_get_audio_num(
            a_hidl_c_opera_hbbtv_stm_get_audio_num_cb reply) override;
    Return<int32_t> a_hidl_c_opera_hbbtv_set_default_subtitle_lang(const String& lang,
                                                                   uint32_t v) override;
    Return<int32_t> a_hidl_c_opera_hbbtv_set_default_audio_lang(const String& lang) override;
    Return<int32_t> a_hidl_c_opera_hbbtv_set_audio_desc(bool on) override;
    Return<int32_t> a_hidl_c_hbbtv_stm_set_audio(uint32_t track) override;
    Return<void> a_hidl_c_hbbtv_stm_get_audio(a_hidl_c_hbbtv_stm_get_audio_cb reply) override;
    Return<void> a_hidl_c_hbbtv_stm_get_audio_lang(
            uint32_t track, a_hidl_c_hbbtv_stm_get_audio_lang_cb reply) override;
    Return<void> a_hidl_c_hbbtv_stm_get_audio_num(
            a_hidl_c_hbbtv_stm_get_audio_num_cb reply) override;
    Return<int32_t> a_hidl_c_hbbtv_set_default_subtitle_lang(const String& lang,
                                                             uint32_t v) override;
    Return<int32_t> a_hidl_c_hbbtv_set_default_audio_lang(const String& lang) override;
    Return<int32_t> a_hidl_c_hbbtv_set_audio_desc(bool on) override;
    Return<uint16_t> a_hidl_qeltvapi_av_mode_get_sound_effect() override;
    Return<int32_t> a_hidl_qeltvapi_av_mode_set_sound_effect(int32_t mode) override;
    Return<void> a_hidl_qeltvapi_av_mode_get_all_sound_effect(
            uint32_t capacity, a_hidl_qeltvapi_av_mode_get_all_sound_effect_cb reply) override;
    Return<void> a_hidl_qeltvapi_av_mode_get_number_sound_effect(
            a_hidl_qeltvapi_av_mode_get_number_sound_effect_cb reply) override;
    Return<int16_t> a_hidl_qeltvapi_volctrl_incrVolume() override;
    Return<int16_t> a_hidl_qeltvapi_volctrl_incrVolume_by_type(int32_t type) override;
    Return<int16_t> a_hidl_qeltvapi_volctrl_decrVolume() override;
    Return<int16_t> a_hidl_qeltvapi_volctrl_decrVolume_by_type(int32_t type) override;
    Return<int32_t> a_hidl_qeltvapi_volctrl_setVolume(int32_t volume) override;
    Return<int32_t> a_hidl_qeltvapi_volctrl_setVolume_by_type(int32_t type,
                                                              int32_t volume) override;
    Return<int16_t> a_hidl_qeltvapi_volctrl_getVolume() override;
    Return<int16_t> a_hidl_qeltvapi_volctrl_getVolume_by_type(int32_t type) override;
    Return<int32_t> a_hidl_qeltvapi_volctrl_setMute(bool mute) override;
    Return<int32_t> a_hidl_qeltvapi_volctrl_setMute_by_type(int32_t type, bool mute) override;
    Return<bool> a_hidl_qeltvapi_volctrl_getMute() override;
    Return<bool> a_hidl_qeltvapi_volctrl_getMute_by_type(int32_t type) override;
    Return<void> a_hidl_qeltvapi_audio_info_get_current_lanuage(
            const String& name, a_hidl_qeltvapi_audio_info_get_current_lanuage_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_audio_info_set_next_lanuage() override;
    Return<void> a_hidl_qeltvapi_audio_info_get_available_record(
            uint32_t num, a_hidl_qeltvapi_audio_info_get_available_record_cb reply) override;
    Return<void> a_hidl_qeltvapi_get_current_audio_info(
            a_hidl_qeltvapi_get_current_audio_info_cb reply) override;
    Return<void> a_hidl_qeltvapi_get_audio_apd_text(
            int32_t number, a_hidl_qeltvapi_get_audio_apd_text_cb reply) override;
    Return<void> a_hidl_qeltvapi_get_current_ad_info(
            a_hidl_qeltvapi_get_current_ad_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_select_audio(uint32_t track) override;
    Return<int32_t> a_hidl_qeltvapi_select_main_sub_audio(uint32_t track_main,
                                                          uint32_t track_sub) override;
    Return<int32_t> a_hidl_qeltvapi_select_default_audio(const String& lang) override;
    Return<void> a_hidl_qeltvapi_audio_info_get_inputsource_available_record(
            uint32_t num,
            a_hidl_qeltvapi_audio_info_get_inputsource_available_record_cb reply) override;
    Return<void> a_hidl_qeltvapi_get_inputsource_current_audio_info(
            a_hidl_qeltvapi_get_inputsource_current_audio_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_audio_info_set_value(int32_t id, int32_t value) override;
    Return<void> a_hidl_qeltvapi_audio_info_get_value(
            int32_t id, a_hidl_qeltvapi_audio_info_get_value_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_audio_info_set_data(int32_t id, const Bytes& data,
                                                        int32_t len) override;
    Return<void> a_hidl_qeltvapi_audio_info_get_data(
            int32_t id, int32_t len, const Bytes& request,
            a_hidl_qeltvapi_audio_info_get_data_cb reply) override;

    // Power control
    Return<void> a_hidl_c_pcl_get_wakeup_reason(a_hidl_c_pcl_get_wakeup_reason_cb reply) override;
    Return<int32_t> a_hidl_c_pcl_set_wakeup_reason(uint32_t reason, const Bytes& data) override;
    Return<void> a_hidl_c_pcl_get_power_down_reason(
            a_hidl_c_pcl_get_power_down_reason_cb reply) override;
    Return<int32_t> a_hidl_c_pcl_set_power_down_reason(uint32_t reason, const Bytes& data) override;
    Return<int32_t> a_hidl_c_pcl_set_power_down() override;
    Return<int32_t> a_hidl_c_pcl_set_request_suspend() override;
    Return<int32_t> a_hidl_c_pcl_set_request_powerdown_envent() override;
    Return<void> a_hidl_c_pcl_get_gpio(uint32_t line, uint32_t what,
                                       a_hidl_c_pcl_get_gpio_cb reply) override;
    Return<int32_t> a_hidl_c_pcl_set_gpio(uint32_t line, uint32_t level) override;
    Return<int32_t> a_hidl_c_pcl_set_gpio_monitor_ctrl_ex(uint32_t value, bool on) override;
    Return<void> a_hidl_c_pcl_get_wakeup_irkey(a_hidl_c_pcl_get_wakeup_irkey_cb reply) override;
    Return<void> a_hidl_c_pcl_get_wakeup_setup(a_hidl_c_pcl_get_wakeup_setup_cb reply) override;
    Return<int32_t> a_hidl_c_pcl_set_wakeup_setup(uint32_t setup) override;
    Return<void> a_hidl_qeltvapi_pcl_get_wakeup_reason(
            a_hidl_qeltvapi_pcl_get_wakeup_reason_cb reply) override;
    Return<void> a_hidl_qeltvapi_pcl_get_wakeup_setup(
            a_hidl_qeltvapi_pcl_get_wakeup_setup_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_pcl_set_wakeup_setup(uint32_t setup) override;

    // TV application
    Return<int32_t> a_hidl_qeltvapi_apptv_save_timestamp(const String& tag) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_set_tv_started(bool started) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_unlock_service(const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_get_matched_channel(int16_t number, bool exact,
                                                              int32_t list, int32_t minor) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_nav_update_sys_status_by_win(const String& path,
                                                                       int32_t status) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_update_sys_status(int32_t status) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_start_tv() override;
    Return<int32_t> a_hidl_qeltvapi_apptv_stop_all() override;
    Return<int32_t> a_hidl_qeltvapi_apptv_get_current_channel_svc_text_len() override;
    Return<void> a_hidl_qeltvapi_apptv_get_current_channel_svc_text(
            int32_t capacity, a_hidl_qeltvapi_apptv_get_current_channel_svc_text_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_unblock_svc(const String& path, bool unlocked) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_swap_tmp_unlock_info(int32_t extra) override;
    Return<int32_t> a_hidl_qeltvapi_apptv_set_video_mute(const String& path, bool mute) override;
    Return<void> a_hidl_qeltvapi_apptv_get_capability_ex(
            int32_t id, a_hidl_qeltvapi_apptv_get_capability_ex_cb reply) override;
    Return<bool> a_hidl_qeltvapi_apptv_get_video_mute(const String& path) override;

    // UART
    Return<void> a_hidl_c_iom_open_uart(uint32_t type, uint32_t a, const String& name,
                                        const Handle& setting, uint64_t tag,
                                        a_hidl_c_iom_open_uart_cb reply) override;
    Return<int32_t> a_hidl_c_iom_close(uint32_t handle) override;
    Return<void> a_hidl_c_iom_get(uint32_t handle, uint16_t op, const Handle& memory, uint64_t size,
                                  a_hidl_c_iom_get_cb reply) override;
    Return<int32_t> a_hidl_c_iom_set(uint32_t handle, uint16_t op, const Handle& memory,
                                     uint64_t size) override;
    Return<int32_t> a_hidl_c_iom_output(uint32_t handle, const Bytes& data) override;

    // Programme information, banner, PIN
    Return<void> a_hidl_qeltvapi_event_atsc_load_events(
            int32_t channel, int64_t start, int32_t seconds,
            a_hidl_qeltvapi_event_atsc_load_events_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_atsc_get_details_info(
            int32_t id, int32_t capacity,
            a_hidl_qeltvapi_event_atsc_get_details_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_event_atsc_freeEvent(int32_t id) override;
    Return<void> a_hidl_qeltvapi_event_atsc_load_events_by_EIT(
            int32_t channel, int32_t table,
            a_hidl_qeltvapi_event_atsc_load_events_by_EIT_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_atsc_get_event_number_in_EIT(
            int32_t table, a_hidl_qeltvapi_event_atsc_get_event_number_in_EIT_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_atsc_get_detail_info_by_index(
            int32_t table, int32_t index, int32_t capacity,
            a_hidl_qeltvapi_event_atsc_get_detail_info_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_atsc_check_EIT_status(
            int32_t channel, int32_t tables,
            a_hidl_qeltvapi_event_atsc_check_EIT_status_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_atsc_getEvent_detail_len_by_index(
            int32_t table, int32_t index,
            a_hidl_qeltvapi_event_atsc_getEvent_detail_len_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_atsc_getEvent_general(
            int32_t id, a_hidl_qeltvapi_event_atsc_getEvent_general_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_atsc_getEvent_general_by_index(
            int32_t table, int32_t index,
            a_hidl_qeltvapi_event_atsc_getEvent_general_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_event_atsc_get_rating_map_by_index(
            int32_t table, int32_t index,
            a_hidl_qeltvapi_event_atsc_get_rating_map_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_banner_get_item_state(
            int32_t page, int32_t item, a_hidl_qeltvapi_banner_get_item_state_cb reply) override;
    Return<void> a_hidl_qeltvapi_banner_get_item_id(
            int32_t page, int32_t item, a_hidl_qeltvapi_banner_get_item_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_banner_get_item_content(
            int32_t page, int32_t item, uint32_t capacity,
            a_hidl_qeltvapi_banner_get_item_content_cb reply) override;
    Return<void> a_hidl_qeltvapi_banner_get_item_content_len(
            int32_t page, int32_t item,
            a_hidl_qeltvapi_banner_get_item_content_len_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_PWDDLG_checkPWD(const String& pin) override;
    Return<int32_t> a_hidl_qeltvapi_PWDDLG_show() override;

    // Upgrade and over-air download
    Return<void> a_hidl_qeltvapi_oad_get_scheduleinfo(
            a_hidl_qeltvapi_oad_get_scheduleinfo_cb reply) override;
    Return<void> a_hidl_qeltvapi_oad_get_datainfo(
            uint32_t value, a_hidl_qeltvapi_oad_get_datainfo_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_oad_stop_manual_detect() override;
    Return<int32_t> a_hidl_qeltvapi_oad_start_download() override;
    Return<int32_t> a_hidl_qeltvapi_oad_stop_download() override;
    Return<int32_t> a_hidl_qeltvapi_oad_set_auto_download(bool on) override;
    Return<int32_t> a_hidl_qeltvapi_oad_start_flash() override;
    Return<int32_t> a_hidl_qeltvapi_oad_accept_restart() override;
    Return<int32_t> a_hidl_qeltvapi_oad_remind_me_later() override;
    Return<int32_t> a_hidl_qeltvapi_oad_accept_schedule() override;
    Return<int32_t> a_hidl_qeltvapi_oad_start_jump_channel() override;
    Return<int32_t> a_hidl_qeltvapi_oad_get_power_on_status() override;
    Return<int32_t> a_hidl_qeltvapi_set_pkg_pathname(const String& path) override;
    Return<int32_t> a_hidl_qeltvapi_oad_clear_version() override;
    Return<int32_t> a_hidl_qeltvapi_upgrade_start(uint32_t value, bool flag) override;
    Return<int32_t> a_hidl_qeltvapi_upgrade_trigger(uint32_t value) override;
    Return<void> a_hidl_qeltvapi_upgrade_get_firmware_info(
            a_hidl_qeltvapi_upgrade_get_firmware_info_cb reply) override;
    Return<void> a_hidl_qeltvapi_upgrade_get_item_info(
            uint32_t index, a_hidl_qeltvapi_upgrade_get_item_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_upgrade_start_download_firmware(uint32_t value,
                                                                    const String& first,
                                                                    const String& second) override;
    Return<int32_t> a_hidl_qeltvapi_upgrade_cancel_download_firmware(uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_upgrade_start_reboot_upgrade(uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_upgrade_query_upgrade_result(uint32_t value) override;
    Return<void> a_hidl_qeltvapi_upgrade_is_supported(
            uint32_t value, a_hidl_qeltvapi_upgrade_is_supported_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_upgrade_check_update(uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_upgrade_set(uint32_t a, const Bytes& first, uint32_t b,
                                                const Bytes& second) override;

  private:
    // Tracks and texts of what is shown
    std::optional<QELTV_AUDIO_TRACK_T> currentTrack(uint32_t path) const;
    std::optional<QELTV_AUDIO_TRACK_T> trackOf(uint32_t number) const;
    std::vector<QELTV_AUDIO_TRACK_T> tracksOfMain(bool ofInput) const;
    int32_t setLanguage(const char* item, const std::string& language);
    bool showsInput() const;
    void notifyApplication(QELTV_APP_TV_EVENT event, uint64_t first, uint64_t second = 0);
    int32_t unblock(const std::string& path, bool unlocked);
    std::string serviceText() const;

    std::string command(const std::vector<std::string>& words);
    std::string dump() const;

    const Models mModels;
    Switchboard& mSwitchboard;
    ClientWriter mWriter;
};

}  // namespace qeltvd
