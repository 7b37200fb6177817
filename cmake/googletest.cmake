# GTest::gtest, GTest::gmock and GTest::gtest_main: the system's libraries, or the sources of the same package.
if(KESTREL_SYSTEM_LIBRARIES)
  find_package(GTest REQUIRED)
  return()
endif()
set(GOOGLETEST_SOURCES /usr/src/googletest CACHE PATH "Where GoogleTest's sources are")
set(INSTALL_GTEST OFF)
add_subdirectory(${GOOGLETEST_SOURCES} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
foreach(library gtest gtest_main gmock gmock_main)
  target_compile_options(${library} PRIVATE -w) # the warnings of this build are for its own sources
endforeach()
