#define LOG_TAG "hidlhost"

#include <hidl/ServiceManagement.h>

#include <algorithm>
#include <mutex>

#include <android/hidl/base/1.0/BpHwBase.h>
#include <android/hidl/manager/1.0/IServiceManager.h>
#include <hidl/HidlBinderSupport.h>
#include <hidl/HidlTransportSupport.h>
#include <log/log.h>

#include "Peer.h"
#include "Services.h"

using ::android::hidl::base::V1_0::BnHwBase;
using ::android::hidl::base::V1_0::BpHwBase;
using ::android::hidl::base::V1_0::IBase;
using ::android::hidl::manager::V1_0::IServiceManager;
using ::android::hidl::manager::V1_0::IServiceNotification;

namespace hidlhost {

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

std::string registrationHolder(const std::string& interface, const std::string& instance) {
    return "name:" + interface + "/" + instance;
}

android::sp<android::hardware::IBinder> findService(const std::string& interface,
                                                    const std::string& instance) {
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
        return hidlhost::registry::find(fqName, name, &entry) ? Transport::HWBINDER
                                                              : Transport::EMPTY;
    }

    Return<void> list(list_cb callback) override {
        std::vector<hidl_string> names;
        for (const auto& entry : hidlhost::registry::list()) {
            names.push_back(entry.first + "/" + entry.second);
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
};

}  // namespace

sp<IServiceManager> defaultServiceManager() {
    static sp<IServiceManager>& manager = *new sp<IServiceManager>(new DirectoryServiceManager);
    return manager;
}

std::vector<std::string> getAllHalInstanceNames(const std::string& descriptor) {
    std::vector<std::string> names;
    for (const auto& entry : hidlhost::registry::list()) {
        if (entry.first == descriptor) names.push_back(entry.second);
    }
    return names;
}

namespace details {

sp<IBase> getRawServiceInternal(const std::string& descriptor, const std::string& instance,
                                bool /* retry */, bool /* getStub */) {
    sp<IBinder> binder = hidlhost::findService(descriptor, instance);
    return fromBinder<IBase, BpHwBase, BnHwBase>(binder);
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
