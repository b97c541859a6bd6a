#pragma once

#include <cstdint>
#include <string>

#include "hw_qeltvapi_time.h"
#include "layouts/time.h"

/** Times in the calendar and the time zone of the television. */
namespace tool {

QELTV_DTG_T fields(const QELTVAPI_DTG_T& record);
QELTVAPI_DTG_T record(const QELTV_DTG_T& fields);

QELTV_DTG_T localFields(int64_t utc);
/** "2026-03-29", "02:30", "2026-03-29 02:30:15". */
std::string dateText(const QELTV_DTG_T& fields);
std::string clockText(const QELTV_DTG_T& fields);
std::string timeText(const QELTV_DTG_T& fields);

/** Local midnight of a date as dateText() prints it; "" for today. */
int64_t midnight(const std::string& date);
/** UTC of a local time as timeText() prints it, with or without its seconds. */
int64_t localTimeIn(const std::string& text);
int64_t televisionTime();

/** The number in a text, all of it; ends the command otherwise. */
int64_t parseNumber(const std::string& text, const std::string& what, int64_t minimum,
                    int64_t maximum);

}  // namespace tool
