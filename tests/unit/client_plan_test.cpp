// Random run requests: what the plan says of them is what the events of the run report.
#include "client/dispatch.h"
#include "kit/paths.h"
#include "kit/request_builder.h"
#include "tests/unit/client_fixture.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Strings = std::vector<std::string>;

class Plan : public ClientParts {
protected:
  Plan() {
    fs::create_directories(Path("closed"));
    for (const char *name : {"in/a.xml", "in/b b.xml", "in/ü'x.xml", "in/sub/c.dita", "in/plain", "s.xsl",
                             "in/beside.xsl", "in/back\\slash.xml", "out/a.xml", "structure/t.xsl"})
      Write(name, "x");
    Write("read only/r.xml", "x");
    fs::permissions(Write("out/plain", "x"), fs::perms::owner_read);
    fs::permissions(Path("closed"), fs::perms::owner_read | fs::perms::owner_exec);
    host.objects[{V_SESSION, V_SP_ACTIVE_DOCUMENT}] = 10;
    host.strings[{10, V_OP_FULL_NAME}] = Path("in/a.xml");
  }
  ~Plan() override { fs::permissions(Path("closed"), fs::perms::owner_all); }

  [[nodiscard]] size_t Below(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random); }
  template <class Items> [[nodiscard]] auto Pick(const Items &items) { return items[Below(items.size())]; }

  std::string PickInput() {
    return Pick(Strings{Path("in/a.xml"), Path("in/b b.xml"), Path("in/ü'x.xml"), Path("in/sub/c.dita"),
                        Path("in/plain"), Path("in/missing.xml"), Path("in/back\\slash.xml"),
                        "$STRUCTDIR\\..\\in\\a.xml", kit::PathToUrl(Path("in/b b.xml")), Path("read only/r.xml")});
  }

  std::string PickOutputElement() {
    return Pick(Strings{"<DoNotSave/>", "<Prompt/>", "<DirPath>" + Path("out") + "</DirPath>",
                        "<DirPath>..\\out</DirPath>", "<DirPath>" + Path("nowhere") + "</DirPath>",
                        "<DirPath>" + Path("closed") + "</DirPath>", "<SameLocationAsSource suffix='_new'/>",
                        "<SameLocationAsSource suffix=''/>"});
  }

  void WriteCatalogue() {
    const bool usesInstruction = Below(4) == 0;
    const std::string xsl =
        Pick(Strings{Path("s.xsl"), "beside.xsl", "$STRUCTDIR\\t.xsl", Path("gone.xsl"), "$VLHOME/x.xsl"});
    Write("catalogue.xml", "<Transformations><Transformation><Name>T</Name><Input>" +
                               (usesInstruction ? "<UsePI/>" : "<XSLPath>" + xsl + "</XSLPath>") +
                               "</Input><Processor>" + Pick(Strings{"Saxon", "Saxon", "Saxon", "Nowhere"}) +
                               "</Processor><Parameters/><Output><OutputLocation>" + PickOutputElement() +
                               "</OutputLocation><OpenOutput in='" + Pick(Strings{"", "Vellis", "DefaultProgram"}) +
                               "'/></Output></Transformation></Transformations>");
  }

  void AddInputs(kit::RequestBuilder &request, bool withOutputs) {
    switch (Below(4)) {
    case 0:
      request.Add("-folders", {Path("in")});
      return;
    case 1:
      request.Add("-currentfile");
      return;
    default:
      for (size_t count = 1 + Below(5); count > 0; --count) {
        request.Add("-file", {PickInput()});
        request.Add("-outputfilepath",
                    {withOutputs
                         ? Path(Pick(Strings{"out/n" + std::to_string(count), "out/plain", "nowhere/x", "closed/x"}))
                         : std::string("x")});
      }
    }
  }

  // The options of a request, different ones each time.
  std::string MakeOptions() {
    kit::RequestBuilder request("");
    if (Below(2) == 0) {
      WriteCatalogue();
      request.Add("-trname", {"T"});
      if (Below(2) == 0)
        request.Add("-appname", {"DITA"});
      else
        request.Add("-trfile", {Path("catalogue.xml")});
      AddInputs(request, false);
    } else {
      if (Below(4) == 0)
        request.Add("-usepi");
      else
        request.Add("-xslfilepath",
                    {Pick(Strings{Path("s.xsl"), "beside.xsl", "$structdir\\t.xsl", Path("gone.xsl")})});
      AddInputs(request, true);
    }
    request.AddIfGiven("-processor", Pick(Strings{"", "Saxon", "Nowhere"}));
    return request.Text();
  }

  // The beginning and the end of each planned job, as the fake host words such events.
  [[nodiscard]] static Strings DescribePlan(const kit::TypedValues &reply, const std::string &chosen) {
    Strings described;
    for (uint32_t index = 2; index < reply.Size(); ++index) {
      const V_TypedValT *fields = reply.Values(index)->val;
      const auto text = [](const std::string &given) { return given.empty() ? "-" : given; };
      const std::string number = std::to_string(fields[0].u.integer);
      const Strings asks = kit::ReadStrings(fields[6].u.strings);
      // The person is asked before a missing stylesheet is noticed.
      const bool isChosen = std::ranges::find(asks, "place") != asks.end() &&
                            (fields[7].u.integer == V_JOB_DONE || fields[7].u.integer == V_JOB_FAILED);
      described.push_back("job " + number + ": " + fields[1].u.string + " with " + text(fields[2].u.string) + " by " +
                          fields[3].u.string + " to " + text(isChosen ? chosen : fields[5].u.string));
      described.push_back("job " + number + " ends: " + std::to_string(fields[7].u.integer));
    }
    return described;
  }

  std::mt19937 random{20260131};
};

TEST_F(Plan, SaysWhatTheRunThenDoes) {
  constexpr int requestCount = 300;
  size_t jobCount = 0;
  std::set<std::string> ends;
  for (int index = 0; index < requestCount; ++index) {
    const std::string options = MakeOptions();
    const std::string chosen = Path("out/chosen.xml");
    const kit::TypedValues plan = client::DispatchRequest("VlxsltPlanRun " + options, processor);
    EXPECT_TRUE(host.asked.empty() && host.runEvents.size() <= 10 && processor.jobs.empty()) << "a plan only looks";
    host.runEvents.clear();
    host.choices.assign(20, chosen);
    const kit::TypedValues run = client::DispatchRequest("XSLTRunTrScenario " + options, processor);
    EXPECT_EQ(run.Integer(0) == V_ERROR_BAD_REQUEST, plan.Integer(0) == V_ERROR_BAD_REQUEST) << options;
    Strings happened;
    std::ranges::copy_if(host.runEvents, std::back_inserter(happened),
                         [](const std::string &event) { return event.starts_with("job "); });
    if (!happened.empty() || run.Integer(0) != V_ERROR_BAD_REQUEST) {
      EXPECT_EQ(happened, DescribePlan(plan, chosen)) << options << "\n" << run.String(1).value_or("");
    }
    jobCount += happened.size() / 2;
    for (const std::string &event : happened)
      if (const size_t at = event.find(" ends: "); at != std::string::npos)
        ends.insert(event.substr(at + 7));
    host.runEvents.clear();
    host.asked.clear();
    processor.jobs.clear();
    fs::remove(chosen);
    for (const auto &entry : fs::directory_iterator(Path("in")))
      if (entry.path().filename().string().find("_new") != std::string::npos)
        fs::remove(entry.path());
    fs::remove(Path("in/sub/c_new.dita"));
    for (int number = 1; number <= 5; ++number)
      fs::remove(Path("out/n" + std::to_string(number)));
  }
  EXPECT_GT(jobCount, 600U);
  EXPECT_EQ(ends, (std::set<std::string>{"0", "1", "2", "3", "4"})) << "every way to end came about";
}

} // namespace
