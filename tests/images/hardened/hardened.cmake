# hardened.dll, compiled and linked as the product's DLLs are. It exports the functions of windows/runtime.cpp too.
include(${CMAKE_SOURCE_DIR}/cmake/windows_image.cmake)
windows_import_libraries(HARDENED_IMPORTS ${CMAKE_SOURCE_DIR}/windows/imports.txt)
windows_objects(HARDENED_OBJECTS SOURCES tests/images/hardened/hardened.cpp)
windows_objects(HARDENED_ENTRY SOURCES windows/dll_entry.cpp OPTIONS -fno-stack-protector)
if(MACHINE STREQUAL x86)
  set(DIVISION_EXPORTS OPTIONS /export:_alldiv /export:_aulldiv)
endif()
windows_image(hardened_dll FILE hardened.dll ENTRY DllEntry SUBSYSTEM windows
  EXPORTS ${CMAKE_CURRENT_LIST_DIR}/hardened.def INPUTS ${HARDENED_OBJECTS} ${HARDENED_ENTRY} ${HARDENED_IMPORTS}
  ${DIVISION_EXPORTS})
set(HARDENED_DLL ${CMAKE_CURRENT_BINARY_DIR}/hardened.dll)
