// Every method once and more often, and what its replies hold.

#include <set>

#include "Run.h"

namespace conformance {
namespace {

using android::OK;
using transactions::Kind;

/** Calls of a method whose results have rules: at most so many, until so many have succeeded. */
constexpr int kMostCalls = 64;
constexpr int kSuccesses = 6;
/** Calls of a method without rules that only reads. */
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

    /** Whether the call has succeeded. */
    bool call(const Json& arguments) {
        const Reply reply = mRun.service().call(mTarget, mMethod, arguments);
        const std::string detail = callText(arguments);
        mAnswers = true;
        if (!reply.answered()) {
            mRun.check("methods.answer").fail(mSubject, detail, "an answer", reply.statusText());
            mRun.lookAfter(mTarget, reply.status);
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
    void finish(size_t* unseen) {
        if (!mAnswers) return;
        mRun.check("methods.answer").examine();
        mRun.check("methods.shape").examine();
        if (mTexts) mRun.check("results.texts").examine();
        if (mCode) mRun.check("results.codes").examine();
        for (const Rule* rule : mRules) {
            if (rule->kind == Rule::Kind::kLayout && !mRun.options().layouts) continue;
            if (mApplied.count(rule) != 0) {
                mRun.check(checkOf(rule->kind)).examine();
            } else if (rule->kind == Rule::Kind::kRecord ||
                       rule->kind == Rule::Kind::kAsRequested) {
                ++*unseen;
            }
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

void checkMethods(Run& run, bool reading) {
    size_t unseen = 0;
    std::deque<Examination> examinations;
    // Twice, because the answers of the first round are arguments of the second.
    for (int round = 0; round < 2; ++round) {
        size_t next = 0;
        for (const Target& target : run.service().targets()) {
            if (target.object == nullptr) continue;
            for (const auto& method : target.interface->methods) {
                if (!run.mayCall(method) || onlyReads(method) != reading) continue;
                if (round == 0) examinations.emplace_back(run, target, method);
                Examination& examination = examinations[next++];
                if (run.gone()) return;
                if (round == 0) {
                    examination.call(zerosOf(method.parameters));
                    continue;
                }
                const bool many = !examination.rules().empty();
                if (!reading && !many) continue;
                int successes = 0;
                for (int i = 0; i < (many ? kMostCalls : kFewCalls) && !run.gone(); ++i) {
                    const Json arguments = run.plausible().next(method, examination.rules());
                    if (examination.call(arguments) && ++successes == kSuccesses) break;
                }
            }
        }
    }
    for (Examination& examination : examinations) examination.finish(&unseen);
    if (unseen != 0) {
        run.check("results.records").note(std::to_string(unseen) + " in no successful answer");
    }
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
                run.lookAfter(target, status);
            }
        }
    }
}

}  // namespace conformance
