# Installs what a host needs: the library, its public headers and packages for find_package and pkg-config; and for the
# authors of map files, the schema.
include(CMakePackageConfigHelpers)

foreach(header IN LISTS public_headers)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/data_mapper4/${folder}" COMPONENT development)
endforeach()
install(TARGETS data_mapper4 EXPORT data_mapper4-targets
    RUNTIME COMPONENT library
    LIBRARY COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
)
install(FILES schema/maps.xsd DESTINATION "${CMAKE_INSTALL_DATADIR}/data_mapper4" COMPONENT development)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/data_mapper4")
install(EXPORT data_mapper4-targets NAMESPACE data_mapper4:: FILE data_mapper4Config.cmake
    DESTINATION "${package_dir}" COMPONENT development
)
write_basic_package_version_file(data_mapper4ConfigVersion.cmake COMPATIBILITY ${interface_compatibility})
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/data_mapper4ConfigVersion.cmake"
    DESTINATION "${package_dir}" COMPONENT development
)

# Its folders are relative to the file itself, so that an installed folder can be moved.
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
file(RELATIVE_PATH to_libraries "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH to_headers "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}/data_mapper4")
set(static_flag "")
if(library_type STREQUAL "STATIC")
    set(static_flag " -D${library_definition}")
endif()
configure_file(cmake/data_mapper4.pc.in data_mapper4.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/data_mapper4.pc" DESTINATION "${pkgconfig_dir}" COMPONENT development)
