#pragma once

#include <string>
#include <vector>

#include "Defaults.h"
#include "Switchboard.h"
#include "Television.h"

namespace qeltvd {

/**
 * IQelTvApi. A family's methods stand in the source file of the family; this file has what
 * belongs to none: the clients' callback objects, and the control of the television by tests and
 * tools, which is the interface's debug().
 */
class MainService : public IQelTvApiDefault {
  public:
    MainService(Television& tv, Switchboard& switchboard);

    template <class T>
    using Return = android::hardware::Return<T>;

    Return<void> a_hidl_registerCallbackHandler(
            const android::sp<IQelTvApiCallback>& callback) override;

    /**
     * Carries out one command and writes its answer, a text that ends in "ok\n" or in
     * "error: ...\n":
     *
     * dump                 clients, calls per method and faults, as JSON
     * raise METHOD VALUES [TIMES]
     *                      calls a method of every client's callback object; VALUES is a JSON
     *                      array of its arguments
     * fault METHOD die|lose|none
     * fault METHOD code|delay NUMBER
     * die                  ends the process at once
     */
    Return<void> debug(const android::hardware::hidl_handle& fd,
                       const android::hardware::hidl_vec<android::hardware::hidl_string>& options)
            override;

  private:
    std::string command(const std::vector<std::string>& words);
    std::string dump() const;

    Television& mTv;
    Switchboard& mSwitchboard;
};

}  // namespace qeltvd
