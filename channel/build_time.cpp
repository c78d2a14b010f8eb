// In its own file, because its object is the only one whose bytes change from build to build.
#include "channel/build_time.h"

namespace vantro {

const char* BuildTime() { return __DATE__ " " __TIME__; }

}  // namespace vantro
