#include <qeltvapi/testing/testing.h>

#include <algorithm>
#include <cstdio>

#include "codec.h"

namespace qeltvapi::testing {

Value bytes(std::string content) {
    Value value;
    value.mKind = Value::Kind::bytes;
    value.mText = std::move(content);
    return value;
}

Value list(std::vector<Value> items) {
    Value value;
    value.mKind = Value::Kind::list;
    value.mItems = std::move(items);
    return value;
}

Value object() {
    Value value;
    value.mKind = Value::Kind::object;
    return value;
}

Value Value::named(std::string name) const {
    Value value = *this;
    value.mName = std::move(name);
    return value;
}

const Value& Value::operator[](std::string_view name) const {
    for (const Value& item : mItems) {
        if (item.name() == name) return item;
    }
    throw std::out_of_range("there is no field " + std::string(name) + " in " + show());
}

bool Value::equals(const Value& other) const {
    if (mKind == Kind::any || other.mKind == Kind::any) return true;
    if (mKind != other.mKind) return false;
    return mNegative == other.mNegative && mNumber == other.mNumber && mText == other.mText &&
           mItems == other.mItems;
}

std::string Value::show() const {
    switch (mKind) {
        case Kind::any:
            return "any";
        case Kind::number:
            return mNegative ? std::to_string(number()) : std::to_string(mNumber);
        case Kind::text:
        case Kind::bytes: {
            constexpr size_t kShown = 64;
            std::string text = mKind == Kind::text ? "\"" : "bytes(\"";
            for (size_t i = 0; i < std::min(kShown, mText.size()); ++i) {
                const auto c = static_cast<unsigned char>(mText[i]);
                char escaped[8];
                snprintf(escaped, sizeof(escaped), c < 0x20 || c == 0x7f ? "\\x%02x" : "%c", c);
                if (c == '"' || c == '\\') text += '\\';
                text += escaped;
            }
            if (mText.size() > kShown) text += "...";
            text += mKind == Kind::text ? "\"" : "\")";
            if (mText.size() > kShown) text += " of " + std::to_string(mText.size());
            return text;
        }
        case Kind::list: {
            std::string text;
            for (const Value& item : mItems) {
                text += text.empty() ? "" : ", ";
                text += item.name().empty() ? item.show() : item.name() + " " + item.show();
            }
            return "{" + text + "}";
        }
        case Kind::object:
            return "object";
    }
    return "";
}

const Value& Call::operator[](std::string_view name) const {
    for (const Value& argument : arguments) {
        if (argument.name() == name) return argument;
    }
    throw std::out_of_range("there is no argument " + std::string(name) + " in " + show());
}

std::string Call::show() const {
    std::string text;
    for (const Value& argument : arguments) {
        text += (text.empty() ? "" : ", ") + argument.name() + " " + argument.show();
    }
    return interface + " " + method + "(" + text + ")";
}

}  // namespace qeltvapi::testing
