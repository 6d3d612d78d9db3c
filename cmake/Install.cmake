# What is installed where, in four components:
#   Runtime      the library
#   Development  headers, the packages for CMake and pkg-config, the link that programs are linked with; guide and example
#   Tool         trellan-update, its man pages and completions, documents and examples
#   Simulation   the simulated stand-ins of the maker's libraries
# The project's other files say nothing about installing; what is added to the product gets a line here.
include(CMakePackageConfigHelpers)

set(document_folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/trellan-update)

# install_page(FILE DESTINATION COMPONENT [HYPHEN]): installs FILE. Where it names the folder of documents of a package
# (/usr/share/doc/trellan-update), what is installed names the folder that they are installed in; that is known only then, since
# a prefix may be given when it is installed. HYPHEN is how the file writes a hyphen. The text is made in the build folder and
# copied from there, or linked to, as CMake does with other files.
function(install_page file destination component)
    set(hyphen "-")
    if(ARGC GREATER 3)
        set(hyphen "${ARGV3}")
    endif()
    cmake_path(GET file FILENAME name)
    install(CODE "
        get_filename_component(prefix \"\${CMAKE_INSTALL_PREFIX}\" ABSOLUTE)
        get_filename_component(folder [[${destination}]] ABSOLUTE BASE_DIR \"\${prefix}\")
        get_filename_component(documents [[${document_folder}]] ABSOLUTE BASE_DIR \"\${prefix}\")
        file(READ [[${file}]] text)
        string(REPLACE - [[${hyphen}]] usual /usr/share/doc/trellan-update)
        string(REPLACE - [[${hyphen}]] here \"\${documents}\")
        string(REPLACE \"\${usual}\" \"\${here}\" text \"\${text}\")
        file(WRITE [[${CMAKE_CURRENT_BINARY_DIR}/installed-pages/${name}]] \"\${text}\")
        file(INSTALL [[${CMAKE_CURRENT_BINARY_DIR}/installed-pages/${name}]] DESTINATION \"\${folder}\")"
        COMPONENT ${component})
endfunction()

# Where the system looks for libraries by itself nothing needs to tell it; anywhere else the tool looks beside itself, so that
# a folder with all of it can be moved.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(trellan-update PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
endif()

# Runtime.
set_target_properties(ZoTrellanUpdateLib PROPERTIES EXPORT_NAME UpdateLib)
install(TARGETS ZoTrellanUpdateLib EXPORT ZoTrellanUpdateLib
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# Development.
file(GLOB public_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h ${PROJECT_SOURCE_DIR}/include/*.hpp)
install(FILES ${public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development)
install(DIRECTORY examples/host DESTINATION ${document_folder}/examples COMPONENT Development)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/ZoTrellanUpdateLib)
install(EXPORT ZoTrellanUpdateLib NAMESPACE ZoTrellan:: FILE ZoTrellanUpdateLibTargets.cmake
    DESTINATION ${package_folder} COMPONENT Development)
configure_package_config_file(cmake/ZoTrellanUpdateLibConfig.cmake.in ZoTrellanUpdateLibConfig.cmake
    INSTALL_DESTINATION ${package_folder} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(ZoTrellanUpdateLibConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/ZoTrellanUpdateLibConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/ZoTrellanUpdateLibConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT Development)

if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(pkg_config_prefix /usr)
else()  # wherever it has been put
    file(RELATIVE_PATH to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
    string(REGEX REPLACE "/$" "" pkg_config_prefix "\${pcfiledir}/${to_prefix}")
endif()
configure_file(cmake/ZoTrellanUpdateLib.pc.in ZoTrellanUpdateLib.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ZoTrellanUpdateLib.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)

# Tool.
install(TARGETS trellan-update RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tool)
# The page of the archive format is made of its document; that of the tool, of the tool's help, is among the sources, since the
# tool cannot be run everywhere where it is built.
find_program(AWK awk REQUIRED)
file(STRINGS CHANGELOG.md release REGEX "^## \\[.*\\] - " LIMIT_COUNT 1)
string(REGEX REPLACE "^.* - " "" release_date "${release}")
set(archive_page_sources docs/archive-format.md docs/man/archive-page.awk CHANGELOG.md)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${archive_page_sources})
execute_process(COMMAND ${AWK} -v date=${release_date} -f docs/man/archive-page.awk docs/archive-format.md
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_FILE ${CMAKE_CURRENT_BINARY_DIR}/trellan-archive.5
    COMMAND_ERROR_IS_FATAL ANY)
install_page(${PROJECT_SOURCE_DIR}/docs/man/trellan-update.1 ${CMAKE_INSTALL_MANDIR}/man1 Tool "\\-")
install_page(${CMAKE_CURRENT_BINARY_DIR}/trellan-archive.5 ${CMAKE_INSTALL_MANDIR}/man5 Tool "\\-")
set(completions ${PROJECT_SOURCE_DIR}/tool/completion/shells)
install(FILES ${completions}/trellan-update
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT Tool)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")  # Debian's zsh looks for those of packages there
    set(zsh_functions vendor-completions)
else()
    set(zsh_functions site-functions)
endif()
install(FILES ${completions}/_trellan-update DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_functions} COMPONENT Tool)
install(FILES ${completions}/trellan-update.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT Tool)
install(FILES docs/archive.schema.json docs/trellan-update.schema.json
    DESTINATION ${document_folder}/docs COMPONENT Tool)
install(FILES CHANGELOG.md DESTINATION ${document_folder} COMPONENT Tool)
install(DIRECTORY examples/archive examples/flash DESTINATION ${document_folder}/examples COMPONENT Tool)
install(FILES examples/target.json DESTINATION ${document_folder}/examples COMPONENT Tool)

# Documents lie beside one another whatever package brings them. A link to a public header leads to the installed one; one to
# another file of the sources becomes its text. What stands in docs/ here does there, too.
function(install_documents component)
    get_filename_component(documents ${document_folder}/docs ABSOLUTE BASE_DIR ${CMAKE_INSTALL_PREFIX})
    file(RELATIVE_PATH to_headers ${documents} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
    foreach(document IN LISTS ARGN)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${document})
        file(READ ${document} text)
        string(REGEX REPLACE "\\]\\(\\.\\./include/([^)]+)\\)" "](${to_headers}/\\1)" text "${text}")
        string(REGEX REPLACE "\\[([^]]+)\\]\\((\\.\\./(platform|include|ansible/[^)]+|README.md|CONTRIBUTING.md)|docs/testing.md)\\)" "\\1"
            text "${text}")
        set(mended ${CMAKE_CURRENT_BINARY_DIR}/installed-docs/${document})
        file(WRITE ${mended} "${text}")
        cmake_path(GET document PARENT_PATH folder)
        install_page(${mended} ${document_folder}/${folder} ${component})
    endforeach()
endfunction()
install_documents(Tool SECURITY.md docs/technician.md docs/archive-author.md docs/archive-format.md docs/checking.md
    docs/target-file.md docs/tour.md docs/fleet.md)
install_documents(Development docs/host.md)

# Simulation: in a folder of its own, where no other program takes the stand-ins for the maker's libraries.
if(TRELLAN_SIMULATION)
    set_target_properties(ZoTrellanUpdateLib PROPERTIES INSTALL_RPATH "$ORIGIN/trellan-simulation")
    set_target_properties(TrellanSimulation ${TRELLAN_MAKER_LIBRARIES} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS TrellanSimulation ${TRELLAN_MAKER_LIBRARIES}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/trellan-simulation COMPONENT Simulation)
endif()
