/** A service of the package that keeps to everything the library relies on, but for one fault. */
#ifndef TESTS_CONFORMANCE_FAULTY_SERVICE_H
#define TESTS_CONFORMANCE_FAULTY_SERVICE_H

#include <hidlhost/raw_service.h>

#include <memory>
#include <string>

namespace wire {

/** Serves all interfaces in this process until its end. */
class FaultyService {
  public:
    /** @param fault the check of qeltv-conformance that has to find it; "" for none, "death" */
    explicit FaultyService(const std::string& fault);
    ~FaultyService();

    struct State;

  private:
    /** Threads that notify hold it, too. */
    const std::shared_ptr<State> mState;
};

}  // namespace wire

#endif  // TESTS_CONFORMANCE_FAULTY_SERVICE_H
