// Texts and icons of the common property-sheet library that modules name by id.
#include "platform/desktop/libraries/compstui.h"

namespace platform {

std::u16string CompstuiText(ULONG_PTR id) {
  switch (id) {
    case 64717:
      return u"プリンタ";
    default:
      return {};
  }
}

}  // namespace platform
