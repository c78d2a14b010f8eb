// GDI+ through its flat functions, with owning types for the objects that the volume slider and the speaker icon use.
#pragma once

#include <windows.h>
// After windows.h: GDI+ needs COM's types, which the lean windows.h leaves out.
#include <objidl.h>
// After both.
#include <gdiplus.h>

#include "shell/scoped_handles.h"

namespace vantro {

using ScopedGraphics = ScopedHandle<Gdiplus::GpGraphics*, Gdiplus::DllExports::GdipDeleteGraphics>;
using ScopedGdiplusPen = ScopedHandle<Gdiplus::GpPen*, Gdiplus::DllExports::GdipDeletePen>;
using ScopedGdiplusFill = ScopedHandle<Gdiplus::GpSolidFill*, Gdiplus::DllExports::GdipDeleteBrush>;
using ScopedImage = ScopedHandle<Gdiplus::GpImage*, Gdiplus::DllExports::GdipDisposeImage>;

}  // namespace vantro
