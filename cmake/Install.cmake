# find_package(torvan_datamodel) in the installed tree.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/torvan_datamodel)
configure_package_config_file(cmake/torvan_datamodelConfig.cmake.in torvan_datamodelConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(torvan_datamodelConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/torvan_datamodelConfig.cmake
              ${PROJECT_BINARY_DIR}/torvan_datamodelConfigVersion.cmake
        DESTINATION ${package_dir})
install(EXPORT torvan_datamodel NAMESPACE torvan:: FILE torvan_datamodelTargets.cmake
        DESTINATION ${package_dir})
