# Compiles and links images for Windows (DLLs and programs) by clang and lld-link, hardened and with
# symbols, without an SDK or a C runtime. Each processor is a build of its own (the presets
# windows/x86, windows/x64 and windows/arm64).
#
# The same sources give the same bytes, image and symbols, in any folder: compiler and linker run in
# the build folder and get relative names only, since both record their command lines. The functions take
# and return whole names.
if(WIN32)
  set(WINDOWS_COMPILER ${CMAKE_CXX_COMPILER})
  set(WINDOWS_TARGET ${CMAKE_CXX_COMPILER_TARGET})
  string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
  separate_arguments(WINDOWS_FLAGS NATIVE_COMMAND "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}}")
else()
  # An image for the processor of a build for this machine, as tests load them.
  find_program(WINDOWS_COMPILER NAMES clang++ clang++-14 REQUIRED)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(WINDOWS_TARGET i686-pc-windows-msvc)
  else()
    set(WINDOWS_TARGET x86_64-pc-windows-msvc)
  endif()
  set(WINDOWS_FLAGS -O2 -DNDEBUG)
endif()
set(MACHINE_i686 x86)
set(MACHINE_x86_64 x64)
set(MACHINE_aarch64 arm64)
string(REGEX REPLACE "-.*" "" PROCESSOR "${WINDOWS_TARGET}")
set(MACHINE ${MACHINE_${PROCESSOR}})
if(NOT MACHINE)
  message(FATAL_ERROR "${WINDOWS_TARGET} is for no known processor")
endif()
find_program(LLD_LINK NAMES lld-link lld-link-14 REQUIRED)
find_program(LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)

# windows_import_libraries(OUT LIST): makes an import library of each library in a list of the form of
# windows/imports.txt, up to the functions that are found at run time; sets OUT to them.
function(windows_import_libraries out list)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
  file(STRINGS ${list} lines REGEX "^[^#]")
  set(libraries "")
  foreach(line IN LISTS lines)
    if(line STREQUAL "[found at run time]")
      break()
    elseif(line MATCHES "^([^ ]+)$")
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
  set(paths "")
  foreach(library IN LISTS libraries)
    set(name imports/${folder}/${library})
    set(path ${CMAKE_CURRENT_BINARY_DIR}/${name})
    file(CONFIGURE OUTPUT ${path}.def CONTENT "${definition_${library}}")
    add_custom_command(
      OUTPUT ${path}.lib
      COMMAND ${LLVM_DLLTOOL} -k -m ${dlltool_machine_${MACHINE}} -d ${name}.def -l ${name}.lib
      DEPENDS ${path}.def
      WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
      VERBATIM)
    list(APPEND paths ${path}.lib)
  endforeach()
  set(${out} ${paths} PARENT_SCOPE)
endfunction()

set(WINDOWS_COMPILE_OPTIONS
    --target=${WINDOWS_TARGET} -std=c++20 -nostdinc -fno-exceptions -fno-rtti -fno-threadsafe-statics
    -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Werror
    # A page of locals would need a function that touches the stack page by page.
    -Wframe-larger-than=4000
    # Control Flow Guard and the stack protector (windows/load_configuration.cpp, windows/security_cookie.cpp).
    -Xclang -cfguard -fstack-protector-strong
    # Symbols without a path of this machine; objects without a time. The symbols record all options, and ccache adds
    # this one for colors unless it is there.
    -g -gcodeview -ffile-compilation-dir=. -mno-incremental-linker-compatible -fcolor-diagnostics)
if(MACHINE STREQUAL x86)
  # The oldest processor that Windows 2000 runs on.
  list(APPEND WINDOWS_COMPILE_OPTIONS -march=i586)
endif()

# windows_objects(OUT SOURCES source… [OPTIONS option…]): compiles sources of this tree; sets OUT to the
# objects.
function(windows_objects out)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;OPTIONS")
  file(RELATIVE_PATH root ${CMAKE_CURRENT_BINARY_DIR} ${CMAKE_SOURCE_DIR}/.)
  set(objects "")
  foreach(source IN LISTS ARG_SOURCES)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
    file(RELATIVE_PATH name ${CMAKE_SOURCE_DIR} ${source})
    set(object objects/${name}.obj)
    add_custom_command(
      OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${object}
      COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} ${WINDOWS_COMPILER} ${WINDOWS_COMPILE_OPTIONS} ${WINDOWS_FLAGS} ${ARG_OPTIONS}
              -I${root}/windows/include -I${root}/platform/sdk -I${root}
              -MD -MT ${object} -MF ${object}.d -o ${object} -c ${root}/${name}
      DEPENDS ${source}
      DEPFILE ${CMAKE_CURRENT_BINARY_DIR}/${object}.d
      WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
      COMMENT "Compiling ${name}"
      VERBATIM)
    list(APPEND objects ${CMAKE_CURRENT_BINARY_DIR}/${object})
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

# windows_image(TARGET FILE name.dll|name.exe ENTRY function SUBSYSTEM windows|console INPUTS file… [EXPORTS list.def]
#   [OPTIONS option…]): links an image and its symbols, name.pdb, in the current build folder, from objects, compiled
# resources and import libraries. Its entry point calls InitializeSecurityCookie first (windows/security_cookie.h).
function(windows_image target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "FILE;ENTRY;SUBSYSTEM;EXPORTS" "INPUTS;OPTIONS")
  cmake_path(REPLACE_EXTENSION ARG_FILE LAST_ONLY pdb OUTPUT_VARIABLE symbols)
  file(RELATIVE_PATH here ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR})
  set(inputs "")
  foreach(input IN LISTS WINDOWS_RUNTIME_OBJECTS ARG_INPUTS)
    file(RELATIVE_PATH input ${CMAKE_CURRENT_BINARY_DIR} ${input})
    list(APPEND inputs ${input})
  endforeach()
  set(kind "")
  if(ARG_FILE MATCHES "[.]dll$")
    set(kind /dll)
  endif()
  if(ARG_EXPORTS)
    file(RELATIVE_PATH exports ${CMAKE_CURRENT_BINARY_DIR} ${ARG_EXPORTS})
    list(APPEND kind /def:${exports} /implib:imports/${ARG_FILE}.lib)
  endif()
  add_custom_command(
    OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${ARG_FILE} ${CMAKE_CURRENT_BINARY_DIR}/${symbols}
    COMMAND ${LLD_LINK} ${kind} /nodefaultlib /entry:${ARG_ENTRY} /machine:${MACHINE}
            /subsystem:${ARG_SUBSYSTEM},${SUBSYSTEM_VERSION_${MACHINE}} /opt:ref,icf
            /dynamicbase /nxcompat /guard:cf,nolongjmp ${HARDENING_${MACHINE}}
            # Symbols found by name; a place of the sources that is no machine's; times that are hashes.
            /debug /pdb:${symbols} /pdbaltpath:${symbols} "/pdbsourcepath:C:\\kestrel\\${here}" /Brepro
            ${ARG_OPTIONS} /out:${ARG_FILE} ${inputs}
    DEPENDS ${WINDOWS_RUNTIME_OBJECTS} ${ARG_INPUTS} ${ARG_EXPORTS}
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    VERBATIM)
  add_custom_target(${target} ALL DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/${ARG_FILE})
endfunction()
