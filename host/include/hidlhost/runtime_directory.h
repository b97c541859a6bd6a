#pragma once

#include <string>

namespace hidlhost {

/**
 * The private directory in which the processes of one user meet, without a slash at its end; made
 * if there is none.
 *
 * @return empty if it cannot be used
 */
std::string runtimeDirectory();

}  // namespace hidlhost
