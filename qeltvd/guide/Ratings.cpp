#define LOG_TAG "qeltvd"

#include "Ratings.h"

#include <algorithm>
#include <cstring>

#include "Code.h"
#include "Guarded.h"
#include "Stored.h"
#include "Text.h"
#include "layouts/config.h"

namespace qeltvd {

namespace {

constexpr char kUsTvSetting[] = "rating.us_tv";
constexpr char kTableSetting[] = "rating.open_vchip_table";
constexpr char kVchipSetting[] = "rating.open_vchip";
constexpr char kAgeItem[] = "parental.age";
constexpr char kLockItem[] = "parental.rating_lock";
constexpr char kRegionItem[] = "channels.region";

struct Known {
    const char* name;
    uint8_t maximum;
};

// In the order of Ratings::Setting.
constexpr Known kKnown[] = {
        {"rating.us_movie", QELTV_US_MOVIE_X},
        {"rating.canada_english", QELTV_CANADA_ENGLISH_18},
        {"rating.canada_french", QELTV_CANADA_FRENCH_18},
        {"rating.block_unrated", 1},
        {"rating.isdb_content", QELTV_ISDB_CONTENT_MASK},
        {"rating.isdb_age", QELTV_AGE_MAXIMUM},
        {kAgeItem, QELTV_AGE_MAXIMUM},
        {kLockItem, 1},
};

const Known& known(Ratings::Setting setting) {
    return kKnown[static_cast<size_t>(setting)];
}

/** Whether the setting is a configuration item. */
bool isItem(Ratings::Setting setting) {
    return setting == Ratings::Setting::kDvbAge || setting == Ratings::Setting::kEnable;
}

constexpr const char* kUsTvLabels[] = {"TV-Y", "TV-Y7", "TV-G", "TV-PG", "TV-14", "TV-MA"};
constexpr const char* kMovieLabels[] = {"", "G", "PG", "PG-13", "R", "NC-17", "X"};
constexpr const char* kEnglishLabels[] = {"E", "C", "C8+", "G", "PG", "14+", "18+"};
constexpr const char* kFrenchLabels[] = {"E", "G", "8 ans +", "13 ans +", "16 ans +", "18 ans +"};
constexpr char kContentLetters[] = {'D', 'L', 'S', 'V'};
constexpr const char* kContentWords[] = {"suggestive dialogue", "coarse language",
                                         "sexual situations", "violence"};

/** Each with its own version, dimensions and levels; received when storing is switched on. */
constexpr QELTV_OPEN_VCHIP_TABLE_T kTable = {
        QELTV_OPEN_VCHIP_REGION,
        1,
        QELTV_OPEN_VCHIP_DIMENSIONS,
        0,
        "Reference region",
        {{QELTV_OPEN_VCHIP_LEVELS, 1, "Age"}, {4, 1, "Violence"}, {4, 0, "Language"}},
};

/** As much of a region's table as a client's record holds. */
QELTV_OPEN_VCHIP_TABLE_T tableOf(const stream::RatingRegion& region, uint8_t version) {
    QELTV_OPEN_VCHIP_TABLE_T table{};
    table.region = region.region;
    table.version = version;
    copyText(table.name, cut(region.name, sizeof(table.name) - 1));
    for (const auto& dimension : region.dimensions) {
        if (table.dimensions == QELTV_OPEN_VCHIP_DIMENSIONS) break;
        QELTV_OPEN_VCHIP_DIMENSION_T& record = table.dimension[table.dimensions++];
        record.levels = static_cast<uint8_t>(
                std::min<size_t>(dimension.values.size(), QELTV_OPEN_VCHIP_LEVELS));
        record.graduated = dimension.graduated ? 1 : 0;
        copyText(record.name, cut(dimension.name, sizeof(record.name) - 1));
    }
    return table;
}

uint8_t usTvLevel(const Rating& rating) {
    if (rating.children) return rating.age >= 7 ? QELTV_US_TV_Y7 : QELTV_US_TV_Y;
    if (rating.age >= 17) return QELTV_US_TV_MA;
    if (rating.age >= 13) return QELTV_US_TV_14;
    return rating.age >= 7 ? QELTV_US_TV_PG : QELTV_US_TV_G;
}

uint8_t movieLevel(uint8_t age) {
    if (age >= 18) return QELTV_US_MOVIE_NC_17;
    if (age >= 16) return QELTV_US_MOVIE_R;
    if (age >= 13) return QELTV_US_MOVIE_PG_13;
    return age >= 7 ? QELTV_US_MOVIE_PG : QELTV_US_MOVIE_G;
}

uint8_t englishLevel(const Rating& rating) {
    if (rating.children) return rating.age >= 8 ? QELTV_CANADA_ENGLISH_C8 : QELTV_CANADA_ENGLISH_C;
    if (rating.age >= 18) return QELTV_CANADA_ENGLISH_18;
    if (rating.age >= 14) return QELTV_CANADA_ENGLISH_14;
    return rating.age >= 8 ? QELTV_CANADA_ENGLISH_PG : QELTV_CANADA_ENGLISH_G;
}

uint8_t frenchLevel(uint8_t age) {
    if (age >= 18) return QELTV_CANADA_FRENCH_18;
    if (age >= 16) return QELTV_CANADA_FRENCH_16;
    if (age >= 13) return QELTV_CANADA_FRENCH_13;
    return age >= 8 ? QELTV_CANADA_FRENCH_8 : QELTV_CANADA_FRENCH_G;
}

/** Flag of a content bit of a television rating; none if the rating does not have it. */
int contentFlag(uint8_t level, unsigned bit) {
    constexpr int kFlags[][4] = {
            {QELTV_US_TV_PG_D, QELTV_US_TV_PG_L, QELTV_US_TV_PG_S, QELTV_US_TV_PG_V},
            {QELTV_US_TV_14_D, QELTV_US_TV_14_L, QELTV_US_TV_14_S, QELTV_US_TV_14_V},
            {-1, QELTV_US_TV_MA_L, QELTV_US_TV_MA_S, QELTV_US_TV_MA_V}};
    if (level == QELTV_US_TV_Y7) return bit == 3 ? QELTV_US_TV_Y7_FV : -1;
    return level >= QELTV_US_TV_PG ? kFlags[level - QELTV_US_TV_PG][bit] : -1;
}

bool usTvBlocks(const Ratings::UsTv& flags, const Rating& rating) {
    const uint8_t level = usTvLevel(rating);
    if (flags[level] != 0) return true;
    if (flags[QELTV_US_TV_UPWARDS] != 0) {
        const uint8_t lowest = rating.children ? QELTV_US_TV_Y : QELTV_US_TV_G;
        for (uint8_t below = lowest; below < level; ++below) {
            if (flags[below] != 0) return true;
        }
    }
    for (unsigned bit = 0; bit < 4; ++bit) {
        const int flag = contentFlag(level, bit);
        if ((rating.content >> bit & 1) != 0 && flag >= 0 &&
            flags[static_cast<size_t>(flag)] != 0) {
            return true;
        }
    }
    return false;
}

void append(std::string* list, const std::string& item, const char* separator) {
    if (!list->empty()) *list += separator;
    *list += item;
}

std::string contentText(uint8_t content) {
    std::string text;
    for (unsigned bit = 0; bit < 4; ++bit) {
        if ((content >> bit & 1) != 0) append(&text, kContentWords[bit], ", ");
    }
    return text;
}

std::string letters(uint8_t level, uint8_t content) {
    if (level == QELTV_US_TV_Y7) return (content & 8) != 0 ? "-FV" : "";
    std::string text;
    for (unsigned bit = 0; bit < 4; ++bit) {
        if ((content >> bit & 1) != 0 && contentFlag(level, bit) >= 0) text += kContentLetters[bit];
    }
    return text.empty() ? text : "-" + text;
}

template <size_t N>
std::string label(const char* const (&labels)[N], size_t index) {
    return index < N ? labels[index] : "?";
}

/** Label of a US rating: dimensions 0 to 6 television, 7 films. */
std::string usLabel(const std::vector<uint8_t>& values, std::string* description) {
    uint8_t level = QELTV_US_TV_G, content = 0;
    bool television = false;
    std::string movie;
    for (size_t i = 0; i + 1 < values.size(); i += 2) {
        const uint8_t dimension = values[i], value = values[i + 1];
        if (value == 0) continue;
        switch (dimension) {
            case 0:
                // 1 is "none".
                if (value >= 2 && value <= 5) {
                    level = static_cast<uint8_t>(QELTV_US_TV_G + value - 2);
                    television = true;
                }
                break;
            case 1:
            case 2:
            case 3:
            case 4:
                content |= static_cast<uint8_t>(1 << (dimension - 1));
                break;
            case 5:
                level = value >= 2 ? QELTV_US_TV_Y7 : QELTV_US_TV_Y;
                television = true;
                break;
            case 6:
                content |= 8;
                break;
            case 7:
                // 1 is "not applicable", 8 "not rated".
                movie = value == 8 ? "NR" : value >= 2 ? label(kMovieLabels, value - 1u) : "";
                break;
            default:
                break;
        }
    }
    *description = contentText(content);
    std::string text = movie;
    if (television) append(&text, kUsTvLabels[level] + letters(level, content), " ");
    return text;
}

std::string canadaLabel(const std::vector<uint8_t>& values) {
    std::string text;
    for (size_t i = 0; i + 1 < values.size(); i += 2) {
        if (values[i] == 0) append(&text, label(kEnglishLabels, values[i + 1]), " ");
        if (values[i] == 1) append(&text, label(kFrenchLabels, values[i + 1]), " ");
    }
    return text;
}

// What the clients' fields hold.
constexpr size_t kLabelLimit = 64;
constexpr size_t kSystemLimit = 32;
constexpr size_t kDescriptionLimit = 255;

RatingText bounded(const RatingText& text) {
    return {cut(text.label, kLabelLimit), cut(text.system, kSystemLimit),
            cut(text.description, kDescriptionLimit)};
}

}  // namespace

Ratings::Ratings(Store& store, Notifier& notifier, ConfigItems& config, Broadcast& broadcast)
        : mSettings(store), mNotifier(notifier), mConfig(config) {
    config.addListener([this](const ConfigItems::Item& item, Audience) {
        if (item.name == kAgeItem || item.name == kLockItem || item.name == kRegionItem) changed();
    });
    broadcast.addListener([this, &broadcast](uint32_t changes) {
        if ((changes & stream::kRatingsChanged) != 0) receive(broadcast);
    });
}

void Ratings::addListener(std::function<void()> listener) {
    mListeners.push_back(std::move(listener));
}

void Ratings::changed() const {
    callAll("following the ratings", mListeners);
}

uint8_t Ratings::get(Setting setting) const {
    const char* name = known(setting).name;
    if (isItem(setting)) return static_cast<uint8_t>(mConfig.value(name));
    return static_cast<uint8_t>(mSettings.number(name, 0));
}

Code Ratings::set(Setting setting, uint8_t value) {
    const char* const name = known(setting).name;
    const uint8_t maximum = known(setting).maximum;
    const bool age = setting == Setting::kIsdbAge || setting == Setting::kDvbAge;
    if (value > maximum || (age && value > 0 && value < QELTV_AGE_MINIMUM)) {
        return kBadValue;
    }
    if (isItem(setting)) {
        return stored([&] { return mConfig.set(QELTV_CONFIG_PARENTAL, name, value); });
    }
    const Code code = stored([&] {
        mSettings.set(name, int64_t{value});
        return kOk;
    });
    if (code == kOk) changed();
    return code;
}

Ratings::UsTv Ratings::usTv() const {
    UsTv flags{};
    const Store::Blob stored = mSettings.bytes(kUsTvSetting);
    std::copy_n(stored.begin(), std::min(stored.size(), flags.size()), flags.begin());
    return flags;
}

Code Ratings::setUsTv(const UsTv& flags) {
    const Code code = stored([&] {
        mSettings.set(kUsTvSetting, Store::Blob(flags.begin(), flags.end()));
        return kOk;
    });
    if (code == kOk) changed();
    return code;
}

uint8_t Ratings::childGroup() const {
    const UsTv flags = usTv();
    if (flags[QELTV_US_TV_Y] != 0 &&
        (flags[QELTV_US_TV_Y7] != 0 || flags[QELTV_US_TV_UPWARDS] != 0))
        return QELTV_CHILD_ALL;
    return flags[QELTV_US_TV_Y7] != 0 ? QELTV_CHILD_Y7 : QELTV_CHILD_NONE;
}

QELTV_OPEN_VCHIP_TABLE_T Ratings::table() const {
    const Store::Blob stored = mSettings.bytes(kTableSetting);
    QELTV_OPEN_VCHIP_TABLE_T table = kTable;
    if (stored.size() == sizeof(table)) memcpy(&table, stored.data(), sizeof(table));
    return table;
}

Code Ratings::storeTable() {
    return stored([&] {
        if (mReceived) {
            const auto* bytes = reinterpret_cast<const uint8_t*>(&*mReceived);
            mSettings.set(kTableSetting, Store::Blob(bytes, bytes + sizeof(*mReceived)));
        }
        mSettings.set(kVchipSetting,
                      Store::Blob(QELTV_OPEN_VCHIP_DIMENSIONS * QELTV_OPEN_VCHIP_LEVELS));
        return kOk;
    });
}

void Ratings::notifyTable(int32_t type) const {
    const QELTV_OPEN_VCHIP_TABLE_T table = this->table();
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_rating_op_vchip_callback_fct, type,
                    {table.region, table.version, table.dimensions});
}

void Ratings::receive(const Broadcast& broadcast) {
    std::lock_guard<std::mutex> guard(mLock);
    const QELTV_OPEN_VCHIP_TABLE_T before = table();
    for (const auto& signals : broadcast.received()) {
        for (const stream::RatingRegion& region : signals->ratings()) {
            if (region.region != QELTV_OPEN_VCHIP_REGION) continue;
            QELTV_OPEN_VCHIP_TABLE_T table = tableOf(region, before.version);
            if (memcmp(&table, &before, sizeof(table)) == 0) return;
            // The settings of another table do not fit this one.
            constexpr uint8_t kVersions = 32;
            table.version = static_cast<uint8_t>((before.version + 1) % kVersions);
            mReceived = table;
            if (!vchipAvailable()) return;
            if (storeTable() != kOk) return;
            notifyTable(QELTV_OPEN_VCHIP_RECEIVED);
            return;
        }
    }
}

Code Ratings::store(bool on) {
    std::lock_guard<std::mutex> guard(mLock);
    const bool there = vchipAvailable();
    if (on == there) return kOk;
    if (on) {
        const Code code = storeTable();
        if (code == kOk) notifyTable(QELTV_OPEN_VCHIP_RECEIVED);
        return code;
    }
    const QELTV_OPEN_VCHIP_TABLE_T table = this->table();
    const Code code = stored([&] {
        mSettings.remove(kVchipSetting);
        mSettings.remove(kTableSetting);
        return kOk;
    });
    if (code == kOk) {
        mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_rating_op_vchip_callback_fct,
                        QELTV_OPEN_VCHIP_REMOVED, {table.region, table.version, table.dimensions});
    }
    return code;
}

bool Ratings::vchipAvailable() const {
    return mSettings.bytes(kVchipSetting).size() ==
           QELTV_OPEN_VCHIP_DIMENSIONS * QELTV_OPEN_VCHIP_LEVELS;
}

QELTV_OPEN_VCHIP_TABLE_T Ratings::vchipTable() const {
    return vchipAvailable() ? table() : QELTV_OPEN_VCHIP_TABLE_T{};
}

Result<Ratings::VchipDimension> Ratings::vchip(uint8_t region, uint8_t dimension) const {
    const Store::Blob all = mSettings.bytes(kVchipSetting);
    const QELTV_OPEN_VCHIP_TABLE_T table = this->table();
    if (all.size() != QELTV_OPEN_VCHIP_DIMENSIONS * QELTV_OPEN_VCHIP_LEVELS ||
        region != table.region || dimension >= table.dimensions) {
        return kNotFound;
    }
    VchipDimension found{table.dimension[dimension].levels, {}};
    std::copy_n(all.begin() + dimension * QELTV_OPEN_VCHIP_LEVELS, QELTV_OPEN_VCHIP_LEVELS,
                found.blocked.begin());
    return found;
}

Code Ratings::setVchip(uint8_t region, uint8_t dimension, const Levels& blocked) {
    std::lock_guard<std::mutex> guard(mLock);
    Store::Blob all = mSettings.bytes(kVchipSetting);
    const QELTV_OPEN_VCHIP_TABLE_T table = this->table();
    if (all.size() != QELTV_OPEN_VCHIP_DIMENSIONS * QELTV_OPEN_VCHIP_LEVELS ||
        region != table.region || dimension >= table.dimensions) {
        return kNotFound;
    }
    for (size_t level = 0; level < blocked.size(); ++level) {
        if (blocked[level] > 1 ||
            (blocked[level] != 0 && level >= table.dimension[dimension].levels)) {
            return kBadValue;
        }
    }
    std::copy_n(blocked.begin(), QELTV_OPEN_VCHIP_LEVELS,
                all.begin() + dimension * QELTV_OPEN_VCHIP_LEVELS);
    return stored([&] {
        mSettings.set(kVchipSetting, all);
        return kOk;
    });
}

RatingSystem Ratings::system() const {
    const std::string region = mConfig.text(kRegionItem);
    if (region.compare(0, 7, "atsc/ca") == 0) return RatingSystem::kCanada;
    if (region.compare(0, 4, "atsc") == 0) return RatingSystem::kUnitedStates;
    return region.compare(0, 4, "isdb") == 0 ? RatingSystem::kIsdb : RatingSystem::kDvb;
}

bool Ratings::blocks(const Rating& rating) const {
    if (get(Setting::kEnable) == 0) return false;
    const RatingSystem by = rating.system.value_or(system());
    if (!rating.known) {
        return get(Setting::kBlockUnrated) != 0 ||
               (by == RatingSystem::kUnitedStates && usTv()[QELTV_US_TV_NONE] != 0);
    }
    const auto atLimit = [](uint8_t level, uint8_t limit) { return limit != 0 && level >= limit; };
    switch (by) {
        case RatingSystem::kDvb:
            return atLimit(rating.age, get(Setting::kDvbAge));
        case RatingSystem::kUnitedStates:
            return rating.film ? atLimit(movieLevel(rating.age), get(Setting::kUsMovie))
                               : usTvBlocks(usTv(), rating);
        case RatingSystem::kCanada:
            return atLimit(englishLevel(rating), get(Setting::kCanadaEnglish)) ||
                   atLimit(frenchLevel(rating.age), get(Setting::kCanadaFrench));
        case RatingSystem::kIsdb:
            // Drugs stand where coarse language does.
            return atLimit(rating.age, get(Setting::kIsdbAge)) ||
                   (rating.content >> 1 & 1 & get(Setting::kIsdbContent)) != 0 ||
                   ((rating.content >> 3 & 1) << 1 & get(Setting::kIsdbContent)) != 0 ||
                   (rating.content & 4 & get(Setting::kIsdbContent)) != 0;
    }
    return false;
}

RatingText Ratings::text(const Rating& rating) const {
    if (!rating.known) return {"", "", "not rated"};
    const RatingSystem by = rating.system.value_or(system());
    RatingText text;
    text.description = contentText(rating.content);
    switch (by) {
        case RatingSystem::kUnitedStates: {
            text.system = rating.film ? "US films" : "US television";
            const uint8_t level = usTvLevel(rating);
            text.label = rating.film ? kMovieLabels[movieLevel(rating.age)]
                                     : kUsTvLabels[level] + letters(level, rating.content);
            break;
        }
        case RatingSystem::kCanada:
            text.system = "Canada";
            text.label = std::string(kEnglishLabels[englishLevel(rating)]) + " " +
                         kFrenchLabels[frenchLevel(rating.age)];
            break;
        case RatingSystem::kIsdb:
        case RatingSystem::kDvb:
            text.system = by == RatingSystem::kDvb ? "DVB age" : "ISDB age";
            text.label = rating.age == 0 ? "all" : std::to_string(rating.age) + "+";
            break;
    }
    if (text.description.empty()) {
        text.description =
                rating.age == 0 ? "for everybody" : "from " + std::to_string(rating.age) + " years";
    }
    return bounded(text);
}

RatingText Ratings::text(const std::vector<Atsc>& list) {
    RatingText text;
    for (const Atsc& rating : list) {
        std::string label, description;
        switch (rating.region) {
            case 1:
                append(&text.system, "US", ", ");
                label = usLabel(rating.values, &description);
                break;
            case 2:
                append(&text.system, "Canada", ", ");
                label = canadaLabel(rating.values);
                break;
            default:
                append(&text.system, "region " + std::to_string(rating.region), ", ");
                break;
        }
        // The table's name for it, if the rating itself says nothing known here.
        if (label.empty()) label = rating.name;
        if (!label.empty()) append(&text.label, label, ", ");
        if (description.empty()) description = rating.name;
        if (!description.empty()) append(&text.description, description, "; ");
    }
    return bounded(text);
}

}  // namespace qeltvd
