#define LOG_TAG "qeltvd"

#include "ChannelDatabase.h"

#include <log/log.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "ChannelIds.h"
#include "Code.h"
#include "Guarded.h"
#include "ServiceGenerator.h"
#include "Stored.h"

namespace qeltvd {

namespace {

constexpr uint16_t kSatelliteList = static_cast<uint16_t>(Medium::kSatellite);

constexpr char kTables[] =
        "CREATE TABLE IF NOT EXISTS channels (list INTEGER, record INTEGER, channel_id INTEGER,"
        " type INTEGER, flags INTEGER, multiplex INTEGER, original_network INTEGER,"
        " stream INTEGER, service INTEGER, pmt_pid INTEGER, pcr_pid INTEGER, video_pid INTEGER,"
        " audio_pid INTEGER, name TEXT, provider TEXT, language TEXT,"
        " PRIMARY KEY (list, record)) WITHOUT ROWID;"
        "CREATE TABLE IF NOT EXISTS multiplexes (list INTEGER, record INTEGER, system INTEGER,"
        " modulation INTEGER, polarisation INTEGER, code_rate INTEGER, frequency INTEGER,"
        " symbol_rate INTEGER, bandwidth INTEGER, satellite INTEGER, network_record INTEGER,"
        " original_network INTEGER, network INTEGER, stream INTEGER, rf_channel INTEGER,"
        " name TEXT, PRIMARY KEY (list, record)) WITHOUT ROWID;"
        "CREATE TABLE IF NOT EXISTS networks (list INTEGER, record INTEGER, network INTEGER,"
        " satellite INTEGER, name TEXT, PRIMARY KEY (list, record)) WITHOUT ROWID;"
        "CREATE TABLE IF NOT EXISTS satellites (record INTEGER PRIMARY KEY, name TEXT,"
        " position INTEGER, low_oscillator INTEGER, high_oscillator INTEGER,"
        " switch_frequency INTEGER, switch_port INTEGER, enabled INTEGER);"
        "CREATE TABLE IF NOT EXISTS favourites (favourite_list INTEGER, place INTEGER,"
        " list INTEGER, record INTEGER, PRIMARY KEY (favourite_list, place)) WITHOUT ROWID;"
        "CREATE TABLE IF NOT EXISTS biss_keys (record INTEGER PRIMARY KEY, frequency INTEGER,"
        " symbol_rate INTEGER, service INTEGER, position INTEGER, polarisation INTEGER,"
        " enabled INTEGER, key BLOB);"
        "CREATE TABLE IF NOT EXISTS channel_state (name TEXT PRIMARY KEY, value INTEGER,"
        " text TEXT) WITHOUT ROWID";

/** Cuts a text to a number of bytes, never within a character. */
std::string cut(const std::string& text, size_t limit) {
    if (text.size() <= limit) return text;
    size_t end = limit;
    while (end > 0 && (static_cast<uint8_t>(text[end]) & 0xc0) == 0x80) --end;
    return text.substr(0, end);
}

bool sameReception(const Multiplex& a, const Multiplex& b) {
    const uint64_t apart = a.frequencyHz > b.frequencyHz ? a.frequencyHz - b.frequencyHz
                                                         : b.frequencyHz - a.frequencyHz;
    return apart <= 500000 && mediumOf(a.system) == mediumOf(b.system) &&
           a.polarisation == b.polarisation && a.satellite == b.satellite;
}

/** A record of a vector that is ordered by record id, or its end. */
template <class V>
auto recordIn(V& records, uint32_t recordId) {
    // Records are numbered from 1, so most stand where their id says.
    if (recordId != 0 && recordId <= records.size() && records[recordId - 1].recordId == recordId) {
        return records.begin() + (recordId - 1);
    }
    auto found = std::lower_bound(records.begin(), records.end(), recordId,
                                  [](const auto& r, uint32_t id) { return r.recordId < id; });
    return found != records.end() && found->recordId == recordId ? found : records.end();
}

template <class T>
std::optional<T> copyOf(const std::vector<T>& records, uint32_t recordId) {
    const auto found = recordIn(records, recordId);
    if (found == records.end()) return std::nullopt;
    return *found;
}

}  // namespace

bool ChannelQuery::all() const {
    return filter == CHANNEL_FILTER_HIDDEN && mask == 0 && broadcast == BroadcastType::kAny &&
           name.empty() && multiplex == 0 && satellite == 0;
}

bool ChannelQuery::matches(const Channel& channel, const Multiplex& stream) const {
    if ((channel.flags & mask) != (flags & mask)) return false;
    if ((filter & CHANNEL_FILTER_HIDDEN) == 0 && (channel.flags & CHANNEL_FLAG_VISIBLE) == 0) {
        return false;
    }
    constexpr uint32_t kTypes =
            CHANNEL_FILTER_TELEVISION | CHANNEL_FILTER_RADIO | CHANNEL_FILTER_DATA;
    const uint32_t type = 1u << (static_cast<uint32_t>(channel.type) - 1);
    if ((filter & kTypes) != 0 && (filter & kTypes & type) == 0) return false;
    const auto wants = [&](uint32_t condition, uint32_t flag, bool set) {
        return (filter & condition) == 0 || ((channel.flags & flag) != 0) == set;
    };
    return wants(CHANNEL_FILTER_FAVOURITE, CHANNEL_FLAGS_FAVOURITE, true) &&
           wants(CHANNEL_FILTER_FREE, CHANNEL_FLAG_SCRAMBLED, false) &&
           wants(CHANNEL_FILTER_SCRAMBLED, CHANNEL_FLAG_SCRAMBLED, true) &&
           wants(CHANNEL_FILTER_UNLOCKED, CHANNEL_FLAG_LOCKED, false) &&
           wants(CHANNEL_FILTER_ZAPPING, CHANNEL_FLAG_SKIPPED, false) &&
           (broadcast == BroadcastType::kAny || broadcast == broadcastTypeOf(stream.system)) &&
           (name.empty() || name == channel.name) &&
           (multiplex == 0 || multiplex == channel.multiplex) &&
           (satellite == 0 || satellite == stream.satellite);
}

/** What a service list and the lists that go with it hold. */
struct ChannelDatabase::List {
    /** By number. */
    std::vector<Channel> channels;
    /** By record id. */
    std::vector<Multiplex> multiplexes;
    std::vector<Network> networks;
    uint32_t version = 0;
    uint32_t pumpVersion = 0;
    uint32_t nextRecord = 1;
    uint32_t nextMultiplex = 1;
    uint32_t nextNetwork = 1;

    std::unordered_map<uint32_t, size_t> byRecord;
    std::unordered_map<uint32_t, size_t> byId;

    void order() {
        const auto before = [](const Channel& a, const Channel& b) {
            return a.number != b.number ? a.number < b.number : a.channelId < b.channelId;
        };
        if (!std::is_sorted(channels.begin(), channels.end(), before)) {
            std::sort(channels.begin(), channels.end(), before);
        }
        byRecord.clear();
        byId.clear();
        byRecord.reserve(channels.size());
        byId.reserve(channels.size());
        for (size_t i = 0; i < channels.size(); ++i) {
            byRecord[channels[i].recordId] = i;
            byId[channels[i].channelId] = i;
        }
    }

    const Channel* record(uint32_t recordId) const {
        const auto found = byRecord.find(recordId);
        return found != byRecord.end() ? &channels[found->second] : nullptr;
    }

    const Channel* id(uint32_t channelId) const {
        const auto found = byId.find(channelId);
        return found != byId.end() ? &channels[found->second] : nullptr;
    }

    const Multiplex& multiplexOf(const Channel& channel) const {
        static const Multiplex kNone;
        const auto found = recordIn(multiplexes, channel.multiplex);
        return found != multiplexes.end() ? *found : kNone;
    }

    bool matches(const ChannelQuery& query, const Channel& channel) const {
        return query.all() || query.matches(channel, multiplexOf(channel));
    }

    /** 0 when every number is taken. */
    uint32_t freeNumber() const {
        uint32_t highest = 0;
        std::set<uint32_t> taken;
        for (const Channel& channel : channels) {
            if (channel.number > channel_ids::kMaximumNumber) continue;
            highest = std::max(highest, channel.number);
        }
        if (highest < channel_ids::kMaximumNumber) return highest + 1;
        for (const Channel& channel : channels) taken.insert(channel.number);
        for (uint32_t number = 1; number <= channel_ids::kMaximumNumber; ++number) {
            if (taken.count(number) == 0) return number;
        }
        return 0;
    }
};

struct ChannelDatabase::State {
    struct Reference {
        uint16_t list = 0;
        uint32_t recordId = 0;
    };

    std::map<uint16_t, std::shared_ptr<const List>> lists;
    std::vector<Satellite> satellites;
    std::vector<BissKey> keys;
    std::array<std::vector<Favourite>, kFavouriteLists> favourites;
    Reference current;
    Reference second;
    uint32_t favouriteList = 0;
    uint32_t mode = CHANNEL_LIST_MODE_BROADCAST;

    const List& list(uint16_t id) const {
        static const List kEmpty;
        const auto found = lists.find(id);
        return found != lists.end() ? *found->second : kEmpty;
    }

    const Channel* channel(const Reference& reference) const {
        return reference.recordId != 0 ? list(reference.list).record(reference.recordId) : nullptr;
    }
};

struct ChannelDatabase::Snapshot {
    uint16_t id;
    /** Of a service list. */
    std::shared_ptr<const List> list;
    std::array<std::vector<Favourite>, kFavouriteLists> favourites;
    /** Of the satellites. */
    std::vector<Satellite> satellites;
};

/**
 * One change: works on a copy of what it changes, writes it to the store as it goes, and becomes
 * visible with commit(). Without, or when something throws, nothing has happened.
 */
class ChannelDatabase::Edit {
  public:
    explicit Edit(ChannelDatabase& database)
            : mDatabase(database),
              mEditing(database.mEditing),
              mTransaction(std::make_unique<Store::Transaction>(database.mStore)),
              mState(std::make_shared<State>(*database.state())) {}

    State& state() { return *mState; }

    /** A list to be changed. */
    List& list(uint16_t id) {
        auto& mine = mLists[id];
        if (mine == nullptr) {
            mine = std::make_shared<List>(mState->list(id));
            mState->lists[id] = mine;
        }
        return *mine;
    }

    void tell(ChannelChange change) { mChanges.push_back(std::move(change)); }

    void storeChannel(const Channel& c) {
        statement(mPutChannel,
                  "INSERT OR REPLACE INTO channels VALUES"
                  " (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
                .bind(int64_t{c.list})
                .bind(int64_t{c.recordId})
                .bind(int64_t{c.channelId})
                .bind(static_cast<int64_t>(c.type))
                .bind(int64_t{c.flags})
                .bind(int64_t{c.multiplex})
                .bind(int64_t{c.originalNetworkId})
                .bind(int64_t{c.streamId})
                .bind(int64_t{c.serviceId})
                .bind(int64_t{c.pmtPid})
                .bind(int64_t{c.pcrPid})
                .bind(int64_t{c.videoPid})
                .bind(int64_t{c.audioPid})
                .bind(c.name)
                .bind(c.provider)
                .bind(c.language)
                .run();
    }

    void storeMultiplex(const Multiplex& m) {
        statement(mPutMultiplex,
                  "INSERT OR REPLACE INTO multiplexes VALUES"
                  " (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
                .bind(int64_t{m.list})
                .bind(int64_t{m.recordId})
                .bind(static_cast<int64_t>(m.system))
                .bind(static_cast<int64_t>(m.modulation))
                .bind(static_cast<int64_t>(m.polarisation))
                .bind(int64_t{m.codeRate})
                .bind(static_cast<int64_t>(m.frequencyHz))
                .bind(int64_t{m.symbolRate})
                .bind(int64_t{m.bandwidthHz})
                .bind(int64_t{m.satellite})
                .bind(int64_t{m.network})
                .bind(int64_t{m.originalNetworkId})
                .bind(int64_t{m.networkId})
                .bind(int64_t{m.streamId})
                .bind(int64_t{m.rfChannel})
                .bind(m.name)
                .run();
    }

    void storeNetwork(const Network& n) {
        Store::Statement(mDatabase.mStore, "INSERT OR REPLACE INTO networks VALUES (?, ?, ?, ?, ?)")
                .bind(int64_t{n.list})
                .bind(int64_t{n.recordId})
                .bind(int64_t{n.networkId})
                .bind(int64_t{n.satellite})
                .bind(n.name)
                .run();
    }

    void storeSatellite(const Satellite& s) {
        Store::Statement(mDatabase.mStore,
                         "INSERT OR REPLACE INTO satellites VALUES (?, ?, ?, ?, ?, ?, ?, ?)")
                .bind(int64_t{s.recordId})
                .bind(s.name)
                .bind(int64_t{s.position})
                .bind(int64_t{s.lowOscillatorKHz})
                .bind(int64_t{s.highOscillatorKHz})
                .bind(int64_t{s.switchKHz})
                .bind(int64_t{s.switchPort})
                .bind(int64_t{s.enabled})
                .run();
    }

    void storeKey(const BissKey& k) {
        Store::Statement(mDatabase.mStore,
                         "INSERT OR REPLACE INTO biss_keys VALUES (?, ?, ?, ?, ?, ?, ?, ?)")
                .bind(int64_t{k.recordId})
                .bind(int64_t{k.frequencyKHz})
                .bind(int64_t{k.symbolRate})
                .bind(int64_t{k.serviceId})
                .bind(int64_t{k.position})
                .bind(static_cast<int64_t>(k.polarisation))
                .bind(int64_t{k.enabled})
                .bind(k.key)
                .run();
    }

    void storeFavourites(uint32_t index) {
        erase("DELETE FROM favourites WHERE favourite_list = ?", {index});
        const auto& favourites = mState->favourites[index];
        Store::Statement insert(mDatabase.mStore, "INSERT INTO favourites VALUES (?, ?, ?, ?)");
        for (size_t place = 0; place < favourites.size(); ++place) {
            insert.reset()
                    .bind(int64_t{index})
                    .bind(static_cast<int64_t>(place))
                    .bind(int64_t{favourites[place].list})
                    .bind(int64_t{favourites[place].recordId})
                    .run();
        }
    }

    void storeState(const std::string& name, int64_t value, const std::string& text = "") {
        Store::Statement(mDatabase.mStore, "INSERT OR REPLACE INTO channel_state VALUES (?, ?, ?)")
                .bind(name)
                .bind(value)
                .bind(text)
                .run();
    }

    void erase(const char* sql, std::initializer_list<uint32_t> values) {
        Store::Statement statement(mDatabase.mStore, sql);
        for (const uint32_t value : values) statement.bind(int64_t{value});
        statement.run();
    }

    /** Replaces a channel of a list that is being changed, or adds it. */
    void place(List& list, const Channel& channel) {
        storeChannel(channel);
        const auto found = list.byRecord.find(channel.recordId);
        if (found != list.byRecord.end()) {
            list.channels[found->second] = channel;
        } else {
            list.byRecord[channel.recordId] = list.channels.size();
            list.channels.push_back(channel);
        }
    }

    /** Takes channels out of their list and of the favourite lists. */
    void take(uint16_t id, const std::vector<uint32_t>& records) {
        if (records.empty()) return;
        List& from = list(id);
        const std::unordered_set<uint32_t> gone(records.begin(), records.end());
        from.channels.erase(
                std::remove_if(from.channels.begin(), from.channels.end(),
                               [&](const Channel& c) { return gone.count(c.recordId) != 0; }),
                from.channels.end());
        from.order();
        Store::Statement statement(mDatabase.mStore,
                                   "DELETE FROM channels WHERE list = ? AND record = ?");
        for (const uint32_t record : records) {
            statement.reset().bind(int64_t{id}).bind(int64_t{record}).run();
        }
        tell({ChannelChange::kChannelsRemoved, id, 0, records});
    }

    /** Takes out multiplexes with their channels. */
    void takeMultiplexes(uint16_t id, const std::vector<uint32_t>& records) {
        if (records.empty()) return;
        List& from = list(id);
        const std::unordered_set<uint32_t> gone(records.begin(), records.end());
        std::vector<uint32_t> channels;
        for (const Channel& channel : from.channels) {
            if (gone.count(channel.multiplex) != 0) channels.push_back(channel.recordId);
        }
        take(id, channels);
        from.multiplexes.erase(
                std::remove_if(from.multiplexes.begin(), from.multiplexes.end(),
                               [&](const Multiplex& m) { return gone.count(m.recordId) != 0; }),
                from.multiplexes.end());
        for (const uint32_t record : records) {
            erase("DELETE FROM multiplexes WHERE list = ? AND record = ?", {id, record});
        }
        tell({ChannelChange::kMultiplexes, id, 0, records});
    }

    /** Writes a multiplex over that of its record id, or adds it when that is 0. */
    int32_t putMultiplex(Multiplex multiplex, bool quiet, uint32_t* recordId) {
        const uint16_t id = multiplex.list;
        if (multiplex.frequencyHz == 0 || multiplex.frequencyHz > UINT64_C(100000000000) ||
            multiplex.system == DeliverySystem::kUnknown ||
            multiplex.system > DeliverySystem::kIsdbT ||
            multiplex.modulation > Modulation::kVsb16 ||
            multiplex.polarisation > Polarisation::kRight ||
            static_cast<uint16_t>(mediumOf(multiplex.system)) != id) {
            return kBadValue;
        }
        if (multiplex.satellite != 0 &&
            recordIn(mState->satellites, multiplex.satellite) == mState->satellites.end()) {
            return kBadValue;
        }
        multiplex.name = cut(multiplex.name, 127);
        List& to = list(id);
        if (multiplex.recordId == 0) {
            multiplex.recordId = to.nextMultiplex++;
            to.multiplexes.push_back(multiplex);
        } else {
            const auto known = recordIn(to.multiplexes, multiplex.recordId);
            if (known == to.multiplexes.end()) return kNotFound;
            *known = multiplex;
        }
        storeMultiplex(multiplex);
        tell({ChannelChange::kMultiplexes, id, 0, {multiplex.recordId}, quiet});
        *recordId = multiplex.recordId;
        return kOk;
    }

    /** Stores a list that is being changed as a whole. */
    void storeList(uint16_t id) {
        for (const char* sql :
             {"DELETE FROM channels WHERE list = ?", "DELETE FROM multiplexes WHERE list = ?",
              "DELETE FROM networks WHERE list = ?"}) {
            erase(sql, {id});
        }
        const List& whole = list(id);
        for (const Channel& channel : whole.channels) storeChannel(channel);
        for (const Multiplex& multiplex : whole.multiplexes) storeMultiplex(multiplex);
        for (const Network& network : whole.networks) storeNetwork(network);
    }

    /** The channel's favourite flags say what the favourite lists say. */
    void flagFavourites() {
        std::map<std::pair<uint16_t, uint32_t>, uint32_t> flags;
        for (uint32_t i = 0; i < kFavouriteLists; ++i) {
            for (const Favourite& f : mState->favourites[i]) {
                flags[{f.list, f.recordId}] |= CHANNEL_FLAG_FAVOURITE_1 << i;
            }
        }
        std::vector<uint16_t> ids;
        for (const auto& each : mState->lists) ids.push_back(each.first);
        for (const uint16_t id : ids) {
            std::vector<Channel> changed;
            for (const Channel& channel : mState->list(id).channels) {
                const auto found = flags.find({id, channel.recordId});
                const uint32_t wanted = found != flags.end() ? found->second : 0;
                if ((channel.flags & CHANNEL_FLAGS_FAVOURITE) == wanted) continue;
                changed.push_back(channel);
                changed.back().flags = (channel.flags & ~CHANNEL_FLAGS_FAVOURITE) | wanted;
            }
            if (changed.empty()) continue;
            List& to = list(id);
            for (const Channel& channel : changed) place(to, channel);
        }
    }

    void commit() {
        // Favourites whose channels have gone.
        for (uint32_t i = 0; i < kFavouriteLists; ++i) {
            auto& favourites = mState->favourites[i];
            const auto gone = [&](const Favourite& f) {
                return mState->list(f.list).record(f.recordId) == nullptr;
            };
            const auto end = std::remove_if(favourites.begin(), favourites.end(), gone);
            if (end == favourites.end()) continue;
            favourites.erase(end, favourites.end());
            storeFavourites(i);
            tell({ChannelChange::kFavourites, static_cast<uint16_t>(i)});
        }
        for (auto& [id, list] : mLists) {
            list->order();
            ++list->version;
            const std::string suffix = "." + std::to_string(id);
            storeState("version" + suffix, list->version);
            storeState("pump" + suffix, list->pumpVersion);
            storeState("next_record" + suffix, list->nextRecord);
            storeState("next_multiplex" + suffix, list->nextMultiplex);
            storeState("next_network" + suffix, list->nextNetwork);
        }
        const auto before = mDatabase.state();
        follow(before->current, mState->current, *before, ChannelChange::kCurrent, "current");
        follow(before->second, mState->second, *before, ChannelChange::kSecondCurrent, "second");
        mPutChannel.reset();
        mPutMultiplex.reset();
        mTransaction->commit();
        mTransaction.reset();
        std::vector<Listener> listeners;
        {
            std::lock_guard<std::mutex> guard(mDatabase.mLock);
            mDatabase.mState = mState;
            listeners = mDatabase.mListeners;
        }
        mEditing.unlock();
        for (const ChannelChange& change : mChanges) {
            callAll("following a change of the channels", listeners, change);
        }
    }

  private:
    Store::Statement& statement(std::unique_ptr<Store::Statement>& kept, const char* sql) {
        if (kept == nullptr) kept = std::make_unique<Store::Statement>(mDatabase.mStore, sql);
        return kept->reset();
    }

    /** Tells of a current channel that is another one now, has gone or has another number. */
    void follow(const State::Reference& was, State::Reference& is, const State& before,
                ChannelChange::Kind kind, const char* name) {
        const Channel* from = before.channel(was);
        const Channel* to = mState->channel(is);
        if (to == nullptr) is = {};
        if (was.list != is.list || was.recordId != is.recordId) {
            storeState(name, int64_t{is.list} << 32 | is.recordId);
        }
        const uint32_t idBefore = from != nullptr ? from->channelId : 0;
        const uint32_t idNow = to != nullptr ? to->channelId : 0;
        if (idBefore != idNow) tell({kind, is.list, idNow});
    }

    ChannelDatabase& mDatabase;
    std::unique_lock<std::mutex> mEditing;
    std::unique_ptr<Store::Transaction> mTransaction;
    // Gone before the transaction ends.
    std::unique_ptr<Store::Statement> mPutChannel;
    std::unique_ptr<Store::Statement> mPutMultiplex;
    std::shared_ptr<State> mState;
    std::map<uint16_t, std::shared_ptr<List>> mLists;
    std::vector<ChannelChange> mChanges;
};

ChannelDatabase::ChannelDatabase(Store& store, const std::string& region)
        : mStore(store), mState(std::make_shared<State>()) {
    mStore.execute(kTables);
    load();
    std::optional<std::string> filled;
    {
        Store::Statement row(mStore, "SELECT text FROM channel_state WHERE name = 'region'");
        if (row.step()) filled = row.text(0);
    }
    if (!filled) {
        reload(region);
    } else if (filled != region) {
        // On a full disk the channels of before are better than none; tried again at each start.
        stored([&] { return reload(region); });
    }
}

void ChannelDatabase::load() {
    auto state = std::make_shared<State>();
    std::map<uint16_t, std::shared_ptr<List>> lists;
    const auto list = [&](int64_t id) -> List& {
        auto& found = lists[static_cast<uint16_t>(id)];
        if (found == nullptr) found = std::make_shared<List>();
        return *found;
    };
    {
        Store::Statement row(mStore, "SELECT * FROM channels ORDER BY list, record");
        while (row.step()) {
            Channel c;
            c.list = static_cast<uint16_t>(row.integer(0));
            c.recordId = static_cast<uint32_t>(row.integer(1));
            c.channelId = static_cast<uint32_t>(row.integer(2));
            c.number = channel_ids::number(c.channelId);
            c.type = static_cast<ServiceType>(row.integer(3));
            c.flags = static_cast<uint32_t>(row.integer(4));
            c.multiplex = static_cast<uint32_t>(row.integer(5));
            c.originalNetworkId = static_cast<uint16_t>(row.integer(6));
            c.streamId = static_cast<uint16_t>(row.integer(7));
            c.serviceId = static_cast<uint16_t>(row.integer(8));
            c.pmtPid = static_cast<uint16_t>(row.integer(9));
            c.pcrPid = static_cast<uint16_t>(row.integer(10));
            c.videoPid = static_cast<uint16_t>(row.integer(11));
            c.audioPid = static_cast<uint16_t>(row.integer(12));
            c.name = row.text(13);
            c.provider = row.text(14);
            c.language = row.text(15);
            list(c.list).channels.push_back(std::move(c));
        }
    }
    {
        Store::Statement row(mStore, "SELECT * FROM multiplexes ORDER BY list, record");
        while (row.step()) {
            Multiplex m;
            m.list = static_cast<uint16_t>(row.integer(0));
            m.recordId = static_cast<uint32_t>(row.integer(1));
            m.system = static_cast<DeliverySystem>(row.integer(2));
            m.modulation = static_cast<Modulation>(row.integer(3));
            m.polarisation = static_cast<Polarisation>(row.integer(4));
            m.codeRate = static_cast<uint8_t>(row.integer(5));
            m.frequencyHz = static_cast<uint64_t>(row.integer(6));
            m.symbolRate = static_cast<uint32_t>(row.integer(7));
            m.bandwidthHz = static_cast<uint32_t>(row.integer(8));
            m.satellite = static_cast<uint32_t>(row.integer(9));
            m.network = static_cast<uint32_t>(row.integer(10));
            m.originalNetworkId = static_cast<uint16_t>(row.integer(11));
            m.networkId = static_cast<uint16_t>(row.integer(12));
            m.streamId = static_cast<uint16_t>(row.integer(13));
            m.rfChannel = static_cast<uint16_t>(row.integer(14));
            m.name = row.text(15);
            list(m.list).multiplexes.push_back(std::move(m));
        }
    }
    {
        Store::Statement row(mStore, "SELECT * FROM networks ORDER BY list, record");
        while (row.step()) {
            list(row.integer(0))
                    .networks.push_back({static_cast<uint16_t>(row.integer(0)),
                                         static_cast<uint32_t>(row.integer(1)),
                                         static_cast<uint16_t>(row.integer(2)),
                                         static_cast<uint32_t>(row.integer(3)), row.text(4)});
        }
    }
    {
        Store::Statement row(mStore, "SELECT * FROM satellites ORDER BY record");
        while (row.step()) {
            state->satellites.push_back(
                    {static_cast<uint32_t>(row.integer(0)), row.text(1),
                     static_cast<int32_t>(row.integer(2)), static_cast<uint32_t>(row.integer(3)),
                     static_cast<uint32_t>(row.integer(4)), static_cast<uint32_t>(row.integer(5)),
                     static_cast<uint8_t>(row.integer(6)), row.integer(7) != 0});
        }
    }
    {
        Store::Statement row(mStore, "SELECT * FROM favourites ORDER BY favourite_list, place");
        while (row.step()) {
            const auto index = static_cast<uint64_t>(row.integer(0));
            if (index >= kFavouriteLists) continue;
            state->favourites[index].push_back(
                    {static_cast<uint16_t>(row.integer(2)), static_cast<uint32_t>(row.integer(3))});
        }
    }
    {
        Store::Statement row(mStore, "SELECT * FROM biss_keys ORDER BY record");
        while (row.step()) {
            BissKey key;
            key.recordId = static_cast<uint32_t>(row.integer(0));
            key.frequencyKHz = static_cast<uint32_t>(row.integer(1));
            key.symbolRate = static_cast<uint32_t>(row.integer(2));
            key.serviceId = static_cast<uint16_t>(row.integer(3));
            key.position = static_cast<int16_t>(row.integer(4));
            key.polarisation = static_cast<Polarisation>(row.integer(5));
            key.enabled = row.integer(6) != 0;
            key.key = row.blob(7);
            state->keys.push_back(std::move(key));
        }
    }
    {
        Store::Statement row(mStore, "SELECT name, value FROM channel_state");
        while (row.step()) {
            const std::string name = row.text(0);
            const int64_t value = row.integer(1);
            const auto word = static_cast<uint32_t>(value);
            const State::Reference reference{static_cast<uint16_t>(value >> 32), word};
            if (name == "current") state->current = reference;
            if (name == "second") state->second = reference;
            if (name == "favourite_list") state->favouriteList = word % kFavouriteLists;
            if (name == "mode") state->mode = word;
            const size_t dot = name.find('.');
            if (dot == std::string::npos) continue;
            uint16_t id = 0;
            const char* const end = name.data() + name.size();
            const auto [rest, error] = std::from_chars(name.data() + dot + 1, end, id);
            if (error != std::errc() || rest != end) {
                ALOGW("the channel state \"%s\" is of no list and ignored", name.c_str());
                continue;
            }
            List& of = list(id);
            const std::string what = name.substr(0, dot);
            if (what == "version") of.version = word;
            if (what == "pump") of.pumpVersion = word;
            if (what == "next_record") of.nextRecord = word;
            if (what == "next_multiplex") of.nextMultiplex = word;
            if (what == "next_network") of.nextNetwork = word;
        }
    }
    for (auto& [id, loaded] : lists) {
        loaded->order();
        state->lists[id] = loaded;
    }
    std::lock_guard<std::mutex> guard(mLock);
    mState = state;
}

std::shared_ptr<const ChannelDatabase::State> ChannelDatabase::state() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mState;
}

std::shared_ptr<const ChannelDatabase::List> ChannelDatabase::list(uint16_t id) const {
    static const auto kEmpty = std::make_shared<const List>();
    const auto now = state();
    const auto found = now->lists.find(id);
    return found != now->lists.end() ? found->second : kEmpty;
}

void ChannelDatabase::addListener(Listener listener) {
    std::lock_guard<std::mutex> guard(mLock);
    mListeners.push_back(std::move(listener));
}

std::vector<uint16_t> ChannelDatabase::lists() const {
    std::vector<uint16_t> ids;
    for (const auto& [id, list] : state()->lists) {
        if (!list->channels.empty() || !list->multiplexes.empty()) ids.push_back(id);
    }
    return ids;
}

size_t ChannelDatabase::count(uint16_t id) const {
    return list(id)->channels.size();
}

size_t ChannelDatabase::count(uint16_t id, const ChannelQuery& query) const {
    const auto now = list(id);
    if (query.all()) return now->channels.size();
    return static_cast<size_t>(
            std::count_if(now->channels.begin(), now->channels.end(),
                          [&](const Channel& c) { return now->matches(query, c); }));
}

std::optional<Channel> ChannelDatabase::byChannelId(uint32_t channelId) const {
    const auto now = list(channel_ids::list(channelId));
    const Channel* found = now->id(channelId);
    return found != nullptr ? std::optional<Channel>(*found) : std::nullopt;
}

std::optional<Channel> ChannelDatabase::byShortId(uint16_t id, uint16_t channelId) const {
    const auto now = list(id);
    const Channel* found = now->id(channel_ids::onePart(id, channelId));
    if (found != nullptr) return *found;
    for (const Channel& channel : now->channels) {
        if ((channel.channelId & 0xffff) == channelId) return channel;
    }
    return std::nullopt;
}

std::optional<Channel> ChannelDatabase::byRecord(uint16_t id, uint32_t recordId) const {
    const auto now = list(id);
    const Channel* found = now->record(recordId);
    return found != nullptr ? std::optional<Channel>(*found) : std::nullopt;
}

std::optional<Channel> ChannelDatabase::byNumber(uint16_t id, uint32_t number) const {
    const auto now = list(id);
    const auto found =
            std::lower_bound(now->channels.begin(), now->channels.end(), number,
                             [](const Channel& channel, uint32_t n) { return channel.number < n; });
    if (found == now->channels.end() || found->number != number) return std::nullopt;
    return *found;
}

std::optional<Channel> ChannelDatabase::byIndex(uint16_t id, size_t index) const {
    const auto now = list(id);
    if (index >= now->channels.size()) return std::nullopt;
    return now->channels[index];
}

std::optional<Channel> ChannelDatabase::byTriplet(uint16_t id, uint16_t networkId,
                                                  uint16_t streamId, uint16_t serviceId) const {
    const auto now = list(id);
    for (const Channel& channel : now->channels) {
        if (channel.originalNetworkId == networkId && channel.streamId == streamId &&
            channel.serviceId == serviceId) {
            return channel;
        }
    }
    return std::nullopt;
}

std::optional<Channel> ChannelDatabase::byIndex(uint16_t id, const ChannelQuery& query,
                                                size_t index) const {
    std::optional<Channel> found;
    visit(id, query, index, 1, [&](const Channel& channel, const Multiplex&) { found = channel; });
    return found;
}

std::vector<Channel> ChannelDatabase::find(uint16_t id, const ChannelQuery& query, size_t first,
                                           size_t limit) const {
    std::vector<Channel> found;
    visit(id, query, first, limit,
          [&](const Channel& channel, const Multiplex&) { found.push_back(channel); });
    return found;
}

std::optional<size_t> ChannelDatabase::indexOf(uint32_t channelId,
                                               const ChannelQuery& query) const {
    const auto now = list(channel_ids::list(channelId));
    const auto found = now->byId.find(channelId);
    if (found == now->byId.end()) return std::nullopt;
    if (query.all()) return found->second;
    if (!now->matches(query, now->channels[found->second])) return std::nullopt;
    return static_cast<size_t>(std::count_if(
            now->channels.begin(), now->channels.begin() + static_cast<ptrdiff_t>(found->second),
            [&](const Channel& c) { return now->matches(query, c); }));
}

std::optional<Channel> ChannelDatabase::next(uint32_t channelId, const ChannelQuery& query,
                                             bool backwards) const {
    const auto now = list(channel_ids::list(channelId));
    const auto& all = now->channels;
    if (all.empty()) return std::nullopt;
    const uint32_t number = channel_ids::number(channelId);
    // Where the channel stands, or would.
    const auto from = static_cast<size_t>(
            std::lower_bound(all.begin(), all.end(), std::make_pair(number, channelId),
                             [](const Channel& c, const std::pair<uint32_t, uint32_t>& n) {
                                 return std::make_pair(c.number, c.channelId) < n;
                             }) -
            all.begin());
    const bool there = from < all.size() && all[from].channelId == channelId;
    for (size_t step = 0; step < all.size(); ++step) {
        const size_t index =
                backwards ? from + 2 * all.size() - 1 - step : from + step + (there ? 1 : 0);
        const Channel& channel = all[index % all.size()];
        if (channel.channelId != channelId && now->matches(query, channel)) return channel;
    }
    if (there && now->matches(query, all[from])) return all[from];
    return std::nullopt;
}

std::optional<ChannelDatabase::Pair> ChannelDatabase::pair(uint32_t channelId) const {
    const auto now = list(channel_ids::list(channelId));
    const Channel* found = now->id(channelId);
    if (found == nullptr) return std::nullopt;
    return Pair{*found, now->multiplexOf(*found)};
}

size_t ChannelDatabase::visit(
        uint16_t id, const ChannelQuery& query, size_t first, size_t limit,
        const std::function<void(const Channel&, const Multiplex&)>& take) const {
    const auto now = list(id);
    const auto& all = now->channels;
    // Neighbours often share a multiplex.
    const Multiplex* last = nullptr;
    const auto multiplexOf = [&](const Channel& channel) -> const Multiplex& {
        if (last == nullptr || last->recordId != channel.multiplex) {
            last = &now->multiplexOf(channel);
        }
        return *last;
    };
    size_t taken = 0;
    if (query.all()) {
        for (size_t i = first; i < all.size() && taken < limit; ++i, ++taken) {
            take(all[i], multiplexOf(all[i]));
        }
        return taken;
    }
    size_t index = 0;
    for (const Channel& channel : all) {
        if (taken >= limit) break;
        const Multiplex& multiplex = multiplexOf(channel);
        if (!query.matches(channel, multiplex) || index++ < first) continue;
        take(channel, multiplex);
        ++taken;
    }
    return taken;
}

int32_t ChannelDatabase::setFlags(uint16_t id, uint32_t recordId, uint32_t mask, uint32_t flags,
                                  bool quiet) {
    Edit edit(*this);
    const Channel* found = edit.state().list(id).record(recordId);
    if (found == nullptr) return kNotFound;
    if ((mask & CHANNEL_FLAGS_FAVOURITE) != 0) return kBadValue;
    Channel channel = *found;
    channel.flags = (channel.flags & ~mask) | (flags & mask);
    if (channel.flags == found->flags) return kOk;
    edit.place(edit.list(id), channel);
    edit.tell({ChannelChange::kChannels, id, 0, {recordId}, quiet});
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::setFlagsOfAll(uint16_t id, const ChannelQuery& query, uint32_t mask,
                                       uint32_t flags) {
    if ((mask & CHANNEL_FLAGS_FAVOURITE) != 0) return kBadValue;
    Edit edit(*this);
    ChannelChange change{ChannelChange::kChannels, id};
    std::vector<Channel> changed;
    const List& before = edit.state().list(id);
    for (const Channel& channel : before.channels) {
        const uint32_t wanted = (channel.flags & ~mask) | (flags & mask);
        if (channel.flags == wanted || !before.matches(query, channel)) continue;
        changed.push_back(channel);
        changed.back().flags = wanted;
        change.records.push_back(channel.recordId);
    }
    if (changed.empty()) return kOk;
    List& list = edit.list(id);
    for (const Channel& channel : changed) edit.place(list, channel);
    edit.tell(std::move(change));
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::rename(uint16_t id, uint32_t recordId, const std::string& name) {
    const auto found = byRecord(id, recordId);
    if (!found) return kNotFound;
    if (name.empty() || name.find('\0') != std::string::npos) return kBadValue;
    Channel channel = *found;
    channel.name = name;
    channel.flags |= CHANNEL_FLAG_RENAMED;
    return put(channel);
}

int32_t ChannelDatabase::put(const Channel& given, bool quiet, uint32_t* recordId,
                             const Multiplex* stream) {
    Edit edit(*this);
    Channel channel = given;
    const uint16_t id = channel.list;
    if (id == 0 || id > channel_ids::kMaximumList) return kBadValue;
    const List& before = edit.state().list(id);
    if (stream != nullptr) {
        if (stream->list != id) return kBadValue;
        const int32_t code = edit.putMultiplex(*stream, quiet, &channel.multiplex);
        if (code != kOk) return code;
    } else if (recordIn(before.multiplexes, channel.multiplex) == before.multiplexes.end()) {
        return kBadValue;
    }
    if (channel.type < ServiceType::kTelevision || channel.type > ServiceType::kData) {
        return kBadValue;
    }
    channel.name = cut(channel.name, 127);
    channel.provider = cut(channel.provider, 63);
    channel.language = cut(channel.language, 3);
    // A non-PSIP id is not told by its number alone.
    const bool kept = channel.channelId != 0 && channel_ids::isNonPsip(channel.channelId) &&
                      channel_ids::list(channel.channelId) == id &&
                      channel_ids::number(channel.channelId) == channel.number;
    if (!kept) channel.channelId = channel_ids::ofNumber(id, channel.number);
    const Channel* holder = before.id(channel.channelId);

    List& to = edit.list(id);
    if (channel.recordId == 0) {
        if (channel.channelId == 0 || holder != nullptr) {
            channel.number = to.freeNumber();
            if (channel.number == 0) return kRefused;
            channel.channelId = channel_ids::onePart(id, channel.number);
        }
        channel.recordId = to.nextRecord++;
        channel.flags &= ~CHANNEL_FLAGS_FAVOURITE;
    } else {
        const Channel* was = before.record(channel.recordId);
        if (was == nullptr) return kNotFound;
        if (channel.channelId == 0) return kBadValue;
        if (holder != nullptr && holder->recordId != channel.recordId) return kBadValue;
        channel.flags =
                (channel.flags & ~CHANNEL_FLAGS_FAVOURITE) | (was->flags & CHANNEL_FLAGS_FAVOURITE);
    }
    edit.place(to, channel);
    edit.tell({ChannelChange::kChannels, id, 0, {channel.recordId}, quiet});
    edit.commit();
    if (recordId != nullptr) *recordId = channel.recordId;
    return kOk;
}

int32_t ChannelDatabase::remove(uint16_t id, const std::vector<uint32_t>& recordIds) {
    Edit edit(*this);
    for (const uint32_t record : recordIds) {
        if (edit.state().list(id).record(record) == nullptr) return kNotFound;
    }
    if (recordIds.empty()) return kOk;
    edit.take(id, recordIds);
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::removeAll(uint16_t id, const ChannelQuery& query, bool streams) {
    Edit edit(*this);
    const List& before = edit.state().list(id);
    std::vector<uint32_t> channels;
    std::unordered_set<uint32_t> touched;
    std::unordered_set<uint32_t> used;
    for (const Channel& channel : before.channels) {
        if (before.matches(query, channel)) {
            channels.push_back(channel.recordId);
            touched.insert(channel.multiplex);
        } else {
            used.insert(channel.multiplex);
        }
    }
    std::vector<uint32_t> left;
    if (streams) {
        // Of a broadcast type, also those that had no channels before.
        for (const Multiplex& multiplex : before.multiplexes) {
            const bool concerned = touched.count(multiplex.recordId) != 0 ||
                                   (query.broadcast != BroadcastType::kAny &&
                                    query.broadcast == broadcastTypeOf(multiplex.system));
            if (concerned && used.count(multiplex.recordId) == 0) {
                left.push_back(multiplex.recordId);
            }
        }
    }
    if (channels.empty() && left.empty()) return kOk;
    edit.take(id, channels);
    edit.takeMultiplexes(id, left);
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::swap(uint32_t channelId, uint32_t otherId) {
    const uint16_t id = channel_ids::list(channelId);
    if (id != channel_ids::list(otherId)) return kBadValue;
    Edit edit(*this);
    const Channel* one = edit.state().list(id).id(channelId);
    const Channel* two = edit.state().list(id).id(otherId);
    if (one == nullptr || two == nullptr) return kNotFound;
    if (one == two) return kOk;
    Channel first = *one, second = *two;
    std::swap(first.channelId, second.channelId);
    std::swap(first.number, second.number);
    List& list = edit.list(id);
    edit.place(list, first);
    edit.place(list, second);
    edit.tell({ChannelChange::kChannels, id, 0, {first.recordId, second.recordId}});
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::moveBefore(uint32_t channelId, uint32_t beforeId) {
    const uint16_t id = channel_ids::list(channelId);
    if (id != channel_ids::list(beforeId)) return kBadValue;
    Edit edit(*this);
    const List& before = edit.state().list(id);
    const auto moved = before.byId.find(channelId);
    const auto target = before.byId.find(beforeId);
    if (moved == before.byId.end() || target == before.byId.end()) return kNotFound;
    const size_t from = moved->second;
    const size_t to = target->second > from ? target->second - 1 : target->second;
    if (from == to) return kOk;
    const size_t low = std::min(from, to), high = std::max(from, to);
    const auto at = [&](size_t i) { return before.channels.begin() + static_cast<ptrdiff_t>(i); };
    std::vector<Channel> range(at(low), at(high + 1));
    if (from < to) {
        std::rotate(range.begin(), range.begin() + 1, range.end());
    } else {
        std::rotate(range.begin(), range.end() - 1, range.end());
    }
    ChannelChange change{ChannelChange::kChannels, id};
    for (size_t i = 0; i < range.size(); ++i) {
        range[i].number = at(low + i)->number;
        range[i].channelId = at(low + i)->channelId;
        change.records.push_back(range[i].recordId);
    }
    List& list = edit.list(id);
    for (const Channel& channel : range) edit.place(list, channel);
    edit.tell(std::move(change));
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::moveToEnd(uint32_t channelId) {
    const uint16_t id = channel_ids::list(channelId);
    Edit edit(*this);
    const Channel* found = edit.state().list(id).id(channelId);
    if (found == nullptr) return kNotFound;
    Channel channel = *found;
    List& list = edit.list(id);
    channel.number = list.freeNumber();
    if (channel.number == 0) return kRefused;
    channel.channelId = channel_ids::onePart(id, channel.number);
    edit.place(list, channel);
    edit.tell({ChannelChange::kChannels, id, 0, {channel.recordId}});
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::slide(uint16_t id, uint32_t fromNumber, int32_t offset) {
    Edit edit(*this);
    std::vector<Channel> moved;
    std::set<uint32_t> stay;
    for (const Channel& channel : edit.state().list(id).channels) {
        if (!channel_ids::isOnePart(channel.channelId)) continue;
        if (channel.number < fromNumber) {
            stay.insert(channel.number);
        } else {
            moved.push_back(channel);
        }
    }
    if (moved.empty() || offset == 0) return kOk;
    ChannelChange change{ChannelChange::kChannels, id};
    for (Channel& channel : moved) {
        const int64_t number = int64_t{channel.number} + offset;
        if (number < 1 || number > channel_ids::kMaximumNumber ||
            stay.count(static_cast<uint32_t>(number)) != 0) {
            return kBadValue;
        }
        channel.number = static_cast<uint32_t>(number);
        channel.channelId = channel_ids::onePart(id, channel.number);
        change.records.push_back(channel.recordId);
    }
    List& list = edit.list(id);
    for (const Channel& channel : moved) edit.place(list, channel);
    edit.tell(std::move(change));
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::merge(uint16_t id, const std::vector<Found>& found, bool exclusive,
                               Merged* merged) {
    if (id == 0 || id > channel_ids::kMaximumList) return kBadValue;
    Edit edit(*this);
    List& list = edit.list(id);
    Merged result;
    std::unordered_set<uint32_t> seenMultiplexes;
    std::unordered_set<uint32_t> seenChannels;
    ChannelChange change{ChannelChange::kChannels, id};
    // What was new until now is no longer.
    for (Channel& channel : list.channels) {
        if ((channel.flags & CHANNEL_FLAG_NEW) == 0) continue;
        channel.flags &= ~CHANNEL_FLAG_NEW;
        edit.storeChannel(channel);
    }
    uint32_t free = list.freeNumber();
    std::unordered_map<uint32_t, std::vector<uint32_t>> onMultiplex;
    for (const Channel& channel : list.channels) {
        onMultiplex[channel.multiplex].push_back(channel.recordId);
    }
    for (const Found& each : found) {
        Multiplex multiplex = each.multiplex;
        multiplex.list = id;
        multiplex.name = cut(multiplex.name, 127);
        const auto known =
                std::find_if(list.multiplexes.begin(), list.multiplexes.end(),
                             [&](const Multiplex& m) { return sameReception(m, multiplex); });
        if (known != list.multiplexes.end()) {
            multiplex.recordId = known->recordId;
            if (multiplex.network == 0) multiplex.network = known->network;
            *known = multiplex;
        } else {
            multiplex.recordId = list.nextMultiplex++;
            list.multiplexes.push_back(multiplex);
        }
        edit.storeMultiplex(multiplex);
        seenMultiplexes.insert(multiplex.recordId);

        for (const Channel& service : each.services) {
            const Channel* was = nullptr;
            for (const uint32_t record : onMultiplex[multiplex.recordId]) {
                const Channel& candidate = list.channels[list.byRecord.at(record)];
                if (candidate.serviceId == service.serviceId) was = &candidate;
            }
            Channel channel = service;
            channel.list = id;
            channel.multiplex = multiplex.recordId;
            channel.originalNetworkId = multiplex.originalNetworkId;
            channel.streamId = multiplex.streamId;
            channel.name = cut(channel.name, 127);
            channel.provider = cut(channel.provider, 63);
            channel.language = cut(channel.language, 3);
            channel.flags &= ~(CHANNEL_FLAGS_FAVOURITE | CHANNEL_FLAG_RENAMED);
            if (was != nullptr) {
                // The user's: number, visibility, lock, skipping, favourites, name.
                constexpr uint32_t kUsers = CHANNEL_FLAG_VISIBLE | CHANNEL_FLAG_LOCKED |
                                            CHANNEL_FLAG_SKIPPED | CHANNEL_FLAG_RENAMED |
                                            CHANNEL_FLAGS_FAVOURITE;
                channel.recordId = was->recordId;
                channel.channelId = was->channelId;
                channel.number = was->number;
                channel.flags = (channel.flags & ~kUsers) | (was->flags & kUsers);
                if ((was->flags & CHANNEL_FLAG_RENAMED) != 0) channel.name = was->name;
                ++result.updated;
            } else {
                channel.channelId = channel_ids::ofNumber(id, channel.number);
                if (channel.channelId == 0 || list.byId.count(channel.channelId) != 0) {
                    while (free != 0 && list.byId.count(channel_ids::onePart(id, free)) != 0) {
                        free = free < channel_ids::kMaximumNumber ? free + 1 : 0;
                    }
                    if (free == 0) {
                        ALOGW("list %u is full, services are left out", id);
                        break;
                    }
                    channel.number = free;
                    channel.channelId = channel_ids::onePart(id, free);
                }
                channel.recordId = list.nextRecord++;
                channel.flags |= CHANNEL_FLAG_NEW;
                onMultiplex[multiplex.recordId].push_back(channel.recordId);
                list.byId[channel.channelId] = list.channels.size();
                result.addedRecords.push_back(channel.recordId);
                ++result.added;
            }
            edit.place(list, channel);
            seenChannels.insert(channel.recordId);
            change.records.push_back(channel.recordId);
        }
    }
    if (exclusive) {
        std::vector<uint32_t> channels;
        for (const Channel& channel : list.channels) {
            if (seenChannels.count(channel.recordId) == 0) channels.push_back(channel.recordId);
        }
        std::vector<uint32_t> multiplexes;
        for (const Multiplex& multiplex : list.multiplexes) {
            if (seenMultiplexes.count(multiplex.recordId) == 0) {
                multiplexes.push_back(multiplex.recordId);
            }
        }
        result.removed = channels.size();
        edit.take(id, channels);
        edit.takeMultiplexes(id, multiplexes);
    }
    if (!change.records.empty()) edit.tell(std::move(change));
    edit.tell({ChannelChange::kMultiplexes, id});
    edit.commit();
    if (merged != nullptr) *merged = std::move(result);
    return kOk;
}

std::optional<Channel> ChannelDatabase::current() const {
    const auto now = state();
    const Channel* channel = now->channel(now->current);
    return channel != nullptr ? std::optional<Channel>(*channel) : std::nullopt;
}

std::optional<Channel> ChannelDatabase::secondCurrent() const {
    const auto now = state();
    const Channel* channel = now->channel(now->second);
    return channel != nullptr ? std::optional<Channel>(*channel) : std::nullopt;
}

int32_t ChannelDatabase::setCurrent(uint32_t channelId) {
    Edit edit(*this);
    const Channel* channel = edit.state().list(channel_ids::list(channelId)).id(channelId);
    if (channel == nullptr && channelId != 0) return kNotFound;
    edit.state().current = channel != nullptr ? State::Reference{channel->list, channel->recordId}
                                              : State::Reference{};
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::setSecondCurrent(uint32_t channelId) {
    Edit edit(*this);
    const Channel* channel = edit.state().list(channel_ids::list(channelId)).id(channelId);
    if (channel == nullptr && channelId != 0) return kNotFound;
    edit.state().second = channel != nullptr ? State::Reference{channel->list, channel->recordId}
                                             : State::Reference{};
    edit.commit();
    return kOk;
}

std::vector<Multiplex> ChannelDatabase::multiplexes(uint16_t id) const {
    return list(id)->multiplexes;
}

std::optional<Multiplex> ChannelDatabase::multiplex(uint16_t id, uint32_t recordId) const {
    return copyOf(list(id)->multiplexes, recordId);
}

int32_t ChannelDatabase::putMultiplex(const Multiplex& multiplex, bool quiet, uint32_t* recordId) {
    Edit edit(*this);
    uint32_t record = 0;
    const int32_t code = edit.putMultiplex(multiplex, quiet, &record);
    if (code != kOk) return code;
    edit.commit();
    if (recordId != nullptr) *recordId = record;
    return kOk;
}

int32_t ChannelDatabase::removeMultiplexes(uint16_t id, const std::vector<uint32_t>& recordIds) {
    Edit edit(*this);
    const List& before = edit.state().list(id);
    for (const uint32_t record : recordIds) {
        if (recordIn(before.multiplexes, record) == before.multiplexes.end()) return kNotFound;
    }
    if (recordIds.empty()) return kOk;
    edit.takeMultiplexes(id, recordIds);
    edit.commit();
    return kOk;
}

std::vector<Satellite> ChannelDatabase::satellites() const {
    return state()->satellites;
}

std::optional<Satellite> ChannelDatabase::satellite(uint32_t recordId) const {
    return copyOf(state()->satellites, recordId);
}

int32_t ChannelDatabase::putSatellite(const Satellite& given, bool quiet, uint32_t* recordId) {
    Satellite satellite = given;
    if (satellite.position < -1800 || satellite.position > 1800 || satellite.switchPort > 16 ||
        satellite.name.empty()) {
        return kBadValue;
    }
    satellite.name = cut(satellite.name, 127);
    Edit edit(*this);
    auto& all = edit.state().satellites;
    if (satellite.recordId == 0) {
        satellite.recordId = all.empty() ? 1 : all.back().recordId + 1;
        all.push_back(satellite);
    } else {
        const auto known = recordIn(all, satellite.recordId);
        if (known == all.end()) return kNotFound;
        *known = satellite;
    }
    edit.storeSatellite(satellite);
    edit.tell({ChannelChange::kSatellites, kSatelliteList, 0, {satellite.recordId}, quiet});
    edit.commit();
    if (recordId != nullptr) *recordId = satellite.recordId;
    return kOk;
}

int32_t ChannelDatabase::removeSatellite(uint32_t recordId) {
    Edit edit(*this);
    auto& all = edit.state().satellites;
    if (recordId != 0 && recordIn(all, recordId) == all.end()) return kNotFound;
    const auto concerned = [&](uint32_t satellite) {
        return satellite != 0 && (recordId == 0 || satellite == recordId);
    };
    List& list = edit.list(kSatelliteList);
    std::vector<uint32_t> multiplexes;
    for (const Multiplex& multiplex : list.multiplexes) {
        if (concerned(multiplex.satellite)) multiplexes.push_back(multiplex.recordId);
    }
    edit.takeMultiplexes(kSatelliteList, multiplexes);
    for (auto network = list.networks.begin(); network != list.networks.end();) {
        if (concerned(network->satellite)) {
            edit.erase("DELETE FROM networks WHERE list = ? AND record = ?",
                       {kSatelliteList, network->recordId});
            network = list.networks.erase(network);
        } else {
            ++network;
        }
    }
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const Satellite& s) { return concerned(s.recordId); }),
              all.end());
    edit.erase("DELETE FROM satellites WHERE ?1 = 0 OR record = ?1", {recordId});
    edit.tell({ChannelChange::kSatellites, kSatelliteList, 0, {recordId}});
    edit.commit();
    return kOk;
}

std::vector<Network> ChannelDatabase::networks(uint16_t id) const {
    return list(id)->networks;
}

std::optional<Network> ChannelDatabase::network(uint16_t id, uint32_t recordId) const {
    return copyOf(list(id)->networks, recordId);
}

int32_t ChannelDatabase::putNetwork(const Network& given, bool quiet, uint32_t* recordId) {
    Network network = given;
    const uint16_t id = network.list;
    if (id == 0 || id > channel_ids::kMaximumList) return kBadValue;
    network.name = cut(network.name, 127);
    Edit edit(*this);
    if (network.satellite != 0 &&
        recordIn(edit.state().satellites, network.satellite) == edit.state().satellites.end()) {
        return kBadValue;
    }
    List& list = edit.list(id);
    if (network.recordId == 0) {
        network.recordId = list.nextNetwork++;
        list.networks.push_back(network);
    } else {
        const auto known = recordIn(list.networks, network.recordId);
        if (known == list.networks.end()) return kNotFound;
        *known = network;
    }
    edit.storeNetwork(network);
    edit.tell({ChannelChange::kNetworks, id, 0, {network.recordId}, quiet});
    edit.commit();
    if (recordId != nullptr) *recordId = network.recordId;
    return kOk;
}

int32_t ChannelDatabase::removeNetwork(uint16_t id, uint32_t recordId) {
    Edit edit(*this);
    const List& before = edit.state().list(id);
    if (recordId != 0 && recordIn(before.networks, recordId) == before.networks.end()) {
        return kNotFound;
    }
    List& list = edit.list(id);
    if (recordId == 0) {
        list.networks.clear();
    } else {
        list.networks.erase(recordIn(list.networks, recordId));
    }
    edit.erase("DELETE FROM networks WHERE list = ?1 AND (?2 = 0 OR record = ?2)", {id, recordId});
    for (Multiplex& multiplex : list.multiplexes) {
        if (multiplex.network == 0 || (recordId != 0 && multiplex.network != recordId)) continue;
        multiplex.network = 0;
        edit.storeMultiplex(multiplex);
    }
    edit.tell({ChannelChange::kNetworks, id, 0, {recordId}});
    edit.commit();
    return kOk;
}

std::vector<ChannelDatabase::Favourite> ChannelDatabase::favourites(uint32_t index) const {
    return index < kFavouriteLists ? state()->favourites[index] : std::vector<Favourite>();
}

std::vector<Channel> ChannelDatabase::favouriteChannels(uint32_t index, uint16_t only,
                                                        const ChannelQuery& query) const {
    std::vector<Channel> found;
    if (index >= kFavouriteLists) return found;
    const auto now = state();
    for (const Favourite& favourite : now->favourites[index]) {
        if (only != 0 && favourite.list != only) continue;
        const List& list = now->list(favourite.list);
        const Channel* channel = list.record(favourite.recordId);
        if (channel != nullptr && list.matches(query, *channel)) found.push_back(*channel);
    }
    return found;
}

int32_t ChannelDatabase::setFavourites(uint32_t index, const std::vector<Favourite>& favourites) {
    if (index >= kFavouriteLists) return kNotFound;
    Edit edit(*this);
    std::set<std::pair<uint16_t, uint32_t>> seen;
    for (const Favourite& favourite : favourites) {
        if (edit.state().list(favourite.list).record(favourite.recordId) == nullptr) {
            return kNotFound;
        }
        if (!seen.insert({favourite.list, favourite.recordId}).second) return kBadValue;
    }
    if (edit.state().favourites[index] == favourites) return kOk;
    edit.state().favourites[index] = favourites;
    edit.storeFavourites(index);
    edit.flagFavourites();
    edit.tell({ChannelChange::kFavourites, static_cast<uint16_t>(index)});
    edit.commit();
    return kOk;
}

uint32_t ChannelDatabase::currentFavouriteList() const {
    return state()->favouriteList;
}

int32_t ChannelDatabase::setCurrentFavouriteList(uint32_t index) {
    if (index >= kFavouriteLists) return kNotFound;
    Edit edit(*this);
    edit.state().favouriteList = index;
    edit.storeState("favourite_list", index);
    edit.tell({ChannelChange::kFavourites, static_cast<uint16_t>(index)});
    edit.commit();
    return kOk;
}

std::vector<BissKey> ChannelDatabase::bissKeys() const {
    return state()->keys;
}

int32_t ChannelDatabase::putBissKey(const BissKey& given, uint32_t* recordId) {
    BissKey key = given;
    if ((!key.key.empty() && key.key.size() != 8) || key.polarisation > Polarisation::kRight ||
        key.position < -1800 || key.position > 1800 || key.frequencyKHz == 0) {
        return kBadValue;
    }
    Edit edit(*this);
    auto& all = edit.state().keys;
    if (key.recordId == 0) {
        key.recordId = all.empty() ? 1 : all.back().recordId + 1;
        all.push_back(key);
    } else {
        const auto known = recordIn(all, key.recordId);
        if (known == all.end()) return kNotFound;
        *known = key;
    }
    edit.storeKey(key);
    edit.tell({ChannelChange::kBissKeys, kSatelliteList, 0, {key.recordId}});
    edit.commit();
    if (recordId != nullptr) *recordId = key.recordId;
    return kOk;
}

int32_t ChannelDatabase::removeBissKey(uint32_t recordId) {
    Edit edit(*this);
    auto& all = edit.state().keys;
    if (recordId != 0 && recordIn(all, recordId) == all.end()) return kNotFound;
    all.erase(std::remove_if(
                      all.begin(), all.end(),
                      [&](const BissKey& k) { return recordId == 0 || k.recordId == recordId; }),
              all.end());
    edit.erase("DELETE FROM biss_keys WHERE ?1 = 0 OR record = ?1", {recordId});
    edit.tell({ChannelChange::kBissKeys, kSatelliteList, 0, {recordId}});
    edit.commit();
    return kOk;
}

std::optional<BissKey> ChannelDatabase::bissKeyFor(const Channel& channel) const {
    const auto now = state();
    const Multiplex& multiplex = now->list(channel.list).multiplexOf(channel);
    const auto satellite = recordIn(now->satellites, multiplex.satellite);
    if (satellite == now->satellites.end()) return std::nullopt;
    const BissKey* best = nullptr;
    for (const BissKey& key : now->keys) {
        const uint64_t hertz = uint64_t{key.frequencyKHz} * 1000;
        const uint64_t apart = hertz > multiplex.frequencyHz ? hertz - multiplex.frequencyHz
                                                             : multiplex.frequencyHz - hertz;
        if (!key.enabled || key.key.empty() || apart > 2000000 ||
            key.position != satellite->position || key.polarisation != multiplex.polarisation) {
            continue;
        }
        if (key.serviceId == channel.serviceId) return key;
        if (key.serviceId == 0 && best == nullptr) best = &key;
    }
    return best != nullptr ? std::optional<BissKey>(*best) : std::nullopt;
}

int32_t ChannelDatabase::clear(uint16_t id, bool streams) {
    Edit edit(*this);
    List& list = edit.list(id);
    list.channels.clear();
    if (streams) {
        list.multiplexes.clear();
        list.networks.clear();
    }
    list.order();
    edit.storeList(id);
    edit.tell({ChannelChange::kList, id});
    edit.commit();
    return kOk;
}

int32_t ChannelDatabase::reload(const std::string& region) {
    Edit edit(*this);
    fill(edit, region);
    edit.commit();
    return kOk;
}

void ChannelDatabase::fill(Edit& edit, const std::string& configured) {
    std::set<uint16_t> ids;
    for (const auto& each : edit.state().lists) ids.insert(each.first);
    const auto all = regions(configured);
    for (const Region& region : all) ids.insert(static_cast<uint16_t>(region.medium));
    for (const uint16_t id : ids) {
        List& list = edit.list(id);
        list.channels.clear();
        list.multiplexes.clear();
        list.networks.clear();
    }
    edit.state().satellites.clear();
    edit.erase("DELETE FROM satellites", {});

    std::map<uint16_t, std::vector<Channel>> services;
    for (const Region& region : all) {
        const auto id = static_cast<uint16_t>(region.medium);
        List& list = edit.list(id);
        uint32_t satellite = 0;
        if (region.medium == Medium::kSatellite) {
            satellite = static_cast<uint32_t>(edit.state().satellites.size() + 1);
            Satellite record;
            record.recordId = satellite;
            record.name = cut(region.satellite, 127);
            record.position = region.position;
            // A switch has four inputs; what is beyond needs a motor.
            record.switchPort = static_cast<uint8_t>(satellite <= 4 ? satellite : 0);
            edit.storeSatellite(record);
            edit.state().satellites.push_back(record);
        }
        const uint32_t network = list.nextNetwork++;
        list.networks.push_back({id, network, region.multiplexes.front().networkId, satellite,
                                 cut(region.name, 127)});
        for (const Multiplex& transponder : region.multiplexes) {
            if (transponder.list != id) continue;
            Multiplex multiplex = transponder;
            multiplex.recordId = list.nextMultiplex++;
            multiplex.satellite = satellite;
            multiplex.network = network;
            for (Channel& service : generateServices(region, multiplex)) {
                service.multiplex = multiplex.recordId;
                services[id].push_back(std::move(service));
            }
            list.multiplexes.push_back(std::move(multiplex));
        }
    }
    for (auto& [id, found] : services) {
        List& list = edit.list(id);
        std::stable_sort(found.begin(), found.end(),
                         [](const Channel& a, const Channel& b) { return a.type < b.type; });
        std::unordered_set<uint32_t> taken;
        uint32_t free = 1;
        for (Channel& channel : found) {
            channel.channelId = channel_ids::ofNumber(id, channel.number);
            if (channel.channelId == 0 || taken.count(channel.channelId) != 0) {
                if (free > channel_ids::kMaximumNumber) {
                    ALOGW("list %u is full, services are left out", id);
                    break;
                }
                channel.number = free++;
                channel.channelId = channel_ids::onePart(id, channel.number);
            }
            taken.insert(channel.channelId);
            channel.recordId = list.nextRecord++;
            list.channels.push_back(std::move(channel));
        }
    }
    for (const uint16_t id : ids) {
        edit.list(id).order();
        edit.storeList(id);
        edit.tell({ChannelChange::kList, id});
    }
    edit.state().current = {};
    edit.state().second = {};
    for (const auto& [id, list] : edit.state().lists) {
        if (list->channels.empty()) continue;
        edit.state().current = {id, list->channels.front().recordId};
        break;
    }
    edit.storeState("region", 0, configured);
    edit.tell({ChannelChange::kSatellites, kSatelliteList});
}

std::shared_ptr<const ChannelDatabase::Snapshot> ChannelDatabase::snapshot(uint16_t id) const {
    const auto now = state();
    const auto found = now->lists.find(id);
    return std::make_shared<Snapshot>(
            Snapshot{id,
                     found != now->lists.end() ? found->second : std::make_shared<const List>(),
                     now->favourites,
                     {}});
}

std::shared_ptr<const ChannelDatabase::Snapshot> ChannelDatabase::satelliteSnapshot() const {
    return std::make_shared<Snapshot>(Snapshot{kSatelliteList, nullptr, {}, state()->satellites});
}

int32_t ChannelDatabase::restore(const Snapshot& snapshot) {
    Edit edit(*this);
    if (snapshot.list == nullptr) {
        edit.erase("DELETE FROM satellites", {});
        edit.state().satellites = snapshot.satellites;
        for (const Satellite& satellite : snapshot.satellites) edit.storeSatellite(satellite);
        edit.tell({ChannelChange::kSatellites, kSatelliteList});
    } else {
        List& list = edit.list(snapshot.id);
        list.channels = snapshot.list->channels;
        list.multiplexes = snapshot.list->multiplexes;
        list.networks = snapshot.list->networks;
        list.order();
        edit.storeList(snapshot.id);
        for (uint32_t i = 0; i < kFavouriteLists; ++i) {
            // In the order of the snapshot; of other lists what is a favourite now.
            auto& now = edit.state().favourites[i];
            std::vector<Favourite> then = snapshot.favourites[i];
            const auto has = [](const std::vector<Favourite>& in, const Favourite& f) {
                return std::find(in.begin(), in.end(), f) != in.end();
            };
            then.erase(std::remove_if(then.begin(), then.end(),
                                      [&](const Favourite& f) {
                                          return f.list != snapshot.id && !has(now, f);
                                      }),
                       then.end());
            for (const Favourite& f : now) {
                if (f.list != snapshot.id && !has(then, f)) then.push_back(f);
            }
            if (then == now) continue;
            now = then;
            edit.storeFavourites(i);
            edit.tell({ChannelChange::kFavourites, static_cast<uint16_t>(i)});
        }
        edit.flagFavourites();
        edit.tell({ChannelChange::kList, snapshot.id});
    }
    edit.commit();
    return kOk;
}

uint16_t ChannelDatabase::listOf(const Snapshot& snapshot) {
    return snapshot.id;
}

uint32_t ChannelDatabase::listMode() const {
    return state()->mode;
}

int32_t ChannelDatabase::setListMode(uint32_t mode) {
    if (mode > CHANNEL_LIST_MODE_ONE) return kBadValue;
    Edit edit(*this);
    if (edit.state().mode == mode) return kOk;
    edit.state().mode = mode;
    edit.storeState("mode", mode);
    edit.tell({ChannelChange::kListMode, static_cast<uint16_t>(mode)});
    edit.commit();
    return kOk;
}

uint32_t ChannelDatabase::version(uint16_t id) const {
    return list(id)->version;
}

uint32_t ChannelDatabase::pumpVersion(uint16_t id) const {
    return list(id)->pumpVersion;
}

int32_t ChannelDatabase::setPumpVersion(uint16_t id, uint32_t version) {
    Edit edit(*this);
    edit.list(id).pumpVersion = version;
    edit.commit();
    return kOk;
}

}  // namespace qeltvd
