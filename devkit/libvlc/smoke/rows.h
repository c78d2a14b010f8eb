// The rows. Each tests one known behaviour of libvlc 4 and has the name that the test uses.
#pragma once

#include <string>
#include <vector>

#include "vlc.h"

namespace smoke {

// The input of a row, and its findings.
struct Trial {
  const Vlc& vlc;
  void* instance;  // made with the host's arguments, so without waveout
  std::string server;
  std::string faults;
  std::string stats;  // file of VANTRO_LIBVLC_STATS
  std::vector<std::string> broken{};

  void Expect(bool held, const std::string& what) {
    if (!held) broken.push_back(what);
  }
  std::string Url(const char* name) const { return server + "/" + name; }
  std::string Fault(const char* name) const { return faults + "/" + name; }
};

struct Row {
  const char* name;
  void (*run)(Trial&);
  bool inEvents = true;
  bool inCallbacks = true;
};

std::vector<Row> InterfaceRows();
std::vector<Row> TransportRows();
std::vector<Row> SoundRows();
std::vector<Row> PictureRows();
std::vector<Row> TrackRows();

}  // namespace smoke
