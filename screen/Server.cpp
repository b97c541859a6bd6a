#include "Server.h"

#include <httplib.h>

#include <algorithm>
#include <atomic>
#include <charconv>

#include "Actions.h"
#include "Assets.h"
#include "ImageFile.h"
#include "PictureSource.h"

namespace screen {
namespace {

using Json = nlohmann::ordered_json;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr size_t kThreads = 32;
/** Connections that wait for a thread. Further ones wait in the kernel, which has few places. */
constexpr size_t kWaiting = 32;
/** Event and picture connections at a time, each of which holds a thread. */
constexpr int kStreams = 24;
constexpr size_t kBody = 4096;
/** How long a quiet event stream can be without a sign that its page is still there. */
constexpr milliseconds kSilence{5000};
constexpr int kSmallest = 160, kLargest = 1920;
constexpr size_t kGuideChannels = 64;
constexpr int64_t kGuideSeconds = 24 * 3600;

/** A thread pool whose queue has an end. */
class Workers : public httplib::TaskQueue {
  public:
    Workers() : mPool(kThreads) {}

    void enqueue(std::function<void()> task) override {
        {
            std::unique_lock<std::mutex> guard(mLock);
            // Holds up the thread that accepts.
            mDone.wait(guard, [this] { return mPending < kThreads + kWaiting || mEnds; });
            ++mPending;
        }
        mPool.enqueue([this, task = std::move(task)] {
            task();
            std::lock_guard<std::mutex> guard(mLock);
            --mPending;
            mDone.notify_one();
        });
    }
    void shutdown() override {
        {
            std::lock_guard<std::mutex> guard(mLock);
            mEnds = true;
            mDone.notify_all();
        }
        mPool.shutdown();
    }

  private:
    httplib::ThreadPool mPool;
    std::mutex mLock;
    std::condition_variable mDone;
    // Guarded by mLock.
    size_t mPending = 0;
    bool mEnds = false;
};

/** Counts an event or picture connection as long as it lives. */
class Stream {
  public:
    explicit Stream(std::atomic<int>& count) : mCount(count), mAllowed(count++ < kStreams) {}
    ~Stream() { --mCount; }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    bool allowed() const { return mAllowed; }

  private:
    std::atomic<int>& mCount;
    const bool mAllowed;
};

/** A whole number of the query. */
template <class T>
std::optional<T> number(const httplib::Request& request, const char* name) {
    const std::string text = request.get_param_value(name);
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

void refuse(httplib::Response& response, int status, const std::string& why) {
    response.status = status;
    response.set_content(why + "\n", "text/plain; charset=utf-8");
}

void answer(httplib::Response& response, const Json& json) {
    response.set_content(json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
                         "application/json");
}

}  // namespace

class Server::Private {
  public:
    Private(Model& model, Hub& hub, int port) : mModel(model), mHub(hub) {
        mServer.new_task_queue = [] { return new Workers; };
        // Not the library's, which would let two programs share the port.
        mServer.set_socket_options([](int socket) {
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
        });
        mServer.set_tcp_nodelay(true);
        mServer.set_payload_max_length(kBody);
        mServer.set_read_timeout(5, 0);
        mServer.set_write_timeout(5, 0);
        mServer.set_keep_alive_timeout(2);
        mServer.set_keep_alive_max_count(100);
        mServer.set_default_headers(
                {{"Content-Security-Policy",
                  "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
                  "connect-src 'self'; base-uri 'none'; form-action 'none'; "
                  "frame-ancestors 'none'"},
                 {"Cache-Control", "no-store"},
                 {"Cross-Origin-Resource-Policy", "same-origin"},
                 {"Cross-Origin-Opener-Policy", "same-origin"},
                 {"Referrer-Policy", "no-referrer"},
                 {"X-Content-Type-Options", "nosniff"}});
        mServer.set_pre_routing_handler(
                [this](const httplib::Request& request, httplib::Response& response) {
                    return admit(request, response) ? httplib::Server::HandlerResponse::Unhandled
                                                    : httplib::Server::HandlerResponse::Handled;
                });
        mServer.set_exception_handler(
                [](const httplib::Request&, httplib::Response& response, std::exception_ptr) {
                    refuse(response, 500, "the request failed");
                });
        route();
        mPort = port == 0                                 ? mServer.bind_to_any_port("127.0.0.1")
                : mServer.bind_to_port("127.0.0.1", port) ? port
                                                          : -1;
        if (mPort <= 0) {
            throw std::runtime_error("port " + std::to_string(port) +
                                     " cannot be bound; choose another one with --port");
        }
    }

    int port() const { return mPort; }
    void run() { mServer.listen_after_bind(); }
    void stop() {
        mHub.close();
        mServer.stop();
    }

  private:
    /** Whether a request comes from the page; other pages of the browser reach this port as well.
     */
    bool admit(const httplib::Request& request, httplib::Response& response) const {
        const std::string port = ":" + std::to_string(mPort);
        const std::string host = request.get_header_value("Host");
        if (request.get_header_value_count("Host") != 1 ||
            (host != "127.0.0.1" + port && host != "localhost" + port)) {
            refuse(response, 403, "this host is not served");
            return false;
        }
        const bool safe = request.method == "GET" || request.method == "HEAD";
        const std::string origin = request.get_header_value("Origin");
        const std::string site = request.get_header_value("Sec-Fetch-Site");
        if ((!origin.empty() || !safe) && origin != "http://" + host) {
            refuse(response, 403, "only the page itself may send this");
            return false;
        }
        // A link that the viewer follows, or the address typed, comes from no page.
        const bool own = site.empty() || site == "same-origin" || site == "none";
        if (!own && !(request.path == "/" && safe)) {
            refuse(response, 403, "only the page itself may read this");
            return false;
        }
        return true;
    }

    void route() {
        for (const Asset& asset : assets()) {
            mServer.Get(std::string(asset.path),
                        [&asset](const httplib::Request&, httplib::Response& response) {
                            response.set_content(asset.content.data(), asset.content.size(),
                                                 std::string(asset.type).c_str());
                        });
        }
        mServer.Get("/events", [this](const httplib::Request&, httplib::Response& response) {
            events(response);
        });
        mServer.Get("/picture/main",
                    [this](const httplib::Request& request, httplib::Response& response) {
                        picture(0, request, response);
                    });
        mServer.Get("/picture/sub",
                    [this](const httplib::Request& request, httplib::Response& response) {
                        picture(1, request, response);
                    });
        mServer.Get("/channels", [this](const httplib::Request&, httplib::Response& response) {
            answer(response, mModel.television().channels());
        });
        mServer.Get("/inputs", [this](const httplib::Request&, httplib::Response& response) {
            answer(response, mModel.television().inputs());
        });
        mServer.Get("/recordings", [this](const httplib::Request&, httplib::Response& response) {
            answer(response, mModel.television().recordings());
        });
        mServer.Get("/guide", [this](const httplib::Request& request, httplib::Response& response) {
            guide(request, response);
        });
        mServer.Get("/programme",
                    [this](const httplib::Request& request, httplib::Response& response) {
                        const auto channel = number<uint32_t>(request, "channel");
                        const auto event = number<uint16_t>(request, "event");
                        if (!channel || !event) {
                            refuse(response, 400, "channel and event are numbers");
                            return;
                        }
                        answer(response, mModel.television().programme(*channel, *event));
                    });
        mServer.Post("/do", [this](const httplib::Request& request, httplib::Response& response) {
            if (request.get_header_value("Content-Type") != "application/json") {
                refuse(response, 415, "a request is application/json");
                return;
            }
            try {
                answer(response, {{"result", act(mModel, request.body)}});
            } catch (const BadRequest& error) {
                refuse(response, 400, error.what());
            }
        });
    }

    void guide(const httplib::Request& request, httplib::Response& response) {
        const auto from = number<int64_t>(request, "from"), to = number<int64_t>(request, "to");
        std::vector<uint32_t> channels;
        const std::string list = request.get_param_value("channels");
        for (const char* at = list.data(); at < list.data() + list.size();) {
            uint32_t channel = 0;
            const auto [end, error] = std::from_chars(at, list.data() + list.size(), channel);
            if (error != std::errc() || channels.size() == kGuideChannels) {
                channels.clear();
                break;
            }
            channels.push_back(channel);
            at = end + 1;
        }
        if (!from || !to || *from < 0 || *to <= *from || *to - *from > kGuideSeconds ||
            channels.empty()) {
            refuse(response, 400,
                   "a guide has up to " + std::to_string(kGuideChannels) + " channels and a day");
            return;
        }
        answer(response, mModel.television().guide(channels, *from, *to));
    }

    void events(httplib::Response& response) {
        struct Reader {
            Stream stream;
            Model::Viewer viewer;
            Hub::Position position;
        };
        // Made in place: its parts cannot be copied.
        std::shared_ptr<Reader> reader(new Reader{Stream(mStreams), Model::Viewer(mModel), {}});
        if (!reader->stream.allowed()) {
            refuse(response, 503, "too many pages are open");
            return;
        }
        response.set_chunked_content_provider(
                "text/event-stream", [this, reader](size_t offset, httplib::DataSink& sink) {
                    // The page comes back soon after a restart of the television.
                    if (offset == 0) return write(sink, "retry: 250\n\n");
                    const std::string news = mHub.next(&reader->position, kSilence);
                    if (mHub.closed()) return false;
                    return write(sink, news.empty() ? ":\n\n" : news);
                });
    }

    static bool write(httplib::DataSink& sink, const std::string& text) {
        return sink.write(text.data(), text.size());
    }

    void picture(uint32_t path, const httplib::Request& request, httplib::Response& response) {
        int width = std::clamp(number<int>(request, "width").value_or(960), kSmallest, kLargest);
        width = (width + 15) / 16 * 16;
        struct Viewing {
            Stream stream;
            Model::Viewer viewer;
            PictureSource source;
            JpegEncoder encoder;
        };
        // Made in place: its parts cannot be copied.
        std::shared_ptr<Viewing> viewing(new Viewing{
                Stream(mStreams), Model::Viewer(mModel), PictureSource(path, width), {}});
        if (!viewing->stream.allowed()) {
            refuse(response, 503, "too many pictures are open");
            return;
        }
        response.set_chunked_content_provider(
                "multipart/x-mixed-replace; boundary=picture",
                [this, viewing](size_t offset, httplib::DataSink& sink) {
                    if (mHub.closed()) return false;
                    const Canvas* canvas = viewing->source.next(mModel);
                    if (canvas == nullptr) return sink.is_writable();
                    const auto [bytes, size] = viewing->encoder.encode(*canvas);
                    // A part is shown when the boundary behind it has come.
                    std::string part = offset == 0 ? "--picture\r\n" : "";
                    part += "Content-Type: image/jpeg\r\nContent-Length: " + std::to_string(size) +
                            "\r\n\r\n";
                    part.append(reinterpret_cast<const char*>(bytes), size);
                    part += "\r\n--picture\r\n";
                    return sink.write(part.data(), part.size());
                });
    }

    Model& mModel;
    Hub& mHub;
    httplib::Server mServer;
    int mPort = -1;
    std::atomic<int> mStreams{0};
};

Server::Server(Model& model, Hub& hub, int port)
        : mPrivate(std::make_unique<Private>(model, hub, port)) {}
Server::~Server() = default;

int Server::port() const {
    return mPrivate->port();
}

void Server::run() {
    mPrivate->run();
}

void Server::stop() {
    mPrivate->stop();
}

}  // namespace screen
