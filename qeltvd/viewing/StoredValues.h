#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Code.h"
#include "Settings.h"

namespace qeltvd {

/** Numbers with a range that are kept, each under an id. Used under its owner's lock. */
class StoredValues {
  public:
    /** A value goes from 0 to its maximum. */
    struct Range {
        int32_t id;
        int32_t maximum;
        /** From the factory. */
        int32_t first;
    };

    /**
     * @param prefix begins the keys of the values in the settings
     * @throws StoreError
     */
    StoredValues(Settings& settings, std::string prefix, std::vector<Range> ranges);

    /** kNotFound for an unknown id. */
    [[nodiscard]] Code get(int32_t id, uint32_t* value) const;
    /** @param changed called after a value has been stored that differs from the one before */
    [[nodiscard]] Code set(int32_t id, int32_t value, const std::function<void()>& changed);

  private:
    struct Value {
        Range range;
        int32_t current;
    };
    std::string key(int32_t id) const { return mPrefix + std::to_string(id); }
    /** The number of values for an unknown id. */
    size_t indexOf(int32_t id) const;

    Settings& mSettings;
    const std::string mPrefix;
    std::vector<Value> mValues;
};

}  // namespace qeltvd
