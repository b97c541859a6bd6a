/** Everything that a test of the library at the wire needs. */
#ifndef TESTS_SUPPORT_WIRE_H
#define TESTS_SUPPORT_WIRE_H

#include <gtest/gtest.h>

#include "hw_qeltvapi_common.h"
#include "log_capture.h"
#include "scripted_service.h"
#include "table.h"
#include "values.h"

namespace wire {

/** The debug switch for the length of a scope. */
class Debug {
  public:
    explicit Debug(bool on) : mBefore(mTvApiDebug) { mTvApiDebug = on ? 1 : 0; }
    ~Debug() { mTvApiDebug = mBefore; }

  private:
    unsigned char mBefore;
};

}  // namespace wire

#endif  // TESTS_SUPPORT_WIRE_H
