#include "kit/paths.h"
#include "kit/request_builder.h"
#include "kit/request_words.h"
#include "kit/text.h"
#include "kit/values.h"
#include "tests/unit/fake_host.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Tokens(std::string_view text) {
  std::vector<std::string> tokens;
  kit::Tokenizer tokenizer(text);
  for (std::string token; tokenizer.Next(token);)
    tokens.push_back(token);
  return tokens;
}

TEST(Tokenizer, SplitsRequestsAsPeopleWriteThem) {
  const struct {
    std::string_view text;
    std::vector<std::string> tokens;
  } cases[] = {
      {"", {}},
      {"    ", {}},
      {"  a   b ", {"a", "b"}},
      {R"("a b" 'c "d" e' f"g)", {"a b", R"(c "d" e)", R"(f"g)"}},
      {R"("" '' x)", {"", "", "x"}},
      {R"("left open to the end )", {"left open to the end "}},
      {R"("a"b)", {"a", "b"}},
      {"tab\tstays", {"tab\tstays"}},
  };
  for (const auto &each : cases)
    EXPECT_EQ(Tokens(each.text), each.tokens) << each.text;
}

TEST(Tokenizer, KeepsTheFirst1023BytesAndNeverHalfACharacter) {
  const std::string quoted = "\"" + std::string(2000, 'x') + "\" next";
  EXPECT_EQ(Tokens(quoted), (std::vector<std::string>{std::string(1023, 'x'), "next"}));
  const std::string umlaut = std::string(1022, 'x') + "\xC3\xA4" + "yy";
  EXPECT_EQ(Tokens(umlaut), (std::vector<std::string>{std::string(1022, 'x')}));
}

TEST(FillPlaceholders, LeavesValuesAlone) {
  EXPECT_EQ(kit::FillPlaceholders("%0 and %1.", {"a%1b", "100%"}), "a%1b and 100%.");
  EXPECT_EQ(kit::FillPlaceholders("%0 %2 %", {"x"}), "x %2 %");
}

TEST(Paths, FileUrlsInEveryForm) {
  const struct {
    std::string_view url;
    std::string_view path;
  } cases[] = {
      {"file:///a/b%20c.xml", "/a/b c.xml"},
      {"file:/a/b", "/a/b"},
      {"file://localhost/a", "/a"},
      {"FILE:///%C3%A4/%25.xml", "/\xC3\xA4/%.xml"},
      {"file:///a#frag", "/a"},
      {"/plain%20path", "/plain%20path"},
      {"file:rel/a.xml", "rel/a.xml"},
      {"file:///a%2", "/a%2"},
      {"http://h/x", "http://h/x"},
  };
  for (const auto &each : cases)
    EXPECT_EQ(kit::UrlToPath(each.url), each.path) << each.url;
}

TEST(Paths, UrlAndBackIsTheSamePath) {
  for (const std::string path : {"/a b/%41/#x/?y/&'\".xml", "/\xE4\xB8\xAD\xE6\x96\x87/\xC3\xBC;a=b", "/"}) {
    const std::string url = kit::PathToUrl(path);
    EXPECT_EQ(kit::UrlToPath(url), path);
    EXPECT_EQ(url.find_first_of(" #?\""), std::string::npos) << url;
  }
}

TEST(Paths, SchemesOfUrls) {
  const struct {
    std::string_view text, scheme;
    bool isUrl;
  } cases[] = {
      {"http://h/x", "http", true},    {"FILE:a", "FILE", true}, {"svn+ssh://h", "svn+ssh", true},
      {"mailto:a@b", "mailto", false}, {"c:/x", "", false},      {"/a:b", "", false},
      {"a b://c", "", false},          {"", "", false},          {"plain", "", false},
  };
  for (const auto &each : cases) {
    EXPECT_EQ(kit::UrlScheme(each.text), each.scheme) << each.text;
    EXPECT_EQ(kit::IsUrl(each.text), each.isUrl) << each.text;
  }
}

TEST(Paths, NamesAndExtensions) {
  const struct {
    std::string_view path, folder, base, extension;
  } cases[] = {
      {"/a/report.xml", "/a", "report", "xml"},
      {"/report.tar.gz", "/", "report.tar", "gz"},
      {"plain", ".", "plain", ""},
      {"/a.b/.profile", "/a.b", ".profile", ""},
      {"/a.b/name", "/a.b", "name", ""},
      {"/a/name.", "/a", "name", ""},
  };
  for (const auto &each : cases) {
    EXPECT_EQ(kit::FolderOf(each.path), each.folder) << each.path;
    EXPECT_EQ(kit::BaseNameOf(each.path), each.base) << each.path;
    EXPECT_EQ(kit::ExtensionOf(each.path), each.extension) << each.path;
  }
}

TEST(TypedValues, CarryEveryKindAndGiveEverythingBack) {
  FakeHost host;
  {
    kit::TypedValues inner;
    inner.AddStrings({"a", "", "\xC3\xA4"});
    inner.AddInteger(-43);
    kit::TypedValues reply;
    for (int32_t index = 0; index < 100; ++index)
      reply.AddInteger(index);
    reply.AddString("text");
    reply.AddValues(std::move(inner));
    EXPECT_EQ(reply.Integer(99), 99);
    EXPECT_EQ(reply.String(100), "text");
    EXPECT_EQ(reply.String(99), std::nullopt);
    EXPECT_EQ(reply.Strings(500), std::nullopt);
    ASSERT_NE(reply.Values(101), nullptr);
    EXPECT_EQ(kit::ReadStrings(reply.Values(101)->val[0].u.strings), (std::vector<std::string>{"a", "", "\xC3\xA4"}));
    const kit::TypedValues moved = kit::TypedValues::Adopt(reply.Release());
    EXPECT_EQ(moved.Size(), 102U);
    EXPECT_EQ(reply.Size(), 0U);
  }
  EXPECT_EQ(host.LiveBlocks(), 0U);
}

// A host that was built before some function existed answers as if there were nothing.
TEST(Runtime, AnOlderHostAnswersNeutrally) {
  FakeHost host;
  V_HostT older = host.Table();
  older.size = static_cast<uint32_t>(offsetof(V_HostT, getInt));
  ASSERT_EQ(V_AttachHost(&older), 1);
  EXPECT_EQ(V_ApiGetInt(V_SESSION, V_SP_LOG_ECHO), 0);
  EXPECT_EQ(V_ApiGetString(V_SESSION, V_SP_PRODUCT_NAME), nullptr);
  EXPECT_EQ(kit::CallClient("XSLT", "anything").Size(), 0U);
  EXPECT_TRUE(kit::HostString::Copy("still works").View() == "still works");
  older.size = 8;
  EXPECT_EQ(V_AttachHost(&older), 0);
}

std::vector<std::string> WordsOf(kit::RequestWords words) {
  std::vector<std::string> all;
  for (std::string word; words.Next(word);)
    all.push_back(word);
  return all;
}

TEST(RequestWords, ComeFromTheClassicGrammarOrFromJson) {
  using Grammar = kit::RequestWords::Grammar;
  using Words = std::vector<std::string>;
  struct Row {
    std::string options;
    Words words;
    bool isGood = true;
  };
  const std::string both = R"(it's "x")";
  for (const Row &row : std::vector<Row>{
           {" -a 'b c' d", {"-a", "b c", "d"}},
           {R"( -JSON ["-a", "it's \"x\"", "", "\u00e4\n"])", {"-a", both, "", "ä\n"}},
           {R"( -json [])", {}},
           {R"( -jsonlike ["-a"])", {"-jsonlike", "[\"-a\"]"}},
           {" -json", {}, false},
           {R"( -json {"a": "b"})", {}, false},
           {R"( -json ["a", 1])", {}, false},
           {R"( -json ["a\u0000b"])", {}, false},
           {R"( -json ["a"] -b)", {}, false},
       }) {
    const kit::RequestWords words(row.options, Grammar::ClassicOrJson);
    EXPECT_EQ(words.Problem().empty(), row.isGood) << row.options << words.Problem();
    EXPECT_EQ(WordsOf(words), row.words) << row.options;
  }
  EXPECT_EQ(WordsOf(kit::RequestWords(R"( -json ["a"])", Grammar::Classic)), (Words{"-json", "[\"a\"]"}));

  // A builder takes the form that carries its values, and prefers the classic one.
  const Words values = {"plain", both, std::string(5000, 'x'), "\t\n\\", ""};
  for (const std::string &value : values) {
    kit::RequestBuilder request("Name", Grammar::ClassicOrJson);
    request.Add("-o", {value});
    EXPECT_EQ(request.Problem(), "");
    EXPECT_EQ(request.Text().starts_with("Name -json ["), value == both || value.size() > kit::maxTextSize);
    EXPECT_EQ(WordsOf(kit::RequestWords(request.Text().substr(4), Grammar::ClassicOrJson)), (Words{"-o", value}));
  }
}

} // namespace
