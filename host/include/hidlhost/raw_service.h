#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <hidl/HidlSupport.h>
#include <hwbinder/Binder.h>
#include <hwbinder/Parcel.h>
#include <utils/Errors.h>

/**
 * Services at the level of transactions: they see the code and the bytes of a call, before any
 * generated code, and answer with bytes, with an error, or by dying. They are always reached over a
 * socket, from within their own process too.
 */
namespace hidlhost {

class Node;

/** One call as it has arrived. */
struct RawCall {
    uint32_t code;
    /** The interface that the caller takes the object for. The arguments follow it. */
    std::string interface;
    const android::hardware::Parcel& arguments;
    bool oneway;
};

/**
 * Answers a call. OK sends `reply`, which begins with writeOk() where generated code reads it;
 * anything else is what the caller's transport then fails with, the connection staying intact.
 */
using RawHandler =
        std::function<android::status_t(const RawCall& call, android::hardware::Parcel* reply)>;

/**
 * An object whose calls all go to a handler, except those of IBase (ping, interfaceChain, ...),
 * which it answers by itself for the given interfaces.
 */
class RawService : public android::hardware::BHwBinder {
  public:
    /** `chain` lists the interface and its ancestors, without IBase. */
    RawService(std::vector<std::string> chain, RawHandler handler);

    android::status_t onTransact(uint32_t code, const android::hardware::Parcel& data,
                                 android::hardware::Parcel* reply, uint32_t flags,
                                 TransactCallback callback) override;

  private:
    const std::vector<std::string> mChain;
    const RawHandler mHandler;
};

/**
 * Stands for a process that hosts raw services. Others see all its objects die together.
 */
class RawHost {
  public:
    /** `threads` calls run at a time: several, unless a test is about one after the other. */
    explicit RawHost(size_t threads = 1000);
    /** Kills. */
    ~RawHost();
    RawHost(const RawHost&) = delete;
    RawHost& operator=(const RawHost&) = delete;

    /** Registers any BHwBinder under "package@version::IName" and an instance. */
    android::status_t add(const std::string& interface, const std::string& instance,
                          const android::sp<android::hardware::BHwBinder>& service);
    /** The same for a handler that knows only this interface and IBase. */
    android::status_t add(const std::string& interface, const std::string& instance,
                          RawHandler handler);

    /** Takes a name back. Clients that have the object keep it. */
    void remove(const std::string& interface, const std::string& instance);

    /**
     * Ends as a process does that is killed: calls under way come back with DEAD_OBJECT, death
     * recipients are called, and the names stay until somebody finds nobody behind them.
     */
    void kill();

  private:
    std::shared_ptr<Node> mNode;
};

/** A raw service on a host of its own. A second one under the same names replaces the first. */
android::status_t registerRawService(const std::string& interface, const std::string& instance,
                                     const android::sp<android::hardware::BHwBinder>& service);
android::status_t registerRawService(const std::string& interface, const std::string& instance,
                                     RawHandler handler);
void unregisterRawService(const std::string& interface, const std::string& instance);
/** See RawHost::kill(). */
void killRawService(const std::string& interface, const std::string& instance);

// Arguments and results as generated code writes them. What is written here is copied.

/** The status with which every reply begins. */
void writeOk(android::hardware::Parcel* reply);
void writeString(android::hardware::Parcel* parcel, const std::string& text);
void writeVector(android::hardware::Parcel* parcel, const void* elements, size_t count,
                 size_t elementSize);
template <typename T>
void writeVector(android::hardware::Parcel* parcel, const std::vector<T>& elements) {
    writeVector(parcel, elements.data(), elements.size(), sizeof(T));
}
/** A struct without strings, vectors and handles, or an array. */
void writePlain(android::hardware::Parcel* parcel, const void* bytes, size_t size);

/** Each returns false if something else comes next. */
bool readString(const android::hardware::Parcel& parcel, std::string* text);
bool readVector(const android::hardware::Parcel& parcel, size_t elementSize,
                std::vector<uint8_t>* bytes);
template <typename T>
bool readVector(const android::hardware::Parcel& parcel, std::vector<T>* elements) {
    std::vector<uint8_t> bytes;
    if (!readVector(parcel, sizeof(T), &bytes)) return false;
    elements->resize(bytes.size() / sizeof(T));
    if (!bytes.empty()) memcpy(elements->data(), bytes.data(), bytes.size());
    return true;
}
bool readPlain(const android::hardware::Parcel& parcel, void* bytes, size_t size);

/**
 * Makes a call without generated code: `arguments` is written by `write` behind the token of
 * `interface`. The reply begins with the status that writeOk() writes.
 */
android::status_t rawCall(const android::sp<android::hardware::IBinder>& object,
                          const std::string& interface, uint32_t code,
                          const std::function<void(android::hardware::Parcel*)>& write,
                          android::hardware::Parcel* reply, uint32_t flags = 0);

/** The binder registered under the names, null where nobody is. */
android::sp<android::hardware::IBinder> findRaw(const std::string& interface,
                                                const std::string& instance);

/** The process that hosts an object, by the number that it has for itself. Calls nobody. */
int32_t processOf(const android::sp<android::hardware::IBinder>& object);

/**
 * Takes this process' own names and socket out of the runtime directory, for an orderly end; the
 * end of the process through exit() does so by itself.
 */
void withdrawServices();

}  // namespace hidlhost
