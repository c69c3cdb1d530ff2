# What is installed, and where. Everything belongs to one of two components: "runtime" is what users of the
# programs need, "development" what builders of other programs do.

# Debian's Qt looks for plug-ins in the folder of the machine's architecture, whatever the prefix.
if(NOT DEFINED CMAKE_INSTALL_LIBDIR AND CMAKE_LIBRARY_ARCHITECTURE)
  set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE PATH "Object code libraries")
endif()
include(GNUInstallDirs)
set(ZO_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/zobridgework)
set(ZO_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/ZOBridgework)

# Lets an installed target find our libraries from where it stands. The system's own folders are searched
# anyway: what goes there carries no path.
function(zo_install_rpath target folder)
  file(RELATIVE_PATH path /${folder} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${path}")
  set(file "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}/$<TARGET_FILE_NAME:${target}>")
  install(CODE "
    if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
      file(RPATH_REMOVE FILE \"${file}\")
    endif()" COMPONENT runtime)
endfunction()

# zo_install_file(TARGET FOLDER): a program or plug-in.
function(zo_install_file target folder)
  install(TARGETS ${target} RUNTIME DESTINATION ${folder} COMPONENT runtime
                            LIBRARY DESTINATION ${folder} COMPONENT runtime)
  zo_install_rpath(${target} ${folder})
endfunction()

# zo_install_library(TARGET NAME): a shared library, for other projects ZOBridgework::NAME.
function(zo_install_library target name)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_compile_features(${target} INTERFACE cxx_std_20)
  install(TARGETS ${target} EXPORT ZOBridgework
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    INCLUDES DESTINATION ${ZO_INSTALL_INCLUDEDIR})
  zo_install_rpath(${target} ${CMAKE_INSTALL_LIBDIR})
endfunction()

# zo_install_headers(TARGET): the public headers of a library.
function(zo_install_headers target)
  install(TARGETS ${target} FILE_SET HEADERS DESTINATION ${ZO_INSTALL_INCLUDEDIR} COMPONENT development)
endfunction()
