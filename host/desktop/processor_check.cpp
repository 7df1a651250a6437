#include "host/desktop/processor_check.h"

#include "host/configuration/configuration_edit.h"
#include "host/desktop/window_texts.h"
#include "kit/atomic_file.h"

#include <wx/filename.h>
#include <wx/process.h>
#include <wx/stdpaths.h>
#include <wx/tokenzr.h>
#include <wx/txtstrm.h>
#include <wx/utils.h>

#include <utility>

namespace desktop {

namespace {

class CheckProcess : public wxProcess {
public:
  CheckProcess(const wxString &file, std::function<void(const wxString &)> onDone)
      : configurationFile(file), done(std::move(onDone)) {
    Redirect();
  }

  void OnTerminate(int, int status) override {
    wxRemoveFile(configurationFile);
    const wxString line = ReadLine(GetInputStream());
    const wxArrayString fields = wxStringTokenize(line, "\t", wxTOKEN_RET_EMPTY_ALL);
    if (status == 0 && fields.size() >= 4)
      done(wxString::Format("Loads: %s %s", fields[2], fields[3]));
    else
      done(fields.size() >= 3 ? fields[2] : ReadLine(GetErrorStream()));
    delete this;
  }

private:
  static wxString ReadLine(wxInputStream *stream) {
    wxTextInputStream text(*stream, "\t", wxConvUTF8);
    return stream->CanRead() ? text.ReadLine() : wxString();
  }

  wxString configurationFile;
  std::function<void(const wxString &)> done;
};

} // namespace

void CheckProcessor(const host::Configuration &configuration, const host::ProcessorSetting &processor,
                    std::function<void(const wxString &text)> done) {
  host::Configuration single;
  single.installFolder = configuration.installFolder;
  single.structureFolder = configuration.structureFolder;
  single.javaHome = configuration.javaHome;
  single.javaOptions = configuration.javaOptions;
  single.processors = {processor};
  const wxString file = wxFileName::CreateTempFileName("vlxslt-check");
  kit::AtomicFile written(FromWx(file));
  if (!written.Write(host::WriteConfiguration(single)) || !written.Commit()) {
    done(ToWx(written.Error()));
    return;
  }
  auto *process = new CheckProcess(file, std::move(done));
  const wxString program = wxStandardPaths::Get().GetExecutablePath();
  const wxCharBuffer words[] = {program.utf8_str(), "--config", file.utf8_str(), "processors"};
  const char *arguments[] = {words[0], words[1], words[2], words[3], nullptr};
  if (wxExecute(const_cast<char **>(arguments), wxEXEC_ASYNC, process) == 0)
    delete process;
}

} // namespace desktop
