// An implementation that is loaded into the process of its user.

#include "kit_objects.h"

using ::hidlhost::test::kit::V1_0::IListener;

extern "C" __attribute__((visibility("default"))) IListener* HIDL_FETCH_IListener(const char*);

extern "C" IListener* HIDL_FETCH_IListener(const char* /* name */) {
    return new kit::Successor;
}
