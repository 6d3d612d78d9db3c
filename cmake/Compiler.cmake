# What all targets are compiled with.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)  # what is built is the same in every folder
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

add_compile_options(-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
if(TRELLAN_WERROR)
    add_compile_options(-Werror)
endif()
if(TRELLAN_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "TRELLAN_FUZZ needs clang: set CMAKE_CXX_COMPILER to clang++.")
    endif()
    # Everything tells the fuzzer which branches it took, and faults are found by the sanitizers.
    add_compile_options(-fsanitize=fuzzer-no-link)
    set(TRELLAN_SANITIZE ON)
endif()
if(TRELLAN_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
if(TRELLAN_SANITIZE_THREADS)
    if(TRELLAN_SANITIZE)
        message(FATAL_ERROR "TRELLAN_SANITIZE_THREADS goes without TRELLAN_SANITIZE: a program has one of the two.")
    endif()
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
endif()
if(TRELLAN_COVERAGE)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "TRELLAN_COVERAGE needs clang: set CMAKE_CXX_COMPILER to clang++.")
    endif()
    # The counters lie in files that are mapped into memory: what a killed process ran is counted, too. Where they lie stands
    # in the programs, since tests start some of them with another environment. Several processes count in one file at a
    # time, and what one of them counts must not be lost: what never happened is found by subtraction.
    add_compile_options(-fprofile-instr-generate=${CMAKE_BINARY_DIR}/profiles/%m%c.profraw -fprofile-update=atomic
        -fcoverage-mapping -fprofile-list=${CMAKE_CURRENT_SOURCE_DIR}/cmake/coverage.list
        -mllvm -runtime-counter-relocation)
    add_link_options(-fprofile-instr-generate)
endif()
if(TRELLAN_SANITIZE)
    # Up to sixteen files of a folder are compiled as one, in little more than half the time. The optimised build compiles them
    # file by file.
    set(CMAKE_UNITY_BUILD ON)
    set(CMAKE_UNITY_BUILD_BATCH_SIZE 16)
endif()
