#include "files/settings_keys.h"

namespace kestrel {
namespace {

constexpr SettingsKey kRequiredDriverKeys[] = {
    {"PaperID", offsetof(PrivateDevMode, PaperID)},
    {"Copies", offsetof(PrivateDevMode, Copies)},
    {"VerticalBase", offsetof(PrivateDevMode, nVertBase)},
    {"HorizonBase", offsetof(PrivateDevMode, nHorzBase)},
    {"Orient", offsetof(PrivateDevMode, Orient)},
    {"Flip", offsetof(PrivateDevMode, nFlip)},
    {"PeelOffset", offsetof(PrivateDevMode, nPeelOffset)},
    {"TearOffset", offsetof(PrivateDevMode, nTearOffset)},
    {"PitchOffset", offsetof(PrivateDevMode, nPitchOffset)},
    {"PrintSpeed", offsetof(PrivateDevMode, nPrintSpeed)},
    {"SensorKind", offsetof(PrivateDevMode, nSensor)},
    {"MoveMode", offsetof(PrivateDevMode, nMoveMode)},
    {"Dither", offsetof(PrivateDevMode, Dither)},
    {"ColorText", offsetof(PrivateDevMode, nColorText)},
};

constexpr SettingsKey kPaperKeys[] = {
    {"PaperKind", offsetof(PaperInfo, PaperKind)},
    {"Thickness", offsetof(PaperInfo, Thickness)},
    {"LabelWidth", offsetof(PaperInfo, LabelWidth)},
    {"LabelHeight", offsetof(PaperInfo, LabelHeight)},
    {"GapSize", offsetof(PaperInfo, GapSize)},
    {"EyeMarkSize", offsetof(PaperInfo, EyeMarkSize)},
    {"Unit", offsetof(PaperInfo, Unit)},
    {"PrintableLeft", offsetof(PaperInfo, PrintableLeft)},
    {"PrintableTop", offsetof(PaperInfo, PrintableTop)},
    {"PrintableWidth", offsetof(PaperInfo, PrintableWidth)},
    {"PrintableHeight", offsetof(PaperInfo, PrintableHeight)},
    {"Yoshi", offsetof(PaperInfo, Yoshi)},
    {"UserDef", offsetof(PaperInfo, UserDef)},
};

constexpr SettingsKey kDeviceKeys[] = {
    {"HeadDensity", offsetof(PrinterSettingsPart, HeadDensity)},
    {"Mecha", offsetof(PrinterSettingsPart, Mecha)},
};

constexpr SettingsKey kHalftoneKeys[] = {
    {"HTInfo.HalfToneFlags", offsetof(DEVHTINFO, HTFlags)},
    {"HTInfo.HalfTonePatternSize", offsetof(DEVHTINFO, HTPatternSize)},
    {"HTInfo.DevPelsDPI", offsetof(DEVHTINFO, DevPelsDPI)},
};

constexpr size_t ColorOffset(size_t member) { return offsetof(DEVHTINFO, ColorInfo) + member; }

constexpr SettingsKey kChromaticityKeys[] = {
    {"HTInfo.ColorInfo.Red", ColorOffset(offsetof(COLORINFO, Red))},
    {"HTInfo.ColorInfo.Green", ColorOffset(offsetof(COLORINFO, Green))},
    {"HTInfo.ColorInfo.Blue", ColorOffset(offsetof(COLORINFO, Blue))},
    {"HTInfo.ColorInfo.Cyan", ColorOffset(offsetof(COLORINFO, Cyan))},
    {"HTInfo.ColorInfo.Magenta", ColorOffset(offsetof(COLORINFO, Magenta))},
    {"HTInfo.ColorInfo.Yellow", ColorOffset(offsetof(COLORINFO, Yellow))},
    {"HTInfo.ColorInfo.AlignmentWhite", ColorOffset(offsetof(COLORINFO, AlignmentWhite))},
};

constexpr SettingsKey kGammaKeys[] = {
    {"HTInfo.ColorInfo.RedGamma", ColorOffset(offsetof(COLORINFO, RedGamma))},
    {"HTInfo.ColorInfo.GreenGamma", ColorOffset(offsetof(COLORINFO, GreenGamma))},
    {"HTInfo.ColorInfo.BlueGamma", ColorOffset(offsetof(COLORINFO, BlueGamma))},
    {"HTInfo.ColorInfo.MagentaInCyanDye", ColorOffset(offsetof(COLORINFO, MagentaInCyanDye))},
    {"HTInfo.ColorInfo.YellowInCyanDye", ColorOffset(offsetof(COLORINFO, YellowInCyanDye))},
    {"HTInfo.ColorInfo.CyanInMagentaDye", ColorOffset(offsetof(COLORINFO, CyanInMagentaDye))},
    {"HTInfo.ColorInfo.YellowInMagentaDye", ColorOffset(offsetof(COLORINFO, YellowInMagentaDye))},
    {"HTInfo.ColorInfo.CyanInYellowDye", ColorOffset(offsetof(COLORINFO, CyanInYellowDye))},
    {"HTInfo.ColorInfo.MagentaInYellowDye", ColorOffset(offsetof(COLORINFO, MagentaInYellowDye))},
};

constexpr SettingsKey kColorAdjustKeys[] = {
    {"ColorAdjust.Size", offsetof(COLORADJUSTMENT, caSize)},
    {"ColorAdjust.Flags", offsetof(COLORADJUSTMENT, caFlags)},
    {"ColorAdjust.IlluminantIndex", offsetof(COLORADJUSTMENT, caIlluminantIndex)},
    {"ColorAdjust.RedGamma", offsetof(COLORADJUSTMENT, caRedGamma)},
    {"ColorAdjust.GreenGamma", offsetof(COLORADJUSTMENT, caGreenGamma)},
    {"ColorAdjust.BlueGamma", offsetof(COLORADJUSTMENT, caBlueGamma)},
    {"ColorAdjust.ReferenceBlack", offsetof(COLORADJUSTMENT, caReferenceBlack)},
    {"ColorAdjust.ReferenceWhite", offsetof(COLORADJUSTMENT, caReferenceWhite)},
    {"ColorAdjust.Contrast", offsetof(COLORADJUSTMENT, caContrast)},
    {"ColorAdjust.Brightness", offsetof(COLORADJUSTMENT, caBrightness)},
    {"ColorAdjust.Colorfulness", offsetof(COLORADJUSTMENT, caColorfulness)},
    {"ColorAdjust.RedGreenTint", offsetof(COLORADJUSTMENT, caRedGreenTint)},
};

}  // namespace

SettingsKeys RequiredDriverKeys() { return kRequiredDriverKeys; }
SettingsKeys PaperKeys() { return kPaperKeys; }
SettingsKeys DeviceKeys() { return kDeviceKeys; }
SettingsKeys HalftoneKeys() { return kHalftoneKeys; }
SettingsKeys ChromaticityKeys() { return kChromaticityKeys; }
SettingsKeys HalftoneGammaKeys() { return kGammaKeys; }
SettingsKeys ColorAdjustKeys() { return kColorAdjustKeys; }

}  // namespace kestrel
