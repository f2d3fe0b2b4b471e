# The target reference: the API reference of the public headers, by Doxygen, into docs/reference of the build tree. A name
# that no comment speaks of fails it.
include_guard()
find_package(Doxygen REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(quill_reference_dir ${PROJECT_BINARY_DIR}/docs/reference)
set(quill_reference_headers "")
foreach(library PlatformUtils70 QuillInterfaceManager70 OrinPI OrinPISqlite QuillUtils70)
    if(TARGET ${library})
        get_target_property(headers ${library} HEADER_SET)
        list(APPEND quill_reference_headers ${headers})
    endif()
endforeach()
list(JOIN quill_reference_headers "\" \\\n    \"" quill_reference_input)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${PROJECT_BINARY_DIR}/docs/Doxyfile @ONLY)
file(MAKE_DIRECTORY ${quill_reference_dir})

add_custom_target(reference
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${quill_reference_dir}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${quill_reference_dir}
    COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/docs/Doxyfile
    COMMENT "Writing the reference to ${quill_reference_dir}/html/index.html"
    VERBATIM)
