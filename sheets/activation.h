// The module's activation context: pages created within one get version 6 of the common controls,
// as the module's manifest asks for.
#pragma once

#include <windows.h>

#include "driver/instance.h"

namespace kestrel {

// Activates the context of the module's manifest for as long as it lives. Without the context (an
// older system, a module without a manifest) it does nothing.
class ActivationScope {
 public:
  ActivationScope() {
    ACTCTXW request = {};
    request.cbSize = sizeof(request);
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.lpResourceName = ISOLATIONAWARE_MANIFEST_RESOURCE_ID;
    request.hModule = ModuleInstance();
    context_ = CreateActCtxW(&request);
    if (context_ == INVALID_HANDLE_VALUE) return;
    active_ = ActivateActCtx(context_, &cookie_) != FALSE;
  }
  ~ActivationScope() {
    if (active_) DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
  }
  ActivationScope(const ActivationScope&) = delete;
  ActivationScope& operator=(const ActivationScope&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

}  // namespace kestrel
