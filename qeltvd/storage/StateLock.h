#pragma once

#include <string>

#include "Files.h"

namespace qeltvd {

/** The state directory, held by one television at a time for as long as the object lives. */
class StateLock {
  public:
    /**
     * Makes the directory if there is none. Waits for a television that is about to end.
     *
     * @throws std::runtime_error if another user or another television has it
     */
    explicit StateLock(const std::string& directory);

  private:
    const Descriptor mDirectory;
};

}  // namespace qeltvd
