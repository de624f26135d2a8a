# The packages, which scripts/package makes: .deb with one package for each component, .tar.gz, and .zip for Windows.
set(CPACK_PACKAGE_VENDOR "the data_mapper4 developers")
set(CPACK_PACKAGE_CONTACT "data_mapper4 developers <maintainers@data-mapper4.invalid>")
set(CPACK_PACKAGE_DESCRIPTION "A C++17 library that loads XML mapping files, with their includes, into
lookup tables of four kinds, and explains every fault in such files.")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
if(CMAKE_SYSTEM_PROCESSOR)
    set(CPACK_SYSTEM_NAME "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")
endif()
install(FILES LICENSE CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation)
install(DIRECTORY examples DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development)

# A new interface has a new SONAME, and the package of the library has it in its name, so that both can be installed.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development)
if(DATA_MAPPER4_TOOL)
    list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(library_package "libdata-mapper4-${interface_version}")
set(library_dependency "${library_package} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME "${library_package}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "XML mapping files as lookup tables (library)
${CPACK_PACKAGE_DESCRIPTION}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libdata-mapper4-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_dependency}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "XML mapping files as lookup tables (development files)
${CPACK_PACKAGE_DESCRIPTION}

This package has what is needed to build programs that use the library.")
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME data-mapper4-tool)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION text)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library_dependency}")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "check, list and query XML mapping files
${CPACK_PACKAGE_DESCRIPTION}

This package has the command-line tool, data_mapper.")
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/debian_files.cmake")

# On Windows, programs need the compiler's own libraries next to them. g++ prints the bare name of one that it has not.
# Packages get them without their debug information, which is 20 MB in libstdc++.
if(MINGW)
    foreach(name IN ITEMS libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
        execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${name}.dll
            OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE
        )
        if(IS_ABSOLUTE "${runtime}")
            install(FILES "${runtime}" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
            set(installed "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/${name}.dll")
            install(CODE "if(CMAKE_INSTALL_DO_STRIP)
                execute_process(COMMAND \"${CMAKE_STRIP}\" \"${installed}\" COMMAND_ERROR_IS_FATAL ANY)
            endif()" COMPONENT runtime)
        endif()
    endforeach()
endif()

include(CPack)
