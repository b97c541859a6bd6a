#define LOG_TAG "HidlStatus"

#include <hidl/Status.h>

#include <atomic>

#include <log/log.h>

namespace android {
namespace hardware {

static std::atomic<HidlReturnRestriction> gReturnRestriction{HidlReturnRestriction::NONE};

void setProcessHidlReturnRestriction(HidlReturnRestriction restriction) {
    gReturnRestriction.store(restriction, std::memory_order_relaxed);
}

static const char* exceptionName(int32_t exception) {
    switch (exception) {
        case Status::EX_NONE:
            return "EX_NONE";
        case Status::EX_SECURITY:
            return "EX_SECURITY";
        case Status::EX_BAD_PARCELABLE:
            return "EX_BAD_PARCELABLE";
        case Status::EX_ILLEGAL_ARGUMENT:
            return "EX_ILLEGAL_ARGUMENT";
        case Status::EX_NULL_POINTER:
            return "EX_NULL_POINTER";
        case Status::EX_ILLEGAL_STATE:
            return "EX_ILLEGAL_STATE";
        case Status::EX_NETWORK_MAIN_THREAD:
            return "EX_NETWORK_MAIN_THREAD";
        case Status::EX_UNSUPPORTED_OPERATION:
            return "EX_UNSUPPORTED_OPERATION";
        case Status::EX_HAS_REPLY_HEADER:
            return "EX_HAS_REPLY_HEADER";
        case Status::EX_TRANSACTION_FAILED:
            return "EX_TRANSACTION_FAILED";
        default:
            return "EX_UNKNOWN";
    }
}

Status::Status(int32_t exceptionCode, status_t errorCode)
        : mException(exceptionCode), mErrorCode(errorCode) {}

Status::Status(int32_t exceptionCode, status_t errorCode, const char* message)
        : mException(exceptionCode),
          mErrorCode(errorCode),
          mMessage(message == nullptr ? "" : message) {}

Status Status::ok() {
    return Status();
}

Status Status::fromExceptionCode(int32_t exceptionCode) {
    return Status(exceptionCode, OK);
}

Status Status::fromExceptionCode(int32_t exceptionCode, const char* message) {
    return Status(exceptionCode, OK, message);
}

Status Status::fromStatusT(status_t status) {
    Status result;
    result.setFromStatusT(status);
    return result;
}

void Status::setException(int32_t exceptionCode, const char* message) {
    mException = exceptionCode;
    mErrorCode = OK;
    mMessage = message == nullptr ? "" : message;
}

void Status::setFromStatusT(status_t status) {
    mException = status == OK ? EX_NONE : EX_TRANSACTION_FAILED;
    mErrorCode = status;
    mMessage.clear();
}

std::string Status::description() const {
    if (mException == EX_NONE) return "No error";
    std::string text =
            "Status(" + std::string(exceptionName(mException)) + ", " + std::to_string(mException);
    if (mException == EX_TRANSACTION_FAILED) {
        text += ", " + statusToString(mErrorCode) + ", " + std::to_string(mErrorCode);
    }
    return text + "): '" + mMessage + "'";
}

std::ostream& operator<<(std::ostream& os, const Status& status) {
    return os << status.description();
}

namespace details {

return_status& return_status::operator=(return_status&& other) noexcept {
    if (!mCheckedStatus) onUnchecked();
    if (this == &other) return *this;
    mStatus = std::exchange(other.mStatus, Status());
    mCheckedStatus = std::exchange(other.mCheckedStatus, true);
    return *this;
}

void return_status::onUnchecked() const {
    if (!mStatus.isOk()) {
        LOG_ALWAYS_FATAL("Failed HIDL return status not checked: %s",
                         mStatus.description().c_str());
    }
    switch (gReturnRestriction.load(std::memory_order_relaxed)) {
        case HidlReturnRestriction::NONE:
            return;
        case HidlReturnRestriction::ERROR_IF_UNCHECKED:
            ALOGE("HIDL return status not checked although the process requires it");
            return;
        case HidlReturnRestriction::FATAL_IF_UNCHECKED:
            LOG_ALWAYS_FATAL("HIDL return status not checked although the process requires it");
    }
}

void return_status::onValueOfFailure() const {
    LOG_ALWAYS_FATAL("Attempted to retrieve value from failed HIDL call: %s",
                     mStatus.description().c_str());
}

}  // namespace details
}  // namespace hardware
}  // namespace android
