#define LOG_TAG "HidlSupport"

#include <hidl/HidlSupport.h>

#include <fcntl.h>

#include <cerrno>

#include <log/log.h>

namespace android {
namespace hardware {

namespace details {

void logAlwaysFatal(const char* message) {
    LOG_ALWAYS_FATAL("%s", message);
}

void logError(const std::string& message) {
    ALOGE("%s", message.c_str());
}

void hidl_log_base::logAlwaysFatal(const char* message) {
    details::logAlwaysFatal(message);
}

bool debuggable() {
#ifdef __ANDROID_DEBUGGABLE__
    return true;
#else
    return false;
#endif
}

int compareStrings(const char* a, size_t aSize, const char* b, size_t bSize) {
    size_t common = std::min(aSize, bSize);
    int order = common == 0 ? 0 : memcmp(a, b, common);
    if (order != 0) return order;
    return aSize < bSize ? -1 : (aSize > bSize ? 1 : 0);
}

HidlInstrumentor::HidlInstrumentor(const std::string& package, const std::string& interface)
        : mInstrumentationLibPackage(package), mInterfaceName(interface) {}

HidlInstrumentor::~HidlInstrumentor() = default;

void HidlInstrumentor::configureInstrumentation(bool log) {
    if (mEnableInstrumentation) return;
    registerInstrumentationCallbacks(&mInstrumentationCallbacks);
    mEnableInstrumentation = !mInstrumentationCallbacks.empty();
    if (log && mEnableInstrumentation) ALOGI("Enable instrumentation.");
}

void HidlInstrumentor::registerInstrumentationCallbacks(
        std::vector<InstrumentationCallback>* callbacks) {
    callbacks->clear();
}

}  // namespace details

// The platform's native_handle_clone() leaves the copies open in programs that this one executes.
static native_handle_t* cloneHandle(const native_handle_t* from) {
    native_handle_t* copy = native_handle_create(from->numFds, from->numInts);
    if (copy == nullptr) return nullptr;
    for (int i = 0; i < from->numFds; ++i) {
        copy->data[i] = fcntl(from->data[i], F_DUPFD_CLOEXEC, 0);
        if (copy->data[i] < 0) {
            int error = errno;
            copy->numFds = i;
            native_handle_close(copy);
            native_handle_delete(copy);
            errno = error;
            return nullptr;
        }
    }
    std::copy_n(from->data + from->numFds, from->numInts, copy->data + from->numFds);
    return copy;
}

hidl_handle::hidl_handle() : mHandle(nullptr), mOwnsHandle(false), mPad{} {
    static_assert(sizeof(hidl_handle) == 16, "wrong size");
    static_assert(offsetof(hidl_handle, mHandle) == kOffsetOfNativeHandle, "wrong offset");
    static_assert(offsetof(hidl_handle, mOwnsHandle) == 8, "wrong offset");
}

hidl_handle::~hidl_handle() {
    freeHandle();
}

hidl_handle::hidl_handle(const native_handle_t* handle) : hidl_handle() {
    mHandle = handle;
}

hidl_handle::hidl_handle(const hidl_handle& other) : hidl_handle() {
    *this = other;
}

hidl_handle::hidl_handle(hidl_handle&& other) noexcept : hidl_handle() {
    *this = std::move(other);
}

hidl_handle& hidl_handle::operator=(const hidl_handle& other) {
    if (this == &other) return *this;
    native_handle_t* copy = nullptr;
    if (other.mHandle != nullptr) {
        copy = cloneHandle(other.mHandle);
        if (copy == nullptr) {
            LOG_ALWAYS_FATAL("A native handle cannot be duplicated: %s", strerror(errno));
        }
    }
    freeHandle();
    mHandle = copy;
    mOwnsHandle = copy != nullptr;
    return *this;
}

hidl_handle& hidl_handle::operator=(const native_handle_t* handle) {
    if (mHandle == handle) return *this;
    freeHandle();
    mHandle = handle;
    return *this;
}

hidl_handle& hidl_handle::operator=(hidl_handle&& other) noexcept {
    if (this == &other) return *this;
    freeHandle();
    mHandle = other.mHandle.get();
    mOwnsHandle = other.mOwnsHandle;
    other.mHandle = nullptr;
    other.mOwnsHandle = false;
    return *this;
}

void hidl_handle::setTo(native_handle_t* handle, bool shouldOwn) {
    if (mHandle != handle) freeHandle();
    mHandle = handle;
    mOwnsHandle = shouldOwn;
}

void hidl_handle::freeHandle() {
    if (mOwnsHandle && mHandle != nullptr) {
        native_handle_close(mHandle);
        native_handle_delete(const_cast<native_handle_t*>(mHandle.get()));
    }
    mHandle = nullptr;
    mOwnsHandle = false;
}

// The text of every empty string that owns nothing.
static const char kEmptyText[] = "";

hidl_string::hidl_string() : mBuffer(kEmptyText), mSize(0), mOwnsBuffer(false), mPad{} {
    static_assert(sizeof(hidl_string) == 16, "wrong size");
    static_assert(offsetof(hidl_string, mBuffer) == kOffsetOfBuffer, "wrong offset");
    static_assert(offsetof(hidl_string, mSize) == 8, "wrong offset");
    static_assert(offsetof(hidl_string, mOwnsBuffer) == 12, "wrong offset");
}

hidl_string::~hidl_string() {
    clear();
}

hidl_string::hidl_string(const hidl_string& other) : hidl_string() {
    copyFrom(other.c_str(), other.size());
}

hidl_string::hidl_string(const char* text) : hidl_string() {
    if (text != nullptr) copyFrom(text, strlen(text));
}

hidl_string::hidl_string(const char* bytes, size_t length) : hidl_string() {
    if (bytes != nullptr) copyFrom(bytes, length);
}

hidl_string::hidl_string(const std::string& other) : hidl_string() {
    copyFrom(other.c_str(), other.size());
}

hidl_string::hidl_string(hidl_string&& other) noexcept : hidl_string() {
    moveFrom(std::move(other));
}

hidl_string& hidl_string::operator=(const hidl_string& other) {
    if (this != &other) copyFrom(other.c_str(), other.size());
    return *this;
}

hidl_string& hidl_string::operator=(const char* text) {
    if (text == nullptr) {
        clear();
    } else {
        copyFrom(text, strlen(text));
    }
    return *this;
}

hidl_string& hidl_string::operator=(const std::string& other) {
    copyFrom(other.c_str(), other.size());
    return *this;
}

hidl_string& hidl_string::operator=(hidl_string&& other) noexcept {
    if (this != &other) moveFrom(std::move(other));
    return *this;
}

void hidl_string::clear() {
    if (mOwnsBuffer) delete[] mBuffer.get();
    mBuffer = kEmptyText;
    mSize = 0;
    mOwnsBuffer = false;
}

// Copies before it frees, as the bytes may be part of this string.
void hidl_string::copyFrom(const char* bytes, size_t length) {
    if (length == 0) {
        clear();
        return;
    }
    if (static_cast<uint64_t>(length) > UINT32_MAX) {
        LOG_ALWAYS_FATAL("hidl_string cannot hold %zu bytes", length);
    }
    char* copy = new char[length + 1];
    memcpy(copy, bytes, length);
    copy[length] = '\0';
    clear();
    mBuffer = copy;
    mSize = static_cast<uint32_t>(length);
    mOwnsBuffer = true;
}

void hidl_string::moveFrom(hidl_string&& other) {
    clear();
    mBuffer = other.mBuffer.get();
    mSize = other.mSize;
    mOwnsBuffer = other.mOwnsBuffer;
    other.mOwnsBuffer = false;
    other.clear();
}

void hidl_string::setToExternal(const char* data, size_t size) {
    if (static_cast<uint64_t>(size) > UINT32_MAX) {
        LOG_ALWAYS_FATAL("hidl_string cannot hold %zu bytes", size);
    }
    // The bytes are sent as they are, and the other side relies on the NUL.
    if (data == nullptr || data[size] != '\0') {
        LOG_ALWAYS_FATAL("hidl_string::setToExternal() needs a NUL behind the last byte");
    }
    clear();
    mBuffer = data;
    mSize = static_cast<uint32_t>(size);
}

std::ostream& operator<<(std::ostream& os, const hidl_string& text) {
    return os.write(text.c_str(), static_cast<std::streamsize>(text.size()));
}

hidl_memory::hidl_memory() : mSize(0) {
    static_assert(sizeof(hidl_memory) == 40, "wrong size");
    static_assert(offsetof(hidl_memory, mHandle) == kOffsetOfHandle, "wrong offset");
    static_assert(offsetof(hidl_memory, mSize) == 16, "wrong offset");
    static_assert(offsetof(hidl_memory, mName) == kOffsetOfName, "wrong offset");
}

hidl_memory::hidl_memory(const hidl_string& name, const hidl_handle& handle, size_t size)
        : mHandle(handle), mSize(size), mName(name) {}

hidl_memory::hidl_memory(const hidl_string& name, hidl_handle&& handle, size_t size)
        : mHandle(std::move(handle)), mSize(size), mName(name) {}

std::string toString(const void* pointer) {
    return details::toHexString(reinterpret_cast<uintptr_t>(pointer));
}

std::string toString(const hidl_handle& handle) {
    const native_handle_t* native = handle;
    if (native == nullptr) return "nullptr";
    std::string text = "hidl_handle {";
    for (int i = 0; i < native->numFds + native->numInts; ++i) {
        if (i == 0) text += native->numFds > 0 ? "fds = [" : "ints = [";
        if (i == native->numFds && i != 0) text += "], ints = [";
        if (i != 0 && i != native->numFds) text += ", ";
        text += std::to_string(native->data[i]);
    }
    if (native->numFds + native->numInts > 0) text += "]";
    return text + "}";
}

std::string toString(const hidl_memory& memory) {
    return "memory {.name = " + toString(memory.name()) +
           ", .size = " + std::to_string(memory.size()) +
           ", .handle = " + toString(hidl_handle(memory.handle())) + "}";
}

std::string toString(const hidl_string& text) {
    return '"' + std::string(text) + '"';
}

std::string toString(const sp<hidl_death_recipient>& recipient) {
    return "death_recipient " + toString(static_cast<const void*>(recipient.get()));
}

}  // namespace hardware
}  // namespace android
