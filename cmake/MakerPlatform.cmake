# The maker's own platform: headers in TRELLAN_PLATFORM_DIR/include, libraries in TRELLAN_PLATFORM_DIR/lib, under the names
# of platform/. The libraries are on the target, so they are not installed with ours.
set(TRELLAN_MAKER_LIBRARIES
    ZoErrorHandling ZoComposite ZoCompositeFactory ZoInventoryTree ZoInventoryManagerAP ZoJsonLib ZoRtosAbstraction)

if(NOT IS_DIRECTORY "${TRELLAN_PLATFORM_DIR}/include")
    message(FATAL_ERROR "TRELLAN_PLATFORM_DIR: there is no folder ${TRELLAN_PLATFORM_DIR}/include with the maker's headers.")
endif()
foreach(library IN LISTS TRELLAN_MAKER_LIBRARIES)
    set(file "${TRELLAN_PLATFORM_DIR}/lib/lib${library}.so")
    if(NOT EXISTS "${file}")
        message(FATAL_ERROR "TRELLAN_PLATFORM_DIR: the maker's library ${file} is missing.")
    endif()
    add_library(${library} SHARED IMPORTED)
    set_target_properties(${library} PROPERTIES IMPORTED_LOCATION "${file}" IMPORTED_NO_SONAME ON)
    target_include_directories(${library} SYSTEM INTERFACE "${TRELLAN_PLATFORM_DIR}/include")
endforeach()
add_library(platform INTERFACE)
target_include_directories(platform SYSTEM INTERFACE "${TRELLAN_PLATFORM_DIR}/include")
