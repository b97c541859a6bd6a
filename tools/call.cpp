#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>

#include "calls.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

/** Bytes behind every output: the library stores whole answers, regardless of the size asked for.
 */
constexpr size_t kSlack = 32u << 20;

bool isGiven(Kind kind) {
    switch (kind) {
        case Kind::kValueOut:
        case Kind::kTextOut:
        case Kind::kDataOut:
        case Kind::kRecordOut:
            return false;
        default:
            return true;
    }
}

bool isShown(Kind kind) {
    switch (kind) {
        case Kind::kValueOut:
        case Kind::kValueInOut:
        case Kind::kTextOut:
        case Kind::kTextInOut:
        case Kind::kDataOut:
        case Kind::kDataInOut:
        case Kind::kRecordOut:
        case Kind::kRecordInOut:
            return true;
        default:
            return false;
    }
}

const char* howGiven(Kind kind) {
    switch (kind) {
        case Kind::kNumber:
        case Kind::kToken:
            return "number";
        case Kind::kText:
        case Kind::kTextInOut:
            return "text";
        case Kind::kValuesIn:
        case Kind::kValueInOut:
            return "number[,number...]";
        case Kind::kDataIn:
        case Kind::kDataInOut:
        case Kind::kRecordIn:
        case Kind::kRecordInOut:
            return "hex bytes";
        case Kind::kOther:
            return "-";
        default:
            return "(output)";
    }
}

int64_t number(const Parameter& parameter, const std::string& word, size_t size) {
    const auto refuse = [&] {
        throw Failure(kUsage, std::string(parameter.name) + " takes an integer of " +
                                      std::to_string(size * 8) + " bits, not \"" + word + "\"");
    };
    errno = 0;
    char* end = nullptr;
    // Everything that fits the width is taken, read as signed or not: 0xC1000004 is an int32_t too.
    const bool negative = !word.empty() && word[0] == '-';
    const int64_t value = negative ? strtoll(word.c_str(), &end, 0)
                                   : static_cast<int64_t>(strtoull(word.c_str(), &end, 0));
    if (word.empty() || std::isspace(static_cast<unsigned char>(word[0])) || *end != '\0' ||
        errno != 0) {
        refuse();
    }
    if (size < 8) {
        const int bits = static_cast<int>(size) * 8;
        if (value >= int64_t{1} << bits || value < -(int64_t{1} << (bits - 1))) refuse();
    }
    return value;
}

size_t widthOf(const std::string& type) {
    if (type == "bool" || type == "int8_t" || type == "uint8_t") return 1;
    if (type == "int16_t" || type == "uint16_t") return 2;
    return type == "int64_t" || type == "uint64_t" ? 8 : 4;
}

std::string hexBytes(const Parameter& parameter, const std::string& word) {
    std::string digits;
    for (const char c : word) {
        if (c == ' ' || c == ':') continue;
        if (!std::isxdigit(static_cast<unsigned char>(c))) digits += 'x';
        digits += c;
    }
    std::string bytes;
    if (digits.size() % 2 != 0 || digits.find('x') != std::string::npos) {
        throw Failure(kUsage,
                      std::string(parameter.name) + " takes bytes in hex, not \"" + word + "\"");
    }
    for (size_t i = 0; i < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

/** An argument with the memory that it points to. */
class Argument {
  public:
    Argument(const Parameter& parameter, const std::string* word, size_t capacity)
            : mParameter(parameter), mCapacity(capacity) {
        if (word != nullptr && *word == "@null" && parameter.kind != Kind::kNumber &&
            parameter.kind != Kind::kToken) {
            return;
        }
        switch (parameter.kind) {
            case Kind::kNumber:
                mSlot.number = number(parameter, *word, widthOf(parameter.type));
                return;
            case Kind::kToken:
                mSlot.number = number(parameter, *word, sizeof(void*));
                return;
            case Kind::kText:
            case Kind::kTextInOut:
                mCapacity = std::max(mCapacity, word->size() + 1);
                begin(*word);
                return;
            case Kind::kValuesIn:
            case Kind::kValueInOut:
                begin(values(*word));
                return;
            case Kind::kRecordIn:
            case Kind::kRecordInOut: {
                const std::string bytes = hexBytes(parameter, *word);
                mCapacity = parameter.size;
                if (bytes.size() > mCapacity) {
                    throw Failure(kUsage, std::string(parameter.name) + " takes " +
                                                  std::to_string(mCapacity) + " bytes at most");
                }
                begin(bytes);
                return;
            }
            case Kind::kDataIn:
            case Kind::kDataInOut:
                begin(hexBytes(parameter, *word));
                return;
            case Kind::kRecordOut:
                mCapacity = parameter.size;
                begin("");
                return;
            default:
                begin("");
        }
    }

    const Slot& slot() const { return mSlot; }

    /** Its contents after the call. */
    void print() const {
        if (mSlot.pointer == nullptr) {
            printf("%s: null\n", mParameter.name);
            return;
        }
        if (isValue()) {
            printf("%s:", mParameter.name);
            for (const int64_t value : shownValues()) {
                printf(" %lld (0x%llx)", static_cast<long long>(value),
                       static_cast<unsigned long long>(masked(value)));
            }
            printf("\n");
            return;
        }
        const size_t length = used();
        if (mParameter.kind == Kind::kTextOut || mParameter.kind == Kind::kTextInOut) {
            printf("%s: %zu bytes \"%s\"\n", mParameter.name, length, text(0, length).c_str());
        } else if (mParameter.kind == Kind::kRecordOut || mParameter.kind == Kind::kRecordInOut) {
            printf("%s: record of %zu bytes\n", mParameter.name, length);
        } else {
            printf("%s: %zu bytes up to the last that is not 0\n", mParameter.name, length);
        }
        for (size_t line = 0; line < length; line += 16) {
            std::string hex;
            for (size_t i = line; i < std::min(length, line + 16); ++i) {
                char byte[4];
                snprintf(byte, sizeof(byte), "%02x ", mBytes[i]);
                hex += byte;
            }
            printf("  %04zx  %-48s %s\n", line, hex.c_str(),
                   text(line, std::min(length, line + 16)).c_str());
        }
        if (beyond() != 0) printf("  and %zu bytes beyond --size\n", beyond());
    }

    Json json() const {
        if (mSlot.pointer == nullptr) return nullptr;
        if (isValue()) {
            const std::vector<int64_t> values = shownValues();
            return values.size() == 1 ? Json(shownNumber(values[0])) : Json(values);
        }
        const size_t length = used();
        std::string hex;
        for (size_t i = 0; i < length; ++i) {
            char byte[3];
            snprintf(byte, sizeof(byte), "%02x", mBytes[i]);
            hex += byte;
        }
        return {{"length", length}, {"hex", hex}, {"text", text(0, length)}};
    }

    const Parameter& parameter() const { return mParameter; }

  private:
    void begin(const std::string& bytes) {
        mSize = std::max(mCapacity, bytes.size()) + kSlack;
        mBuffer = AnswerBuffer(mSize);
        mBytes = static_cast<uint8_t*>(mBuffer.data());
        std::copy(bytes.begin(), bytes.end(), mBytes);
        mSlot.pointer = mBytes;
    }

    std::string values(const std::string& words) const {
        std::string bytes;
        for (size_t start = 0; start <= words.size();) {
            const size_t comma = std::min(words.find(',', start), words.size());
            const int64_t value =
                    number(mParameter, words.substr(start, comma - start), mParameter.size);
            bytes.append(reinterpret_cast<const char*>(&value), mParameter.size);
            start = comma + 1;
        }
        return bytes;
    }

    bool isValue() const {
        return mParameter.kind == Kind::kValueOut || mParameter.kind == Kind::kValueInOut;
    }

    uint64_t masked(int64_t value) const {
        const auto bits = static_cast<unsigned int>(mParameter.size) * 8;
        return static_cast<uint64_t>(value) & (bits < 64 ? (uint64_t{1} << bits) - 1 : ~uint64_t{});
    }

    Json shownNumber(int64_t value) const {
        return mParameter.isSigned ? Json(value) : Json(masked(value));
    }

    /** The first value, and the others up to the last that is not 0. */
    std::vector<int64_t> shownValues() const {
        const size_t count =
                std::max<size_t>(1, (lastUsed(mSize) + mParameter.size - 1) / mParameter.size);
        std::vector<int64_t> values;
        for (size_t i = 0; i < count; ++i) {
            uint64_t raw = 0;
            memcpy(&raw, mBytes + i * mParameter.size, mParameter.size);
            if (mParameter.isSigned) {
                const auto unused = static_cast<unsigned int>(64 - mParameter.size * 8);
                values.push_back(static_cast<int64_t>(raw << unused) >> unused);
            } else {
                values.push_back(static_cast<int64_t>(raw));
            }
        }
        return values;
    }

    /** Bytes up to the last that is not 0. */
    size_t lastUsed(size_t length) const {
        static constexpr uint8_t kZeros[4096] = {};
        while (length > sizeof(kZeros) &&
               memcmp(mBytes + length - sizeof(kZeros), kZeros, sizeof(kZeros)) == 0) {
            length -= sizeof(kZeros);
        }
        while (length > 0 && mBytes[length - 1] == 0) --length;
        return length;
    }

    size_t used() const {
        if (mParameter.kind == Kind::kRecordOut || mParameter.kind == Kind::kRecordInOut) {
            return mCapacity;
        }
        return lastUsed(std::min(mCapacity, mSize));
    }

    size_t beyond() const {
        const size_t last = lastUsed(mSize);
        return last > mCapacity ? last - mCapacity : 0;
    }

    std::string text(size_t from, size_t to) const {
        std::string text;
        for (size_t i = from; i < to; ++i) {
            text += mBytes[i] >= 0x20 && mBytes[i] < 0x7f ? static_cast<char>(mBytes[i]) : '.';
        }
        return text;
    }

    const Parameter& mParameter;
    size_t mCapacity;
    AnswerBuffer mBuffer{1};
    uint8_t* mBytes = nullptr;
    size_t mSize = 0;
    Slot mSlot{0, nullptr};
};

const Function& find(const std::string& name) {
    for (const Function& function : functions()) {
        if (name == function.name) return function;
    }
    std::vector<std::string> names;
    for (const Function& function : functions()) names.push_back(function.name);
    throw Failure(kUsage, "there is no function " + name + suggestion(name, names) +
                                  "; qeltvctl list shows them");
}

void call(const std::string& name, const std::vector<std::string>& words, size_t size, bool json) {
    const Function& function = find(name);
    if (function.call == nullptr) {
        throw Failure(kUsage, name + " cannot be called from here: " + function.why);
    }
    const auto wanted = static_cast<size_t>(
            std::count_if(function.parameters.begin(), function.parameters.end(),
                          [](const Parameter& parameter) { return isGiven(parameter.kind); }));
    if (words.size() != wanted) {
        throw Failure(kUsage, name + " takes " + std::to_string(wanted) + " arguments here, not " +
                                      std::to_string(words.size()) + ": " + function.prototype);
    }
    std::vector<std::unique_ptr<Argument>> arguments;
    std::vector<Slot> slots;
    size_t next = 0;
    for (const Parameter& parameter : function.parameters) {
        const std::string* word = isGiven(parameter.kind) ? &words[next++] : nullptr;
        arguments.push_back(std::make_unique<Argument>(parameter, word, size));
        slots.push_back(arguments.back()->slot());
    }

    // Only the interface that is called: the others may be missing.
    if (function.reachable != nullptr) {
        require(function.reachable());
    } else if (!function.methods.empty()) {
        requireService();
    }
    const int64_t result = function.call(slots.data());
    const bool isVoid = strcmp(function.result, "void") == 0;
    if (json) {
        Json all{{"function", name}};
        if (!isVoid) all["result"] = result;
        all["outputs"] = Json::object();
        for (const auto& argument : arguments) {
            if (isShown(argument->parameter().kind)) {
                all["outputs"][argument->parameter().name] = argument->json();
            }
        }
        printJson(all);
    } else {
        if (!isVoid) printf("result: %lld\n", static_cast<long long>(result));
        for (const auto& argument : arguments) {
            if (isShown(argument->parameter().kind)) argument->print();
        }
    }
    // A negative int is a refusal as a rule; if it is a value, it is printed above.
    if (strcmp(function.result, "int") == 0) check(result, name);
}

void list(const std::string& prefix, bool json) {
    std::vector<std::vector<std::string>> rows{{"FUNCTION", "HEADER", "ARGUMENTS"}};
    Json all = Json::array();
    for (const Function& function : functions()) {
        if (strncmp(function.name, prefix.c_str(), prefix.size()) != 0) continue;
        std::string arguments;
        for (const Parameter& parameter : function.parameters) {
            if (!arguments.empty()) arguments += " ";
            arguments += isGiven(parameter.kind) ? parameter.name
                                                 : std::string("[") + parameter.name + "]";
        }
        const bool callable = function.call != nullptr;
        rows.push_back({function.name, function.header,
                        callable ? arguments : std::string("cannot be called: ") + function.why});
        Json entry{{"name", function.name},
                   {"header", function.header},
                   {"prototype", function.prototype},
                   {"callable", callable}};
        if (!callable) entry["why"] = function.why;
        all.push_back(entry);
    }
    if (rows.size() == 1) throw Failure(kUsage, "no function begins with " + prefix);
    if (json) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

/** Prints text in lines of a readable length. */
void printWrapped(const std::string& text, const std::string& indent) {
    size_t column = 0;
    std::string word;
    const auto flush = [&] {
        if (word.empty()) return;
        if (column != 0 && column + 1 + word.size() > 88) {
            printf("\n");
            column = 0;
        }
        printf("%s%s", column == 0 ? indent.c_str() : " ", word.c_str());
        column += (column == 0 ? indent.size() : 1) + word.size();
        word.clear();
    };
    for (const char c : text) {
        if (c != ' ' && c != '\n') {
            word += c;
            continue;
        }
        flush();
        if (c == '\n') {
            printf("\n");
            column = 0;
        }
    }
    flush();
    if (column != 0) printf("\n");
}

void describe(const std::string& name) {
    const Function& function = find(name);
    printf("%s;\n\n", function.prototype);
    printWrapped(function.comment, "");
    if (!function.parameters.empty()) {
        printf("\nArguments\n");
        for (const Parameter& parameter : function.parameters) {
            printf("  %s %s: %s\n", parameter.type, parameter.name, howGiven(parameter.kind));
            printWrapped(parameter.comment, "      ");
        }
    }
    if (function.resultComment[0] != '\0') {
        printf("\nResult\n");
        printWrapped(function.resultComment, "  ");
    }
    if (!function.methods.empty()) {
        printf("\nMethods\n");
        for (const Method& method : methods()) {
            const bool called =
                    std::any_of(function.methods.begin(), function.methods.end(),
                                [&](const char* name) { return strcmp(name, method.name) == 0; });
            if (called) printf("  %s %s\n", method.interface, method.name);
        }
    }
    printf("\n%s\n", function.header);
    printWrapped(function.about, "  ");
    if (function.call == nullptr) printf("\nCannot be called from here: %s\n", function.why);
}

}  // namespace

void addCall(Command& app) {
    struct Options {
        std::string name, prefix;
        std::vector<std::string> arguments;
        size_t size = 4096;
        bool json = false;
    };
    auto options = std::make_shared<Options>();

    Command* command = app.addCommand("call", "Call any function of the library");
    command->addOption("function", options->name, "Its name, see \"list\"")
            ->required()
            ->offerFrom("list \"$word\"");
    command->addOption("arguments", options->arguments,
                       "Its arguments without the outputs: numbers, texts, bytes in hex; @null is "
                       "a null pointer. Write -- before the first if one begins with \"-\"");
    command->addOption("--size", options->size, "Bytes to show of each output at most")
            ->between(size_t{1}, size_t{1} << 26)
            ->showDefault();
    addJson(command, &options->json);
    command->callback(
            [options] { call(options->name, options->arguments, options->size, options->json); });

    command = app.addCommand("list", "List the functions of the library");
    command->addOption("prefix", options->prefix, "Only those whose names begin with it")
            ->offerFrom("list \"$word\"");
    addJson(command, &options->json);
    command->callback([options] { list(options->prefix, options->json); });

    command = app.addCommand("describe", "Print the contract of a function");
    command->addOption("function", options->name, "Its name")
            ->required()
            ->offerFrom("list \"$word\"");
    command->callback([options] { describe(options->name); });
}

}  // namespace tool
