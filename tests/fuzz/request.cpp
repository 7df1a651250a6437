// Any text as a request: its words, its options, and the whole of it through the client's dispatch with a processor
// that only copies.
#include "catalogue/request_options.h"
#include "client/dispatch.h"
#include "client/run_request.h"
#include "kit/request_builder.h"
#include "kit/request_words.h"
#include "kit/text.h"
#include "processors/processor_list.h"
#include "tests/fuzz/client_site.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/unit/fake_processor.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace {

using fuzz::Require;
using Grammar = kit::RequestWords::Grammar;
using Words = std::vector<std::string>;

Words ReadWords(std::string_view text, Grammar grammar) {
  kit::RequestWords reader(text, grammar);
  Words words;
  for (std::string word; reader.Next(word);)
    words.push_back(word);
  Require(reader.Problem().empty() || words.empty(), "what cannot be read has no words");
  return words;
}

void CheckCarried(const std::string &request, Grammar grammar, const Words &expected) {
  Require(ReadWords(std::string_view(request).substr(1), grammar) == expected, "a built request carries its words");
}

// What one request holds, another one can carry.
void CheckWords(std::string_view text) {
  for (const Grammar grammar : {Grammar::Classic, Grammar::ClassicOrJson}) {
    kit::RequestBuilder classic("X");
    kit::RequestBuilder any("X", Grammar::ClassicOrJson);
    Words expected;
    for (const std::string &word : ReadWords(text, grammar)) {
      Require(grammar != Grammar::Classic || word.size() <= kit::maxTextSize, "a token has its longest");
      Require(fuzz::IsUtf8(word) || !fuzz::IsUtf8(text), "no character is cut");
      classic.Add("-o", {word});
      any.Add("-o", {word});
      expected.insert(expected.end(), {"-o", word});
    }
    if (classic.Problem().empty())
      CheckCarried(classic.Text(), Grammar::Classic, expected);
    if (std::ranges::all_of(expected, fuzz::IsUtf8))
      CheckCarried(any.Text(), Grammar::ClassicOrJson, expected);
    if (std::ranges::all_of(expected, fuzz::IsUtf8))
      CheckCarried("X -json " + kit::FormatJsonWords(expected), Grammar::ClassicOrJson, expected);
  }
}

void ScanOptions(std::string_view text) {
  using Kind = catalogue::RequestKind;
  for (const Kind kind : {Kind::Classic, Kind::List, Kind::Add, Kind::Edit, Kind::Delete, Kind::ResolvePath,
                          Kind::StylesheetParameters}) {
    const auto options = catalogue::ScanRequestOptions(text, kind);
    Require(options.record.parameters.size() % 2 == 0, "every parameter has its expression");
    Require(kind != Kind::Classic || options.problem.empty(), "classic options have no problems");
  }
}

// Whether all that the request can name lies in the target's own folder.
bool StaysInside(std::string_view text) {
  if (text.find_first_of("\\:$~%") != std::string_view::npos || text.find("..") != std::string_view::npos)
    return false;
  for (size_t at = 0; (at = text.find('/', at)) != std::string_view::npos; ++at)
    if (at == 0 || !std::isalnum(static_cast<unsigned char>(text[at - 1])))
      return false;
  return true;
}

size_t CountBytes(const V_TypedValsT &values) {
  size_t count = 0;
  for (uint32_t index = 0; index < values.len; ++index) {
    const V_TypedValT &value = values.val[index];
    count += sizeof(value);
    if (value.kind == V_KIND_STRING && value.u.string)
      count += std::string_view(value.u.string).size();
    for (uint32_t each = 0; value.kind == V_KIND_STRINGS && each < value.u.strings.len; ++each)
      count += sizeof(char *) + std::string_view(value.u.strings.val[each]).size();
    if (value.kind == V_KIND_TYPED_VALUES)
      count += CountBytes(value.u.values);
  }
  return count;
}

void Send(const std::string &text, fuzz::ClientSite &site) {
  static FakeProcessor processor;
  if (processor.classes.empty()) {
    processor.classes = {"the.Class"};
    site.host.stringTables[{V_SESSION, V_SP_XSLT_PROCESSORS}] = {{"Saxon", "s.jar", "the.Class"}};
    site.host.clients["VlDispatcher"] = [&site](const std::string &) {
      kit::TypedValues reply;
      reply.AddString(site.folder.Path("T.xml"));
      return reply;
    };
    site.Keep("a.xml", "<a/>");
    site.Keep("sub/b.xml", "<b/>");
    site.Keep("s.xsl", "<s:stylesheet version='1.0' xmlns:s='http://www.w3.org/1999/XSL/Transform'>"
                       "<s:param name='p' select='1'/></s:stylesheet>");
    site.Keep("T.xml", test::ReadAll(VLXSLT_EXAMPLE_CATALOGUE));
    processors::LoadProcessors(processor);
  }
  // One input finds what another found.
  site.EndInput();
  const kit::TypedValues reply = client::DispatchRequest(text, processor);
  const size_t files = processor.jobs.size();
  processor.jobs.clear();
  // A log has some lines for each option and each job; each line can name a catalogue, an input and an output.
  const size_t most = (size_t{1} << 16) + (text.size() + 1024) * (text.size() / 4 + 16 * files + 16);
  Require(CountBytes(reply.Get()) <= most, "a reply is in proportion to its request");
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  // A request ends at its NUL.
  const std::string text(input.substr(0, input.find('\0')));
  ClientSite &site = ClientSite::Get();
  CheckWords(text);
  ScanOptions(text);
  (void)client::WantsConsole(text);
  if (!StaysInside(text))
    return;
  client::RunRequest request;
  (void)client::ParseRunOptions(text, request);
  Require(request.parameters.size() % 2 == 0, "every parameter has its expression");
  Send(text, site);
  site.EndInput();
}
