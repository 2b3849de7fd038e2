// The service tools on a line at four rates of faults, against the simulated boiler: a message
// waits for the answer to the one before, nothing is shown but what came in with a sound check,
// what a tool calls done is done, and when it has been left no port is open, no timer runs and
// nothing goes out.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <string>

#include "common/text.h"
#include "common/text_file.h"
#include "faults/tool_part.h"
#include "files/eeprom_output.h"
#include "files/eeprom_source.h"
#include "simulator/bytes.h"
#include "support/eeprom_text.h"
#include "support/samples.h"
#include "tools/frm_cfg_check.h"
#include "tools/frm_eeprom.h"
#include "tools/frm_eeprom_down.h"
#include "tools/frm_ip_msg_err.h"
#include "tools/frm_scan_slaves.h"
#include "tools/frm_write_parameters.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

// --- The parameter writer ------------------------------------------------------------------------

class ParameterPart final : public ToolPart {
 public:
  explicit ParameterPart(std::uint64_t seed) : ToolPart(seed) {
    plain.host.MsgTimeout = [] { return 1; };
    plain.host.ParameterFile = [] { return std::string("/jobs/a.par"); };
  }

 private:
  static constexpr int kBytes = 12;

  void Begin() override {
    ++turn;
    std::string text;
    for (int i = 0; i < kBytes; ++i) {
      text += "7 " + std::to_string(0xF410 + i) + " " + std::to_string(ValueOf(i)) + "\r\n";
    }
    world.disk().Put("/jobs/a.par", text);
    tool_.Show();
    tool_.chkVerify.Value = true;
    tool_.cmdWriteZOLT.Press();
  }
  bool IsIdle() const override { return !tool_.IsRunning(); }
  milliseconds Waits() const override { return 1s; }
  void Leave() override { tool_.Unload(); }
  const Timer* Awaiting() const override { return tool_.CommWatch.get(); }

  // Of each address the last word of the verification.
  void End() override {
    std::map<int, bool> is_ok;
    const std::string list = tool_.txtScrollStatus.Text();
    const std::size_t verifying = list.find("Verifing parameters");
    LineReader lines(verifying == std::string::npos ? std::string_view()
                                                    : std::string_view(list).substr(verifying));
    for (std::string_view line; lines.Next(line);) {
      const std::size_t at = line.find("ID  &H");
      const std::size_t word = line.find(".. ");
      if (at == std::string_view::npos || word == std::string_view::npos) continue;
      is_ok[std::stoi(std::string(line.substr(at + 6, 4)), nullptr, 16)] =
          line.substr(word + 3) == "OK";
    }
    for (const auto& [address, ok] : is_ok) {
      if (!ok) continue;
      ++counts.shown;
      if (Byte(address) != ValueOf(address - 0xF410)) ++counts.wrong;
    }
    tool_.Unload();
  }
  int ValueOf(int i) const { return (37 * turn + 11 * i) & 0xFF; }

  frmWriteParameters tool_{plain.host};
};

// --- The EEPROM writer and the downloader --------------------------------------------------------

// A block of 16 bytes that no other turn has.
std::string DefinitionOf(int turn) {
  return "START\r\n" +
         DefBlock(0x8000, [turn](int offset) { return (31 * turn + 7 * offset) & 0xFF; }) +
         "END\r\n";
}

class EepromWriterPart final : public ToolPart {
 public:
  explicit EepromWriterPart(std::uint64_t seed) : ToolPart(seed) {
    path = "/jobs/image.def";
    tool_.Show();
  }

 private:
  void Begin() override {
    ++turn;
    const std::string text = DefinitionOf(turn);
    image_ = BinBytes(ReadEepromSource(text));
    world.disk().Put(path, text);
    tool_.cmd_Browse.Press();
    tool_.cmd_WriteEEPROM.Press();
  }
  bool IsIdle() const override { return !tool_.Writing; }
  milliseconds Waits() const override { return milliseconds(EepromLine::kAnswerTime); }
  void Leave() override { tool_.Unload(); }
  const Timer* Awaiting() const override { return tool_.tim_eewrite_timeout.get(); }

  void End() override {
    EXPECT_EQ(tool_.lstResults.List->back(), "16 bytes written and verified.");
    for (int i = 0; i < kEepromBlock; ++i) {
      ++counts.shown;
      if (Byte(0x8000 + i) != static_cast<unsigned char>(image_[static_cast<std::size_t>(i)])) {
        ++counts.wrong;
      }
    }
  }

  frm_EEPROM tool_{plain.host};
  std::string image_;
};

// What the slave holds is the image, or, every second time, has one byte that is another.
class EepromVerifyPart final : public ToolPart {
 public:
  explicit EepromVerifyPart(std::uint64_t seed) : ToolPart(seed) {
    path = "/jobs/image.def";
    tool_.Show();
  }

 private:
  void Begin() override {
    ++turn;
    const std::string text = DefinitionOf(turn);
    const std::string image = BinBytes(ReadEepromSource(text));
    for (std::size_t i = 0; i < image.size(); ++i) {
      boiler.controller().WriteByte(static_cast<std::uint16_t>(0x8000 + i),
                                    static_cast<std::uint8_t>(image[i]));
    }
    expected_ = "16 bytes verified.";
    if (turn % 2 == 0) SpoilOne(image);
    world.disk().Put(path, text);
    tool_.cmd_Browse.Press();
    tool_.cmd_VerifyEEPROM.Press();
  }
  void SpoilOne(const std::string& image) {
    const auto at = static_cast<std::size_t>(turn / 2) % image.size();
    const int right = static_cast<unsigned char>(image[at]);
    const int wrong = right ^ (1 + turn % 0xFF);
    const auto address = static_cast<std::uint16_t>(0x8000 + at);
    boiler.controller().WriteByte(address, static_cast<std::uint8_t>(wrong));
    expected_ = "Ended: Verify Error on " + path + " 0X" + boiler::HexDigits(address, 4) + ": " +
                boiler::HexDigits(right, 2) + " expected, " + boiler::HexDigits(wrong, 2) +
                " read. ";
  }
  bool IsIdle() const override { return !tool_.Writing; }
  milliseconds Waits() const override { return milliseconds(EepromLine::kAnswerTime); }
  void Leave() override { tool_.Unload(); }
  const Timer* Awaiting() const override { return tool_.tim_eewrite_timeout.get(); }

  void End() override {
    ++counts.shown;
    if (!tool_.lstResults.List->back().starts_with(expected_)) ++counts.wrong;
  }

  frm_EEPROM tool_{plain.host};
  std::string expected_;
};

class DownloaderPart final : public ToolPart {
 public:
  explicit DownloaderPart(std::uint64_t seed) : ToolPart(seed) {
    path = "/jobs/image.def";
    world.disk().MakeFolder("/jobs");
    tool_.Show();
    tool_.txt_eepromsourcefile.Click();
    tool_.EESize.Text = std::to_string(kSize);
  }

 private:
  static constexpr int kSize = 64;

  void Begin() override {
    ++turn;
    for (int i = 0; i < kSize; i += kEepromBlock) WriteBlock(0x8000 + i);
    world.disk().Remove("/jobs/image.bin");
    tool_.cmd_read_EEPROM.Press();
  }
  // With a sound check, as controllers hold them.
  void WriteBlock(int first) {
    std::array<std::uint8_t, kEepromBlock> block{};
    for (std::size_t i = 0; i < kEepromBlockData; ++i) {
      block[i] = static_cast<std::uint8_t>(29 * turn + first + 5 * static_cast<int>(i));
    }
    const std::uint16_t check = EepromCheck(block);
    block[kEepromBlockData] = static_cast<std::uint8_t>(check & 0xFF);
    block[kEepromBlockData + 1] = static_cast<std::uint8_t>(check >> 8);
    for (std::size_t i = 0; i < block.size(); ++i) {
      boiler.controller().WriteByte(static_cast<std::uint16_t>(first + static_cast<int>(i)),
                                    block[i]);
    }
  }
  bool IsIdle() const override { return !tool_.progress.form.Visible; }
  milliseconds Waits() const override { return milliseconds(EepromLine::kAnswerTime); }
  void Leave() override { tool_.Unload(); }
  const Timer* Awaiting() const override { return tool_.tim_eeread_timeout.get(); }

  void End() override {
    EXPECT_TRUE(said.find("Tarnlink File is generated") != std::string::npos) << said;
    const std::string image = world.disk().Get("/jobs/image.bin");
    EXPECT_EQ(image.size(), static_cast<std::size_t>(kSize));
    for (std::size_t i = 0; i < image.size(); ++i) {
      ++counts.shown;
      if (Byte(0x8000 + static_cast<int>(i)) != static_cast<unsigned char>(image[i])) {
        ++counts.wrong;
      }
    }
  }

  frm_EEPROM_Down tool_{plain.host};
};

// --- The configuration check ---------------------------------------------------------------------

class ConfigPart final : public ToolPart {
 public:
  explicit ConfigPart(std::uint64_t seed) : ToolPart(seed) {
    path = "/jobs/boiler.cfg";
    world.disk().Put(path, SampleBytes("boiler.cfg"));
    tool_.Show();
    tool_.cmd_Open.Press();
    FindTruth();
  }

 private:
  void Begin() override { tool_.cmd_Check.Press(); }
  bool IsIdle() const override { return !tool_.IsRunning(); }
  milliseconds Waits() const override { return 300ms; }
  void Leave() override { tool_.Unload(); }
  const Timer* Awaiting() const override { return tool_.tim_cfgread_timeout.get(); }

  std::vector<std::string> Results() const {
    std::vector<std::string> results;
    for (const ConfigItem& item : tool_.ConfigItems) results.push_back(item.Result);
    return results;
  }
  // The first check finds all as it should be, and leaves other values behind; every later one
  // finds those.
  void FindTruth() {
    for (int round = 0; round < 2; ++round) {
      Begin();
      EXPECT_TRUE(world.RunUntil([this] { return IsIdle(); }, 10min));
      if (round > 0) continue;
      EXPECT_EQ(Results(), std::vector<std::string>(tool_.ConfigItems.size(), "OK"));
    }
    truth_ = Results();
    counts = {};
  }
  void End() override {
    const std::vector<std::string> results = Results();
    for (std::size_t i = 0; i < results.size(); ++i) {
      ++counts.shown;
      if (results[i] != truth_.at(i)) ++counts.wrong;
    }
  }

  frm_CfgCheck tool_{plain.host};
  std::vector<std::string> truth_;
};

// --- The slave scan ------------------------------------------------------------------------------

class ScanPart final : public ToolPart {
 public:
  explicit ScanPart(std::uint64_t seed) : ToolPart(seed) { FindTruth(); }

 private:
  using Row = std::array<std::string, 4>;

  void Begin() override {
    tool_.Show();
    is_on_ = true;
  }
  bool IsIdle() const override { return !is_on_; }
  milliseconds Waits() const override { return 2500ms; }
  void Leave() override { tool_.Unload(); }
  const Timer* Awaiting() const override { return tool_.ScanSlavesTimer.get(); }

  Row RowOf(int row) const {
    return {tool_.txtType(row).Text, tool_.txtLuP(row).Text, tool_.txtHuP(row).Text,
            tool_.txtEEPROM(row).Text};
  }
  // What the first round says on a sound line, where three slaves answer.
  void FindTruth() {
    tool_.Show();
    EXPECT_TRUE(world.RunUntil([this] { return tool_.ScanAddress == 15; }, 5min));
    int filled = 0;
    for (int row = 0; row < frm_ScanSlaves::kAddresses; ++row) {
      truth_[static_cast<std::size_t>(row)] = last_[static_cast<std::size_t>(row)] = RowOf(row);
      filled += RowOf(row)[3].empty() ? 0 : 1;
    }
    EXPECT_EQ(filled, 3);
    tool_.Unload();
    boiler.Calm();
    world.Advance(5s);
    counts = {};
  }

  // A field that came up is one of the truth, or says that nobody or something else answered. A
  // name stands in its field before the number that goes behind it does.
  void Look() override {
    for (int row = 0; row < frm_ScanSlaves::kAddresses; ++row) {
      const auto at = static_cast<std::size_t>(row);
      const Row now = RowOf(row);
      for (std::size_t i = 0; i < now.size(); ++i) {
        if (now[i] == last_[at][i] || now[i].empty()) continue;
        ++counts.shown;
        const std::string& truth = truth_[at][i];
        const bool is_word = i == 0 && (now[i] == "-" || now[i] == "err");
        const bool is_part =
            i == 0 && truth != "-" && (truth.starts_with(now[i]) || truth.ends_with(now[i]));
        if (now[i] != truth && !is_word && !is_part) ++counts.wrong;
      }
      last_[at] = now;
    }
  }

  frm_ScanSlaves tool_{plain.host};
  bool is_on_ = false;
  std::array<Row, frm_ScanSlaves::kAddresses> truth_;
  std::array<Row, frm_ScanSlaves::kAddresses> last_;
};

// --- The wrong messages --------------------------------------------------------------------------

// It shows what comes, sound or not; only the echo, silence and the kind of the answer are its own.
class WrongMessagePart final : public ToolPart {
 public:
  explicit WrongMessagePart(std::uint64_t seed) : ToolPart(seed) { tool_.Show(); }

 private:
  // What comes behind a frame that noise has pushed aside is gone when the user presses again.
  void Begin() override {
    world.Advance(100ms);
    taken_.clear();
    tool_.cmd_SendErrMsg.Press();
  }
  bool IsIdle() const override { return !tool_.tim_IPMsgErr->Enabled(); }
  milliseconds Waits() const override { return 1s; }
  void Leave() override { tool_.Unload(); }
  const Timer* Awaiting() const override { return tool_.tim_IPMsgErr.get(); }
  void TakeInput(std::string_view bytes) override { taken_ += bytes; }

  // "Read Acknowledge" is what the type byte of the bytes that came says; nothing came, nothing
  // shows.
  void End() override {
    const std::string status = tool_.txtStatus.Text;
    if (status.empty()) return;
    ++counts.shown;
    const bool has_type = std::any_of(taken_.begin(), taken_.end(), [](char byte) {
      return static_cast<unsigned char>(byte) >> 4 == 1;
    });
    if (taken_.empty() || (status == "Read Acknowledge" && !has_type)) ++counts.wrong;
  }

  frm_IPMsgErr tool_{plain.host};
  std::string taken_;
};

// --- All of them ---------------------------------------------------------------------------------

template <class Part>
void RunTool(const std::string& name, double rate) {
  const RateCounts all = RunInParts(name, rate, [rate](long exchanges, std::uint64_t seed) {
    return Part(seed).Exchanges(rate, exchanges);
  });
  EXPECT_GT(all.shown, 0);
  EXPECT_LE(all.wrong, MostHits(all.faults, kOneIn));
}

class ToolRates : public testing::TestWithParam<double> {};

TEST_P(ToolRates, ParametersThatAreVerifiedAreThere) {
  RunTool<ParameterPart>("parameters", GetParam());
}

TEST_P(ToolRates, AnImageThatIsVerifiedIsThere) {
  RunTool<EepromWriterPart>("eeprom writer", GetParam());
}

TEST_P(ToolRates, AnImageIsFoundRightOrWrongAsItIs) {
  RunTool<EepromVerifyPart>("eeprom verify", GetParam());
}

TEST_P(ToolRates, AnImageThatIsReadIsThatOfTheSlave) {
  RunTool<DownloaderPart>("eeprom downloader", GetParam());
}

TEST_P(ToolRates, RightLimitsAreCalledRight) { RunTool<ConfigPart>("cfg check", GetParam()); }

TEST_P(ToolRates, TheScanShowsTheSlavesThatAreThere) {
  RunTool<ScanPart>("slave scan", GetParam());
}

TEST_P(ToolRates, WrongMessagesShowWhatCame) {
  RunTool<WrongMessagePart>("wrong messages", GetParam());
}

INSTANTIATE_TEST_SUITE_P(Each, ToolRates, testing::ValuesIn(kFaultRates), NameOfRate);

}  // namespace
}  // namespace tarnlink
