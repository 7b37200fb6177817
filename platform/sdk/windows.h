// The part of the Windows API that this product calls. Each included header has the name that the
// SDK uses.
#pragma once

#define _WINDOWS_

#include <windef.h>

#include <winnt.h>
#include <winbase.h>
#include <winnls.h>
#include <winreg.h>
#include <winver.h>
#include <wingdi.h>
#include <winuser.h>
