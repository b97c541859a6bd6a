#pragma once

#include <stdint.h>

/** Lets tests make the host's ION fail, step by step, and see what was released. */
namespace hidlhost {

enum class IonStep {
    OPEN,
    ALLOC,
    /** The buffer is handed out, yet mapping it for writing fails with EACCES. */
    MAP,
    FREE,
    /** The descriptor is closed all the same. */
    CLOSE,
};

/**
 * Makes one step fail while the object lives. Faults of one step replace each other; they hold for
 * all threads of the process.
 */
class IonFault {
  public:
    /**
     * @param step    what fails
     * @param result  what it returns then, negative; unused for MAP
     * @param skip    how many runs of the step succeed first
     */
    explicit IonFault(IonStep step, int result = -1, unsigned skip = 0);
    ~IonFault();
    IonFault(const IonFault&) = delete;
    IonFault& operator=(const IonFault&) = delete;

  private:
    const IonStep mStep;
};

/** Makes the allocator one that has handles, so that ion_free() is asked for and succeeds. */
class IonLegacy {
  public:
    IonLegacy();
    ~IonLegacy();
    IonLegacy(const IonLegacy&) = delete;
    IonLegacy& operator=(const IonLegacy&) = delete;
};

/** How often each function has succeeded in this process. */
struct IonCounts {
    uint64_t opened;
    uint64_t closed;
    uint64_t allocated;
    uint64_t freed;
};

IonCounts ionCounts();

/** Lets go of the buffers that are kept for reuse. */
void ionForgetBuffers();

}  // namespace hidlhost
