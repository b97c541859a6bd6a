#include "hw_svctx.h"
#include "wire.h"

using namespace wire;

namespace {

void* tag() {
    return reinterpret_cast<void*>(uintptr_t{0x81234567});
}

/** The typed select request at the wire: two vectors and two texts. */
Value request(const Bytes& block, const Bytes& first, const Bytes& second, const Bytes& specific) {
    return record(Bytes(64, '\0')).vec(0, block).text(16, first).text(32, second).vec(48, specific);
}

template <class Request>
Request filled(uint8_t type, const void* specific) {
    Request r;
    memset(&r, 0x5a, sizeof(r));
    r.first = "dvb://1.2.3";
    r.type = type;
    r.specific = specific;
    r.second = "second";
    return r;
}

template <class Request>
Bytes block(const Request& r) {
    return bytesOf(r).substr(0, 260);
}

const Bytes kSpecific = counted(192);
const Bytes kSide = counted(140, 77);
const auto kRequest = filled<qeltvapi_svctx_select_t>(1, kSpecific.data());
const auto kRequest64 = filled<qeltvapi_svctx_select_64_t>(1, kSpecific.data());

const auto kUnknown = filled<qeltvapi_svctx_select_t>(2, kSpecific.data());

Table table() {
    Table t;
    t.interface = "IQelTvApi";
    t.tag = "(hw_svctx)(client)";
    t.rows = {
            Row("c_svctx_open", 16)
                    .call([](Outputs& o) { return c_svctx_open("main_svctx", o.at<uint32_t>(0)); })
                    .sent({str("main_svctx")})
                    .answered({u32(0xc0000001), i32(3)})
                    .returns(3)
                    .stores(0, uint32_t{0xc0000001}),
            Row("c_svctx_close", 17)
                    .call([](Outputs&) { return c_svctx_close(0xc0000002); })
                    .sent({u32(0xc0000002)})
                    .answered({i32(4)})
                    .returns(4)
                    .direct<int32_t>(),
            Row("c_svctx_get_64", 18)
                    .call([](Outputs& o) {
                        return c_svctx_get_64(0xc0000003, 0x80000001, o.at(0), o.at<uint64_t>(1));
                    })
                    .given(0, counted(20, 100))
                    .given(1, bytesOf(uint64_t{20}))
                    .sent({u32(0xc0000003), u32(0x80000001), bytes(counted(20, 100))})
                    .answered({bytes(counted(18)), i32(5)})
                    .returns(5)
                    .stores(0, counted(18))
                    .stores(1, uint64_t{18})
                    .entry({"<{f}:{n}> 20"}),
            Row("c_svctx_get_64", 18)
                    .call([](Outputs& o) {
                        return c_svctx_get(0xc0000004, 0x80000002, o.at(0), o.at<uint32_t>(1));
                    })
                    .given(0, counted(9, 30))
                    .given(1, bytesOf(uint32_t{9}))
                    .sent({u32(0xc0000004), u32(0x80000002), bytes(counted(9, 30))})
                    .answered({bytes(counted(9)), i32(6)})
                    .returns(6)
                    .stores(0, counted(9))
                    .stores(1, uint32_t{9})
                    .entry({"<{f}:{n}> 9"}),
            Row("c_svctx_get_video_src_resolution", 19)
                    .call([](Outputs& o) {
                        return c_svctx_get_video_src_resolution(0xc0000005, o.at(0));
                    })
                    .sent({u32(0xc0000005)})
                    .answered({bytes(counted(132)), i32(7)})
                    .returns(7)
                    .stores(0, counted(132)),
            Row("c_svctx_select_svc", 20)
                    .call([](Outputs&) {
                        return c_svctx_select_svc(0xc0000006, 0x80000003, &kRequest, kSide.data(),
                                                  0xdddddddd, tag());
                    })
                    .sent({u32(0xc0000006), u32(0x80000003),
                           request(block(kRequest), "dvb://1.2.3", "second", kSpecific),
                           bytes(counted(76, 77)), u64(0x81234567)})
                    .answered({i32(8)})
                    .returns(8)
                    .direct<int32_t>(),
            Row("c_svctx_select_svc_64", 20)
                    .call([](Outputs&) {
                        return c_svctx_select_svc_64(0xc0000007, 0x80000004, &kRequest64,
                                                     kSide.data(), 0xdddddddd, tag());
                    })
                    .sent({u32(0xc0000007), u32(0x80000004),
                           request(block(kRequest64), "dvb://1.2.3", "second", kSpecific),
                           bytes(kSide), u64(0x81234567)})
                    .answered({i32(9)})
                    .returns(9)
                    .direct<int32_t>(),
            // An unknown type is only noticed once the service is there; the call goes on.
            Row("c_svctx_select_svc", 20)
                    .call([](Outputs&) {
                        return c_svctx_select_svc(1, 2, &kUnknown, nullptr, 0, nullptr);
                    })
                    .sent({u32(1), u32(2), request(block(kUnknown), "dvb://1.2.3", "second", ""),
                           bytes(""), u64(0)})
                    .answered({i32(6)})
                    .returns(6)
                    .unchecked()
                    .replyAlways({"<{f}:185> ."}),
            Row("c_svctx_set_stream_attr_64", 21)
                    .call([](Outputs&) {
                        return c_svctx_set_stream_attr_64(1, 2, 3, kSide.data(), 0x500000000);
                    })
                    .sent({u32(1), u32(2), u32(3), bytes("")})
                    .answered({i32(15)})
                    .returns(15)
                    .direct<int32_t>(),
            Row("c_svctx_set_stream_attr", 21)
                    .call([](Outputs&) {
                        return c_svctx_set_stream_attr(1, 2, 3, kSide.data(), 0);
                    })
                    .sent({u32(1), u32(2), u32(3), bytes("")})
                    .answered({i32(16)})
                    .returns(16)
                    .direct<int32_t>(),
            Row("c_svctx_get_64", 18)
                    .call([](Outputs& o) {
                        return c_svctx_get_64(1, 2, o.at(0), o.at<uint64_t>(1));
                    })
                    .given(1, bytesOf(uint64_t{0}))
                    .sent({u32(1), u32(2), bytes("")})
                    .answered({bytes(""), i32(17)})
                    .returns(17)
                    .entry({"<{f}:{n}> 0"}),
            Row("c_svctx_get_64", 18)
                    .call([](Outputs& o) { return c_svctx_get(1, 2, o.at(0), o.at<uint32_t>(1)); })
                    .given(1, bytesOf(uint32_t{0}))
                    .sent({u32(1), u32(2), bytes("")})
                    .answered({bytes(""), i32(18)})
                    .returns(18)
                    .entry({"<{f}:{n}> 0"}),
            Row("c_svctx_set_stream_attr_64", 21)
                    .call([](Outputs&) {
                        return c_svctx_set_stream_attr_64(0xc0000008, 0x80000005, 0x80000006,
                                                          kSide.data(), 0x500000007);
                    })
                    .sent({u32(0xc0000008), u32(0x80000005), u32(0x80000006),
                           bytes(counted(7, 77))})
                    .answered({i32(10)})
                    .returns(10)
                    .direct<int32_t>(),
            Row("c_svctx_set_stream_attr", 21)
                    .call([](Outputs&) {
                        return c_svctx_set_stream_attr(0xc0000009, 0x80000007, 0x80000008,
                                                       kSide.data(), 12);
                    })
                    .sent({u32(0xc0000009), u32(0x80000007), u32(0x80000008),
                           bytes(counted(12, 77))})
                    .answered({i32(11)})
                    .returns(11)
                    .direct<int32_t>(),
            Row("c_svctx_get_conn_attr", 22)
                    .call([](Outputs& o) {
                        return c_svctx_get_conn_attr(0xc000000a, 0x80000009, 0xC1000004, o.at(0));
                    })
                    .sent({u32(0xc000000a), u32(0x80000009), u32(0xC1000004), u32(48)})
                    .answered({bytes(counted(48)), i32(12)})
                    .returns(12)
                    .stores(0, counted(48)),
            Row("c_svctx_get_conn_attr", Row::kNoCall)
                    .call([](Outputs& o) {
                        return c_svctx_get_conn_attr(0xc000000a, 1, 0xC1000005, o.at(0));
                    })
                    .returns(-2)
                    .replyAlways({"<{f}:{n}> not implemented!"}),
            Row("c_svctx_set_conn_attr", 23)
                    .call([](Outputs& o) {
                        return c_svctx_set_conn_attr(0xc000000b, 0x8000000a, 0xC0000065, o.at(0));
                    })
                    .given(0, counted(32, 60))
                    .sent({u32(0xc000000b), u32(0x8000000a), u32(0xC0000065),
                           bytes(counted(32, 60))})
                    .answered({bytes(counted(32)), i32(13)})
                    .returns(13)
                    .stores(0, counted(32)),
            Row("c_svctx_set_conn_attr", Row::kNoCall)
                    .call([](Outputs& o) {
                        return c_svctx_set_conn_attr(0xc000000b, 1, 0xC0000066, o.at(0));
                    })
                    .returns(-2)
                    .replyAlways({"<{f}:{n}> not implemented!"}),
            Row("c_svctx_get_audio_info", 24)
                    .call([](Outputs& o) { return c_svctx_get_audio_info(0xc000000c, o.at(0)); })
                    .sent({u32(0xc000000c)})
                    .answered({bytes(counted(24)), i32(14)})
                    .returns(14)
                    .stores(0, counted(24)),
    };
    return t;
}

WIRE_TABLE_TESTS(SvctxWire, table())

/** What one call has written to the log with the debug switch off, and its result. */
struct Written {
    int result;
    std::vector<std::string> lines;
};

template <class F>
Written written(F&& call) {
    captureLog();
    takeLog();
    Written w{call(), {}};
    for (const LogLine& line : takeLog()) {
        EXPECT_EQ("(hw_svctx)(client)", line.tag);
        EXPECT_EQ(ANDROID_LOG_DEBUG, line.priority);
        w.lines.push_back(line.text);
    }
    return w;
}

void expectLine(const std::string& pattern, const Written& w) {
    ASSERT_EQ(1u, w.lines.size());
    EXPECT_TRUE(matches(pattern, w.lines[0])) << w.lines[0];
}

TEST(SvctxWire, WarnsOfABlockOfAnotherSizeAndCopiesNone) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    struct Reader {
        size_t size;
        Values sent;
        std::function<int(void*)> call;
    };
    const std::vector<Reader> readers{
            {132, {u32(1)}, [](void* b) { return c_svctx_get_video_src_resolution(1, b); }},
            {24, {u32(1)}, [](void* b) { return c_svctx_get_audio_info(1, b); }},
            {48,
             {u32(1), u32(2), u32(0xC1000004), u32(48)},
             [](void* b) { return c_svctx_get_conn_attr(1, 2, 0xC1000004, b); }},
            {16,
             {u32(1), u32(2), u32(0xC100021F), bytes(Bytes(16, '-'))},
             [](void* b) { return c_svctx_set_conn_attr(1, 2, 0xC100021F, b); }},
    };
    for (const Reader& reader : readers) {
        for (size_t received : {reader.size - 1, reader.size + 1, size_t{0}}) {
            Bytes buffer(200, '-');
            service.expect(reader.sent, {bytes(counted(received)), i32(21)});
            const Written w = written([&] { return reader.call(buffer.data()); });
            EXPECT_EQ(21, w.result) << "the service's code all the same";
            EXPECT_EQ(Bytes(200, '-'), buffer);
            expectLine("<operator():{n}> warning! " + std::to_string(reader.size) + ", " +
                               std::to_string(received),
                       w);
            service.settle();
        }
    }
}

TEST(SvctxWire, CopiesAnAttributeWhenItFits) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    char buffer[16];
    const auto get = [&](uint64_t* len, size_t answered) {
        memset(buffer, '-', sizeof(buffer));
        service.expect({u32(1), u32(2), bytes(Bytes(static_cast<uint32_t>(*len), '-'))},
                       {bytes(counted(answered)), i32(9)});
        Written w = written([&] { return c_svctx_get_64(1, 2, buffer, len); });
        service.settle();
        EXPECT_EQ(9, w.result);
        return w;
    };
    uint64_t len = 10;
    expectLine("<operator():{n}> warning! 10, 11", get(&len, 11));
    EXPECT_EQ(10u, len);
    EXPECT_EQ(Bytes(16, '-'), Bytes(buffer, 16));

    EXPECT_TRUE(get(&len, 10).lines.empty());
    EXPECT_EQ(counted(10), Bytes(buffer, 10));

    EXPECT_TRUE(get(&len, 0).lines.empty());
    EXPECT_EQ(0u, len) << "an empty answer is one that fits";
    EXPECT_EQ(Bytes(16, '-'), Bytes(buffer, 16));

    // The low half alone says what fits; the length that is left, and warned about, is whole.
    len = 0x300000004;
    expectLine("<operator():{n}> warning! 12884901892, 5", get(&len, 5));
    EXPECT_EQ(0x300000004u, len);
    EXPECT_TRUE(get(&len, 4).lines.empty());
    EXPECT_EQ(4u, len) << "the high half is gone";

    uint32_t narrow = 3;
    service.expect({u32(1), u32(2), bytes("---")}, {bytes(""), i32(0)});
    EXPECT_EQ(0, c_svctx_get(1, 2, Bytes(3, '-').data(), &narrow));
    EXPECT_EQ(0u, narrow);
}

TEST(SvctxWire, SizesABlockByItsStreamType) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    const std::vector<std::pair<uint8_t, size_t>> sizes{{0, 64}, {1, 192}, {4, 32},
                                                        {2, 0},  {3, 0},   {255, 0}};
    for (const auto& [type, size] : sizes) {
        SCOPED_TRACE(type);
        const auto narrow = filled<qeltvapi_svctx_select_t>(type, kSpecific.data());
        service.expect(
                {u32(1), u32(2), request(block(narrow), "dvb://1.2.3", "second", counted(size)),
                 bytes(""), u64(0)},
                {i32(6)});
        Written w = written([&] { return c_svctx_select_svc(1, 2, &narrow, nullptr, 0, nullptr); });
        EXPECT_EQ(6, w.result) << "the call goes on";
        EXPECT_EQ(size == 0 ? std::vector<std::string>{"<c_svctx_select_svc:185> ."}
                            : std::vector<std::string>{},
                  w.lines);

        const auto wide = filled<qeltvapi_svctx_select_64_t>(type, kSpecific.data());
        service.expect(
                {u32(1), u32(2), request(block(wide), "dvb://1.2.3", "second", counted(size)),
                 bytes(""), u64(0)},
                {i32(6)});
        w = written([&] { return c_svctx_select_svc_64(1, 2, &wide, nullptr, 0, nullptr); });
        EXPECT_EQ(size == 0 ? std::vector<std::string>{"<c_svctx_select_svc_64:240> ."}
                            : std::vector<std::string>{},
                  w.lines);
    }
}

TEST(SvctxWire, SendsANullRequestAndNullTextsEmpty) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    service.expect({u32(1), u32(2), request("", "", "", ""), bytes(counted(76, 77)), u64(0)},
                   {i32(5)});
    const Written w =
            written([&] { return c_svctx_select_svc(1, 2, nullptr, kSide.data(), 0, nullptr); });
    EXPECT_EQ(5, w.result);
    EXPECT_TRUE(w.lines.empty());

    qeltvapi_svctx_select_64_t wide{};
    service.expect({u32(1), u32(2), request(block(wide), "", "", ""), bytes(""), u64(0)}, {i32(5)});
    EXPECT_EQ(5, c_svctx_select_svc_64(1, 2, &wide, nullptr, 0, nullptr));
}

TEST(SvctxWire, SizesConnectionAttributesByTheirCode) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    char buffer[64];
    for (uint32_t code : {0xC1000007, 0xC1000008, 0xC100000C, 0xC1000013}) {
        service.expect({u32(1), u32(2), u32(code), u32(4)}, {bytes(counted(4)), i32(1)});
        EXPECT_EQ(1, c_svctx_get_conn_attr(1, 2, code, buffer));
        EXPECT_EQ(counted(4), Bytes(buffer, 4));
    }
    const std::vector<std::pair<uint32_t, size_t>> writable{{0xC100021F, 16}, {0xC0000069, 4}};
    for (const auto& [code, size] : writable) {
        memset(buffer, 'w', sizeof(buffer));
        service.expect({u32(1), u32(2), u32(code), bytes(Bytes(size, 'w'))},
                       {bytes(counted(size)), i32(1)});
        EXPECT_EQ(1, c_svctx_set_conn_attr(1, 2, code, buffer));
        EXPECT_EQ(counted(size) + "w", Bytes(buffer, size + 1));
    }
    service.take();
    // What can be read cannot be written, and the other way round.
    EXPECT_EQ(-2, c_svctx_set_conn_attr(1, 2, 0xC1000004, buffer));
    EXPECT_EQ(-2, c_svctx_get_conn_attr(1, 2, 0xC0000069, buffer));
    EXPECT_TRUE(service.take().empty());
}

TEST(SvctxWire, TakesAnAttributeLongerThan64KiBAndIgnoresTheHighHalfOfItsLength) {
    ScriptedService& service = ready();
    Bytes block = counted(70000);
    service.expect({u32(1), u32(2), u32(3), bytes(block)}, {i32(4)});
    EXPECT_EQ(4, c_svctx_set_stream_attr_64(1, 2, 3, block.data(), 0x500000000 + 70000));
    uint64_t len = 0x500000000 + 70000;
    service.expect({u32(1), u32(2), bytes(block)}, {bytes(Bytes(70000, 'a')), i32(5)});
    EXPECT_EQ(5, c_svctx_get_64(1, 2, block.data(), &len));
    EXPECT_EQ(70000u, len);
    uint32_t narrow = 70000;
    service.expect({u32(1), u32(2), bytes(block)}, {bytes(counted(70000)), i32(6)});
    EXPECT_EQ(6, c_svctx_get(1, 2, block.data(), &narrow));
    EXPECT_EQ(70000u, narrow);
    EXPECT_TRUE(counted(70000) == block);
}

}  // namespace
