#pragma once

#include <hidlhost/test/kit/1.0/IListener.h>

namespace kit {

/** Answers with the value plus 1 and swallows events. */
class Successor : public ::hidlhost::test::kit::V1_0::IListener {
  public:
    ::android::hardware::Return<int32_t> onValue(int32_t value) override { return value + 1; }
    ::android::hardware::Return<void> onText(const ::android::hardware::hidl_string& text,
                                             onText_cb result) override {
        result(text, static_cast<int32_t>(text.size()));
        return ::android::hardware::Void();
    }
    ::android::hardware::Return<void> onEvent(uint32_t) override {
        return ::android::hardware::Void();
    }
};

}  // namespace kit
