# Installs what a host needs: the library, its public headers and a package for find_package; and for the authors of map
# files, the schema.
include(CMakePackageConfigHelpers)

foreach(header IN LISTS public_headers)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/data_mapper4/${folder}")
endforeach()
install(TARGETS data_mapper4 EXPORT data_mapper4-targets)
install(FILES schema/maps.xsd DESTINATION "${CMAKE_INSTALL_DATADIR}/data_mapper4")

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/data_mapper4")
install(EXPORT data_mapper4-targets NAMESPACE data_mapper4:: FILE data_mapper4Config.cmake DESTINATION "${package_dir}")
write_basic_package_version_file(data_mapper4ConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/data_mapper4ConfigVersion.cmake" DESTINATION "${package_dir}")
