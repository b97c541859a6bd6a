#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include <hwbinder/Binder.h>

namespace hidlhost {

/** The objects that a node has given out, and who holds them. */
class ObjectTable {
  public:
    /** Gives the object a number and `holder` one more reference to it. */
    android::status_t hold(const android::sp<android::hardware::BHwBinder>& object,
                           const std::string& holder, uint64_t* id);
    bool holdAgain(uint64_t id, const std::string& holder);
    void release(uint64_t id, const std::string& holder, uint32_t count);
    void releaseAll(const std::string& holder);

    /** Null for a number without an object; `onewayMutex` orders the object's oneway calls. */
    android::sp<android::hardware::BHwBinder> find(
            uint64_t id, std::shared_ptr<std::mutex>* onewayMutex = nullptr);

    /** Releases everything and takes nothing more. */
    void close();

  private:
    struct Object {
        android::sp<android::hardware::BHwBinder> binder;
        std::map<std::string, int64_t> holders;
        std::shared_ptr<std::mutex> onewayMutex = std::make_shared<std::mutex>();
    };

    std::mutex mMutex;
    bool mClosed = false;
    uint64_t mNextObject = 1;
    std::unordered_map<uint64_t, Object> mObjects;
    std::unordered_map<android::hardware::BHwBinder*, uint64_t> mNumbers;
};

}  // namespace hidlhost
