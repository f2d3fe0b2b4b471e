# Packages for Debian, by "cpack": the libraries, what a build needs, and the program. The preset package configures a
# build for the system's own folders.
include_guard()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillutils70)
set(CPACK_PACKAGE_CONTACT "QuillUtils70 maintainers <maintainers@quillutils70.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_COMPONENTS_ALL library development tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(quill_same_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libquillutils${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/library/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "utility library for schematic-capture applications
 Sheet names and their order, numbered pages of a hierarchy, the other ends of
 off-sheet connections, bus labels, identifiers and change events, with the
 embedded design database that they work on.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libquillutils-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} ${quill_same_version}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "utility library for schematic-capture applications - development
 Headers, CMake package and pkg-config file of QuillUtils70, for programs that
 use it.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME quill)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} ${quill_same_version}")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "schematic designs at the command line
 Shows and edits what is in a design: pages and their numbers, sheets, buses,
 nets and connectors. Reads design files, JSON, and KiCad schematics.")

# What Debian wants in every package.
set(quill_debian_changelog ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz)
add_custom_command(OUTPUT ${quill_debian_changelog}
    COMMAND gzip -9 -n -c ${PROJECT_SOURCE_DIR}/packaging/changelog > ${quill_debian_changelog}
    DEPENDS ${PROJECT_SOURCE_DIR}/packaging/changelog VERBATIM)
add_custom_target(debian_changelog ALL DEPENDS ${quill_debian_changelog})
foreach(component LIBRARY DEVELOPMENT TOOLS)
    string(TOLOWER ${component} component_name)
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright ${quill_debian_changelog}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME} COMPONENT ${component_name})
endforeach()

include(CPack)
