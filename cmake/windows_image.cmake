# Compiles and links images for Windows (DLLs and programs) by clang and lld-link, hardened and with
# symbols, without an SDK or a C runtime. Each processor is a build of its own (the presets
# windows/x86, windows/x64 and windows/arm64).
#
# The same sources give the same bytes, image and symbols, in any folder: compiler and linker run in
# the build folder and get relative names only, since both record their command lines.
set(MACHINE_i686 x86)
set(MACHINE_x86_64 x64)
set(MACHINE_aarch64 arm64)
string(REGEX REPLACE "-.*" "" PROCESSOR "${CMAKE_CXX_COMPILER_TARGET}")
set(MACHINE ${MACHINE_${PROCESSOR}})
if(NOT MACHINE)
  message(FATAL_ERROR "CMAKE_CXX_COMPILER_TARGET ${CMAKE_CXX_COMPILER_TARGET} is no known processor")
endif()
find_program(LLD_LINK NAMES lld-link lld-link-14 REQUIRED)
find_program(LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)
file(RELATIVE_PATH SOURCES_FROM_HERE ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR})
string(REGEX REPLACE "/$" "" SOURCES_FROM_HERE "${SOURCES_FROM_HERE}")
file(RELATIVE_PATH HERE_FROM_SOURCES ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR})

# windows_import_libraries(OUT LIST): makes an import library of each library in a list of the form of
# windows/imports.txt; sets OUT to their names.
function(windows_import_libraries out list)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
  file(STRINGS ${list} lines REGEX "^[^#]")
  set(libraries "")
  foreach(line IN LISTS lines)
    if(line MATCHES "^([^ ]+)$")
      set(library ${CMAKE_MATCH_1})
      list(APPEND libraries ${library})
      set(definition_${library} "LIBRARY ${library}\nEXPORTS\n")
    elseif(line MATCHES "^ +([A-Za-z0-9]+) ([0-9]+|-)( x64| x86)?$")
      set(function ${CMAKE_MATCH_1})
      if((CMAKE_MATCH_3 STREQUAL " x64" AND MACHINE STREQUAL x86) OR (CMAKE_MATCH_3 STREQUAL " x86" AND NOT MACHINE STREQUAL x86))
        continue()
      endif()
      if(MACHINE STREQUAL x86 AND NOT CMAKE_MATCH_2 STREQUAL "-")
        string(APPEND function "@${CMAKE_MATCH_2}")
      endif()
      string(APPEND definition_${library} "    ${function}\n")
    else()
      message(FATAL_ERROR "${list}: ${line}")
    endif()
  endforeach()
  set(dlltool_machine_x86 i386)
  set(dlltool_machine_x64 i386:x86-64)
  set(dlltool_machine_arm64 arm64)
  cmake_path(GET list PARENT_PATH folder)
  cmake_path(GET folder FILENAME folder)
  set(names "")
  foreach(library IN LISTS libraries)
    set(name imports/${folder}/${library})
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/${name}.def CONTENT "${definition_${library}}")
    add_custom_command(
      OUTPUT ${CMAKE_BINARY_DIR}/${name}.lib
      COMMAND ${LLVM_DLLTOOL} -k -m ${dlltool_machine_${MACHINE}} -d ${name}.def -l ${name}.lib
      DEPENDS ${CMAKE_BINARY_DIR}/${name}.def
      WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
      VERBATIM)
    list(APPEND names ${name}.lib)
  endforeach()
  set(${out} ${names} PARENT_SCOPE)
endfunction()

set(WINDOWS_COMPILE_OPTIONS
    --target=${CMAKE_CXX_COMPILER_TARGET} -std=c++20 -nostdinc -fno-exceptions -fno-rtti -fno-threadsafe-statics
    -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Werror
    # A page of locals would need a function that touches the stack page by page.
    -Wframe-larger-than=4000
    # Control Flow Guard and the stack protector (windows/load_configuration.cpp, windows/security_cookie.cpp).
    -Xclang -cfguard -fstack-protector-strong
    # Symbols without a path of this machine; objects without a time. A compiler cache would add an option for colors,
    # which the symbols record.
    -g -gcodeview -ffile-compilation-dir=. -mno-incremental-linker-compatible -fno-color-diagnostics)
if(MACHINE STREQUAL x86)
  # The oldest processor that Windows 2000 runs on.
  list(APPEND WINDOWS_COMPILE_OPTIONS -march=i586)
endif()

# windows_objects(OUT SOURCES source… [OPTIONS option…]): compiles sources of this tree; sets OUT to the
# names of the objects.
function(windows_objects out)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;OPTIONS")
  string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
  separate_arguments(flags NATIVE_COMMAND "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}}")
  set(objects "")
  foreach(source IN LISTS ARG_SOURCES)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
    file(RELATIVE_PATH name ${CMAKE_SOURCE_DIR} ${source})
    set(object objects/${name}.obj)
    add_custom_command(
      OUTPUT ${CMAKE_BINARY_DIR}/${object}
      COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} ${CMAKE_CXX_COMPILER} ${WINDOWS_COMPILE_OPTIONS} ${flags} ${ARG_OPTIONS}
              -I${SOURCES_FROM_HERE}/windows/include -I${SOURCES_FROM_HERE}/platform/sdk -I${SOURCES_FROM_HERE}
              -MD -MT ${object} -MF ${object}.d -o ${object} -c ${SOURCES_FROM_HERE}/${name}
      DEPENDS ${source}
      DEPFILE ${CMAKE_BINARY_DIR}/${object}.d
      WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
      COMMENT "Compiling ${name}"
      VERBATIM)
    list(APPEND objects ${object})
  endforeach()
  set(${out} ${objects} PARENT_SCOPE)
endfunction()

# What every image needs beside its own sources.
windows_objects(WINDOWS_RUNTIME_OBJECTS
  SOURCES windows/runtime.cpp windows/security_cookie.cpp windows/load_configuration.cpp windows/load_configuration_size.cpp
  # A loop that copies memory must not become a call of itself; a function that changes or checks the cookie must not be
  # checked by it.
  OPTIONS -fno-builtin -fno-stack-protector)

# The oldest systems: Windows 2000, Windows XP for x64, Windows 8.
set(SUBSYSTEM_VERSION_x86 5.00)
set(SUBSYSTEM_VERSION_x64 5.02)
set(SUBSYSTEM_VERSION_arm64 6.02)
set(HARDENING_x86 "")
set(HARDENING_x64 /highentropyva /cetcompat)
set(HARDENING_arm64 /highentropyva)

# windows_image(TARGET FILE name.dll|name.exe ENTRY function SUBSYSTEM windows|console INPUTS file… [OPTIONS option…]
#   [DEPENDS file…]): links an image and its symbols, name.pdb, from files named relative to the build folder. Its entry
# point calls InitializeSecurityCookie first (windows/security_cookie.h).
function(windows_image target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "FILE;ENTRY;SUBSYSTEM" "INPUTS;OPTIONS;DEPENDS")
  cmake_path(REPLACE_EXTENSION ARG_FILE LAST_ONLY pdb OUTPUT_VARIABLE symbols)
  set(inputs ${WINDOWS_RUNTIME_OBJECTS} ${ARG_INPUTS})
  list(TRANSFORM inputs PREPEND ${CMAKE_BINARY_DIR}/ OUTPUT_VARIABLE input_files)
  set(kind "")
  if(ARG_FILE MATCHES "[.]dll$")
    set(kind /dll)
  endif()
  add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/${ARG_FILE} ${CMAKE_BINARY_DIR}/${symbols}
    COMMAND ${LLD_LINK} ${kind} /nodefaultlib /entry:${ARG_ENTRY} /machine:${MACHINE}
            /subsystem:${ARG_SUBSYSTEM},${SUBSYSTEM_VERSION_${MACHINE}} /opt:ref,icf
            /dynamicbase /nxcompat /guard:cf,nolongjmp ${HARDENING_${MACHINE}}
            # Symbols found by name; a place of the sources that is no machine's; times that are hashes.
            /debug /pdb:${symbols} /pdbaltpath:${symbols} "/pdbsourcepath:C:\\kestrel\\${HERE_FROM_SOURCES}" /Brepro
            ${ARG_OPTIONS} /out:${ARG_FILE} ${inputs}
    DEPENDS ${input_files} ${ARG_DEPENDS}
    WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
    VERBATIM)
  add_custom_target(${target} ALL DEPENDS ${CMAKE_BINARY_DIR}/${ARG_FILE})
endfunction()
