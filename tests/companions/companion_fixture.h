// A fresh machine with the companion libraries in its driver directory.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/desk.h"
#include "platform/machine.h"
#include "tests/support/bin_dir.h"

class CompanionTest : public testing::Test {
 protected:
  // Loads a companion from where the driver looks for it.
  HMODULE Load(const char* name) {
    const std::u16string file(name, name + std::char_traits<char>::length(name));
    const std::u16string path = machine_->driverDirectory() + u"\\3\\" + file + u".DLL";
    machine_->InstallModule(path, support::Built(std::string(name) + ".so"));
    module_ = LoadLibraryW(path.c_str());
    return module_;
  }

  template <typename Proc>
  Proc Entry(const std::string& name) {
    const FARPROC found = GetProcAddress(module_, name.c_str());
    EXPECT_NE(found, nullptr) << name;
    return reinterpret_cast<Proc>(reinterpret_cast<void*>(found));
  }

  void TearDown() override {
    if (module_) FreeLibrary(module_);
    EXPECT_EQ(machine_->OpenModules(), 0);
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
  HMODULE module_ = nullptr;
};
