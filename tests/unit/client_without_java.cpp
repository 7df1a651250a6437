// The processors of a client that starts no Java.
#include "client/chosen_processor.h"
#include "tests/unit/fake_processor.h"

processors::Processor &client::ChosenProcessor() {
  static FakeProcessor processor;
  return processor;
}
