// Every method once and more often, and what its replies hold.

#include <deque>
#include <set>

#include "Run.h"

namespace conformance {
namespace {

using android::OK;
using transactions::Kind;

/** Calls of a method whose results have rules: at most so many, until so many have succeeded. */
constexpr int kMostCalls = 120;
constexpr int kSuccesses = 6;
/** Calls of a method without rules. */
constexpr int kFewCalls = 4;

bool hasNul(const transactions::Type& type, const Json& value) {
    switch (type.kind) {
        case Kind::kString:
            if (value.is_object()) {
                const auto& digits = value.at("hex").get_ref<const std::string&>();
                for (size_t i = 0; i < digits.size(); i += 2) {
                    if (digits.compare(i, 2, "00") == 0) return true;
                }
                return false;
            }
            return value.get_ref<const std::string&>().find('\0') != std::string::npos;
        case Kind::kVector:
            if (!value.is_array()) return false;
            for (const Json& element : value) {
                if (hasNul(*type.element, element)) return true;
            }
            return false;
        case Kind::kStruct:
            for (const auto& field : type.fields) {
                if (field.count == 0 && hasNul(*field.type, value.at(field.name))) return true;
            }
            return false;
        default:
            return false;
    }
}

bool hasText(const transactions::Type& type) {
    if (type.kind == Kind::kString) return true;
    if (type.kind == Kind::kVector) return hasText(*type.element);
    for (const auto& field : type.fields) {
        if (hasText(*field.type)) return true;
    }
    return false;
}

std::string namesOf(const std::vector<transactions::Value>& values) {
    std::string names;
    for (const auto& value : values) names += (names.empty() ? "" : ", ") + std::string(value.name);
    return names.empty() ? "no result" : "the results " + names;
}

const char* checkOf(Rule::Kind kind) {
    switch (kind) {
        case Rule::Kind::kRecord:
        case Rule::Kind::kAsRequested:
        case Rule::Kind::kAlwaysAsRequested:
            return "results.records";
        case Rule::Kind::kLayout:
            return "results.layouts";
        case Rule::Kind::kAtMost:
            return "results.capacity";
        default:
            return "results.counts";
    }
}

/** Calls one method, and judges the replies. */
class Examination {
  public:
    Examination(Run& run, const Target& target, const transactions::Method& method)
            : mRun(run),
              mTarget(target),
              mMethod(method),
              mRules(rulesOf(target, method)),
              mSubject(subjectOf(target, method)) {}

    const std::vector<const Rule*>& rules() const { return mRules; }
    const transactions::Method& method() const { return mMethod; }

    void callUntil(int most, int successes) {
        for (int i = 0; i < most && successes > 0 && !mRun.gone(); ++i) {
            if (!mRun.mayCall(mMethod)) return;
            if (call(mRun.plausible().next(mMethod, mRules))) --successes;
        }
    }

    /** How many records have only been seen in refusals, which have none. */
    size_t unseen() const {
        size_t count = 0;
        for (const Rule* rule : mRules) {
            const bool record =
                    rule->kind == Rule::Kind::kRecord || rule->kind == Rule::Kind::kAsRequested;
            if (record && mApplied.count(rule) == 0) ++count;
        }
        return count;
    }

    /** Whether the call has succeeded. */
    bool call(const Json& arguments) {
        const Reply reply = mRun.service().call(mTarget, mMethod, arguments);
        const std::string detail = callText(arguments);
        mAnswers = true;
        if (!reply.answered()) {
            mRun.check("methods.answer").fail(mSubject, detail, "an answer", reply.statusText());
            mRun.lookAfter(mTarget, &mMethod, reply.status);
            return false;
        }
        if (!reply.malformed.empty()) {
            mRun.check("methods.shape")
                    .fail(mSubject, detail, namesOf(mMethod.results), reply.malformed);
            return false;
        }
        judgeTexts(detail, reply);
        judgeCode(detail, reply);
        for (const Rule* rule : mRules) {
            if (rule->kind == Rule::Kind::kLayout && !mRun.options().layouts) continue;
            const Verdict verdict = judge(*rule, mMethod, arguments, reply);
            if (!verdict.applies) continue;
            mApplied.insert(rule);
            if (!verdict.expected.empty()) {
                mRun.check(checkOf(rule->kind))
                        .fail(mSubject, detail, verdict.expected, verdict.received);
            }
        }
        const bool done = succeeded(mMethod, reply);
        if (done) mRun.plausible().learn(mMethod, reply.results);
        return done;
    }

    /** Counts what has been examined. */
    void finish() {
        if (!mAnswers) return;
        mRun.check("methods.answer").examine();
        mRun.check("methods.shape").examine();
        if (mTexts) mRun.check("results.texts").examine();
        if (mCode) mRun.check("results.codes").examine();
        for (const Rule* rule : mRules) {
            if (rule->kind == Rule::Kind::kLayout && !mRun.options().layouts) continue;
            if (mApplied.count(rule) != 0) mRun.check(checkOf(rule->kind)).examine();
        }
    }

  private:
    void judgeTexts(const std::string& detail, const Reply& reply) {
        for (const auto& result : mMethod.results) {
            if (!hasText(*result.type)) continue;
            mTexts = true;
            if (hasNul(*result.type, reply.results.at(result.name))) {
                mRun.check("results.texts")
                        .fail(mSubject, detail, std::string("no NUL in ") + result.name,
                              reply.results.at(result.name)
                                      .dump(-1, ' ', true, Json::error_handler_t::replace));
            }
        }
    }

    void judgeCode(const std::string& detail, const Reply& reply) {
        // The only result of a method can be a value.
        if (mMethod.results.size() < 2) return;
        const std::optional<int64_t> code = codeOf(mMethod, reply.results);
        if (!code) return;
        mCode = true;
        if (*code == -1 || *code == -2) {
            mRun.check("results.codes")
                    .fail(mSubject, detail, "another code", std::to_string(*code));
        }
    }

    Run& mRun;
    const Target& mTarget;
    const transactions::Method& mMethod;
    const std::vector<const Rule*> mRules;
    const std::string mSubject;
    bool mAnswers = false;
    bool mTexts = false;
    bool mCode = false;
    std::set<const Rule*> mApplied;
};

}  // namespace

class Methods::Sweep {
  public:
    explicit Sweep(Run& run) : mRun(run) {
        for (const Target& target : run.service().targets()) {
            if (target.object == nullptr) continue;
            for (const auto& method : target.interface->methods) {
                if (run.mayCall(method)) mExaminations.emplace_back(run, target, method);
            }
        }
    }

    void callOnce(bool reading) {
        for (Examination& one : mExaminations) {
            if (mRun.gone()) return;
            if (onlyReads(one.method()) == reading)
                one.call(transactions::zerosOf(one.method().parameters));
        }
    }

    void callOften(bool reading) {
        for (Examination& one : mExaminations) {
            if (onlyReads(one.method()) != reading) continue;
            if (!one.rules().empty() || takesRecords(one.method())) {
                one.callUntil(kMostCalls, kSuccesses);
            } else {
                one.callUntil(kFewCalls, kFewCalls);
            }
        }
    }

    void callUnseen() {
        for (Examination& one : mExaminations) {
            if (onlyReads(one.method()) && one.unseen() != 0) {
                one.callUntil(kMostCalls, kSuccesses);
            }
        }
    }

    void finish() {
        size_t unseen = 0;
        for (Examination& one : mExaminations) {
            one.finish();
            unseen += one.unseen();
        }
        if (unseen == 0) return;
        mRun.check("results.records").note(std::to_string(unseen) + " in refusals only");
    }

  private:
    Run& mRun;
    std::deque<Examination> mExaminations;
};

Methods::Methods(Run& run) : mSweep(std::make_unique<Sweep>(run)) {}

Methods::~Methods() = default;

void Methods::read() {
    mSweep->callOnce(true);
    // The answers so far are arguments now.
    mSweep->callOften(true);
}

void Methods::change() {
    mSweep->callOnce(false);
    mSweep->callOften(false);
    mSweep->callUnseen();
}

void Methods::finish() {
    mSweep->finish();
}

void checkOrdinals(Run& run) {
    Check& check = run.check("methods.beyond");
    for (const Target& target : run.service().targets()) {
        if (target.object == nullptr) continue;
        const auto last = static_cast<uint32_t>(target.interface->methods.size());
        for (const uint32_t code : {last + 1, last + 100}) {
            if (run.gone()) return;
            check.examine();
            android::hardware::Parcel reply;
            const auto status =
                    run.service().transact(target, target.descriptor, code, nullptr, &reply);
            if (status == OK) {
                check.fail(target.interface->name, "called with ordinal " + std::to_string(code),
                           "a refusal in transport", "an answer");
            } else if (status == android::DEAD_OBJECT || status == android::TIMED_OUT) {
                check.fail(target.interface->name, "called with ordinal " + std::to_string(code),
                           "a refusal in transport", android::statusToString(status));
                run.lookAfter(target, nullptr, status);
            }
        }
    }
}

}  // namespace conformance
