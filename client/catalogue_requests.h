// The requests that read or change catalogues, list processors and stylesheet parameters. A request that lacks a
// required option gets an empty reply.
#ifndef CLIENT_CATALOGUE_REQUESTS_H
#define CLIENT_CATALOGUE_REQUESTS_H

#include "kit/values.h"
#include "processors/processor.h"

#include <string_view>

namespace client {

// "-appname": VlDispatcher's reply, unchanged.
[[nodiscard]] kit::TypedValues AnswerTransformationFile(std::string_view text, processors::Processor &);
// "-trfile", "-trname": that transformation; without a name all of the file.
[[nodiscard]] kit::TypedValues AnswerTransformations(std::string_view text, processors::Processor &);
// "-trfile", "-trname": one integer, 1 saved, 0 failed, 2 stopped.
[[nodiscard]] kit::TypedValues AnswerDelete(std::string_view text, processors::Processor &);

// Beyond what other clients ask for, for hosts without dialogs:

// "-trfile" and the fields of a transformation as options: the integer of AnswerDelete, then the log.
[[nodiscard]] kit::TypedValues AnswerAdd(std::string_view text, processors::Processor &);
// The same; "-trname" names the transformation that is replaced.
[[nodiscard]] kit::TypedValues AnswerEdit(std::string_view text, processors::Processor &);
// "-xslfilepath": one list, name and default expression alternately.
[[nodiscard]] kit::TypedValues AnswerStylesheetParameters(std::string_view text, processors::Processor &);
// Per processor one nested list: name, class path, class name, implementation, version, location, error.
[[nodiscard]] kit::TypedValues AnswerProcessors(std::string_view text, processors::Processor &);

} // namespace client

#endif
