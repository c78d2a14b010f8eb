// Switches the host's log on when VANTRO_LOOPBACK_LOG=1. The host exports the switch but never sets it, so a black-box
// run gets a log only this way. It happens while the process loads, before the host's first log line.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  char value[8] = "";
  if (GetEnvironmentVariableA("VANTRO_LOOPBACK_LOG", value, sizeof value) == 0 || value[0] != '1') return TRUE;
  const auto symbol = GetProcAddress(GetModuleHandleW(nullptr), "debugLoggingEnabled");
  if (auto* enabled = reinterpret_cast<volatile char*>(symbol)) *enabled = 1;
  return TRUE;
}
