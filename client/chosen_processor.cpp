#include "client/chosen_processor.h"

#include "processors/java/java_processors.h"

processors::Processor &client::ChosenProcessor() { return VLXSLT::GetXSLTManagedLayerInstance(); }
