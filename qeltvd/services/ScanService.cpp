#define LOG_TAG "qeltvd"

#include "ScanService.h"

#include <algorithm>

#include "Code.h"
#include "Stored.h"
#include "Text.h"

namespace qeltvd {

namespace {

bool isAny(DeliverySystem) {
    return true;
}
bool isAtsc(DeliverySystem system) {
    return broadcastTypeOf(system) == BroadcastType::kAtsc;
}
bool isIsdb(DeliverySystem system) {
    return broadcastTypeOf(system) == BroadcastType::kIsdb;
}
bool isDvbT(DeliverySystem system) {
    return system == DeliverySystem::kDvbT || system == DeliverySystem::kDvbT2;
}
bool isDvbC(DeliverySystem system) {
    return system == DeliverySystem::kDvbC;
}
bool isDvbS(DeliverySystem system) {
    return system == DeliverySystem::kDvbS || system == DeliverySystem::kDvbS2;
}

std::string counted(int32_t count, const char* what) {
    return std::to_string(count) + " " + what;
}

}  // namespace

ScanService::ScanService(const ChannelDatabase& channels, const ConfigItems& config,
                         const Ratings& ratings, Scanner& scanner,
                         std::function<Code(uint32_t)> goTo)
        : mChannels(channels),
          mConfig(config),
          mRatings(ratings),
          mScanner(scanner),
          mGoTo(std::move(goTo)) {}

/** Placeholders are the channels that zapping leaves out. */
Return<int32_t> ScanService::a_hidl_qeltvapi_scan_select_crnt_or_first_channel(bool skip_fake) {
    const auto query = skip_fake ? ChannelQuery::zapping() : ChannelQuery();
    const auto current = mChannels.current();
    if (current && mChannels.indexOf(current->channelId, query)) return kOk;
    for (const uint16_t list : mChannels.lists()) {
        const auto first = mChannels.byIndex(list, query, 0);
        if (first) return stored([&] { return mGoTo(first->channelId); });
    }
    return kNotFound;
}

Return<bool> ScanService::a_hidl_qeltvapi_is_scan_active() {
    return mScanner.active();
}

Return<int32_t> ScanService::a_hidl_qeltvapi_start_scan(uint64_t scan_arg, bool flag) {
    return mScanner.start(scan_arg, flag);
}

Return<int32_t> ScanService::a_hidl_qeltvapi_cancel_scan() {
    return mScanner.cancel();
}

Return<int32_t> ScanService::a_hidl_qeltvapi_get_market_region() {
    switch (mRatings.system()) {
        case RatingSystem::kUnitedStates:
        case RatingSystem::kCanada:
            return QELTV_MARKET_NORTH_AMERICA;
        case RatingSystem::kIsdb:
            return QELTV_MARKET_LATIN_AMERICA;
        case RatingSystem::kDvb:
            break;
    }
    return QELTV_MARKET_EUROPE;
}

Return<int32_t> ScanService::a_hidl_qeltvapi_set_atsc_scan_param(
        uint64_t, const HIDL_ATSC_SCAN_PARAM_T& param) {
    return mScanner.setRange({param.ui4_first_scan_index, param.ui4_end_scan_index,
                              param.ui4_mod_mask, param.ui4_freq_plan, false});
}

Return<int32_t> ScanService::a_hidl_qeltvapi_set_isdb_scan_param(
        uint64_t, const HIDL_ISDB_SCAN_PARAM_T& param) {
    if (param.ui4_configFlag > QELTV_ISDB_NO_RADIO) return kBadValue;
    return mScanner.setRange({param.ui4_first_scan_index, param.ui4_end_scan_index, 0, 0,
                              param.ui4_configFlag == QELTV_ISDB_NO_RADIO});
}

void ScanService::exchange(const Data& data, Belongs belongs, const Reply& reply) {
    std::vector<Multiplex> own;
    for (const Scanner::Stop& stop : mScanner.stops()) {
        if (belongs(stop.multiplex.system)) own.push_back(stop.multiplex);
    }
    if (own.empty()) {
        reply(data, kRefused);
        return;
    }
    switch (data.size() != 0 ? data[0] : 0) {
        case QELTV_EXCHANGE_STATUS: {
            const Scanner::Status status = mScanner.status();
            reply(Data{QELTV_EXCHANGE_STATUS, status.state, status.percent,
                       static_cast<int32_t>(status.kHz), status.index, status.count,
                       status.television, status.radio, status.added},
                  kOk);
            return;
        }
        case QELTV_EXCHANGE_RANGE: {
            if (data.size() != 3 || data[1] < 0 || data[2] < data[1]) break;
            Scanner::Range range;
            range.first = static_cast<uint32_t>(data[1]);
            range.last = static_cast<uint32_t>(data[2]);
            reply(data, mScanner.setRange(range));
            return;
        }
        case QELTV_EXCHANGE_TRANSPONDER: {
            if (data.size() != 2) break;
            if (data[1] < 0 || static_cast<size_t>(data[1]) >= own.size()) {
                reply(data, kNotFound);
                return;
            }
            const Multiplex& multiplex = own[static_cast<size_t>(data[1])];
            const uint32_t width =
                    multiplex.symbolRate != 0 ? multiplex.symbolRate : multiplex.bandwidthHz;
            reply(Data{QELTV_EXCHANGE_TRANSPONDER, data[1],
                       static_cast<int32_t>(multiplex.frequencyHz / 1000),
                       static_cast<int32_t>(width), static_cast<int32_t>(multiplex.modulation),
                       static_cast<int32_t>(multiplex.system)},
                  kOk);
            return;
        }
        case QELTV_EXCHANGE_COUNT:
            reply(Data{QELTV_EXCHANGE_COUNT, static_cast<int32_t>(own.size())}, kOk);
            return;
        default:
            break;
    }
    reply(data, kBadValue);
}

Return<void> ScanService::a_hidl_qeltvapi_atsc_exchange_data(
        const Data& data, a_hidl_qeltvapi_atsc_exchange_data_cb reply) {
    exchange(data, isAtsc, reply);
    return Void();
}

Return<void> ScanService::a_hidl_qeltvapi_isdb_exchange_data(
        const Data& data, a_hidl_qeltvapi_isdb_exchange_data_cb reply) {
    exchange(data, isIsdb, reply);
    return Void();
}

Return<void> ScanService::a_hidl_scan_ce_exchange_data(const Data& data,
                                                       a_hidl_scan_ce_exchange_data_cb reply) {
    exchange(data, isAny, reply);
    return Void();
}

Return<void> ScanService::a_hidl_scan_dtmb_exchange_data(const Data& data,
                                                         a_hidl_scan_dtmb_exchange_data_cb reply) {
    reply(data, kUnsupported);
    return Void();
}

Return<void> ScanService::a_hidl_scan_pal_secam_exchange_data(
        const Data& data, a_hidl_scan_pal_secam_exchange_data_cb reply) {
    reply(data, kUnsupported);
    return Void();
}

Return<void> ScanService::a_hidl_scan_dvbs_exchange_data(const Data& data,
                                                         a_hidl_scan_dvbs_exchange_data_cb reply) {
    exchange(data, isDvbS, reply);
    return Void();
}

Return<void> ScanService::a_hidl_scan_dvbc_exchange_data(const Data& data,
                                                         a_hidl_scan_dvbc_exchange_data_cb reply) {
    exchange(data, isDvbC, reply);
    return Void();
}

Return<void> ScanService::a_hidl_scan_dvbt_exchange_data(const Data& data,
                                                         a_hidl_scan_dvbt_exchange_data_cb reply) {
    exchange(data, isDvbT, reply);
    return Void();
}

/** What became of the last scan. */
Return<void> ScanService::a_hidl_qeltvapi_get_user_message(
        const String&, uint32_t capacity, a_hidl_qeltvapi_get_user_message_cb reply) {
    const Scanner::Status status = mScanner.status();
    const char* begins[] = {"No scan yet", "Scan runs", "Scan complete", "Scan cancelled",
                            "Scan failed"};
    std::string text = begins[status.state];
    if (status.state != QELTV_SCAN_STATE_IDLE) {
        text += ": " + counted(status.television, "television and ") +
                counted(status.radio, "radio services, ") + counted(status.added, "new");
        if (status.silent != 0) {
            text += ", " + counted(status.silent, "transponders without a signal");
        }
    }
    text = cut(text, capacity);
    reply(text, static_cast<uint32_t>(text.size()), kOk);
    return Void();
}

Return<void> ScanService::a_hidl_qeltvapi_scan_dvbc_get_str_data(
        uint32_t id, const String&, int32_t capacity,
        a_hidl_qeltvapi_scan_dvbc_get_str_data_cb reply) {
    std::string text;
    switch (id) {
        case QELTV_SCAN_TEXT_REGION:
            text = mConfig.text("channels.region");
            break;
        case QELTV_SCAN_TEXT_COUNTRY:
            text = mConfig.text("channels.country");
            break;
        case QELTV_SCAN_TEXT_TRANSPONDER:
            text = mScanner.status().transponder;
            break;
        default:
            reply("", 0, kNotFound);
            return Void();
    }
    text = cut(text, static_cast<size_t>(std::max(0, capacity)));
    reply(text, static_cast<int32_t>(text.size()), kOk);
    return Void();
}

}  // namespace qeltvd
