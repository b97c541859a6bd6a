#include "Blocks.h"
#include "Code.h"
#include "MainService.h"

namespace qeltvd {

using android::hardware::hidl_vec;
using android::hardware::Void;

namespace {

using Words = hidl_vec<int32_t>;

/** The caller takes all of an answer into the array that it has sent, so it gets no more. */
Words cut(const std::vector<int32_t>& answer, const Words& room) {
    return std::vector<int32_t>(
            answer.begin(),
            answer.begin() + static_cast<ptrdiff_t>(std::min(answer.size(), room.size())));
}

template <class T>
std::optional<T> entryFrom(const Words& words) {
    if (words.size() < sizeof(T) / sizeof(int32_t)) return std::nullopt;
    return recordOf<T>(words.data(), sizeof(T));
}

}  // namespace

MainService::Return<void> MainService::a_hidl_qeltvapi_eas_get_status(
        a_hidl_qeltvapi_eas_get_status_cb reply) {
    const QELTV_ALERT_ENTRY_T alert = mTv.alerts.alert();
    reply(alert.type, alert.channelChange, alert.channel, alert.area, kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_eas_set_android_launch_status(
        bool enter) {
    mTv.alerts.setLaunched(enter);
    return kOk;
}

MainService::Return<bool> MainService::a_hidl_qeltvapi_eas_get_android_launch_status() {
    return mTv.alerts.launched();
}

MainService::Return<int32_t>
MainService::a_hidl_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(bool enter) {
    return enter ? mTv.alerts.leave() : kOk;
}

MainService::Return<void> MainService::a_hidl_qeltvapi_ewspa_set(
        uint32_t a, uint32_t b, const Words& data, a_hidl_qeltvapi_ewspa_set_cb reply) {
    int32_t code = kBadValue;
    Words answer = data;
    if (a == QELTV_WARNING_RAISE) {
        if (const auto entry = entryFrom<QELTV_WARNING_ENTRY_T>(data))
            code = mTv.alerts.raiseWarning(*entry);
        if (code > 0) {
            answer[0] = code;
            code = kOk;
        }
    } else if (a == QELTV_WARNING_CANCEL) {
        code = mTv.alerts.cancelWarning(static_cast<int32_t>(b));
    } else if (a == QELTV_ALERT_RAISE) {
        if (const auto entry = entryFrom<QELTV_ALERT_ENTRY_T>(data))
            code = mTv.alerts.raise(*entry);
    }
    reply(answer, code);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_ewspa_get(
        uint32_t a, uint32_t b, const Words& data, a_hidl_qeltvapi_ewspa_get_cb reply) {
    std::vector<int32_t> answer;
    if (a == QELTV_WARNING_MONITORS) {
        answer = mTv.alerts.monitors();
        answer.insert(answer.begin(), static_cast<int32_t>(answer.size()));
    } else if (a == QELTV_WARNING_LIST) {
        const auto warnings = mTv.alerts.warnings(static_cast<int32_t>(b));
        answer.push_back(static_cast<int32_t>(warnings.size()));
        for (const QELTV_WARNING_ENTRY_T& entry : warnings) {
            answer.insert(answer.end(), {entry.number, entry.severity, entry.area, entry.seconds});
        }
    } else {
        reply({}, kBadValue);
        return Void();
    }
    reply(cut(answer, data), kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_ewspa_create_monitor_inst(
        uint32_t value) {
    return mTv.alerts.addMonitor(static_cast<int32_t>(value));
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_ewspa_delete_monitor_inst(
        uint32_t value) {
    return mTv.alerts.removeMonitor(static_cast<int32_t>(value));
}

}  // namespace qeltvd
