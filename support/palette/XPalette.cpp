#include "support/palette/XPalette.h"

#include "support/DebugLog.h"
#include "support/palette/PaletteEntries.h"

namespace scenedetect {
namespace {

constexpr int kMostStaticColours = 256;

Object* CreateXPalette() {
    return new XPalette;
}

const RuntimeClassRegistration g_registration(XPalette::kRuntimeClass);

PaletteEntries SystemEntries(HDC dc) {
    PALETTEENTRY none{};
    const int size = GetDeviceCaps(dc, SIZEPALETTE);
    PaletteEntries entries(size > 0 ? static_cast<std::size_t>(size) : 0, none);
    GetSystemPaletteEntries(dc, 0, static_cast<UINT>(entries.size()), entries.data());
    return entries;
}

} // namespace

const RuntimeClass XPalette::kRuntimeClass = {"XPalette", sizeof(XPalette), 0xFFFF, CreateXPalette,
                                              &Object::kRuntimeClass};

bool XPalette::CreateLogged(std::span<const PALETTEENTRY> entries) {
    if (CreatePalette(entries))
        return true;
    DebugPrint(L"XPalette - could not create palette\n");
    return false;
}

bool XPalette::CreateFromDib(const Dib& dib) {
    return CreateLogged(EntriesOf(dib));
}

bool XPalette::CreateGreyRamp(std::int32_t count) {
    return CreateLogged(GreyRampEntries(count));
}

std::uint32_t XPalette::SetSystemPalette(HDC dc, bool simple) {
    const auto realize = [dc] {
        const UINT count = RealizePalette(dc);
        return count == static_cast<UINT>(GDI_ERROR) ? 0 : std::uint32_t{count};
    };
    if (simple) {
        SelectPalette(dc, Handle(), FALSE);
        return realize();
    }
    if ((GetDeviceCaps(dc, RASTERCAPS) & RC_PALETTE) == 0)
        return 0;
    const int staticColours = GetDeviceCaps(dc, NUMCOLORS);
    if (staticColours > kMostStaticColours) {
        DebugPrint(L"XPalette::SetSystemPalette() - too many palette colors\n");
        return 0;
    }
    // There and back: the system sets its static entries anew.
    SetSystemPaletteUse(dc, SYSPAL_NOSTATIC);
    SetSystemPaletteUse(dc, SYSPAL_STATIC);
    const HPALETTE previous = SelectPalette(dc, Handle(), FALSE);
    const std::uint32_t realized = realize();
    SelectPalette(dc, previous, FALSE);

    PaletteEntries entries = SystemEntries(dc);
    MarkMiddleEntries(entries, staticColours);
    Replace(entries);
    return realized;
}

void XPalette::CreateGreyScalePalette(HDC dc, std::int32_t maxGreys) {
    const int staticColours = GetDeviceCaps(dc, NUMCOLORS);
    if (staticColours > kMostStaticColours) {
        DebugPrint(L"XPalette::CreateGreyScalePalette() - too many palette colors\n");
        return;
    }
    PaletteEntries entries = SystemEntries(dc);
    if (FillGreyScale(entries, staticColours, maxGreys))
        Replace(entries);
}

} // namespace scenedetect
