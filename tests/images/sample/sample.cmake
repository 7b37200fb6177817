# sample.dll for this build's machine, by clang and LLVM's tools.
find_program(CLANG NAMES clang clang-14 REQUIRED)
find_program(LLD_LINK NAMES lld-link lld-link-14 REQUIRED)
find_program(LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)
set(SAMPLE ${CMAKE_CURRENT_LIST_DIR})
set(SAMPLE_DLL ${CMAKE_BINARY_DIR}/bin/sample.dll)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(SAMPLE_TARGET i686-pc-windows-msvc)
  set(SAMPLE_MACHINE i386)
else()
  set(SAMPLE_TARGET x86_64-pc-windows-msvc)
  set(SAMPLE_MACHINE i386:x86-64)
endif()
# Only x86 decorates a function's name with the bytes of its arguments ("@4").
foreach(library kernel32 user32)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${SAMPLE}/${library}.def)
  file(READ ${SAMPLE}/${library}.def SAMPLE_IMPORTS)
  if(NOT CMAKE_SIZEOF_VOID_P EQUAL 4)
    string(REGEX REPLACE "@[0-9]+" "" SAMPLE_IMPORTS "${SAMPLE_IMPORTS}")
  endif()
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/sample_${library}.def CONTENT "${SAMPLE_IMPORTS}")
endforeach()
add_custom_command(
  OUTPUT ${SAMPLE_DLL}
  COMMAND ${CLANG} --target=${SAMPLE_TARGET} -O1 -ffreestanding -fshort-wchar -c ${SAMPLE}/sample.c -o sample.obj
  # A file's whole path may look like an option to llvm-rc ("/c…" is the code page).
  COMMAND ${CMAKE_COMMAND} -E chdir ${SAMPLE} ${LLVM_RC} /FO ${CMAKE_BINARY_DIR}/sample.res sample.rc
  COMMAND ${LLVM_DLLTOOL} -k -m ${SAMPLE_MACHINE} -d sample_kernel32.def -l sample_kernel32.lib
  COMMAND ${LLVM_DLLTOOL} -k -m ${SAMPLE_MACHINE} -d sample_user32.def -l sample_user32.lib
  COMMAND ${LLD_LINK} /dll /nodefaultlib /entry:DllMain /timestamp:0 /def:${SAMPLE}/sample.def /out:${SAMPLE_DLL}
          /implib:sample.lib sample.obj sample.res sample_kernel32.lib sample_user32.lib
  DEPENDS ${SAMPLE}/sample.c ${SAMPLE}/sample.rc ${SAMPLE}/sample.def
          ${CMAKE_BINARY_DIR}/sample_kernel32.def ${CMAKE_BINARY_DIR}/sample_user32.def
  WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
  VERBATIM)
add_custom_target(sample_dll DEPENDS ${SAMPLE_DLL})
