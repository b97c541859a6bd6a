#include "hw_qeltvapi_html_agent.h"

#include "wire.h"

using namespace wire;

namespace {

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_qeltvapi_html_agent)(client)";
    t.rows = {
            // A longer reply is cut to what was sent.
            Row("a_qeltvapi_html_agent_exchange_data", 248)
                    .given(0, counted(16))
                    .call([](Outputs& o) {
                        return a_qeltvapi_html_agent_exchange_data(o.at(0), 2);
                    })
                    .sent({bytes(counted(8))})
                    .answered({bytes(counted(12, 100)), i32(3)})
                    .returns(3)
                    .stores(0, counted(8, 100)),
            // A shorter one leaves the rest.
            Row("a_qeltvapi_html_agent_exchange_data", 248)
                    .given(0, counted(8))
                    .call([](Outputs& o) {
                        return a_qeltvapi_html_agent_exchange_data(o.at(0), 2);
                    })
                    .sent({bytes(counted(8))})
                    .answered({bytes(counted(3, 100)), i32(-4)})
                    .returns(-4)
                    .stores(0, counted(3, 100)),
            // No bytes, also by the wrap in 32 bits: refused before the service matters.
            Row("a_qeltvapi_html_agent_exchange_data", Row::kNoCall)
                    .call([](Outputs& o) {
                        return a_qeltvapi_html_agent_exchange_data(o.at(0), 0);
                    })
                    .returns(-1)
                    .replyAlways({"<{f}:{n}> 0"}),
            Row("a_qeltvapi_html_agent_exchange_data", Row::kNoCall)
                    .call([](Outputs& o) {
                        return a_qeltvapi_html_agent_exchange_data(o.at(0), 0xc0000000);
                    })
                    .returns(-1)
                    .replyAlways({"<{f}:{n}> 0"}),
    };
    return t;
}

WIRE_TABLE_TESTS(HtmlAgentWire, table())

}  // namespace
