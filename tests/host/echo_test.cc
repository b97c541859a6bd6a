// Every kind of argument, through a real socket and back, to a service of the same width and, where
// the tests run emulated, to one of the other width.

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <hidl/HidlTransportSupport.h>
#include <hidlhost/test/kit/1.0/IEcho.h>
#include <hidlhost/test/kit/1.0/IServiceChild.h>

#include "kit_process.h"

namespace {

using ::android::sp;
using ::android::hardware::hidl_array;
using ::android::hardware::hidl_handle;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::interfacesEqual;
using ::android::hardware::Return;
using ::android::hardware::Void;
using ::android::hidl::base::V1_0::IBase;
using namespace ::hidlhost::test::kit::V1_0;
using kit::Width;

class EchoTest : public ::testing::TestWithParam<Width> {
  protected:
    void SetUp() override {
        mProcess = std::make_unique<kit::Process>(kit::Process::Options{8, {}, GetParam()});
        ASSERT_TRUE(mProcess->ready()) << mProcess->errors();
        mEcho = IEcho::getService("kit");
        ASSERT_NE(mEcho, nullptr);
    }

    template <typename T>
    void expectValues(Return<T> (IEcho::*method)(T), std::vector<T> values) {
        for (T value : values) {
            Return<T> result = ((*mEcho).*method)(value);
            ASSERT_TRUE(result.isOk()) << result.description();
            EXPECT_EQ(static_cast<T>(result), value);
        }
    }

    template <typename T>
    T echoed(Return<void> (IEcho::*method)(const T&, std::function<void(const T&)>),
             const T& value) {
        T copy{};
        int calls = 0;
        Return<void> result = ((*mEcho).*method)(value, [&](const T& back) {
            copy = back;
            ++calls;
        });
        EXPECT_TRUE(result.isOk()) << result.description();
        EXPECT_EQ(calls, 1);
        return copy;
    }

    template <typename T>
    void expectEqual(Return<void> (IEcho::*method)(const T&, std::function<void(const T&)>),
                     std::vector<T> values) {
        for (const T& value : values) EXPECT_EQ(echoed(method, value), value);
    }

    std::unique_ptr<kit::Process> mProcess;
    sp<IEcho> mEcho;
};

TEST_P(EchoTest, ScalarsKeepEveryBit) {
    expectValues<bool>(&IEcho::echoBool, {true, false});
    expectValues<int8_t>(&IEcho::echoInt8, {-128, -1, 127});
    expectValues<uint8_t>(&IEcho::echoUint8, {0, 128, 255});
    expectValues<int16_t>(&IEcho::echoInt16, {-32768, -2, 32767});
    expectValues<uint16_t>(&IEcho::echoUint16, {0, 32768, 65535});
    expectValues<int32_t>(&IEcho::echoInt32, {INT32_MIN, -3, INT32_MAX});
    expectValues<uint32_t>(&IEcho::echoUint32, {0, 0x80000001, UINT32_MAX});
    expectValues<int64_t>(&IEcho::echoInt64, {INT64_MIN, -0x123456789abcdefLL, INT64_MAX});
    expectValues<uint64_t>(&IEcho::echoUint64, {0, 0x8000000000000001, UINT64_MAX});
    expectValues<float>(&IEcho::echoFloat, {-0.1f, std::numeric_limits<float>::denorm_min()});
    expectValues<double>(&IEcho::echoDouble, {-0.1, std::numeric_limits<double>::infinity()});
    EXPECT_TRUE(std::isnan(mEcho->echoDouble(NAN).withDefault(0)));
}

TEST_P(EchoTest, EnumerationsMayHoldValuesWithoutAName) {
    expectValues<Colour>(&IEcho::echoColour, {Colour::BLUE, static_cast<Colour>(200)});
    expectValues<Signed>(&IEcho::echoSigned, {Signed::MINUS, Signed::LARGE});
    expectValues<Wide>(&IEcho::echoWide, {Wide::TOP, Wide::SMALL});
    expectValues<uint8_t>(&IEcho::echoMask, {Colour::RED | Colour::BLUE, 0xff});
}

TEST_P(EchoTest, StringsAndVectors) {
    expectEqual<hidl_string>(&IEcho::echoString,
                             {"", "text", hidl_string("a\0b", 3), std::string(100000, 'x')});
    expectEqual<hidl_vec<uint8_t>>(&IEcho::echoBytes, {{}, {0}, {1, 2, 3, 255}});
    expectEqual<hidl_vec<bool>>(&IEcho::echoBools, {{true, false, true}});
    expectEqual<hidl_vec<double>>(&IEcho::echoDoubles, {{-1.5, 1e300}});
    expectEqual<hidl_vec<hidl_string>>(&IEcho::echoStrings, {{}, {""}, {"one", "", "three"}});
    expectEqual<hidl_vec<hidl_vec<hidl_vec<int16_t>>>>(&IEcho::echoCube,
                                                       {{{{1}, {2, 3}}, {}, {{}, {-4}}}});
    expectEqual<hidl_vec<Colour>>(&IEcho::echoEnums, {{Colour::RED, Colour::NONE, Colour::GREEN}});
    hidl_vec<hidl_string> many(5000);
    for (size_t i = 0; i < many.size(); ++i) many[i] = std::to_string(i * i);
    expectEqual<hidl_vec<hidl_string>>(&IEcho::echoStrings, {many});
}

TEST_P(EchoTest, Arrays) {
    int32_t line[] = {1, -2, 3, -4, 5};
    expectEqual<hidl_array<int32_t, 5>>(&IEcho::echoArray, {hidl_array<int32_t, 5>(line)});
    uint8_t cells[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    hidl_array<uint8_t, 3, 4> matrix(cells);
    EXPECT_EQ(echoed<>(&IEcho::echoMatrix, matrix)[2][1], 10);
    expectEqual<hidl_array<uint8_t, 3, 4>>(&IEcho::echoMatrix, {matrix});
    hidl_array<hidl_string, 2, 3> grid;
    grid[0][2] = "end of the first row";
    grid[1][0] = "begin of the second";
    expectEqual<hidl_array<hidl_string, 2, 3>>(&IEcho::echoStringGrid, {grid});
    int64_t pair[] = {INT64_MIN, 7};
    expectEqual<hidl_vec<hidl_array<int64_t, 2>>>(&IEcho::echoArrays,
                                                  {{}, {hidl_array<int64_t, 2>(pair), {pair}}});
}

hidl_handle handleOf(int fd, int number) {
    native_handle_t* native = native_handle_create(1, 1);
    native->data[0] = fd;
    native->data[1] = number;
    hidl_handle handle;
    handle.setTo(native, true);
    return handle;
}

int file(const char* text) {
    int fd = memfd_create("kit", MFD_CLOEXEC);
    EXPECT_EQ(write(fd, text, strlen(text)), static_cast<ssize_t>(strlen(text)));
    return fd;
}

void expectSameFile(const native_handle_t* a, const native_handle_t* b) {
    ASSERT_TRUE(a != nullptr && b != nullptr);
    ASSERT_EQ(a->numFds, b->numFds);
    ASSERT_EQ(a->numInts, b->numInts);
    for (int i = 0; i < a->numFds; ++i) {
        struct stat one, other;
        ASSERT_EQ(fstat(a->data[i], &one), 0);
        ASSERT_EQ(fstat(b->data[i], &other), 0);
        EXPECT_NE(a->data[i], b->data[i]);
        EXPECT_EQ(one.st_ino, other.st_ino);
        EXPECT_EQ(one.st_dev, other.st_dev);
    }
    EXPECT_EQ(memcmp(a->data + a->numFds, b->data + b->numFds,
                     static_cast<size_t>(a->numInts) * sizeof(int)),
              0);
}

Scalars someScalars(uint8_t seed) {
    Scalars scalars{};
    scalars.flag = true;
    scalars.i8 = static_cast<int8_t>(-seed);
    scalars.u16 = static_cast<uint16_t>(seed * 257);
    scalars.i64 = -0x100000000LL * seed;
    scalars.f32 = 0.5f * seed;
    scalars.f64 = -1.0 / (seed + 1);
    scalars.colour = Colour::GREEN;
    scalars.mask = Colour::RED | Colour::GREEN;
    return scalars;
}

Tree someTree(uint8_t seed) {
    Tree tree{};
    tree.before = seed;
    tree.named = {"root", {seed, 2, 3}, -seed};
    tree.pair[1] = {"second", {}, seed * 1000};
    tree.list = {{"leaf", {9}, 1}, {"", {}, 2}};
    tree.table = {{"a", "b"}, {}, {"c"}};
    tree.grid[1][2] = "corner";
    tree.columns[0] = {seed, -1};
    tree.scalars = {someScalars(seed), someScalars(77)};
    tree.matrix[2][1] = -5;
    tree.after = static_cast<uint8_t>(~seed);
    return tree;
}

Tree withHandles(Tree tree) {
    tree.one = handleOf(file("one"), 11);
    tree.handles = {handleOf(file("two"), 22), hidl_handle(), handleOf(file("three"), 33)};
    return tree;
}

void expectSameTree(Tree a, Tree b) {
    ASSERT_EQ(a.handles.size(), b.handles.size());
    for (size_t i = 0; i < a.handles.size(); ++i) {
        if (a.handles[i].getNativeHandle() != nullptr) {
            expectSameFile(a.handles[i], b.handles[i]);
        } else {
            EXPECT_EQ(b.handles[i].getNativeHandle(), nullptr);
        }
    }
    if (a.one.getNativeHandle() != nullptr) expectSameFile(a.one, b.one);
    for (Tree* tree : {&a, &b}) {
        tree->handles.resize(0);
        tree->one = nullptr;
    }
    EXPECT_EQ(toString(a), toString(b));
}

TEST_P(EchoTest, StructuresWithEverythingInThem) {
    expectEqual<Scalars>(&IEcho::echoScalars, {someScalars(3), someScalars(0)});
    Tree tree = withHandles(someTree(7));
    expectSameTree(tree, echoed<>(&IEcho::echoTree, tree));
    expectSameTree(Tree{}, echoed<>(&IEcho::echoTree, Tree{}));
    hidl_vec<Tree> forest{someTree(1), withHandles(someTree(2)), Tree{}};
    hidl_vec<Tree> back = echoed<>(&IEcho::echoTrees, forest);
    ASSERT_EQ(back.size(), 3u);
    for (size_t i = 0; i < 3; ++i) expectSameTree(forest[i], back[i]);
}

TEST_P(EchoTest, Unions) {
    Bits bits{};
    bits.whole = 0x80c0ffee;
    EXPECT_EQ(echoed<>(&IEcho::echoBits, bits).whole, 0x80c0ffeeu);

    Choice number, text, tree, list;
    number.number(-9);
    text.text("a word");
    tree.tree(withHandles(someTree(5)));
    list.list({{"x", {1}, 2}});
    EXPECT_EQ(echoed<>(&IEcho::echoChoice, Choice()).getDiscriminator(),
              Choice::hidl_discriminator::nothing);
    EXPECT_EQ(echoed<>(&IEcho::echoChoice, number).number(), -9);
    expectSameTree(echoed<>(&IEcho::echoChoice, tree).tree(), tree.tree());
    hidl_vec<Choice> back = echoed<>(&IEcho::echoChoices, hidl_vec<Choice>{list, number, text});
    ASSERT_EQ(back.size(), 3u);
    EXPECT_EQ(back[0].list(), list.list());
    EXPECT_EQ(back[2].text(), "a word");

    Maybe nothing, some;
    some.numbers({INT64_MIN, 7});
    const hidl_vec<Maybe> maybes{nothing, some, nothing};
    EXPECT_EQ(echoed<>(&IEcho::echoMaybes, maybes), maybes);
}

TEST_P(EchoTest, HandlesArriveAsDescriptorsOfTheSameFile) {
    hidl_handle none;
    EXPECT_EQ(echoed<>(&IEcho::echoHandle, none).getNativeHandle(), nullptr);
    hidl_handle numbers;
    numbers.setTo(native_handle_create(0, 3), true);
    const_cast<int*>(numbers->data)[2] = 99;
    EXPECT_EQ(echoed<>(&IEcho::echoHandle, numbers)->data[2], 99);
    hidl_handle one = handleOf(file("content"), -4);
    hidl_handle back = echoed<>(&IEcho::echoHandle, one);
    expectSameFile(one, back);
    EXPECT_NE(fcntl(back->data[0], F_GETFD) & FD_CLOEXEC, 0);

    hidl_vec<hidl_handle> handles(100);
    for (size_t i = 0; i < handles.size(); ++i) {
        handles[i] = handleOf(file(""), static_cast<int>(i));
    }
    hidl_vec<hidl_handle> several = echoed<>(&IEcho::echoHandles, handles);
    ASSERT_EQ(several.size(), handles.size());
    for (size_t i = 0; i < handles.size(); ++i) expectSameFile(handles[i], several[i]);
}

class Doubler : public IListener {
  public:
    Return<int32_t> onValue(int32_t value) override { return 2 * value; }
    Return<void> onText(const hidl_string& text, onText_cb result) override {
        result(text, 0);
        return Void();
    }
    Return<void> onEvent(uint32_t) override { return Void(); }
};

TEST_P(EchoTest, ALocalObjectThatComesBackIsTheVeryObject) {
    sp<IListener> listener = new Doubler;
    EXPECT_EQ(sp<IListener>(mEcho->echoListener(listener)), listener);
    EXPECT_EQ(sp<IListener>(mEcho->echoListener(nullptr)), nullptr);
    EXPECT_EQ(sp<IBase>(mEcho->echoInterface(listener)), listener);
    sp<IListener> other = new Doubler;
    hidl_vec<sp<IListener>> list{listener, nullptr, other, listener};
    EXPECT_EQ(echoed<>(&IEcho::echoListeners, list), list);
}

TEST_P(EchoTest, ARemoteObjectThatComesBackIsTheSameProxy) {
    sp<IServiceChild> service = IServiceChild::getService("kit");
    ASSERT_NE(service, nullptr);
    sp<IListener> child = service->makeChild(40);
    ASSERT_NE(child, nullptr);
    EXPECT_TRUE(child->isRemote());
    EXPECT_EQ(child->onValue(2).withDefault(0), 42);
    EXPECT_TRUE(interfacesEqual(sp<IListener>(mEcho->echoListener(child)), child));
    sp<IBase> base = mEcho->echoInterface(service);
    ASSERT_NE(base, nullptr);
    sp<IServiceChild> cast = IServiceChild::castFrom(base);
    EXPECT_TRUE(interfacesEqual(cast, service));
}

TEST_P(EchoTest, SeveralResultsKeepTheirOrder) {
    int calls = 0;
    Return<void> result = mEcho->several(7, "seven", {1, 2},
                                         [&](const auto& c, int32_t a, const auto& b, bool d) {
                                             ++calls;
                                             EXPECT_EQ(c, (hidl_vec<uint16_t>{1, 2}));
                                             EXPECT_EQ(a, 7);
                                             EXPECT_EQ(b, "seven");
                                             EXPECT_TRUE(d);
                                         });
    EXPECT_TRUE(result.isOk());
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(mEcho->nothing().isOk());
    EXPECT_FALSE(mEcho->echoString("x", nullptr).isOk());
}

TEST_P(EchoTest, SizesAroundThePacketsAndFarBeyond) {
    for (size_t size : {1u, 1023u, 1024u, 1025u, 65535u, 65536u, 65537u, 69200u, 69632u, 70000u,
                        131072u, 1u << 20, 5000001u}) {
        hidl_vec<uint8_t> bytes(size);
        for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>(i * 31 + (i >> 12));
        ASSERT_EQ(echoed<>(&IEcho::echoBytes, bytes), bytes) << size;
    }
    // Many small buffers around the limit take another path than one large one.
    for (size_t count : {2700u, 2900u, 3100u}) {
        hidl_vec<hidl_string> texts(count);
        for (size_t i = 0; i < count; ++i) texts[i] = std::to_string(i);
        ASSERT_EQ(echoed<>(&IEcho::echoStrings, texts), texts) << count;
    }
}

INSTANTIATE_TEST_SUITE_P(
        , EchoTest,
        ::testing::ValuesIn(kit::hasOtherWidth() ? std::vector<Width>{Width::kOwn, Width::kOther}
                                                 : std::vector<Width>{Width::kOwn}),
        [](const auto& info) { return info.param == Width::kOwn ? "OwnWidth" : "OtherWidth"; });

}  // namespace
