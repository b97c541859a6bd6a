#pragma once

#include <hwbinder/IPCThreadState.h>

#include "ChannelListService.h"
#include "Code.h"
#include "Stored.h"

namespace qeltvd {

template <class F>
int32_t ChannelListService::change(DatabaseLocks::Database database, uint32_t list,
                                   const F& change) {
    if (list == 0 || list > UINT16_MAX) return kNotFound;
    const pid_t process = android::hardware::IPCThreadState::self()->getCallingPid();
    if (!mLocks.mayWrite(database, list, process)) return kRefused;
    return stored(change);
}

}  // namespace qeltvd
