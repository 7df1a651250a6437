// What requests do with a host that does other things than ours: its settings, its failures, what it lacks.
#include "client/dispatch.h"
#include "dialogs/dialogs.h"
#include "tests/unit/client_fixture.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

constexpr V_ObjectT document = 10;

class Requests : public ClientParts {
protected:
  kit::TypedValues Send(const std::string &request) { return client::DispatchRequest(request, processor); }
  // The log of a run of the stylesheet.
  std::string Run(const std::string &options) {
    kit::TypedValues reply = Send("XSLTRunTrScenario " + options + " -xslfilepath '" + xsl + "'");
    status = reply.Integer(0);
    return reply.String(1).value_or("no text");
  }
  [[nodiscard]] std::string FileTo(const std::string &input, const std::string &output) const {
    return " -file '" + input + "' -outputfilepath '" + Path("out/" + output) + "'";
  }

  const std::string xsl = Write("style.xsl", "X");
  const std::string first = Write("a.xml", "one");
  const std::string second = Write("b.xml", "two");
  std::optional<int32_t> status;
};

TEST_F(Requests, TakeTheComponentsThatTheHostNames) {
  host.objects[{V_SESSION, V_SP_ACTIVE_BOOK}] = 20;
  host.strings[{20, V_OP_FULL_NAME}] = Write("book.xml", "<book/>");
  host.components = {{20, {first, "", "/gone.xml", second}}, {document, {second}}};
  EXPECT_EQ(Run("-currentfilewithchildren -dontprintstartlog -dontprintendlog"), "File doesn't exist /gone.xml.\n");
  EXPECT_EQ(status, V_ERROR_NONE);
  EXPECT_EQ(processor.jobs.size(), 3U);
  host.strings[{document, V_OP_FULL_NAME}] = first;
  EXPECT_EQ(Send("XSLTGetDitamapComponents -file 10").Strings(0), (Strings{first, second}));
}

TEST_F(Requests, ReportTheirUseAndLeaveTheEchoAsItWas) {
  host.ints[{V_SESSION, V_SP_LOG_ECHO}] = 1;
  (void)Run(FileTo(first, "a") + " -dontusevlconsole");
  EXPECT_TRUE(host.console.empty());
  EXPECT_EQ((host.ints[{V_SESSION, V_SP_LOG_ECHO}]), 1);
  EXPECT_EQ(host.usage, (Strings{"Scope_File", "XSLTRun_XSL"}));

  host.strings[{document, V_OP_FULL_NAME}] = first;
  host.ints = {
      {{document, V_OP_TYPE}, V_TYPE_DOCUMENT}, {{document, V_OP_SHOWN}, 1}, {{document, V_OP_IS_DITA_MAP}, 1}};
  for (const int32_t property : {V_SP_ACTIVE_DOCUMENT, V_SP_FIRST_OPEN_DOCUMENT})
    host.objects[{V_SESSION, property}] = document;
  for (const auto &[options, scope] :
       {std::pair{"-currentfile", "Scope_CurrentFile"},
        std::pair{"-currentfilewithchildren", "Scope_CurrentFileWithChildren"},
        std::pair{"-folder $STRUCTDIR/..", "Scope_folder"}, std::pair{"-allopenfiles", "Scope_AllOpenFiles"}}) {
    host.usage.clear();
    (void)Run(options);
    EXPECT_EQ(host.usage, (Strings{scope, "XSLTRun_XSL"}));
  }
}

TEST_F(Requests, StartSectionsFollowTheHostsSettings) {
  const std::string options = FileTo(first, "a") + " -dontprintendlog";
  EXPECT_EQ(Run(options), "");
  host.ints[{V_SESSION, V_SP_XSL_OBJECT_START_SECTION}] = 1;
  host.objects[{V_SESSION, V_SP_XSL_SECTION_OBJECT}] = document;
  EXPECT_EQ(Run(options), "");
  host.ints[{document, V_OP_XSL_START_SECTION}] = 1;
  host.strings[{document, V_OP_NAME}] = "Chapter";
  EXPECT_EQ(Run(options), "\n\nXSL Transformation Log\nInput: Chapter\nXSL:" + xsl + "\nOutput:" + first +
                              "\n\n\nXSL Processor Messages (Processor: Saxon)\n");
}

TEST_F(Requests, ThatAreCancelledHaveTheStatusOfWhatWasDone) {
  int inputsLeft = 1;
  host.isCancelled = [&] { return inputsLeft-- <= 0; };
  (void)Run(FileTo(first, "c1") + FileTo(second, "c2"));
  EXPECT_EQ(status, V_ERROR_NONE);
  EXPECT_EQ(folder.Names("out"), Strings{"c1"});
}

// Whatever host call fails, the input is the old or the new one, nothing is left behind and no memory is lost.
TEST_F(Requests, LoseNothingWhateverHostCallFails) {
  Write("catalogue.xml", Catalogue("<Transformation><Name>T</Name><Input><XSLPath>" + xsl +
                                   "</XSLPath></Input><Processor>Saxon</Processor><Output><OutputLocation>"
                                   "<SameLocationAsSource/></OutputLocation></Output></Transformation>"));
  size_t failures = 0;
  for (bool again = true; again;) {
    Write("a.xml", "one");
    host.FailCall(++failures);
    (void)Send("XSLTRunTrScenario " + FileTo(first, "x") + " -trname T -trfile '" + Path("catalogue.xml") + "'");
    again = host.HasFailed();
    EXPECT_EQ(host.LiveBlocks(), 0U) << failures;
    const std::string text = Read(first);
    EXPECT_TRUE(text == "one" || text == "Xone") << failures << ": " << text;
    EXPECT_EQ(folder.Names("temp"), Strings()) << failures;
  }
  EXPECT_GT(failures, 10U);
}

TEST_F(Requests, SayWhenTheHostHasNoSuchDialog) {
  const std::vector<FakeHost::Asked> alert = {{V_ALERT_PLAIN, "Unable to open dialog resource."}};
  EXPECT_EQ(Send("XSLTChooseTranDlg ").Strings(0), (Strings{"", "", ""}));
  EXPECT_EQ(TakeAsked(), alert);
  EXPECT_EQ(Send("XSLTAdvanceRunDlg ").Size(), 0U);
  EXPECT_EQ(TakeAsked(), alert);
  EXPECT_EQ(host.requests.size(), 0U);

  // A form whose list of parameters cannot be opened stays up.
  static std::vector<int32_t> shown;
  static int keptUp;
  shown.clear();
  keptUp = 0;
  V_HostT table = host.Table();
  table.openDialog = [](void *, const char *name) {
    return std::string_view(name) == "stylesheet_params" ? V_ObjectT{0} : V_ObjectT{0x10000};
  };
  table.runDialog = [](void *, int32_t number, V_ObjectT) {
    shown.push_back(number);
    dialogs::DialogEvent(number, 8, 0);
  };
  table.keepDialogUp = [](void *, V_ObjectT) { ++keptUp; };
  ASSERT_EQ(V_AttachHost(&table), 1);
  (void)Send("NewTransformationDlg ");
  EXPECT_EQ(TakeAsked(), alert);
  EXPECT_EQ(shown, std::vector<int32_t>{12});
  EXPECT_EQ(keptUp, 1);
  dialogs::ShutDownDialogs();
  ASSERT_EQ(V_AttachHost(&host.Table()), 1);
}

} // namespace
