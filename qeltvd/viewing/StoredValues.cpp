#include "StoredValues.h"

#include <algorithm>
#include <utility>

#include "Stored.h"

namespace qeltvd {

StoredValues::StoredValues(Settings& settings, std::string prefix, std::vector<Range> ranges)
        : mSettings(settings), mPrefix(std::move(prefix)) {
    for (const Range& range : ranges) {
        mValues.push_back(
                {range, static_cast<int32_t>(mSettings.number(key(range.id), range.first))});
    }
}

size_t StoredValues::indexOf(int32_t id) const {
    const auto found = std::find_if(mValues.begin(), mValues.end(),
                                    [&](const Value& value) { return value.range.id == id; });
    return static_cast<size_t>(found - mValues.begin());
}

Code StoredValues::get(int32_t id, uint32_t* value) const {
    const size_t index = indexOf(id);
    if (index == mValues.size()) return kNotFound;
    *value = static_cast<uint32_t>(mValues[index].current);
    return kOk;
}

Code StoredValues::set(int32_t id, int32_t value, const std::function<void()>& changed) {
    const size_t index = indexOf(id);
    if (index == mValues.size()) return kNotFound;
    Value& known = mValues[index];
    if (value < 0 || value > known.range.maximum) return kBadValue;
    if (known.current == value) return kOk;
    return stored([&] {
        mSettings.set(key(id), value);
        known.current = value;
        changed();
        return kOk;
    });
}

}  // namespace qeltvd
