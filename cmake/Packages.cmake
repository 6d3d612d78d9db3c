# The Debian packages that ./dev package makes with CPack, one for each component that is installed.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME trellan-update)
set(CPACK_PACKAGE_VENDOR Velorant)
set(CPACK_PACKAGE_CONTACT "Velorant <trellan-update@velorant.example>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_SET_DESTDIR ON) # what is installed may tell where: that is the prefix, and not the folder that is packed
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Runtime Development Tool)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The system's libraries are found by what is linked; ours are not packages that dpkg knows, and are named below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
if(TRELLAN_PLATFORM_DIR)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${TRELLAN_PLATFORM_DIR}/lib)
endif()

set(library_package libzotrellanupdatelib${PROJECT_VERSION_MAJOR})
configure_file(cmake/debian/shlibs.in debian/shlibs @ONLY)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "firmware updates of modular real-time targets - library
It reads a firmware archive, scans the inventory of a target, gives each
element the file that fits it, and carries the updates out in phases.

Programs that update a target are linked with it, such as trellan-update.")
# A host may call an operation that a later version has added, which no symbol shows: so any needs this version at least.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_BINARY_DIR}/debian/shlibs ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzotrellanupdatelib-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS trellan-update)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, pkg-config")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "firmware updates of modular real-time targets - for developers
What programs that update a target are built with: headers, the package
for CMake, the file for pkg-config, and a guide with an example.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME trellan-update)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library_package} (>= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "firmware updates of modular real-time targets - command-line tool
It shows what is installed on a target and what a firmware archive would
change, updates the target, checks archives and begins new ones.")

if(TRELLAN_SIMULATION)
    list(APPEND CPACK_COMPONENTS_ALL Simulation)
    set(CPACK_DEBIAN_SIMULATION_PACKAGE_NAME trellan-simulation)
    set(CPACK_DEBIAN_SIMULATION_PACKAGE_SECTION misc)
    set(CPACK_COMPONENT_SIMULATION_DESCRIPTION "firmware updates of modular real-time targets - simulated target
Libraries that stand in for those of the target's maker where there is no
target: one JSON file is the device.")
    # They take the place of the libraries that a real target has.
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "trellan-simulation (= ${PROJECT_VERSION})")
endif()

# What every Debian package has is added to what is installed. The version's date stands in CHANGELOG.md.
execute_process(COMMAND date --utc --rfc-email --date=${release_date}
    OUTPUT_VARIABLE release_time OUTPUT_STRIP_TRAILING_WHITESPACE)
set(debian_changelog ${CMAKE_CURRENT_BINARY_DIR}/debian/changelog)
configure_file(cmake/debian/changelog.in ${debian_changelog} @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/debian/PackageFiles.cmake)
configure_file(cmake/debian/PackageFiles.cmake.in debian/PackageFiles.cmake @ONLY)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/TriggerAlone.cmake)
include(CPack)
