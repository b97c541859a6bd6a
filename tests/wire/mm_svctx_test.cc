#include "hw_mm_svctx.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_mm_svctx)(client)";
    t.entry = {"<{f}:{n}> ."};
    t.rows = {
            // The answer is stored whole, regardless of the length that was given.
            Row("c_svctx_generic_get_info", 25)
                    .call([](Outputs& o) {
                        return c_svctx_generic_get_info(0x80000001, 0x80000002, 0x80000003, o.at(0),
                                                        8);
                    })
                    .sent({u32(0x80000001), u32(0x80000002), u32(0x80000003), u32(8)})
                    .answered({bytes(counted(31)), i32(3)})
                    .returns(3)
                    .stores(0, counted(31)),
            // The answer lands in the buffer that was sent.
            Row("c_svctx_generic_set_info", 26)
                    .call([](Outputs& o) {
                        return c_svctx_generic_set_info(0x80000004, 0x80000005, 0x80000006, o.at(0),
                                                        8);
                    })
                    .given(0, counted(8, 90))
                    .sent({u32(0x80000004), u32(0x80000005), u32(0x80000006),
                           bytes(counted(8, 90))})
                    .answered({bytes(counted(13)), i32(4)})
                    .returns(4)
                    .stores(0, counted(13)),
    };
    return t;
}

WIRE_TABLE_TESTS(MmSvctxWire, table())

}  // namespace
