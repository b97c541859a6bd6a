#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Code.h"
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

    /**
     * Each returns a code: kOk, or why not. No application is notified of a quiet change. A text of
     * more than QELTV_CONFIG_TEXT_MAXIMUM bytes, or one that its check refuses, is a bad value.
     */
    Code set(uint32_t selector, const std::string& name, int32_t value, bool quiet = false);
    Code setText(const std::string& name, const std::string& value, bool quiet = false);
    /** Sets the items of a group back. */
    Code reset(uint32_t selector);

    using Check = std::function<bool(const std::string& text)>;
    /** Refuses the texts of an item for which the check returns false. Before serving only. */
    void addCheck(const std::string& name, Check check) { mChecks[name] = std::move(check); }

    using Listener = std::function<void(const Item& item, bool quiet)>;
    /** Called after every change of a value, without a lock, on the thread that made it. */
    void addListener(Listener listener);

    /** The integer value of an item that exists. */
    int32_t value(const std::string& name) const;
    std::string text(const std::string& name) const;

  private:
    void changed(const Item& item, bool quiet) const;

    Store& mStore;
    std::map<std::string, Check> mChecks;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::vector<Listener> mListeners;
};

}  // namespace qeltvd
