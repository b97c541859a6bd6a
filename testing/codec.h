/** Values of a script by the types of the interface, to and from the wire. */
#ifndef QELTVAPI_TESTING_CODEC_H
#define QELTVAPI_TESTING_CODEC_H

#include <hwbinder/Parcel.h>
#include <qeltvapi/testing/testing.h>

#include <string>
#include <vector>

#include "interfaces.h"

namespace qeltvapi::testing {

/** @throws ScriptError, with `what` at its beginning, if number or types of the values are wrong */
void expectFit(const std::string& what, const std::vector<Field>& fields, const Values& values,
               bool anyAllowed);

/** Some object reference, in a record of a call. */
Value object();

/** The form in which read() returns a value that fits. */
Value canonical(const Type& type, const Value& value);

/** The content of an answer that none was given for: zeros, empty texts and vectors. */
Value zeroOf(const Type& type);

/** Values that fit; results and notifications have neither memory nor objects. */
void write(const std::vector<Field>& fields, const Values& values, android::hardware::Parcel* to);

/** @throws std::runtime_error if the parcel holds something else */
Values read(const std::vector<Field>& fields, const android::hardware::Parcel& from);

/**
 * Writes into the memory of the argument `index` of a call.
 *
 * @return false if the memory is too small or missing
 */
bool fill(const std::vector<Field>& fields, const android::hardware::Parcel& call, size_t index,
          const std::string& content);

}  // namespace qeltvapi::testing

#endif  // QELTVAPI_TESTING_CODEC_H
