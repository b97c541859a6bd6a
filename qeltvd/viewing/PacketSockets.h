#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Files.h"
#include "PacketSource.h"
#include "layouts/presentation.h"

namespace qeltvd {

/**
 * Gives the packets of what the video paths play to other programs of this user: one stream socket
 * per path, qeltvd-main.ts and qeltvd-sub.ts. Each client receives a transport stream of its own,
 * which begins with the tables of the service and ends when the path plays something else. A
 * service without packets ends a connection at once. All functions may be called on any thread.
 */
class PacketSockets {
  public:
    /** Clients of one path at a time; further connections end at once. */
    static constexpr size_t kClientLimit = 8;

    /** Makes the packets of the service for one client; may return null. */
    using Service = std::function<std::unique_ptr<PacketSource>()>;

    /** @param directory of the sockets; empty for none */
    explicit PacketSockets(const std::string& directory);
    ~PacketSockets();
    PacketSockets(const PacketSockets&) = delete;
    PacketSockets& operator=(const PacketSockets&) = delete;

    /** Ends the connections of a path; the next ones receive this service. Does not wait. */
    void show(uint32_t path, Service service);

  private:
    struct Listener {
        std::string path;
        Descriptor socket;
        /** The file of the socket, which may have been replaced by another television's. */
        uint64_t device = 0;
        uint64_t file = 0;
    };
    struct Client {
        uint32_t path = 0;
        uint64_t turn = 0;
        Descriptor socket;
        std::unique_ptr<PacketSource> packets;
        int64_t read = 0;
        /** Bytes that the socket has not taken. */
        std::vector<uint8_t> pending;
        size_t sent = 0;
        /** It sends nothing more, and may receive. */
        bool mute = false;
        bool gone = false;

        bool waits() const { return sent < pending.size(); }
        void receive();
        void send();
    };

    void listen(const std::string& path, Listener* listener);
    void run();
    /** Waits for connections, for clients, for show(), or for packets. */
    void wait();
    void accept(uint32_t path);
    void wake();

    std::array<Listener, QELTV_PATHS> mListeners;
    Descriptor mWake;

    std::mutex mLock;
    // Guarded by mLock.
    struct Shown {
        Service service;
        /** Counts the services. */
        uint64_t turn = 0;
    };
    std::array<Shown, QELTV_PATHS> mShown;
    bool mEnds = false;

    // Of the thread.
    std::list<Client> mClients;
    /** There is no descriptor for a connection. */
    bool mExhausted = false;

    std::thread mThread;
};

}  // namespace qeltvd
