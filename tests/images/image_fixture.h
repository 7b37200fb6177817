// A fixture with a fresh computer that loads built images.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "platform/machine/machine.h"
#include "tests/support/bin_dir.h"

namespace support {

// An image that is hardened as the product's are, built beside the tests.
constexpr char kHardened[] = "../tests/hardened.dll";

class ImageTest : public testing::Test {
 protected:
  HMODULE Load(const std::string& file) {
    machine_->InstallModule(u"C:\\drivers\\image.dll", Built(file));
    return LoadLibraryW(u"C:\\drivers\\image.dll");
  }
  // Returns an exported function. Throws when the module does not export it.
  template <typename Function>
  static Function* Entry(HMODULE module, const char* name) {
    const FARPROC entry = GetProcAddress(module, name);
    if (entry == nullptr) throw std::runtime_error(name);
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(entry));
  }

  std::unique_ptr<platform::Machine> machine_ = platform::Machine::Create();
};

}  // namespace support
