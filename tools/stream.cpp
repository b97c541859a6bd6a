#include <cstdio>
#include <ctime>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "StreamInspection.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;
using namespace qeltvd::stream;

std::string hexadecimal(uint32_t value) {
    char text[16];
    snprintf(text, sizeof(text), "0x%04x", value);
    return text;
}

/** A time of the stream in UTC. */
std::string utcText(int64_t utc) {
    const time_t time = utc;
    tm fields{};
    char text[32] = "";
    if (gmtime_r(&time, &fields) != nullptr) {
        strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S", &fields);
    }
    return text;
}

const char* kindOf(const Component& component) {
    switch (component.kind) {
        case ComponentKind::kVideo:
            return "video";
        case ComponentKind::kAudio:
            return "audio";
        case ComponentKind::kTeletext:
            return "teletext";
        case ComponentKind::kSubtitles:
            return "subtitles";
        case ComponentKind::kApplications:
            return "applications";
        case ComponentKind::kOther:
            break;
    }
    return "data";
}

const char* roleOf(const Component& component) {
    constexpr const char* kRoles[] = {"", "clean effects", "hearing impaired", "audio description"};
    return kRoles[static_cast<size_t>(component.role)];
}

std::string numberOf(const Service& service) {
    if (service.channel) {
        const std::string major = std::to_string(service.channel->major);
        return service.channel->minor == 0 ? major
                                           : major + "-" + std::to_string(service.channel->minor);
    }
    return service.number ? std::to_string(service.number->number) : "";
}

std::string formatOf(const PictureFormat& format) {
    char text[64];
    snprintf(text, sizeof(text), "%s %ux%u%c %g/s", nameOf(format.codec), format.width,
             format.height, format.interlaced ? 'i' : 'p', format.rate / 1000.0);
    return text;
}

Json componentJson(const Component& component) {
    Json json{{"pid", component.pid}, {"kind", kindOf(component)}};
    if (component.codec != Codec::kUnknown) json["codec"] = nameOf(component.codec);
    if (!component.language.empty()) json["language"] = component.language;
    if (component.role != AudioRole::kMain) json["role"] = roleOf(component);
    for (const TeletextService& each : component.teletext) {
        json["pages"].push_back(
                {{"page", each.page}, {"type", each.type}, {"language", each.language}});
    }
    return json;
}

Json eventJson(const Event& event) {
    const EventText* text = event.text();
    return {{"id", event.id},
            {"start", event.start},
            {"duration", event.duration},
            {"title", text == nullptr ? "" : text->title}};
}

Json serviceJson(const Inspection& stream, const Service& service) {
    Json json{{"id", service.id},
              {"name", service.name()},
              {"number", numberOf(service)},
              {"scrambled", service.scrambledNow},
              {"pmt", service.pmtPid},
              {"components", Json::array()}};
    if (service.format) json["format"] = formatOf(*service.format);
    for (const Component& each : service.components) {
        json["components"].push_back(componentJson(each));
    }
    for (const Application& each : service.applications) {
        json["applications"].push_back({{"name", each.name}, {"url", each.url}});
    }
    const ServiceKey key = service.guideKey;
    json["events"] = stream.events.events(key).size();
    if (const auto now = stream.events.present(key)) json["present"] = eventJson(*now);
    if (const auto next = stream.events.following(key)) json["following"] = eventJson(*next);
    return json;
}

void showJson(const Inspection& stream) {
    Json all{{"standard", stream.facts.atsc ? "ATSC" : "DVB"},
             {"stream", stream.facts.streamId},
             {"originalNetwork", stream.facts.originalNetworkId},
             {"network", stream.facts.networkName},
             {"seconds", stream.seconds},
             {"packets", stream.packets},
             {"services", Json::array()},
             {"pids", Json::array()}};
    if (stream.facts.time) all["time"] = stream.facts.time->utc;
    for (const auto& [id, service] : stream.facts.services) {
        all["services"].push_back(serviceJson(stream, service));
    }
    for (const PidFacts& pid : stream.pids) {
        all["pids"].push_back({{"pid", pid.pid},
                               {"packets", pid.packets},
                               {"bitsPerSecond", pid.bitsPerSecond},
                               {"continuityErrors", pid.continuityErrors},
                               {"sectionErrors", pid.sectionErrors},
                               {"transportErrors", pid.transportErrors},
                               {"scrambled", pid.scrambled}});
    }
    printJson(all);
}

void showText(const Inspection& stream) {
    printf("%s stream %s of network %s %s, %.1f s\n", stream.facts.atsc ? "ATSC" : "DVB",
           hexadecimal(stream.facts.streamId).c_str(),
           hexadecimal(stream.facts.originalNetworkId).c_str(), stream.facts.networkName.c_str(),
           stream.seconds);
    if (stream.facts.time) printf("time %s UTC\n", utcText(stream.facts.time->utc).c_str());
    std::vector<std::vector<std::string>> rows{
            {"ID", "NUMBER", "NAME", "PICTURE", "COMPONENTS", "NOW"}};
    for (const auto& [id, service] : stream.facts.services) {
        std::string components;
        for (const Component& each : service.components) {
            if (!components.empty()) components += ", ";
            components += kindOf(each);
            if (!each.language.empty()) components += " " + each.language;
        }
        const auto now = stream.events.present(service.guideKey);
        const EventText* text = now ? now->text() : nullptr;
        rows.push_back({hexadecimal(id), numberOf(service), service.name(),
                        service.format ? formatOf(*service.format) : "", components,
                        text == nullptr ? "" : text->title});
    }
    printf("\n");
    printTable(rows);
    rows = {{"PID", "PACKETS", "KBIT/S", "LOST", "DAMAGED", "SCRAMBLED"}};
    for (const PidFacts& pid : stream.pids) {
        rows.push_back({hexadecimal(pid.pid), std::to_string(pid.packets),
                        std::to_string(pid.bitsPerSecond / 1000),
                        std::to_string(pid.continuityErrors),
                        std::to_string(pid.sectionErrors + pid.transportErrors),
                        std::to_string(pid.scrambled)});
    }
    printf("\n");
    printTable(rows);
}

void info(const std::string& path, bool json) {
    Inspection stream;
    try {
        stream = inspect(path);
    } catch (const std::runtime_error& e) {
        throw Failure(kRefused, e.what());
    }
    json ? showJson(stream) : showText(stream);
}

}  // namespace

void addStream(Command& app) {
    struct Options {
        std::string file;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    Command* stream = app.addCommand("stream", "Transport streams in files");
    stream->requireCommand();
    Command* command = stream->addCommand("info", "Show what a file has, without a television");
    command->addOption("file", options->file, "A file of packets of 188, 192 or 204 bytes")
            ->required();
    addJson(command, &options->json);
    command->callback([options] { info(options->file, options->json); });
}

}  // namespace tool
