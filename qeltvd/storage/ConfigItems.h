#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Audience.h"
#include "Code.h"
#include "Store.h"

namespace qeltvd {

/**
 * The named settings of the television, kept in the store. Each belongs to a group, which
 * callers name as the selector (QELTV_CONFIG_PICTURE and the others of layouts/config.h).
 */
class ConfigItems {
  public:
    struct Item {
        std::string name;
        /** QELTV_CONFIG_PICTURE to QELTV_CONFIG_NETWORK. */
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

    /**
     * Each returns a code: kOk, or why not. The audience is passed to the listeners. A text of
     * more than QELTV_CONFIG_TEXT_MAXIMUM bytes, or one that its check refuses, is a bad value.
     */
    Code set(uint32_t selector, const std::string& name, int32_t value,
             Audience audience = Audience::kEveryone);
    Code setText(const std::string& name, const std::string& value,
                 Audience audience = Audience::kEveryone);
    /** Sets the items of a group back. */
    Code reset(uint32_t selector);

    using Check = std::function<bool(const std::string& text)>;
    /** Refuses the texts of an item for which the check returns false. Before serving only. */
    void addCheck(const std::string& name, Check check) { mChecks[name] = std::move(check); }

    using Listener = std::function<void(const Item& item, Audience audience)>;
    /** Called after every change of a value, without a lock, on the thread that made it. */
    void addListener(Listener listener);

    /** The integer value of an item that exists. */
    int32_t value(const std::string& name) const;
    std::string text(const std::string& name) const;

  private:
    void changed(const Item& item, Audience audience) const;

    Store& mStore;
    std::map<std::string, Check> mChecks;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::vector<Listener> mListeners;
};

}  // namespace qeltvd
