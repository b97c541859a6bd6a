// Shared memory that comes with a request.

#include <cutils/native_handle.h>
#include <fcntl.h>
#include <hw_qeltvapi_channel_records.h>
#include <unistd.h>

#include <algorithm>

#include "Run.h"

namespace conformance {
namespace {

using android::hardware::Parcel;
using transactions::Kind;

constexpr char kPattern = '\xa5';
/** Calls of a method with each number of records. */
constexpr int kTries = 24;
/** Calls whose descriptors are counted, and how many of the service's may have another reason. */
constexpr size_t kCounted = 64;
constexpr size_t kOthers = 8;

/** A method that fills the memory of its requests. */
struct Filling {
    const char* interface;
    const char* method;
    /** Bytes of a record in each memory. */
    std::vector<size_t> sizes;
    /** Parameters whose sum is how many records a memory holds. */
    std::vector<const char*> requested;
    /** Results whose sum is how many have been written; empty if there is none. */
    std::vector<const char*> written;
};

const std::vector<Filling>& fillings() {
    static const std::vector<size_t> kPair = {QELTVAPI_SVL_REC_SIZE, QELTVAPI_TSL_REC_SIZE};
    static const std::vector<Filling> kFillings = {
            {"IQelTvApiChannelList",
             "a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex",
             kPair,
             {"count"},
             {"value1"}},
            {"IQelTvApiChannelList",
             "a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex",
             kPair,
             {"count"},
             {}},
            {"IQelTvApiChannelList",
             "a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type",
             kPair,
             {"count"},
             {"value1"}},
            {"IQelTvApiChannelList",
             "a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_filter",
             kPair,
             {"count1", "count2"},
             {"value1", "value2"}},
            {"IQelTvApiChannelList",
             "a_hidl_qeltvapi_tvprovider_get_all_svlid",
             {sizeof(uint16_t)},
             {"capacity"},
             {"count"}},
            {"IQelTvApi", "a_hidl_c_iom_get", {1}, {"len"}, {"done"}},
    };
    return kFillings;
}

std::string contentOf(int file, size_t size) {
    std::string content(size, '\0');
    return pread(file, content.data(), size, 0) == static_cast<ssize_t>(size) ? content : "";
}

size_t untouchedFrom(const std::string& content) {
    const size_t last = content.find_last_not_of(kPattern);
    return last == content.npos ? 0 : last + 1;
}

/** One call with memory that is larger than the request says, and filled with a pattern. */
void fillOnce(Run& run, const Target& target, const transactions::Method& method,
              const Filling& filling, size_t each) {
    Json arguments = run.plausible().next(method, {});
    size_t requested = 0;
    for (const char* name : filling.requested) {
        arguments[name] = each;
        requested += each;
    }
    std::vector<size_t> sizes;
    for (const auto& parameter : method.parameters) {
        if (parameter.type->kind != Kind::kHandle) continue;
        sizes.push_back((requested + 4) * filling.sizes[sizes.size()]);
        arguments[parameter.name] = {{"fds", {sizes.back()}}, {"ints", Json::array()}};
    }
    transactions::Files files;
    const Reply reply = run.service().call(target, method, [&](Parcel* parcel) {
        writeArguments(method, arguments, parcel, &files);
        for (size_t i = 0; i < sizes.size(); ++i) {
            const std::string pattern(sizes[i], kPattern);
            (void)pwrite(files.handles()[i]->data[0], pattern.data(), pattern.size(), 0);
        }
    });
    const std::string subject = subjectOf(target, method);
    const std::string detail = callText(arguments);
    Check& bounds = run.check("memory.bounds");
    Check& counts = run.check("memory.counts");
    if (!reply.good()) {
        bounds.fail(subject, detail, "an answer",
                    reply.malformed.empty() ? reply.statusText() : reply.malformed);
        return run.lookAfter(target, &method, reply.status);
    }
    uint64_t written = 0;
    for (const char* name : filling.written) {
        const auto count = reply.results.at(name).get<uint64_t>();
        written += count;
        if (succeeded(method, reply) && count > each) {
            counts.fail(subject, detail, "at most " + std::to_string(each) + " as " + name,
                        std::to_string(count));
            return;
        }
    }
    for (size_t i = 0; i < sizes.size(); ++i) {
        const std::string content = contentOf(files.handles()[i]->data[0], sizes[i]);
        const size_t size = filling.sizes[i];
        const size_t end = untouchedFrom(content);
        bounds.examine();
        if (end > requested * size) {
            bounds.fail(subject, detail,
                        "at most " + std::to_string(requested) + " records of " +
                                std::to_string(size) + " bytes",
                        "something written at byte " + std::to_string(end - 1));
        }
        if (filling.written.empty() || !succeeded(method, reply)) continue;
        counts.examine();
        const size_t expected = static_cast<size_t>(written) * size;
        if (end > expected || (written != 0 && end <= expected - size)) {
            counts.fail(subject, detail,
                        std::to_string(written) + " records of " + std::to_string(size) +
                                " bytes, as counted",
                        std::to_string(end) + " bytes written");
        }
    }
}

bool takesHandles(const transactions::Method& method) {
    return std::any_of(method.parameters.begin(), method.parameters.end(),
                       [](const auto& one) { return one.type->kind == Kind::kHandle; });
}

/** Calls a method with the same handle for each of its handles. */
void callWith(Run& run, const Target& target, const transactions::Method& method,
              const native_handle_t* handle, const char* words) {
    const Json arguments = [&] {
        Json json = run.plausible().next(method, {});
        for (const auto& parameter : method.parameters) {
            for (const char* name : {"count", "count1", "count2", "capacity", "len"}) {
                if (std::string(name) == parameter.name) json[name] = 100;
            }
        }
        return json;
    }();
    transactions::Files files;
    const Reply reply = run.service().call(target, method, [&](Parcel* parcel) {
        for (const auto& parameter : method.parameters) {
            if (parameter.type->kind == Kind::kHandle) {
                parcel->writeNativeHandleNoDup(handle);
            } else {
                transactions::write({parameter}, arguments, parcel, &files);
            }
        }
    });
    Check& check = run.check("memory.handles");
    check.examine();
    if (!reply.good()) {
        check.fail(subjectOf(target, method), std::string("called with ") + words,
                   "an answer, such as a refusal",
                   reply.malformed.empty() ? reply.statusText() : reply.malformed);
        run.lookAfter(target, &method, reply.status);
    }
}

void checkHandles(Run& run, const Target& target, const transactions::Method& method) {
    transactions::Files files;
    const auto memory = [&](size_t size) {
        return files.make({{"fds", {size}}, {"ints", Json::array()}});
    };
    callWith(run, target, method, nullptr, "a null handle");
    callWith(run, target, method, files.make({{"fds", Json::array()}, {"ints", Json::array({1})}}),
             "a handle without descriptors");
    callWith(run, target, method, memory(0), "an empty memory");
    callWith(run, target, method, memory(1), "a memory of one byte");
    int ends[2];
    native_handle_t* const pipe = native_handle_create(1, 0);
    if (pipe != nullptr && pipe2(ends, O_CLOEXEC) == 0) {
        pipe->data[0] = ends[1];
        callWith(run, target, method, pipe, "a pipe in place of memory");
        close(ends[0]);
        close(ends[1]);
    }
    native_handle_delete(pipe);
}

void checkReleased(Run& run, const Target& target, const transactions::Method& method) {
    Check& check = run.check("memory.released");
    const auto before = run.service().descriptors();
    if (!before) {
        check.skip(run.service().process() == 0
                           ? "the service's process is not known"
                           : "the descriptors of process " +
                                     std::to_string(run.service().process()) + " cannot be read");
        return;
    }
    for (size_t i = 0; i < kCounted && !run.gone() && run.mayCall(method); ++i) {
        Json arguments = run.plausible().next(method, {});
        for (const auto& parameter : method.parameters) {
            if (parameter.type->kind == Kind::kHandle) {
                arguments[parameter.name] = {{"fds", {4096}}, {"ints", Json::array()}};
            }
        }
        run.lookAfter(target, &method, run.service().call(target, method, arguments).status);
    }
    check.examine();
    const auto after = run.service().awaitDescriptors(*before + kOthers);
    if (after && *after > *before + kOthers) {
        check.fail(subjectOf(target, method),
                   "after " + std::to_string(kCounted) + " calls with memory",
                   std::to_string(*before) + " open descriptors of the service, as before",
                   std::to_string(*after));
    }
}

}  // namespace

void checkMemory(Run& run) {
    for (const Filling& filling : fillings()) {
        const Target* target = run.service().find(filling.interface);
        if (target == nullptr) continue;
        const auto& method = methodOf(*target->interface, filling.method);
        for (const size_t each : {size_t{0}, size_t{1}, size_t{2}, size_t{5}}) {
            for (int i = 0; i < kTries && !run.gone() && run.mayCall(method); ++i) {
                fillOnce(run, *target, method, filling, each);
            }
        }
    }
    for (const Target& target : run.service().targets()) {
        if (target.object == nullptr) continue;
        for (const auto& method : target.interface->methods) {
            if (!takesHandles(method) || !run.mayCall(method) || run.gone()) continue;
            checkHandles(run, target, method);
            if (!run.gone()) checkReleased(run, target, method);
        }
    }
}

}  // namespace conformance
