#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "Rules.h"
#include "Service.h"

namespace conformance {

/** Whether a method only reads, by its name. */
bool onlyReads(const transactions::Method& method);

/** Whether a method takes a record whose size is known. */
bool takesRecords(const transactions::Method& method);

/**
 * Arguments that a service might accept. Values that it has answered with come back as arguments,
 * because ids and handles are its own.
 */
class Plausible {
  public:
    explicit Plausible(uint32_t seed, std::string item) : mRandom(seed), mItem(std::move(item)) {}

    Json next(const transactions::Method& method, const std::vector<const Rule*>& rules);
    /** Keeps the values of a reply. */
    void learn(const transactions::Method& method, const Json& results);

  private:
    template <class T>
    const T& of(const std::vector<T>& all) {
        return all[mRandom() % all.size()];
    }
    Json number(const transactions::Value& parameter);
    Json value(const transactions::Method& method, const transactions::Value& parameter,
               bool bound);
    void keep(const std::string& name, const transactions::Type& type, const Json& value);

    std::minstd_rand mRandom;
    std::string mItem;
    /** By what their names say, "" for all. */
    std::map<std::string, std::vector<int64_t>> mNumbers;
    std::vector<std::string> mTexts;
    /** Records by their size, as JSON has them. */
    std::map<size_t, std::vector<std::string>> mRecords;
};

/** Values at the edges of their types, always the same ones for a seed. */
class Hostile {
  public:
    explicit Hostile(uint32_t seed) : mRandom(seed) {}

    /** Truth values may be any byte, and texts any bytes. */
    Json next(const std::vector<transactions::Value>& parameters);
    uint32_t below(size_t limit) { return static_cast<uint32_t>(mRandom() % limit); }

  private:
    Json value(const transactions::Type& type, bool huge);
    Json number(transactions::Kind kind);
    std::string text();
    std::string bytes(size_t size);

    std::minstd_rand mRandom;
};

}  // namespace conformance
