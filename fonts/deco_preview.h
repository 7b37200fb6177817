// The two characters that show a decorative font's pitch and shape.
#pragma once

#include <windows.h>

#include "paper/fields/numeric_field.h"

namespace kestrel {

// Draws the preview into a box from the dialog's width, height, unit and pitch as they stand.
// Leaves no object behind.
void DrawFontPreview(FieldDialog dialog, int dpi, HDC dc, const RECT& box);

}  // namespace kestrel
