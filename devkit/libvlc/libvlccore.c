// The host only asks that this library is there; everything of libvlc's core is on the other side of libvlc.dll.
__declspec(dllexport) const char vantro_devlib_core[] = "core of the development library over libvlc 3";
