# Run by CPack on the packages that it has made: what it wrote to have ldconfig called is taken out again. The package's
# trigger does that; and of a package with scripts dpkg remembers the configuration, although there is none, after its removal.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(tree "${CPACK_TEMPORARY_DIRECTORY}/repacked")
    file(REMOVE_RECURSE "${tree}")
    execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
    if(EXISTS "${tree}/DEBIAN/postinst")
        file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
        execute_process(COMMAND dpkg-deb --root-owner-group -Zgzip --build "${tree}" "${package}"
            OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
