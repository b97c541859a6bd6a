#pragma once

#include <optional>
#include <utility>

#include "Code.h"

namespace qeltvd {

/** A value, or the code of the reason why there is none. */
template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : mValue(std::move(value)), mCode(kOk) {}
    /** @param code not kOk */
    Result(Code code) : mCode(code) {}

    explicit operator bool() const { return mValue.has_value(); }
    /** The value; only if there is one. */
    const T& operator*() const { return *mValue; }
    const T* operator->() const { return &*mValue; }
    T valueOr(T otherwise) const { return mValue ? *mValue : std::move(otherwise); }
    Code code() const { return mCode; }

  private:
    std::optional<T> mValue;
    Code mCode;
};

inline Code codeOf(Code code) {
    return code;
}
template <class T>
Code codeOf(const Result<T>& result) {
    return result.code();
}

}  // namespace qeltvd
