#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "hw_qeltvapi_subtitle.h"
#include "hw_qeltvapi_teletext.h"
#include "layouts/teletext.h"
#include "tool.h"
#include "unicode.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

/** The Unicode character of six mosaic cells, two columns by three rows. */
uint32_t mosaic(uint8_t code) {
    const uint32_t cells = (code & 0x1fU) | (code & 0x40U) >> 1;
    switch (cells) {
        case 0:
            return ' ';
        case 0x15:
            return 0x258c;
        case 0x2a:
            return 0x2590;
        case 0x3f:
            return 0x2588;
        default:
            return 0x1fb00 + cells - 1 - (cells > 0x15) - (cells > 0x2a);
    }
}

/** A row for the terminal: control codes change what follows and show as blanks. */
std::string drawn(const uint8_t* row, const uint16_t* characters, bool colours) {
    std::string text;
    uint32_t foreground = 7, background = 0;
    bool mosaics = false;
    const auto paint = [&] {
        if (!colours) return;
        text += "\033[3" + std::to_string(foreground) + ";4" + std::to_string(background) + "m";
    };
    paint();
    for (uint32_t column = 0; column < QELTV_TELETEXT_COLUMNS; ++column) {
        const uint8_t code = row[column] & 0x7f;
        if (code >= 0x20) {
            const bool cell = mosaics && (code < 0x40 || code >= 0x60);
            appendUtf8(&text, cell ? mosaic(code) : code == 0x7f ? 0x2588 : characters[column]);
            continue;
        }
        if (code < 8 || (code >= 0x10 && code < 0x18)) {
            foreground = code & 7;
            mosaics = code >= 0x10;
        } else if (code == 0x1c) {
            background = 0;
        } else if (code == 0x1d) {
            background = foreground;
        }
        paint();
        text += ' ';
    }
    if (colours) text += "\033[0m";
    return text;
}

struct Options {
    std::string page;
    uint32_t subpage = 0, number = 0, wait = 30;
    bool json = false, plain = false, top = false;
};

uint32_t parsePage(const std::string& text) {
    char* end = nullptr;
    const unsigned long page = strtoul(text.c_str(), &end, 16);
    if (text.size() != 3 || *end != 0 || page < 0x100 || page > 0x8ff) {
        throw Failure(kUsage, "\"" + text + "\" is no page; they are 100 to 899");
    }
    return static_cast<uint32_t>(page);
}

std::vector<QELTV_TOP_ENTRY_T> table(const AnswerBuffer& answer) {
    uint32_t count = 0;
    memcpy(&count, answer.text(), sizeof(count));
    std::vector<QELTV_TOP_ENTRY_T> entries(std::min(count, 1000U));
    if (!entries.empty()) {
        memcpy(entries.data(), answer.text() + sizeof(count),
               entries.size() * sizeof(QELTV_TOP_ENTRY_T));
    }
    return entries;
}

/** The tree of blocks, groups and pages. */
void showTop() {
    if (a_qeltvapi_teletext_is_top_stream() != 1) {
        throw Failure(kRefused, "this teletext has no TOP navigation");
    }
    std::vector<std::vector<std::string>> rows{{"PAGE", "TITLE"}};
    const auto add = [&](const QELTV_TOP_ENTRY_T& entry) {
        char page[8];
        snprintf(page, sizeof(page), "%03x", entry.page);
        rows.push_back({page, std::string((entry.level - 1U) * 2, ' ') + entry.title});
    };
    AnswerBuffer blocks;
    check(a_qeltvapi_teletext_top_get_block_content(blocks.data()), "blocks");
    for (const QELTV_TOP_ENTRY_T& block : table(blocks)) {
        add(block);
        AnswerBuffer groups;
        check(a_qeltvapi_teletext_top_get_group_content(&block.page, groups.data()), block.title);
        for (const QELTV_TOP_ENTRY_T& group : table(groups)) {
            add(group);
            AnswerBuffer pages;
            check(a_qeltvapi_teletext_top_get_page_content(&group.page, pages.data()), group.title);
            for (const QELTV_TOP_ENTRY_T& page : table(pages)) add(page);
        }
    }
    printTable(rows);
}

/** The current page; one that has not been received yet after so many seconds at most. */
QELTV_TELETEXT_PAGE_T currentPage(uint32_t seconds) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds kPause(100);
    const Clock::time_point end = Clock::now() + std::chrono::seconds(seconds);
    QELTV_TELETEXT_PAGE_T page;
    for (;;) {
        AnswerBuffer answer;
        check(a_qeltvapi_teletext_get_cur_page(answer.data()), "teletext");
        memcpy(&page, answer.data(), sizeof(page));
        if (page.state != QELTV_TELETEXT_AWAITED || Clock::now() >= end) return page;
        std::this_thread::sleep_for(kPause);
    }
}

void show(const Options& options) {
    requireService();
    if (options.top) {
        showTop();
        return;
    }
    uint32_t wanted = 0;
    if (!options.page.empty()) {
        wanted = parsePage(options.page);
        const uint32_t record = wanted | options.subpage << QELTV_TELETEXT_SUBPAGE_SHIFT;
        a_qeltvapi_teletext_set_page(&record);
    }
    const QELTV_TELETEXT_PAGE_T page = currentPage(wanted != 0 ? options.wait : 0);
    const uint32_t subpage = page.page >> 16;
    // The function that sets the page has no result.
    if (wanted != 0 &&
        ((page.page & 0xffff) != wanted || (options.subpage != 0 && subpage != options.subpage))) {
        throw Failure(kRefused, "page " + options.page + " cannot be shown");
    }
    if (wanted != 0 && page.state == QELTV_TELETEXT_AWAITED) {
        throw Failure(kRefused, "page " + options.page + " has not been received within " +
                                        std::to_string(options.wait) +
                                        " s; try again, or wait longer with --wait");
    }
    if (wanted != 0 && page.state == QELTV_TELETEXT_ABSENT) {
        throw Failure(kRefused, "page " + options.page + " is not broadcast");
    }
    const bool colours = !options.json && !options.plain && isatty(STDOUT_FILENO) != 0;
    Json rows = Json::array();
    for (size_t row = 0; row < QELTV_TELETEXT_ROWS; ++row) {
        const std::string text = drawn(page.rows[row], page.characters[row], colours);
        if (options.json) {
            rows.push_back(text);
        } else {
            printf("%s\n", text.c_str());
        }
    }
    if (!options.json) return;
    char number[8];
    snprintf(number, sizeof(number), "%03x", page.page & 0xffff);
    const Json json{
            {"page", number}, {"subpage", subpage}, {"subpages", page.subpages}, {"rows", rows}};
    printJson(json);
}

const char* nameOfKind(int32_t kind) {
    constexpr const char* kNames[] = {"", "DVB", "teletext", "hard of hearing"};
    return kind >= 0 && kind < 4 ? kNames[kind] : "unknown";
}

void listSubtitles(bool asJson) {
    requireService();
    std::vector<int32_t> words(2 + 64 * 3);
    check(a_qeltvapi_subtitle_get_loop(words.data(), static_cast<uint32_t>(words.size())),
          "subtitles");
    std::vector<std::vector<std::string>> rows{{"NUMBER", "LANGUAGE", "KIND", ""}};
    Json json = Json::array();
    for (int32_t i = 0; i < std::min(words[0], 64); ++i) {
        const int32_t* entry = &words[2 + static_cast<size_t>(i) * 3];
        std::string language;
        for (const int shift : {16, 8, 0}) language += static_cast<char>(entry[1] >> shift & 0x7f);
        const bool plays = entry[0] == words[1];
        rows.push_back(
                {std::to_string(entry[0]), language, nameOfKind(entry[2]), plays ? "plays" : ""});
        json.push_back({{"number", entry[0]},
                        {"language", language},
                        {"kind", nameOfKind(entry[2])},
                        {"plays", plays}});
    }
    if (asJson) {
        printJson(json);
    } else {
        printTable(rows);
    }
}

}  // namespace

void addTeletext(Command& app) {
    auto options = std::make_shared<Options>();
    Command* command = app.addCommand("teletext", "Show a page of teletext");
    command->addOption("page", options->page, "100 to 899; the one that is shown by default");
    command->addOption("--subpage", options->subpage, "Stay on this subpage")->between(0U, 0xffffU);
    command->addOption("--wait", options->wait, "Seconds to wait for a page that has to come")
            ->between(0U, 600U);
    command->addFlag("--plain", options->plain, "Without colours");
    command->addFlag("--top", options->top, "The tree of pages instead");
    addJson(command, &options->json);
    command->callback([options] { show(*options); });
}

void addSubtitle(Command& app) {
    Command* subtitle = app.addCommand("subtitle", "Subtitles");
    subtitle->requireCommand();
    auto options = std::make_shared<Options>();

    Command* command = subtitle->addCommand("list", "List what there is");
    addJson(command, &options->json);
    command->callback([options] { listSubtitles(options->json); });

    command = subtitle->addCommand("play", "Show a subtitle");
    command->addOption("number", options->number, "Which; 0 for none")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_subtitle_play(options->number),
              "subtitle " + std::to_string(options->number));
    });

    subtitle->addCommand("next", "Go to the next subtitle, or to none after the last")
            ->callback([] {
                requireService();
                check(a_qeltvapi_subtitle_set_next(), "next");
            });
}

}  // namespace tool
