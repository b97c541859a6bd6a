#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

#include "channel_data.h"
#include "hw_qeltvapi_channellist.h"
#include "tool.h"

namespace tool {

std::string listName(uint32_t list) {
    switch (list) {
        case CHANNEL_LIST_AIR:
            return "air";
        case CHANNEL_LIST_CABLE:
            return "cable";
        case CHANNEL_LIST_SATELLITE:
            return "satellite";
        default:
            return std::to_string(list);
    }
}

uint32_t listOf(const std::string& name) {
    for (const uint32_t list : {CHANNEL_LIST_AIR, CHANNEL_LIST_CABLE, CHANNEL_LIST_SATELLITE}) {
        if (name == listName(list)) return list;
    }
    char* end = nullptr;
    const unsigned long list = strtoul(name.c_str(), &end, 10);
    if (name.empty() || *end != '\0' || list == 0 || list > UINT16_MAX) {
        throw Failure(kUsage, "no such list: " + name + " (air, cable, satellite)");
    }
    return static_cast<uint32_t>(list);
}

std::string positionText(int32_t position) {
    char text[32];
    const int32_t tenths = std::abs(position);
    snprintf(text, sizeof(text), "%d.%d%c", tenths / 10, tenths % 10, position < 0 ? 'W' : 'E');
    return text;
}

int32_t positionOf(const std::string& text) {
    char* end = nullptr;
    const double degrees = strtod(text.c_str(), &end);
    const std::string side = end;
    if (end == text.c_str() || !(degrees >= 0) || degrees > 180 || (side != "E" && side != "W")) {
        throw Failure(kUsage, "a position is as in 19.2E or 30.0W, not \"" + text + "\"");
    }
    const auto tenths = static_cast<int32_t>(std::lround(degrees * 10));
    return side == "W" ? -tenths : tenths;
}

namespace {
constexpr const char* kPolarisations[] = {"none", "horizontal", "vertical", "left", "right"};
constexpr const char* kSystems[] = {"unknown", "DVB-T", "DVB-T2", "DVB-C", "DVB-S",
                                    "DVB-S2",  "ATSC",  "QAM",    "ISDB-T"};
constexpr const char* kModulations[] = {"auto",    "QPSK",    "8PSK",   "16APSK",
                                        "32APSK",  "QAM 16",  "QAM 32", "QAM 64",
                                        "QAM 128", "QAM 256", "8VSB",   "16VSB"};
constexpr const char* kTypes[] = {"unknown", "television", "radio", "data"};

template <size_t N>
const char* nameIn(const char* const (&names)[N], size_t index) {
    return index < N ? names[index] : "unknown";
}
}  // namespace

std::string polarisationName(uint8_t polarisation) {
    return nameIn(kPolarisations, polarisation);
}

uint8_t polarisationOf(const std::string& text) {
    for (size_t i = 1; i < std::size(kPolarisations); ++i) {
        const std::string name = kPolarisations[i];
        const bool letter = text.size() == 1 && tolower(text[0]) == name[0];
        if (text == name || letter) return static_cast<uint8_t>(i);
    }
    throw Failure(kUsage, "a polarisation is H, V, L or R, not \"" + text + "\"");
}

uint64_t frequencyOf(const multiplex_record_t& multiplex) {
    return uint64_t{multiplex.frequency_high} << 32 | multiplex.frequency_low;
}

std::string multiplexText(const multiplex_record_t& multiplex) {
    char text[64];
    const double megahertz = static_cast<double>(frequencyOf(multiplex)) / 1e6;
    if (multiplex.satellite_record_id != 0) {
        snprintf(text, sizeof(text), "%s %.3f GHz %c", nameIn(kSystems, multiplex.system),
                 megahertz / 1000, toupper(polarisationName(multiplex.polarisation)[0]));
    } else {
        snprintf(text, sizeof(text), "%s %.3f MHz", nameIn(kSystems, multiplex.system), megahertz);
    }
    return text;
}

nlohmann::ordered_json multiplexJson(const multiplex_record_t& multiplex) {
    nlohmann::ordered_json json{{"record", multiplex.record_id},
                                {"system", nameIn(kSystems, multiplex.system)},
                                {"frequency_hz", frequencyOf(multiplex)},
                                {"modulation", nameIn(kModulations, multiplex.modulation)}};
    if (multiplex.symbol_rate != 0) json["symbol_rate"] = multiplex.symbol_rate;
    if (multiplex.bandwidth != 0) json["bandwidth_hz"] = multiplex.bandwidth;
    if (multiplex.polarisation != 0) {
        json["polarisation"] = polarisationName(multiplex.polarisation);
    }
    if (multiplex.code_rate != 0) {
        json["code_rate"] = std::to_string(multiplex.code_rate >> 4) + "/" +
                            std::to_string(multiplex.code_rate & 15);
    }
    if (multiplex.rf_channel != 0) json["rf_channel"] = multiplex.rf_channel;
    if (multiplex.satellite_record_id != 0) json["satellite"] = multiplex.satellite_record_id;
    json["network"] = multiplex.network_id;
    json["original_network"] = multiplex.original_network_id;
    json["stream"] = multiplex.stream_id;
    return json;
}

namespace {

struct Pair {
    channel_record_t channel;
    multiplex_record_t multiplex;
};

std::string numberText(uint32_t number) {
    return number <= 0xffff ? std::to_string(number)
                            : std::to_string(number >> 16) + "." + std::to_string(number & 0xffff);
}

/** "5", "7.1". */
std::optional<uint32_t> numberOf(const std::string& text) {
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

std::vector<std::string> flagNames(uint32_t flags) {
    std::vector<std::string> names;
    if ((flags & CHANNEL_FLAG_VISIBLE) == 0) names.push_back("hidden");
    if ((flags & CHANNEL_FLAG_LOCKED) != 0) names.push_back("locked");
    if ((flags & CHANNEL_FLAG_SCRAMBLED) != 0) names.push_back("scrambled");
    if ((flags & CHANNEL_FLAG_SKIPPED) != 0) names.push_back("skipped");
    if ((flags & CHANNEL_FLAG_NEW) != 0) names.push_back("new");
    if ((flags & CHANNEL_FLAG_HD) != 0) names.push_back("hd");
    for (uint32_t i = 0; i < 4; ++i) {
        if ((flags & CHANNEL_FLAG_FAVOURITE_1 << i) != 0) {
            names.push_back("favourite" + std::to_string(i + 1));
        }
    }
    return names;
}

std::string joined(const std::vector<std::string>& words) {
    std::string all;
    for (const std::string& word : words) all += (all.empty() ? "" : " ") + word;
    return all;
}

nlohmann::ordered_json json(const Pair& pair) {
    const channel_record_t& channel = pair.channel;
    char id[16];
    snprintf(id, sizeof(id), "0x%08x", channel.channel_id);
    return {{"list", listName(channel.list)},
            {"number", numberText(channel.number)},
            {"name", textOf(channel.name)},
            {"type", nameIn(kTypes, channel.service_type)},
            {"id", id},
            {"record", channel.record_id},
            {"flags", flagNames(channel.flags)},
            {"provider", textOf(channel.provider)},
            {"language", textOf(channel.language)},
            {"service", channel.service_id},
            {"pids",
             {{"pmt", channel.pmt_pid},
              {"pcr", channel.pcr_pid},
              {"video", channel.video_pid},
              {"audio", channel.audio_pid}}},
            {"multiplex", multiplexJson(pair.multiplex)}};
}

void print(const std::vector<Pair>& pairs, bool asJson) {
    if (asJson) {
        nlohmann::ordered_json all = nlohmann::json::array();
        for (const Pair& pair : pairs) all.push_back(json(pair));
        // A name is whatever was broadcast.
        printf("%s\n", all.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
        return;
    }
    std::vector<std::vector<std::string>> rows{
            {"LIST", "NUMBER", "NAME", "TYPE", "MULTIPLEX", "FLAGS"}};
    for (const Pair& pair : pairs) {
        rows.push_back({listName(pair.channel.list), numberText(pair.channel.number),
                        textOf(pair.channel.name), nameIn(kTypes, pair.channel.service_type),
                        multiplexText(pair.multiplex), joined(flagNames(pair.channel.flags))});
    }
    printTable(rows);
}

std::vector<uint16_t> allLists() {
    std::vector<uint16_t> lists(
            static_cast<size_t>(check(a_qeltvapi_tvprovider_get_all_svlid_count(), "lists")));
    auto count = static_cast<uint16_t>(lists.size());
    check(a_qeltvapi_tvprovider_get_all_svlid(lists.data(), &count), "lists");
    lists.resize(std::min<size_t>(count, lists.size()));
    return lists;
}

/** Every channel that passes a filter, in batches; of a favourite list when it is not 0. */
std::vector<Pair> readList(uint32_t list, uint32_t filter, uint32_t favourite = 0) {
    constexpr uint32_t kBatch = 500;
    std::vector<channel_record_t> channels(kBatch);
    std::vector<multiplex_record_t> multiplexes(kBatch);
    std::vector<Pair> all;
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

std::vector<Pair> readLists(const std::string& list, uint32_t filter, uint32_t favourite = 0) {
    std::vector<Pair> all;
    if (!list.empty() || favourite != 0) {
        return readList(list.empty() ? 0 : listOf(list), filter, favourite);
    }
    for (const uint16_t each : allLists()) {
        const auto some = readList(each, filter);
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

/** "5", "air/5", "air/7.1", "0x04000005", "current". */
Pair findChannel(const std::string& text) {
    Pair pair{};
    uint16_t list = 0;
    if (text == "current") {
        check(a_qeltvapi_channellist_get_current_channel(&list, &pair.channel, &pair.multiplex),
              "current channel");
        return pair;
    }
    uint32_t id = 0;
    if (text.compare(0, 2, "0x") == 0) {
        char* end = nullptr;
        id = static_cast<uint32_t>(strtoul(text.c_str(), &end, 16));
        if (*end != '\0') id = 0;
        list = static_cast<uint16_t>(id >> 26 & 15);
    } else {
        const size_t slash = text.find('/');
        const auto number = numberOf(slash == text.npos ? text : text.substr(slash + 1));
        if (slash != text.npos) {
            list = static_cast<uint16_t>(listOf(text.substr(0, slash)));
        } else if (const auto lists = allLists(); !lists.empty()) {
            list = lists.front();
        }
        if (number) {
            id = static_cast<uint32_t>(a_qeltvapi_channellist_gen_channel_id(
                    list, *number <= 0xffff ? *number : *number >> 16,
                    *number <= 0xffff ? 0 : *number & 0xffff));
        }
    }
    if (id == 0) {
        throw Failure(kUsage,
                      "a channel is as in 5, air/5, air/7.1, 0x04000005 or current, not \"" + text +
                              "\"");
    }
    if (a_qeltvapi_channellist_get_svl_rec_by_channel_id(list, id, &pair.channel) != 0) {
        throw Failure(kRefused, "there is no channel " + text);
    }
    check(a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(list, pair.channel.record_id,
                                                               &pair.channel, &pair.multiplex),
          "channel " + text);
    return pair;
}

void show(const std::string& text, bool asJson) {
    requireService();
    const Pair pair = findChannel(text);
    if (asJson) {
        printf("%s\n",
               json(pair).dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
        return;
    }
    const channel_record_t& channel = pair.channel;
    const auto triplet = std::to_string(channel.original_network_id) + "/" +
                         std::to_string(channel.stream_id) + "/" +
                         std::to_string(channel.service_id);
    char id[16];
    snprintf(id, sizeof(id), "0x%08x", channel.channel_id);
    std::vector<std::vector<std::string>> rows{
            {"name", textOf(channel.name)},
            {"number", listName(channel.list) + "/" + numberText(channel.number)},
            {"id", id},
            {"record", std::to_string(channel.record_id)},
            {"type", nameIn(kTypes, channel.service_type)},
            {"flags", joined(flagNames(channel.flags))},
            {"provider", textOf(channel.provider)},
            {"language", textOf(channel.language)},
            {"service", triplet + " (network/stream/service)"},
            {"multiplex", multiplexText(pair.multiplex) + ", " +
                                  nameIn(kModulations, pair.multiplex.modulation)}};
    printTable(rows);
}

std::string lower(std::string text) {
    // ASCII only: what is beyond has to be typed as it is.
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return c < 0x80 ? tolower(c) : c; });
    return text;
}

void find(const std::string& part, bool asJson) {
    requireService();
    std::vector<Pair> found;
    for (const Pair& pair : readLists("", CHANNEL_FILTER_HIDDEN)) {
        if (lower(textOf(pair.channel.name)).find(lower(part)) != std::string::npos) {
            found.push_back(pair);
        }
    }
    if (found.empty() && !asJson) throw Failure(kRefused, "no channel has \"" + part + "\" in it");
    print(found, asJson);
}

struct Changes {
    std::string channel, name, number;
    bool lock = false, unlock = false, hide = false, unhide = false, skip = false, unskip = false;
    bool current = false;
};

void set(const Changes& changes) {
    requireService();
    Pair pair = findChannel(changes.channel);
    uint32_t fields = 0, mask = 0, value = 0;
    const auto flag = [&](uint32_t bit, bool set, bool clear) {
        if (set || clear) mask |= bit;
        if (set) value |= bit;
    };
    flag(CHANNEL_FLAG_LOCKED, changes.lock, changes.unlock);
    flag(CHANNEL_FLAG_VISIBLE, changes.unhide, changes.hide);
    flag(CHANNEL_FLAG_SKIPPED, changes.skip, changes.unskip);
    if (!changes.name.empty()) {
        setText(pair.channel.name, changes.name);
        fields |= CHANNEL_WRITE_NAME;
    }
    if (!changes.number.empty()) {
        const auto number = numberOf(changes.number);
        if (!number || *number == 0) {
            throw Failure(kUsage, "a number is as in 5 or 7.1, not \"" + changes.number + "\"");
        }
        if (a_qeltvapi_channellist_is_exist_by_channel_number(pair.channel.list, *number) != 0) {
            throw Failure(kRefused, "the number " + changes.number + " is taken");
        }
        pair.channel.number = *number;
        fields |= CHANNEL_WRITE_NUMBER;
    }
    if (fields == 0 && mask == 0 && !changes.current) throw Failure(kUsage, "nothing to set");
    if (fields != 0 || mask != 0) {
        check(a_qeltvapi_channellist_set_svl_tsl_rec_info(pair.channel.list, pair.channel.list,
                                                          pair.channel.record_id, fields, &mask,
                                                          &value, &pair.channel, &pair.multiplex),
              changes.channel);
    }
    if (changes.current) {
        // Another number is another id.
        const uint32_t record = pair.channel.record_id;
        check(a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(pair.channel.list, record,
                                                                   &pair.channel, &pair.multiplex),
              changes.channel);
        check(a_qeltvapi_channellist_set_current_channel(pair.channel.channel_id), changes.channel);
    }
}

void listFavourites(uint32_t index, bool asJson) {
    requireService();
    print(readLists("", CHANNEL_FILTER_HIDDEN, index), asJson);
}

void addFavourites(Command* channel) {
    struct Options {
        std::vector<std::string> channels;
        uint32_t index = 1, from = 1, to = 1;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    Command* favourite = channel->addCommand("favourite", "Favourite lists");
    favourite->requireCommand();
    const auto indexed = [&](Command* command) {
        command->addOption("--favourites", options->index, "Which favourite list, 1 to 4")
                ->between(1, 4)
                ->showDefault();
    };
    const auto forEach = [options](int (*apply)(uint32_t, uint32_t, uint32_t)) {
        requireService();
        for (const std::string& text : options->channels) {
            const Pair pair = findChannel(text);
            check(apply(options->index - 1, pair.channel.list, pair.channel.channel_id), text);
        }
    };

    Command* command = favourite->addCommand("list", "List the channels of a favourite list");
    indexed(command);
    addJson(command, &options->json);
    command->callback([options] { listFavourites(options->index, options->json); });

    command = favourite->addCommand("add", "Put channels at its end");
    command->addOption("channel", options->channels, "Channels, as in air/5")->required();
    indexed(command);
    command->callback([forEach] { forEach(a_qeltvapi_favorite_list_add_tail); });

    command = favourite->addCommand("remove", "Take channels out of it");
    command->addOption("channel", options->channels, "Channels, as in air/5")->required();
    indexed(command);
    command->callback([forEach] { forEach(a_qeltvapi_favorite_list_delete); });

    command = favourite->addCommand("move", "Move a channel to another place in it");
    command->addOption("from", options->from, "Its place, from 1")->required();
    command->addOption("to", options->to, "The place that it gets")->required();
    indexed(command);
    command->callback([options] {
        requireService();
        if (options->from == 0 || options->to == 0) throw Failure(kUsage, "places begin at 1");
        check(a_qeltvapi_favorite_list_insert_move(options->index - 1, 0, 0, 0, options->from - 1,
                                                   options->to - 1),
              "move");
    });

    command = favourite->addCommand("clear", "Empty it");
    indexed(command);
    command->callback([options] {
        requireService();
        check(a_qeltvapi_favorite_list_del_all(options->index - 1, 0, 0, 0), "clear");
    });
}

void addSnapshots(Command* channel) {
    struct Options {
        std::string list;
        uint32_t handle = 0;
    };
    auto options = std::make_shared<Options>();
    Command* snapshot = channel->addCommand("snapshot", "Keep a list and put it back");
    snapshot->requireCommand();

    Command* command = snapshot->addCommand("create", "Take a snapshot; prints its number");
    command->addOption("list", options->list, "air, cable, satellite")->required();
    command->callback([options] {
        requireService();
        uint32_t handle = 0;
        check(a_qeltvapi_channellist_create_snapshot(listOf(options->list), &handle), "snapshot");
        printf("%u\n", handle);
    });

    const auto withHandle = [&](const char* name, const char* help, int (*apply)(uint32_t)) {
        Command* sub = snapshot->addCommand(name, help);
        sub->addOption("snapshot", options->handle, "Its number")->required();
        sub->callback([options, apply] {
            requireService();
            check(apply(options->handle), "snapshot " + std::to_string(options->handle));
        });
    };
    withHandle("restore", "Put the list back as the snapshot has it",
               a_qeltvapi_channellist_restore_snapshot);
    withHandle("free", "Drop the snapshot", a_qeltvapi_channellist_free_snapshot);
}

}  // namespace

void addChannel(Command& app) {
    Command* channel = app.addCommand("channel", "Channel lists, favourites, snapshots");
    channel->requireCommand();

    struct Options {
        std::string list, text;
        bool json = false, television = false, radio = false, data = false, all = false;
        bool free = false;
    };
    auto options = std::make_shared<Options>();

    Command* command = channel->addCommand("list", "List channels");
    command->addOption("list", options->list, "air, cable, satellite; all when left out");
    command->addFlag("--tv", options->television, "Only television");
    command->addFlag("--radio", options->radio, "Only radio");
    command->addFlag("--data", options->data, "Only data services");
    command->addFlag("--free", options->free, "Only what is not scrambled");
    command->addFlag("--all", options->all, "Hidden channels too");
    addJson(command, &options->json);
    command->callback([options] {
        requireService();
        const uint32_t filter = (options->television ? CHANNEL_FILTER_TELEVISION : 0) |
                                (options->radio ? CHANNEL_FILTER_RADIO : 0) |
                                (options->data ? CHANNEL_FILTER_DATA : 0) |
                                (options->free ? CHANNEL_FILTER_FREE : 0) |
                                (options->all ? CHANNEL_FILTER_HIDDEN : 0);
        print(readLists(options->list, filter), options->json);
    });

    const char* const kChannel = "As in 5, air/5, air/7.1, 0x04000005 or current";
    command = channel->addCommand("show", "Show all of one channel");
    command->addOption("channel", options->text, kChannel)->required();
    addJson(command, &options->json);
    command->callback([options] { show(options->text, options->json); });

    command = channel->addCommand("find", "List channels by a part of their name");
    command->addOption("text", options->text, "Part of the name")->required();
    addJson(command, &options->json);
    command->callback([options] { find(options->text, options->json); });

    auto changes = std::make_shared<Changes>();
    command = channel->addCommand("set", "Change a channel");
    command->addOption("channel", changes->channel, kChannel)->required();
    command->addOption("--name", changes->name, "Its name");
    command->addOption("--number", changes->number, "Its number, which must be free");
    Option* lock = command->addFlag("--lock", changes->lock, "Ask for the password");
    command->addFlag("--unlock", changes->unlock, "No longer")->excludes(lock);
    Option* hide = command->addFlag("--hide", changes->hide, "Leave it out of lists");
    command->addFlag("--show", changes->unhide, "No longer")->excludes(hide);
    Option* skip = command->addFlag("--skip", changes->skip, "Leave it out when zapping");
    command->addFlag("--no-skip", changes->unskip, "No longer")->excludes(skip);
    command->addFlag("--current", changes->current, "Make it the current channel");
    command->callback([changes] { set(*changes); });

    addFavourites(channel);
    addSnapshots(channel);
}

}  // namespace tool
