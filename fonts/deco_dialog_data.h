// What the parts of the decorative font dialog share: its tables, filling, reacting and reading
// back, each in the file named after it.
#pragma once

#include <windows.h>

#include <span>

#include "fonts/font_record.h"
#include "fonts/resident_fonts.h"
#include "fonts/serial_fields.h"
#include "paper/fields/help_text.h"

namespace kestrel {

struct DecoDialog {
  HWND window;
  FontStore* store;
  int dpi;
  DecoFontInfo row;   // decides what can be set
  bool initialising;  // the dialog itself writes its controls

  FontRecord& work() { return store->WorkFont; }
  DecoFontInfo& font() { return store->WorkFont.Deco; }
  FieldDialog fields() const;
  bool scalable() const { return (row.Size & kSizeScalable) != 0; }
};

// Keeps notifications of the dialog's own writing from coming back into the font.
class InitialisingScope {
 public:
  explicit InitialisingScope(DecoDialog& dialog) : flag_(dialog.initialising), before_(flag_) {
    flag_ = true;
  }
  ~InitialisingScope() { flag_ = before_; }
  InitialisingScope(const InitialisingScope&) = delete;
  InitialisingScope& operator=(const InitialisingScope&) = delete;

 private:
  bool& flag_;
  bool before_;
};

extern const SerialControls kDecoSerial;
extern const HelpTextTable kDecoHelp;
extern const NumericFieldTable kDecoFields;

// A group of radio buttons in the order of the values they stand for.
using RadioGroup = std::span<const int>;
extern const RadioGroup kDecorateRadios;  // off, on
extern const RadioGroup kUnitRadios;      // mm, inch, dot
extern const RadioGroup kPitchRadios;     // fixed, proportional
extern const RadioGroup kRotateRadios;    // 0, 90, 180, 270
extern const RadioGroup kReverseRadios;   // off, on
extern const RadioGroup kSmoothRadios;    // off, on
extern const RadioGroup kBoldRadios;      // off, on
extern const RadioGroup kOutlineRadios;   // 0..9
extern const RadioGroup kSerialRadios;    // off, on
void CheckRadio(HWND dialog, RadioGroup group, int index);
// The checked one; the last when none is.
int CheckedRadio(HWND dialog, RadioGroup group);

// ---- deco_dialog_fill ----
void OpenDecoDialog(DecoDialog& dialog);
// Shows the codes of the row in the size list and selects an entry.
void FillSizeList(DecoDialog& dialog, int entry);
int SelectedSizeEntry(const DecoDialog& dialog);
// Size, SizeX and SizeY from the entry and the magnifications; nothing for a row without cells.
void ComputeSelectedSize(DecoDialog& dialog, int entry);
// Sets every control from the font and the row. Typing into a magnification leaves both
// magnification fields alone.
void RefreshDecoDialog(DecoDialog& dialog, bool keepMagnifications = false);
void RedrawPreview(const DecoDialog& dialog);

// ---- deco_dialog_react ----
// A WM_COMMAND other than OK and cancel.
void OnDecoCommand(DecoDialog& dialog, int control, int notification);
// An up-down of a free width or height is about to step; true refuses, as the dialog has stepped
// itself.
bool OnDecoSpin(DecoDialog& dialog, int spin, int step);

// ---- deco_dialog_store ----
// Checks the name and the fields; builds the work font from the controls when all are good.
bool StoreDecoFont(DecoDialog& dialog);

}  // namespace kestrel
