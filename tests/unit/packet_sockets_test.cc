#include "PacketSockets.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstring>

using namespace qeltvd;

namespace {

constexpr size_t kPacket = stream::kPacketSize;

std::atomic<int> sSources{0};

/** Packets without an end, as fast as they are read. */
class Endless : public PacketSource {
  public:
    Endless() { ++sSources; }
    ~Endless() override { --sSources; }
    int64_t arrived(std::chrono::milliseconds) override {
        mArrived += 10 * int64_t{kPacket};
        return mArrived;
    }
    size_t read(uint8_t* buffer, size_t size) override {
        memset(buffer, 0x47, size);
        return size;
    }

  private:
    int64_t mArrived = 0;
};

class Client {
  public:
    explicit Client(const std::string& path)
            : mSocket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
        EXPECT_EQ(0,
                  connect(mSocket.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)));
        const timeval patience{30, 0};
        setsockopt(mSocket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
    }
    /** Reads so many bytes; false at the end before them. */
    bool reads(size_t size) {
        char bytes[4096];
        for (size_t got = 0; got < size;) {
            const ssize_t count = recv(mSocket.get(), bytes, sizeof(bytes), 0);
            EXPECT_GE(count, 0) << "neither packets nor an end";
            if (count <= 0) return false;
            got += static_cast<size_t>(count);
        }
        return true;
    }

  private:
    Descriptor mSocket;
};

TEST(PacketSockets, ClientsReceiveAServiceUntilAnotherIsShown) {
    char directory[] = "/tmp/packet-sockets-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(directory));
    const std::string path = std::string(directory) + "/qeltvd-main.ts";
    {
        PacketSockets sockets(directory);
        struct stat info {};
        ASSERT_EQ(0, stat(path.c_str(), &info));
        EXPECT_EQ(0600u, info.st_mode & 07777);
        EXPECT_FALSE(Client(path).reads(1)) << "nothing is shown";
        sockets.show(0, [] { return nullptr; });
        EXPECT_FALSE(Client(path).reads(1)) << "simulated";

        sockets.show(0, [] { return std::make_unique<Endless>(); });
        Client reader(path);
        std::list<Client> idle;
        for (size_t i = 1; i < PacketSockets::kClientLimit; ++i) idle.emplace_back(path);
        EXPECT_FALSE(Client(path).reads(1)) << "too many";
        EXPECT_TRUE(reader.reads(1000 * kPacket)) << "others do not read";
        sockets.show(0, [] { return std::make_unique<Endless>(); });
        EXPECT_FALSE(reader.reads(SIZE_MAX));
        EXPECT_TRUE(Client(path).reads(kPacket));
    }
    EXPECT_EQ(0, sSources);
    EXPECT_EQ(0, rmdir(directory)) << "the sockets are gone";
}

}  // namespace
