# The SDK as an installed tree (include/, lib/, bin/, lib/cmake/KelSDKBase/) and as a ZIP of
# the same tree: a consumer writes find_package(KelSDKBase CONFIG REQUIRED) and links
# KelSDK::Base, which brings the kit libraries it builds on.
include(CMakePackageConfigHelpers)
set(KEL_PACKAGE_DIR lib/cmake/KelSDKBase)
install(EXPORT KelSDKBaseTargets NAMESPACE KelSDK:: DESTINATION ${KEL_PACKAGE_DIR})
configure_package_config_file(cmake/KelSDKBaseConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KelSDKBaseConfig.cmake INSTALL_DESTINATION ${KEL_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KelSDKBaseConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KelSDKBaseConfig.cmake
              ${PROJECT_BINARY_DIR}/KelSDKBaseConfigVersion.cmake
        DESTINATION ${KEL_PACKAGE_DIR})

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME KelSDK.Base)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
include(CPack)
