// The requests that read or change catalogues, list processors and stylesheet parameters. A request that lacks a
// required option gets an empty reply.
#ifndef CLIENT_CATALOGUE_REQUESTS_H
#define CLIENT_CATALOGUE_REQUESTS_H

#include "kit/values.h"
#include "processors/processor.h"

#include <string_view>

namespace client {

// "-appname": VlDispatcher's reply as it is.
[[nodiscard]] kit::TypedValues AnswerTransformationFile(std::string_view text, processors::Processor &);
// "-trfile", "-trname": that transformation; without a name all of the file.
[[nodiscard]] kit::TypedValues AnswerTransformations(std::string_view text, processors::Processor &);
// "-trfile", "-trname": one integer, 1 saved, 0 failed, 2 stopped.
[[nodiscard]] kit::TypedValues AnswerDelete(std::string_view text, processors::Processor &);

// Beyond what other clients ask for, for hosts without dialogs:

// Each of these takes its options as a JSON array of strings too; see kit/request_words.h.

// "-trfile", "-trname": per transformation one list of texts for people: name, stylesheet, processor, where the output
// goes, how it opens; with "-records" the transformations themselves. V_ERROR_FAILED when the file is no catalogue that
// can be read, which is reported.
[[nodiscard]] kit::TypedValues AnswerListing(std::string_view text, processors::Processor &);
// "-trfile" and the fields of a transformation as options, without a processor the default one: the integer of
// AnswerDelete, then the log. V_ERROR_BAD_REQUEST when an option cannot be applied, or there is no name. A file that is
// no valid catalogue is kept; with "-replace" the person is asked whether it may be overwritten.
[[nodiscard]] kit::TypedValues AnswerAdd(std::string_view text, processors::Processor &);
// The same for the transformation "-trname": what the options do not name stays as it is. "-sparam" sets or adds a
// parameter, "-dropparam" takes one out, "-name" is the new name. V_ERROR_BAD_REQUEST also when it is not there.
[[nodiscard]] kit::TypedValues AnswerEdit(std::string_view text, processors::Processor &);
// "-trfile", "-trname": the reply of AnswerEdit.
[[nodiscard]] kit::TypedValues AnswerDeleteExisting(std::string_view text, processors::Processor &);
// "-xslfilepath": what a stored path stands for; "-appname": the catalogue of the application. Absolute or a URL; no
// value when there is none.
[[nodiscard]] kit::TypedValues AnswerResolvePath(std::string_view text, processors::Processor &);
// "-xslfilepath": one list, name and default expression alternately. V_ERROR_FAILED when the stylesheet does not parse.
[[nodiscard]] kit::TypedValues AnswerStylesheetParameters(std::string_view text, processors::Processor &);
// Per processor one nested list: name, class path, class name, implementation, version, location, error. "-prepare" has
// what each starts quickly with made before.
[[nodiscard]] kit::TypedValues AnswerProcessors(std::string_view text, processors::Processor &);

} // namespace client

#endif
