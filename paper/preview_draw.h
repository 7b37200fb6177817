// Draws sketches, labels and markers into the picture boxes. Every drawing releases what it made
// before it returns and leaves the device context as it was.
#pragma once

#include <windows.h>

#include <span>

#include "paper/preview_layout.h"

namespace kestrel {

// Stretches a bitmap resource over a rectangle. Nothing is drawn when it does not load or the
// rectangle is empty.
void DrawPicture(HDC dc, const RECT& rect, int bitmapId);

// The whole-label view of a paper over a box: the background, then the laid-out labels with the
// picture of the print orientation in each. Answers the geometry; a paper without size has no
// scale.
PreviewGeometry DrawWholeLabel(HDC dc, const RECT& box, const PaperInfo& paper, PreviewPlace place,
                               int orientationPicture);

// Dotted red lines.
void DrawMarkerLines(HDC dc, std::span<const MarkerLine> lines);

// A text's characters one under the other, black on white.
void DrawVerticalText(HDC dc, const RECT& rect, const WCHAR* text);

// The sketch of a field of the paper page or the registration dialog (by template id), or the
// background for any other control.
int FieldSketch(int dialogId, int field);

}  // namespace kestrel
