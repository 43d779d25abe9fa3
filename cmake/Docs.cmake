# The API documentation: Doxygen over every public header folder (the installed include/), as
# HTML in <build>/docs/html. `cmake --build <build> --target kel_docs` fails on any Doxygen
# warning (an undocumented public member included); the warnings go to <build>/docs/warnings.log.
# Built on request only, not with `all`.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_EXECUTABLE)
    message(STATUS "Doxygen not found: no kel_docs target")
    return()
endif()

get_property(KEL_DOC_INPUT GLOBAL PROPERTY KEL_PUBLIC_DIRS)
list(REMOVE_DUPLICATES KEL_DOC_INPUT)
# The start page: how to use the library and its conventions.
set(KEL_DOC_MAINPAGE ${PROJECT_SOURCE_DIR}/docs/mainpage.md)
list(JOIN KEL_DOC_INPUT "\" \"" KEL_DOC_INPUT)
set(KEL_DOC_INPUT "\"${KEL_DOC_INPUT}\"")
set(KEL_DOC_OUTPUT ${PROJECT_BINARY_DIR}/docs)
configure_file(${PROJECT_SOURCE_DIR}/cmake/Doxyfile.in ${KEL_DOC_OUTPUT}/Doxyfile @ONLY)

add_custom_target(kel_docs
    COMMAND ${CMAKE_COMMAND} -E remove_directory ${KEL_DOC_OUTPUT}/html
    COMMAND ${DOXYGEN_EXECUTABLE} ${KEL_DOC_OUTPUT}/Doxyfile
    WORKING_DIRECTORY ${KEL_DOC_OUTPUT}
    COMMENT "API documentation in ${KEL_DOC_OUTPUT}/html/index.html"
    VERBATIM)
