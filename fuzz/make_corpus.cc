// Writes the corpus that the fuzzers start from: make_corpus DIRECTORY

#include <hidl/Static.h>
#include <qeltvapi/service/interfaces.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiCallback.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

#include "Demux.h"
#include "Methods.h"
#include "QelTvApiCallbackImpl.h"
#include "calls.h"
#include "message.h"
#include "stream_composer.h"

namespace {

/** Keeps the bytes of the last call and of the reply that a stub gave to it. */
class Recording : public android::hardware::IBinder {
  public:
    explicit Recording(android::sp<android::hardware::IBinder> stub) : mStub(std::move(stub)) {}

    android::status_t transact(uint32_t code, const android::hardware::Parcel& data,
                               android::hardware::Parcel*, uint32_t, TransactCallback) override {
        call = fuzz::bytesOf(data, code);
        hidlhost::MessageHeader header;
        android::hardware::Parcel received, answer;
        if (!fuzz::parse(reinterpret_cast<const uint8_t*>(call.data()), call.size(), &header,
                         &received)) {
            return android::BAD_VALUE;
        }
        mStub->localBinder()->onTransact(
                code, received, &answer, 0,
                [this](android::hardware::Parcel& sent) { reply = fuzz::bytesOf(sent, 0); });
        if (reply.empty()) reply = fuzz::bytesOf(answer, 0);
        return android::BAD_VALUE;
    }
    android::status_t linkToDeath(const android::sp<DeathRecipient>&, void*, uint32_t) override {
        return android::INVALID_OPERATION;
    }
    android::status_t unlinkToDeath(const android::wp<DeathRecipient>&, void*, uint32_t,
                                    android::wp<DeathRecipient>*) override {
        return android::INVALID_OPERATION;
    }

    std::string call;
    std::string reply;

  private:
    const android::sp<android::hardware::IBinder> mStub;
};

void* objectOf(const std::string& descriptor) {
    using namespace qeltvapi::service;
    using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback;
    if (descriptor == IQelTvApi::descriptor)
        return static_cast<IQelTvApi*>(new Default<IQelTvApi>(0));
    if (descriptor == IQelTvApiCI::descriptor)
        return static_cast<IQelTvApiCI*>(new Default<IQelTvApiCI>(0));
    if (descriptor == IQelTvApiChannelList::descriptor)
        return static_cast<IQelTvApiChannelList*>(new Default<IQelTvApiChannelList>(0));
    if (descriptor == IQelTvApiConfig::descriptor)
        return static_cast<IQelTvApiConfig*>(new Default<IQelTvApiConfig>(0));
    if (descriptor == IQelTvApiEvent::descriptor)
        return static_cast<IQelTvApiEvent*>(new Default<IQelTvApiEvent>(0));
    if (descriptor == IQelTvApiRating::descriptor)
        return static_cast<IQelTvApiRating*>(new Default<IQelTvApiRating>(0));
    if (descriptor == IQelTvApiTime::descriptor)
        return static_cast<IQelTvApiTime*>(new Default<IQelTvApiTime>(0));
    return static_cast<IQelTvApiCallback*>(new QelTvApiCallbackImpl);
}

void write(const std::filesystem::path& directory, const std::string& name,
           const std::string& bytes) {
    std::filesystem::create_directories(directory);
    std::ofstream(directory / name, std::ios::binary) << bytes;
}

/** @return what has been written for the calls */
std::vector<std::string> record(const std::vector<fuzz::CallOfProxy>& calls,
                                const std::filesystem::path& forCalls,
                                const std::filesystem::path& forReplies) {
    std::vector<std::string> all;
    for (size_t i = 0; i < calls.size(); ++i) {
        const auto make =
                android::hardware::details::getBnConstructorMap().get(calls[i].descriptor, nullptr);
        const android::sp<Recording> recording = new Recording(make(objectOf(calls[i].descriptor)));
        calls[i].call(recording);
        write(forCalls, std::to_string(i), recording->call);
        if (!forReplies.empty()) {
            write(forReplies, std::to_string(i), recording->reply + static_cast<char>(i));
        }
        all.push_back(recording->call);
    }
    return all;
}

/**
 * Messages that reach every method of an interface: arguments of zeros, which are as good as any
 * number, and the records of a call that had a text or a vector for the methods that take one.
 */
void reachAll(const char* descriptor, size_t methods, const std::string& like,
              const std::filesystem::path& directory) {
    hidlhost::MessageHeader header;
    memcpy(&header, like.data(), sizeof(header));
    const std::string records =
            like.substr(sizeof(header) + static_cast<size_t>(hidlhost::padded(header.dataSize)));
    std::string stream = descriptor;
    stream.resize((stream.size() + 4) / 4 * 4 + 40 * sizeof(uint32_t));
    stream.resize(static_cast<size_t>(hidlhost::padded(stream.size())));
    header.dataSize = static_cast<uint32_t>(stream.size());
    const std::string name = descriptor;
    for (size_t code = 1; code <= methods; ++code) {
        header.code = static_cast<uint32_t>(code);
        write(directory, name.substr(name.rfind(':') + 1) + "-" + std::to_string(code),
              std::string(reinterpret_cast<const char*>(&header), sizeof(header)) + stream +
                      records);
    }
}

/** Files of the kinds that file_fuzz reads; the last byte selects the kind. */
void writeFiles(const std::filesystem::path& directory) {
    constexpr char kTable = 0;
    constexpr char kEntry = 1;
    const std::pair<const char*, char> files[] = {
            {"dvb-t/de-Berlin\n# Berlin\n[Kanal 33]\n\tDELIVERY_SYSTEM = DVBT2\n"
             "\tFREQUENCY = 570000000\n\tBANDWIDTH_HZ = 8000000\n\tCODE_RATE_HP = 2/3\n",
             kTable},
            {"dvb-s/Astra-1N-19.2E\n[CHANNEL]\nDELIVERY_SYSTEM = DVBS2\nFREQUENCY = 11493750\n"
             "POLARIZATION = HORIZONTAL\nSYMBOL_RATE = 22000000\nINNER_FEC = 9/10\n"
             "MODULATION = PSK/8\n[CHANNEL]\nDELIVERY_SYSTEM = DVBS\nFREQUENCY = 12603750\n",
             kTable},
            {"atsc/us-ATSC-center-frequencies-8VSB\n[A]\nDELIVERY_SYSTEM = ATSC\n"
             "FREQUENCY = 177028615\nMODULATION = VSB/8\n",
             kTable},
            {"qelnova%40a@1.0::IFoo%2Fdefault\nhidlhost 1\nnode 4711-0e4487d34e57ddf2\nobject 3\n",
             kEntry},
    };
    size_t number = 0;
    for (const auto& [text, kind] : files)
        write(directory, std::to_string(number++), text + std::string(1, kind));
}

/** Streams and their sections, in the kinds that stream_fuzz reads. */
void writeStreams(const std::filesystem::path& directory) {
    using namespace qeltvd::stream;
    constexpr size_t kPackets = 40;
    size_t number = 0;
    for (composed::Octets stream : {composed::dvb(), composed::atsc()}) {
        std::set<std::string> sections;
        Demux demux;
        const auto add = [&](uint16_t pid, const uint8_t* data, size_t size) {
            const uint8_t head[] = {static_cast<uint8_t>(pid >> 8), static_cast<uint8_t>(pid),
                                    static_cast<uint8_t>(size >> 8), static_cast<uint8_t>(size)};
            sections.insert(std::string(head, head + sizeof(head)) +
                            std::string(data, data + size));
        };
        // Pictures, sound and teletext are no sections.
        for (const uint16_t pid : std::initializer_list<uint16_t>{
                     0x00, 0x10, 0x11, 0x12, 0x14, 0x100, 0x106, 0x200, 0x1d00, 0x1e00, 0x1ffb}) {
            demux.filterSections(pid, add);
        }
        demux.filterPes(composed::kFirstTeletext, [&](const PesPacket& packet) {
            write(directory, "teletext",
                  std::string(1, 2) +
                          std::string(packet.payload, packet.payload + packet.payloadSize));
        });
        demux.filterPes(composed::kFirstVideo, [&](const PesPacket& packet) {
            write(directory, "picture" + std::to_string(number % 8),
                  std::string(1, 3) +
                          std::string(packet.payload, packet.payload + packet.payloadSize));
            ++number;
        });
        demux.push({stream.data(), stream.size() / kPacketSize, false});
        std::string all(1, 1);
        for (const std::string& section : sections) {
            write(directory, "section" + std::to_string(number++), std::string(1, 1) + section);
            all += section;
        }
        write(directory, "sections" + std::to_string(number++), all);
        for (size_t i = 0; i < 4; ++i) {
            const auto* begin =
                    reinterpret_cast<const char*>(stream.data()) + i * kPackets * kPacketSize;
            write(directory, "stream" + std::to_string(number++),
                  std::string(1, 0) + std::string(begin, kPackets * kPacketSize));
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    using namespace fuzz;
    if (argc != 2) {
        fprintf(stderr, "usage: make_corpus DIRECTORY\n");
        return 2;
    }
    const std::filesystem::path directory = argv[1];
    // With a text, a vector of bytes, and neither.
    const auto calls = record(fuzz::calls(), directory / "service", directory / "reply");
    for (const size_t like : {0u, 4u, 7u}) {
        const auto into = directory / "service" / ("as-" + std::to_string(like));
#define REACH_ALL(interface) \
    reachAll(interface::descriptor, std::size(qeltvd::k##interface##Methods), calls[like], into)
        REACH_ALL(IQelTvApi);
        REACH_ALL(IQelTvApiBroadcast);
        REACH_ALL(IQelTvApiCI);
        REACH_ALL(IQelTvApiCec);
        REACH_ALL(IQelTvApiChannelList);
        REACH_ALL(IQelTvApiConfig);
        REACH_ALL(IQelTvApiEvent);
        REACH_ALL(IQelTvApiInputSrc);
        REACH_ALL(IQelTvApiMultiview);
        REACH_ALL(IQelTvApiPvrbrowser);
        REACH_ALL(IQelTvApiRating);
        REACH_ALL(IQelTvApiRecord);
        REACH_ALL(IQelTvApiScan);
        REACH_ALL(IQelTvApiTime);
        REACH_ALL(IQelTvApiTimeshift);
    }
    const auto notifications = record(fuzz::notifications(), directory / "notification", "");
    for (const size_t like : {0u, 2u, 3u}) {
        reachAll(IQelTvApiCallback::descriptor, std::size(qeltvd::kIQelTvApiCallbackMethods),
                 notifications[like], directory / "notification" / ("as-" + std::to_string(like)));
    }
    writeFiles(directory / "file");
    writeStreams(directory / "stream");
    return 0;
}
