#include "monitor/start_and_leave.h"

#include <array>
#include <cmath>

#include "common/numbers.h"
#include "common/text.h"
#include "monitor/setting_keys.h"

namespace tarnlink {

namespace {

struct StoredFolder {
  const SettingKey& key;
  CommonDialog frm_Main::*dialog;
};

constexpr std::array<StoredFolder, 5> kFolders = {{
    {setting::kWcrFolder, &frm_Main::WcrCmnDlg},
    {setting::kPrjFolder, &frm_Main::PrjCmnDlg},
    {setting::kParFolder, &frm_Main::ParCmnDlg},
    {setting::kGrpFolder, &frm_Main::GrpCmnDlg},
    {setting::kMssFolder, &frm_Main::MssCmnDlg},
}};

struct StoredPlace {
  const SettingKey& key;
  Property<float> Window::*property;
};

constexpr std::array<StoredPlace, 4> kPlace = {{
    {setting::kLeft, &Window::Left},
    {setting::kTop, &Window::Top},
    {setting::kWidth, &Window::Width},
    {setting::kHeight, &Window::Height},
}};

std::string HistoryKey(int index) { return "Hist" + std::to_string(index); }

void LoadHistory(FixedArray<MenuEntry>& menu, const SettingsStore& store,
                 std::string_view section) {
  for (int i = menu.first(); i <= menu.last(); ++i) {
    menu(i).Caption = store.GetSetting(section, HistoryKey(i), kFreeHistoryEntry);
    if (menu(i).Caption->empty()) menu(i).Caption = std::string(kFreeHistoryEntry);
    menu(i).Enabled = menu(i).Caption.get() != kFreeHistoryEntry;
  }
}

void SaveHistory(const FixedArray<MenuEntry>& menu, SettingsStore& store,
                 std::string_view section) {
  for (int i = menu.first(); i <= menu.last(); ++i) {
    store.SaveSetting(section, HistoryKey(i), menu(i).Caption.get());
  }
}

}  // namespace

StartAndLeave::StartAndLeave(frm_Main& main, frm_Options& options, ScreenCommands& screen)
    : main_(main), options_(options), screen_(screen) {
  main_.M_exit.Click = [this] { M_exit(); };
}

void StartAndLeave::Form_Load() {
  main_.FirstLoad = true;
  LoadOptions(main_, options_);
  main_.trvProject.InitNewProjectTree();
  options_.ApplyOptions();
  main_.InitLocations();
  main_.WCRChanged = false;
  main_.InitForm();
  if (main_.form.State.get() == WindowState::kNormal) LoadPlace();
  LoadHistories();
  LoadFolders();
  const bool show_project =
      ToLower(Trim(ReadSetting(main_.platform().settings(), setting::kProjectWindow))) != "false";
  main_.sstProject.Visible = show_project;
  main_.mnuViewProjectWindow.Checked = show_project;
  main_.ShowTitle();
  main_.ShowLocationCount();
}

void StartAndLeave::LoadPlace() {
  // Nothing that a screen can show lies further out, whatever the store holds.
  constexpr int kFurthest = 200000;
  for (const StoredPlace& place : kPlace) {
    const std::string text = ReadSetting(main_.platform().settings(), place.key);
    main_.form.*place.property = static_cast<float>(ValInt(text, -kFurthest, kFurthest));
  }
}

void StartAndLeave::LoadHistories() {
  const SettingsStore& store = main_.platform().settings();
  LoadHistory(main_.M_fileHist, store, setting::kFileHistory);
  LoadHistory(main_.M_fileHistPrj, store, setting::kProjectHistory);
}

void StartAndLeave::LoadFolders() {
  for (const StoredFolder& folder : kFolders) {
    (main_.*folder.dialog).InitDir = ReadSetting(main_.platform().settings(), folder.key);
  }
}

void StartAndLeave::M_exit() {
  if (!SaveWhatChanged()) return;
  // What is asked here is asked once more then: the window stays at work meanwhile.
  if (main_.MayEnd && !main_.MayEnd([this] { M_exit(); })) return;
  main_.tmr_noresponse->SetEnabled(false);
  main_.Comm_Timer->SetEnabled(false);
  main_.tmr_MsgTimeout->SetEnabled(false);
  if (main_.Comm->PortOpen()) main_.Comm->SetPortOpen(false);
  if (main_.form.State.get() != WindowState::kMinimized) SavePlace();
  SaveHistories();
  SaveFolders();
  WriteSetting(main_.platform().settings(), setting::kProjectWindow,
               main_.sstProject.Visible ? "True" : "False");
  main_.TellStoreFailure();
  if (main_.Unload) main_.Unload();
}

bool StartAndLeave::SaveWhatChanged() {
  if (!screen_.OfferToSave()) return false;
  if (!main_.ProjectChanged) return true;
  const Answer answer = main_.platform().dialogs().MessageBox(
      {.text = "The project was changed. Do you want to save the changes?",
       .title = std::string(kQuestionTitle),
       .icon = Icon::kExclamation,
       .buttons = Buttons::kYesNo});
  if (answer == Answer::kNo) return true;
  if (answer != Answer::kYes) return false;  // left without an answer: nothing happens
  if (main_.mnuSaveProject.Click) main_.mnuSaveProject.Click();
  return !main_.ProjectChanged;
}

void StartAndLeave::SavePlace() {
  for (const StoredPlace& place : kPlace) {
    const float units = main_.form.*place.property;
    WriteSetting(main_.platform().settings(), place.key, std::to_string(std::lround(units)));
  }
}

void StartAndLeave::SaveHistories() {
  SettingsStore& store = main_.platform().settings();
  SaveHistory(main_.M_fileHist, store, setting::kFileHistory);
  SaveHistory(main_.M_fileHistPrj, store, setting::kProjectHistory);
}

void StartAndLeave::SaveFolders() {
  for (const StoredFolder& folder : kFolders) {
    WriteSetting(main_.platform().settings(), folder.key, (main_.*folder.dialog).InitDir);
  }
}

}  // namespace tarnlink
