# Helpers shared by every folder of the project.
#
# kel_library(<target> <build-define>
#             [SOURCES portable.cpp ...] [WINDOWS_SOURCES win.cpp ...] [LIBS target ...])
#   A DLL on Windows (its export macro sees <build-define>); a static library in the
#   native build, which compiles only SOURCES (the code that needs no operating system).
#
# kel_base_sources([SOURCES ...] [WINDOWS_SOURCES ...] [LIBS ...])
#   Adds a family's sources to KelSDK.Base.
#
# kel_test(<name> [SOURCES ...] [WINDOWS_SOURCES ...] [LIBS ...])
#   One GoogleTest executable and one CTest entry; run through Wine when cross-compiling.
#   A test without portable SOURCES does not exist in the native build.
#
# kel_bench(<name> SOURCES ... [LIBS ...])
#   A benchmark executable (not part of CTest).

function(_kel_pick_sources out)
    cmake_parse_arguments(K "" "" "SOURCES;WINDOWS_SOURCES;LIBS" ${ARGN})
    set(srcs ${K_SOURCES})
    if(WIN32)
        list(APPEND srcs ${K_WINDOWS_SOURCES})
    endif()
    set(${out} ${srcs} PARENT_SCOPE)
endfunction()

function(kel_library target define)
    cmake_parse_arguments(K "" "" "SOURCES;WINDOWS_SOURCES;LIBS" ${ARGN})
    _kel_pick_sources(srcs ${ARGN})
    if(WIN32)
        add_library(${target} SHARED ${srcs})
        target_compile_definitions(${target} PRIVATE ${define})
        # KelSDK.Base.dll and KelSDK.Base.dll.a, not mingw's lib-prefixed names.
        set_target_properties(${target} PROPERTIES PREFIX "" IMPORT_PREFIX "")
    else()
        add_library(${target} STATIC ${srcs})
    endif()
    target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${target} PUBLIC KelSDK.DllApi)
    if(K_LIBS)
        target_link_libraries(${target} PUBLIC ${K_LIBS})
    endif()
endfunction()

function(kel_base_sources)
    cmake_parse_arguments(K "" "" "SOURCES;WINDOWS_SOURCES;LIBS" ${ARGN})
    _kel_pick_sources(srcs ${ARGN})
    if(srcs)
        target_sources(KelSDK.Base PRIVATE ${srcs})
    endif()
    if(K_LIBS)
        target_link_libraries(KelSDK.Base PUBLIC ${K_LIBS})
    endif()
endfunction()

function(kel_test name)
    cmake_parse_arguments(K "" "" "SOURCES;WINDOWS_SOURCES;LIBS" ${ARGN})
    _kel_pick_sources(srcs ${ARGN})
    if(NOT srcs)
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
