# What "cmake --install" gives: libraries, headers, the CMake package QuillUtils70, the pkg-config file quillutils70, and
# the program with its manual page and completions. Components: library (what a program needs to run), development, tools.
include_guard()
include(CMakePackageConfigHelpers)

set(quill_installed PlatformUtils70 QuillInterfaceManager70 OrinPI QuillUtils70)
if(QUILL_BUILD_SQLITE_STORE)
    list(APPEND quill_installed OrinPISqlite)
endif()
if(NOT BUILD_SHARED_LIBS)
    list(PREPEND quill_installed quill_text)  # the others have its objects in them only when they are shared
endif()
set(quill_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/quillutils70)
set(quill_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QuillUtils70)

# The installed tree may be moved; a system's package, whose folders are searched anyway, passes
# CMAKE_SKIP_INSTALL_RPATH.
file(RELATIVE_PATH quill_lib_from_bin "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
set_target_properties(${quill_installed} PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS ${quill_installed} EXPORT QuillUtils70Targets
    RUNTIME COMPONENT library
    LIBRARY COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    FILE_SET HEADERS DESTINATION ${quill_include_dir} COMPONENT development)
install(EXPORT QuillUtils70Targets NAMESPACE QuillUtils70:: DESTINATION ${quill_package_dir} COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QuillUtils70Config.cmake.in QuillUtils70Config.cmake
    INSTALL_DESTINATION ${quill_package_dir})
write_basic_package_version_file(QuillUtils70ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QuillUtils70Config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/QuillUtils70ConfigVersion.cmake
    DESTINATION ${quill_package_dir} COMPONENT development)

file(RELATIVE_PATH quill_prefix_from_pc "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" quill_prefix_from_pc "${quill_prefix_from_pc}")
if(BUILD_SHARED_LIBS)
    set(quill_pc_libs "-lQuillUtils70 -lOrinPI -lPlatformUtils70 -lQuillInterfaceManager70")
    set(quill_pc_definitions "")
else()
    set(quill_pc_libs "-lQuillUtils70 -lOrinPI -lPlatformUtils70 -lQuillInterfaceManager70 -lquill_text -pthread")
    set(quill_pc_definitions "-DQUILL_STATIC ")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/quillutils70.pc.in quillutils70.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quillutils70.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

if(TARGET quill)
    set_target_properties(quill PROPERTIES INSTALL_RPATH "$ORIGIN/${quill_lib_from_bin}")
    install(TARGETS quill RUNTIME COMPONENT tools)
    if(TARGET quill_manual)
        set(quill_manual_dir ${PROJECT_BINARY_DIR}/manual)
        install(FILES ${quill_manual_dir}/quill.1$<$<BOOL:${QUILL_BUILD_PACKAGES}>:.gz>
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
        install(FILES ${quill_manual_dir}/quill.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            RENAME quill COMPONENT tools)
        install(FILES ${quill_manual_dir}/_quill DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
            COMPONENT tools)
    endif()
endif()
