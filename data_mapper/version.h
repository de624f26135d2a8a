// The version of these headers, at compile time, and of the library, at run time.
#pragma once

#include <string>

#include "platform/ustring.h"

// The version of the headers, major * 10000 + minor * 100 + patch: 1000 is 0.10.0. This is the only place where it is set;
// the build and the packages read it here.
#define DATA_MAPPER4_VERSION 1000

namespace data_mapper4 {

// Returns the version of the library that is running, such as "0.10.0". If a host may run with another version than the
// one it was built with, it can log both. Safe to call from any thread.
DATA_MAPPER4_API std::string version();

}  // namespace data_mapper4
