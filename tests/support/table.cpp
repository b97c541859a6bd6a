#include "table.h"

#include <gtest/gtest.h>

#include <regex>

#include "wire.h"

namespace wire {

namespace {

enum class Mode { answered, lost, missing };

const char* nameOf(Mode mode) {
    switch (mode) {
        case Mode::answered:
            return "answered";
        case Mode::lost:
            return "reply lost";
        case Mode::missing:
            return "service missing";
    }
    return "";
}

void append(std::vector<std::string>* to, const std::vector<std::string>& from) {
    to->insert(to->end(), from.begin(), from.end());
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace

void Outputs::reset() {
    for (Slot& slot : mSlots) slot.fill(kMarker);
}

void Outputs::put(size_t slot, size_t offset, const Bytes& content) {
    memcpy(mSlots[slot].data() + offset, content.data(), content.size());
}

namespace {

template <class T>
std::string shown(const char* memory) {
    T value;
    memcpy(&value, memory, sizeof(value));
    return std::to_string(value);
}

}  // namespace

std::string Outputs::shownIn(const std::string& text) const {
    static const std::regex kPlace("\\{(u8|u16|i32|text)@(\\d)(?:\\+(\\d+))?\\}");
    std::string result;
    std::string rest = text;
    for (std::smatch place; std::regex_search(rest, place, kPlace);) {
        const size_t offset = place[3].matched ? std::stoul(place[3]) : 0;
        const char* memory = mSlots[std::stoul(place[2])].data() + offset;
        result += place.prefix();
        if (place[1] == "u8") result += shown<uint8_t>(memory);
        if (place[1] == "u16") result += shown<uint16_t>(memory);
        if (place[1] == "i32") result += shown<int32_t>(memory);
        if (place[1] == "text") result.append(memory, strnlen(memory, kSlotSize - offset));
        rest = place.suffix();
    }
    return result + rest;
}

Row& Row::given(size_t slot, Bytes content, size_t offset) {
    mGiven.push_back({slot, offset, std::move(content)});
    return *this;
}

Row& Row::sent(Values values) {
    mSent = std::move(values);
    return *this;
}

Row& Row::answered(Values values) {
    mAnswered = std::move(values);
    return *this;
}

Row& Row::returns(int64_t result) {
    mResult = result;
    return *this;
}

Row& Row::stores(size_t slot, Bytes content, size_t offset) {
    mStored.push_back({slot, offset, std::move(content)});
    return *this;
}

Row& Row::storesAlways(size_t slot, Bytes content, size_t offset) {
    mStoredAlways.push_back({slot, offset, std::move(content)});
    return *this;
}

Row& Row::missing(int64_t result) {
    mHasMissing = true;
    mMissing = result;
    return *this;
}

Row& Row::lost(int64_t result) {
    mHasLost = true;
    mLost = result;
    return *this;
}

Row& Row::checkedUnder(const char* tag) {
    mCheckTag = tag;
    return *this;
}

Row& Row::unchecked() {
    mUnchecked = true;
    return *this;
}

Row& Row::entry(std::vector<std::string> lines) {
    mEntry = std::move(lines);
    return *this;
}

Row& Row::started(std::vector<std::string> lines) {
    mStarted = std::move(lines);
    return *this;
}

Row& Row::reply(std::vector<std::string> lines) {
    mReply = std::move(lines);
    return *this;
}

Row& Row::replyAlways(std::vector<std::string> lines) {
    mReplyAlways = std::move(lines);
    return *this;
}

Row& Row::exit(std::vector<std::string> lines) {
    mExit = std::move(lines);
    return *this;
}

Row& Row::exitWhenMissing(std::vector<std::string> lines) {
    mExitWhenMissing = std::move(lines);
    return *this;
}

Row& Row::missingLines(std::vector<std::string> always, std::vector<std::string> traced) {
    mHasMissingLines = true;
    mMissingAlways = std::move(always);
    mMissingTraced = std::move(traced);
    return *this;
}

/** Runs one row once and compares all that can be seen. */
class Runner {
  public:
    Runner(const Table& table, const Row& row, Mode mode, bool debug)
            : mTable(table), mRow(row), mMode(mode), mDebug(debug) {}

    void run() {
        SCOPED_TRACE(mRow.mFunction + ", " + nameOf(mMode) + (mDebug ? ", debugging" : ""));
        ScriptedService& service = ScriptedService::instance();
        const bool calls = mRow.mOrdinal != Row::kNoCall;
        auto outputs = std::make_unique<Outputs>();
        outputs->reset();
        for (const auto& part : mRow.mGiven) outputs->put(part.slot, part.offset, part.content);
        auto expected = std::make_unique<Outputs>(*outputs);
        if (mMode == Mode::answered) put(expected.get(), mRow.mStored);
        put(expected.get(), mRow.mStoredAlways);

        if (mMode == Mode::answered && calls) service.expect(mRow.mSent, mRow.mAnswered);
        if (mMode == Mode::lost && calls) service.expectAndLose(mRow.mSent);
        takeLog();
        int64_t result = 0;
        {
            Debug debug(mDebug);
            result = mRow.mCall(*outputs);
        }
        expectLog(mTable.tag, expectedTexts(*expected));

        EXPECT_EQ(expectedResult(), result) << "result";
        for (size_t slot = 0; slot < Outputs::kSlots; ++slot) {
            const Bytes want = expected->slot(slot);
            const Bytes have = outputs->slot(slot);
            if (want == have) continue;
            size_t at = 0;
            while (want[at] == have[at]) ++at;
            ADD_FAILURE() << "output slot " << slot << " differs first at byte " << at
                          << ": expected " << (want[at] & 0xff) << ", holds " << (have[at] & 0xff);
        }
        const std::vector<Seen> seen = service.take();
        service.settle();
        if (mMode == Mode::missing || !calls) {
            EXPECT_TRUE(seen.empty()) << "the service was called";
            return;
        }
        ASSERT_EQ(1u, seen.size()) << "calls of the service";
        EXPECT_EQ(mTable.interface, seen[0].interface);
        EXPECT_EQ(mRow.mOrdinal, seen[0].ordinal);
    }

  private:
    int64_t expectedResult() const {
        if (mRow.mOrdinal == Row::kNoCall) return mRow.mResult;
        switch (mMode) {
            case Mode::answered:
                return mRow.mResult;
            case Mode::lost:
                return mRow.mHasLost ? mRow.mLost : mTable.lost;
            case Mode::missing:
                return mRow.mHasMissing ? mRow.mMissing : mTable.missing;
        }
        return 0;
    }

    static void put(Outputs* outputs, const std::vector<Row::Part>& parts) {
        for (const auto& part : parts) outputs->put(part.slot, part.offset, part.content);
    }

    std::vector<std::string> expectedLines() const {
        std::vector<std::string> lines;
        const bool calls = mRow.mOrdinal != Row::kNoCall;
        const auto traced = [&](const std::vector<std::string>& more) {
            if (mDebug) append(&lines, more);
        };
        if (calls) traced(mTable.entry);
        traced(mRow.mEntry);
        if (mMode == Mode::missing && calls) {
            append(&lines, mRow.mHasMissingLines ? mRow.mMissingAlways : mTable.missingAlways);
            traced(mRow.mHasMissingLines ? mRow.mMissingTraced : mTable.missingTraced);
            traced(mRow.mExitWhenMissing);
            return lines;
        }
        traced(mRow.mStarted);
        if (mMode == Mode::answered || !calls) {
            append(&lines, mRow.mReplyAlways);
            traced(mRow.mReply);
        } else {
            lines.push_back(mRow.mCheckTag != nullptr
                                    ? std::string(mRow.mCheckTag) + "|<STATUS_CHECK:50> ."
                                    : "<STATUS_CHECK:60> .");
        }
        if (calls) traced(mTable.exit);
        traced(mRow.mExit);
        return lines;
    }

    /** The lines with the names and numbers of this run in the placeholders' place. */
    std::vector<std::string> expectedTexts(const Outputs& outputs) const {
        std::vector<std::string> lines = expectedLines();
        for (std::string& line : lines) {
            line = replaced(line, "{f}", mRow.mFunction);
            line = replaced(line, "{r}", std::to_string(expectedResult()));
            line = outputs.shownIn(line);
        }
        return lines;
    }

    const Table& mTable;
    const Row& mRow;
    const Mode mMode;
    const bool mDebug;

  public:
    static bool skipsLost(const Row& row) { return row.mUnchecked || row.mOrdinal == Row::kNoCall; }
};

namespace {

void runAll(const Table& table, Mode mode) {
    captureLog();
    for (const Row& row : table.rows) {
        if (mode == Mode::lost && Runner::skipsLost(row)) continue;
        for (bool debug : {false, true}) Runner(table, row, mode, debug).run();
    }
}

}  // namespace

void runMissing(const Table& table) {
    ASSERT_FALSE(ScriptedService::instance().started()) << "the service is there already";
    runAll(table, Mode::missing);
}

void runAnswered(const Table& table) {
    ScriptedService::instance().start();
    runAll(table, Mode::answered);
}

void runLost(const Table& table) {
    ScriptedService::instance().start();
    runAll(table, Mode::lost);
}

}  // namespace wire
