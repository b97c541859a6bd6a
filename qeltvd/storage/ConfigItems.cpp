#define LOG_TAG "qeltvd"

#include "ConfigItems.h"

#include "Code.h"
#include "Guarded.h"
#include "layouts/config.h"

namespace qeltvd {
namespace {

struct Default {
    const char* name;
    uint32_t group;
    int32_t minimum;
    int32_t maximum;
    int32_t value;
    /** Not null: a text item. */
    const char* text;
    bool visible;
    bool enabled;
};

constexpr Default integer(const char* name, uint32_t group, int32_t minimum, int32_t maximum,
                          int32_t value) {
    return {name, group, minimum, maximum, value, nullptr, true, true};
}

constexpr Default text(const char* name, uint32_t group, const char* value) {
    return {name, group, 0, 0, 0, value, true, true};
}

constexpr Default hidden(Default item) {
    item.visible = false;
    return item;
}

constexpr Default disabled(Default item) {
    item.enabled = false;
    return item;
}

// A set for Europe as it leaves the factory.
constexpr Default kDefaults[] = {
        integer("picture.backlight", QELTV_CONFIG_PICTURE, 0, 100, 80),
        integer("picture.brightness", QELTV_CONFIG_PICTURE, 0, 100, 50),
        integer("picture.contrast", QELTV_CONFIG_PICTURE, 0, 100, 85),
        integer("picture.saturation", QELTV_CONFIG_PICTURE, 0, 100, 50),
        integer("picture.hue", QELTV_CONFIG_PICTURE, -50, 50, 0),
        integer("picture.sharpness", QELTV_CONFIG_PICTURE, 0, 20, 10),
        integer("picture.color_temperature", QELTV_CONFIG_PICTURE, 0, 3, 1),
        integer("picture.noise_reduction", QELTV_CONFIG_PICTURE, 0, 4, 4),
        integer("picture.dynamic_contrast", QELTV_CONFIG_PICTURE, 0, 3, 1),
        disabled(integer("picture.gamma", QELTV_CONFIG_PICTURE, -4, 4, 0)),
        integer("sound.balance", QELTV_CONFIG_SOUND, -50, 50, 0),
        integer("sound.bass", QELTV_CONFIG_SOUND, -50, 50, 0),
        integer("sound.treble", QELTV_CONFIG_SOUND, -50, 50, 0),
        integer("sound.surround", QELTV_CONFIG_SOUND, 0, 1, 0),
        integer("sound.auto_volume", QELTV_CONFIG_SOUND, 0, 1, 1),
        integer("sound.audio_delay_ms", QELTV_CONFIG_SOUND, 0, 250, 0),
        integer("sound.spdif_mode", QELTV_CONFIG_SOUND, 0, 3, 0),
        text("sound.audio_language", QELTV_CONFIG_SOUND, "eng"),
        text("sound.subtitle_language", QELTV_CONFIG_SOUND, "eng"),
        text("channels.region", QELTV_CONFIG_CHANNELS, "dvb-t/de-Berlin dvb-s/Astra-1N-19.2E"),
        text("channels.country", QELTV_CONFIG_CHANNELS, "DEU"),
        integer("channels.tuner_mode", QELTV_CONFIG_CHANNELS, 0, 2, 0),
        integer("channels.auto_update", QELTV_CONFIG_CHANNELS, 0, 1, 1),
        integer("channels.lcn", QELTV_CONFIG_CHANNELS, 0, 1, 1),
        // Three letters; the first language of each text unless set.
        text("channels.guide_language", QELTV_CONFIG_CHANNELS, ""),
        integer("parental.rating_lock", QELTV_CONFIG_PARENTAL, 0, 1, 0),
        integer("parental.age", QELTV_CONFIG_PARENTAL, 0, 18, 0),
        integer("parental.input_lock", QELTV_CONFIG_PARENTAL, 0, 1, 0),
        text("system.menu_language", QELTV_CONFIG_SYSTEM, "eng"),
        text("system.model", QELTV_CONFIG_SYSTEM, "Reference television"),
        hidden(text("system.serial", QELTV_CONFIG_SYSTEM, "QT-000001")),
        text("system.time_zone", QELTV_CONFIG_SYSTEM, "Europe/Berlin"),
        integer("system.power_on_source", QELTV_CONFIG_SYSTEM, 0, 8, 0),
        integer("system.standby_minutes", QELTV_CONFIG_SYSTEM, 0, 480, 240),
        integer("system.store_mode", QELTV_CONFIG_SYSTEM, 0, 1, 0),
        hidden(integer("system.factory_mode", QELTV_CONFIG_SYSTEM, 0, 1, 0)),
        text("network.name", QELTV_CONFIG_NETWORK, "television"),
        integer("network.wake_on_lan", QELTV_CONFIG_NETWORK, 0, 1, 0),
        integer("network.hbbtv", QELTV_CONFIG_NETWORK, 0, 1, 1),
};

/** A condition for items whose text an older television has stored without a limit. */
const std::string kTooLong =
        "length(CAST(text AS BLOB)) > " + std::to_string(QELTV_CONFIG_TEXT_MAXIMUM);

const std::string kColumns =
        "SELECT name, grp, is_text, minimum, maximum, value,"
        " CASE WHEN " +
        kTooLong + " THEN default_text ELSE text END, visible, enabled FROM config ";

ConfigItems::Item read(const Store::Statement& row) {
    return {row.text(0),
            static_cast<uint32_t>(row.integer(1)),
            row.integer(2) != 0,
            static_cast<int32_t>(row.integer(3)),
            static_cast<int32_t>(row.integer(4)),
            static_cast<int32_t>(row.integer(5)),
            row.text(6),
            row.integer(7) != 0,
            row.integer(8) != 0};
}

}  // namespace

ConfigItems::ConfigItems(Store& store) : mStore(store) {
    mStore.execute(
            "CREATE TABLE IF NOT EXISTS config (name TEXT PRIMARY KEY, grp INTEGER NOT NULL,"
            " is_text INTEGER NOT NULL, minimum INTEGER NOT NULL, maximum INTEGER NOT NULL,"
            " value INTEGER NOT NULL, text TEXT NOT NULL, default_value INTEGER NOT NULL,"
            " default_text TEXT NOT NULL, visible INTEGER NOT NULL, enabled INTEGER NOT NULL)");
    Store::Transaction transaction(mStore);
    for (const Default& item : kDefaults) {
        const std::string value = item.text != nullptr ? item.text : "";
        Store::Statement(mStore,
                         "INSERT OR IGNORE INTO config VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
                .bind(item.name)
                .bind(int64_t{item.group})
                .bind(int64_t{item.text != nullptr})
                .bind(int64_t{item.minimum})
                .bind(int64_t{item.maximum})
                .bind(int64_t{item.value})
                .bind(value)
                .bind(int64_t{item.value})
                .bind(value)
                .bind(int64_t{item.visible})
                .bind(int64_t{item.enabled})
                .run();
    }
    transaction.commit();
    Store::Statement row(mStore, ("SELECT name FROM config WHERE " + kTooLong).c_str());
    while (row.step()) {
        ALOGW("%s: the stored text is longer than %d bytes and reads as the default; set it anew",
              row.text(0).c_str(), QELTV_CONFIG_TEXT_MAXIMUM);
    }
}

std::optional<ConfigItems::Item> ConfigItems::find(uint32_t selector,
                                                   const std::string& name) const {
    if (name == kNames) {
        if (selector != QELTV_CONFIG_ANY_GROUP && selector != QELTV_CONFIG_SYSTEM)
            return std::nullopt;
        std::string all;
        for (const std::string& each : names()) all += (all.empty() ? "" : " ") + each;
        return Item{kNames, QELTV_CONFIG_SYSTEM, true, 0, 0, 0, all, false, false};
    }
    Store::Statement row(mStore, (kColumns + "WHERE name = ?").c_str());
    if (!row.bind(name).step()) return std::nullopt;
    Item item = read(row);
    if (selector != QELTV_CONFIG_ANY_GROUP && selector != item.group) return std::nullopt;
    return item;
}

std::vector<std::string> ConfigItems::names() const {
    std::vector<std::string> names;
    Store::Statement row(mStore, "SELECT name FROM config ORDER BY grp, name");
    while (row.step()) names.push_back(row.text(0));
    return names;
}

Code ConfigItems::set(uint32_t selector, const std::string& name, int32_t value,
                      Audience audience) {
    auto item = find(selector, name);
    if (!item || item->isText) return kNotFound;
    if (!item->enabled) return kRefused;
    if (value < item->minimum || value > item->maximum) return kBadValue;
    if (value == item->value) return kOk;
    Store::Statement(mStore, "UPDATE config SET value = ? WHERE name = ?")
            .bind(int64_t{value})
            .bind(name)
            .run();
    item->value = value;
    changed(*item, audience);
    return kOk;
}

Code ConfigItems::setText(const std::string& name, const std::string& value, Audience audience) {
    auto item = find(QELTV_CONFIG_ANY_GROUP, name);
    if (!item || !item->isText) return kNotFound;
    if (!item->enabled) return kRefused;
    if (value.size() > QELTV_CONFIG_TEXT_MAXIMUM) return kBadValue;
    const auto check = mChecks.find(name);
    if (check != mChecks.end() && !check->second(value)) return kBadValue;
    if (value == item->text) return kOk;
    Store::Statement(mStore, "UPDATE config SET text = ? WHERE name = ?")
            .bind(value)
            .bind(name)
            .run();
    item->text = value;
    changed(*item, audience);
    return kOk;
}

Code ConfigItems::reset(uint32_t selector) {
    if (selector > QELTV_CONFIG_NETWORK) return kNotFound;
    std::vector<Item> items;
    {
        Store::Transaction transaction(mStore);
        std::vector<std::string> names;
        {
            Store::Statement row(mStore,
                                 "SELECT name FROM config WHERE (? = 0 OR grp = ?)"
                                 " AND (value <> default_value OR text <> default_text)"
                                 " ORDER BY grp, name");
            row.bind(int64_t{selector}).bind(int64_t{selector});
            while (row.step()) names.push_back(row.text(0));
        }
        Store::Statement(mStore,
                         "UPDATE config SET value = default_value, text = default_text"
                         " WHERE ? = 0 OR grp = ?")
                .bind(int64_t{selector})
                .bind(int64_t{selector})
                .run();
        for (const std::string& name : names) {
            if (const auto item = find(QELTV_CONFIG_ANY_GROUP, name)) items.push_back(*item);
        }
        transaction.commit();
    }
    for (const Item& item : items) changed(item, Audience::kEveryone);
    return kOk;
}

void ConfigItems::addListener(Listener listener) {
    std::lock_guard<std::mutex> guard(mLock);
    mListeners.push_back(std::move(listener));
}

void ConfigItems::changed(const Item& item, Audience audience) const {
    std::vector<Listener> listeners;
    {
        std::lock_guard<std::mutex> guard(mLock);
        listeners = mListeners;
    }
    callAll("following a configuration item", listeners, item, audience);
}

int32_t ConfigItems::value(const std::string& name) const {
    const auto item = find(QELTV_CONFIG_ANY_GROUP, name);
    return item ? item->value : 0;
}

std::string ConfigItems::text(const std::string& name) const {
    const auto item = find(QELTV_CONFIG_ANY_GROUP, name);
    return item ? item->text : "";
}

}  // namespace qeltvd
