#include "hw_qeltvapi_state.h"

std::atomic<unsigned char> mTvApiDebug{0};

namespace qeltvapi {

Proxies proxies;

}  // namespace qeltvapi
