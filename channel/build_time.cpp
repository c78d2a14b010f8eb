// A file of its own: it is the only object whose bytes change from build to build.
#include "channel/build_time.h"

namespace vantro {

const char* BuildTime() { return __DATE__ " " __TIME__; }

}  // namespace vantro
