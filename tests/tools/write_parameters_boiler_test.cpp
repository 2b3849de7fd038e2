// The parameter writer on the line of the simulated boiler: what it says must be what the boiler
// holds, whatever the line does.

#include <map>

#include "common/text_file.h"
#include "form/boiler_on_line.h"
#include "platform/forwarding_platform.h"
#include "support/samples.h"
#include "tools/line_faults.h"
#include "tools/write_parameters_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr boiler::LineOptions kLine = {.pace = {.baud = 9600}, .answer_delay_us = 5'000};
constexpr const char* kAllVerified = "All parameters set. And verified.";

// Confirms every box, whatever it says, and keeps the texts.
class ConfirmedDialogs final : public Dialogs {
 public:
  std::vector<std::string> texts;

  Answer MessageBox(const MessageBoxRequest& request) override {
    texts.push_back(request.text);
    return Answer::kOk;
  }
  std::optional<std::string> InputBox(const std::string&, const std::string&,
                                      const std::string&) override {
    return std::nullopt;
  }
  std::optional<std::string> OpenFile(const FileDialogRequest&) override { return std::nullopt; }
  std::optional<std::string> SaveFile(const FileDialogRequest&) override { return std::nullopt; }
  std::optional<std::string> PickFolder(const std::string&, const std::string&) override {
    return std::nullopt;
  }
  std::optional<Colour> PickColour(Colour) override { return std::nullopt; }
  std::optional<Font> PickFont(const Font&) override { return std::nullopt; }
  std::optional<PageSetup> PickPrinter(const PageSetup&) override { return std::nullopt; }
  void Preview(const PreviewRequest&) override {}
};

// The world with those dialogs.
class ConfirmedWorld final : public ForwardingPlatform {
 public:
  using ForwardingPlatform::ForwardingPlatform;

  ConfirmedDialogs& dialogs() override { return dialogs_; }

 private:
  ConfirmedDialogs dialogs_;
};

class WriterOnLine {
 public:
  explicit WriterOnLine(std::uint64_t seed = 1)
      : boiler(world, {.protocol = "zolt", .slave = {}, .line = kLine, .seed = seed}) {
    plain.host.MsgTimeout = [] { return 1; };
    plain.host.ParameterFile = [] { return std::string("/jobs/a.par"); };
  }

  // The text of the report, or of what ended it.
  std::string Write(const std::string& text, bool verifies = true) {
    world.disk().Put("/jobs/a.par", text);
    tool.Show();
    tool.chkVerify.Value = verifies;
    tool.cmdWriteZOLT.Press();
    EXPECT_TRUE(world.RunUntil([&] { return !tool.IsRunning(); }, 10min));
    const auto& texts = platform.dialogs().texts;
    const std::string report = texts.empty() ? "" : texts.back();
    list = tool.txtScrollStatus.Text();
    tool.Unload();
    return report;
  }
  int Byte(int address) {
    return boiler.controller().memory().Byte(static_cast<std::uint16_t>(address));
  }

  FakeWorld world;
  ConfirmedWorld platform{world};
  PlainHost plain{platform};
  frmWriteParameters tool{plain.host};
  BoilerOnLine boiler;
  std::string list;  // of the writing that was last
};

TEST(WriteParametersOnLine, TheSampleIsWrittenAndVerified) {
  WriterOnLine one;
  EXPECT_EQ(one.Write(SampleBytes("boiler.par")), kAllVerified);
  EXPECT_EQ(one.Byte(0x8000), 62);
  EXPECT_EQ(one.Byte(0x8001), 52);
  EXPECT_EQ(one.Byte(0x8014), 58);
  EXPECT_EQ(one.Byte(0xF410), 42);
  EXPECT_EQ(one.Byte(0xF411), 43);
}

TEST(WriteParametersOnLine, ALyingSlaveIsFoundOut) {
  WriterOnLine one;
  one.boiler.line().AddFault("write_ok_not_stored");
  EXPECT_EQ(one.Write("7 &HF410 &H2A\r\n5 &H056D &H4000\r\n"),
            "All parameters writen. 2 parameters NOT ok.");
  EXPECT_NE(one.Byte(0xF410), 42);
}

TEST(WriteParametersOnLine, AnAnswerThatIsLostCostsARetry) {
  WriterOnLine one;
  one.boiler.line().AddFault("write_stored_answer_lost#1");
  EXPECT_EQ(one.Write("5 &H056D &H4000\r\n"), kAllVerified);
  EXPECT_EQ(one.Byte(0x8000), 64);
}

TEST(WriteParametersOnLine, RefusalsAreCounted) {
  WriterOnLine one;
  EXPECT_EQ(one.Write("5 &H056D &HFF00\r\n5 &H0002 1\r\n"),
            "3 parameters NOT send. -1 parameters NOT ok.");
}

// Whatever the report says to be verified is in the boiler.
class WriteParametersFault : public ::testing::TestWithParam<std::string> {};

TEST_P(WriteParametersFault, NeverSaysOkToWhatIsNotThere) {
  WriterOnLine one(7);
  int verified = 0;
  for (int round = 1; round <= 12; ++round) {
    const int degrees = 48 + round;
    std::string text = "5 &H056D " + std::to_string(256 * degrees) + "\r\n";
    for (int i = 0; i < 6; ++i) {
      text += "7 " + std::to_string(0xF410 + i) + " " + std::to_string(16 * i + round) + "\r\n";
    }
    one.boiler.Calm();
    one.world.port().PlugIn();
    one.boiler.line().AddFault(GetParam() + "@0.3");
    const std::string report = one.Write(text);
    verified += report == kAllVerified ? 1 : 0;
    if (report != kAllVerified) continue;
    EXPECT_EQ(one.Byte(0x8000), degrees) << GetParam();
    for (int i = 0; i < 6; ++i) {
      EXPECT_EQ(one.Byte(0xF410 + i), 16 * i + round) << GetParam();
    }
  }
  one.boiler.Calm();
  one.world.port().PlugIn();
  EXPECT_EQ(one.Write(SampleBytes("boiler.par")), kAllVerified) << verified;
}

// Bytes that should all hold the same, so that an answer to one would pass for that to another,
// and a slave that does not store all of them.
class WriteParametersLies : public ::testing::TestWithParam<std::string> {};

// Of the verification the last word about each address, "OK" or another one.
std::map<int, std::string> LastWords(const std::string& list) {
  std::map<int, std::string> words;
  LineReader lines(list);
  bool is_verifying = false;
  for (std::string_view line; lines.Next(line);) {
    is_verifying = is_verifying || line == "Verifing parameters";
    const std::size_t at = line.find("ID  &H");
    const std::size_t word = line.find(".. ");
    if (!is_verifying || at == std::string_view::npos || word == std::string_view::npos) continue;
    words[std::stoi(std::string(line.substr(at + 6, 4)), nullptr, 16)] = line.substr(word + 3);
  }
  return words;
}

TEST_P(WriteParametersLies, AreNeverCalledOk) {
  WriterOnLine one(11);
  int right = 0;
  int wrong = 0;
  for (int round = 1; round <= 10; ++round) {
    std::string text;
    for (int i = 0; i < 8; ++i) {
      text += "7 " + std::to_string(0xF410 + i) + " " + std::to_string(round) + "\r\n";
    }
    one.boiler.Calm();
    one.world.port().PlugIn();
    one.boiler.line().AddFault("write_ok_not_stored@0.3");
    if (GetParam() != "write_ok_not_stored") one.boiler.line().AddFault(GetParam() + "@0.3");
    one.Write(text);
    for (const auto& [address, word] : LastWords(one.list)) {
      (word == "OK" ? right : wrong)++;
      if (word == "OK") {
        EXPECT_EQ(one.Byte(address), round) << address << " under " << GetParam();
      }
    }
  }
  EXPECT_GT(wrong, 0);
  // Unplugged it comes to an end before anything is verified.
  const bool is_unplugged = GetParam().find("plug") != std::string::npos;
  EXPECT_TRUE(right > 0 || is_unplugged);
}

// A slave that sends the answer before once more in the place of its own, or is later than all
// tries together, cannot be found out.
std::vector<std::string> FaultsOfTheLine() {
  std::vector<std::string> faults = LineFaults();
  std::erase(faults, "stale_duplicate");
  std::erase(faults, "late_reply(5100)");
  faults.push_back("write_ok_not_stored");
  return faults;
}

INSTANTIATE_TEST_SUITE_P(Each, WriteParametersLies, ::testing::ValuesIn(FaultsOfTheLine()),
                         LineFaultName);
INSTANTIATE_TEST_SUITE_P(Each, WriteParametersFault, ::testing::ValuesIn(LineFaults()),
                         LineFaultName);
INSTANTIATE_TEST_SUITE_P(OfWrites, WriteParametersFault,
                         ::testing::Values("write_ok_not_stored", "write_stored_answer_lost",
                                           "write_slow(2000)"),
                         LineFaultName);

}  // namespace
}  // namespace tarnlink
