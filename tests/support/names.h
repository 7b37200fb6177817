// Names that tests agree on.
#pragma once

namespace support {

constexpr char16_t kPrinter[] = u"Label Printer";
constexpr char16_t kModuleFile[] = u"QM610rDRV1.DLL";

}  // namespace support
