#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Store.h"

namespace qeltvd {

/**
 * The named settings of the television, kept in the store. Each belongs to a group, which
 * callers name as the selector; selector 0 stands for every group.
 */
class ConfigItems {
  public:
    enum Group : uint32_t {
        kAnyGroup = 0,
        kPicture = 1,
        kSound = 2,
        kChannels = 3,
        kParental = 4,
        kSystem = 5,
        kNetwork = 6,
    };

    struct Item {
        std::string name;
        uint32_t group;
        bool isText;
        int32_t minimum;
        int32_t maximum;
        int32_t value;
        std::string text;
        bool visible;
        bool enabled;
    };

    /** The text item that lists the names of all items, separated by blanks. Read only. */
    static constexpr char kNames[] = "system.items";

    /** Makes the table and the items that are not there yet. @throws StoreError */
    explicit ConfigItems(Store& store);

    /** The item, if the selector covers it. */
    std::optional<Item> find(uint32_t selector, const std::string& name) const;
    /** Names of all items, by group and name. */
    std::vector<std::string> names() const;

    /** Each gives a code: kOk, or why not. */
    int32_t set(uint32_t selector, const std::string& name, int32_t value);
    int32_t setText(const std::string& name, const std::string& value);
    /** Sets the items of a group back; `changed` gets the names of those that were different. */
    int32_t reset(uint32_t selector, std::vector<std::string>* changed);

    /** The integer value of an item that exists. */
    int32_t value(const std::string& name) const;
    std::string text(const std::string& name) const;

  private:
    Store& mStore;
};

}  // namespace qeltvd
