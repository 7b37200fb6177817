# runtime.dll: windows/runtime.cpp compiled as for the DLL of this build's machine, its functions exported.
find_program(CLANGXX NAMES clang++ clang++-14 REQUIRED)
set(RUNTIME_FUNCTIONS /export:memcpy /export:memmove /export:memset /export:strlen /export:strcmp)
set(RUNTIME_OPTIONS "")
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  list(APPEND RUNTIME_FUNCTIONS /export:_alldiv /export:_aulldiv)
  set(RUNTIME_OPTIONS -march=i586)
endif()
add_custom_command(
  OUTPUT ${CMAKE_BINARY_DIR}/bin/runtime.dll
  COMMAND ${CLANGXX} --target=${SAMPLE_TARGET} -std=c++20 -O2 -nostdinc -fno-exceptions -fno-rtti -fno-builtin
          -fno-stack-protector ${RUNTIME_OPTIONS} -I${CMAKE_SOURCE_DIR}/windows/include -I${CMAKE_SOURCE_DIR}/platform/sdk
          -c ${CMAKE_SOURCE_DIR}/windows/runtime.cpp -o runtime.obj
  COMMAND ${LLD_LINK} /dll /noentry /nodefaultlib /timestamp:0 ${RUNTIME_FUNCTIONS} /out:bin/runtime.dll /implib:runtime.lib
          runtime.obj
  DEPENDS ${CMAKE_SOURCE_DIR}/windows/runtime.cpp
  WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
  VERBATIM)
add_custom_target(runtime_dll DEPENDS ${CMAKE_BINARY_DIR}/bin/runtime.dll)
