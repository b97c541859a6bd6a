/**
 * The frame of every function of the library, once: trace, proxy, missing service, lost reply.
 * What a function adds (its method, conversions, stores, texts) stands in the function itself.
 */
#ifndef CLIENTWRAPPER_CALL_H
#define CLIENTWRAPPER_CALL_H

#include <cstring>
#include <functional>
#include <type_traits>
#include <utility>

#include "hw_qeltvapi_common.h"

namespace qeltvapi {

using android::sp;
using android::hardware::hidl_handle;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::Return;

/** The place of a call: what the lines of its frame name. */
struct Site {
    const char* function;
    int line;
};

/** The place where it stands. */
#define HERE               \
    ::qeltvapi::Site {     \
        __func__, __LINE__ \
    }

/** A line of the frame under the caller's name and line. `format` begins "<%s:%d> ". */
#define QELTVAPI_LOG_SITE(tag, site, format, ...) \
    __android_log_print(ANDROID_LOG_DEBUG, tag, format, (site).function, (site).line, ##__VA_ARGS__)

inline bool tracing() {
    return mTvApiDebug.load(std::memory_order_relaxed) != 0;
}

/** Writes a line of the frame; see Family. */
using SiteLine = void (*)(const char* tag, const Site& site);
using ResultLine = void (*)(const char* tag, const Site& site, long long result);

/** The lines that many families share. */
namespace line {
/** "<%s:%d> %s": the function's name twice. */
inline void name(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s", site.function);
}
/** "<%s:%d> %s %s": the module's tag and the function's name. */
inline void tagAndName(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> %s %s", tag, site.function);
}
/** "<%s:%d> .": a bare trace point. */
inline void dot(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> .");
}
/** The main service is missing. */
inline void mainServiceFail(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Get qeltvapi service fail. \n");
}
}  // namespace line

/**
 * The constants that all functions of one family share. A function that differs in one point says
 * so where it stands: `kFamily.withMissing(0)`.
 */
template <class I>
struct Family {
    const char* tag;
    sp<I> (*service)();
    /** Result when the reply is lost. */
    int preset = -1;
    /** Result when the service is not there. */
    int missing = -1;
    /** Written before the proxy is fetched, while tracing; may be null, as the next three. */
    SiteLine entry = nullptr;
    /** Written when the service is not there, regardless of the debug switch. */
    SiteLine missingAlways = nullptr;
    /** Written when the service is not there, while tracing. */
    SiteLine missingTraced = nullptr;
    /** Written after the call, lost reply included, while tracing. Not with a missing service. */
    ResultLine exit = nullptr;

    constexpr Family withPreset(int value) const {
        Family other = *this;
        other.preset = value;
        return other;
    }
    constexpr Family withMissing(int value) const {
        Family other = *this;
        other.missing = value;
        return other;
    }
    constexpr Family withEntry(SiteLine line) const {
        Family other = *this;
        other.entry = line;
        return other;
    }
    constexpr Family withMissingAlways(SiteLine line) const {
        Family other = *this;
        other.missingAlways = line;
        return other;
    }
    constexpr Family withMissingTraced(SiteLine line) const {
        Family other = *this;
        other.missingTraced = line;
        return other;
    }
    constexpr Family withExit(ResultLine line) const {
        Family other = *this;
        other.exit = line;
        return other;
    }
};

namespace detail {

template <class F>
struct ReplyTraits : ReplyTraits<decltype(&F::operator())> {};
template <class F, class R, class... V>
struct ReplyTraits<R (F::*)(V...) const> {
    using Result = R;
};
template <class R, class... V>
struct ReplyTraits<R (*)(V...)> {
    using Result = R;
};

/** The result that a reply handler gives: what its lambda returns. */
template <class Reply>
using ReplyResult = typename ReplyTraits<std::decay_t<Reply>>::Result;

/** Types whose lost replies STATUS_CHECK reports. */
template <class T>
constexpr bool kStatusChecked =
        std::is_same_v<T, int32_t> || std::is_same_v<T, bool> || std::is_same_v<T, uint16_t> ||
        std::is_same_v<T, uint32_t> || std::is_same_v<T, uint8_t> || std::is_same_v<T, int16_t>;

}  // namespace detail

/**
 * One call of a service method: its constructor writes the entry trace, fetches the proxy and
 * holds it to the end, and writes the family's line when the service is missing. The shapes
 * below make the call; each is to be used at most once, and only when the service is there.
 */
template <class I>
class Call {
  public:
    Call(const Family<I>& family, const Site& site) : mFamily(family), mSite(site) {
        if (family.entry != nullptr && tracing()) family.entry(family.tag, site);
        use(family.service());
    }

    /** For a function that traces between its fetch of the proxy and its look at it. */
    Call(const Family<I>& family, const Site& site, const sp<I>& service)
            : mFamily(family), mSite(site) {
        use(service);
    }

    /** Whether the service is there. */
    explicit operator bool() const { return mService != nullptr; }

    /**
     * A method with one direct result, checked: a lost reply gives the preset and is reported by
     * STATUS_CHECK.
     */
    template <class R, class... P, class... A>
    R direct(Return<R> (I::*method)(P...), A&&... args) {
        static_assert(detail::kStatusChecked<R>,
                      "STATUS_CHECK has no instance for this result type: use inlineChecked()");
        R result = static_cast<R>(mFamily.preset);
        STATUS_CHECK<R>((mService.get()->*method)(std::forward<A>(args)...), result);
        return exit(result);
    }

    /**
     * A method with one direct result whose lost reply is reported as that of a result callback
     * is: under the family's own tag. Gives the preset then.
     */
    template <class R, class... P, class... A>
    R inlineChecked(Return<R> (I::*method)(P...), A&&... args) {
        R result = static_cast<R>(mFamily.preset);
        Return<R> ret = (mService.get()->*method)(std::forward<A>(args)...);
        if (check(ret)) result = ret;
        return exit(result);
    }

    /**
     * A method with one direct result that is not checked on purpose: a lost reply ends in the
     * HIDL runtime's own failure handling, which aborts.
     */
    template <class R, class... P, class... A>
    R unchecked(Return<R> (I::*method)(P...), A&&... args) {
        R result = (mService.get()->*method)(std::forward<A>(args)...);
        return exit(result);
    }

    /**
     * A method that answers through a result callback. `reply` gets the answer's values, stores
     * them and returns the function's result, as a rule the service's code. It runs on this
     * thread before the method returns, or not at all: then the outputs are untouched and the
     * result is the preset.
     */
    template <class... P, class Reply, class... A>
    auto ask(Return<void> (I::*method)(P...), const Reply& reply, A&&... args) {
        detail::ReplyResult<Reply> result = mFamily.preset;
        auto store = [&](const auto&... values) { result = reply(values...); };
        // The reference keeps std::function from allocating room for a copy of the handler.
        check((mService.get()->*method)(std::forward<A>(args)..., std::ref(store)));
        return exit(result);
    }

    /** A method without results: only a lost reply is reported. */
    template <class... P, class... A>
    void send(Return<void> (I::*method)(P...), A&&... args) {
        check((mService.get()->*method)(std::forward<A>(args)...));
    }

  private:
    void use(const sp<I>& service) {
        mService = service;
        if (mService != nullptr) return;
        if (mFamily.missingAlways != nullptr) mFamily.missingAlways(mFamily.tag, mSite);
        if (mFamily.missingTraced != nullptr && tracing()) {
            mFamily.missingTraced(mFamily.tag, mSite);
        }
    }

    template <class T>
    bool check(const Return<T>& ret) {
        if (ret.isOk()) return true;
        __android_log_print(ANDROID_LOG_DEBUG, mFamily.tag, "<%s:%d> .", "STATUS_CHECK", 60);
        return false;
    }

    template <class R>
    R exit(R result) {
        if (mFamily.exit != nullptr && tracing()) mFamily.exit(mFamily.tag, mSite, result);
        return result;
    }

    const Family<I> mFamily;
    const Site mSite;
    sp<I> mService;
};

/** Call::direct() behind the proxy test: the family's result when the service is missing. */
template <class I, class R, class... P, class... A>
R direct(const Family<I>& family, const Site& site, Return<R> (I::*method)(P...), A&&... args) {
    Call<I> call(family, site);
    if (!call) return static_cast<R>(family.missing);
    return call.direct(method, std::forward<A>(args)...);
}

/** Call::inlineChecked() behind the proxy test. */
template <class I, class R, class... P, class... A>
R inlineChecked(const Family<I>& family, const Site& site, Return<R> (I::*method)(P...),
                A&&... args) {
    Call<I> call(family, site);
    if (!call) return static_cast<R>(family.missing);
    return call.inlineChecked(method, std::forward<A>(args)...);
}

/** Call::unchecked() behind the proxy test. */
template <class I, class R, class... P, class... A>
R unchecked(const Family<I>& family, const Site& site, Return<R> (I::*method)(P...), A&&... args) {
    Call<I> call(family, site);
    if (!call) return static_cast<R>(family.missing);
    return call.unchecked(method, std::forward<A>(args)...);
}

/** Call::ask() behind the proxy test. */
template <class I, class... P, class Reply, class... A>
detail::ReplyResult<Reply> ask(const Family<I>& family, const Site& site,
                               Return<void> (I::*method)(P...), const Reply& reply, A&&... args) {
    Call<I> call(family, site);
    if (!call) return family.missing;
    return call.ask(method, reply, std::forward<A>(args)...);
}

/** Call::send() behind the proxy test. */
template <class I, class... P, class... A>
void send(const Family<I>& family, const Site& site, Return<void> (I::*method)(P...), A&&... args) {
    Call<I> call(family, site);
    if (call) call.send(method, std::forward<A>(args)...);
}

/** A C text as an argument; null is sent as the empty text. */
inline hidl_string text(const char* string) {
    return string != nullptr ? hidl_string(string) : hidl_string();
}

/**
 * `count` elements of the caller's memory as an argument, neither copied nor owned. Null is sent
 * as the empty vector.
 */
template <class T = uint8_t>
hidl_vec<T> over(const void* data, size_t count) {
    hidl_vec<T> vector;
    // The vector is only read through.
    if (data != nullptr) {
        vector.setToExternal(static_cast<T*>(const_cast<void*>(data)), count, false);
    }
    return vector;
}

/** memcpy() that takes any pointers when there is nothing to copy. */
inline void copy(void* to, const void* from, size_t size) {
    if (size != 0) memcpy(to, from, size);
}

/** All elements of an answer, with no look at the caller's room. */
template <class T>
void copyAll(void* to, const hidl_vec<T>& from) {
    copy(to, from.data(), from.size() * sizeof(T));
}

/** All characters of an answer: no terminator, no look at the caller's room. */
inline void copyAll(char* to, const hidl_string& from) {
    copy(to, from.c_str(), from.size());
}

/** A text field of `size` characters: padded with NULs, not terminated when full. */
inline void copyField(char* to, const hidl_string& from, size_t size) {
    strncpy(to, from.c_str(), size);
}

// The commonest reply handlers of ask(): one output, then the service's code as the result.

/** A number, of the width that the caller's variable has. */
template <class T>
auto storeValue(T* out) {
    return [=](T value, int32_t code) {
        *out = value;
        return code;
    };
}

/** All elements of a vector, with no look at the caller's room. */
template <class T = uint8_t>
auto storeAll(void* out) {
    return [=](const hidl_vec<T>& answer, int32_t code) {
        copyAll(out, answer);
        return code;
    };
}

/** All characters of a text: no terminator, no look at the caller's room. */
inline auto storeText(char* out) {
    return [=](const hidl_string& answer, int32_t code) {
        copyAll(out, answer);
        return code;
    };
}

}  // namespace qeltvapi

#endif  // CLIENTWRAPPER_CALL_H
