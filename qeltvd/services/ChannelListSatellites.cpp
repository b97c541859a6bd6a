#define LOG_TAG "qeltvd"

#include <hwbinder/IPCThreadState.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "ChannelIds.h"
#include "ChannelListService.h"
#include "Code.h"
#include "Descrambler.h"

namespace qeltvd {

using android::hardware::IPCThreadState;

using Service = ChannelListService;

namespace {

/** Most records that a reply carries. */
constexpr uint32_t kVectorRecords = 1000;

constexpr bool isSatelliteList(uint32_t list) {
    return list == CHANNEL_LIST_SATELLITE;
}

constexpr uint16_t listId(uint32_t list) {
    return list <= channel_ids::kMaximumList ? static_cast<uint16_t>(list) : uint16_t{0};
}

/** `notified` is a client's wish that clients are notified. */
constexpr Audience audienceOf(bool notified) {
    return notified ? Audience::kEveryone : Audience::kTelevision;
}

template <class T, class Reply>
void replyRecord(const std::optional<T>& record, const Reply& reply) {
    reply(record ? bytesOf(pack(*record)) : Bytes(), record ? kOk : kNotFound);
}

template <class T>
std::optional<T> at(const std::vector<T>& all, uint32_t index) {
    return index < all.size() ? std::optional<T>(all[index]) : std::nullopt;
}

template <class T>
std::vector<T> ofSatellite(std::vector<T> all, uint32_t satellite) {
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const T& each) { return each.satellite != satellite; }),
              all.end());
    return all;
}

/** Records from an index on, one behind the other. */
template <class T, class Reply>
void replyRecords(const std::vector<T>& all, uint32_t first, uint32_t count, const Reply& reply) {
    if (count > kVectorRecords) {
        reply(Bytes(), kBadValue);
        return;
    }
    const size_t from = std::min<size_t>(first, all.size());
    const size_t some = std::min<size_t>(count, all.size() - from);
    using Record = decltype(pack(std::declval<T>()));
    std::vector<Record> records;
    for (size_t i = 0; i < some; ++i) records.push_back(pack(all[from + i]));
    reply(bytesOf(records), some == 0 && count != 0 ? kNotFound : kOk);
}

template <class T, class Wanted, class Reply>
void replyRecordId(const std::vector<T>& all, const Wanted& wanted, const Reply& reply) {
    const auto found = std::find_if(all.begin(), all.end(), wanted);
    reply(found != all.end() ? found->recordId : 0, found != all.end() ? kOk : kNotFound);
}

}  // namespace

// Satellites

Return<int32_t> Service::a_hidl_qeltvapi_satllist_lock_database(uint32_t list) {
    if (!isSatelliteList(list)) return kNotFound;
    return mLocks.lock(DatabaseLocks::Database::kSatellites, list,
                       IPCThreadState::self()->getCallingPid(), DatabaseLocks::Access::kWrite);
}

Return<int32_t> Service::a_hidl_qeltvapi_satllist_unlock_database(uint32_t list) {
    if (!isSatelliteList(list)) return kNotFound;
    return mLocks.unlock(DatabaseLocks::Database::kSatellites, list,
                         IPCThreadState::self()->getCallingPid(), DatabaseLocks::Access::kWrite);
}

Return<int32_t> Service::a_hidl_qeltvapi_satllist_read_lock_database(uint32_t list) {
    if (!isSatelliteList(list)) return kNotFound;
    return mLocks.lock(DatabaseLocks::Database::kSatellites, list,
                       IPCThreadState::self()->getCallingPid(), DatabaseLocks::Access::kRead);
}

Return<int32_t> Service::a_hidl_qeltvapi_satllist_read_unlock_database(uint32_t list) {
    if (!isSatelliteList(list)) return kNotFound;
    return mLocks.unlock(DatabaseLocks::Database::kSatellites, list,
                         IPCThreadState::self()->getCallingPid(), DatabaseLocks::Access::kRead);
}

Return<int32_t> Service::a_hidl_qeltvapi_satllist_clean(uint32_t list) {
    if (!isSatelliteList(list)) return kNotFound;
    return change(DatabaseLocks::Database::kSatellites, list,
                  [&] { return mChannels.removeSatellite(0); });
}

Return<void> Service::a_hidl_qeltvapi_satllist_get_rec(uint32_t list, uint32_t recordId,
                                                       a_hidl_qeltvapi_satllist_get_rec_cb reply) {
    replyRecord(isSatelliteList(list) ? mChannels.satellite(recordId) : std::nullopt, reply);
    return Void();
}

/** Record id 0 adds a satellite; `notified`: clients are notified. */
Return<int32_t> Service::a_hidl_qeltvapi_satllist_update_rec(uint32_t list, const Bytes& rec,
                                                             bool notified) {
    const auto record = recordOf<satellite_record_t>(rec);
    if (!record) return kBadValue;
    if (!isSatelliteList(list)) return kNotFound;
    return change(DatabaseLocks::Database::kSatellites, list, [&] {
        return mChannels.putRecord(unpack(*record), audienceOf(notified)).code();
    });
}

Return<void> Service::a_hidl_qeltvapi_satllist_get_num_recs(
        uint32_t list, a_hidl_qeltvapi_satllist_get_num_recs_cb reply) {
    const bool known = isSatelliteList(list);
    reply(known ? static_cast<uint32_t>(mChannels.satellites().size()) : 0,
          known ? kOk : kNotFound);
    return Void();
}

/** By position in tenths of a degree, east positive. */
Return<void> Service::a_hidl_qeltvapi_satllist_qry_rec_id(
        uint32_t list, uint32_t position, a_hidl_qeltvapi_satllist_qry_rec_id_cb reply) {
    replyRecordId(
            isSatelliteList(list) ? mChannels.satellites() : std::vector<Satellite>(),
            [&](const Satellite& each) { return each.position == static_cast<int32_t>(position); },
            reply);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_satllist_del_rec(uint32_t list, uint32_t recordId) {
    if (!isSatelliteList(list) || recordId == 0) return kNotFound;
    return change(DatabaseLocks::Database::kSatellites, list,
                  [&] { return mChannels.removeSatellite(recordId); });
}

Return<void> Service::a_hidl_qeltvapi_satllist_get_rec_by_rec_idx(
        uint32_t list, uint32_t index, a_hidl_qeltvapi_satllist_get_rec_by_rec_idx_cb reply) {
    replyRecord(isSatelliteList(list) ? at(mChannels.satellites(), index) : std::nullopt, reply);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_satllist_create_snapshot(
        uint32_t list, a_hidl_qeltvapi_satllist_create_snapshot_cb reply) {
    if (!isSatelliteList(list)) {
        reply(0, kNotFound);
        return Void();
    }
    const uint32_t handle =
            mSnapshots.keep(mChannels.satelliteSnapshot(), IPCThreadState::self()->getCallingPid());
    reply(handle, handle != 0 ? kOk : kRefused);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_satllist_restore_snapshot(uint32_t snapshot) {
    return restore(snapshot, ChannelSnapshot::Kind::kSatellites);
}

Return<int32_t> Service::a_hidl_qeltvapi_satllist_free_snapshot(uint32_t snapshot) {
    return mSnapshots.release(snapshot, ChannelSnapshot::Kind::kSatellites);
}

// BISS keys

Return<void> Service::a_hidl_qeltvapi_bisskey_get_bsl_handle_by_bsl_id(
        uint32_t list, a_hidl_qeltvapi_bisskey_get_bsl_handle_by_bsl_id_cb reply) {
    const bool known = isSatelliteList(list);
    reply(known ? CHANNEL_HANDLE_BSL << 16 | list : 0, known ? kOk : kNotFound);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_bisskey_lock_database(uint32_t list) {
    if (!isSatelliteList(list)) return kNotFound;
    return mLocks.lock(DatabaseLocks::Database::kBissKeys, list,
                       IPCThreadState::self()->getCallingPid(), DatabaseLocks::Access::kWrite);
}

Return<int32_t> Service::a_hidl_qeltvapi_bisskey_unlock_database(uint32_t list) {
    if (!isSatelliteList(list)) return kNotFound;
    return mLocks.unlock(DatabaseLocks::Database::kBissKeys, list,
                         IPCThreadState::self()->getCallingPid(), DatabaseLocks::Access::kWrite);
}

namespace {

/** The keys that a header selects: every field that is not 0 counts; without frequency all. */
std::vector<BissKey> selected(std::vector<BissKey> all, const biss_header_t& header) {
    if (header.frequency_khz == 0) return all;
    all.erase(
            std::remove_if(
                    all.begin(), all.end(),
                    [&](const BissKey& key) {
                        return key.frequencyKHz != header.frequency_khz ||
                               key.position != header.position ||
                               static_cast<uint8_t>(key.polarisation) != header.polarisation ||
                               (header.symbol_rate != 0 && key.symbolRate != header.symbol_rate) ||
                               (header.service_id != 0 && key.serviceId != header.service_id);
                    }),
            all.end());
    return all;
}

/** The word of the answer is the record id. */
template <class Reply>
void replyKey(const std::vector<BissKey>& all, uint32_t index, const Reply& reply) {
    const auto key = at(all, index);
    reply(key ? bytesOf(pack(*key)) : Bytes(), key ? key->recordId : 0, key ? kOk : kNotFound);
}

/** Puts the sums into a key that has zeros for them. @return whether it is a key, or none */
bool completeKey(biss_record_t* record) {
    if (record->key_size == 0) return true;
    if (record->key_size != sizeof(record->key)) return false;
    const auto word = stream::controlWord(
            std::vector<uint8_t>(std::begin(record->key), std::end(record->key)));
    if (word) std::copy(word->begin(), word->end(), record->key);
    return word.has_value();
}

}  // namespace

/** The word is the number of keys in use. */
Return<void> Service::a_hidl_qeltvapi_bisskey_get_recs_number(
        uint32_t list, a_hidl_qeltvapi_bisskey_get_recs_number_cb reply) {
    if (!isSatelliteList(list)) {
        reply(0, 0, kNotFound);
        return Void();
    }
    const auto all = mChannels.bissKeys();
    const auto used = std::count_if(all.begin(), all.end(), [](const BissKey& key) {
        return key.enabled && !key.key.empty();
    });
    reply(static_cast<uint16_t>(all.size()), static_cast<uint32_t>(used), kOk);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id(
        uint32_t list, uint32_t recordId,
        a_hidl_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id_cb reply) {
    std::vector<BissKey> found;
    for (const BissKey& key : mChannels.bissKeys()) {
        if (isSatelliteList(list) && key.recordId == recordId) found.push_back(key);
    }
    replyKey(found, 0, reply);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_bisskey_get_bsl_rec_by_idx(
        uint32_t list, uint32_t index, a_hidl_qeltvapi_bisskey_get_bsl_rec_by_idx_cb reply) {
    replyKey(isSatelliteList(list) ? mChannels.bissKeys() : std::vector<BissKey>(), index, reply);
    return Void();
}

/** The word is as in get_recs_number. */
Return<void> Service::a_hidl_qeltvapi_bisskey_get_recs_number_by_header(
        uint32_t list, const Bytes& header,
        a_hidl_qeltvapi_bisskey_get_recs_number_by_header_cb reply) {
    const auto wanted = recordOf<biss_header_t>(header);
    if (!wanted || !isSatelliteList(list)) {
        reply(0, 0, wanted ? kNotFound : kBadValue);
        return Void();
    }
    const auto found = selected(mChannels.bissKeys(), *wanted);
    const auto used = std::count_if(found.begin(), found.end(), [](const BissKey& key) {
        return key.enabled && !key.key.empty();
    });
    reply(static_cast<uint16_t>(found.size()), static_cast<uint32_t>(used), kOk);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_bisskey_get_bsl_rec_by_header(
        uint32_t list, const Bytes& header, uint32_t index,
        a_hidl_qeltvapi_bisskey_get_bsl_rec_by_header_cb reply) {
    const auto wanted = recordOf<biss_header_t>(header);
    if (!wanted) {
        reply(Bytes(), 0, kBadValue);
        return Void();
    }
    replyKey(isSatelliteList(list) ? selected(mChannels.bissKeys(), *wanted)
                                   : std::vector<BissKey>(),
             index, reply);
    return Void();
}

/**
 * Operation 0 writes the record over that of its record id, or adds it when that is 0; operation 1
 * deletes the record of its record id. The word is the record id.
 */
Return<void> Service::a_hidl_qeltvapi_bisskey_set_bsl_rec_info(
        uint32_t list, uint32_t operation, const Bytes& rec,
        a_hidl_qeltvapi_bisskey_set_bsl_rec_info_cb reply) {
    auto record = recordOf<biss_record_t>(rec);
    if (!record || operation > CHANNEL_BISS_DELETE || !isSatelliteList(list) ||
        (operation == CHANNEL_BISS_WRITE && !completeKey(&*record))) {
        reply(0, record && !isSatelliteList(list) ? kNotFound : kBadValue);
        return Void();
    }
    uint32_t recordId = record->record_id;
    const Code code = change(DatabaseLocks::Database::kBissKeys, list, [&]() -> Code {
        if (operation == CHANNEL_BISS_WRITE) {
            // The counts of the interface have 16 bits.
            if (recordId == 0 && mChannels.bissKeys().size() >= UINT16_MAX) return kRefused;
            const Result<uint32_t> written = mChannels.putRecord(unpack(*record));
            recordId = written.valueOr(recordId);
            return written.code();
        }
        return recordId != 0 ? mChannels.removeBissKey(recordId) : kNotFound;
    });
    reply(code == kOk ? recordId : 0, code);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_bisskey_clean(uint32_t list) {
    if (!isSatelliteList(list)) return kNotFound;
    return change(DatabaseLocks::Database::kBissKeys, list,
                  [&] { return mChannels.removeBissKey(0); });
}

/** 1 when both are the same key for the same services, regardless of their record ids; else 0. */
Return<int32_t> Service::a_hidl_qeltvapi_bisskey_is_same_record(const Bytes& rec1,
                                                                const Bytes& rec2) {
    auto one = recordOf<biss_record_t>(rec1);
    auto other = recordOf<biss_record_t>(rec2);
    if (!one || !other) return kBadValue;
    one->record_id = other->record_id = 0;
    return memcmp(&*one, &*other, sizeof(*one)) == 0 ? 1 : 0;
}

/** For the transponder and service of the current channel if that is a satellite's. */
Return<void> Service::a_hidl_qeltvapi_bisskey_get_default_record(
        a_hidl_qeltvapi_bisskey_get_default_record_cb reply) {
    BissKey key;
    const auto pair = mChannels.currentPair();
    if (pair && pair->second.satellite != 0) {
        const auto satellite = mChannels.satellite(pair->second.satellite);
        key.frequencyKHz = static_cast<uint32_t>(pair->second.frequencyHz / 1000);
        key.symbolRate = pair->second.symbolRate;
        key.serviceId = pair->first.serviceId;
        key.position = static_cast<int16_t>(satellite ? satellite->position : 0);
        key.polarisation = pair->second.polarisation;
    }
    reply(bytesOf(pack(key)), kOk);
    return Void();
}

/** Notifies clients of the key that is in use. */
Return<int32_t> Service::a_hidl_qeltvapi_bisskey_set_key_for_current_channel() {
    const auto current = mChannels.current();
    if (!current) return kRefused;
    const auto key = mChannels.bissKeyFor(*current);
    if (!key) return kNotFound;
    mNotifier.event(&IQelTvApiCallback::a_hidl_qeltvapi_bisskey_update_callback_fct,
                    CHANNEL_BISS_IN_USE, {current->list, current->channelId, 0, key->recordId});
    return kOk;
}

// Transport streams

Return<int32_t> Service::a_hidl_qeltvapi_tsl_clean(uint32_t list) {
    return changeChannels(list, [&] {
        std::vector<uint32_t> records;
        for (const Multiplex& each : mChannels.multiplexes(listId(list))) {
            records.push_back(each.recordId);
        }
        return mChannels.removeMultiplexes(listId(list), records);
    });
}

Return<int32_t> Service::a_hidl_qeltvapi_tsl_del_rec(uint32_t list, uint32_t recordId) {
    return changeChannels(list,
                          [&] { return mChannels.removeMultiplexes(listId(list), {recordId}); });
}

/** By frequency in kHz. */
Return<void> Service::a_hidl_qeltvapi_tsl_qry_rec_id(uint32_t list, uint32_t frequency,
                                                     a_hidl_qeltvapi_tsl_qry_rec_id_cb reply) {
    replyRecordId(
            mChannels.multiplexes(listId(list)),
            [&](const Multiplex& each) { return each.frequencyHz / 1000 == frequency; }, reply);
    return Void();
}

/** From an index on so many records; the last value is ignored. */
Return<void> Service::a_hidl_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id(
        uint32_t list, uint32_t satellite, uint32_t first, uint32_t count, uint32_t,
        a_hidl_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id_cb reply) {
    replyRecords(ofSatellite(mChannels.multiplexes(listId(list)), satellite), first, count, reply);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id(
        uint32_t list, uint32_t satellite,
        a_hidl_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id_cb reply) {
    const auto all = ofSatellite(mChannels.multiplexes(listId(list)), satellite);
    reply(static_cast<uint32_t>(all.size()), listId(list) != 0 ? kOk : kNotFound);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_tsl_get_rec(uint32_t list, uint32_t recordId,
                                                  a_hidl_qeltvapi_tsl_get_rec_cb reply) {
    replyRecord(mChannels.multiplex(listId(list), recordId), reply);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_tsl_update_rec(uint32_t list, const Bytes& rec,
                                                        bool notified) {
    const auto record = recordOf<multiplex_record_t>(rec);
    if (!record) return kBadValue;
    return changeChannels(list, [&]() -> Code {
        if (record->list != list) return kBadValue;
        return mChannels.putRecord(unpack(*record), audienceOf(notified)).code();
    });
}

Return<void> Service::a_hidl_qeltvapi_tsl_get_num_recs(uint32_t list,
                                                       a_hidl_qeltvapi_tsl_get_num_recs_cb reply) {
    reply(static_cast<uint32_t>(mChannels.multiplexes(listId(list)).size()),
          listId(list) != 0 ? kOk : kNotFound);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_tsl_get_rec_by_rec_idx(
        uint32_t list, uint32_t index, a_hidl_qeltvapi_tsl_get_rec_by_rec_idx_cb reply) {
    replyRecord(at(mChannels.multiplexes(listId(list)), index), reply);
    return Void();
}

// Networks

Return<int32_t> Service::a_hidl_qeltvapi_nwl_clean(uint32_t list) {
    return changeChannels(list, [&] { return mChannels.removeNetwork(listId(list), 0); });
}

Return<int32_t> Service::a_hidl_qeltvapi_nwl_del_rec(uint32_t list, uint32_t recordId) {
    if (recordId == 0) return kNotFound;
    return changeChannels(list, [&] { return mChannels.removeNetwork(listId(list), recordId); });
}

/** By network id. */
Return<void> Service::a_hidl_qeltvapi_nwl_qry_rec_id(uint32_t list, uint32_t networkId,
                                                     a_hidl_qeltvapi_nwl_qry_rec_id_cb reply) {
    replyRecordId(
            mChannels.networks(listId(list)),
            [&](const Network& each) { return each.networkId == networkId; }, reply);
    return Void();
}

/** From an index on so many records; the last value is ignored. */
Return<void> Service::a_hidl_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id(
        uint32_t list, uint32_t satellite, uint32_t first, uint32_t count, uint32_t,
        a_hidl_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id_cb reply) {
    replyRecords(ofSatellite(mChannels.networks(listId(list)), satellite), first, count, reply);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id(
        uint32_t list, uint32_t satellite,
        a_hidl_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id_cb reply) {
    const auto all = ofSatellite(mChannels.networks(listId(list)), satellite);
    reply(static_cast<uint32_t>(all.size()), listId(list) != 0 ? kOk : kNotFound);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_nwl_get_rec(uint32_t list, uint32_t recordId,
                                                  a_hidl_qeltvapi_nwl_get_rec_cb reply) {
    replyRecord(mChannels.network(listId(list), recordId), reply);
    return Void();
}

Return<int32_t> Service::a_hidl_qeltvapi_nwl_update_rec(uint32_t list, const Bytes& rec,
                                                        bool notified) {
    const auto record = recordOf<network_record_t>(rec);
    if (!record) return kBadValue;
    return changeChannels(list, [&]() -> Code {
        if (record->list != list) return kBadValue;
        return mChannels.putRecord(unpack(*record), audienceOf(notified)).code();
    });
}

Return<void> Service::a_hidl_qeltvapi_nwl_get_num_recs(uint32_t list,
                                                       a_hidl_qeltvapi_nwl_get_num_recs_cb reply) {
    reply(static_cast<uint32_t>(mChannels.networks(listId(list)).size()),
          listId(list) != 0 ? kOk : kNotFound);
    return Void();
}

Return<void> Service::a_hidl_qeltvapi_nwl_get_rec_by_rec_idx(
        uint32_t list, uint32_t index, a_hidl_qeltvapi_nwl_get_rec_by_rec_idx_cb reply) {
    replyRecord(at(mChannels.networks(listId(list)), index), reply);
    return Void();
}

}  // namespace qeltvd
