# Install rules, the CMake package, the pkg-config file and the Debian package.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/AppComponents)

install(TARGETS orvimg AppComponents
    EXPORT AppComponentsTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT AppComponentsTargets
    NAMESPACE AppComponents::
    DESTINATION ${package_dir})

get_property(public_headers GLOBAL PROPERTY APPCOMPONENTS_PUBLIC_HEADERS)
foreach(header IN LISTS public_headers)
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/src/${header}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/include/AppComponents/AppComponentsExport.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/AppComponents)

configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/AppComponentsConfig.cmake.in
    ${PROJECT_BINARY_DIR}/AppComponentsConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/AppComponentsConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/AppComponentsConfig.cmake
    ${PROJECT_BINARY_DIR}/AppComponentsConfigVersion.cmake
    DESTINATION ${package_dir})

configure_file(cmake/AppComponents.pc.in AppComponents.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/AppComponents.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME appcomponents)
set(CPACK_PACKAGE_VENDOR "the AppComponents authors")
set(CPACK_PACKAGE_CONTACT "the AppComponents authors <appcomponents@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# Consumers compile against Qt's headers; camview's icons and the recording indicator are SVG.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qtbase5-dev, libqt5svg5")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
include(CPack)
