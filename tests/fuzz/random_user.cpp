// A random user: any bytes become actions in one sheet after another, over settings, fonts and a
// backup file that the bytes have damaged.
#include "tests/fuzz/random_user.h"

#include <windows.h>
#include <winddiui.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <span>

#include "driver/instance.h"
#include "files/backup_file.h"
#include "fonts/font_store.h"
#include "paper/paper_table.h"
#include "platform/gdi32/gdi.h"
#include "platform/machine/desk.h"
#include "platform/machine/guard.h"
#include "sheets/page_services.h"
#include "tests/fuzz/harness.h"
#include "tests/fuzz/stray_messages.h"
#include "tests/support/digest.h"
#include "tests/support/exports.h"
#include "tests/support/x87.h"

namespace {

using namespace kestrel;
using namespace platform;
using support::Digest;
using support::kPrinter;

// Files in memory; dialogs show only the first.
constexpr WCHAR kBackup[] = u"C:\\data\\a.ini";
constexpr WCHAR kNewBackup[] = u"C:\\data\\b.ini";

// Returns the bytes in order; zeros when there are none left.
struct Choices {
  std::span<const uint8_t> left;

  uint8_t Byte() {
    if (left.empty()) return 0;
    const uint8_t byte = left.front();
    left = left.subspan(1);
    return byte;
  }
  WORD Word() { return MAKEWORD(Byte(), Byte()); }
  int16_t Below(int count) { return static_cast<int16_t>(Byte() % count); }
};

// Returns one of these texts, a text longer than any field, or arbitrary units.
std::u16string Text(Choices& choices) {
  static constexpr std::u16string_view kTexts[] = {u"",
                                                   u"1",
                                                   u"40.0",
                                                   u"-1",
                                                   u"32767",
                                                   u"99999999999",
                                                   u"1e3",
                                                   u" 12 ",
                                                   u"ﾃｽﾄｶﾀｶﾅ",
                                                   u"用紙―表①",
                                                   u"\U0001F600\U00020BB7",
                                                   u"a\xD800z\xDC00",
                                                   u"\t\x01\x1F\x7F",
                                                   u"a\r\nb",
                                                   u"[x]=\"y\";'z'",
                                                   u"%s%n&&",
                                                   u"フリーサイズ",
                                                   u"C:\\data\\a.ini",
                                                   u"C:\\data\\no\\such.ini"};
  const size_t which = choices.Byte();
  if (which < 4 * std::size(kTexts)) return std::u16string(kTexts[which % std::size(kTexts)]);
  if (which < 120) return std::u16string(300, which % 2 == 0 ? u'9' : u'あ');
  std::u16string text;
  for (size_t units = which % 40; units > 0; --units) {
    const WORD unit = choices.Word();
    // Only the drive of the simulated computer may be written to.
    if (unit != 0) text += unit == u':' ? u';' : static_cast<char16_t>(unit);
  }
  return text;
}

template <size_t size>
bool Terminated(const WCHAR (&name)[size]) {
  return std::find(name, name + size, u'\0') != name + size;
}

void RequireSound(const PrinterSettingsPart& part, const FontRecord* fonts, int count) {
  Require(part.PaperNum >= 0 && part.PaperNum <= kPaperCapacity);
  for (int i = 0; i < part.PaperNum; ++i) Require(Terminated(part.Papers[i].PaperName));
  Require(count >= 0 && count <= kFontCapacity);
  for (int i = 0; fonts != nullptr && i < count; ++i) {
    Require(Terminated(fonts[i].FontName) && Terminated(fonts[i].Deco.DecoFontName));
    Require(fonts[i].FontKind == kBarcodeFont || Terminated(fonts[i].Deco.ResiFontName));
  }
}

// Requires the invariants of a session after any action. A printer sheet has no fonts.
void RequireSound(const DriverUiData& session) {
  Require(Terminated(session.block.Record.Private.FreePaper.PaperName));
  RequireSound(session.block.Printer, session.fonts.DecoFonts, session.fonts.DecoFontNum);
  RequireSound(session.block.Printer, session.fonts.BarFonts, session.fonts.BarFontNum);
}

// Requires the invariants of the printer data after a sheet.
void RequireSoundStore(Machine& machine) {
  const auto number = machine.Data(kPrinter, u"CreateFont Number")->bytes;
  const auto fonts = machine.Data(kPrinter, u"CreateFont Data")->bytes;
  const auto total = support::At<WORD>(number.data(), 0);
  Require(fonts.size() >= total * sizeof(FontRecord));
  RequireSound(support::StoredPrinterPart(machine),
               reinterpret_cast<const FontRecord*>(fonts.data()), total);
}

// Requires the invariants of a window; returns the controls that a user can use.
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

// Digests of what the windows of a run showed and of what its sheets returned and stored.
struct Digests {
  Digest windows, records, stored, files;
} digests;

// The module restores the x87 control word and the direction flag.
void RequireProcessorState() {
  static const uint16_t word = support::ControlWord();
  Require(support::ControlWord() == word && !support::DirectionFlag());
}

// Returns true for a dialog or page of the driver.
bool IsDriverWindow(const WindowView& top) {
  return top.kind == WindowView::Kind::kDialog || top.page != nullptr;
}

// Act is called after each action, when the state has to be consistent again.
class RandomUser : public User {
 public:
  explicit RandomUser(Choices& choices) : choices_(choices) {}

  bool Act(Desk& desk) override {
    RequireProcessorState();
    const auto windows = desk.Windows();
    digests.windows.Add(windows);
    for (const WindowView& window : windows) {
      if (window.page == nullptr) continue;
      const auto* session = PageSession(window.page->handle);
      Require(session != nullptr);
      RequireSound(*session);
    }
    const WindowView& top = windows.back();
    const auto usable = SoundControls(top.page ? *top.page : top);
    ++actions;
    const bool done = choices_.left.empty();
    const uint8_t what = choices_.Byte();
    if (done)
      ++leaving_ % 2 == 1 ? Agree(desk) : static_cast<void>(desk.Escape());
    else if (top.kind == WindowView::Kind::kFileDialog)
      UseFileDialog(desk, what);
    else if (what < 8 && IsDriverWindow(top))
      SendStrayMessage(top.page ? top.page->handle : top.handle, [&] { return choices_.Byte(); });
    else if (what < 208 && !usable.empty())
      Use(desk, usable[choices_.Byte() % usable.size()]);
    else if (what < 232)
      desk.Page(what % 6);
    else
      UseKeys(desk, what);
    return leaving_ < 8;  // leaves when the sheet does not close
  }

  static inline long actions = 0;

 private:
  void UseKeys(Desk& desk, uint8_t what) {
    constexpr int kKeys[] = {VK_UP, VK_DELETE, VK_BACK, VK_DOWN, VK_F4};
    if (what < 234) desk.Tab(choices_.Byte() % 2 == 0);
    if (what == 234) desk.Enter();
    if (what == 235) desk.Escape();
    if (what == 236) desk.Close();
    if (what == 237) desk.AccessKey(static_cast<char16_t>('A' + choices_.Below(26)));
    if (what >= 238 && what < 248) desk.Key(kKeys[what % 5]);
    if (what == 248) desk.Press(SheetButton::kCancel);
    if (what > 248) Agree(desk);
  }

  // Accepts the topmost window, or cancels it when that does not help.
  static void Agree(Desk& desk) {
    if (!desk.Press(SheetButton::kOk) && !desk.Enter()) desk.Escape();
  }

  void Use(Desk& desk, const ControlView& control) {
    const int id = control.id;
    if (control.kind == ControlKind::kEdit) {
      const int way = choices_.Below(4);
      const std::u16string text = Text(choices_);
      if (way == 0) desk.Type(id, text.substr(0, 40));
      if (way == 1) desk.Replace(id, text.substr(0, 80));
      if (way >= 2) desk.Paste(id, text);
    } else if (control.kind == ControlKind::kComboBox || control.kind == ControlKind::kListBox) {
      desk.Select(id, choices_.Below(static_cast<int>(control.items.size()) + 1));
    } else if (control.kind == ControlKind::kUpDown) {
      desk.Spin(id, static_cast<int8_t>(choices_.Byte()));
    } else {
      desk.Click(id);
    }
  }

  // Names in a folder of the simulated computer only: the other drive is the host's.
  static void UseFileDialog(Desk& desk, uint8_t what) {
    constexpr int kNameEdit = 1148;
    desk.Replace(kNameEdit, what % 2 == 0 ? kBackup : kNewBackup);
    desk.Click(what % 8 == 7 ? IDCANCEL : IDOK);
  }

  Choices& choices_;
  int leaving_ = 0;
};

// The computer that all sheets are shown on, and what its printer has by turns.
struct Environment {
  std::unique_ptr<Machine> machine = NewComputer();
  const std::filesystem::path here = std::filesystem::current_path();
  const std::filesystem::path data = machine->HostPath(u"C:\\data");
  HMODULE module = nullptr;
  std::optional<support::Exports> exports;
  DriverSettingsBlock block = support::DefaultBlock();
  FontStore fonts = {};
  std::string backup;

  Environment() {
    const std::u16string folder = machine->driverDirectory() + u"\\3\\";
    machine->InstallModule(folder + u"QM610rDRV1.DLL", support::DriverModule());
    machine->InstallModule(folder + u"QM610rLIB.DLL", support::Built("QM610rLIB.so"));
    machine->InstallModule(folder + u"QM610rBAR.DLL", support::Built("QM610rBAR.so"));
    machine->SetInstalledFontFamilies({u"MS Gothic", u"Arial"});
    module = LoadLibraryW((folder + u"QM610rDRV1.DLL").c_str());
    exports.emplace(support::Exports{module});
    SetModuleInstance(module);
    for (WCHAR i = 0; i < kPaperCapacity; ++i) {
      block.Printer.Papers[i] = NewPaper();
      block.Printer.Papers[i].PaperName[0] = u'a' + i;
      block.Printer.Papers[i].UserDef = i % 2 == 0;
    }
    Require(LoadFontStore(fonts, OpenedPrinter().get(), GetProcessHeap()));
    for (WCHAR i = 0; i < kFontCapacity; ++i) {
      fonts.DecoFonts[i] = {{static_cast<WCHAR>(u'A' + i)}, kDecorativeFont, {}};
      fonts.BarFonts[i] = {{static_cast<WCHAR>(u'あ' + i)}, kBarcodeFont, {}};
    }
    constexpr uint8_t kCounts[] = {20, 30, 10};
    Choices counts{kCounts};
    StoreSettings(counts);
    Require(BackupFileTransfer(nullptr, kBackup, {block, fonts, kPrinter}, TransferDirection::kSave,
                               BACKUP_ALL));
    backup = machine->MemoryProfile(kBackup);
  }
  ~Environment() { std::fprintf(stderr, "%ld actions\n", RandomUser::actions); }

  // Stores papers and fonts, their numbers chosen by the bytes, and a damaged backup.
  void StoreSettings(Choices& choices) {
    machine->AddPrinter({.name = kPrinter});
    std::filesystem::remove_all(data);
    block.Printer.PaperNum = choices.Below(kPaperCapacity + 1);
    support::StoreBlock(*machine, block);
    fonts.DecoFontNum = choices.Below(kFontCapacity + 1);
    fonts.BarFontNum = choices.Below(kFontCapacity + 1 - fonts.DecoFontNum);
    Require(SaveFontStore(OpenedPrinter().get(), fonts));
    std::string damaged = backup;
    for (int changes = choices.Below(8); changes > 0; --changes)
      damaged[choices.Word() % damaged.size()] = static_cast<char>(choices.Byte());
    machine->WriteFile(kBackup, "");
    machine->SetMemoryProfile(kBackup, damaged);
    machine->SetMemoryProfile(kNewBackup, "");
  }

  void ShowSheet(Choices& choices) {
    const uint8_t how = choices.Byte();
    SettingsRecord output = {};
    DEVMODEW* const in = (how & 4) != 0 ? &block.Record.Public : nullptr;
    std::u16string name = kPrinter;
    const Printer printer = OpenedPrinter((how & 8) == 0);
    RandomUser user(choices);
    machine->desk().Attach(&user);
    constexpr DWORD kModes[] = {0, DM_USER_DEFAULT, DM_ADVANCED};
    LONG result = 0;
    if (how % 4 == 3)
      exports->PrinterProperties(nullptr, printer.get());
    else
      result = exports->DrvDocumentProperties(
          nullptr, printer.get(), name.data(), &output.Public, in,
          DM_COPY | DM_PROMPT | kModes[how % 4] | (in != nullptr ? DM_IN_BUFFER : 0u));
    machine->desk().Attach(nullptr);
    RethrowPendingException();
    RequireProcessorState();
    digests.records.Add(result);
    digests.records.AddBytes(std::as_bytes(std::span(&output, 1)));
    if (result != IDOK) return;
    Require(output.Private.Signature == SETTINGS_SIGNATURE);
    Require(Terminated(output.Private.FreePaper.PaperName));
    machine->SetDefaultRecord(kPrinter, support::BytesOf(output));
  }

  // Adds the contents of the spooler, the registry and the backup files.
  void AddStored(Digests& to) {
    to.stored.AddBytes(machine->DefaultRecord(kPrinter));
    for (const auto& values : {machine->AllData(kPrinter), machine->AllRegistry(u"")}) {
      for (const auto& [name, data] : values) {
        to.stored.AddAll(name, data.type);
        to.stored.AddBytes(data.bytes);
      }
    }
    for (const WCHAR* file : {kBackup, kNewBackup}) to.files.Add(machine->MemoryProfile(file));
  }

  // Returns the numbers of open handles and live objects.
  std::array<int, 7> Open() const {
    return {machine->OpenPrinterHandles(),
            machine->LiveAllocations(),
            machine->LiveHeaps(),
            machine->OpenModules(),
            machine->OpenRegistryKeys(),
            LiveGdiObjects(),
            LiveDcs()};
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Environment environment;
  Choices choices{{data, size}};
  environment.StoreSettings(choices);
  digests = {};
  const auto before = environment.Open();
  std::filesystem::current_path(environment.data);  // the folder of relative file names
  for (int sheets = 0; sheets < 4 && !choices.left.empty(); ++sheets) {
    environment.ShowSheet(choices);
    RequireSoundStore(*environment.machine);
    environment.AddStored(digests);
    environment.machine->SetMemoryProfile(kBackup, environment.machine->MemoryProfile(kBackup));
    Require(environment.machine->desk().ModalDepth() == 0 && environment.Open() == before);
  }
  std::filesystem::current_path(environment.here);
  return 0;
}

std::string LastRunDigests() {
  return "windows " + digests.windows.Text() + " records " + digests.records.Text() + " stored " +
         digests.stored.Text() + " files " + digests.files.Text();
}

long RandomUserActions() { return RandomUser::actions; }
