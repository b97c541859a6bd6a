#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <cutils/native_handle.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

#ifndef LIKELY
#define LIKELY(exp) (__builtin_expect((exp) != 0, 1))
#endif
#ifndef UNLIKELY
#define UNLIKELY(exp) (__builtin_expect((exp) != 0, 0))
#endif

namespace android {
namespace hardware {
namespace details {

/** Writes the message to the log and aborts. */
[[noreturn]] void logAlwaysFatal(const char* message);
void logError(const std::string& message);

struct hidl_log_base {
    [[noreturn]] static void logAlwaysFatal(const char* message);
};

/** Whether the build reveals addresses of its objects in getDebugInfo(). */
bool debuggable();

/** Kinds of generated classes: interface, proxy, stub, pass-through wrapper. */
struct i_tag {};
struct bphw_tag {};
struct bnhw_tag {};
struct bs_tag {};

/**
 * A pointer that takes eight bytes, aligned to eight, in 32-bit processes too. The types that
 * travel hold their pointers in this form, so that both ABIs share one layout.
 */
template <typename T>
struct alignas(8) hidl_pointer {
    hidl_pointer() : mSlot(0) {
        static_assert(sizeof(hidl_pointer) == 8, "a pointer slot takes eight bytes");
        static_assert(alignof(hidl_pointer) == 8, "a pointer slot is aligned to eight bytes");
    }
    hidl_pointer(T* pointer) : hidl_pointer() { mPointer = pointer; }
    hidl_pointer& operator=(T* pointer) {
        mSlot = 0;
        mPointer = pointer;
        return *this;
    }

    T* get() const { return mPointer; }
    operator T*() const { return mPointer; }
    T* operator->() const { return mPointer; }

  private:
    union {
        T* mPointer;
        uint64_t mSlot;
    };
};

/**
 * Notifies the callbacks of an instrumented build of calls. This runtime installs none by itself;
 * registerInstrumentationCallbacks() exists for subclasses that do.
 */
struct HidlInstrumentor {
    enum InstrumentationEvent {
        SERVER_API_ENTRY = 0,
        SERVER_API_EXIT,
        CLIENT_API_ENTRY,
        CLIENT_API_EXIT,
        SYNC_CALLBACK_ENTRY,
        SYNC_CALLBACK_EXIT,
        ASYNC_CALLBACK_ENTRY,
        ASYNC_CALLBACK_EXIT,
        PASSTHROUGH_ENTRY,
        PASSTHROUGH_EXIT,
    };

    using InstrumentationCallback = std::function<void(
            const InstrumentationEvent event, const char* package, const char* version,
            const char* interface, const char* method, std::vector<void*>* args)>;

    explicit HidlInstrumentor(const std::string& package, const std::string& interface);
    virtual ~HidlInstrumentor();

    const std::vector<InstrumentationCallback>& getInstrumentationCallbacks() {
        return mInstrumentationCallbacks;
    }
    bool isInstrumentationEnabled() { return mEnableInstrumentation; }

  protected:
    void configureInstrumentation(bool log = true);
    void registerInstrumentationCallbacks(std::vector<InstrumentationCallback>* callbacks);

    std::vector<InstrumentationCallback> mInstrumentationCallbacks;
    bool mEnableInstrumentation = false;
    std::string mInstrumentationLibPackage;
    std::string mInterfaceName;
};

}  // namespace details
}  // namespace hardware
}  // namespace android
