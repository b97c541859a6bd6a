#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tool {

/** What a file says of a television; docs/ci.md shows one. */
class Scenario {
  public:
    /** Reads a file; ends the command with the path in the file of what is wrong. */
    explicit Scenario(const std::string& file);

    /** Brings the running television into that state. */
    void apply() const;

  private:
    struct Step {
        /** In the file, "/config/picture.contrast". */
        std::string path;
        std::function<void()> run;
    };

    const std::string mFile;
    std::vector<Step> mSteps;
};

}  // namespace tool
