# What only the library's own developers build: examples, tests, benchmarks, fuzz targets. A project that contains this
# one gets none of it.
option(DATA_MAPPER4_TESTS "Build the tests (needs GoogleTest)" ON)
option(DATA_MAPPER4_WERROR "Treat warnings as errors" OFF)

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_EXTENSIONS OFF)

add_library(data_mapper4_warnings INTERFACE)
if(MSVC)
    # C4251: hosts and library share one standard library, as the README says. C4996: MSVC deprecates std::getenv. C5030:
    # it does not know the attributes of other compilers.
    target_compile_options(data_mapper4_warnings INTERFACE
        /W4 /permissive- /utf-8 /wd4251 /wd4996 /wd5030 $<$<BOOL:${DATA_MAPPER4_WERROR}>:/WX>
    )
else()
    target_compile_options(data_mapper4_warnings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wnon-virtual-dtor
        $<$<BOOL:${DATA_MAPPER4_WERROR}>:-Werror>
    )
endif()
target_link_libraries(data_mapper4_objects PRIVATE $<BUILD_INTERFACE:data_mapper4_warnings>)

add_subdirectory(examples)

# What follows is never a unity build: tests reuse the same short names.
set(CMAKE_UNITY_BUILD OFF)

if(DATA_MAPPER4_TESTS)
    enable_testing()
    add_subdirectory(tests)
endif()

add_subdirectory(bench)

option(DATA_MAPPER4_FUZZ "Build the fuzz targets, and the library under the sanitizers (needs clang and expat)" OFF)
if(DATA_MAPPER4_FUZZ)
    set(sanitizers -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
    target_compile_options(data_mapper4_objects PRIVATE ${sanitizers})
    target_link_options(data_mapper4 PUBLIC ${sanitizers})
    find_package(EXPAT REQUIRED)
else()
    find_package(EXPAT QUIET)
endif()
# The fuzz targets use files in memory, which only Linux has.
if(EXPAT_FOUND AND CMAKE_SYSTEM_NAME STREQUAL "Linux" AND (DATA_MAPPER4_FUZZ OR DATA_MAPPER4_TESTS))
    add_subdirectory(fuzz)
endif()
