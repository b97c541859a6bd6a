// The process at the other end of the host runtime's tests: kit_service <maxThreads>. Registers
// IEcho and IServiceChild, writes "ready" and serves until it is killed.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <hidl/HidlTransportSupport.h>
#include <hidlhost/test/kit/1.0/IEcho.h>
#include <hidlhost/test/kit/1.0/IServiceChild.h>

namespace {

using ::android::sp;
using ::android::hardware::hidl_array;
using ::android::hardware::hidl_bitfield;
using ::android::hardware::hidl_handle;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;
using ::android::hardware::Void;
using ::android::hidl::base::V1_0::IBase;
using namespace ::hidlhost::test::kit::V1_0;

#define ECHO_VALUE(name, ...)                          \
    Return<__VA_ARGS__> name(__VA_ARGS__ v) override { \
        return v;                                      \
    }
#define ECHO_OBJECT(name, ...)                                        \
    Return<sp<__VA_ARGS__>> name(const sp<__VA_ARGS__>& v) override { \
        return v;                                                     \
    }
#define ECHO_RESULT(name, ...)                                           \
    Return<void> name(const __VA_ARGS__& v, name##_cb result) override { \
        result(v);                                                       \
        return Void();                                                   \
    }

class Echo : public IEcho {
  public:
    ECHO_VALUE(echoBool, bool)
    ECHO_VALUE(echoInt8, int8_t)
    ECHO_VALUE(echoUint8, uint8_t)
    ECHO_VALUE(echoInt16, int16_t)
    ECHO_VALUE(echoUint16, uint16_t)
    ECHO_VALUE(echoInt32, int32_t)
    ECHO_VALUE(echoUint32, uint32_t)
    ECHO_VALUE(echoInt64, int64_t)
    ECHO_VALUE(echoUint64, uint64_t)
    ECHO_VALUE(echoFloat, float)
    ECHO_VALUE(echoDouble, double)
    ECHO_VALUE(echoColour, Colour)
    ECHO_VALUE(echoSigned, Signed)
    ECHO_VALUE(echoWide, Wide)
    ECHO_VALUE(echoMask, hidl_bitfield<Colour>)
    ECHO_RESULT(echoString, hidl_string)
    ECHO_RESULT(echoBytes, hidl_vec<uint8_t>)
    ECHO_RESULT(echoBools, hidl_vec<bool>)
    ECHO_RESULT(echoDoubles, hidl_vec<double>)
    ECHO_RESULT(echoStrings, hidl_vec<hidl_string>)
    ECHO_RESULT(echoCube, hidl_vec<hidl_vec<hidl_vec<int16_t>>>)
    ECHO_RESULT(echoEnums, hidl_vec<Colour>)
    ECHO_RESULT(echoArray, hidl_array<int32_t, 5>)
    ECHO_RESULT(echoMatrix, hidl_array<uint8_t, 3, 4>)
    ECHO_RESULT(echoStringGrid, hidl_array<hidl_string, 2, 3>)
    ECHO_RESULT(echoArrays, hidl_vec<hidl_array<int64_t, 2>>)
    ECHO_RESULT(echoScalars, Scalars)
    ECHO_RESULT(echoTree, Tree)
    ECHO_RESULT(echoTrees, hidl_vec<Tree>)
    ECHO_RESULT(echoBits, Bits)
    ECHO_RESULT(echoChoice, Choice)
    ECHO_RESULT(echoChoices, hidl_vec<Choice>)
    ECHO_RESULT(echoMaybes, hidl_vec<Maybe>)
    ECHO_RESULT(echoHandle, hidl_handle)
    ECHO_RESULT(echoHandles, hidl_vec<hidl_handle>)
    ECHO_OBJECT(echoListener, IListener)
    ECHO_RESULT(echoListeners, hidl_vec<sp<IListener>>)
    ECHO_OBJECT(echoInterface, IBase)

    Return<void> several(int32_t a, const hidl_string& b, const hidl_vec<uint16_t>& c,
                         several_cb result) override {
        result(c, a, b, true);
        return Void();
    }
    Return<void> nothing() override { return Void(); }
};

std::atomic<int32_t> gLiveChildren{0};

/** What oneway calls have brought. */
class Pushed {
  public:
    static void add(uint32_t sequence) {
        std::lock_guard<std::mutex> lock(sMutex);
        sAll.push_back(sequence);
    }
    static std::vector<uint32_t> all() {
        std::lock_guard<std::mutex> lock(sMutex);
        return sAll;
    }

  private:
    static inline std::mutex sMutex;
    static inline std::vector<uint32_t> sAll;
};

class Child : public IListener {
  public:
    explicit Child(int32_t value) : mValue(value) { ++gLiveChildren; }
    ~Child() override { --gLiveChildren; }

    Return<int32_t> onValue(int32_t value) override { return mValue + value; }
    Return<void> onText(const hidl_string& text, onText_cb result) override {
        result(text, static_cast<int32_t>(text.size()));
        return Void();
    }
    Return<void> onEvent(uint32_t sequence) override {
        if (mValue < 0) std::this_thread::sleep_for(std::chrono::milliseconds(-mValue));
        Pushed::add(sequence);
        return Void();
    }

  private:
    const int32_t mValue;
};

class Service : public IServiceChild {
  public:
    Return<int32_t> pid() override { return getpid(); }
    Return<void> base(base_cb result) override {
        result("base");
        return Void();
    }

    Return<void> setListener(const sp<IListener>& listener) override {
        std::lock_guard<std::mutex> lock(mMutex);
        mListener = listener;
        return Void();
    }
    Return<sp<IListener>> getListener() override { return listener(); }

    // A listener that cannot be reached answers for itself: -1 dead, -2 anything else.
    Return<int32_t> callBack(const sp<IListener>& listener, int32_t value) override {
        Return<int32_t> answer = listener->onValue(value);
        if (answer.isDeadObject()) return -1;
        return answer.withDefault(-2);
    }

    Return<void> notify(uint32_t count) override {
        std::thread([listener = listener(), count] {
            for (uint32_t i = 0; i < count; ++i) (void)listener->onEvent(i).isOk();
        }).detach();
        return Void();
    }

    Return<int32_t> bounce(const sp<IListener>& listener, int32_t depth) override {
        if (depth == 0) return 0;
        return 1 + listener->onValue(depth - 1).withDefault(-1000);
    }

    Return<sp<IListener>> makeChild(int32_t value) override { return new Child(value); }
    Return<sp<IListener>> sameChild() override {
        static sp<IListener> child = new Child(1);
        return child;
    }
    Return<int32_t> liveChildren() override { return gLiveChildren.load(); }

    Return<uint32_t> slow(uint32_t milliseconds) override {
        uint32_t now = ++mConcurrent;
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        --mConcurrent;
        return now;
    }
    Return<void> hang() override {
        if (sp<IListener> told = listener()) (void)told->onEvent(0).isOk();
        for (;;) pause();
    }
    Return<void> die() override {
        raise(SIGKILL);
        return Void();
    }

    Return<void> push(uint32_t sequence) override {
        Pushed::add(sequence);
        return Void();
    }
    Return<void> slowPush(uint32_t sequence, uint32_t milliseconds) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        return push(sequence);
    }
    Return<void> pushed(pushed_cb result) override {
        result(Pushed::all());
        return Void();
    }

    Return<int32_t> openDescriptors() override {
        int32_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
            count += entry.is_symlink();
        }
        return count;
    }
    Return<void> readAll(const hidl_handle& from, readAll_cb result) override {
        std::vector<uint8_t> bytes;
        uint8_t chunk[512];
        ssize_t got = 0;
        while ((got = read(from->data[0], chunk, sizeof(chunk))) > 0) {
            bytes.insert(bytes.end(), chunk, chunk + got);
        }
        result(bytes);
        return Void();
    }
    Return<void> pipeWith(const hidl_string& text, pipeWith_cb result) override {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) abort();
        if (write(ends[1], text.c_str(), text.size()) != static_cast<ssize_t>(text.size())) abort();
        close(ends[1]);
        native_handle_t* handle = native_handle_create(1, 0);
        handle->data[0] = ends[0];
        hidl_handle owner;
        owner.setTo(handle, true);
        result(owner);
        return Void();
    }

    Return<void> fill(uint32_t size, uint8_t value, fill_cb result) override {
        result(std::vector<uint8_t>(size, value));
        return Void();
    }
    Return<uint64_t> sum(const hidl_vec<uint8_t>& bytes) override {
        uint64_t total = 0;
        for (uint8_t byte : bytes) total += byte;
        return total;
    }

    Return<bool> watches(const sp<IListener>& listener) override {
        struct Recipient : ::android::hardware::hidl_death_recipient {
            void serviceDied(uint64_t, const ::android::wp<IBase>&) override {}
        };
        static const sp<Recipient> recipient = new Recipient;
        return listener->linkToDeath(recipient, 0).withDefault(false);
    }
    Return<void> callFromThread(int32_t value) override {
        std::thread([&] { (void)listener()->onValue(value).isOk(); }).join();
        return Void();
    }

    Return<void> child(child_cb result) override {
        result("child");
        return Void();
    }
    Return<void> childPush(uint32_t sequence) override { return push(sequence + 1000); }
    Return<bool> finds(const hidl_string& instance) override {
        return IListener::getService(instance) != nullptr;
    }

  private:
    sp<IListener> listener() {
        std::lock_guard<std::mutex> lock(mMutex);
        return mListener;
    }

    std::mutex mMutex;
    sp<IListener> mListener;
    std::atomic<uint32_t> mConcurrent{0};
};

}  // namespace

int main(int argc, char** argv) {
    size_t threads = argc > 1 ? strtoul(argv[1], nullptr, 10) : 4;
    if (threads != 0) ::android::hardware::configureRpcThreadpool(threads, true);
    sp<IEcho> echo = new Echo;
    sp<IServiceChild> service = new Service;
    if (echo->registerAsService("kit") != ::android::OK) return 3;
    if (service->registerAsService("kit") != ::android::OK) return 3;
    puts("ready");
    fflush(stdout);
    ::android::hardware::joinRpcThreadpool();
    return 4;
}
