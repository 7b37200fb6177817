// Draws sketches, labels and markers into the picture boxes. Each function deletes the GDI objects
// that it has created and restores the state of the device context before it returns.
#pragma once

#include <windows.h>

#include <span>

#include "paper/preview_layout.h"

namespace kestrel {

// Stretches a bitmap resource over a rectangle. Draws nothing when the bitmap cannot be loaded or
// the rectangle is empty.
void DrawPicture(HDC dc, const RECT& rect, int bitmapId);

// Draws the whole-label view of a paper: the background, then the labels with the picture of the
// print orientation. Returns the geometry; draws no label for a paper without a size.
PreviewGeometry DrawWholeLabel(HDC dc, const RECT& box, const PaperInfo& paper, PreviewPlace place,
                               int orientationPicture);

// Draws dotted red lines.
void DrawMarkerLines(HDC dc, std::span<const MarkerLine> lines);

// Draws the characters of a text one under the other, black on white.
void DrawVerticalText(HDC dc, const RECT& rect, const WCHAR* text);

// Returns the bitmap id of the sketch of a field of IDD_PAPER or IDD_PAPER_REGISTER, or that of the
// background for any other control.
int FieldSketch(int dialogId, int field);

}  // namespace kestrel
