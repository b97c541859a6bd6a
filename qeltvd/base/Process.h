#pragma once

#include <sys/types.h>

namespace qeltvd {

/** Whether a process exists; false for one that has ended and is only waited for. */
bool isAlive(pid_t process);

}  // namespace qeltvd
