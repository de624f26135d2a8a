// The version: of these headers while a host is compiled, and of the library when it runs.
#pragma once

#include <string>

#include "platform/ustring.h"

// The version of the headers, major * 10000 + minor * 100 + patch: 900 is 0.9.0. The one place that says it; the build
// and the packages read it here.
#define DATA_MAPPER4_VERSION 900

namespace data_mapper4 {

// Returns the version of the library that is running, "0.9.0". A host that may be started with another one than it was
// built with logs both. Safe to call from any thread.
DATA_MAPPER4_API std::string version();

}  // namespace data_mapper4
