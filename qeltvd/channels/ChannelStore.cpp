#define LOG_TAG "qeltvd"

#include "ChannelStore.h"

#include <log/log.h>

#include <charconv>
#include <optional>
#include <set>
#include <type_traits>

#include "ChannelIds.h"
#include "LogText.h"

namespace qeltvd {

namespace {

/** A place of a favourite list. */
struct FavouriteRow {
    uint32_t favouriteList = 0;
    uint32_t place = 0;
    uint16_t list = 0;
    uint32_t recordId = 0;
};

/** A single value, of the television or (NAME.LIST) of a list. */
struct ValueRow {
    std::string name = {};
    int64_t value = 0;
    std::string text = {};
};

/**
 * The table of a record type. columns() visits the name and the field of each column; the first
 * kKey of them are the key.
 */
template <class Record>
struct Table;

template <>
struct Table<Channel> {
    static constexpr char kName[] = "channels";
    static constexpr int kKey = 2;

    template <class Record, class Visit>
    static void columns(Record& r, Visit& visit) {
        visit("list", r.list);
        visit("record", r.recordId);
        visit("channel_id", r.channelId);
        visit("type", r.type);
        visit("flags", r.flags);
        visit("multiplex", r.multiplex);
        visit("original_network", r.originalNetworkId);
        visit("stream", r.streamId);
        visit("service", r.serviceId);
        visit("pmt_pid", r.pmtPid);
        visit("pcr_pid", r.pcrPid);
        visit("video_pid", r.videoPid);
        visit("audio_pid", r.audioPid);
        visit("name", r.name);
        visit("provider", r.provider);
        visit("language", r.language);
    }
};

template <>
struct Table<Multiplex> {
    static constexpr char kName[] = "multiplexes";
    static constexpr int kKey = 2;

    template <class Record, class Visit>
    static void columns(Record& r, Visit& visit) {
        visit("list", r.list);
        visit("record", r.recordId);
        visit("system", r.system);
        visit("modulation", r.modulation);
        visit("polarisation", r.polarisation);
        visit("code_rate", r.codeRate);
        visit("frequency", r.frequencyHz);
        visit("symbol_rate", r.symbolRate);
        visit("bandwidth", r.bandwidthHz);
        visit("satellite", r.satellite);
        visit("network_record", r.network);
        visit("original_network", r.originalNetworkId);
        visit("network", r.networkId);
        visit("stream", r.streamId);
        visit("rf_channel", r.rfChannel);
        visit("name", r.name);
    }
};

template <>
struct Table<Network> {
    static constexpr char kName[] = "networks";
    static constexpr int kKey = 2;

    template <class Record, class Visit>
    static void columns(Record& r, Visit& visit) {
        visit("list", r.list);
        visit("record", r.recordId);
        visit("network", r.networkId);
        visit("satellite", r.satellite);
        visit("name", r.name);
    }
};

template <>
struct Table<Satellite> {
    static constexpr char kName[] = "satellites";
    static constexpr int kKey = 1;

    template <class Record, class Visit>
    static void columns(Record& r, Visit& visit) {
        visit("record", r.recordId);
        visit("name", r.name);
        visit("position", r.position);
        visit("low_oscillator", r.lowOscillatorKHz);
        visit("high_oscillator", r.highOscillatorKHz);
        visit("switch_frequency", r.switchKHz);
        visit("switch_port", r.switchPort);
        visit("enabled", r.enabled);
    }
};

template <>
struct Table<BissKey> {
    static constexpr char kName[] = "biss_keys";
    static constexpr int kKey = 1;

    template <class Record, class Visit>
    static void columns(Record& r, Visit& visit) {
        visit("record", r.recordId);
        visit("frequency", r.frequencyKHz);
        visit("symbol_rate", r.symbolRate);
        visit("service", r.serviceId);
        visit("position", r.position);
        visit("polarisation", r.polarisation);
        visit("enabled", r.enabled);
        visit("key", r.key);
    }
};

template <>
struct Table<FavouriteRow> {
    static constexpr char kName[] = "favourites";
    static constexpr int kKey = 2;

    template <class Record, class Visit>
    static void columns(Record& r, Visit& visit) {
        visit("favourite_list", r.favouriteList);
        visit("place", r.place);
        visit("list", r.list);
        visit("record", r.recordId);
    }
};

template <>
struct Table<ValueRow> {
    static constexpr char kName[] = "channel_state";
    static constexpr int kKey = 1;

    template <class Record, class Visit>
    static void columns(Record& r, Visit& visit) {
        visit("name", r.name);
        visit("value", r.value);
        visit("text", r.text);
    }
};

/** Calls a function with the table of each record type. */
template <class Take>
void eachTable(const Take& take) {
    take(Table<Channel>(), Channel());
    take(Table<Multiplex>(), Multiplex());
    take(Table<Network>(), Network());
    take(Table<Satellite>(), Satellite());
    take(Table<BissKey>(), BissKey());
    take(Table<FavouriteRow>(), FavouriteRow());
    take(Table<ValueRow>(), ValueRow());
}

/** Makes texts of the names of a table's columns. */
struct Names {
    int key;
    int seen = 0;
    std::string names = {}, definitions = {}, marks = {}, keys = {}, condition = {};
    std::set<std::string> all = {};

    template <class Field>
    void operator()(const char* name, const Field&) {
        const char* const type = std::is_same_v<Field, std::string>            ? " TEXT"
                                 : std::is_same_v<Field, std::vector<uint8_t>> ? " BLOB"
                                                                               : " INTEGER";
        const char* const comma = seen != 0 ? ", " : "";
        names += comma + std::string(name);
        definitions += comma + std::string(name) + type;
        marks += comma + std::string("?");
        if (seen < key) {
            keys += comma + std::string(name);
            condition += (seen != 0 ? " AND " : "") + std::string(name) + " = ?";
        }
        all.insert(name);
        ++seen;
    }
};

template <class Record>
Names namesOf() {
    Names names{Table<Record>::kKey};
    const Record none{};
    Table<Record>::columns(none, names);
    return names;
}

/** Binds the columns of a record, or its key alone. */
struct Binder {
    Store::Statement& statement;
    int limit;

    template <class Field>
    void operator()(const char*, const Field& field) {
        if (limit-- <= 0) return;
        if constexpr (std::is_same_v<Field, std::string> ||
                      std::is_same_v<Field, std::vector<uint8_t>>) {
            statement.bind(field);
        } else {
            statement.bind(static_cast<int64_t>(field));
        }
    }
};

struct Reader {
    const Store::Statement& row;
    int column = 0;

    template <class Field>
    void operator()(const char*, Field& field) {
        if constexpr (std::is_same_v<Field, std::string>) {
            field = row.text(column);
        } else if constexpr (std::is_same_v<Field, std::vector<uint8_t>>) {
            field = row.blob(column);
        } else if constexpr (std::is_same_v<Field, bool>) {
            field = row.integer(column) != 0;
        } else {
            field = static_cast<Field>(row.integer(column));
        }
        ++column;
    }
};

/** Calls a function with each record of a table, in the order of their keys. */
template <class Record, class Take>
void readAll(Store& store, const Take& take) {
    const Names names = namesOf<Record>();
    const std::string sql =
            "SELECT " + names.names + " FROM " + Table<Record>::kName + " ORDER BY " + names.keys;
    Store::Statement row(store, sql.c_str());
    while (row.step()) {
        Record record{};
        Reader reader{row};
        Table<Record>::columns(record, reader);
        take(std::move(record));
    }
}

template <class Record>
void write(Store& store, const Record& record) {
    static const std::string kSql = [] {
        const Names names = namesOf<Record>();
        return std::string("INSERT OR REPLACE INTO ") + Table<Record>::kName + " (" + names.names +
               ") VALUES (" + names.marks + ")";
    }();
    Store::Statement statement(store, kSql.c_str());
    Binder binder{statement, INT32_MAX};
    Table<Record>::columns(record, binder);
    statement.run();
}

void eraseWhere(Store& store, const std::string& table, const char* column, uint32_t value) {
    const std::string sql = "DELETE FROM " + table + " WHERE " + column + " = ?";
    Store::Statement(store, sql.c_str()).bind(int64_t{value}).run();
}

// What the table of single values has, by name.

template <class Lists, class Visit>
void eachValue(Lists& lists, Visit visit) {
    visit("current", lists.current);
    visit("second", lists.second);
    visit("favourite_list", lists.favouriteList);
    visit("mode", lists.mode);
    visit("region", lists.region);
}

template <class List, class Visit>
void eachCounter(List& list, Visit visit) {
    visit("version", list.version);
    visit("pump", list.pumpVersion);
    visit("next_record", list.nextRecord);
    visit("next_multiplex", list.nextMultiplex);
    visit("next_network", list.nextNetwork);
}

ValueRow valueOf(const char* name, const ChannelLists::Reference& reference) {
    return {name, int64_t{reference.list} << 32 | reference.recordId};
}

ValueRow valueOf(const char* name, uint32_t word) {
    return {name, word};
}

ValueRow valueOf(const char* name, const std::optional<std::string>& text) {
    // Without the number an empty text would not differ from none.
    return {name, text.has_value(), text.value_or("")};
}

void setValue(ChannelLists::Reference& to, const ValueRow& from) {
    to = {static_cast<uint16_t>(from.value >> 32), static_cast<uint32_t>(from.value)};
}

void setValue(uint32_t& to, const ValueRow& from) {
    to = static_cast<uint32_t>(from.value);
}

void setValue(std::optional<std::string>& to, const ValueRow& from) {
    to = from.text;
}

/** The list of NAME.LIST; nothing for a value of the television. */
std::optional<uint16_t> listOf(const std::string& name, size_t dot) {
    uint16_t id = 0;
    const char* const end = name.data() + name.size();
    const auto [rest, error] = std::from_chars(name.data() + dot + 1, end, id);
    if (error != std::errc() || rest != end) return std::nullopt;
    return id;
}

}  // namespace

ChannelStore::ChannelStore(Store& store) : mStore(store) {
    checkLayout();
}

void ChannelStore::checkLayout() {
    int64_t layout = 0;
    {
        Store::Statement row(mStore, "PRAGMA user_version");
        if (row.step()) layout = row.integer(0);
    }
    if (layout > kLayout) {
        throw StoreError("the stored channels have layout " + std::to_string(layout) +
                         ", and this television reads layouts to " + std::to_string(kLayout) +
                         ": use a newer television, or move its database away");
    }
    eachTable([&](const auto& table, const auto& record) {
        using Record = std::decay_t<decltype(record)>;
        const Names names = namesOf<Record>();
        mStore.execute((std::string("CREATE TABLE IF NOT EXISTS ") + table.kName + " (" +
                        names.definitions + ", PRIMARY KEY (" + names.keys + ")) WITHOUT ROWID")
                               .c_str());
        // Tables that have no number of a layout may have other columns.
        if (layout == kLayout) return;
        std::set<std::string> found;
        Store::Statement row(mStore, "SELECT name FROM pragma_table_info(?)");
        row.bind(table.kName);
        while (row.step()) found.insert(row.text(0));
        if (found == names.all) return;
        throw StoreError(std::string("the stored table \"") + table.kName +
                         "\" has columns of an unknown layout: move the television's database"
                         " away, or use the television that wrote it");
    });
    if (layout == kLayout) return;
    try {
        mStore.execute(("PRAGMA user_version = " + std::to_string(kLayout)).c_str());
    } catch (const StoreError& e) {
        // The tables are good. The number is written at a later start.
        ALOGW("the layout of the channels is not stored: %s", e.what());
    }
}

ChannelLists ChannelStore::load() const {
    ChannelLists all;
    std::map<uint16_t, std::shared_ptr<ChannelList>> lists;
    const auto list = [&](uint16_t id) -> ChannelList& {
        auto& found = lists[id];
        if (found == nullptr) found = std::make_shared<ChannelList>();
        return *found;
    };
    readAll<Channel>(mStore, [&](Channel&& channel) {
        channel.number = channel_ids::number(channel.channelId);
        list(channel.list).channels.push_back(std::move(channel));
    });
    readAll<Multiplex>(mStore, [&](Multiplex&& multiplex) {
        list(multiplex.list).multiplexes.push_back(std::move(multiplex));
    });
    readAll<Network>(mStore, [&](Network&& network) {
        list(network.list).networks.push_back(std::move(network));
    });
    readAll<Satellite>(
            mStore, [&](Satellite&& satellite) { all.satellites.push_back(std::move(satellite)); });
    readAll<BissKey>(mStore, [&](BissKey&& key) { all.keys.push_back(std::move(key)); });
    readAll<FavouriteRow>(mStore, [&](const FavouriteRow& row) {
        if (row.favouriteList >= kFavouriteLists) return;
        all.favourites[row.favouriteList].push_back({row.list, row.recordId});
    });
    readAll<ValueRow>(mStore, [&](const ValueRow& row) {
        const auto take = [&](const std::string& name) {
            return [&row, name](const char* known, auto& value) {
                if (name == known) setValue(value, row);
            };
        };
        const size_t dot = row.name.find('.');
        if (dot == std::string::npos) {
            eachValue(all, take(row.name));
        } else if (const auto id = listOf(row.name, dot)) {
            eachCounter(list(*id), take(row.name.substr(0, dot)));
        } else {
            ALOGW("the channel state \"%s\" is of no list and ignored", logText(row.name).c_str());
        }
    });
    all.favouriteList %= kFavouriteLists;
    for (auto& [id, loaded] : lists) {
        loaded->order();
        all.lists[id] = loaded;
    }
    return all;
}

template <class Record>
void ChannelStore::save(const Record& record) {
    write(mStore, record);
}

template <class Record>
void ChannelStore::erase(const Record& record) {
    static const std::string kSql = std::string("DELETE FROM ") + Table<Record>::kName + " WHERE " +
                                    namesOf<Record>().condition;
    Store::Statement statement(mStore, kSql.c_str());
    Binder binder{statement, Table<Record>::kKey};
    Table<Record>::columns(record, binder);
    statement.run();
}

template void ChannelStore::save(const Channel&);
template void ChannelStore::save(const Multiplex&);
template void ChannelStore::save(const Network&);
template void ChannelStore::save(const Satellite&);
template void ChannelStore::save(const BissKey&);
template void ChannelStore::erase(const Channel&);
template void ChannelStore::erase(const Multiplex&);
template void ChannelStore::erase(const Network&);
template void ChannelStore::erase(const Satellite&);
template void ChannelStore::erase(const BissKey&);

void ChannelStore::saveList(uint16_t id, const ChannelList& list) {
    const auto replace = [&](const auto& records) {
        using Record = typename std::decay_t<decltype(records)>::value_type;
        eraseWhere(mStore, Table<Record>::kName, "list", id);
        for (const Record& record : records) save(record);
    };
    replace(list.channels);
    replace(list.multiplexes);
    replace(list.networks);
}

void ChannelStore::saveCounters(uint16_t id, const ChannelList& list) {
    eachCounter(list, [&](const char* name, uint32_t value) {
        write(mStore, ValueRow{name + ("." + std::to_string(id)), value});
    });
}

void ChannelStore::saveSatellites(const std::vector<Satellite>& satellites) {
    mStore.execute((std::string("DELETE FROM ") + Table<Satellite>::kName).c_str());
    for (const Satellite& satellite : satellites) save(satellite);
}

void ChannelStore::saveFavourites(uint32_t favouriteList, const Favourites& favourites) {
    eraseWhere(mStore, Table<FavouriteRow>::kName, "favourite_list", favouriteList);
    uint32_t place = 0;
    for (const Favourite& favourite : favourites) {
        write(mStore, FavouriteRow{favouriteList, place++, favourite.list, favourite.recordId});
    }
}

void ChannelStore::saveValues(const ChannelLists& before, const ChannelLists& now) {
    std::map<std::string, ValueRow> old;
    eachValue(before,
              [&](const char* name, const auto& value) { old[name] = valueOf(name, value); });
    eachValue(now, [&](const char* name, const auto& value) {
        const ValueRow row = valueOf(name, value);
        if (row.value != old[name].value || row.text != old[name].text) write(mStore, row);
    });
}

}  // namespace qeltvd
