# The resource script, compiled and placed in a section of the module's shared object; the platform finds it there.
file(GLOB RESOURCE_PARTS CONFIGURE_DEPENDS resources/*.rc resources/*.h resources/*.manifest resources/bitmaps/*.bmp)
find_program(LLVM_RC NAMES llvm-rc llvm-rc-14 REQUIRED)
# Without clang to preprocess with, llvm-rc makes an empty file and calls it done.
find_program(RC_PREPROCESSOR NAMES clang clang-14 REQUIRED)
set(RESOURCE_RES ${CMAKE_BINARY_DIR}/QM610rDRV1.res)
add_custom_command(
  OUTPUT ${RESOURCE_RES}
  COMMAND ${LLVM_RC} /C 65001 /FO ${RESOURCE_RES} QM610rDRV1.rc
  WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}/resources
  DEPENDS ${RESOURCE_PARTS}
  VERBATIM)
set(RESOURCE_ASM ${CMAKE_BINARY_DIR}/resources.S)
file(WRITE ${RESOURCE_ASM}
     ".section .rsrc,\"a\",@progbits\n.balign 4\n.incbin \"${RESOURCE_RES}\"\n.section .note.GNU-stack,\"\",@progbits\n")
set_source_files_properties(${RESOURCE_ASM} PROPERTIES OBJECT_DEPENDS ${RESOURCE_RES})
