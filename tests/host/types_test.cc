// The types of the platform's support library, inside one process: what they own, how they lie in
// memory, and when they end the process.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <future>
#include <list>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <android/hidl/base/1.0/IBase.h>
#include <gtest/gtest.h>
#include <hidl/ConcurrentMap.h>
#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <hidl/TaskRunner.h>
#include <hidlhost/test/kit/1.0/types.h>
#include <hwbinder/IPCThreadState.h>
#include <hwbinder/Parcel.h>

namespace {

using ::android::DEAD_OBJECT;
using ::android::OK;
using ::android::RefBase;
using ::android::sp;
using ::android::TIMED_OUT;
using ::android::hardware::hidl_array;
using ::android::hardware::hidl_enum_range;
using ::android::hardware::hidl_handle;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::HidlReturnRestriction;
using ::android::hardware::make_hidl_version;
using ::android::hardware::Return;
using ::android::hardware::setProcessHidlReturnRestriction;
using ::android::hardware::Status;
using ::android::hardware::Void;
using ::android::hardware::details::TaskRunner;
using ::hidlhost::test::kit::V1_0::Choice;
using ::hidlhost::test::kit::V1_0::Colour;
using ::hidlhost::test::kit::V1_0::Maybe;
using ::hidlhost::test::kit::V1_0::Named;
using ::hidlhost::test::kit::V1_0::Tree;

using namespace std::chrono_literals;

size_t openDescriptors() {
    size_t count = 0;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator("/proc/self/fd")) {
        ++count;
    }
    return count;
}

template <typename T>
T readAt(const void* object, size_t offset) {
    T value;
    memcpy(&value, static_cast<const uint8_t*>(object) + offset, sizeof(value));
    return value;
}

// What a peer of the other width sees: an eight-byte slot, a 32-bit size, a flag, zero padding.
template <typename T>
void expectHeader(const T& object, const void* pointer, uint32_t size, uint8_t owned) {
    EXPECT_EQ(readAt<uint64_t>(&object, 0), reinterpret_cast<uintptr_t>(pointer));
    EXPECT_EQ(readAt<uint32_t>(&object, 8), size);
    EXPECT_EQ(readAt<uint8_t>(&object, 12), owned);
    EXPECT_EQ(readAt<uint8_t>(&object, 13), 0);
    EXPECT_EQ(readAt<uint16_t>(&object, 14), 0);
}

TEST(Layout, HeadersAreTheSameForBothWidths) {
    hidl_string text("four");
    expectHeader(text, text.c_str(), 4, 1);
    hidl_string external;
    external.setToExternal("seven..", 7);
    expectHeader(external, external.c_str(), 7, 0);

    hidl_vec<Tree> trees(3);
    expectHeader(trees, trees.data(), 3, 1);
    int32_t numbers[] = {1, 2};
    hidl_vec<int32_t> view;
    view.setToExternal(numbers, 2);
    expectHeader(view, numbers, 2, 0);

    native_handle_t* native = native_handle_create(0, 1);
    hidl_handle handle;
    handle.setTo(native, true);
    EXPECT_EQ(readAt<uint64_t>(&handle, 0), reinterpret_cast<uintptr_t>(native));
    EXPECT_EQ(readAt<uint64_t>(&handle, 8), 1u);  // flag and padding

    EXPECT_EQ(offsetof(Tree, named), 8u);
    EXPECT_EQ(sizeof(Named), 40u);
}

TEST(String, ANullPointerGivesAnEmptyString) {
    hidl_string text(static_cast<const char*>(nullptr));
    ASSERT_NE(text.c_str(), nullptr);
    EXPECT_STREQ(text.c_str(), "");
    EXPECT_TRUE(text.empty());
    text = "something";
    text = static_cast<const char*>(nullptr);
    EXPECT_EQ(text, "");
    EXPECT_EQ(hidl_string(nullptr, 0), hidl_string());
}

TEST(String, KeepsBytesBehindANul) {
    hidl_string text("a\0b", 3);
    hidl_string copy(text);  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.size(), 3u);
    EXPECT_EQ(std::string(copy), std::string("a\0b", 3));
    EXPECT_EQ(copy, std::string("a\0b", 3));
    EXPECT_NE(copy, "a");
    EXPECT_EQ(copy.c_str()[3], '\0');
    std::ostringstream stream;
    stream << copy;
    EXPECT_EQ(stream.str().size(), 3u);
}

TEST(String, CopiesAreDeepAndMovesTakeTheBuffer) {
    hidl_string text("first");
    hidl_string copy;
    copy = text;
    EXPECT_NE(copy.c_str(), text.c_str());
    EXPECT_EQ(copy, text);

    const char* bytes = text.c_str();
    hidl_string moved(std::move(text));
    EXPECT_EQ(moved.c_str(), bytes);
    EXPECT_STREQ(text.c_str(), "");  // NOLINT(bugprone-use-after-move)
    copy = std::move(moved);
    EXPECT_EQ(copy.c_str(), bytes);

    copy = copy.c_str() + 2;
    EXPECT_EQ(copy, "rst");
    hidl_string& alias = copy;
    copy = alias;
    EXPECT_EQ(copy, "rst");
    copy.clear();
    EXPECT_EQ(copy.size(), 0u);
}

TEST(String, ExternalBytesAreNeitherCopiedNorFreed) {
    const char bytes[] = "outside";
    hidl_string text("owned before");
    text.setToExternal(bytes, 7);
    EXPECT_EQ(text.c_str(), bytes);
    hidl_string copy(text);
    EXPECT_NE(copy.c_str(), bytes);
    hidl_string moved(std::move(text));
    EXPECT_EQ(moved.c_str(), bytes);
    EXPECT_DEATH(moved.setToExternal(bytes, 3), "NUL");
}

TEST(String, OrdersByUnsignedBytesThenBySize) {
    EXPECT_LT(hidl_string("a"), hidl_string("ab"));
    EXPECT_LT(hidl_string("z"), "\xc3\xa4");
    EXPECT_GT(std::string("b"), hidl_string("ab"));
    EXPECT_LE(hidl_string("a"), std::string("a"));
    EXPECT_FALSE("a" < hidl_string("a"));
}

struct Counted {
    Counted() { ++alive; }
    Counted(const Counted& other) : value(other.value) { ++alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --alive; }
    int value = 7;
    static int alive;
};
int Counted::alive = 0;

TEST(Vector, ResizeKeepsWhatFitsAndInitialisesTheRest) {
    hidl_vec<int32_t> numbers{1, 2, 3};
    numbers.resize(5);
    EXPECT_EQ(numbers, (hidl_vec<int32_t>{1, 2, 3, 0, 0}));
    numbers.resize(2);
    EXPECT_EQ(numbers, (hidl_vec<int32_t>{1, 2}));
    numbers.resize(0);
    EXPECT_EQ(numbers.size(), 0u);
    EXPECT_EQ(numbers.begin(), numbers.end());
    {
        hidl_vec<Counted> counted(3);
        counted[1].value = 8;
        counted.resize(2);
        EXPECT_EQ(Counted::alive, 2);
        EXPECT_EQ(counted[1].value, 8);
        hidl_vec<Counted> other(counted);
        EXPECT_EQ(Counted::alive, 4);
        other = std::move(counted);
        EXPECT_EQ(Counted::alive, 2);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(Vector, IsBuiltFromListsVectorsAndIterators) {
    const hidl_vec<hidl_string> expected{"x", "y", ""};
    std::vector<hidl_string> source{"x", "y", ""};
    std::list<std::string> list{"x", "y", ""};
    EXPECT_EQ(hidl_vec<hidl_string>(source), expected);
    EXPECT_EQ(hidl_vec<hidl_string>(list.begin(), list.end()), expected);
    std::vector<hidl_string> back = expected;
    EXPECT_EQ(back, source);
    EXPECT_EQ(hidl_vec<bool>(std::vector<bool>{true, false}), (hidl_vec<bool>{true, false}));
    EXPECT_EQ(expected.find("y"), expected.begin() + 1);
    EXPECT_FALSE(expected.contains("z"));
    EXPECT_LT((hidl_vec<int>{1, 2}), (hidl_vec<int>{1, 3}));
}

TEST(Vector, AnIteratorsValueMayNeedAnExplicitConversion) {
    struct Celsius {
        explicit operator int32_t() const { return degrees; }
        int32_t degrees;
    };
    const std::list<Celsius> measured{{-4}, {21}};
    EXPECT_EQ(hidl_vec<int32_t>(measured.begin(), measured.end()), (hidl_vec<int32_t>{-4, 21}));
    const std::vector<int64_t> wide{1, 0x100000002};
    EXPECT_EQ(hidl_vec<uint8_t>(wide.begin(), wide.end()), (hidl_vec<uint8_t>{1, 2}));
}

TEST(Vector, DataIsNotNullOnceAVectorHasASize) {
    EXPECT_EQ(hidl_vec<int32_t>().data(), nullptr);
    EXPECT_NE(hidl_vec<int32_t>(0).data(), nullptr);
    hidl_vec<hidl_string> texts{"one"};
    texts.resize(0);
    EXPECT_NE(texts.data(), nullptr);
    EXPECT_EQ(hidl_vec<hidl_string>(texts).data(), nullptr);
    delete[] texts.releaseData();
}

TEST(Vector, CopiesAreDeepAndMovesTakeTheElements) {
    hidl_vec<hidl_vec<hidl_string>> table{{"a", "b"}, {}, {"c"}};
    hidl_vec<hidl_vec<hidl_string>> copy(table);
    copy[0][1] = "changed";
    EXPECT_EQ(table[0][1], "b");
    const auto* elements = table.data();
    copy = std::move(table);
    EXPECT_EQ(copy.data(), elements);
    EXPECT_EQ(table.size(), 0u);  // NOLINT(bugprone-use-after-move)
    hidl_vec<hidl_vec<hidl_string>>& alias = copy;
    copy = alias;
    EXPECT_EQ(copy[2][0], "c");
}

TEST(Vector, ExternalElementsStayTheCallersUnlessGivenAway) {
    int numbers[] = {4, 5, 6};
    hidl_vec<int> view;
    view.setToExternal(numbers, 3);
    EXPECT_EQ(view.data(), numbers);
    hidl_vec<int> copy(view);
    EXPECT_NE(copy.data(), numbers);
    int* released = view.releaseData();
    EXPECT_NE(released, numbers);
    EXPECT_EQ(released[2], 6);
    delete[] released;
    {
        hidl_vec<Counted> owner;
        owner.setToExternal(new Counted[2], 2, true);
        EXPECT_EQ(Counted::alive, 2);
    }
    EXPECT_EQ(Counted::alive, 0);
}

native_handle_t* handleOfNull(int value) {
    native_handle_t* handle = native_handle_create(1, 1);
    handle->data[0] = open("/dev/null", O_RDWR | O_CLOEXEC);
    handle->data[1] = value;
    return handle;
}

TEST(Handle, OwnsOnlyWhatItWasGivenOrDuplicated) {
    size_t before = openDescriptors();
    native_handle_t* native = handleOfNull(77);
    {
        hidl_handle view(native);
        hidl_handle copy(view);
        EXPECT_EQ(openDescriptors(), before + 2);
        EXPECT_NE(copy->data[0], native->data[0]);
        EXPECT_EQ(copy->data[1], 77);
        hidl_handle moved(std::move(copy));
        EXPECT_EQ(copy.getNativeHandle(), nullptr);  // NOLINT(bugprone-use-after-move)
        copy = moved;
        EXPECT_EQ(openDescriptors(), before + 3);
        copy = native;
        EXPECT_EQ(openDescriptors(), before + 2);
    }
    EXPECT_EQ(openDescriptors(), before + 1);
    {
        hidl_handle owner;
        owner.setTo(native, true);
    }
    EXPECT_EQ(openDescriptors(), before);
    hidl_vec<hidl_handle> none(2);
    EXPECT_EQ(hidl_vec<hidl_handle>(none)[1].getNativeHandle(), nullptr);
}

TEST(Array, RowsAreContiguousAndConvertToStandardArrays) {
    hidl_array<int32_t, 2, 3> grid;
    for (size_t row = 0; row < 2; ++row) {
        for (size_t column = 0; column < 3; ++column) {
            grid[row][column] = static_cast<int32_t>(10 * row + column);
        }
    }
    EXPECT_EQ(grid.data()[4], 11);
    EXPECT_EQ(grid.elementCount(), 6u);
    EXPECT_EQ(grid.size(), std::make_tuple(2u, 3u));
    std::array<std::array<int32_t, 3>, 2> standard = grid;
    EXPECT_EQ(standard[1][2], 12);
    hidl_array<int32_t, 2, 3> same(standard);
    EXPECT_EQ(grid, same);
    same[0] = std::array<int32_t, 3>{9, 9, 9};
    EXPECT_NE(grid, same);
    const hidl_array<int32_t, 2, 3>& constant = same;
    EXPECT_EQ(constant[0][2], 9);
    int32_t plain[3] = {1, 2, 3};
    hidl_array<int32_t, 3> line(plain);
    EXPECT_EQ(line.size(), 3u);
    EXPECT_EQ(line[2], 3);
}

TEST(Generated, StructuresCopyCompareAndPrint) {
    Tree tree{};
    tree.named.name = "root";
    tree.list = {Named{"leaf", {1, 2}, -3}};
    tree.grid[1][2] = "corner";
    tree.matrix[2][1] = -5;
    Tree copy(tree);
    EXPECT_EQ(toString(copy), toString(tree));
    EXPECT_NE(toString(tree).find(
                      R"(.list = [1]{{.name = "leaf", .bytes = [2]{1, 2}, .number = -3}})"),
              std::string::npos);
    EXPECT_NE(toString(tree).find(R"(.grid = [2][3]{{"", "", ""}, {"", "", "corner"}})"),
              std::string::npos);
    EXPECT_EQ(copy.list, tree.list);
    copy.list[0].number = 4;
    EXPECT_NE(copy.list, tree.list);
}

TEST(Generated, EnumerationsListTheirValues) {
    std::vector<Colour> values;
    for (Colour colour : hidl_enum_range<Colour>()) values.push_back(colour);
    EXPECT_EQ(values,
              (std::vector<Colour>{Colour::NONE, Colour::RED, Colour::GREEN, Colour::BLUE}));
    EXPECT_EQ(*hidl_enum_range<Colour>().rbegin(), Colour::BLUE);
    EXPECT_EQ(::hidlhost::test::kit::V1_0::toString<Colour>(uint8_t{9}), "NONE | RED | 0x8 (0x9)");
}

TEST(Generated, HexadecimalNumbersLookAsOnADevice) {
    using ::android::hardware::details::toHexString;
    EXPECT_EQ(toHexString(0u), "0");
    EXPECT_EQ(toHexString(uint8_t{200}), "0xc8");
    EXPECT_EQ(toHexString(int8_t{-1}), "0xffffffff");
    EXPECT_EQ(toHexString(int16_t{-1}), "0xffff");
    EXPECT_EQ(toHexString(int64_t{-1}), "0xffffffffffffffff");
    EXPECT_EQ(toHexString(uint32_t{0xbeef}, false), "beef");
    EXPECT_EQ(::hidlhost::test::kit::V1_0::toString<Colour>(uint8_t{0}), "NONE (0)");
}

TEST(Generated, ASafeUnionMayHoldNothing) {
    Maybe maybe;
    EXPECT_EQ(maybe.getDiscriminator(), Maybe::hidl_discriminator::nothing);
    EXPECT_EQ(toString(maybe), "{.nothing = {}}");
    maybe.numbers({1, -1});
    EXPECT_NE(maybe, Maybe());
    maybe.nothing(::android::hidl::safe_union::V1_0::Monostate());
    EXPECT_EQ(maybe, Maybe());
}

TEST(Generated, ASafeUnionGivesOnlyTheMemberItHolds) {
    Choice choice;
    EXPECT_EQ(choice.getDiscriminator(), Choice::hidl_discriminator::nothing);
    choice.text("words");
    Choice copy(choice);
    choice.number(5);
    EXPECT_EQ(copy.text(), "words");
    EXPECT_DEATH((void)choice.text(), "Bad safe_union access");
    copy.list({Named{"one", {}, 1}});
    choice = std::move(copy);
    EXPECT_EQ(choice.list()[0].name, "one");
}

TEST(Version, OrdersByMajorThenMinor) {
    EXPECT_LT(make_hidl_version(1, 9), make_hidl_version(2, 0));
    EXPECT_GE(make_hidl_version(1, 1), make_hidl_version(1, 1));
    EXPECT_NE(make_hidl_version(1, 1), make_hidl_version(1, 0));
}

Return<int32_t> failed() {
    return Status::fromStatusT(DEAD_OBJECT);
}

TEST(ReturnDeathTest, TheValueOfAFailedCallEndsTheProcess) {
    EXPECT_DEATH(
            {
                Return<int32_t> result = failed();
                if (!result.isOk()) {
                    int32_t value = result;
                    (void)value;
                }
            },
            "failed HIDL call.*DEAD_OBJECT");
    EXPECT_DEATH(
            {
                Return<sp<RefBase>> result = Status::fromExceptionCode(Status::EX_NULL_POINTER);
                sp<RefBase> object = result;
            },
            "EX_NULL_POINTER");
}

TEST(ReturnDeathTest, AFailureThatNobodyLooksAtEndsTheProcess) {
    EXPECT_DEATH((void)failed(), "not checked.*DEAD_OBJECT");
    EXPECT_DEATH((void)Return<void>(Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, "why")),
                 "not checked.*EX_ILLEGAL_STATE.*why");
    EXPECT_DEATH(
            {
                Return<int32_t> result = failed();
                result = 5;
                (void)result.isOk();
            },
            "not checked");
    EXPECT_DEATH({ Return<void> widened = failed(); }, "not checked");
    EXPECT_DEATH(
            {
                // Moving hands the duty on; looking at the empty one does not discharge it.
                Return<int32_t> result = failed();
                Return<int32_t> other = std::move(result);
                (void)result.isOk();  // NOLINT(bugprone-use-after-move)
            },
            "not checked");
}

TEST(Return, AnAnswerToAnyQuestionOfFailureChecksIt) {
    EXPECT_FALSE(failed().isOk());
    EXPECT_TRUE(failed().isDeadObject());
    EXPECT_EQ(failed().withDefault(3), 3);
    Return<void> timeout = Status::fromStatusT(TIMED_OUT);
    EXPECT_FALSE(timeout.isDeadObject());
    EXPECT_NE(timeout.description().find("TIMED_OUT"), std::string::npos);
    EXPECT_FALSE(timeout.isOk());
    timeout = failed();
    Return<void> moved = std::move(timeout);
    EXPECT_TRUE(moved.isDeadObject());
    moved = Void();
    EXPECT_TRUE(moved.isOk());
}

// Code that passes here must not end the process on a device.
TEST(ReturnDeathTest, NeitherADescriptionNorADeniedDeathChecksAFailure) {
    EXPECT_DEATH((void)failed().description(), "not checked.*DEAD_OBJECT");
    EXPECT_DEATH((void)Return<void>(Status::fromStatusT(TIMED_OUT)).isDeadObject(),
                 "not checked.*TIMED_OUT");
    EXPECT_DEATH((void)Return<void>(Status::fromExceptionCode(Status::EX_SECURITY)).isDeadObject(),
                 "not checked.*EX_SECURITY");
    EXPECT_DEATH(
            {
                Return<int32_t> first = failed();
                Return<int32_t> second = std::move(first);
                (void)second.description();
            },
            "not checked");
}

TEST(Return, CarriesValuesOfEveryShape) {
    Return<int32_t> number = 6;
    int32_t value = number;
    EXPECT_EQ(value, 6);
    EXPECT_TRUE(Return<bool>(true));
    EXPECT_EQ(Return<Colour>(Colour::RED).withDefault(Colour::NONE), Colour::RED);

    struct Object : public ::android::hidl::base::V1_0::IBase {};
    sp<Object> object = new Object;
    Return<sp<Object>> narrow = object;
    Return<sp<::android::hidl::base::V1_0::IBase>> wide = std::move(narrow);
    sp<::android::hidl::base::V1_0::IBase> base = wide;
    EXPECT_EQ(base, object);
    Return<sp<Object>> none = nullptr;
    EXPECT_EQ(none.withDefault(object), nullptr);
}

TEST(ReturnDeathTest, AProcessMayDemandThatSuccessIsLookedAtToo) {
    (void)Return<int32_t>(1);
    EXPECT_DEATH(
            {
                setProcessHidlReturnRestriction(HidlReturnRestriction::FATAL_IF_UNCHECKED);
                (void)Return<int32_t>(1);
            },
            "not checked");
}

TEST(ThreadStateDeathTest, IsNullAfterItsShutdown) {
    using ::android::hardware::IPCThreadState;
    EXPECT_EQ(IPCThreadState::selfOrNull(), nullptr);
    EXPECT_EQ(IPCThreadState::self()->getCallingPid(), getpid());
    EXPECT_EQ(IPCThreadState::selfOrNull(), IPCThreadState::self());
    // For the process as a whole, which is why it happens in another one.
    EXPECT_EXIT(
            {
                IPCThreadState::shutdown();
                const bool null = IPCThreadState::self() == nullptr &&
                                  IPCThreadState::selfOrNull() == nullptr;
                _exit(null ? 0 : 1);
            },
            ::testing::ExitedWithCode(0), "after shutdown");
}

TEST(StatusCodes, TransportErrorsAndExceptionsStayApart) {
    EXPECT_TRUE(Status::ok().isOk());
    EXPECT_TRUE(Status::fromStatusT(OK).isOk());
    Status status = Status::fromStatusT(DEAD_OBJECT);
    EXPECT_EQ(status.exceptionCode(), Status::EX_TRANSACTION_FAILED);
    EXPECT_EQ(status.transactionError(), DEAD_OBJECT);
    status.setException(Status::EX_SECURITY, "no");
    EXPECT_EQ(status.transactionError(), OK);
    EXPECT_STREQ(status.exceptionMessage(), "no");
    std::ostringstream stream;
    stream << status;
    EXPECT_EQ(stream.str(), "Status(EX_SECURITY, -1): 'no'");
    status.setFromStatusT(OK);
    EXPECT_EQ(status.description(), "No error");
}

// Holds a task until it is let go.
class Gate {
  public:
    void open() { mOpen.set_value(); }
    void pass() {
        mEntered.set_value();
        mOpened.wait();
    }
    void waitForEntry() {
        ASSERT_EQ(mEntered.get_future().wait_for(10s), std::future_status::ready);
    }

  private:
    std::promise<void> mOpen;
    std::promise<void> mEntered;
    std::shared_future<void> mOpened{mOpen.get_future()};
};

TEST(Runner, TakesAsManyWaitingTasksAsItsLimit) {
    Gate gate;
    std::atomic<int> done{0};
    std::promise<void> last;
    TaskRunner runner;
    EXPECT_FALSE(runner.push([] {}));
    runner.start(1);
    EXPECT_FALSE(runner.push(nullptr));
    ASSERT_TRUE(runner.push([&] {
        gate.pass();
        ++done;
    }));
    gate.waitForEntry();
    EXPECT_TRUE(runner.push([&] {
        ++done;
        last.set_value();
    }));
    EXPECT_FALSE(runner.push([&] { done += 100; }));
    gate.open();
    ASSERT_EQ(last.get_future().wait_for(10s), std::future_status::ready);
    EXPECT_EQ(done, 2);
}

TEST(Runner, RunsTasksInOrderOnOneThread) {
    std::vector<int> order;
    std::promise<std::thread::id> first;
    std::promise<std::thread::id> last;
    TaskRunner runner;
    runner.start(100);
    ASSERT_TRUE(runner.push([&] { first.set_value(std::this_thread::get_id()); }));
    for (int i = 0; i < 50; ++i) ASSERT_TRUE(runner.push([&, i] { order.push_back(i); }));
    ASSERT_TRUE(runner.push([&] { last.set_value(std::this_thread::get_id()); }));
    EXPECT_EQ(first.get_future().get(), last.get_future().get());
    ASSERT_EQ(order.size(), 50u);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

// The end of a thread shows in its thread-local object.
struct AtExit {
    std::promise<void>* ended = nullptr;
    ~AtExit() {
        if (ended != nullptr) ended->set_value();
    }
};
thread_local AtExit atExit;

TEST(Runner, FinishesWhatItTookAndThenEndsItsThread) {
    std::promise<void> ended;
    std::atomic<int> done{0};
    auto runner = std::make_shared<TaskRunner>();
    runner->start(10);
    ASSERT_TRUE(runner->push([&] { atExit.ended = &ended; }));
    // The last reference goes in a task, which is what a oneway call to its own owner does.
    std::promise<void> handedOver;
    ASSERT_TRUE(runner->push([&, held = runner, gate = handedOver.get_future().share()]() mutable {
        gate.wait();
        held.reset();
        ++done;
    }));
    ASSERT_TRUE(runner->push([&] { ++done; }));
    runner.reset();
    handedOver.set_value();
    ASSERT_EQ(ended.get_future().wait_for(10s), std::future_status::ready);
    EXPECT_EQ(done, 2);
}

TEST(Map, ErasesAnEntryOnlyWhileItIsTheExpectedOne) {
    ::android::hardware::ConcurrentMap<std::string, int> map;
    map.set("a", 1);
    EXPECT_EQ(map.eraseIfEqual("a", 2), 0u);
    EXPECT_EQ(map.get("a", 0), 1);
    EXPECT_EQ(map.eraseIfEqual("a", 1), 1u);
    EXPECT_EQ(map.get("a", 0), 0);
}

TEST(Parcel, RefusesEachCallForAnotherInterfaceAndLogsFewOfThem) {
    ::android::hardware::Parcel parcel;
    ASSERT_EQ(parcel.writeInterfaceToken("x.y@1.0::IOther"), ::android::OK);
    ::testing::internal::CaptureStderr();
    for (int i = 0; i < 1000; ++i) {
        parcel.setDataPosition(0);
        EXPECT_FALSE(parcel.enforceInterface("x.y@1.0::IMine"));
    }
    const std::string log = ::testing::internal::GetCapturedStderr();
    const auto lines = std::count(log.begin(), log.end(), '\n');
    EXPECT_GE(lines, 1);
    EXPECT_LE(lines, 10);
    EXPECT_NE(log.find("IOther"), std::string::npos);
}

}  // namespace
