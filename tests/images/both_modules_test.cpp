// No exception leaves the Windows image or the native module.
#include "driver/handles.h"
#include "platform/machine/guard.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace support {
namespace {

struct ThrowingUser : platform::User {
  bool Act(Desk&) override { throw std::runtime_error("a user's mistake"); }
};

LONG_PTR CALLBACK ThrowingHost(HANDLE, UINT, LPARAM, LPARAM) {
  throw std::runtime_error("a host's mistake");
}

TEST_F(MachineTest, ExceptionOfCallbackIsRethrownAfterTheExport) {
  const std::string image =
      std::string("../../windows/") + (sizeof(void*) == 8 ? "x64" : "x86") + "/QM610rDRV1.dll";
  const std::u16string path = machine().driverDirectory() + u"\\3\\image.dll";
  machine().InstallModule(path, Built(image));
  const kestrel::Module shipped(LoadLibraryW(path.c_str()));
  const Exports exportsOfImage(shipped.get());
  const OpenedPrinter printer;
  std::u16string name = kPrinter;
  const Exports* const modules[] = {&exports_, &exportsOfImage};
  for (const Exports* module : modules) {
    ThrowingUser user;
    const AttachedUser seat(user);
    EXPECT_EQ(
        module->DrvDocumentProperties(nullptr, printer, name.data(), nullptr, nullptr, DM_PROMPT),
        LONG{CPSUI_CANCEL});
    EXPECT_THROW(platform::RethrowPendingException(), std::runtime_error);
    DOCUMENTPROPERTYHEADER header = {sizeof header, 0,       printer, name.data(),
                                     nullptr,       nullptr, 0,       DM_PROMPT};
    const auto param = reinterpret_cast<LPARAM>(&header);
    PROPSHEETUI_INFO info = {sizeof info, 0, 0, 0, nullptr, platform::Guarded<ThrowingHost>::Call,
                             param,       0, 0};
    EXPECT_EQ(module->DrvDocumentPropertySheets(&info, param), -1);
    EXPECT_THROW(platform::RethrowPendingException(), std::runtime_error);
  }
}

}  // namespace
}  // namespace support
