#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

#include "channel_data.h"
#include "hw_qeltvapi_channellist.h"
#include "hw_qeltvapi_event.h"
#include "layouts/channel_ids.h"
#include "layouts/channel_records.h"
#include "layouts/event.h"
#include "local_time.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kGenres[] = {"",      "film", "news",    "show",    "sport",  "children",
                                   "music", "arts", "society", "science", "leisure"};
/** What one query can give. */
constexpr uint16_t kIdLimit = UINT16_MAX;

struct Found {
    uint32_t channel;
    uint16_t event;
};

std::vector<Found> query(uint32_t channel, const QELTVAPI_EVENT_FILTER_T& filter) {
    std::vector<uint16_t> ids(kIdLimit);
    std::vector<uint32_t> channels(kIdLimit);
    uint16_t count = kIdLimit;
    check(a_qeltvapi_event_query_event_id_by_filter(static_cast<int>(channel), &filter, &count,
                                                    ids.data(), channels.data()),
          "guide");
    std::vector<Found> found;
    for (uint16_t i = 0; i < count; ++i) found.push_back({channels[i], ids[i]});
    return found;
}

QELTV_EVENT_GENERAL_T read(const Found& found) {
    AnswerBuffer answer(1 << 12);
    check(a_qeltvapi_event_get_general_info(static_cast<int>(found.channel), found.event,
                                            answer.data()),
          "event");
    QELTV_EVENT_GENERAL_T general;
    memcpy(&general, answer.data(), sizeof(general));
    general.title[sizeof(general.title) - 1] = 0;
    return general;
}

std::string numberOf(uint32_t channel) {
    switch (channel >> QELTV_CHANNEL_ID_KIND_SHIFT) {
        case QELTV_CHANNEL_ID_ONE_PART:
            return std::to_string(channel & QELTV_CHANNEL_ID_NUMBER_MASK);
        case QELTV_CHANNEL_ID_TWO_PARTS:
            return std::to_string(channel >> QELTV_CHANNEL_ID_MAJOR_SHIFT &
                                  QELTV_CHANNEL_ID_PART_MASK) +
                   "-" + std::to_string(channel & QELTV_CHANNEL_ID_PART_MASK);
        default:
            return std::to_string(channel >> QELTV_CHANNEL_ID_RF_SHIFT & QELTV_CHANNEL_ID_RF_MASK) +
                   "-" + std::to_string(channel & QELTV_CHANNEL_ID_PROGRAM_MASK);
    }
}

std::string nameOf(uint32_t channel) {
    channel_record_t record{};
    const int code = a_qeltvapi_channellist_get_svl_rec_by_channel_id(
            channel >> QELTV_CHANNEL_ID_LIST_SHIFT & QELTV_CHANNEL_ID_LIST_MASK, channel, &record);
    if (code != 0) return "";
    record.name[sizeof(record.name) - 1] = 0;
    return record.name;
}

std::string ratingOf(const Found& found) {
    QELTVAPI_RATING_MAP_T map{};
    check(a_qeltvapi_event_get_rating_map(static_cast<int>(found.channel), found.event, &map),
          "rating");
    return map.first;
}

std::string textOf(int (*reader)(int, int, void*, int), const Found& found) {
    AnswerBuffer answer(4096);
    check(reader(static_cast<int>(found.channel), found.event, answer.data(), 4096), "event text");
    return answer.text();
}

const char* genreOf(uint8_t genre) {
    return genre < sizeof(kGenres) / sizeof(kGenres[0]) ? kGenres[genre] : "";
}

std::string timesOf(const QELTV_EVENT_GENERAL_T& event) {
    return clockText(localFields(event.start)) + "-" +
           clockText(localFields(event.start + event.duration));
}

/** What stands for the title of an event that is locked. */
std::string titleOf(const QELTV_EVENT_GENERAL_T& event) {
    return (event.flags & QELTV_EVENT_BLOCKED) != 0 ? "(locked)" : event.title;
}

Json jsonOf(const Found& found, const QELTV_EVENT_GENERAL_T& event) {
    return {{"channel", found.channel},
            {"number", numberOf(found.channel)},
            {"event", found.event},
            {"start", event.start},
            {"duration", event.duration},
            {"title", event.title},
            {"genre", genreOf(event.genre)},
            {"rating", ratingOf(found)},
            {"locked", (event.flags & QELTV_EVENT_BLOCKED) != 0},
            {"series", event.series},
            {"episode", event.episode}};
}

void print(const std::vector<Found>& events, bool withChannel, bool json) {
    std::vector<std::vector<std::string>> rows{{"TIME", "ID", "TITLE", "GENRE", "RATING"}};
    if (withChannel) rows[0].insert(rows[0].begin(), {"CHANNEL", "DATE"});
    Json all = Json::array();
    for (const Found& found : events) {
        const QELTV_EVENT_GENERAL_T event = read(found);
        if (json) {
            all.push_back(jsonOf(found, event));
            continue;
        }
        std::vector<std::string> row{timesOf(event), std::to_string(found.event), titleOf(event),
                                     genreOf(event.genre), ratingOf(found)};
        if (withChannel) {
            row.insert(row.begin(), {numberOf(found.channel), dateText(localFields(event.start))});
        }
        rows.push_back(row);
    }
    if (json) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

/** The channels that have something on air now, by list and number. */
std::vector<uint32_t> channels() {
    QELTVAPI_EVENT_FILTER_T filter{};
    filter.word = 1;
    std::set<uint32_t> all;
    for (const Found& found : query(QELTV_EVERY_CHANNEL, filter)) all.insert(found.channel);
    return {all.begin(), all.end()};
}

void now(const std::string& only, bool json) {
    requireService();
    std::vector<std::vector<std::string>> rows{
            {"CHANNEL", "NAME", "TIME", "NOW", "RATING", "THEN"}};
    Json all = Json::array();
    for (const uint32_t channel : only.empty() ? channels() : std::vector{channelIdOf(only)}) {
        Found present{channel, 0}, following{channel, 0};
        const auto id = static_cast<int>(channel);
        if (a_qeltvapi_event_get_pf_event_id(id, &present.event, 1) != 0) continue;
        const bool last = a_qeltvapi_event_get_pf_event_id(id, &following.event, 0) != 0;
        const QELTV_EVENT_GENERAL_T event = read(present);
        const std::string name = nameOf(channel);
        if (json) {
            Json entry{{"channel", channel}, {"number", numberOf(channel)}, {"name", name}};
            entry["now"] = jsonOf(present, event);
            if (!last) entry["then"] = jsonOf(following, read(following));
            all.push_back(entry);
            continue;
        }
        std::string then;
        if (!last) {
            const QELTV_EVENT_GENERAL_T next = read(following);
            then = clockText(localFields(next.start)) + " " + titleOf(next);
        }
        rows.push_back(
                {numberOf(channel), name, timesOf(event), titleOf(event), ratingOf(present), then});
    }
    if (json) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

void day(const std::string& channelText, const std::string& date, bool json) {
    requireService();
    const uint32_t channel = channelIdOf(channelText);
    const int64_t begin = midnight(date);
    // Not always 24 hours later.
    const int64_t end = midnight(dateText(localFields(begin + 36 * 3600)));
    std::vector<uint16_t> ids(kIdLimit);
    uint16_t count = kIdLimit;
    check(a_qeltvapi_event_query_event_id_by_range(static_cast<int>(channel), begin, end, &count,
                                                   ids.data()),
          "guide");
    std::vector<Found> events;
    for (uint16_t i = 0; i < count; ++i) events.push_back({channel, ids[i]});
    print(events, false, json);
}

void search(const std::string& text, const std::vector<std::string>& genres, int age, bool open,
            size_t limit, bool json) {
    requireService();
    QELTVAPI_EVENT_FILTER_T filter{};
    if (text.size() > sizeof(filter.block)) {
        throw Failure(kUsage, "a text to look for has at most 16 bytes");
    }
    memcpy(filter.block, text.data(), text.size());
    filter.flag = open;
    filter.last = static_cast<uint8_t>(age);
    if (genres.size() > sizeof(filter.list)) throw Failure(kUsage, "at most 8 genres");
    for (const std::string& name : genres) {
        const auto genre = std::find(std::begin(kGenres) + 1, std::end(kGenres), name);
        if (genre == std::end(kGenres)) {
            throw Failure(kUsage,
                          "there is no genre " + name +
                                  suggestion(name, {std::begin(kGenres), std::end(kGenres)}));
        }
        filter.list[filter.count++] = static_cast<uint8_t>(genre - std::begin(kGenres));
    }
    std::vector<Found> found = query(QELTV_EVERY_CHANNEL, filter);
    if (found.size() > limit) found.resize(limit);
    print(found, true, json);
}

void show(const std::string& channelText, const std::string& eventText, bool json) {
    requireService();
    Found found{channelIdOf(channelText), 0};
    found.event = static_cast<uint16_t>(parseNumber(eventText, "an event", 0, UINT16_MAX));
    const QELTV_EVENT_GENERAL_T event = read(found);
    const bool locked = (event.flags & QELTV_EVENT_BLOCKED) != 0;
    std::vector<QELTV_EVENT_COMMON_T> episodes(64);
    check(a_qeltvapi_event_get_group_info(
                  static_cast<int>(found.channel), found.event, episodes.data(),
                  static_cast<int>(episodes.size() * sizeof(QELTV_EVENT_COMMON_T))),
          "group");
    episodes.erase(std::remove_if(episodes.begin(), episodes.end(),
                                  [](const QELTV_EVENT_COMMON_T& e) { return e.channelId == 0; }),
                   episodes.end());
    const std::string details =
            locked ? "" : textOf(a_qeltvapi_event_get_details_extend_info, found);
    const std::string guidance = textOf(a_qeltvapi_event_get_guidance_info, found);
    if (json) {
        Json all = jsonOf(found, event);
        all["details"] = details;
        all["guidance"] = guidance;
        all["episodes"] = Json::array();
        for (const QELTV_EVENT_COMMON_T& episode : episodes)
            all["episodes"].push_back(episode.eventId);
        printJson(all);
        return;
    }
    printf("%s\n%s %s, %s\n", printable(titleOf(event)).c_str(),
           dateText(localFields(event.start)).c_str(), timesOf(event).c_str(),
           printable(ratingOf(found)).c_str());
    if (!details.empty()) printf("%s\n", printable(details).c_str());
    if (!guidance.empty()) printf("%s\n", printable(guidance).c_str());
    if (event.series != 0) printf("%zu episodes in the guide\n", episodes.size());
}

}  // namespace

void addEpg(Command& app) {
    struct Options {
        std::string channel, text, date;
        std::vector<std::string> genres;
        int age = 0;
        size_t limit = 50;
        bool json = false, open = false;
    };
    auto options = std::make_shared<Options>();
    Command* epg = app.addCommand("epg", "The programme guide");
    epg->requireCommand();

    Command* command = epg->addCommand("now", "What is on, and what comes then");
    command->addOption("channel", options->channel, std::string(kChannelHelp) + "; all by default");
    addJson(command, &options->json);
    command->callback([options] { now(options->channel, options->json); });

    command = epg->addCommand("day", "A day of a channel");
    command->addOption("channel", options->channel, kChannelHelp)->required();
    command->addOption("date", options->date, "As 2026-03-29; today when left out");
    addJson(command, &options->json);
    command->callback([options] { day(options->channel, options->date, options->json); });

    command = epg->addCommand("search", "Look for programmes from now on, on all channels");
    command->addOption("text", options->text, "Part of the title");
    command->addOption("--genre", options->genres,
                       "film, news, show, sport, children, music, arts, society, science or "
                       "leisure; again for each")
            ->offer({std::begin(kGenres) + 1, std::end(kGenres)});
    command->addOption("--age", options->age, "Highest age rating")->between(0, 18);
    command->addFlag("--unlocked", options->open, "Not what the rating lock blocks");
    command->addOption("--limit", options->limit, "At most so many")
            ->between(size_t{1}, size_t{UINT16_MAX})
            ->showDefault();
    addJson(command, &options->json);
    command->callback([options] {
        search(options->text, options->genres, options->age, options->open, options->limit,
               options->json);
    });

    command = epg->addCommand("show", "All that is known of one programme");
    command->addOption("channel", options->channel, kChannelHelp)->required();
    command->addOption("event", options->text, "Id of the event")->required();
    addJson(command, &options->json);
    command->callback([options] { show(options->channel, options->text, options->json); });
}

}  // namespace tool
