// The module's activation context: pages created within one get version 6 of the common controls,
// as the module's manifest asks for. Windows 2000 has no such contexts, so their functions are
// found at run time; without them, or without the manifest, everything here does nothing.
#pragma once

#include <windows.h>

#include "driver/instance.h"
#include "driver/libraries.h"

namespace kestrel {

// Owns the context of the module's manifest.
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

  // Answers what a call answers that is made within the context.
  template <typename Call>
  auto Within(Call call) const {
    ULONG_PTR cookie = 0;
    const bool active = context_ != INVALID_HANDLE_VALUE && activate_(context_, &cookie);
    const auto answer = call();
    if (active) deactivate_(0, cookie);
    return answer;
  }

 private:
  Module kernel_;
  decltype(&ActivateActCtx) activate_ = nullptr;
  decltype(&DeactivateActCtx) deactivate_ = nullptr;
  decltype(&ReleaseActCtx) release_ = nullptr;
  HANDLE context_ = INVALID_HANDLE_VALUE;
};

}  // namespace kestrel
