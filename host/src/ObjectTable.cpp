#include "ObjectTable.h"

#include <utility>
#include <vector>

#include "Watcher.h"

using android::DEAD_OBJECT;
using android::OK;
using android::sp;
using android::status_t;
using android::hardware::BHwBinder;

namespace hidlhost {

status_t ObjectTable::hold(const sp<BHwBinder>& object, const std::string& holder, uint64_t* id) {
    std::lock_guard<std::mutex> lock(mMutex);
    if (mClosed) return DEAD_OBJECT;
    uint64_t& number = mNumbers[object.get()];
    if (number == 0) number = mNextObject++;
    Object& entry = mObjects[number];
    entry.binder = object;
    ++entry.holders[holder];
    *id = number;
    return OK;
}

bool ObjectTable::holdAgain(uint64_t id, const std::string& holder) {
    std::lock_guard<std::mutex> lock(mMutex);
    auto found = mObjects.find(id);
    if (found == mObjects.end()) return false;
    ++found->second.holders[holder];
    return true;
}

void ObjectTable::release(uint64_t id, const std::string& holder, uint32_t count) {
    sp<BHwBinder> last;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto found = mObjects.find(id);
        if (found == mObjects.end()) return;
        auto& holders = found->second.holders;
        auto held = holders.find(holder);
        if (held == holders.end()) return;
        held->second -= count;
        if (held->second > 0) return;
        holders.erase(held);
        if (!holders.empty()) return;
        last = std::move(found->second.binder);
        mNumbers.erase(last.get());
        mObjects.erase(found);
    }
    Watcher::get().post([last = std::move(last)]() mutable { last.clear(); });
}

void ObjectTable::releaseAll(const std::string& holder) {
    std::vector<sp<BHwBinder>> released;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        for (auto object = mObjects.begin(); object != mObjects.end();) {
            auto& holders = object->second.holders;
            if (holders.erase(holder) == 0 || !holders.empty()) {
                ++object;
                continue;
            }
            released.push_back(std::move(object->second.binder));
            mNumbers.erase(released.back().get());
            object = mObjects.erase(object);
        }
    }
    if (released.empty()) return;
    Watcher::get().post([released = std::move(released)]() mutable { released.clear(); });
}

sp<BHwBinder> ObjectTable::find(uint64_t id, std::shared_ptr<std::mutex>* onewayMutex) {
    std::lock_guard<std::mutex> lock(mMutex);
    auto found = mObjects.find(id);
    if (found == mObjects.end()) return nullptr;
    if (onewayMutex != nullptr) *onewayMutex = found->second.onewayMutex;
    return found->second.binder;
}

void ObjectTable::close() {
    std::unordered_map<uint64_t, Object> objects;  // ends after the lock
    std::lock_guard<std::mutex> lock(mMutex);
    mClosed = true;
    objects.swap(mObjects);
    mNumbers.clear();
}

}  // namespace hidlhost
