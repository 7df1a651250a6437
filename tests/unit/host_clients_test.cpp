// How the host loads a client, and how requests, replies, errors and questions travel between the two.
#include "host/session.h"
#include "kit/paths.h"
#include "tests/unit/host_fixture.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

using Clients = test::HostTest;

TEST_F(Clients, AreLoadedAtTheFirstRequestAndShutDownAtTheEnd) {
  Open(VLXSLT_STUB_CLIENTS);
  EXPECT_EQ(front.console, Names());
  EXPECT_EQ(session->Send("XSLT", "nest ").values.String(0), "");
  EXPECT_EQ(session->Send("XSLT", "unknown").values.Size(), 0U);
  EXPECT_EQ(front.console, Names{"initialised"});
  session.reset();
  EXPECT_EQ(front.console, (Names{"initialised", "shut down"}));
}

TEST_F(Clients, BelongToOneSessionAfterTheOther) {
  Open(VLXSLT_STUB_CLIENTS);
  EXPECT_EQ(session->Send("XSLT", "nest a").values.String(0), "a()");
  session.reset();
  front.console.clear();
  V_ApiWriteConsole("too late");
  EXPECT_EQ(V_ApiGetString(V_SESSION, V_SP_PRODUCT_NAME), nullptr);

  test::SilentFront second;
  host::Session next(configuration, {VLXSLT_STUB_CLIENTS, "/none/"}, second);
  EXPECT_EQ(next.Send("XSLT", "nest bc").values.String(0), "bc(c())");
  EXPECT_EQ(next.Record().requests.size(), 3U);
  EXPECT_EQ(second.console, Names{"initialised"});
  EXPECT_EQ(front.console, Names());
}

TEST_F(Clients, ThatAreDamagedAreNamed) {
  std::string error = Open(folder.Path("")).Send("XSLT", "x").error;
  EXPECT_EQ(error, "the client " + folder.Path("XSLT.so") +
                       " cannot be loaded: there is no such file; is the installation complete?");
  folder.Write("XSLT.so", "no library");
  error = Open(folder.Path("")).Send("XSLT", "x").error;
  EXPECT_NE(error.find("cannot be loaded"), std::string::npos);
  error = Open(VLXSLT_HALF_CLIENTS).Send("XSLT", "x").error;
  EXPECT_NE(error.find("it lacks the entry points V_ClientNotify, V_ClientDialogEvent, V_ClientShutdown, "
                       "V_ClientResources"),
            std::string::npos)
      << error;
  EXPECT_EQ(front.console, Names());
}

TEST_F(Clients, CallEachOtherWithinARequest) {
  Open(VLXSLT_STUB_CLIENTS);
  const host::ClientReply reply = session->Send("XSLT", "nest abc");
  ASSERT_EQ(reply.values.Size(), 1U);
  EXPECT_EQ(reply.values.String(0), "abc(bc(c()))");
  EXPECT_EQ(reply.status, V_ERROR_NONE);
  EXPECT_EQ(session->Send("XSLT", "error").status, V_ERROR_BAD_REQUEST);
  // The next request begins without the error of the last one.
  EXPECT_EQ(session->Send("XSLT", "nest x").status, V_ERROR_NONE);
  (void)session->Send("XSLT", "deaf");
  EXPECT_EQ(session->Send("XSLT", "nest x").values.Size(), 0U);
}

TEST_F(Clients, GetATemporaryFolderThatGoesWithTheSession) {
  Open(VLXSLT_STUB_CLIENTS);
  const std::string own = session->Send("XSLT", "temporary").values.String(0).value_or("");
  EXPECT_TRUE(kit::IsFolder(own)) << own;
  EXPECT_EQ(session->Send("XSLT", "temporary").values.String(0), own);
  session.reset();
  EXPECT_FALSE(kit::Exists(own));

  configuration.tempFolder = folder.Path("kept/here");
  Open(VLXSLT_STUB_CLIENTS);
  EXPECT_EQ(session->Send("XSLT", "temporary").values.String(0), folder.Path("kept/here"));
  session.reset();
  EXPECT_TRUE(kit::IsFolder(folder.Path("kept/here")));
}

} // namespace
