#include "hw_qeltvapi_cec.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApiCec";
    t.tag = "(hw_qeltvapi_cec)(client)";
    t.entry = {"<{f}:{n}> {f}"};
    t.missing = 0;
    t.missingTraced = {"<{f}:{n}> {f}, Get service fail\n"};
    t.rows = {
            Row("a_qeltvapi_get_earc_caps", 0)
                    .call([](Outputs&) { return a_qeltvapi_get_earc_caps(); })
                    .answered({boolean(true)})
                    .returns(1)
                    .unchecked()
                    .exit({"<{f}:{n}> {f}, b_supported={r}\n"}),
            // Any number but 0 is true; the setter's line has no line feed.
            Row("a_qeltvapi_set_earc_enable", 1)
                    .call([](Outputs&) { return a_qeltvapi_set_earc_enable(2); })
                    .sent({boolean(true)})
                    .answered({i32(-3)})
                    .returns(-3)
                    .missing(-1)
                    .missingLines({}, {"<{f}:{n}> {f}, Get service fail"})
                    .unchecked(),
            Row("a_qeltvapi_get_earc_status", 2)
                    .call([](Outputs&) { return a_qeltvapi_get_earc_status(0x80000004); })
                    .sent({u32(0x80000004)})
                    .answered({boolean(true)})
                    .returns(1)
                    .unchecked()
                    .exit({"<{f}:{n}> {f}, b_status={r}\n"}),
            Row("a_qeltvapi_get_earc_caps", 0)
                    .call([](Outputs&) { return a_qeltvapi_get_earc_caps(); })
                    .answered({boolean(false)})
                    .returns(0)
                    .unchecked()
                    .exit({"<{f}:{n}> {f}, b_supported=0\n"}),
            Row("a_qeltvapi_set_earc_enable", 1)
                    .call([](Outputs&) { return a_qeltvapi_set_earc_enable(0); })
                    .sent({boolean(false)})
                    .answered({i32(4)})
                    .returns(4)
                    .missing(-1)
                    .missingLines({}, {"<{f}:{n}> {f}, Get service fail"})
                    .unchecked(),
            Row("a_qeltvapi_get_earc_status", 2)
                    .call([](Outputs&) { return a_qeltvapi_get_earc_status(3); })
                    .sent({u32(3)})
                    .answered({boolean(false)})
                    .returns(0)
                    .unchecked()
                    .exit({"<{f}:{n}> {f}, b_status=0\n"}),
    };
    return t;
}

TEST(CecWire, TouchesNothingWhenTheServiceIsMissing) {
    runMissing(table());
}

TEST(CecWire, CallsItsMethodAndStoresTheAnswer) {
    runAnswered(table());
}

TEST(CecWire, EndsTheProcessWhenTheReplyIsLost) {
    expectLostReplyEndsTheProcess({}, a_qeltvapi_get_earc_caps);
    expectLostReplyEndsTheProcess({boolean(false)}, [] { return a_qeltvapi_set_earc_enable(0); });
    expectLostReplyEndsTheProcess({u32(1)}, [] { return a_qeltvapi_get_earc_status(1); });
}

}  // namespace
