#include "host/desktop/workbench.h"

#include "host/desktop/icons.h"

#include <wx/menu.h>
#include <wx/toolbar.h>

#include <algorithm>
#include <array>
#include <optional>

namespace desktop {

namespace {

enum class When { Always, Idle, WithDocument, WithLastRun, Busy };

enum Menu { FileMenu, RunMenu, TransformationsMenu, HelpMenu, menuCount };

struct Command {
  int id;
  Menu menu;
  const char *label;
  const char *help;
  When when;
  void (Workbench::*act)();
  std::optional<Icon> icon;
  const char *toolLabel;
  bool beginsGroup = false; // has a separator above it in the menu
};

constexpr std::array<const char *, menuCount> menuTitles = {"&File", "&Run", "&Transformations", "&Help"};
constexpr int firstCommand = wxID_HIGHEST + 1;

const std::array commands = {
    Command{wxID_OPEN, FileMenu, "&Open...\tCtrl+O", "Open documents, books or maps", When::Idle,
            &Workbench::AskForFiles, Icon::Open, "Open"},
    Command{wxID_CLOSE,
            FileMenu,
            "&Close Document\tCtrl+W",
            "Close the chosen document",
            When::WithDocument,
            &Workbench::CloseChosen,
            {},
            nullptr},
    Command{wxID_PREFERENCES,
            FileMenu,
            "&Preferences...",
            "Processors, applications, catalogs, Java",
            When::Idle,
            &Workbench::ShowPreferences,
            {},
            nullptr,
            true},
    Command{
        wxID_EXIT, FileMenu, "&Quit\tCtrl+Q", "Close this window", When::Always, &Workbench::Leave, {}, nullptr, true},
    Command{firstCommand, RunMenu, "Run &Again\tF5", "Send the last run once more", When::WithLastRun,
            &Workbench::RunAgain, Icon::Run, "Run Again"},
    Command{firstCommand + 1, RunMenu, "A&dvanced Run...\tShift+F5", "Choose what to transform, and with what",
            When::Idle, &Workbench::AskForRun, Icon::AdvancedRun, "Advanced Run"},
    Command{firstCommand + 2, RunMenu, "&Choose and Run...\tCtrl+R", "Choose a transformation for the active document",
            When::Idle, &Workbench::ChooseAndRun, Icon::Choose, "Choose"},
    Command{firstCommand + 3,
            RunMenu,
            "Ca&ncel Run\tCtrl+.",
            "Stop when the current input is done",
            When::Busy,
            &Workbench::CancelRun,
            {},
            nullptr},
    Command{firstCommand + 5,
            RunMenu,
            "Next &Problem\tF4",
            "Open the place of the next problem in the editor",
            When::Always,
            &Workbench::FollowNextProblem,
            {},
            nullptr,
            true},
    Command{wxID_CLEAR, RunMenu, "Clear &Log", "Empty the log", When::Always, &Workbench::ClearLog, {}, nullptr},
    Command{firstCommand + 4, TransformationsMenu, "&Manage...\tCtrl+M",
            "Look through, edit and delete transformations", When::Idle, &Workbench::ManageTransformations,
            Icon::Manage, "Manage"},
    Command{wxID_NEW, TransformationsMenu, "&New...\tCtrl+N", "Describe a new transformation", When::Idle,
            &Workbench::MakeTransformation, Icon::New, "New"},
    Command{wxID_ABOUT, HelpMenu, "&About", "", When::Always, &Workbench::ShowAbout, {}, nullptr},
};

} // namespace

void Workbench::MakeMenus() {
  auto *bar = new wxMenuBar;
  std::array<wxMenu *, menuCount> menus = {};
  for (size_t index = 0; index < menus.size(); ++index)
    bar->Append(menus[index] = new wxMenu, menuTitles[index]);
  for (const Command &command : commands) {
    wxMenu &menu = *menus[command.menu];
    if (command.id == wxID_PREFERENCES) {
      auto *recent = new wxMenu;
      menu.AppendSubMenu(recent, "Open &Recent");
      memory.RecentFiles().UseMenu(recent);
      memory.RecentFiles().AddFilesToMenu();
    }
    if (command.beginsGroup)
      menu.AppendSeparator();
    menu.Append(command.id, command.label, command.help);
    Bind(wxEVT_MENU, &Workbench::OnCommand, this, command.id);
  }
  SetMenuBar(bar);
  const int firstRecent = memory.RecentFiles().GetBaseId();
  Bind(
      wxEVT_MENU,
      [this, firstRecent](wxCommandEvent &event) { OpenRecent(static_cast<size_t>(event.GetId() - firstRecent)); },
      firstRecent, firstRecent + 8);
}

void Workbench::MakeToolBar() {
  wxToolBar *bar = CreateToolBar(wxTB_HORIZONTAL | wxTB_TEXT);
  for (const Command &command : commands)
    if (command.icon)
      bar->AddTool(command.id, command.toolLabel, DrawIcon(*command.icon), command.help);
  bar->Realize();
}

void Workbench::OnCommand(wxCommandEvent &event) {
  const auto *command = std::ranges::find(commands, event.GetId(), &Command::id);
  if (command != commands.end())
    (this->*command->act)();
}

void Workbench::UpdateCommands() {
  for (const Command &command : commands) {
    bool enabled = command.when == When::Always || (command.when == When::Busy) == isBusy;
    if (command.when == When::WithDocument)
      enabled = enabled && documents->Active();
    if (command.when == When::WithLastRun)
      enabled = enabled && !lastRun.empty();
    GetMenuBar()->Enable(command.id, enabled);
    if (command.icon)
      GetToolBar()->EnableTool(command.id, enabled);
  }
  documents->Enable(!isBusy);
}

} // namespace desktop
