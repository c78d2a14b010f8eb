// The scripted libvlccore.dll: loaded by the host, never called.
extern "C" int ScriptedCorePresent() { return 1; }
