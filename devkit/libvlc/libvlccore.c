// The host only checks that this library exists. libvlc.dll uses the core of the native libvlc.
__declspec(dllexport) const char vantro_devlib_core[] = "core of the development library over libvlc 3";
