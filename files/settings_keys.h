// The sections and keys of settings in the backup file and the set-up file.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "driver/settings_block.h"

namespace kestrel {

constexpr WCHAR kVersionSection[] = TEXT("ﾊﾞｰｼﾞｮﾝ情報");
constexpr WCHAR kDriverSection[] = TEXT("ﾄﾞﾗｲﾊﾞ情報");
constexpr WCHAR kFreePaperSection[] = TEXT("ﾌﾘｰｻｲｽﾞ用紙");
constexpr WCHAR kDeviceSection[] = TEXT("ﾃﾞﾊﾞｲｽ情報");
constexpr WCHAR kHalftoneSection[] = TEXT("ﾊｰﾌﾄｰﾝ情報");
constexpr WCHAR kPaperNumSection[] = TEXT("用紙登録数");
constexpr WCHAR kDecoNumSection[] = TEXT("装飾ﾌｫﾝﾄ登録数");
constexpr WCHAR kBarNumSection[] = TEXT("ﾊﾞｰｺｰﾄﾞﾌｫﾝﾄ登録数");
constexpr WCHAR kSyncSection[] = TEXT("同期印刷");

// A key and the offset of its field in the record that the table belongs to.
struct SettingsKey {
  const char* name;
  size_t offset;
};
using SettingsKeys = std::span<const SettingsKey>;

// 16-bit fields of a PrivateDevMode in the order of a save: the ones that a backup must contain,
// then two that have their own defaults when a file lacks them.
SettingsKeys RequiredDriverKeys();
constexpr SettingsKey kCompulsoryKey = {"CompulsorySet", offsetof(PrivateDevMode, nCompulsory)};
constexpr SettingsKey kPositionKey = {"Position", offsetof(PrivateDevMode, Position)};
// 16-bit fields of a PaperInfo; its name precedes them.
SettingsKeys PaperKeys();
// 16-bit fields of a PrinterSettingsPart.
SettingsKeys DeviceKeys();
// Fields of a DEVHTINFO, in this order: 32 bits each, chromaticity triples (three 32-bit values
// each), 32 bits each.
SettingsKeys HalftoneKeys();
SettingsKeys ChromaticityKeys();
SettingsKeys HalftoneGammaKeys();
// 16-bit fields of a COLORADJUSTMENT.
SettingsKeys ColorAdjustKeys();

// Returns the address of a key's field in a record.
inline void* FieldOf(void* record, const SettingsKey& key) {
  return static_cast<uint8_t*>(record) + key.offset;
}

}  // namespace kestrel
