# The one place for compiler flags, and the functions every folder declares its target with.

option(ZO_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(ZO_FUZZ "Build the fuzz targets with libFuzzer, and nothing that they do not need; wants clang" OFF)

add_library(zo_flags INTERFACE)
target_compile_options(zo_flags INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
  -Wno-sign-conversion)
target_compile_definitions(zo_flags INTERFACE QT_NO_CAST_TO_ASCII)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
  # The JSON parser's vector code is chosen when it is compiled; every x86-64 made since 2010 has this.
  target_compile_options(zo_flags INTERFACE -march=x86-64-v2 -mpclmul)
endif()
if(ZO_SANITIZE)
  target_compile_options(zo_flags INTERFACE -fsanitize=address,undefined
    -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g1
    # GCC loses track of variables behind the checks that the sanitizers put in; the release build looks.
    # Other compilers do not know the warning.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(zo_flags INTERFACE -fsanitize=address,undefined)
endif()
if(ZO_FUZZ)
  target_compile_options(zo_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

find_program(ZO_CCACHE ccache)
if(ZO_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${ZO_CCACHE})
endif()
find_program(ZO_MOLD mold)
if(ZO_MOLD)
  add_link_options(-fuse-ld=mold)
endif()

# zo_library(NAME SOURCES... HEADERS... [PRIVATE_HEADERS...] LINK... [PACKAGE NAME])
# HEADERS are public: each is compiled alone by the all_verify_interface_header_sets target. With PACKAGE it
# becomes a part of that shared library, which whoever links it gets.
function(zo_library name)
  cmake_parse_arguments(A "" "PACKAGE" "SOURCES;HEADERS;PRIVATE_HEADERS;LINK;LINK_PRIVATE" ${ARGN})
  if(A_PACKAGE)
    set(objects ${name}_objects)
    add_library(${objects} OBJECT ${A_HEADERS})
    target_compile_options(${objects} PRIVATE -fno-semantic-interposition)
    add_library(${name} INTERFACE)
    target_sources(${name} INTERFACE FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR} FILES ${A_HEADERS})
    target_link_libraries(${name} INTERFACE ${A_PACKAGE})
    target_link_libraries(${A_PACKAGE} PRIVATE ${objects})
    zo_install_headers(${name})
    # A part stands on the other parts themselves: the package is not there before them.
    foreach(kind LINK LINK_PRIVATE)
      foreach(library ${A_${kind}})
        get_target_property(parts_package ${library} ZO_PACKAGE)
        if(parts_package STREQUAL A_PACKAGE)
          list(TRANSFORM A_${kind} APPEND _objects REGEX "^${library}$")
        endif()
      endforeach()
    endforeach()
    set_target_properties(${name} PROPERTIES ZO_PACKAGE ${A_PACKAGE})
  else()
    set(objects ${name})
    add_library(${objects} STATIC)
    target_sources(${objects} PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR} FILES ${A_HEADERS})
  endif()
  target_sources(${objects} PRIVATE ${A_SOURCES} ${A_PRIVATE_HEADERS})
  target_include_directories(${objects} PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(${objects} PUBLIC ${A_LINK} PRIVATE zo_flags ${A_LINK_PRIVATE})
  set_target_properties(${objects} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

# zo_package(NAME EXPORT NAME LINK...): a shared library that is made of the libraries that name it as their
# package; for other projects it is ZOBridgework::EXPORT.
function(zo_package name)
  cmake_parse_arguments(A "" "EXPORT" "LINK" ${ARGN})
  if(ZO_FUZZ)
    # The fuzzer watches what is linked into its program.
    add_library(${name} STATIC)
  else()
    add_library(${name} SHARED)
  endif()
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} LIBRARY_OUTPUT_DIRECTORY ${ZO_LIBRARY_DIR})
  target_link_libraries(${name} PUBLIC ${A_LINK} PRIVATE zo_flags)
  zo_install_library(${name} ${A_EXPORT})
endfunction()

# zo_service_plugin(NAME SOURCES... LINK...): a shared library that registers service classes, where hosts
# look for it.
function(zo_service_plugin name)
  cmake_parse_arguments(A "" "" "SOURCES;LINK" ${ARGN})
  set(folder zobridgework/services)
  add_library(${name} MODULE ${A_SOURCES})
  target_link_libraries(${name} PRIVATE zo_flags ${A_LINK})
  # One that only hands over to another library uses nothing of the C library, which Debian wants named.
  target_link_options(${name} PRIVATE -Wl,--push-state,--no-as-needed,-lc,--pop-state)
  set_target_properties(${name} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${ZO_LIBRARY_DIR}/${folder})
  zo_install_file(${name} ${CMAKE_INSTALL_LIBDIR}/${folder})
endfunction()

# zo_program(NAME SOURCES... LINK...)
function(zo_program name)
  cmake_parse_arguments(A "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${A_SOURCES})
  target_link_libraries(${name} PRIVATE zo_flags ${A_LINK})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
endfunction()

# zo_test(NAME SOURCES... LINK... [TIMEOUT SECONDS] [NEEDS FIXTURE]): one GoogleTest program, every test of it
# one ctest test.
function(zo_test name)
  cmake_parse_arguments(A "" "TIMEOUT;NEEDS" "SOURCES;LINK" ${ARGN})
  if(NOT A_TIMEOUT)
    set(A_TIMEOUT 120)
  endif()
  zo_program(${name} SOURCES ${A_SOURCES} LINK ${A_LINK} zo_test_main)
  set(properties TIMEOUT ${A_TIMEOUT} ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  if(A_NEEDS)
    list(APPEND properties FIXTURES_REQUIRED ${A_NEEDS})
  endif()
  # Printed values would bring addresses into the names, which change from build to build.
  gtest_discover_tests(${name} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60 PROPERTIES ${properties})
endfunction()
