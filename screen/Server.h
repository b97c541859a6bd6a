#pragma once

#include <memory>
#include <string>

#include "Hub.h"
#include "Model.h"

namespace screen {

/**
 * Serves the page on 127.0.0.1: its files, the state as server-sent events, the pictures as motion
 * JPEG, the lists as JSON, and the viewer's keys. It answers only to the page that it has served.
 */
class Server {
  public:
    /**
     * @param port 0 for any free one
     * @throws std::runtime_error when the port cannot be bound
     */
    Server(Model& model, Hub& hub, int port);
    ~Server();

    int port() const;
    /** Serves until stop(). */
    void run();
    /** Ends run(); on any thread. */
    void stop();

  private:
    class Private;
    std::unique_ptr<Private> mPrivate;
};

}  // namespace screen
