#include "Arguments.h"

#include <hw_qeltvapi_channel_records.h>
#include <hw_qeltvapi_record.h>
#include <hw_svctx.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <limits>
#include <set>

namespace conformance {

using transactions::Kind;

namespace {

/** How many values of a kind are kept. */
constexpr size_t kKept = 24;

/** The words of a name: "get", "all", "svlid" of "get_all_svlid", "is", "Video" of "isVideo". */
std::vector<std::string> wordsOf(const std::string& name) {
    std::vector<std::string> words(1);
    for (size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        const bool begins = std::isupper(c) != 0 && i != 0 &&
                            std::islower(static_cast<unsigned char>(name[i - 1])) != 0;
        if ((c == '_' || begins) && !words.back().empty()) words.emplace_back();
        if (c != '_') words.back() += static_cast<char>(std::tolower(c));
    }
    return words;
}

/** The kind of thing that a number names, by its own name; "" for any. */
std::string meaningOf(const std::string& name) {
    for (const char* meaning : {"list", "chan", "event", "index", "ctx", "snapshot"}) {
        if (name.find(meaning) != name.npos) return meaning;
    }
    return name == "ids" ? "event" : "";
}

/** Records of requests, by the method without "a_hidl_", and the parameter. */
const std::map<std::pair<std::string, std::string>, size_t>& requestRecords() {
    static const std::map<std::pair<std::string, std::string>, size_t> kRecords = {
            {{"c_svctx_set_conn_attr", "data"}, 4},
            {{"qeltvapi_channellist_get_channellist_by_query_info", "info"},
             QELTVAPI_QUERY_INFO_SIZE},
            {{"qeltvapi_channellist_get_channel_number_by_query_info", "info"},
             QELTVAPI_QUERY_INFO_SIZE},
            {{"qeltvapi_bisskey_get_bsl_rec_by_header", "header"}, QELTVAPI_BSL_HEADER_SIZE},
            {{"qeltvapi_bisskey_set_bsl_rec_info", "rec"}, QELTVAPI_BSL_REC_SIZE},
            {{"qeltvapi_satllist_update_rec", "rec"}, QELTVAPI_SATL_REC_SIZE},
            {{"qeltvapi_tsl_update_rec", "rec"}, QELTVAPI_TSL_REC_SIZE},
            {{"qeltvapi_nwl_update_rec", "rec"}, QELTVAPI_NWL_REC_SIZE},
            {{"qeltvapi_set_schedule_record", "record"}, QELTVAPI_SCHEDULE_RECORD_SIZE},
    };
    return kRecords;
}

/** The size of a record; 0 for a vector of another size. */
size_t recordSize(const transactions::Method& method, const std::string& parameter) {
    const auto found = requestRecords().find({std::string(method.name).substr(7), parameter});
    return found != requestRecords().end() ? found->second : 0;
}

bool isNumber(Kind kind) {
    return kind <= Kind::kUint64 && kind != Kind::kBool;
}

template <class T>
Json fitted(int64_t number) {
    return static_cast<T>(number);
}

/** A number in the width of a type. */
Json fit(Kind kind, int64_t number) {
    switch (kind) {
        case Kind::kInt8:
            return fitted<int8_t>(number);
        case Kind::kUint8:
            return fitted<uint8_t>(number);
        case Kind::kInt16:
            return fitted<int16_t>(number);
        case Kind::kUint16:
            return fitted<uint16_t>(number);
        case Kind::kInt32:
            return fitted<int32_t>(number);
        case Kind::kUint32:
            return fitted<uint32_t>(number);
        case Kind::kUint64:
            return fitted<uint64_t>(number);
        default:
            return number;
    }
}

}  // namespace

bool onlyReads(const transactions::Method& method) {
    static const std::set<std::string> kReads = {"get", "is",    "has",    "query",
                                                 "qry", "check", "convert"};
    static const std::set<std::string> kChanges = {
            "set",  "reset",  "add",    "remove", "delete", "del",    "select", "update", "start",
            "stop", "switch", "change", "chg",    "save",   "create", "clean",  "pwd",    "erase"};
    bool reads = false;
    for (const std::string& word : wordsOf(method.name)) {
        if (kChanges.count(word) != 0) return false;
        if (kReads.count(word) != 0) reads = true;
    }
    return reads;
}

bool takesRecords(const transactions::Method& method) {
    return std::any_of(method.parameters.begin(), method.parameters.end(),
                       [&](const auto& one) { return recordSize(method, one.name) != 0; });
}

Json Plausible::number(const transactions::Value& parameter) {
    static const std::vector<int64_t> kSmall = {0, 0, 0, 1, 1, 2, 3, 5};
    // The attributes that the library knows, readable and writable.
    static const std::vector<int64_t> kAttributes = {0xC1000007, 0xC1000008, 0xC0000069};
    if (parameter.type->kind == Kind::kUint32 && std::string(parameter.name) == "code") {
        return of(kAttributes);
    }
    const std::string meaning = meaningOf(parameter.name);
    const auto found = mNumbers.find(meaning);
    const bool known = found != mNumbers.end() && !found->second.empty();
    const int64_t chosen = known && mRandom() % 4 != 0 ? of(found->second) : of(kSmall);
    return fit(parameter.type->kind, chosen);
}

Json Plausible::value(const transactions::Method& method, const transactions::Value& parameter,
                      bool bound) {
    static const std::vector<int64_t> kCapacities = {0, 1, 2, 3, 4, 8, 16, 48, 100, 400};
    const transactions::Type& type = *parameter.type;
    if (type.kind == Kind::kBool) return mRandom() % 2 == 1;
    if (isNumber(type.kind)) {
        if (!bound) return number(parameter);
        const int64_t most = type.kind == Kind::kUint8 ? 200 : 400;
        return fit(type.kind, std::min(of(kCapacities), most));
    }
    if (type.kind == Kind::kString) {
        const std::vector<std::string> usual = {"", "main", "sub", mItem};
        return mTexts.empty() || mRandom() % 2 == 0 ? of(usual) : of(mTexts);
    }
    if (const size_t size = recordSize(method, parameter.name); size != 0) {
        const std::vector<std::string>& known = mRecords[size];
        return known.empty() || mRandom() % 4 == 0 ? std::string(size * 2, '0') : of(known);
    }
    if (type.kind == Kind::kVector && bound) {
        const auto count = static_cast<size_t>(of(kCapacities));
        return type.element->kind == Kind::kUint8
                       ? Json(std::string(count * 2, '0'))
                       : Json(count, transactions::zeroOf(*type.element));
    }
    return transactions::zeroOf(type);
}

Json Plausible::next(const transactions::Method& method, const std::vector<const Rule*>& rules) {
    Json json = Json::object();
    for (const auto& parameter : method.parameters) {
        json[parameter.name] = value(method, parameter, bounds(rules, parameter.name));
    }
    return json;
}

void Plausible::keep(const std::string& name, const transactions::Type& type, const Json& value) {
    if (isNumber(type.kind)) {
        const auto number = value.get<int64_t>();
        for (const std::string& meaning : {meaningOf(name), std::string()}) {
            std::vector<int64_t>& known = mNumbers[meaning];
            if (std::find(known.begin(), known.end(), number) != known.end()) continue;
            if (known.size() < kKept) {
                known.push_back(number);
            } else {
                known[mRandom() % kKept] = number;
            }
        }
    } else if (type.kind == Kind::kString && value.is_string() && !value.empty()) {
        const auto text = value.get<std::string>();
        if (text.empty() || std::find(mTexts.begin(), mTexts.end(), text) != mTexts.end()) return;
        if (mTexts.size() < kKept) mTexts.push_back(text);
    } else if (type.kind == Kind::kVector && type.element->kind == Kind::kUint8) {
        const auto& record = value.get_ref<const std::string&>();
        std::vector<std::string>& known = mRecords[record.size() / 2];
        if (known.size() < kKept) known.push_back(record);
    } else if (type.kind == Kind::kVector && isNumber(type.element->kind) && value.is_array()) {
        for (size_t i = 0; i < std::min<size_t>(value.size(), 4); ++i) {
            keep(name, *type.element, value[i]);
        }
    }
}

void Plausible::learn(const transactions::Method& method, const Json& results) {
    for (size_t i = 0; i < method.results.size(); ++i) {
        const auto& result = method.results[i];
        // A lone number is mostly what the method is named after.
        const bool alone = method.results.size() == 1;
        if (!alone && i + 1 == method.results.size()) break;
        keep(alone ? method.name : result.name, *result.type, results.at(result.name));
    }
}

Json Hostile::number(Kind kind) {
    const auto of = [&](auto lowest, auto highest) -> Json {
        using T = decltype(lowest);
        const T all[] = {0,
                         1,
                         2,
                         3,
                         static_cast<T>(mRandom() % 16),
                         static_cast<T>(mRandom() % 256),
                         static_cast<T>(mRandom()),
                         static_cast<T>(-1),
                         lowest,
                         highest,
                         static_cast<T>(lowest + 1),
                         static_cast<T>(0x04000001)};
        return all[below(std::size(all))];
    };
    switch (kind) {
        case Kind::kBool: {
            // Any byte may stand for a truth value on the wire.
            const unsigned all[] = {0, 1, 0, 1, 2, 0x7f, 0x80, 0xff};
            return all[below(std::size(all))];
        }
#define EDGES(name, type) \
    case Kind::name:      \
        return of(std::numeric_limits<type>::min(), std::numeric_limits<type>::max());
            EDGES(kInt8, int8_t)
            EDGES(kUint8, uint8_t)
            EDGES(kInt16, int16_t)
            EDGES(kUint16, uint16_t)
            EDGES(kInt32, int32_t)
            EDGES(kUint32, uint32_t)
            EDGES(kInt64, int64_t)
            EDGES(kUint64, uint64_t)
#undef EDGES
        default:
            return 0;
    }
}

std::string Hostile::text() {
    const std::string all[] = {"",
                               "main",
                               "sub",
                               "picture.contrast",
                               "0000",
                               "deu",
                               "2026-02-30",
                               "/nonexistent/file",
                               "../../../../nonexistent",
                               "%s%n%x",
                               "\xff\xfe\x80",
                               std::string("a\0b", 3),
                               std::string(1, '\0'),
                               std::string(5000, 'x')};
    return all[below(std::size(all))];
}

std::string Hostile::bytes(size_t size) {
    const unsigned char all[] = {0, 0, 1, 1, 2, 0x7f, 0x80, 0xff};
    std::string filled;
    for (size_t i = 0; i < size; ++i) filled += static_cast<char>(all[below(std::size(all))]);
    return transactions::hexOf(filled.data(), filled.size());
}

Json Hostile::value(const transactions::Type& type, bool huge) {
    switch (type.kind) {
        case Kind::kString:
            return huge ? std::string(60'000, 'x') : text();
        case Kind::kVector: {
            // Sizes that records have, among others.
            const size_t all[] = {0, 1, 2, 3, 4, 5, 8, 12, 16, 32, 64, 76, 260, 276, 304, 396, 628};
            size_t count = all[below(std::size(all))];
            if (huge) count = 60'000 / std::max<size_t>(type.element->size, 1);
            if (type.element->kind == Kind::kUint8) return bytes(count);
            Json json = Json::array();
            for (size_t i = 0; i < count; ++i) json.push_back(value(*type.element, false));
            return json;
        }
        case Kind::kStruct: {
            Json json = Json::object();
            for (const auto& field : type.fields) {
                if (field.count == 0) {
                    json[field.name] = value(*field.type, false);
                } else if (field.type->kind == Kind::kUint8) {
                    json[field.name] = bytes(field.count);
                } else {
                    Json array = Json::array();
                    for (size_t i = 0; i < field.count; ++i) {
                        array.push_back(value(*field.type, false));
                    }
                    json[field.name] = array;
                }
            }
            return json;
        }
        case Kind::kHandle: {
            const size_t sizes[] = {0, 1, 16, 396, 4096};
            switch (below(4)) {
                case 0:
                    return nullptr;
                case 1:
                    return {{"fds", Json::array()}, {"ints", {1, -1}}};
                default:
                    return {{"fds", {sizes[below(std::size(sizes))]}}, {"ints", Json::array()}};
            }
        }
        case Kind::kObject:
            return nullptr;
        default:
            return number(type.kind);
    }
}

Json Hostile::next(const std::vector<transactions::Value>& parameters) {
    Json json = Json::object();
    // At most one in a call, which would be refused for its size otherwise.
    const size_t huge = below(64) == 0 ? below(parameters.size() + 1) : parameters.size();
    for (size_t i = 0; i < parameters.size(); ++i) {
        json[parameters[i].name] = value(*parameters[i].type, i == huge);
    }
    return json;
}

}  // namespace conformance
