#include "hw_tsl.h"

#include "call.h"
#include "channel_data.h"

using namespace qeltvapi;
using I = vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiChannelList;

namespace {

constexpr char kFile[] = __FILE__;

constexpr Family<I> kFamily{"(hw_tsl)(client)",
                            getQelTvApiChannelListService,
                            /*preset=*/-1,
                            /*missing=*/0,
                            line::enterIn<kFile>,
                            /*missingAlways=*/nullptr,
                            line::invalidIn<kFile>,
                            line::exitIn<kFile>};

}  // namespace

int c_tsl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec, uint32_t* word) {
    return ask(kFamily, HERE, &I::a_hidl_c_tsl_get_rec, storeBytesAndValue(rec, word), list_id,
               rec_id);
}
