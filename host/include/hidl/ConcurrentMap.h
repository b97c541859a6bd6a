#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <type_traits>
#include <utility>

namespace android {
namespace hardware {

/** A map whose single operations are atomic. Iteration is not: hold lock() meanwhile. */
template <typename K, typename V>
class ConcurrentMap {
  public:
    using iterator = typename std::map<K, V>::iterator;
    using const_iterator = typename std::map<K, V>::const_iterator;

    void set(K&& key, V&& value) {
        std::lock_guard<std::mutex> guard(mMutex);
        mMap[std::forward<K>(key)] = std::forward<V>(value);
    }
    void set(const K& key, const V& value) {
        std::lock_guard<std::mutex> guard(mMutex);
        mMap[key] = value;
    }

    V get(const K& key, const V& fallback) const {
        std::lock_guard<std::mutex> guard(mMutex);
        auto it = mMap.find(key);
        return it == mMap.end() ? fallback : it->second;
    }

    size_t erase(const K& key) {
        std::lock_guard<std::mutex> guard(mMutex);
        return mMap.erase(key);
    }

    /** Erases the entry only while it holds that value. */
    template <typename Value>
    size_t eraseIfEqual(const K& key, const Value& value) {
        std::lock_guard<std::mutex> guard(mMutex);
        auto it = mMap.find(key);
        if (it == mMap.end() || !(it->second == value)) return 0;
        mMap.erase(it);
        return 1;
    }

    std::unique_lock<std::mutex> lock() { return std::unique_lock<std::mutex>(mMutex); }
    iterator begin() { return mMap.begin(); }
    iterator end() { return mMap.end(); }
    const_iterator begin() const { return mMap.begin(); }
    const_iterator end() const { return mMap.end(); }
    void setLocked(const K& key, const V& value) { mMap[key] = value; }
    const_iterator findLocked(const K& key) const { return mMap.find(key); }
    void eraseLocked(const K& key) { mMap.erase(key); }

  private:
    mutable std::mutex mMutex;
    std::map<K, V> mMap;
};

}  // namespace hardware
}  // namespace android
