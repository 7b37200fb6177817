# sample.dll, by clang and LLVM's tools.
find_program(CLANG NAMES clang clang-14 REQUIRED)
find_program(LLD_LINK NAMES lld-link lld-link-14 REQUIRED)
find_program(LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)
set(SAMPLE ${CMAKE_CURRENT_LIST_DIR})
set(SAMPLE_DLL ${CMAKE_BINARY_DIR}/bin/sample.dll)
add_custom_command(
  OUTPUT ${SAMPLE_DLL}
  COMMAND ${CLANG} --target=x86_64-pc-windows-msvc -O1 -ffreestanding -fshort-wchar -c ${SAMPLE}/sample.c -o sample.obj
  # A file's whole path may look like an option to llvm-rc ("/c…" is the code page).
  COMMAND ${CMAKE_COMMAND} -E chdir ${SAMPLE} ${LLVM_RC} /FO ${CMAKE_BINARY_DIR}/sample.res sample.rc
  COMMAND ${LLVM_DLLTOOL} -m i386:x86-64 -d ${SAMPLE}/kernel32.def -l sample_kernel32.lib
  COMMAND ${LLVM_DLLTOOL} -m i386:x86-64 -d ${SAMPLE}/user32.def -l sample_user32.lib
  COMMAND ${LLD_LINK} /dll /nodefaultlib /entry:DllMain /timestamp:0 /def:${SAMPLE}/sample.def /out:${SAMPLE_DLL}
          /implib:sample.lib sample.obj sample.res sample_kernel32.lib sample_user32.lib
  DEPENDS ${SAMPLE}/sample.c ${SAMPLE}/sample.rc ${SAMPLE}/sample.def ${SAMPLE}/kernel32.def ${SAMPLE}/user32.def
  WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
  VERBATIM)
add_custom_target(sample_dll DEPENDS ${SAMPLE_DLL})
