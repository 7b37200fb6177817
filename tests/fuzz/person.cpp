// A person at random: any bytes become what somebody does at the desk in one sheet after another,
// over settings, fonts and a backup file that the bytes have damaged.
#include <windows.h>
#include <unistd.h>
#include <winddiui.h>

#include <algorithm>
#include <cstdio>
#include <span>

#include "driver/handles.h"
#include "driver/instance.h"
#include "files/backup_file.h"
#include "fonts/font_store.h"
#include "paper/paper_table.h"
#include "platform/desk.h"
#include "platform/desktop/drawing/gdi.h"
#include "tests/fuzz/harness.h"
#include "tests/support/bin_dir.h"
#include "tests/support/settings.h"

namespace {

using namespace kestrel;
using platform::ControlKind;
using platform::ControlView;
using platform::Desk;
using platform::WindowView;
using support::kPrinter;

constexpr WCHAR kBackup[] = u"C:\\data\\a.ini";

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
  int16_t Count(int most) { return static_cast<int16_t>(Below(static_cast<size_t>(most) + 1)); }
};

std::u16string Text(Choices& choices) {
  static const std::u16string kTexts[] = {u"",
                                          u"0",
                                          u"1",
                                          u"40.0",
                                          u"3.94",
                                          u"-1",
                                          u"9999",
                                          u"32767",
                                          u"99999999999",
                                          u"1e3",
                                          u" 12 ",
                                          u"0.01",
                                          u"ﾃｽﾄｶﾀｶﾅ",
                                          u"用紙―表①",
                                          u"\U0001F600\U00020BB7",
                                          u"a\xD800z\xDC00",
                                          u"\xFEFF\xFFFE",
                                          u"\t\x01\x1F\x7F",
                                          u"a\r\nb",
                                          u"[x]=\"y\";'z'",
                                          u"%s%n&&",
                                          u"フリーサイズ",
                                          u"Font 1",
                                          std::u16string(300, u'あ'),
                                          std::u16string(300, u'9'),
                                          kBackup,
                                          u"C:\\data\\no\\such.ini"};
  const size_t which = choices.Byte();
  if (which < 4 * std::size(kTexts)) return kTexts[which % std::size(kTexts)];
  std::u16string text;
  for (size_t units = which % 40; units > 0; --units) {
    const WORD unit = choices.Word();
    // No drive but the computer's own is written to.
    if (unit != 0) text += unit == u':' ? u';' : static_cast<char16_t>(unit);
  }
  return text;
}

// What holds of a window whatever has been done; answers the controls that somebody can use.
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

class Person : public platform::User {
 public:
  explicit Person(Choices& choices) : choices_(choices) {}

  bool Act(Desk& desk) override {
    const WindowView top = desk.Windows().back();
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
    if (what == 232) desk.Tab(choices_.Byte() % 2 == 0);
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
    desk.Replace(kNameEdit, what % 2 == 0 ? kBackup : u"C:\\data\\b.ini");
    desk.Click(what % 8 == 7 ? IDCANCEL : IDOK);
  }

  Choices& choices_;
  int leaving_ = 0;
};

template <size_t size>
bool Terminated(const WCHAR (&name)[size]) {
  return std::find(name, name + size, u'\0') != name + size;
}

// What the spooler keeps after OK.
void RequireSoundStore(platform::Machine& machine) {
  const auto number = machine.Data(kPrinter, u"CreateFont Number");
  const auto fonts = machine.Data(kPrinter, u"CreateFont Data");
  if (number && fonts) {
    const auto total = support::At<WORD>(number->bytes.data(), 0);
    Require(total <= kFontCapacity && fonts->bytes.size() >= total * sizeof(FontRecord));
    for (size_t i = 0; i < total; ++i) {
      FontRecord font;
      std::memcpy(static_cast<void*>(&font), fonts->bytes.data() + i * sizeof font, sizeof font);
      Require(Terminated(font.FontName) && Terminated(font.Deco.DecoFontName));
      Require(font.FontKind == kBarcodeFont || Terminated(font.Deco.ResiFontName));
    }
  }
  const PrinterSettingsPart part = support::KeptPrinterPart(machine);
  Require(part.PaperNum >= 0 && part.PaperNum <= kPaperCapacity);
  for (int i = 0; i < part.PaperNum; ++i) Require(Terminated(part.Papers[i].PaperName));
}

HANDLE OpenedPrinter(bool administer) {
  HANDLE printer = nullptr;
  PRINTER_DEFAULTSW access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
  OpenPrinterW(const_cast<LPWSTR>(kPrinter), &printer, administer ? &access : nullptr);
  return printer;
}

// A few papers, and as many fonts of both kinds as the bytes tell.
void Furnish(platform::Machine& machine, Choices& choices) {
  auto block = support::DefaultBlock();
  block.Printer.PaperNum = choices.Count(kPaperCapacity);
  for (int i = 0; i < block.Printer.PaperNum; ++i) {
    block.Printer.Papers[i] = block.Record.Private.FreePaper;
    block.Printer.Papers[i].PaperName[0] = static_cast<WCHAR>(u'a' + i);
    block.Printer.Papers[i].PaperName[1] = 0;
    block.Printer.Papers[i].UserDef = i % 2 == 0;
  }
  support::StoreBlock(machine, block);
  const Printer owner(OpenedPrinter(true));
  HANDLE printer = owner.get();
  FontStore fonts = {};
  Require(LoadFontStore(fonts, printer, GetProcessHeap()));
  fonts.DecoFontNum = choices.Count(kFontCapacity);
  fonts.BarFontNum = choices.Count(kFontCapacity - fonts.DecoFontNum);
  for (int i = 0; i < kFontCapacity; ++i) {
    fonts.DecoFonts[i] = {{static_cast<WCHAR>(u'A' + i)}, kDecorativeFont, {}};
    fonts.BarFonts[i] = {{static_cast<WCHAR>(u'あ' + i)}, kBarcodeFont, {}};
  }
  Require(SaveFontStore(printer, fonts));
  static const std::string whole = [&] {
    machine.WriteFile(kBackup, "");
    Require(BackupFileTransfer(nullptr, kBackup, {block, fonts, kPrinter}, TransferDirection::kSave,
                               BACKUP_ALL));
    return *machine.ReadFile(kBackup);
  }();
  FreeFontStore(fonts, GetProcessHeap());
  std::string backup = whole;
  for (size_t changes = choices.Below(8); changes > 0; --changes)
    backup[choices.Word() % backup.size()] = static_cast<char>(choices.Byte());
  machine.WriteFile(kBackup, backup);
}

void ShowSheet(platform::Machine& machine, Choices& choices) {
  const uint8_t how = choices.Byte();
  SettingsRecord output = {};
  const auto input = support::DefaultBlock().Record;
  auto* const in = (how & 4) != 0 ? const_cast<DEVMODEW*>(&input.Public) : nullptr;
  std::u16string name = kPrinter;
  const Printer owner(OpenedPrinter((how & 8) == 0));
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

// The computer that all sheets are shown on, and where the process was before it went there.
struct Office {
  std::unique_ptr<platform::Machine> machine = platform::Machine::Create();
  std::filesystem::path data = machine->HostPath(u"C:\\data");

  Office() {
    for (const std::string name : {"QM610rDRV1", "QM610rLIB", "QM610rBAR"})
      machine->InstallModule(Folder() + std::u16string(name.begin(), name.end()) + u".DLL",
                             support::Built(name + ".so"));
    const HMODULE module = LoadLibraryW((Folder() + u"QM610rDRV1.DLL").c_str());
    Require(module != nullptr);
    SetModuleInstance(module);
    // The backup that later ones are damaged copies of has papers and fonts.
    machine->AddPrinter({.name = kPrinter});
    constexpr uint8_t kCounts[] = {20, 30, 10};
    Choices counts{kCounts};
    Furnish(*machine, counts);
  }
  ~Office() { std::fprintf(stderr, "%ld actions\n", Person::actions); }
  std::u16string Folder() const { return machine->driverDirectory() + u"\\3\\"; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const DrivesInMemory inMemory;
  static Office office;
  platform::Machine& machine = *office.machine;
  const auto open = [&] {
    return std::array{machine.OpenPrinterHandles(), machine.LiveAllocations(),
                      machine.LiveHeaps(),          machine.OpenModules(),
                      machine.OpenRegistryKeys(),   platform::LiveGdiObjects(),
                      platform::LiveDcs()};
  };
  machine.RemovePrinter(kPrinter);
  machine.AddPrinter({.name = kPrinter});
  std::filesystem::remove_all(office.data);
  Choices choices{{data, size}};
  // Names without a folder lie in the computer's.
  const std::filesystem::path here = std::filesystem::current_path();
  const auto before = open();
  Furnish(machine, choices);
  std::filesystem::current_path(office.data);
  for (int sheets = 0; sheets < 4 && !choices.left.empty(); ++sheets) {
    ShowSheet(machine, choices);
    RequireSoundStore(machine);
    Require(machine.desk().ModalDepth() == 0 && open() == before);
  }
  std::filesystem::current_path(here);
  return 0;
}
