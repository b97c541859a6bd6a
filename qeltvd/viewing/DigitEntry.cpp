#include "DigitEntry.h"

namespace qeltvd {

bool DigitEntry::add(char key, Clock::time_point now) {
    const bool hasPoint = mKeys.find(kPoint) != std::string::npos;
    if (key == kPoint && (hasPoint || mKeys.empty())) return false;
    mKeys += key;
    mUsed = true;
    mDue = now + kTimeout;
    return true;
}

bool DigitEntry::complete() const {
    const size_t point = mKeys.find(kPoint);
    return point == std::string::npos ? mKeys.size() == kDigits
                                      : mKeys.size() - point - 1 == kMinorDigits;
}

DigitEntry::Number DigitEntry::number() const {
    const size_t point = mKeys.find(kPoint);
    const auto value = [](const std::string& digits) {
        return digits.empty() ? 0u : static_cast<uint32_t>(std::stoul(digits));
    };
    return {value(mKeys.substr(0, point)),
            point == std::string::npos ? 0u : value(mKeys.substr(point + 1)), mKeys.size()};
}

std::optional<DigitEntry::Number> DigitEntry::take() {
    mDue.reset();
    if (mKeys.empty()) return std::nullopt;
    const Number number = this->number();
    mKeys.clear();
    return number;
}

void DigitEntry::reset() {
    mKeys.clear();
    mDue.reset();
    mUsed = false;
}

}  // namespace qeltvd
