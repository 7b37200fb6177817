// No exception leaves the Windows image or the native module.
#include "driver/handles.h"
#include "platform/machine/guard.h"
#include "tests/support/steps.h"
#include "tests/support/test_machine.h"

namespace {

using support::Exports;

// The shipped file for the machine of this process.
constexpr const char* kImage =
    sizeof(void*) == 8 ? "../../windows/x64/QM610rDRV1.dll" : "../../windows/x86/QM610rDRV1.dll";

class BothModules : public support::MachineTest {
 protected:
  HMODULE Load() {
    const std::u16string path = machine_->driverDirectory() + u"\\3\\image.dll";
    machine_->InstallModule(path, support::Built(kImage));
    return LoadLibraryW(path.c_str());
  }

  kestrel::Module image_{Load()};
  Exports ofImage_{image_.get()};
  support::OpenedPrinter printer_;
  std::u16string name_ = support::kPrinter;
};

struct ThrowingUser : platform::User {
  bool Act(platform::Desk&) override { throw std::runtime_error("a user's mistake"); }
};

LONG_PTR CALLBACK ThrowingHost(HANDLE, UINT, LPARAM, LPARAM) {
  throw std::runtime_error("a host's mistake");
}

TEST_F(BothModules, ExceptionOfCallbackIsRethrownAfterTheExport) {
  for (const Exports* module : {&exports_, &ofImage_}) {
    ThrowingUser user;
    const support::AttachedUser seat(user);
    EXPECT_EQ(
        module->DrvDocumentProperties(nullptr, printer_, name_.data(), nullptr, nullptr, DM_PROMPT),
        LONG{CPSUI_CANCEL});
    EXPECT_THROW(platform::RethrowPendingException(), std::runtime_error);

    DOCUMENTPROPERTYHEADER header = {sizeof header, 0,       printer_, name_.data(),
                                     nullptr,       nullptr, 0,        DM_PROMPT};
    const auto param = reinterpret_cast<LPARAM>(&header);
    PROPSHEETUI_INFO info = {sizeof info, 0, 0, 0, nullptr, platform::Guarded<ThrowingHost>::Call,
                             param,       0, 0};
    EXPECT_EQ(module->DrvDocumentPropertySheets(&info, param), -1);
    EXPECT_THROW(platform::RethrowPendingException(), std::runtime_error);
  }
}

}  // namespace
