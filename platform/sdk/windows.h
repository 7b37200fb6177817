// The Windows API as far as this product calls it; each included header bears the name that the SDK
// gives it.
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
