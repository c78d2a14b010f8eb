// The scripted libvlccore.dll. The host loads it and never calls it.
extern "C" int ScriptedCorePresent() { return 1; }
