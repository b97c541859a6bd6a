#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>

#include <hidl/HidlInternal.h>
#include <utils/Errors.h>
#include <utils/StrongPointer.h>

namespace android {
namespace hardware {

/** How a transaction went: an exception code that travels, and the transport's own error. */
class Status final {
  public:
    enum Exception {
        EX_NONE = 0,
        EX_SECURITY = -1,
        EX_BAD_PARCELABLE = -2,
        EX_ILLEGAL_ARGUMENT = -3,
        EX_NULL_POINTER = -4,
        EX_ILLEGAL_STATE = -5,
        EX_NETWORK_MAIN_THREAD = -6,
        EX_UNSUPPORTED_OPERATION = -7,

        /** Never sent by a service. */
        EX_HAS_REPLY_HEADER = -128,

        /** The transport failed; transactionError() has the reason. */
        EX_TRANSACTION_FAILED = -129,
    };

    static Status ok();
    static Status fromExceptionCode(int32_t exceptionCode);
    static Status fromExceptionCode(int32_t exceptionCode, const char* message);
    static Status fromStatusT(status_t status);

    Status() = default;
    ~Status() = default;
    Status(const Status&) = default;
    Status(Status&&) = default;
    Status& operator=(const Status&) = default;
    Status& operator=(Status&&) = default;

    void setException(int32_t exceptionCode, const char* message);
    /** OK gives an ok status, anything else EX_TRANSACTION_FAILED. */
    void setFromStatusT(status_t status);

    int32_t exceptionCode() const { return mException; }
    const char* exceptionMessage() const { return mMessage.c_str(); }
    status_t transactionError() const {
        return mException == EX_TRANSACTION_FAILED ? mErrorCode : OK;
    }

    bool isOk() const { return mException == EX_NONE; }

    std::string description() const;

  private:
    Status(int32_t exceptionCode, status_t errorCode);
    Status(int32_t exceptionCode, status_t errorCode, const char* message);

    int32_t mException = EX_NONE;
    status_t mErrorCode = OK;
    std::string mMessage;
};

std::ostream& operator<<(std::ostream& os, const Status& status);

/** What the end of a Return does that nobody has looked at, although its call went well. */
enum class HidlReturnRestriction {
    NONE,
    ERROR_IF_UNCHECKED,
    FATAL_IF_UNCHECKED,
};

/** Holds for every Return made in this process from now on. */
void setProcessHidlReturnRestriction(HidlReturnRestriction restriction);

template <typename T>
class Return;

namespace details {

/**
 * The part of a Return that does not depend on its type. A failed one that ends, or is assigned to,
 * unchecked aborts the process, and so does taking the value of a failed one. isOk() checks it,
 * isDeadObject() checks it if it returns true, and nothing else does.
 */
class return_status {
  public:
    return_status() = default;
    return_status(const Status& status) : mStatus(status) {}
    return_status(const return_status&) = delete;
    return_status& operator=(const return_status&) = delete;
    return_status(return_status&& other) noexcept
            : mStatus(std::exchange(other.mStatus, Status())),
              mCheckedStatus(std::exchange(other.mCheckedStatus, true)) {}
    return_status& operator=(return_status&& other) noexcept;
    ~return_status() {
        if (UNLIKELY(!mCheckedStatus)) onUnchecked();
    }

    bool isOk() const {
        mCheckedStatus = true;
        return mStatus.isOk();
    }
    /**
     * Whether the process that hosts the object has gone. False is no check: a caller that expects
     * this failure only does not survive the others.
     */
    bool isDeadObject() const {
        const bool dead = mStatus.transactionError() == DEAD_OBJECT;
        if (dead) mCheckedStatus = true;
        return dead;
    }

    std::string description() const { return mStatus.description(); }
    bool isOkUnchecked() const { return mStatus.isOk(); }

    /** Ends the process when the call failed; generated stubs ask it of their implementation. */
    void assertOk() const {
        mCheckedStatus = true;
        if (UNLIKELY(!mStatus.isOk())) onValueOfFailure();
    }

  private:
    template <typename T>
    friend class ::android::hardware::Return;

    void onUnchecked() const;
    [[noreturn]] void onValueOfFailure() const;

    Status mStatus;
    mutable bool mCheckedStatus = false;
};

}  // namespace details

/** The value of a call, or why there is none. */
template <typename T>
class [[nodiscard]] Return : public details::return_status {
  public:
    Return(T value) : details::return_status(), mValue(std::move(value)) {}
    Return(Status status) : details::return_status(status), mValue() {}

    Return(Return&& other) noexcept = default;
    Return& operator=(Return&& other) noexcept = default;
    ~Return() = default;

    operator T() const {
        assertOk();
        return mValue;
    }

    T withDefault(T fallback) { return isOk() ? mValue : fallback; }

  private:
    T mValue;
};

template <typename T>
class [[nodiscard]] Return<sp<T>> : public details::return_status {
  public:
    Return(T* value) : details::return_status(), mValue(value) {}
    template <typename U>
    Return(sp<U> value) : details::return_status(), mValue(std::move(value)) {}
    Return(Status status) : details::return_status(status), mValue() {}

    Return(Return&& other) noexcept = default;
    Return& operator=(Return&& other) noexcept = default;
    template <typename U>
    Return(Return<sp<U>>&& other)
            : details::return_status(std::move(other)), mValue(std::move(other.mValue)) {}
    ~Return() = default;

    operator sp<T>() const {
        assertOk();
        return mValue;
    }

    sp<T> withDefault(sp<T> fallback) { return isOk() ? mValue : fallback; }

  private:
    template <typename U>
    friend class Return;

    sp<T> mValue;
};

template <>
class [[nodiscard]] Return<void> : public details::return_status {
  public:
    Return() = default;
    Return(const Status& status) : details::return_status(status) {}

    Return(Return&& other) noexcept = default;
    Return& operator=(Return&& other) noexcept = default;
    /** Drops the value, not the duty to look. */
    template <typename U>
    Return(Return<U>&& other) : details::return_status(std::move(other)) {}
    ~Return() = default;
};

inline Return<void> Void() {
    return Return<void>();
}

}  // namespace hardware
}  // namespace android
