# On Windows the module alone is built, upon the platform's own headers and libraries; its resource
# compiler puts the script into the library. The stand-in platform, the host, the companions and the
# tests are left out.
enable_language(RC)
set(CMAKE_RC_FLAGS "${CMAKE_RC_FLAGS} /c65001")

add_library(QM610rDRV1 MODULE ${MODULE_SOURCES} resources/QM610rDRV1.rc resources/QM610rDRV1.def)
target_include_directories(QM610rDRV1 PRIVATE ${CMAKE_SOURCE_DIR} resources)
# 0x0501: the property page structure without the header bitmap, the sheets of Windows 2000 and XP.
target_compile_definitions(QM610rDRV1 PRIVATE UNICODE _UNICODE NOMINMAX WINVER=0x0501
                           _WIN32_WINNT=0x0501)
if(MSVC)
  target_compile_options(QM610rDRV1 PRIVATE $<$<COMPILE_LANGUAGE:CXX>:/W4 /WX /utf-8 /EHs-c->)
  # The manifest is in the script.
  target_link_options(QM610rDRV1 PRIVATE /MANIFEST:NO)
endif()
target_link_libraries(QM610rDRV1 PRIVATE advapi32 comctl32 gdi32 shell32 user32 version winspool)
