#pragma once

#include <hidl/HidlSupport.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/types.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace qeltvd {

/**
 * A HIDL value from JSON: numbers for integers (checked against the width), a bool, a text, an
 * array of numbers for a vector of integers, for byte vectors a text too.
 *
 * @throws std::exception if the value does not fit
 */
template <class T>
T json_value(const nlohmann::json& json) {
    if constexpr (std::is_same_v<T, bool>) {
        return json.is_boolean() ? json.get<bool>() : json.get<int64_t>() != 0;
    } else if constexpr (std::is_enum_v<T>) {
        return static_cast<T>(json_value<std::underlying_type_t<T>>(json));
    } else if constexpr (std::is_unsigned_v<T>) {
        if (!json.is_number_unsigned()) {
            throw std::invalid_argument(json.dump() + " is not an unsigned integer");
        }
        const uint64_t value = json.get<uint64_t>();
        if (value > std::numeric_limits<T>::max()) {
            throw std::invalid_argument(json.dump() + " is too large");
        }
        return static_cast<T>(value);
    } else {
        static_assert(std::is_signed_v<T>, "no JSON form for this type");
        if (!json.is_number_integer() ||
            (json.is_number_unsigned() &&
             json.get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<T>::max()))) {
            throw std::invalid_argument(json.dump() + " does not fit a signed integer");
        }
        const int64_t value = json.get<int64_t>();
        if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max()) {
            throw std::invalid_argument(json.dump() + " does not fit");
        }
        return static_cast<T>(value);
    }
}

template <>
inline android::hardware::hidl_string json_value(const nlohmann::json& json) {
    return json.get<std::string>();
}

template <>
inline android::hardware::hidl_vec<uint8_t> json_value(const nlohmann::json& json) {
    if (json.is_string()) {
        const auto text = json.get<std::string>();
        return std::vector<uint8_t>(text.begin(), text.end());
    }
    return json.get<std::vector<uint8_t>>();
}

template <>
inline android::hardware::hidl_vec<uint16_t> json_value(const nlohmann::json& json) {
    if (json.is_string()) {
        const auto text = json.get<std::string>();
        return std::vector<uint16_t>(text.begin(), text.end());
    }
    return json.get<std::vector<uint16_t>>();
}

template <>
inline ::vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_ENQ_T json_value(
        const nlohmann::json& json) {
    ::vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_ENQ_T enquiry{};
    enquiry.b_blind = json_value<uint8_t>(json.at("blind"));
    enquiry.ans_len = json_value<uint8_t>(json.at("length"));
    enquiry.text = json_value<android::hardware::hidl_vec<uint16_t>>(json.at("text"));
    return enquiry;
}

template <>
inline ::vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_MENU_T json_value(
        const nlohmann::json& json) {
    using Text = android::hardware::hidl_vec<uint16_t>;
    ::vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_MENU_T menu{};
    menu.title = json_value<Text>(json.at("title"));
    menu.sub_title = json_value<Text>(json.at("sub_title"));
    menu.bottom = json_value<Text>(json.at("bottom"));
    std::vector<Text> choices;
    for (const auto& choice : json.at("choices")) choices.push_back(json_value<Text>(choice));
    menu.choices = choices;
    return menu;
}

}  // namespace qeltvd
