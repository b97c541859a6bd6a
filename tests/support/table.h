/**
 * Tables of calls: a row per function of the library, which the harness runs through the
 * exported C function against a scripted service at the wire. Each row is run answered, with a
 * lost reply and with the service missing, each with the debug switch off and on; every time the
 * transaction, the result, every byte of the outputs and every log line are compared.
 */
#ifndef TESTS_SUPPORT_TABLE_H
#define TESTS_SUPPORT_TABLE_H

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "values.h"

namespace wire {

using namespace qeltvapi::testing::wire;

/**
 * The caller's memory in a row: slots of equal size, filled with a marker before each run, so
 * that a write beyond what the row says shows.
 */
class Outputs {
  public:
    static constexpr size_t kSlots = 8;
    static constexpr size_t kSlotSize = 8192;
    static constexpr char kMarker = '\xa5';

    /** The memory of a slot. */
    template <class T = void>
    T* at(size_t slot) {
        return reinterpret_cast<T*>(mSlots[slot].data());
    }
    void reset();
    Bytes slot(size_t slot) const { return Bytes(mSlots[slot].data(), kSlotSize); }
    void put(size_t slot, size_t offset, const Bytes& content);
    /**
     * `text` with what the slots hold in the place of "{u8@0}", "{u16@1+2}", "{i32@0}" and
     * "{text@0}": a type, a slot and, behind the plus, an offset.
     */
    std::string shownIn(const std::string& text) const;

  private:
    struct alignas(16) Slot : std::array<char, kSlotSize> {};
    std::array<Slot, kSlots> mSlots;
};

struct Table;

/** One function and what is to be seen of one call. */
class Row {
  public:
    using CallFn = std::function<int64_t(Outputs&)>;

    /** The ordinal of a function that calls no service: it does the same in every run. */
    static constexpr uint32_t kNoCall = UINT32_MAX;

    /**
     * @param function the C function's name, as log lines show it
     * @param ordinal  the method's place in the interface, or kNoCall
     */
    Row(std::string function, uint32_t ordinal)
            : mFunction(std::move(function)), mOrdinal(ordinal) {}

    /** The call; its result is compared as a 64-bit number, that of a void function as 0. */
    template <class F>
    Row& call(F&& f) {
        if constexpr (std::is_void_v<decltype(f(std::declval<Outputs&>()))>) {
            mCall = [f](Outputs& o) {
                f(o);
                return int64_t{0};
            };
        } else {
            mCall = [f](Outputs& o) { return static_cast<int64_t>(f(o)); };
        }
        return *this;
    }

    /** What a slot holds before the call, at an offset; the rest is the marker. */
    Row& given(size_t slot, Bytes content, size_t offset = 0);
    /** The arguments that must arrive. */
    Row& sent(Values values);
    /** What the service answers. */
    Row& answered(Values values);
    /** The function's result. */
    Row& returns(int64_t result);
    /** What a slot then holds at an offset, beside what it held before. */
    Row& stores(size_t slot, Bytes content, size_t offset = 0);
    template <class T, class = std::enable_if_t<std::is_arithmetic_v<T>>>
    Row& stores(size_t slot, T value, size_t offset = 0) {
        return stores(slot, bytesOf(value), offset);
    }
    /** What a slot holds also when the reply is lost or the service missing. */
    Row& storesAlways(size_t slot, Bytes content, size_t offset = 0);

    /** The result when the service is missing, if it is not the table's. */
    Row& missing(int64_t result);
    /** The result when the reply is lost, if it is not the table's. */
    Row& lost(int64_t result);

    /** Direct result of a type that STATUS_CHECK reports; without this, line 60 is expected. */
    template <class T>
    Row& direct() {
        return checkedUnder(tagOf(T{}));
    }
    /** The result is taken unchecked: the lost reply is not run (it ends the process). */
    Row& unchecked();

    /*
     * Log lines, as patterns (see expectLog()) in which "{f}" stands for the function's name, "{r}"
     * for the result of that run and "{i32@0}" for what the caller then holds (see Outputs).
     */
    /** Traced before anything else. */
    Row& entry(std::vector<std::string> lines);
    /** Traced once the proxy is there, before the call. */
    Row& started(std::vector<std::string> lines);
    /** Traced from inside the reply handler. */
    Row& reply(std::vector<std::string> lines);
    /** Written from inside the reply handler, regardless of the debug switch. */
    Row& replyAlways(std::vector<std::string> lines);
    /** Traced after the call, lost reply included. */
    Row& exit(std::vector<std::string> lines);
    /** Traced at the end when the service is missing; the exit lines are not. */
    Row& exitWhenMissing(std::vector<std::string> lines);
    /** Written when the service is missing, in place of the table's: always, and traced. */
    Row& missingLines(std::vector<std::string> always, std::vector<std::string> traced);

  private:
    friend class Runner;
    static const char* tagOf(int32_t) { return "(hw_iom)(client)"; }
    static const char* tagOf(bool) { return "(hw_qeltvapi_apptv)(client)"; }
    static const char* tagOf(uint16_t) { return "(hw_qeltvapi_av_mode)(client)"; }
    static const char* tagOf(uint32_t) { return "(hw_qeltvapi_channellist)(client)"; }
    static const char* tagOf(uint8_t) { return "(hw_qeltvapi_inputsource)(client)"; }
    static const char* tagOf(int16_t) { return "(hw_qeltvapi_volctrl)(client)"; }
    Row& checkedUnder(const char* tag);

    struct Part {
        size_t slot;
        size_t offset;
        Bytes content;
    };

    std::string mFunction;
    uint32_t mOrdinal;
    CallFn mCall;
    std::vector<Part> mGiven, mStored, mStoredAlways;
    Values mSent, mAnswered;
    int64_t mResult = 0;
    bool mHasMissing = false, mHasLost = false, mUnchecked = false, mHasMissingLines = false;
    int64_t mMissing = 0, mLost = 0;
    const char* mCheckTag = nullptr;
    std::vector<std::string> mEntry, mStarted, mReply, mReplyAlways, mExit, mExitWhenMissing,
            mMissingAlways, mMissingTraced;
};

/** The rows of one module and what they have in common. */
struct Table {
    /** Interface without package: "IQelTvApiConfig". */
    std::string interface;
    /** Log tag of the module. */
    std::string tag;
    int64_t missing = -1;
    int64_t lost = -1;
    std::vector<std::string> missingAlways;
    std::vector<std::string> missingTraced;
    std::vector<Row> rows;
    /** Lines that every row traces at these points, before the row's own. */
    std::vector<std::string> entry;
    std::vector<std::string> exit;
};

/**
 * Runs every row with the service missing. Must come before anything in the process that starts
 * the scripted service: the channel list's proxy is kept for ever.
 */
void runMissing(const Table& table);
/** Runs every row against the scripted service, answered. */
void runAnswered(const Table& table);
/** Runs every row against the scripted service, which loses the reply. */
void runLost(const Table& table);

/** The three runs as tests of the suite; one per file, at the top of its tests. */
#define WIRE_TABLE_TESTS(suite, table)                     \
    TEST(suite, TouchesNothingWhenTheServiceIsMissing) {   \
        ::wire::runMissing(table);                         \
    }                                                      \
    TEST(suite, CallsItsMethodAndStoresTheAnswer) {        \
        ::wire::runAnswered(table);                        \
    }                                                      \
    TEST(suite, LeavesTheOutputsAloneWhenTheReplyIsLost) { \
        ::wire::runLost(table);                            \
    }

}  // namespace wire

#endif  // TESTS_SUPPORT_TABLE_H
