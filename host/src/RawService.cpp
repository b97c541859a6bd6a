#include <hidlhost/raw_service.h>

#include <map>
#include <mutex>

#include <unistd.h>

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlBinderSupport.h>

#include "Fork.h"
#include "Peer.h"
#include "Services.h"

using android::BAD_VALUE;
using android::OK;
using android::sp;
using android::status_t;
using android::hardware::BHwBinder;
using android::hardware::BpHwBinder;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::IBinder;
using android::hardware::Parcel;
using android::hidl::base::V1_0::DebugInfo;
using android::hidl::base::V1_0::IBase;

namespace hidlhost {
namespace {

/** The transactions of IBase, "_" and three letters each. */
constexpr uint32_t baseCode(char a, char b, char c) {
    return uint32_t{0x0f} << 24 | static_cast<uint32_t>(a) << 16 | static_cast<uint32_t>(b) << 8 |
           static_cast<uint32_t>(c);
}
constexpr uint32_t kPing = baseCode('P', 'N', 'G');
constexpr uint32_t kChain = baseCode('C', 'H', 'N');
constexpr uint32_t kDescriptor = baseCode('D', 'S', 'C');
constexpr uint32_t kSysprops = baseCode('S', 'Y', 'S');
constexpr uint32_t kInstrumentation = baseCode('I', 'N', 'T');
constexpr uint32_t kDebugInfo = baseCode('R', 'E', 'F');
constexpr uint32_t kDebug = baseCode('D', 'B', 'G');
constexpr uint32_t kHashes = baseCode('H', 'S', 'H');

struct Names {
    std::map<std::string, std::shared_ptr<RawHost>> hosts;

    static Names& get() {
        static Names& names = *new Names;
        return names;
    }
    /** Returns what was there. */
    std::shared_ptr<RawHost> put(const std::string& key, std::shared_ptr<RawHost> host) {
        std::lock_guard<std::mutex> lock(processMutex(ProcessLock::kRawServices));
        std::shared_ptr<RawHost>& slot = hosts[key];
        slot.swap(host);
        if (slot == nullptr) hosts.erase(key);
        return host;
    }
};

}  // namespace

RawService::RawService(std::vector<std::string> chain, RawHandler handler)
        : mChain(std::move(chain)), mHandler(std::move(handler)) {}

status_t RawService::onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags,
                                TransactCallback callback) {
    const char* interface = data.readCString();
    switch (code) {
        case kPing:
        case kSysprops:
        case kInstrumentation:
        case kDebug:
            writeOk(reply);
            return OK;
        case kDescriptor:
            writeOk(reply);
            writeString(reply, mChain.empty() ? IBase::descriptor : mChain.front());
            return OK;
        case kChain: {
            hidl_vec<hidl_string> names(mChain.size() + 1);
            for (size_t i = 0; i < mChain.size(); ++i) names[i] = mChain[i];
            names[mChain.size()] = IBase::descriptor;
            writeOk(reply);
            size_t parent;
            size_t child;
            reply->writeBuffer(&names, sizeof(names), &parent);
            android::hardware::writeEmbeddedToParcel(names, reply, parent, 0, &child);
            for (size_t i = 0; i < names.size(); ++i) {
                android::hardware::writeEmbeddedToParcel(names[i], reply, child,
                                                         i * sizeof(hidl_string));
            }
            callback(*reply);
            return OK;
        }
        case kHashes: {
            std::vector<uint8_t> zeros((mChain.size() + 1) * 32);
            writeOk(reply);
            writeVector(reply, zeros.data(), mChain.size() + 1, 32);
            return OK;
        }
        case kDebugInfo: {
            DebugInfo info = {};
            info.pid = -1;
            info.arch = sizeof(void*) == 8 ? DebugInfo::Architecture::IS_64BIT
                                           : DebugInfo::Architecture::IS_32BIT;
            writeOk(reply);
            writePlain(reply, &info, sizeof(info));
            return OK;
        }
        default:
            return mHandler(RawCall{code, interface == nullptr ? "" : interface, data,
                                    (flags & FLAG_ONEWAY) != 0},
                            reply);
    }
}

RawHost::RawHost(size_t threads) : mNode(Node::create()) {
    mNode->gate().configure(threads, false);
}

RawHost::~RawHost() {
    kill();
    if (!mNode->inherited()) registry::withdrawNode(mNode->name());
}

status_t RawHost::add(const std::string& interface, const std::string& instance,
                      const sp<BHwBinder>& service) {
    return registerService(*mNode, interface, instance, service);
}

status_t RawHost::add(const std::string& interface, const std::string& instance,
                      RawHandler handler) {
    return add(interface, instance,
               new RawService(std::vector<std::string>{interface}, std::move(handler)));
}

void RawHost::remove(const std::string& interface, const std::string& instance) {
    unregisterService(*mNode, interface, instance);
}

void RawHost::kill() {
    mNode->kill();
}

status_t registerRawService(const std::string& interface, const std::string& instance,
                            const sp<BHwBinder>& service) {
    auto host = std::make_shared<RawHost>();
    status_t status = host->add(interface, instance, service);
    if (status == OK) Names::get().put(interface + "/" + instance, std::move(host));
    return status;
}

status_t registerRawService(const std::string& interface, const std::string& instance,
                            RawHandler handler) {
    return registerRawService(
            interface, instance,
            new RawService(std::vector<std::string>{interface}, std::move(handler)));
}

void unregisterRawService(const std::string& interface, const std::string& instance) {
    Names::get().put(interface + "/" + instance, nullptr);
}

void killRawService(const std::string& interface, const std::string& instance) {
    std::shared_ptr<RawHost> host = Names::get().put(interface + "/" + instance, nullptr);
    if (host != nullptr) host->kill();
}

int32_t processOf(const sp<IBinder>& object) {
    BpHwBinder* remote = object->remoteBinder();
    return remote == nullptr ? getpid() : registry::processOf(remote->peer()->name());
}

void writeOk(Parcel* reply) {
    reply->writeInt32(0);
}

void writeString(Parcel* parcel, const std::string& text) {
    auto* bytes = static_cast<char*>(parcel->allocate(text.size() + 1));
    memcpy(bytes, text.c_str(), text.size() + 1);
    auto* string = new (parcel->allocate(sizeof(hidl_string))) hidl_string;
    string->setToExternal(bytes, text.size());
    size_t parent;
    parcel->writeBuffer(string, sizeof(*string), &parent);
    android::hardware::writeEmbeddedToParcel(*string, parcel, parent, 0);
}

void writeVector(Parcel* parcel, const void* elements, size_t count, size_t elementSize) {
    auto* bytes = static_cast<uint8_t*>(parcel->allocate(count * elementSize));
    if (count != 0) memcpy(bytes, elements, count * elementSize);
    auto* vector = new (parcel->allocate(sizeof(hidl_vec<uint8_t>))) hidl_vec<uint8_t>;
    vector->setToExternal(bytes, count);
    size_t parent;
    size_t child;
    parcel->writeBuffer(vector, sizeof(*vector), &parent);
    parcel->writeEmbeddedBuffer(bytes, count * elementSize, &child, parent, 0);
}

void writePlain(Parcel* parcel, const void* bytes, size_t size) {
    void* copy = parcel->allocate(size);
    memcpy(copy, bytes, size);
    size_t handle;
    parcel->writeBuffer(copy, size, &handle);
}

bool readString(const Parcel& parcel, std::string* text) {
    const void* read;
    size_t parent;
    if (parcel.readBuffer(sizeof(hidl_string), &parent, &read) != OK) return false;
    const auto& string = *static_cast<const hidl_string*>(read);
    if (android::hardware::readEmbeddedFromParcel(string, parcel, parent, 0) != OK) return false;
    *text = string;
    return true;
}

bool readVector(const Parcel& parcel, size_t elementSize, std::vector<uint8_t>* bytes) {
    const void* read;
    size_t parent;
    size_t child;
    if (parcel.readBuffer(sizeof(hidl_vec<uint8_t>), &parent, &read) != OK) return false;
    size_t size = static_cast<const hidl_vec<uint8_t>*>(read)->size() * elementSize;
    const void* elements;
    if (parcel.readNullableEmbeddedBuffer(size, &child, parent, 0, &elements) != OK) return false;
    auto* first = static_cast<const uint8_t*>(elements);
    bytes->assign(first, first + size);
    return true;
}

bool readPlain(const Parcel& parcel, void* bytes, size_t size) {
    const void* read;
    size_t handle;
    if (parcel.readBuffer(size, &handle, &read) != OK) return false;
    memcpy(bytes, read, size);
    return true;
}

status_t rawCall(const sp<IBinder>& object, const std::string& interface, uint32_t code,
                 const std::function<void(Parcel*)>& write, Parcel* reply, uint32_t flags) {
    if (object == nullptr) return BAD_VALUE;
    Parcel data;
    data.writeInterfaceToken(interface.c_str());
    if (write) write(&data);
    return object->transact(code, data, reply, flags);
}

sp<IBinder> findRaw(const std::string& interface, const std::string& instance) {
    return findService(interface, instance);
}

void withdrawServices() {
    registry::withdrawNode(Node::process().name());
}

}  // namespace hidlhost
