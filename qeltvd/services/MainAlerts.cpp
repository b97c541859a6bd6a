#include "Alerts.h"
#include "Blocks.h"
#include "Code.h"
#include "MainService.h"

namespace qeltvd {

namespace {

using Words = Vector<int32_t>;

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

Return<void> MainService::a_hidl_qeltvapi_eas_get_status(a_hidl_qeltvapi_eas_get_status_cb reply) {
    const QELTV_ALERT_ENTRY_T alert = mModels.alerts.alert();
    reply(alert.type, alert.channelChange, alert.channel, alert.area, kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_eas_set_android_launch_status(bool enter) {
    mModels.alerts.setLaunched(enter);
    return kOk;
}

Return<bool> MainService::a_hidl_qeltvapi_eas_get_android_launch_status() {
    return mModels.alerts.launched();
}

Return<int32_t> MainService::a_hidl_qeltvapi_eas_set_android_exit_eas_no_change_channel_status(
        bool enter) {
    return enter ? mModels.alerts.leave() : kOk;
}

Return<void> MainService::a_hidl_qeltvapi_ewspa_set(uint32_t a, uint32_t b, const Words& data,
                                                    a_hidl_qeltvapi_ewspa_set_cb reply) {
    Code code = kBadValue;
    Words answer = data;
    if (a == QELTV_WARNING_RAISE) {
        if (const auto entry = entryFrom<QELTV_WARNING_ENTRY_T>(data)) {
            const Result<int32_t> number = mModels.alerts.raiseWarning(*entry);
            answer[0] = number.valueOr(answer[0]);
            code = number.code();
        }
    } else if (a == QELTV_WARNING_CANCEL) {
        code = mModels.alerts.cancelWarning(static_cast<int32_t>(b));
    } else if (a == QELTV_ALERT_RAISE) {
        if (const auto entry = entryFrom<QELTV_ALERT_ENTRY_T>(data))
            code = mModels.alerts.raise(*entry);
    }
    reply(answer, code);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_ewspa_get(uint32_t a, uint32_t b, const Words& data,
                                                    a_hidl_qeltvapi_ewspa_get_cb reply) {
    std::vector<int32_t> answer;
    if (a == QELTV_WARNING_MONITORS) {
        answer = mModels.alerts.monitors();
        answer.insert(answer.begin(), static_cast<int32_t>(answer.size()));
    } else if (a == QELTV_WARNING_LIST) {
        const auto warnings = mModels.alerts.warnings(static_cast<int32_t>(b));
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

Return<int32_t> MainService::a_hidl_qeltvapi_ewspa_create_monitor_inst(uint32_t value) {
    return mModels.alerts.addMonitor(static_cast<int32_t>(value));
}

Return<int32_t> MainService::a_hidl_qeltvapi_ewspa_delete_monitor_inst(uint32_t value) {
    return mModels.alerts.removeMonitor(static_cast<int32_t>(value));
}

}  // namespace qeltvd
