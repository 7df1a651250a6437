// The processors with a real Java behind them. One process has one virtual machine, so every processor is on the class
// path from the start.
#ifndef TESTS_UNIT_JAVA_FIXTURE_H
#define TESTS_UNIT_JAVA_FIXTURE_H

#include "processors/java/java_processors.h"
#include "processors/processor.h"
#include "report/transformation_log.h"
#include "tests/unit/fake_host.h"
#include "tests/unit/folder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace test {

namespace fs = std::filesystem;

inline constexpr const char *saxon = "net.sf.saxon.TransformerFactoryImpl";
inline constexpr const char *xalan = "org.apache.xalan.processor.TransformerFactoryImpl";
inline constexpr const char *jdk = "com.sun.org.apache.xalan.internal.xsltc.trax.TransformerFactoryImpl";

inline std::string Stylesheet(const std::string &body, const char *version = "1.0") {
  return std::string("<xsl:stylesheet version='") + version +
         "' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'><xsl:output omit-xml-declaration='yes'/>\n" + body +
         "</xsl:stylesheet>";
}

class JavaProcessors : public testing::Test {
protected:
  JavaProcessors() {
    if (!fs::exists(PROCESSORS_DIR "/saxon/Saxon-HE.jar"))
      return;
    hasProcessors = true;
    setenv("VLXSLT_NO_CLASS_ARCHIVE", "1", 1);
    const std::string jars = PROCESSORS_DIR;
    processor.SetClassPath(".;" + jars + "/saxon/Saxon-HE.jar;" + jars + "/saxon/xmlresolver.jar;" + jars +
                           "/saxon/xmlresolver-data.jar;" + jars + "/xalan/xalan.jar;" + jars +
                           "/xalan/serializer.jar;");
    host.clients["XmlUtilities"] = [this](const std::string &request) {
      kit::TypedValues reply;
      for (const auto &[part, answer] : entities)
        if (request.find(part) != std::string::npos)
          reply.AddString(answer);
      return reply;
    };
    report::ResetLog(false);
  }
  void SetUp() override {
    if (!hasProcessors)
      GTEST_SKIP() << "no processors in " PROCESSORS_DIR;
  }

  [[nodiscard]] std::string Path(const std::string &name) const { return folder.Path(name); }
  std::string Write(const std::string &name, const std::string &text) const { return folder.Write(name, text); }
  [[nodiscard]] std::string Read(const std::string &name) const { return folder.Read(name); }
  // The text of an output without its markup.
  [[nodiscard]] std::string ReadText(const std::string &name) const {
    return std::regex_replace(Read(name), std::regex("<[^>]*>"), "");
  }
  [[nodiscard]] std::string ResultList() const {
    std::string list;
    for (const std::string &file : result.filesRead)
      list += file + "\n";
    return list;
  }
  // What the transformation logged; `succeeded` and the requests are kept.
  std::string Run(const std::string &xml, const std::string &xsl, const std::vector<std::string> &parameters = {}) {
    report::ResetLog(false);
    host.requests.clear();
    result = processor.TransformXMLFile({xml, xsl, Path("out"), parameters});
    succeeded = result.status == processors::JobStatus::Done;
    return report::LogText();
  }
  [[nodiscard]] std::vector<std::string> Kinds() const {
    std::vector<std::string> kinds;
    for (const auto &[client, request] : host.requests) {
      std::istringstream words(request);
      std::string word;
      words >> word >> word;
      kinds.push_back(word);
    }
    return kinds;
  }

  [[nodiscard]] ptrdiff_t CountKind(const std::string &kind) const {
    const auto kinds = Kinds();
    return std::ranges::count(kinds, kind);
  }

  FakeHost host;
  Folder folder;
  std::map<std::string, std::string> entities; // a part of the request, and the answer
  bool hasProcessors = false;
  bool succeeded = false;
  processors::JobResult result;
  processors::Processor &processor = VLXSLT::GetXSLTManagedLayerInstance();
};

inline size_t CountOf(const std::string &text, const std::string &part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

} // namespace test

#endif
