// The processors that run in a Java virtual machine inside this process, for the entry points that put the client
// together.
#ifndef PROCESSORS_JAVA_JAVA_PROCESSORS_H
#define PROCESSORS_JAVA_JAVA_PROCESSORS_H

#include "processors/processor.h"

namespace VLXSLT {

// The only one of the process; starts no Java by itself.
[[nodiscard]] processors::Processor &GetXSLTManagedLayerInstance();

} // namespace VLXSLT

#endif
