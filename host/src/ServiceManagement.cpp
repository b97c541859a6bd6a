#define LOG_TAG "hidlhost"

#include <hidl/ServiceManagement.h>

#include <algorithm>
#include <mutex>

#include <android/hidl/base/1.0/BpHwBase.h>
#include <android/hidl/manager/1.0/IServiceManager.h>
#include <hidl/HidlBinderSupport.h>
#include <hidl/HidlTransportSupport.h>
#include <log/log.h>

#include "Fork.h"
#include "Manifest.h"
#include "Peer.h"
#include "Services.h"

using ::android::hidl::base::V1_0::BnHwBase;
using ::android::hidl::base::V1_0::BpHwBase;
using ::android::hidl::base::V1_0::DebugInfo;
using ::android::hidl::base::V1_0::IBase;
using ::android::hidl::manager::V1_0::IServiceManager;
using ::android::hidl::manager::V1_0::IServiceNotification;

namespace hidlhost {
namespace {

constexpr char kManagersName[] = "default";

bool isServiceManager(const std::string& interface, const std::string& instance) {
    return interface == IServiceManager::descriptor && instance == kManagersName;
}

}  // namespace

android::status_t registerService(Node& node, const std::string& interface,
                                  const std::string& instance,
                                  const android::sp<android::hardware::BHwBinder>& service) {
    const std::string holder = registrationHolder(interface, instance);
    registry::Entry entry;
    registry::Entry before;
    entry.node = node.name();
    bool replaces = registry::find(interface, instance, &before) && before.node == entry.node;
    android::status_t status = node.hold(service, holder, &entry.object);
    if (status != android::OK) return status;
    status = registry::publish(interface, instance, entry);
    if (status != android::OK) {
        node.objects().release(entry.object, holder, 1);
    } else if (replaces) {
        node.objects().release(before.object, holder, 1);
    }
    return status;
}

void unregisterService(Node& node, const std::string& interface, const std::string& instance) {
    registry::Entry entry;
    if (!registry::find(interface, instance, &entry) || entry.node != node.name()) return;
    registry::withdraw(interface, instance, entry);
    node.objects().release(entry.object, registrationHolder(interface, instance), 1);
}

std::vector<std::pair<std::string, std::string>> listServices() {
    auto names = registry::list();
    names.emplace_back(IServiceManager::descriptor, kManagersName);
    return names;
}

std::string registrationHolder(const std::string& interface, const std::string& instance) {
    return "name:" + interface + "/" + instance;
}

android::sp<android::hardware::IBinder> findService(const std::string& interface,
                                                    const std::string& instance) {
    const UnderForeignLock locked;
    Node& node = Node::process();
    // A second try finds what has replaced an entry in the meantime.
    for (int attempt = 0; attempt < 2; ++attempt) {
        registry::Entry entry;
        if (!registry::find(interface, instance, &entry)) return nullptr;
        if (entry.node == node.name()) {
            android::sp<android::hardware::BHwBinder> local = node.objects().find(entry.object);
            if (local != nullptr) return local;
        } else {
            std::shared_ptr<Peer> peer = node.peer(entry.node);
            if (peer != nullptr) peer->prepare();
            android::status_t status =
                    peer == nullptr ? android::BAD_VALUE : peer->acquire(entry.object, false);
            if (status == android::OK) status = peer->watch();
            if (status == android::OK) {
                android::sp<android::hardware::BpHwBinder> proxy = peer->proxy(entry.object, 1);
                proxy->setKnownAs(interface);
                return proxy;
            }
            // Only what is surely dead is cleared away.
            if (status != android::DEAD_OBJECT) return nullptr;
            node.forget(entry.node);
        }
        registry::withdraw(interface, instance, entry);
    }
    return nullptr;
}

}  // namespace hidlhost

namespace android {
namespace hardware {
namespace {

/** The platform's view of the runtime directory. */
struct DirectoryServiceManager : public IServiceManager {
    Return<sp<IBase>> get(const hidl_string& fqName, const hidl_string& name) override {
        return details::getRawServiceInternal(fqName, name, false, false);
    }

    Return<bool> add(const hidl_string& name, const sp<IBase>& service) override {
        return details::registerAsServiceInternal(service, name) == OK;
    }

    Return<Transport> getTransport(const hidl_string& fqName, const hidl_string& name) override {
        hidlhost::registry::Entry entry;
        return hidlhost::isServiceManager(fqName, name) ||
                               hidlhost::registry::find(fqName, name, &entry)
                       ? Transport::HWBINDER
                       : Transport::EMPTY;
    }

    Return<void> list(list_cb callback) override {
        std::vector<hidl_string> names;
        for (const auto& name : hidlhost::listServices()) {
            names.push_back(name.first + "/" + name.second);
        }
        callback(names);
        return Void();
    }

    Return<void> listByInterface(const hidl_string& fqName, listByInterface_cb callback) override {
        std::vector<hidl_string> names;
        for (const std::string& name : getAllHalInstanceNames(fqName)) names.push_back(name);
        callback(names);
        return Void();
    }

    Return<bool> registerForNotifications(const hidl_string& fqName, const hidl_string& name,
                                          const sp<IServiceNotification>& listener) override {
        return hidlhost::notifyOfRegistrations(fqName, name, listener);
    }

    Return<void> debugDump(debugDump_cb callback) override {
        std::vector<InstanceDebugInfo> infos;
        for (const auto& name : hidlhost::listServices()) {
            InstanceDebugInfo info = {};
            info.interfaceName = name.first;
            info.instanceName = name.second;
            hidlhost::registry::Entry entry;
            if (hidlhost::isServiceManager(name.first, name.second)) {
                info.pid = details::getPidIfSharable();
            } else if (hidlhost::registry::find(name.first, name.second, &entry)) {
                info.pid = hidlhost::registry::processOf(entry.node);
            } else {
                continue;  // withdrawn meanwhile
            }
            info.arch = DebugInfo::Architecture::UNKNOWN;
            infos.push_back(info);
        }
        callback(infos);
        return Void();
    }

    /** The manager is in the client's own process, so that there is nobody to record it for. */
    Return<void> registerPassthroughClient(const hidl_string&, const hidl_string&) override {
        return Void();
    }
};

}  // namespace

sp<IServiceManager> defaultServiceManager() {
    static sp<IServiceManager>& manager = *new sp<IServiceManager>(new DirectoryServiceManager);
    return manager;
}

std::vector<std::string> getAllHalInstanceNames(const std::string& descriptor) {
    std::vector<std::string> names;
    for (const auto& name : hidlhost::listServices()) {
        if (name.first == descriptor) names.push_back(name.second);
    }
    return names;
}

namespace details {

sp<IBase> getRawServiceInternal(const std::string& descriptor, const std::string& instance,
                                bool retry, bool getStub) {
    if (getStub) return hidlhost::loadImplementation(descriptor, instance);
    if (hidlhost::isServiceManager(descriptor, instance)) return defaultServiceManager();
    sp<IBinder> binder;
    const auto found = [&] {
        binder = hidlhost::findService(descriptor, instance);
        return binder != nullptr;
    };
    if (!found() && retry && hidlhost::Manifest::get().lists(descriptor, instance)) {
        hidlhost::waitForRegistration(descriptor + "/" + instance + ", which QELTV_MANIFEST lists",
                                      found);
    }
    return fromBinder<IBase, BpHwBase, BnHwBase>(binder);
}

void waitForHwService(const std::string& interface, const std::string& instanceName) {
    hidlhost::waitForRegistration(interface + "/" + instanceName, [&] {
        return hidlhost::isServiceManager(interface, instanceName) ||
               hidlhost::findService(interface, instanceName) != nullptr;
    });
}

status_t registerAsServiceInternal(const sp<IBase>& service, const std::string& name) {
    if (service == nullptr || name.empty()) return BAD_VALUE;
    if (service->isRemote()) return INVALID_OPERATION;
    sp<IBinder> binder = getOrCreateCachedBinder(service.get());
    if (binder == nullptr || binder->localBinder() == nullptr) return UNKNOWN_ERROR;

    std::vector<std::string> chain;
    Return<void> asked = service->interfaceChain([&](const hidl_vec<hidl_string>& descriptors) {
        for (const hidl_string& descriptor : descriptors) chain.push_back(descriptor);
    });
    if (!asked.isOk()) return UNKNOWN_ERROR;
    for (const std::string& descriptor : chain) {
        if (descriptor == IBase::descriptor) continue;
        status_t status = hidlhost::registerService(hidlhost::Node::process(), descriptor, name,
                                                    binder->localBinder());
        if (status != OK) return status;
    }
    return OK;
}

}  // namespace details
}  // namespace hardware
}  // namespace android
