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

# ---- kestrel-try, a console program that calls the DLL ----
windows_import_libraries(TRY_IMPORT_LIBRARIES ${CMAKE_SOURCE_DIR}/try/imports.txt)
windows_objects(TRY_OBJECTS SOURCES ${TRY_SOURCES})
windows_objects(TRY_ENTRY_OBJECT SOURCES windows/try_entry.cpp OPTIONS -fno-stack-protector)
windows_image(try FILE kestrel-try.exe ENTRY KestrelTryEntry SUBSYSTEM console
  INPUTS ${TRY_OBJECTS} ${TRY_ENTRY_OBJECT} ${IMPORT_LIBRARIES} ${TRY_IMPORT_LIBRARIES})

if(KESTREL_TESTS)
  enable_testing()
  # Python is looked for when the test runs: ./run builds on a machine without it.
  find_program(LLVM_READOBJ NAMES llvm-readobj llvm-readobj-14 REQUIRED)
  foreach(image ${DLL} ${CMAKE_BINARY_DIR}/kestrel-try.exe)
    cmake_path(GET image FILENAME name)
    add_test(NAME ${name}.${MACHINE} COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/build/check_image.py
             ${LLVM_READOBJ} ${MACHINE} ${CMAKE_SOURCE_DIR} ${image})
  endforeach()
  add_test(NAME same_bytes.${MACHINE} COMMAND ${CMAKE_SOURCE_DIR}/tests/build/same_bytes.sh ${CMAKE_SOURCE_DIR}
           windows/${MACHINE} ${CMAKE_BINARY_DIR})
endif()
