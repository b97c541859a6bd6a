#pragma once

#include <stdexcept>
#include <string>

#include "Model.h"

namespace screen {

/** A request that the page must not make; its text is for a developer. */
class BadRequest : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * Does what the viewer asks for.
 *
 * @param request JSON, as in {"do": "key", "key": 166}
 * @return the result of the function of the library that was called
 * @throws BadRequest when it is not an object of a known form
 */
int64_t act(Model& model, const std::string& request);

}  // namespace screen
