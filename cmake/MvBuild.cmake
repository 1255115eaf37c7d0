# Settings and helpers of every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

# Results are kept where ccache is there, unless the user has chosen a launcher. Precompiled headers need its leniency.
find_program(MV_CCACHE ccache)
if(MV_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${MV_CCACHE})
endif()
# The preprocessor's output names the precompiled header, so that caches see it.
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>)

set(MV_SANITIZE "" CACHE STRING "Build with these sanitizers: \"address,undefined\" or \"thread\"")
option(MV_BENCH "Build the benchmarks" OFF)
option(MV_FUZZ "Build the fuzz targets, and all for them, with clang's libFuzzer; no tests" OFF)
option(MV_LINT "Describe how every source is compiled, for the linter, which reads and does not build" OFF)

# Every program and library lies in one folder, as an installed driver's files do; packaging/ says where each is installed.
set(MV_BIN ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${MV_BIN})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${MV_BIN})
set(CMAKE_BUILD_RPATH $ORIGIN)
set(CMAKE_INSTALL_RPATH $ORIGIN)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
# Where a kit that was installed into the system keeps its products, from the folder of its libraries.
set(MV_PRODUCTS_FROM_DRIVER ../../share/mvptpc/products)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:-Wall;-Wextra;-Wpedantic;-Wshadow;-Werror>")
# COM interfaces have no virtual destructors; g++ warns of every class that implements one.
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wnon-virtual-dtor>)
add_compile_definitions(NOMINMAX WIN32_LEAN_AND_MEAN)
# What was built from what, also where the debug data lie in a file of their own.
add_link_options(-Wl,--build-id=sha1)
if(WIN32)
    add_compile_definitions(MV_WIDE_PREFIX=L _WIN32_WINNT=0x0A00 WINVER=0x0A00)
    # Nothing but the driver's own files has to lie beside it.
    add_link_options(-static)
else()
    add_compile_definitions(MV_WIDE_PREFIX=u)
    # A library with symbols that are unique in the process could never be unloaded.
    add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>)
    # A library for fuzzing finds the sanitizer's functions in the program.
    if(NOT MV_FUZZ)
        add_link_options(-Wl,--no-undefined)
    endif()
endif()
if(MV_FUZZ)
    # The rule of the right class asks for type information that hidden classes do not share between libraries.
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize=vptr -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=fuzzer-no-link,address,undefined)
endif()
if(MV_SANITIZE OR MV_FUZZ)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)  # an index beside a container's elements ends the program
endif()
if(MV_SANITIZE)
    add_compile_options(-fsanitize=${MV_SANITIZE} -fno-omit-frame-pointer)
    if(MV_SANITIZE MATCHES undefined)
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
    add_link_options(-fsanitize=${MV_SANITIZE})
endif()

# What most sources include of the standard library, compiled once for the libraries of a native build. Each source still
# includes what it uses: the Windows build and the linter compile it without, and find what is missing.
if(NOT WIN32)
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/standardheaders.cpp CONTENT "")
    add_library(mv_standardheaders OBJECT ${CMAKE_BINARY_DIR}/standardheaders.cpp)
    target_precompile_headers(mv_standardheaders PRIVATE <algorithm> <array> <filesystem> <functional> <map> <memory>
        <optional> <set> <span> <sstream> <string> <string_view> <unordered_map> <vector>)
endif()
function(mv_precompiled)
    if(WIN32)
        return()
    endif()
    foreach(name IN LISTS ARGN)
        target_precompile_headers(${name} REUSE_FROM mv_standardheaders)
        # g++ 12 forgets that precompiled headers are the system's and finds faults in std::string that are none. The
        # Windows build, by the same compiler, warns as ever.
        target_compile_options(${name} PRIVATE
            $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread>)
    endforeach()
endfunction()

# A shared library of the driver family: NAME.dll on both hosts. ONLY names the symbols (with wildcards) that it exports
# where the templates that it uses would be exported as well; on Windows nothing but what is marked is.
# Those that are handed out have a DESCRIPTION in their version.
function(mv_driver_library name)
    cmake_parse_arguments(ARG "" "EXPORTS;DESCRIPTION" "SOURCES;LINK;ONLY" ${ARGN})
    add_library(${name} SHARED ${ARG_SOURCES})
    if(ARG_DESCRIPTION)
        mv_version(${name} "${ARG_DESCRIPTION}")
    endif()
    mv_precompiled(${name})
    if(WIN32)
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/platform/windows/exceptionpool.cpp)
    endif()
    set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX ".dll" IMPORT_PREFIX "lib" IMPORT_SUFFIX ".dll.a")
    if(ARG_EXPORTS)
        target_compile_definitions(${name} PRIVATE ${ARG_EXPORTS})
    endif()
    target_link_libraries(${name} ${ARG_LINK})
    if(ARG_ONLY AND NOT WIN32)
        list(JOIN ARG_ONLY ";" symbols)
        file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.version CONTENT "{ global: @symbols@; local: *; };\n" @ONLY)
        target_link_options(${name} PRIVATE -Wl,--version-script=${CMAKE_CURRENT_BINARY_DIR}/${name}.version)
    endif()
endfunction()

# A test program over GoogleTest; it runs from the folder of the programs.
function(mv_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${ARG_LINK} mv_gtest)
    target_precompile_headers(${name} REUSE_FROM mv_gtest)
    add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${MV_BIN})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()
