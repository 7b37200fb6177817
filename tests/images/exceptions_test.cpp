// Neither the Windows image nor the native module lets an exception through.
#include "driver/handles.h"
#include "platform/system/guard.h"
#include "tests/support/bin_dir.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace {

struct ThrowingUser : platform::User {
  bool Act(platform::Desk&) override { throw std::runtime_error("a person's mistake"); }
};

LONG_PTR CALLBACK ThrowingHost(HANDLE, UINT, LPARAM, LPARAM) {
  throw std::runtime_error("a host's mistake");
}

class Exceptions : public support::MachineTest {};

TEST_F(Exceptions, AreToldOnceTheModuleHasReturned) {
  const std::u16string path = machine_->driverDirectory() + u"\\3\\image.dll";
  machine_->InstallModule(path, support::Built("../../windows/x64/QM610rDRV1.dll"));
  const kestrel::Module image(LoadLibraryW(path.c_str()));
  ASSERT_TRUE(image) << GetLastError();
  support::Exports ofImage{image.get()};
  const support::OpenedPrinter printer;
  std::u16string name = support::kPrinter;
  for (const auto* module : {&exports_, &ofImage}) {
    ThrowingUser user;
    const support::Seat seat(user);
    EXPECT_EQ(
        module->DrvDocumentProperties(nullptr, printer, name.data(), nullptr, nullptr, DM_PROMPT),
        LONG{CPSUI_CANCEL});
    EXPECT_THROW(platform::RethrowKept(), std::runtime_error);

    DOCUMENTPROPERTYHEADER header = {sizeof header, 0,       printer, name.data(),
                                     nullptr,       nullptr, 0,       DM_PROMPT};
    const auto param = reinterpret_cast<LPARAM>(&header);
    PROPSHEETUI_INFO info = {sizeof info, 0, 0, 0, nullptr, platform::Guarded<ThrowingHost>::Call,
                             param,       0, 0};
    EXPECT_EQ(module->DrvDocumentPropertySheets(&info, param), -1);
    EXPECT_THROW(platform::RethrowKept(), std::runtime_error);
  }
}

}  // namespace
