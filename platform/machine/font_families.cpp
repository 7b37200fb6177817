#include "platform/machine/font_families.h"

#include <fontconfig/fontconfig.h>

#include <set>

#include "platform/machine/text.h"

namespace platform {

std::vector<std::u16string> SystemFontFamilies() {
  std::set<std::u16string> families;
  // A configuration of its own, so that all of its memory is released.
  FcConfig* config = FcInitLoadConfigAndFonts();
  if (config == nullptr) return {};
  FcPattern* pattern = FcPatternCreate();
  FcObjectSet* wanted = FcObjectSetBuild(FC_FAMILY, nullptr);
  FcFontSet* fonts = FcFontList(config, pattern, wanted);
  for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) {
    FcChar8* family = nullptr;
    for (int n = 0; FcPatternGetString(fonts->fonts[i], FC_FAMILY, n, &family) == FcResultMatch;
         ++n) {
      families.insert(ToUtf16(reinterpret_cast<const char*>(family)));
    }
  }
  if (fonts != nullptr) FcFontSetDestroy(fonts);
  FcObjectSetDestroy(wanted);
  FcPatternDestroy(pattern);
  FcConfigDestroy(config);
  return {families.begin(), families.end()};
}

}  // namespace platform
