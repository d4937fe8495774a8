# What every target of this project has in common.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/archive)
# Libraries and programs find each other wherever the tree is moved to.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

add_library(vorkel_options INTERFACE)
target_compile_options(vorkel_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wno-psabi -Werror
    # Programs, too, as Qt wants it on most platforms: so they share with libraries what is precompiled.
    -fPIC)
target_compile_definitions(vorkel_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Tables are checked when they are compiled, which takes more steps than clang allows by itself.
    add_compile_options(-fconstexpr-steps=10000000)
endif()
if(VORKEL_SANITIZE)
    add_compile_options(-fsanitize=${VORKEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VORKEL_SANITIZE})
endif()
if(VORKEL_FUZZ)
    # The code under test tells the fuzzer its way and keeps its assertions.
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_compile_definitions(QT_FORCE_ASSERTS)
endif()

# vorkel_precompile(<target>)
# The targets share one compilation of what nearly every file includes, which halves the time of a build. No file may
# lean on that: builds with sanitizers do without. Clang does, too, since it wants all definitions to be the same.
function(vorkel_precompile target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT VORKEL_SANITIZE)
        target_precompile_headers(${target} REUSE_FROM vorkel_precompiled)
    endif()
endfunction()

# vorkel_folder(<target> SOURCES <file>... LINKS <target>...)
# One folder of src: a static library that sees only what it links.
function(vorkel_folder target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_library(${target} STATIC ${arg_SOURCES})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE vorkel_options)
    vorkel_precompile(${target})
endfunction()

# vorkel_test(<name> SOURCES <file>... LINKS <target>...)
# A test program of its own, run by ctest under the same name, without a display.
function(vorkel_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINKS} Qt6::Test vorkel_options)
    vorkel_precompile(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 ENVIRONMENT QT_QPA_PLATFORM=offscreen)
endfunction()
