// The activation context of the module's manifest. Pages created while it is active use version 6
// of the common controls. Windows 2000 has no activation contexts, so their functions are loaded at
// run time; without them or without the manifest, pages use the default version.
#pragma once

#include <windows.h>

#include "driver/instance.h"
#include "driver/libraries.h"

namespace kestrel {

// Creates the context of the module's manifest, and releases it in the destructor.
class ActivationContext {
 public:
  ActivationContext() : kernel_(LoadSystemLibrary(TEXT("kernel32.dll"))) {
    if (!kernel_) return;
    const auto create = EntryPoint<decltype(&CreateActCtxW)>(kernel_.get(), "CreateActCtxW");
    activate_ = EntryPoint<decltype(&ActivateActCtx)>(kernel_.get(), "ActivateActCtx");
    deactivate_ = EntryPoint<decltype(&DeactivateActCtx)>(kernel_.get(), "DeactivateActCtx");
    release_ = EntryPoint<decltype(&ReleaseActCtx)>(kernel_.get(), "ReleaseActCtx");
    if (!create || !activate_ || !deactivate_ || !release_) return;
    ACTCTXW request = {};
    request.cbSize = sizeof(request);
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.lpResourceName = ISOLATIONAWARE_MANIFEST_RESOURCE_ID;
    request.hModule = ModuleInstance();
    context_ = create(&request);
  }
  ~ActivationContext() {
    if (context_ != INVALID_HANDLE_VALUE) release_(context_);
  }
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;

  // Calls call() while the context is active and returns its result.
  template <typename Call>
  auto CallWithin(Call call) const {
    ULONG_PTR cookie = 0;
    const bool active = context_ != INVALID_HANDLE_VALUE && activate_(context_, &cookie);
    const auto result = call();
    if (active) deactivate_(0, cookie);
    return result;
  }

 private:
  Module kernel_;
  decltype(&ActivateActCtx) activate_ = nullptr;
  decltype(&DeactivateActCtx) deactivate_ = nullptr;
  decltype(&ReleaseActCtx) release_ = nullptr;
  HANDLE context_ = INVALID_HANDLE_VALUE;
};

}  // namespace kestrel
