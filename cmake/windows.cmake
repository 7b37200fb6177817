# The product: the module as a DLL of Windows, by clang and LLVM's tools, here or on Windows. Beside the
# module's sources and platform/sdk's headers it needs what windows/ holds; nothing of any other SDK, no
# library of the language.
include(cmake/windows_image.cmake)
include(cmake/resources.cmake)

windows_import_libraries(IMPORT_LIBRARIES ${CMAKE_SOURCE_DIR}/windows/imports.txt)
windows_objects(MODULE_OBJECTS SOURCES ${MODULE_SOURCES})
windows_objects(ENTRY_OBJECT SOURCES windows/dll_entry.cpp OPTIONS -fno-stack-protector)

set(EXPORT_LIST ${CMAKE_SOURCE_DIR}/resources/QM610rDRV1.def)
set(DLL ${CMAKE_BINARY_DIR}/QM610rDRV1.dll)
windows_image(dll FILE QM610rDRV1.dll ENTRY DllEntry SUBSYSTEM windows EXPORTS ${EXPORT_LIST}
  INPUTS ${MODULE_OBJECTS} ${ENTRY_OBJECT} ${RESOURCE_RES} ${IMPORT_LIBRARIES})

if(KESTREL_TESTS)
  enable_testing()
  # Python is looked for when the test runs: ./run builds on a machine without it.
  find_program(LLVM_READOBJ NAMES llvm-readobj llvm-readobj-14 REQUIRED)
  find_program(LLVM_PDBUTIL NAMES llvm-pdbutil llvm-pdbutil-14 REQUIRED)
  add_test(NAME dll.${MACHINE} COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/build/check_dll.py
           ${LLVM_READOBJ} ${LLVM_PDBUTIL} ${MACHINE} ${DLL} ${RESOURCE_RES} ${EXPORT_LIST} ${CMAKE_SOURCE_DIR}/windows/imports.txt)
  add_test(NAME dll.${MACHINE}.same_bytes COMMAND ${CMAKE_SOURCE_DIR}/tests/build/same_bytes.sh ${CMAKE_SOURCE_DIR}
           windows/${MACHINE} ${DLL})
endif()
