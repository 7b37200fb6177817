// The Windows image and the native module answer alike, and neither lets an exception through.
#include <gtest/gtest.h>

#include <random>

#include "platform/system/guard.h"
#include "tests/support/bin_dir.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/settings.h"
#include "tests/support/test_machine.h"

namespace {

using support::kPrinter;
using Record = std::vector<std::byte>;

class BothModules : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
    const std::pair<const char16_t*, std::string> kFiles[] = {
        {u"native.dll", support::Built("QM610rDRV1.so")},
        {u"image.dll", support::Built("../../windows/x64/QM610rDRV1.dll")}};
    for (const auto& [name, file] : kFiles) {
      const std::u16string path = machine_->driverDirectory() + u"\\3\\" + name;
      machine_->InstallModule(path, file);
      modules_.push_back(LoadLibraryW(path.c_str()));
      ASSERT_NE(modules_.back(), nullptr) << file << ": " << GetLastError();
      ASSERT_TRUE(both_.emplace_back().Find(modules_.back()));
    }
    printer_.emplace();
  }
  void TearDown() override {
    printer_.reset();
    for (const HMODULE module : modules_) FreeLibrary(module);
    MachineTest::TearDown();
  }
  // Asks both modules the same; what one answers, sets as the last error and writes, so does the
  // other.
  template <typename Ask>
  void Compare(const std::string& what, Ask ask) {
    std::vector<std::vector<std::byte>> outputs;
    int64_t answers[2] = {};
    DWORD errors[2] = {};
    for (int i = 0; i < 2; ++i) {
      support::GuardedBuffer output(kRoom);
      std::fill_n(output.data(), kRoom, std::byte{0xCD});
      SetLastError(77);
      answers[i] = static_cast<int64_t>(ask(both_[static_cast<size_t>(i)], output.data()));
      errors[i] = GetLastError();
      outputs.push_back(support::BytesOf(output.data(), kRoom));
    }
    ++compared_;
    EXPECT_EQ(answers[0], answers[1]) << what;
    EXPECT_EQ(errors[0], errors[1]) << what;
    EXPECT_TRUE(outputs[0] == outputs[1]) << what;
  }

  static constexpr size_t kRoom = 21 * 128;
  std::vector<HMODULE> modules_;
  std::vector<support::Exports> both_;
  std::optional<support::OpenedPrinter> printer_;
  std::u16string name_ = kPrinter;
  int compared_ = 0;
};

// The driver's own record, whole, cut, with fields at random, and bytes of no meaning; each as long
// as it says of itself.
std::vector<Record> Records() {
  const auto block = support::DefaultBlock();
  const Record own = support::BytesOf(&block.Record, sizeof(block.Record));
  std::vector<Record> records = {own};
  std::minstd_rand random(610);
  for (int i = 0; i < 400; ++i) {
    Record record = own;
    const int kind = i % 4;
    for (auto changes = random() % 12; changes > 0; --changes) {
      support::Put<uint16_t>(record.data(), random() % 225 * 2, static_cast<uint16_t>(random()));
    }
    if (kind == 1) {
      for (std::byte& each : record) each = static_cast<std::byte>(random());
    }
    const size_t size = kind >= 2 ? 76 + random() % 145 : 220;
    support::Put(record.data(), 68, static_cast<uint16_t>(size));
    support::Put(record.data(), 70, static_cast<uint16_t>(kind == 3 ? 0 : record.size() - size));
    if (kind == 3) record.resize(size);
    records.push_back(record);
  }
  return records;
}

TEST_F(BothModules, AnswerAlike) {
  const auto capabilities = [&](const std::string& what, WORD index, DEVMODEW* record) {
    Compare(what + " capability " + std::to_string(index), [&](auto& module, void* output) {
      return module.DrvDeviceCapabilities(*printer_, name_.data(), index, output, record);
    });
  };
  for (WORD index = 0; index < 64; ++index) capabilities("no record,", index, nullptr);
  for (const WORD index : {WORD{0x7FFF}, WORD{0xFFFF}}) capabilities("no record,", index, nullptr);
  int number = 0;
  for (const Record& bytes : Records()) {
    const support::GuardedBuffer given(bytes.size());
    std::copy(bytes.begin(), bytes.end(), given.data());
    auto* const record = given.As<DEVMODEW>();
    const std::string what = "record " + std::to_string(number++);
    for (const WORD index : {DC_FIELDS, DC_PAPERS, DC_SIZE, DC_ORIENTATION, DC_MEDIAREADY})
      capabilities(what, index, record);
    for (const DWORD mode : {CDM_CONVERT, CDM_CONVERT351, CDM_DRIVER_DEFAULT}) {
      Compare(what + " convert", [&](auto& module, std::byte* output) {
        LONG size = 452;
        const BOOL done = module.DrvConvertDevMode(
            name_.data(), record, reinterpret_cast<DEVMODEW*>(output), &size, mode);
        return int64_t{size} << 8 | done;
      });
    }
    for (const DWORD mode : {DWORD{0}, DM_COPY, DM_COPY | DM_MODIFY, DM_MODIFY}) {
      Compare(what + " resolve", [&](auto& module, std::byte* output) {
        return module.DrvDocumentProperties(nullptr, *printer_, name_.data(),
                                            reinterpret_cast<DEVMODEW*>(output), record, mode);
      });
    }
    Compare(what + " names", [&](auto& module, void* output) {
      return module.DrvSplDeviceCaps(*printer_, name_.data(), DC_MEDIAREADY, output, 128, record);
    });
    Compare(what + " attributes", [&](auto& module, std::byte* output) {
      return module.DrvQueryJobAttributes(*printer_, record, 4, reinterpret_cast<BYTE*>(output)) +
             module.DevQueryPrint(*printer_, record, reinterpret_cast<DWORD*>(output + 64));
    });
    Compare(what + " profile", [&](auto& module, std::byte* output) {
      ULONG size = 64, flags = 0;
      const BOOL done = module.DrvQueryColorProfile(*printer_, record, 1, output, &size, &flags);
      return int64_t{size} << 16 | flags << 8 | static_cast<ULONG>(done);
    });
  }
  // Sheets are cancelled at once: nobody is at the desk.
  for (int event = -1; event < 16; ++event) {
    Compare("event " + std::to_string(event), [&](auto& module, std::byte* output) {
      auto* const record = reinterpret_cast<DEVMODEW*>(output);
      DEVQUERYPRINT_INFO query = {};
      query.cbSize = static_cast<WORD>(event);
      return int64_t{module.DrvPrinterEvent(name_.data(), event, 0, 0)} << 40 |
             module.DrvUpgradePrinter(static_cast<DWORD>(event), nullptr) << 20 |
             module.DevQueryPrintEx(&query) << 16 |
             (module.DrvDocumentEvent(*printer_, nullptr, event, 0, nullptr, 8, output) & 15)
                 << 12 |
             (module.DrvAdvancedDocumentProperties(nullptr, *printer_, name_.data(), record,
                                                   nullptr) &
              15) << 8 |
             (module.PrinterProperties(nullptr, *printer_) & 15) << 4 |
             (module.DrvDevicePropertySheets(nullptr, event) & 15);
    });
  }
  EXPECT_EQ(compared_, 66 + 401 * 15 + 17);
}

struct ThrowingUser : platform::User {
  bool Act(platform::Desk&) override { throw std::runtime_error("a person's mistake"); }
};

LONG_PTR CALLBACK ThrowingHost(HANDLE, UINT, LPARAM, LPARAM) {
  throw std::runtime_error("a host's mistake");
}

TEST_F(BothModules, TellOfExceptionsOnceTheyHaveReturned) {
  for (auto& module : both_) {
    ThrowingUser user;
    desk().Attach(&user);
    EXPECT_EQ(
        module.DrvDocumentProperties(nullptr, *printer_, name_.data(), nullptr, nullptr, DM_PROMPT),
        LONG{CPSUI_CANCEL});
    EXPECT_EQ(desk().ModalDepth(), 0);
    desk().Attach(nullptr);
    EXPECT_THROW(platform::RethrowKept(), std::runtime_error);

    DOCUMENTPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = *printer_;
    header.pszPrinterName = name_.data();
    header.fMode = DM_PROMPT;
    PROPSHEETUI_INFO info = {};
    info.cbSize = sizeof(info);
    info.Version = PROPSHEETUI_INFO_VERSION;
    info.Flags = PSUIINFO_UNICODE;
    info.lParamInit = reinterpret_cast<LPARAM>(&header);
    info.pfnComPropSheet = platform::Guarded<ThrowingHost>::Call;
    EXPECT_EQ(module.DrvDocumentPropertySheets(&info, info.lParamInit), -1);
    EXPECT_THROW(platform::RethrowKept(), std::runtime_error);
    EXPECT_NO_THROW(platform::RethrowKept());
  }
}

}  // namespace
