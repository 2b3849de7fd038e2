// The settings file, as the program has written it, cut at each byte and with each byte damaged:
// the program starts with every control in its range.
#include <gtest/gtest.h>

#include <QSettings>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "monitor/monitor.h"
#include "monitor/setting_keys.h"
#include "platform/forwarding_platform.h"
#include "platform/port_devices.h"
#include "platform/qt/qt_settings_store.h"
#include "robustness/mutation_damage.h"
#include "support/fake_world.h"
#include "support/temporary_folder.h"

namespace tarnlink {
namespace {

struct Value {
  SettingKey key;
  const char* text;
};

// None is the default, so that one that was lost is seen.
constexpr std::array<Value, 21> kValues = {{
    {setting::kProtocol, "2"},
    {setting::kBaudrate, "4"},
    {setting::kCommport, "7"},
    {setting::kStopBits, "0"},
    {setting::kParity, "2"},
    {setting::kExcelPath, "/home/user/tables"},
    {setting::kIgnoreErrors, "0"},
    {setting::kFileLogging, "1"},
    {setting::kDdeLogging, "1"},
    {setting::kMsgTimeout, "12"},
    {setting::kScanning, "1"},
    {setting::kMicroprocessor, "2"},
    {setting::kLogPath, "/logs"},
    {setting::kIdDefinition, "/home/user/Gerät, neu.ids"},
    {setting::kDatabaseFiles, "/"},
    {setting::kMemoryMap, "/a b.map"},
    {setting::kLeft, "-120"},
    {setting::kTop, "65"},
    {setting::kWidth, "9000"},
    {setting::kHeight, "7000"},
    {setting::kProjectWindow, "False"},
}};

// What the user is told, or asked, is closed; what the program stores goes nowhere.
class ReadOnlyStore final : public SettingsStore {
 public:
  explicit ReadOnlyStore(const SettingsStore& store) : store_(store) {}

  std::string GetSetting(std::string_view section, std::string_view key,
                         std::string_view fallback) const override {
    return store_.GetSetting(section, key, fallback);
  }
  void SaveSetting(std::string_view, std::string_view, std::string_view) override {}
  std::string Failure() override { return {}; }

 private:
  const SettingsStore& store_;
};

class StoredPlatform final : public ForwardingPlatform {
 public:
  StoredPlatform(FakeWorld& world, SettingsStore& store)
      : ForwardingPlatform(world), store_(store) {}

  SettingsStore& settings() override { return store_; }

 private:
  SettingsStore& store_;
};

// A folder of its own for each file: Qt keeps what it has read of a path.
class SettingsDamage : public testing::Test {
 protected:
  SettingsDamage() {
    Use("written");
    {
      QtSettingsStore store;
      for (const Value& value : kValues) WriteSetting(store, value.key, value.text);
      EXPECT_EQ(store.Failure(), "");
    }
    std::ifstream file(File(), std::ios::binary);
    whole_.assign(std::istreambuf_iterator<char>(file), {});
    EXPECT_FALSE(whole_.empty());
  }

  TakeDamage Starts() {
    return [this](const Damage& damage) {
      Use("damaged" + std::to_string(++started_));
      std::filesystem::create_directories(std::filesystem::path(File()).parent_path());
      std::ofstream(File(), std::ios::binary) << damage.bytes;
      Start();
      std::filesystem::remove_all(config_);
      if (HasFailure()) ADD_FAILURE() << "This was " << damage.Describe();
      return !HasFailure();
    };
  }

  void Start() {
    const QtSettingsStore stored;
    ReadOnlyStore store(stored);
    read_ = 0;
    for (const Value& value : kValues) read_ += ReadSetting(store, value.key) == value.text ? 1 : 0;
    FakeWorld world;
    world.dialogs().user = [](const std::string& shown) { return ScriptedDialog(shown); };
    StoredPlatform platform(world, store);
    Monitor program(platform);
    program.start.Form_Load();
    ExpectInRange(program.options);
    const auto& form = program.main.form;
    for (const float place :
         {form.Left.get(), form.Top.get(), form.Width.get(), form.Height.get()}) {
      EXPECT_TRUE(place >= -200'000 && place <= 200'000) << place;
    }
  }

  static void ExpectInRange(const frm_Options& options) {
    for (const OptionGroup* group :
         {&options.opt_Protocol, &options.opt_Baudrate, &options.opt_stop, &options.opt_parity,
          &options.MicroSelect}) {
      EXPECT_TRUE(group->Selected() >= 0 && group->Selected() < group->count());
    }
    const Slider& timeout = options.sld_MsgTimeout;
    EXPECT_TRUE(timeout.Value >= timeout.minimum && timeout.Value <= timeout.maximum);
    const std::string& port = options.ComPortNumber.Text;
    EXPECT_TRUE(port.size() <= 2 && std::stoi(port) >= kFirstPort && std::stoi(port) <= kLastPort);
  }

  std::string whole_;
  int started_ = 0;
  int read_ = 0;  // values that were found as they were stored, in the last start

 private:
  void Use(const std::string& name) {
    config_ = folder_ / name;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, QString::fromStdString(config_));
  }
  std::string File() const { return config_ + "/TarnLink2/TarnLink2.ini"; }

  TemporaryFolder folder_;
  std::string config_;
};

constexpr int kAll = static_cast<int>(kValues.size());

TEST_F(SettingsDamage, AFileThatIsSoundGivesEveryValue) {
  Starts()({"whole", 0, whole_});
  EXPECT_EQ(read_, kAll);
}

TEST_F(SettingsDamage, AFileThatIsCutStartsTheProgram) {
  int before = 0;
  const TakeDamage start = Starts();
  Prefixes(whole_, {}, [&](const Damage& damage) {
    const bool goes_on = start(damage);
    // One value may be cut so that it is another one, but none comes and goes.
    EXPECT_GE(read_, before - 1) << damage.Describe();
    before = std::max(before, read_);
    return goes_on;
  });
  EXPECT_EQ(read_, kAll);
  EXPECT_EQ(started_, static_cast<int>(whole_.size()) + 1);
}

TEST_F(SettingsDamage, AByteThatIsDamagedStartsTheProgram) {
  constexpr std::array<unsigned char, 3> kMasks = {0x01, 0x80, 0xFF};
  const TakeDamage start = Starts();
  int unhurt = 0;
  Flips(whole_, {}, kMasks, {}, [&](const Damage& damage) {
    const bool goes_on = start(damage);
    if (read_ >= kAll - 1) ++unhurt;
    return goes_on;
  });
  EXPECT_EQ(started_, static_cast<int>(whole_.size() * kMasks.size()));
  EXPECT_GT(unhurt, started_ / 2) << "most bytes cost one value at most";
}

}  // namespace
}  // namespace tarnlink
