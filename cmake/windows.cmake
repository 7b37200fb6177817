# The product: the module as a DLL of Windows, by clang and LLVM's tools, here or on Windows. Beside the
# module's sources and platform/sdk's headers it needs what windows/ holds; nothing of any other SDK, no
# library of the language. Each processor is a build of its own (the presets windows/x64, windows/x86).
if(CMAKE_CXX_COMPILER_TARGET MATCHES "^x86_64-")
  set(MACHINE x64)
else()
  set(MACHINE x86)
endif()
find_program(LLD_LINK NAMES lld-link lld-link-14 REQUIRED)
find_program(LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)
include(cmake/resources.cmake)

# ---- import libraries, from the list of what the system exports ----
set(IMPORT_LIST ${CMAKE_SOURCE_DIR}/windows/imports.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${IMPORT_LIST})
file(STRINGS ${IMPORT_LIST} IMPORT_LINES REGEX "^[^#]")
set(SYSTEM_LIBRARIES "")
foreach(line IN LISTS IMPORT_LINES)
  if(line MATCHES "^([^ ]+)$")
    set(library ${CMAKE_MATCH_1})
    list(APPEND SYSTEM_LIBRARIES ${library})
    set(DEF_${library} "LIBRARY ${library}\nEXPORTS\n")
  elseif(line MATCHES "^ +([A-Za-z0-9]+) ([0-9]+|-)( x64| x86)?$")
    if(CMAKE_MATCH_3 AND NOT CMAKE_MATCH_3 STREQUAL " ${MACHINE}")
      continue()
    endif()
    set(function ${CMAKE_MATCH_1})
    if(MACHINE STREQUAL x86 AND NOT CMAKE_MATCH_2 STREQUAL "-")
      string(APPEND function "@${CMAKE_MATCH_2}")
    endif()
    string(APPEND DEF_${library} "    ${function}\n")
  else()
    message(FATAL_ERROR "${IMPORT_LIST}: ${line}")
  endif()
endforeach()
if(MACHINE STREQUAL x64)
  set(DLLTOOL_MACHINE i386:x86-64)
else()
  set(DLLTOOL_MACHINE i386)
endif()
set(IMPORT_LIBRARIES "")
foreach(library IN LISTS SYSTEM_LIBRARIES)
  set(path ${CMAKE_BINARY_DIR}/imports/${library})
  file(CONFIGURE OUTPUT ${path}.def CONTENT "${DEF_${library}}")
  add_custom_command(
    OUTPUT ${path}.lib
    COMMAND ${LLVM_DLLTOOL} -k -m ${DLLTOOL_MACHINE} -d ${path}.def -l ${path}.lib
    DEPENDS ${path}.def
    VERBATIM)
  list(APPEND IMPORT_LIBRARIES ${path}.lib)
endforeach()

# ---- the module's objects ----
set(CMAKE_MSVC_RUNTIME_LIBRARY "")
add_library(objects OBJECT ${MODULE_SOURCES} windows/runtime.cpp)
target_include_directories(objects PRIVATE windows/include platform/sdk ${CMAKE_SOURCE_DIR})
target_compile_options(objects PRIVATE -nostdinc -fno-exceptions -fno-rtti -fno-threadsafe-statics
                       -fno-stack-protector -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Werror)
# The oldest processor that Windows 2000 runs on.
if(MACHINE STREQUAL x86)
  target_compile_options(objects PRIVATE -march=i586)
endif()
# A page of locals would call for a function that touches the stack step by step.
target_compile_options(objects PRIVATE -Wframe-larger-than=4000)
# A loop that copies memory must not become a call of itself.
set_source_files_properties(windows/runtime.cpp PROPERTIES COMPILE_OPTIONS -fno-builtin)

# ---- the DLL ----
# Windows 2000 is version 5.0; the first Windows for x64 is 5.2.
set(LINK_OPTIONS_x64 /subsystem:windows,5.02 /highentropyva)
set(LINK_OPTIONS_x86 /subsystem:windows,5.00)
set(EXPORT_LIST ${CMAKE_SOURCE_DIR}/resources/QM610rDRV1.def)
set(DLL ${CMAKE_BINARY_DIR}/QM610rDRV1.dll)
add_custom_command(
  OUTPUT ${DLL}
  COMMAND ${LLD_LINK} /dll /nodefaultlib /entry:DllMain /machine:${MACHINE} ${LINK_OPTIONS_${MACHINE}} /dynamicbase
          /nxcompat /opt:ref /timestamp:0 /def:${EXPORT_LIST} /implib:${CMAKE_BINARY_DIR}/imports/own.lib /out:${DLL}
          $<TARGET_OBJECTS:objects> ${RESOURCE_RES} ${IMPORT_LIBRARIES}
  DEPENDS objects $<TARGET_OBJECTS:objects> ${RESOURCE_RES} ${IMPORT_LIBRARIES} ${EXPORT_LIST}
  COMMAND_EXPAND_LISTS VERBATIM)
add_custom_target(dll ALL DEPENDS ${DLL})

if(KESTREL_TESTS)
  enable_testing()
  # Python is looked for when the test runs: ./run builds on a machine without it.
  find_program(LLVM_READOBJ NAMES llvm-readobj llvm-readobj-14 REQUIRED)
  add_test(NAME dll.${MACHINE} COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/build/check_dll.py
           ${LLVM_READOBJ} ${MACHINE} ${DLL} ${RESOURCE_RES} ${EXPORT_LIST} ${IMPORT_LIST})
  add_test(NAME dll.${MACHINE}.same_bytes COMMAND ${CMAKE_SOURCE_DIR}/tests/build/same_bytes.sh ${CMAKE_SOURCE_DIR}
           windows/${MACHINE} ${DLL})
endif()
