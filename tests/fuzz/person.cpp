// A person at random: any bytes become what somebody does at the desk in one sheet after another,
// over settings, fonts and a backup file that the bytes have damaged.
#include <windows.h>
#include <winddiui.h>

#include <algorithm>
#include <cstdio>
#include <span>

#include "driver/instance.h"
#include "files/backup_file.h"
#include "fonts/font_store.h"
#include "paper/paper_table.h"
#include "platform/desk.h"
#include "platform/desktop/drawing/gdi.h"
#include "sheets/page_services.h"
#include "tests/fuzz/harness.h"
#include "tests/support/bin_dir.h"

namespace {

using namespace kestrel;
using platform::ControlKind;
using platform::ControlView;
using platform::Desk;
using platform::WindowView;
using support::kPrinter;

// Read and written in memory; dialogs find the first alone.
constexpr WCHAR kBackup[] = u"C:\\data\\a.ini";
constexpr WCHAR kNewBackup[] = u"C:\\data\\b.ini";

// The bytes one after another; zeros once they are used up.
struct Choices {
  std::span<const uint8_t> left;

  uint8_t Byte() {
    if (left.empty()) return 0;
    const uint8_t byte = left.front();
    left = left.subspan(1);
    return byte;
  }
  WORD Word() { return MAKEWORD(Byte(), Byte()); }
  size_t Below(size_t count) { return Byte() % count; }
  int16_t Count(int most) { return static_cast<int16_t>(Byte() % (most + 1)); }
};

std::u16string Text(Choices& choices) {
  static constexpr std::u16string_view kTexts =
      u"|0|1|40.0|3.94|-1|9999|32767|99999999999|1e3| 12 "
      u"|0.01|ﾃｽﾄｶﾀｶﾅ|用紙―表①|\U0001F600\U00020BB7|"
      u"a\xD800z\xDC00|\xFEFF\xFFFE|\t\x01\x1F\x7F|a\r\nb|[x]=\"y\";'z'|%s%n&&|フリーサイズ|"
      u"Font 1|C:\\data\\a.ini|C:\\data\\no\\such.ini|あ|9|";
  constexpr size_t kCount = std::ranges::count(kTexts, u'|');
  const size_t which = choices.Byte();
  std::u16string text;
  if (which < 4 * kCount) {
    std::u16string_view rest = kTexts;
    for (size_t skip = which % kCount; skip > 0; --skip) rest.remove_prefix(rest.find(u'|') + 1);
    text = rest.substr(0, rest.find(u'|'));
    return which % kCount < kCount - 2 ? text : std::u16string(300, text[0]);
  }
  for (size_t units = which % 40; units > 0; --units) {
    const WORD unit = choices.Word();
    // No drive but the computer's own is written to.
    if (unit != 0) text += unit == u':' ? u';' : static_cast<char16_t>(unit);
  }
  return text;
}

template <size_t size>
bool Terminated(const WCHAR (&name)[size]) {
  return std::find(name, name + size, u'\0') != name + size;
}

void RequireSound(const PrinterSettingsPart& part) {
  Require(part.PaperNum >= 0 && part.PaperNum <= kPaperCapacity);
  for (int i = 0; i < part.PaperNum; ++i) Require(Terminated(part.Papers[i].PaperName));
}

void RequireSound(const FontRecord* fonts, int count) {
  Require(count >= 0 && count <= kFontCapacity);
  for (const FontRecord& font : std::span(fonts, static_cast<size_t>(count))) {
    Require(Terminated(font.FontName) && Terminated(font.Deco.DecoFontName));
    Require(font.FontKind == kBarcodeFont || Terminated(font.Deco.ResiFontName));
  }
}

// What holds of a sheet's session whatever has been done.
void RequireSound(const DriverUiData& session) {
  RequireSound(session.block.Printer);
  Require(Terminated(session.block.Record.Private.FreePaper.PaperName));
  if (session.fonts.DecoFonts == nullptr) return;  // a printer's sheet
  RequireSound(session.fonts.DecoFonts, session.fonts.DecoFontNum);
  RequireSound(session.fonts.BarFonts, session.fonts.BarFontNum);
}

// What the spooler keeps after a sheet.
void RequireSoundStore(platform::Machine& machine) {
  RequireSound(support::KeptPrinterPart(machine));
  const auto number = machine.Data(kPrinter, u"CreateFont Number")->bytes;
  const auto fonts = machine.Data(kPrinter, u"CreateFont Data")->bytes;
  const auto total = support::At<WORD>(number.data(), 0);
  Require(fonts.size() >= total * sizeof(FontRecord));
  RequireSound(reinterpret_cast<const FontRecord*>(fonts.data()), total);
}

// What holds of a window; answers the controls that somebody can use.
std::vector<ControlView> SoundControls(const WindowView& window) {
  std::vector<ControlView> usable;
  for (const ControlView& control : window.controls) {
    const int items = static_cast<int>(control.items.size());
    Require(control.selection >= -1 && control.selection < std::max(items, 1) && items <= 256);
    if (control.visible && control.enabled && control.kind != ControlKind::kStatic &&
        control.kind != ControlKind::kGroupBox)
      usable.push_back(control);
  }
  return usable;
}

// Asked anew after each thing done: then what was done has left everything sound.
class Person : public platform::User {
 public:
  explicit Person(Choices& choices) : choices_(choices) {}

  bool Act(Desk& desk) override {
    const auto windows = desk.Windows();
    for (const WindowView& window : windows)
      if (const auto* session = window.page ? PageSession(window.page->handle) : nullptr)
        RequireSound(*session);
    const WindowView& top = windows.back();
    const auto usable = SoundControls(top.page ? *top.page : top);
    ++actions;
    const bool done = choices_.left.empty();
    const uint8_t what = choices_.Byte();
    if (done)
      ++leaving_ % 2 == 1 ? Agree(desk) : static_cast<void>(desk.Escape());
    else if (top.kind == WindowView::Kind::kFileDialog)
      UseFileDialog(desk, what);
    else if (what < 208 && !usable.empty())
      Use(desk, usable[choices_.Below(usable.size())]);
    else if (what < 232)
      desk.Page(what % 6);
    else
      UseKeys(desk, what);
    return leaving_ < 8;  // who is asked on and on goes away
  }

  static inline long actions = 0;

 private:
  void UseKeys(Desk& desk, uint8_t what) {
    constexpr int kKeys[] = {VK_UP, VK_DELETE, VK_BACK, 0x28};  // the last is VK_DOWN
    if (what < 234) desk.Tab(choices_.Byte() % 2 == 0);
    if (what == 234) desk.Enter();
    if (what == 235) desk.Escape();
    if (what == 236) desk.Close();
    if (what == 237) desk.AccessKey(static_cast<char16_t>('A' + choices_.Below(26)));
    if (what >= 238 && what < 248) desk.Key(kKeys[what % 4]);
    if (what == 248) desk.Press(platform::SheetButton::kCancel);
    if (what > 248) Agree(desk);
  }

  // Whatever is open is agreed to, or left when that does not help.
  static void Agree(Desk& desk) {
    if (!desk.Press(platform::SheetButton::kOk) && !desk.Enter()) desk.Escape();
  }

  void Use(Desk& desk, const ControlView& control) {
    if (control.kind == ControlKind::kEdit)
      Write(desk, control.id);
    else if (control.kind == ControlKind::kComboBox || control.kind == ControlKind::kListBox)
      desk.Select(control.id, static_cast<int>(choices_.Below(control.items.size() + 1)));
    else if (control.kind == ControlKind::kUpDown)
      desk.Spin(control.id, static_cast<int8_t>(choices_.Byte()));
    else
      desk.Click(control.id);
  }

  void Write(Desk& desk, int id) {
    const size_t way = choices_.Below(4);
    const std::u16string text = Text(choices_);
    if (way == 0) desk.Type(id, text.substr(0, 40));
    if (way == 1) desk.Replace(id, text.substr(0, 80));
    if (way == 2) desk.Paste(id, text);
    if (way == 3) desk.EditTo(id, text);
  }

  // Names in the computer's own folder only: the other drive is the host's.
  void UseFileDialog(Desk& desk, uint8_t what) {
    constexpr int kNameEdit = 1148;
    desk.Replace(kNameEdit, what % 2 == 0 ? kBackup : kNewBackup);
    desk.Click(what % 8 == 7 ? IDCANCEL : IDOK);
  }

  Choices& choices_;
  int leaving_ = 0;
};

// A few papers, as many fonts of both kinds as the bytes tell, and a backup of them, damaged.
void Furnish(platform::Machine& machine, Choices& choices) {
  auto block = support::DefaultBlock();
  block.Printer.PaperNum = choices.Count(kPaperCapacity);
  for (int i = 0; i < block.Printer.PaperNum; ++i) {
    block.Printer.Papers[i] = NewPaper();
    block.Printer.Papers[i].PaperName[0] = static_cast<WCHAR>(u'a' + i);
    block.Printer.Papers[i].UserDef = i % 2 == 0;
  }
  support::StoreBlock(machine, block);
  const Printer printer = OpenedPrinter();
  FontStore fonts = {};
  Require(LoadFontStore(fonts, printer.get(), GetProcessHeap()));
  fonts.DecoFontNum = choices.Count(kFontCapacity);
  fonts.BarFontNum = choices.Count(kFontCapacity - fonts.DecoFontNum);
  for (int i = 0; i < kFontCapacity; ++i) {
    fonts.DecoFonts[i] = {{static_cast<WCHAR>(u'A' + i)}, kDecorativeFont, {}};
    fonts.BarFonts[i] = {{static_cast<WCHAR>(u'あ' + i)}, kBarcodeFont, {}};
  }
  Require(SaveFontStore(printer.get(), fonts));
  static const std::string whole = [&] {
    machine.HoldProfile(kBackup, "");
    Require(BackupFileTransfer(nullptr, kBackup, {block, fonts, kPrinter}, TransferDirection::kSave,
                               BACKUP_ALL));
    return machine.HeldProfile(kBackup);
  }();
  FreeFontStore(fonts, GetProcessHeap());
  std::string backup = whole;
  for (size_t changes = choices.Below(8); changes > 0; --changes)
    backup[choices.Word() % backup.size()] = static_cast<char>(choices.Byte());
  machine.WriteFile(kBackup, "");
  machine.HoldProfile(kBackup, backup);
  machine.HoldProfile(kNewBackup, "");
}

void ShowSheet(platform::Machine& machine, Choices& choices) {
  const uint8_t how = choices.Byte();
  SettingsRecord output = {};
  const auto input = support::DefaultBlock().Record;
  auto* const in = (how & 4) != 0 ? const_cast<DEVMODEW*>(&input.Public) : nullptr;
  std::u16string name = kPrinter;
  const Printer owner = OpenedPrinter((how & 8) == 0);
  HANDLE printer = owner.get();
  Person person(choices);
  machine.desk().Attach(&person);
  LONG result = 0;
  if (how % 4 == 3) {
    PrinterProperties(nullptr, printer);
  } else if (how % 4 == 2) {
    result = DrvAdvancedDocumentProperties(nullptr, printer, name.data(), &output.Public, in);
  } else {
    const DWORD mode = DM_COPY | DM_PROMPT | (in != nullptr ? DM_IN_BUFFER : 0u);
    result = DrvDocumentProperties(nullptr, printer, name.data(), &output.Public, in,
                                   mode | (how % 4 == 1 ? DM_USER_DEFAULT : 0u));
  }
  machine.desk().Attach(nullptr);
  platform::RethrowKept();
  if (result != IDOK) return;
  Require(output.Private.Signature == SETTINGS_SIGNATURE);
  Require(Terminated(output.Private.FreePaper.PaperName));
  machine.SetDefaultRecord(kPrinter, support::BytesOf(output));
}

// The computer that all sheets are shown on.
struct Office {
  std::unique_ptr<platform::Machine> machine = NewComputer();
  const std::filesystem::path here = std::filesystem::current_path();
  const std::filesystem::path data = machine->HostPath(u"C:\\data");

  Office() {
    const std::u16string folder = machine->driverDirectory() + u"\\3\\";
    for (const std::string name : {"QM610rDRV1", "QM610rLIB", "QM610rBAR"})
      machine->InstallModule(folder + std::u16string(name.begin(), name.end()) + u".DLL",
                             support::Built(name + ".so"));
    SetModuleInstance(LoadLibraryW((folder + u"QM610rDRV1.DLL").c_str()));
    // The backup that later ones are damaged copies of has papers and fonts.
    constexpr uint8_t kCounts[] = {20, 30, 10};
    Choices counts{kCounts};
    Furnish(*machine, counts);
  }
  ~Office() { std::fprintf(stderr, "%ld actions\n", Person::actions); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Office office;
  platform::Machine& machine = *office.machine;
  const auto open = [&] {
    return std::array{machine.OpenPrinterHandles(), machine.LiveAllocations(),
                      machine.LiveHeaps(),          machine.OpenModules(),
                      machine.OpenRegistryKeys(),   platform::LiveGdiObjects(),
                      platform::LiveDcs()};
  };
  machine.AddPrinter({.name = kPrinter});
  std::filesystem::remove_all(office.data);
  Choices choices{{data, size}};
  const auto before = open();
  Furnish(machine, choices);
  std::filesystem::current_path(office.data);  // where names without a folder lie
  for (int sheets = 0; sheets < 4 && !choices.left.empty(); ++sheets) {
    ShowSheet(machine, choices);
    RequireSoundStore(machine);
    machine.HoldProfile(kBackup, machine.HeldProfile(kBackup));
    Require(machine.desk().ModalDepth() == 0 && open() == before);
  }
  std::filesystem::current_path(office.here);
  return 0;
}
