#include "form/desk_fixture.h"

#include <array>
#include <cstdio>

#include "common/numbers.h"

namespace tarnlink {
namespace {

class NotedPort final : public SerialPort {
 public:
  NotedPort(std::unique_ptr<SerialPort> port, Notes& notes)
      : port_(std::move(port)), notes_(notes) {}

  int CommPort() const override { return port_->CommPort(); }
  void SetCommPort(int number) override {
    notes_.Add("port number " + std::to_string(number));
    port_->SetCommPort(number);
  }
  const std::string& Settings() const override { return port_->Settings(); }
  void SetSettings(const std::string& settings) override {
    notes_.Add("port settings \"" + settings + "\"");
    port_->SetSettings(settings);
  }
  bool PortOpen() const override { return port_->PortOpen(); }
  void SetPortOpen(bool open) override {
    notes_.Add(open ? "open port" : "close port");
    port_->SetPortOpen(open);
  }
  void Output(std::string_view bytes) override { port_->Output(bytes); }
  std::string Input() override { return port_->Input(); }
  int InBufferCount() const override { return port_->InBufferCount(); }
  void ClearInBuffer() override { port_->ClearInBuffer(); }
  int RThreshold() const override { return port_->RThreshold(); }
  void SetRThreshold(int bytes) override { port_->SetRThreshold(bytes); }
  void SetOnComm(std::function<void(int)> handler) override {
    port_->SetOnComm(std::move(handler));
  }
  void SetWatcher(LineWatcher* watcher) override { port_->SetWatcher(watcher); }
  std::string LossReason() const override { return port_->LossReason(); }

 private:
  std::unique_ptr<SerialPort> port_;
  Notes& notes_;
};

std::string ColourText(Colour colour) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%06X", static_cast<unsigned>(colour));
  return text.data();
}

std::string PlaceText(const PlacedControl& control) {
  return " at " + FormatSingle(control.Left) + "," + FormatSingle(control.Top);
}

std::string Quoted(const std::string& text) { return " \"" + text + "\""; }

std::string BoxText(const TextBox& box) {
  std::string line = box.name() + Quoted(box.Text) + PlaceText(box);
  line += " tip" + Quoted(box.ToolTipText) + " back " + ColourText(box.BackColor);
  if (box.TextFont->italic) line += " italic";
  if (!box.Visible) line += " hidden";
  return line + "\n";
}

std::string CheckText(const CheckBox& box) {
  return box.name() + (box.Value ? " on" : " off") + PlaceText(box) +
         (box.Visible ? "" : " hidden") + "\n";
}

std::string LabelText(const Label& label) {
  const Font& font = label.TextFont.get();
  std::string line = label.name() + Quoted(label.Caption) + PlaceText(label);
  line += " font" + Quoted(font.name) + " " + FormatSingle(font.size);
  if (font.bold) line += " bold";
  if (font.italic) line += " italic";
  line += " colour " + ColourText(label.ForeColor) + " back " + ColourText(label.BackColor);
  if (!label.Visible) line += " hidden";
  return line + "\n";
}

// The caption of the button that is set.
std::string Chosen(const OptionGroup& group) {
  return group.Selected() < 0 ? "none" : group(group.Selected()).Caption.get();
}

// How many members there are beyond the template, far above the last that a test makes too.
template <class T>
int MemberCount(const ControlArray<T>& array) {
  constexpr int kFarAbove = 5000;
  int count = 0;
  for (int i = 1; i <= kFarAbove; ++i) count += array.Has(i) ? 1 : 0;
  return count;
}

}  // namespace

// --- NotedStore and NotedWorld ---

std::string NotedStore::GetSetting(std::string_view section, std::string_view key,
                                   std::string_view fallback) const {
  return store_.GetSetting(section, key, fallback);
}

void NotedStore::SaveSetting(std::string_view section, std::string_view key,
                             std::string_view value) {
  notes_.Add("save " + std::string(section) + "/" + std::string(key) + "=" + std::string(value));
  store_.SaveSetting(section, key, value);
}

NotedWorld::NotedWorld(FakeWorld& world, Notes& notes)
    : ForwardingPlatform(world), notes_(notes), store_(world.settings(), notes) {}

std::unique_ptr<SerialPort> NotedWorld::CreatePort() {
  return std::make_unique<NotedPort>(world().CreatePort(), notes_);
}

// --- DeskTest ---

void DeskTest::MakeProgram() {
  program_.reset();
  unloaded_ = false;
  program_ = std::make_unique<Monitor>(noted_world);
  main().Unload = [this] {
    notes.Add("unload");
    unloaded_ = true;
  };
}

void DeskTest::StartProgram() {
  MakeProgram();
  program_->start.Form_Load();
}

void DeskTest::Open(const std::string& path) {
  world.dialogs().ExpectOpenFile("Open").Give(path);
  main().M_fileopen.Press();
}

void DeskTest::OpenFails(int code, const std::string& path) {
  world.dialogs().ExpectOpenFile("Open").Give(path);
  ExpectOpenFailure(code, path);
  main().M_fileopen.Press();
}

void DeskTest::OpenText(std::string_view text, const std::string& path) {
  world.disk().Put(path, text);
  Open(path);
}

void DeskTest::OpenTextFails(int code, std::string_view text) {
  world.disk().Put(kScreen, text);
  OpenFails(code);
}

void DeskTest::ChangeScreen() {
  main().WCRChanged = true;
  main().ShowTitle();
}

void DeskTest::Delete(int index) {
  main().RAM_LOC_TEXT(index).Visible = false;
  main().RAM_LOC_VAL(index).Visible = false;
  main().RAM_LOC_CHECK(index).Visible = false;
}

ScriptedDialog& DeskTest::ExpectScreenQuestion() {
  return world.dialogs().ExpectMessageBox(
      {.text = "The screen was changed. Do you want to save the changes?",
       .title = "TarnLink2",
       .icon = Icon::kExclamation,
       .buttons = Buttons::kYesNo});
}

ScriptedDialog& DeskTest::ExpectProjectQuestion() {
  return world.dialogs().ExpectMessageBox(
      {.text = "The project was changed. Do you want to save the changes?",
       .title = "TarnLink2",
       .icon = Icon::kExclamation,
       .buttons = Buttons::kYesNo});
}

ScriptedDialog& DeskTest::ExpectAddToProject() {
  return world.dialogs().ExpectMessageBox({.text = "Add file to project?",
                                           .title = "TarnLink2",
                                           .icon = Icon::kQuestion,
                                           .buttons = Buttons::kYesNo});
}

ScriptedDialog& DeskTest::ExpectPortError() {
  return world.dialogs().ExpectMessageBox({.text = "Choose a port between 1 and 16",
                                           .title = "COM port Error",
                                           .icon = Icon::kCritical});
}

ScriptedDialog& DeskTest::ExpectOpenFailure(int code, const std::string& path) {
  return world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # " + std::to_string(code) +
               " occured, please contact distributor.\r\nDuring opening wcr file " + path,
       .title = "Internal System Error",
       .icon = Icon::kCritical});
}

ScriptedDialog& DeskTest::ExpectSaveFailure(int code, const std::string& path) {
  return world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # " + std::to_string(code) +
               " occured, please contact distributor.\r\nDuring saving wcr file " + path,
       .title = "Internal System Error",
       .icon = Icon::kCritical});
}

std::string DeskTest::History(const FixedArray<MenuEntry>& menu) {
  std::string text;
  for (int i = menu.first(); i <= menu.last(); ++i) {
    const std::string caption = menu(i).Caption;
    text += (menu(i).Enabled ? caption : "[" + caption + "]") + "\n";
  }
  return text;
}

std::string DeskTest::Screen() {
  std::string text = "colour " + ColourText(main().form.BackColor) + "\n";
  for (int i = 1; main().RAM_LOC_TEXT.Has(i); ++i) {
    text += BoxText(main().RAM_LOC_TEXT(i)) + BoxText(main().RAM_LOC_VAL(i)) +
            CheckText(main().RAM_LOC_CHECK(i));
  }
  for (int j = 1; main().lbl_TextInfo.Has(j); ++j) text += LabelText(main().lbl_TextInfo(j));
  return text;
}

std::string DeskTest::Counts() {
  EXPECT_EQ(MemberCount(main().RAM_LOC_TEXT), main().MaxId);
  EXPECT_EQ(MemberCount(main().RAM_LOC_VAL), main().MaxId);
  EXPECT_EQ(MemberCount(main().RAM_LOC_CHECK), main().MaxId);
  EXPECT_EQ(MemberCount(main().lbl_TextInfo), main().TextInfoCount);
  return "MaxId " + std::to_string(main().MaxId) + ", LocationCount " +
         std::to_string(main().LocationCount) + ", TextInfoCount " +
         std::to_string(main().TextInfoCount);
}

std::string DeskTest::PortOptions() {
  return std::to_string(options().opt_Protocol.Selected()) + ": " + Chosen(options().opt_Baudrate) +
         " " + Chosen(options().opt_parity) + " " + Chosen(options().opt_stop) + " " +
         std::to_string(options().sld_MsgTimeout.Value.get());
}

std::string FileText(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

}  // namespace tarnlink
