#pragma once

#include <stdexcept>
#include <string>

#include "Code.h"

namespace qeltvd {

/** An error that stands for a code: the answer of a call that throws it. */
class CodedError : public std::runtime_error {
  public:
    CodedError(Code code, const std::string& what) : std::runtime_error(what), mCode(code) {}
    Code code() const { return mCode; }

  private:
    Code mCode;
};

}  // namespace qeltvd
