# The functions that the stand-in's libraries export to an image, by library: made from the lists that the import
# libraries of the module and of kestrel-try are made from.
set(IMPORT_LIST ${CMAKE_SOURCE_DIR}/windows/imports.txt)
set(TRY_IMPORT_LIST ${CMAKE_SOURCE_DIR}/try/imports.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${IMPORT_LIST} ${TRY_IMPORT_LIST})
file(STRINGS ${IMPORT_LIST} IMPORT_LINES REGEX "^ *[A-Za-z]")
file(STRINGS ${TRY_IMPORT_LIST} TRY_IMPORT_LINES REGEX "^ *[A-Za-z]")
list(APPEND IMPORT_LINES ${TRY_IMPORT_LINES})
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  list(FILTER IMPORT_LINES EXCLUDE REGEX " x64$")
else()
  list(FILTER IMPORT_LINES EXCLUDE REGEX " x86$")
endif()
set(SYSTEM_EXPORTS "")
foreach(line IN LISTS IMPORT_LINES)
  if(line MATCHES "^ +([A-Za-z0-9_]+) -")
    # Arguments without a type cannot be passed on.
    string(APPEND SYSTEM_EXPORTS "        {\"${CMAKE_MATCH_1}\", AsEntryPoint(${CMAKE_MATCH_1})},\n")
  elseif(line MATCHES "^ +([A-Za-z0-9_]+)")
    string(APPEND SYSTEM_EXPORTS "        {\"${CMAKE_MATCH_1}\", EntryPoint<${CMAKE_MATCH_1}>()},\n")
  else()
    string(APPEND SYSTEM_EXPORTS "${opened}    RegisterBuiltIn(u\"${line}\", {\n")
    set(opened "    }),\n")
  endif()
endforeach()
set(SYSTEM_EXPORTS_SOURCE ${CMAKE_BINARY_DIR}/system_exports.cpp)
file(CONFIGURE OUTPUT ${SYSTEM_EXPORTS_SOURCE} CONTENT [[
#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>
#include <compstui.h>
#include <prsht.h>
#include <shellapi.h>
#include <winddi.h>
#include <winspool.h>
#include <winver.h>

#include "platform/machine/guard.h"
#include "platform/loader/modules.h"

namespace platform {
const bool registered[] = {
@SYSTEM_EXPORTS@    })};
}  // namespace platform
]] @ONLY)
