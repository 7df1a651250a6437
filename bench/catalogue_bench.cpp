// How loading and saving grow with the size of a catalogue: ten times the transformations may take twelve times as
// long.
#include "catalogue/reader.h"
#include "catalogue/shut_down.h"
#include "catalogue/writer.h"
#include "report/transformation_log.h"
#include "tests/unit/fake_host.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>

namespace {

constexpr double mostRatio = 12;
constexpr int rounds = 5;

catalogue::TransformationList Make(int count) {
  catalogue::TransformationList list;
  for (int index = 0; index < count; ++index) {
    catalogue::Transformation record;
    record.name = "Transformation number " + std::to_string(index);
    record.xslPath = "$STRUCTDIR\\dita\\xsl\\style" + std::to_string(index) + ".xsl";
    record.processor = "Saxon";
    record.parameters = {"first", "'a value'", "second", "<no value>"};
    record.output = {catalogue::OutputLocationKind::DirPath, "out", "", catalogue::OpenOutputKind::None};
    list.push_back(record);
  }
  return list;
}

struct Times {
  double load = 0;
  double save = 0;
  bool correct = true;
};

template <class Work> double Milliseconds(const Work &work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// The best of some rounds: what else the machine does only ever adds.
Times Measure(const std::string &path, int count) {
  const catalogue::TransformationList list = Make(count);
  Times best{1e9, 1e9, true};
  for (int round = 0; round < rounds; ++round) {
    best.save = std::min(best.save, Milliseconds([&] { best.correct &= SaveTransformationFile(path, list); }));
    catalogue::LoadResult loaded;
    best.load = std::min(best.load, Milliseconds([&] { loaded = catalogue::LoadTransformationFile(path); }));
    best.correct &= loaded.list == list;
  }
  return best;
}

} // namespace

int main(int count, char **arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: %s INSTALLATION-FOLDER/\n", arguments[0]);
    return 2;
  }
  FakeHost host;
  host.strings[{V_SESSION, V_SP_INSTALL_DIR}] = arguments[1];
  report::ResetLog(false);
  const std::string path = (std::filesystem::temp_directory_path() / "vlxslt-catalogue-bench.xml").string();
  const Times small = Measure(path, 1000);
  const Times large = Measure(path, 10000);
  std::filesystem::remove(path);
  catalogue::ShutDownCatalogue();

  struct Row {
    const char *name;
    double small, large;
  };
  const std::array rows = {Row{"load", small.load, large.load}, Row{"save", small.save, large.save}};
  bool good = small.correct && large.correct;
  for (const Row &row : rows) {
    const double ratio = row.large / row.small;
    good &= ratio <= mostRatio;
    std::printf("catalogue %s: 1000 in %.1f ms, 10000 in %.1f ms, ratio %.2f (at most %.0f)\n", row.name, row.small,
                row.large, ratio, mostRatio);
  }
  if (!small.correct || !large.correct)
    std::printf("catalogue: what was read is not what was written\n%s", report::LogText().c_str());
  return good ? 0 : 1;
}
