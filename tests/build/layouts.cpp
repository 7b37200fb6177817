// Compiled for x86 (-m32), where pointers have the width that stored and exchanged structures were
// laid out for: every static_assert of the layout headers has to hold there too.
#include <commctrl.h>
#include <winddiui.h>
#include <windows.h>
#include <winspool.h>

#include "driver/settings_block.h"
#include "fonts/font_record.h"
#include "paper/paper_info.h"
#include "sheets/driver_ui_data.h"

static_assert(sizeof(void*) == 4);
