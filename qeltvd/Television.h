#pragma once

#include <string>

#include "ConfigItems.h"
#include "Notifier.h"
#include "Store.h"

namespace qeltvd {

/** What the services of the reference television share. */
struct Television {
    /** @param state directory of the store. @throws StoreError */
    explicit Television(const std::string& state) : store(state + "/television.db"), config(store) {}

    Store store;
    Notifier notifier;
    ConfigItems config;
};

}  // namespace qeltvd
