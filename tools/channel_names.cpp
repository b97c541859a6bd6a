#include <algorithm>
#include <cstring>
#include <optional>

#include "channel_data.h"
#include "hw_qeltvapi_channellist.h"
#include "layouts/channel_ids.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {

std::string numberText(uint32_t number) {
    return number <= 0xffff ? std::to_string(number)
                            : std::to_string(number >> 16) + "." + std::to_string(number & 0xffff);
}

std::optional<uint32_t> numberIn(const std::string& text) {
    char* end = nullptr;
    if (text.empty() || !isdigit(static_cast<unsigned char>(text[0]))) return std::nullopt;
    const unsigned long major = strtoul(text.c_str(), &end, 10);
    if (*end == '\0') {
        return major <= 0xffff ? std::optional<uint32_t>(static_cast<uint32_t>(major))
                               : std::nullopt;
    }
    if (*end != '.' || !isdigit(static_cast<unsigned char>(end[1]))) return std::nullopt;
    const unsigned long minor = strtoul(end + 1, &end, 10);
    if (*end != '\0' || major == 0 || major > 0x3ff || minor > 0x3ff) return std::nullopt;
    return static_cast<uint32_t>(major << 16 | minor);
}

std::string channelIdText(uint32_t id) {
    char text[16];
    snprintf(text, sizeof(text), "0x%08x", id);
    return text;
}

std::string lower(std::string text) {
    // ASCII only: what is beyond has to be typed as it is.
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return c < 0x80 ? tolower(c) : c; });
    return text;
}

namespace {

std::vector<uint16_t> allLists() {
    std::vector<uint16_t> lists(
            static_cast<size_t>(check(a_qeltvapi_tvprovider_get_all_svlid_count(), "lists")));
    auto count = static_cast<uint16_t>(lists.size());
    check(a_qeltvapi_tvprovider_get_all_svlid(lists.data(), &count), "lists");
    lists.resize(std::min<size_t>(count, lists.size()));
    return lists;
}

/** Every channel that passes a filter, in batches; of a favourite list when it is not 0. */
std::vector<ChannelPair> readList(uint32_t list, uint32_t filter, uint32_t favourite) {
    constexpr uint32_t kBatch = 500;
    std::vector<channel_record_t> channels(kBatch);
    std::vector<multiplex_record_t> multiplexes(kBatch);
    std::vector<ChannelPair> all;
    for (;;) {
        check(a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(
                      list, static_cast<uint32_t>(all.size()), 0, 0, filter, 0, favourite, kBatch,
                      0, channels.data(), multiplexes.data()),
              "channel list");
        for (uint32_t i = 0; i < kBatch; ++i) {
            // Behind the last one there are zeros.
            if (channels[i].record_id == 0) return all;
            all.push_back({channels[i], multiplexes[i]});
        }
    }
}

/** The lists in which a number is looked up: the one of the current channel first. */
std::vector<uint16_t> listsInOrder() {
    std::vector<uint16_t> lists = allLists();
    ChannelPair current{};
    uint16_t list = 0;
    if (a_qeltvapi_channellist_get_current_channel(&list, &current.channel, &current.multiplex) ==
        0) {
        const auto found = std::find(lists.begin(), lists.end(), list);
        if (found != lists.end()) std::rotate(lists.begin(), found, found + 1);
    }
    return lists;
}

bool readChannel(uint32_t list, uint32_t id, ChannelPair* pair) {
    if (a_qeltvapi_channellist_get_svl_rec_by_channel_id(list, id, &pair->channel) != 0) {
        return false;
    }
    check(a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(list, pair->channel.record_id,
                                                               &pair->channel, &pair->multiplex),
          "channel " + channelIdText(id));
    return true;
}

std::optional<ChannelPair> byNumber(const std::vector<uint16_t>& lists, uint32_t number) {
    for (const uint16_t list : lists) {
        const int id = a_qeltvapi_channellist_gen_channel_id(
                list, number <= 0xffff ? number : number >> 16,
                number <= 0xffff ? 0 : number & 0xffff);
        ChannelPair pair{};
        if (id != 0 && readChannel(list, static_cast<uint32_t>(id), &pair)) return pair;
    }
    return std::nullopt;
}

/** "0x04000005", or the same in decimals; a number above 65535 is no channel number. */
std::optional<uint32_t> idIn(const std::string& text) {
    const bool hexadecimal = text.compare(0, 2, "0x") == 0;
    const char* const digits = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    const size_t begin = hexadecimal ? 2 : 0;
    if (text.size() == begin || text.size() > 12 ||
        text.find_first_not_of(digits, begin) != std::string::npos) {
        return std::nullopt;
    }
    const auto id = strtoull(text.c_str(), nullptr, hexadecimal ? 16 : 10);
    if (id > UINT32_MAX || (!hexadecimal && id <= QELTV_CHANNEL_NUMBER_MAXIMUM)) {
        return std::nullopt;
    }
    return static_cast<uint32_t>(id);
}

/** The one channel of a name in the lists; the name may be of another case. */
ChannelPair byName(const std::vector<uint16_t>& lists, const std::string& text,
                   const std::string& name) {
    std::vector<ChannelPair> found;
    std::vector<std::string> names;
    for (const uint16_t list : lists) {
        for (const ChannelPair& pair : readLists(std::to_string(list), CHANNEL_FILTER_HIDDEN, 0)) {
            names.push_back(textOf(pair.channel.name));
            if (lower(names.back()) == lower(name)) found.push_back(pair);
        }
    }
    if (found.empty()) {
        throw Failure(kRefused, "there is no channel " + text + suggestion(name, names));
    }
    if (found.size() == 1) return found[0];
    std::string all;
    for (const ChannelPair& pair : found) {
        all += (all.empty() ? "" : ", ") + listName(pair.channel.list) + "/" +
               numberText(pair.channel.number);
    }
    throw Failure(kUsage, "\"" + text + "\" is the name of several channels: " + all);
}

}  // namespace

std::vector<ChannelPair> readLists(const std::string& list, uint32_t filter, uint32_t favourite) {
    std::vector<ChannelPair> all;
    if (!list.empty() || favourite != 0) {
        return readList(list.empty() ? 0 : listOf(list), filter, favourite);
    }
    for (const uint16_t each : allLists()) {
        const auto some = readList(each, filter, 0);
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

ChannelPair findChannel(const std::string& text) {
    ChannelPair pair{};
    if (text == "current") {
        uint16_t list = 0;
        check(a_qeltvapi_channellist_get_current_channel(&list, &pair.channel, &pair.multiplex),
              "current channel");
        return pair;
    }
    if (text.empty()) throw Failure(kUsage, std::string("a channel is missing. ") + kChannelHelp);
    if (const auto id = idIn(text)) {
        const uint32_t list = *id >> QELTV_CHANNEL_ID_LIST_SHIFT & QELTV_CHANNEL_ID_LIST_MASK;
        if (readChannel(list, *id, &pair)) return pair;
        throw Failure(kRefused, "there is no channel " + text);
    }
    std::vector<uint16_t> lists = listsInOrder();
    std::string name = text;
    if (const size_t slash = text.find('/'); slash != std::string::npos) {
        for (const uint16_t list : lists) {
            const std::string prefix = text.substr(0, slash);
            if (prefix != listName(list) && prefix != std::to_string(list)) continue;
            name = text.substr(slash + 1);
            lists = {list};
            break;
        }
    }
    if (const auto number = numberIn(name)) {
        if (const auto found = byNumber(lists, *number)) return *found;
        throw Failure(kRefused, "there is no channel " + text);
    }
    return byName(lists, text, name);
}

uint32_t channelIdOf(const std::string& text) {
    return findChannel(text).channel.channel_id;
}

}  // namespace tool
