#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

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
const std::vector<std::string> kLists{"air", "cable", "satellite"};
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

nlohmann::ordered_json json(const ChannelPair& pair) {
    const channel_record_t& channel = pair.channel;
    return {{"list", listName(channel.list)},
            {"number", numberText(channel.number)},
            {"name", textOf(channel.name)},
            {"type", nameIn(kTypes, channel.service_type)},
            {"id", channelIdText(channel.channel_id)},
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

void print(const std::vector<ChannelPair>& pairs, bool asJson, bool ids = false) {
    if (asJson) {
        nlohmann::ordered_json all = nlohmann::json::array();
        for (const ChannelPair& pair : pairs) all.push_back(json(pair));
        printJson(all);
        return;
    }
    std::vector<std::vector<std::string>> rows{
            {"LIST", "NUMBER", "NAME", "TYPE", "MULTIPLEX", "FLAGS"}};
    if (ids) rows[0].insert(rows[0].begin(), "ID");
    for (const ChannelPair& pair : pairs) {
        rows.push_back({listName(pair.channel.list), numberText(pair.channel.number),
                        textOf(pair.channel.name), nameIn(kTypes, pair.channel.service_type),
                        multiplexText(pair.multiplex), joined(flagNames(pair.channel.flags))});
        if (ids) rows.back().insert(rows.back().begin(), channelIdText(pair.channel.channel_id));
    }
    printTable(rows);
}

void show(const std::string& text, bool asJson) {
    requireService();
    const ChannelPair pair = findChannel(text);
    if (asJson) {
        printJson(json(pair));
        return;
    }
    const channel_record_t& channel = pair.channel;
    const auto triplet = std::to_string(channel.original_network_id) + "/" +
                         std::to_string(channel.stream_id) + "/" +
                         std::to_string(channel.service_id);
    std::vector<std::vector<std::string>> rows{
            {"name", textOf(channel.name)},
            {"number", listName(channel.list) + "/" + numberText(channel.number)},
            {"id", channelIdText(channel.channel_id)},
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

void find(const std::string& part, bool asJson) {
    requireService();
    std::vector<ChannelPair> found;
    for (const ChannelPair& pair : readLists("", CHANNEL_FILTER_HIDDEN)) {
        if (lower(textOf(pair.channel.name)).find(lower(part)) != std::string::npos) {
            found.push_back(pair);
        }
    }
    if (found.empty() && !asJson)
        throw Failure(kRefused, "no channel has \"" + part + "\" in its name");
    print(found, asJson);
}

struct Changes {
    std::string channel, name, number;
    bool lock = false, unlock = false, hide = false, unhide = false, skip = false, unskip = false;
    bool current = false;
};

void set(const Changes& changes) {
    requireService();
    ChannelPair pair = findChannel(changes.channel);
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
        const auto number = numberIn(changes.number);
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
            const ChannelPair pair = findChannel(text);
            check(apply(options->index - 1, pair.channel.list, pair.channel.channel_id), text);
        }
    };

    Command* command = favourite->addCommand("list", "List the channels of a favourite list");
    indexed(command);
    addJson(command, &options->json);
    command->callback([options] { listFavourites(options->index, options->json); });

    command = favourite->addCommand("add", "Put channels at its end");
    command->addOption("channel", options->channels, kChannelHelp)->required();
    indexed(command);
    command->callback([forEach] { forEach(a_qeltvapi_favorite_list_add_tail); });

    command = favourite->addCommand("remove", "Take channels out of it");
    command->addOption("channel", options->channels, kChannelHelp)->required();
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
    command->addOption("list", options->list, "air, cable or satellite")->required()->offer(kLists);
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
        bool free = false, ids = false;
    };
    auto options = std::make_shared<Options>();

    Command* command = channel->addCommand("list", "List channels");
    command->addOption("list", options->list, "air, cable, satellite; all by default")
            ->offer(kLists);
    command->addFlag("--tv", options->television, "Only television");
    command->addFlag("--radio", options->radio, "Only radio");
    command->addFlag("--data", options->data, "Only data services");
    command->addFlag("--free", options->free, "Only what is not scrambled");
    command->addFlag("--all", options->all, "Hidden channels too");
    command->addFlag("--ids", options->ids, "The channel ids too, in the first column");
    addJson(command, &options->json);
    command->callback([options] {
        requireService();
        const uint32_t filter = (options->television ? CHANNEL_FILTER_TELEVISION : 0) |
                                (options->radio ? CHANNEL_FILTER_RADIO : 0) |
                                (options->data ? CHANNEL_FILTER_DATA : 0) |
                                (options->free ? CHANNEL_FILTER_FREE : 0) |
                                (options->all ? CHANNEL_FILTER_HIDDEN : 0);
        print(readLists(options->list, filter), options->json, options->ids);
    });

    command = channel->addCommand("show", "Show all of one channel");
    command->addOption("channel", options->text, kChannelHelp)->required();
    addJson(command, &options->json);
    command->callback([options] { show(options->text, options->json); });

    command = channel->addCommand("find", "List channels by a part of their name");
    command->addOption("text", options->text, "Part of the name")->required();
    addJson(command, &options->json);
    command->callback([options] { find(options->text, options->json); });

    auto changes = std::make_shared<Changes>();
    command = channel->addCommand("set", "Change a channel");
    command->addOption("channel", changes->channel, kChannelHelp)->required();
    command->addOption("--name", changes->name, "Its name");
    command->addOption("--number", changes->number, "Its number, which must be free");
    Option* lock = command->addFlag("--lock", changes->lock, "Ask for the PIN");
    command->addFlag("--unlock", changes->unlock, "Do not ask for the PIN")->excludes(lock);
    Option* hide = command->addFlag("--hide", changes->hide, "Leave it out of lists");
    command->addFlag("--show", changes->unhide, "Keep it in lists")->excludes(hide);
    Option* skip = command->addFlag("--skip", changes->skip, "Leave it out when zapping");
    command->addFlag("--no-skip", changes->unskip, "Zap to it")->excludes(skip);
    command->addFlag("--current", changes->current, "Make it the current channel");
    command->callback([changes] { set(*changes); });

    addFavourites(channel);
    addSnapshots(channel);
}

}  // namespace tool
