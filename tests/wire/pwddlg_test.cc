#include "hw_qeltvapi_pwddlg.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_pwddlg)(client)";
    t.rows = {
            // The answer is cut to 8 bits, the -1 of the failures too.
            Row("a_qeltvapi_PWDDLG_checkPWD", 117)
                    .call([](Outputs&) { return a_qeltvapi_PWDDLG_checkPWD("4711"); })
                    .sent({str("4711")})
                    .answered({i32(0x1fe)})
                    .returns(0xfe)
                    .missing(255)
                    .lost(255)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}"}),
            Row("a_qeltvapi_PWDDLG_show", 118)
                    .call([](Outputs&) { return a_qeltvapi_PWDDLG_show(); })
                    .answered({i32(0x1fe)})
                    .returns(0x1fe)
                    .direct<int32_t>()
                    .entry({"<{f}:{n}> {f}"}),
    };
    return t;
}

WIRE_TABLE_TESTS(PwddlgWire, table())

}  // namespace
