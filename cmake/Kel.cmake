# Helpers shared by every folder of the project.
#
# Source lists follow one platform rule: a file without a platform suffix builds everywhere
# (SOURCES), a *Win.cpp file only on Windows (WINDOWS_SOURCES), a *Posix.cpp file only in the
# native build (NATIVE_SOURCES). Configuring fails when a file stands in the wrong list.
#
# kel_library(<target> <build-define> DESCRIPTION text [PUBLIC_DIR dir] [PRIVATE_DIRS dir ...]
#             [SOURCES ...] [WINDOWS_SOURCES ...] [NATIVE_SOURCES ...] [LIBS target ...])
#   A DLL on Windows (its export macro sees <build-define>); a static library in the native
#   build; DESCRIPTION goes into its version resource. PUBLIC_DIR (default: the folder's include/) holds the headers users see and is
#   installed; PRIVATE_DIRS (default: the folder itself) only the library's own sources see.
#   The target is exported as KelSDK::<name without "KelSDK.">. PUBLIC_DIR is also an input of
#   the API documentation (cmake/Docs.cmake).
#
# kel_base_sources([SOURCES ...] [WINDOWS_SOURCES ...] [NATIVE_SOURCES ...] [LIBS ...])
#   Adds a family's sources to KelSDK.Base.
#
# kel_test(<name> [WINDOWS_ONLY] [SOURCES ...] [WINDOWS_SOURCES ...] [NATIVE_SOURCES ...]
#          [LIBS ...])
#   One GoogleTest executable and one CTest entry; run through Wine when cross-compiling.
#   A test with nothing to compile on this platform, or marked WINDOWS_ONLY, is not built.
#
# kel_bench(<name> SOURCES ... [LIBS ...])
#   A benchmark executable (not part of CTest).

set(_KEL_LISTS SOURCES WINDOWS_SOURCES NATIVE_SOURCES LIBS)

# The sources of ARGN's three lists that build on this platform, after the suffix check.
function(_kel_pick_sources out)
    cmake_parse_arguments(K "" "" "${_KEL_LISTS}" ${ARGN})
    foreach(src ${K_SOURCES})
        if(src MATCHES "(Win|Posix)\\.cpp$")
            message(FATAL_ERROR "${src}: a platform file in SOURCES (${CMAKE_CURRENT_SOURCE_DIR})")
        endif()
    endforeach()
    foreach(src ${K_WINDOWS_SOURCES})
        if(NOT src MATCHES "Win\\.(cpp|rc)$")
            message(FATAL_ERROR "${src}: WINDOWS_SOURCES takes *Win.cpp files only")
        endif()
    endforeach()
    foreach(src ${K_NATIVE_SOURCES})
        if(NOT src MATCHES "Posix\\.cpp$")
            message(FATAL_ERROR "${src}: NATIVE_SOURCES takes *Posix.cpp files only")
        endif()
    endforeach()
    set(srcs ${K_SOURCES})
    if(WIN32)
        list(APPEND srcs ${K_WINDOWS_SOURCES})
    else()
        list(APPEND srcs ${K_NATIVE_SOURCES})
    endif()
    set(${out} ${srcs} PARENT_SCOPE)
endfunction()

function(kel_library target define)
    cmake_parse_arguments(K "" "PUBLIC_DIR;DESCRIPTION" "PRIVATE_DIRS;${_KEL_LISTS}" ${ARGN})
    _kel_pick_sources(srcs ${ARGN})
    if(NOT K_PUBLIC_DIR)
        set(K_PUBLIC_DIR ${CMAKE_CURRENT_SOURCE_DIR}/include)
    endif()
    if(NOT K_PRIVATE_DIRS)
        set(K_PRIVATE_DIRS ${CMAKE_CURRENT_SOURCE_DIR})
    endif()
    if(WIN32)
        add_library(${target} SHARED ${srcs})
        target_compile_definitions(${target} PRIVATE ${define})
        # KelSDK.Base.dll and KelSDK.Base.dll.a, not mingw's lib-prefixed names.
        set_target_properties(${target} PROPERTIES PREFIX "" IMPORT_PREFIX "")
        kel_version_resource(${target} "${target}.dll" "${K_DESCRIPTION}")
    else()
        add_library(${target} STATIC ${srcs})
    endif()
    string(REGEX REPLACE "^KelSDK\\." "" export_name ${target})
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${export_name})
    add_library(KelSDK::${export_name} ALIAS ${target})
    target_include_directories(${target}
        PUBLIC $<BUILD_INTERFACE:${K_PUBLIC_DIR}> $<INSTALL_INTERFACE:include>
        PRIVATE ${K_PRIVATE_DIRS})
    target_link_libraries(${target} PUBLIC KelSDK.DllApi ${K_LIBS})
    install(TARGETS ${target} EXPORT KelSDKBaseTargets
            RUNTIME DESTINATION bin ARCHIVE DESTINATION lib LIBRARY DESTINATION lib)
    install(DIRECTORY ${K_PUBLIC_DIR}/ DESTINATION include)
    set_property(GLOBAL APPEND PROPERTY KEL_PUBLIC_DIRS ${K_PUBLIC_DIR})
endfunction()

function(kel_base_sources)
    cmake_parse_arguments(K "" "" "${_KEL_LISTS}" ${ARGN})
    _kel_pick_sources(srcs ${ARGN})
    if(srcs)
        target_sources(KelSDK.Base PRIVATE ${srcs})
    endif()
    if(K_LIBS)
        target_link_libraries(KelSDK.Base PUBLIC ${K_LIBS})
    endif()
endfunction()

function(kel_test name)
    cmake_parse_arguments(K "WINDOWS_ONLY" "" "${_KEL_LISTS}" ${ARGN})
    _kel_pick_sources(srcs ${ARGN})
    if(NOT srcs OR (K_WINDOWS_ONLY AND NOT WIN32))
        return()
    endif()
    add_executable(${name} ${srcs})
    target_link_libraries(${name} PRIVATE ${K_LIBS} GTest::gtest_main)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600 ENVIRONMENT "${KEL_TEST_ENVIRONMENT}")
    add_dependencies(kel_tests ${name})
endfunction()

function(kel_bench name)
    cmake_parse_arguments(K "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${K_SOURCES})
    target_link_libraries(${name} PRIVATE ${K_LIBS})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/bench)
    add_dependencies(kel_benches ${name})
endfunction()

# kel_version_resource(<target> <original file name> <description>)
#   A version resource (file and product version from the project version) linked into a
#   Windows DLL or executable, readable with GetFileVersionInfoW.
function(kel_version_resource target file description)
    set(KEL_RC_FILE_NAME "${file}")
    set(KEL_RC_DESCRIPTION "${description}")
    set(KEL_RC_INTERNAL_NAME "${target}")
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        set(KEL_RC_FILE_TYPE VFT_APP)
    else()
        set(KEL_RC_FILE_TYPE VFT_DLL)
    endif()
    set(rc ${CMAKE_CURRENT_BINARY_DIR}/${target}.version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.rc.in ${rc} @ONLY)
    target_sources(${target} PRIVATE ${rc})
endfunction()
