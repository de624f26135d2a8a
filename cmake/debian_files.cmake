# Run by CPack before it makes .deb packages: adds the files that each of them must have, and compresses the man page.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()
get_filename_component(project "${CPACK_RESOURCE_FILE_LICENSE}" DIRECTORY)

# Sets a variable to the text of a licence, as a field of the copyright file has it.
function(read_licence file variable)
    file(READ "${file}" text)
    string(STRIP "${text}" text)
    string(REPLACE "\n" "\n " text "${text}")
    string(REPLACE "\n \n" "\n .\n" text "${text}")
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()
read_licence("${CPACK_RESOURCE_FILE_LICENSE}" licence)
read_licence("${project}/examples/world/LICENSE-UNICODE" data_licence)
set(copyright "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: data_mapper4

Files: *
Copyright: 2026 ${CPACK_PACKAGE_VENDOR}
License: none-chosen-yet
 ${licence}

Files: examples/world/*
Copyright: 1991-2022 Unicode, Inc.
License: Unicode-DFS-2016
 ${data_licence}
")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(changelog "data-mapper4 (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * New upstream release; see changelog.gz.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER "${component}" name)
    set(root "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share")
    set(doc "${root}/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME}")
    file(WRITE "${doc}/copyright" "${copyright}")
    file(WRITE "${doc}/changelog.Debian" "${changelog}")
    configure_file("${project}/CHANGELOG.md" "${doc}/changelog" COPYONLY)
    file(GLOB manuals "${root}/man/man1/*.1")
    file(CHMOD "${doc}/copyright" "${doc}/changelog" "${doc}/changelog.Debian"
        PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
    )
    execute_process(COMMAND gzip -9nf "${doc}/changelog" "${doc}/changelog.Debian" ${manuals} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
