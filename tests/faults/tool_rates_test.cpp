// The service tools and the graph on a line at four rates of faults, against the simulated boiler:
// a message waits for the answer to the one before, nothing is shown but what came in with a sound
// check, what a tool calls done is done, and at rest no port is open and no timer runs.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <set>
#include <string>

#include "common/text.h"
#include "common/text_file.h"
#include "faults/rate_run.h"
#include "files/eeprom_output.h"
#include "files/eeprom_source.h"
#include "form/boiler_on_line.h"
#include "form/graph_on_line.h"
#include "protocols/zolt_message.h"
#include "simulator/bytes.h"
#include "simulator/crc.h"
#include "simulator/data_ids.h"
#include "support/eeprom_text.h"
#include "support/samples.h"
#include "tools/frm_cfg_check.h"
#include "tools/frm_eeprom.h"
#include "tools/frm_eeprom_down.h"
#include "tools/frm_ip_msg_err.h"
#include "tools/frm_scan_slaves.h"
#include "tools/frm_sniffer.h"
#include "tools/frm_write_parameters.h"
#include "tools/panel_on_line.h"
#include "tools/plain_host.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

constexpr boiler::LineOptions kLine = {.pace = {.baud = 9600}, .answer_delay_us = 5'000};
constexpr double kOneIn = 60'000;  // frames of chance that a check of 16 bits lets through
constexpr std::size_t kFrame = 16;

bool CheckHolds(std::string_view frame) {
  return frame.size() == kFrame && boiler::HexDigits(boiler::CrcXmodem(frame.substr(1, 10)), 4) ==
                                       ToUpper(frame.substr(11, 4));
}

// A tool that asks, with a user who has it work all the time.
class ToolPart {
 public:
  virtual ~ToolPart() = default;
  ToolPart(const ToolPart&) = delete;
  ToolPart& operator=(const ToolPart&) = delete;

  RateCounts Exchanges(double rate, long count) {
    LineGuard guard(world, world.port(0), [this] { return Waits(); });
    guard.on_input = [this](std::string_view bytes) { TakeInput(bytes); };
    for (const std::string& plan : PlansOf("zolt", rate)) boiler.line().AddFault(plan);
    while (guard.asked() < count && !testing::Test::HasFailure()) {
      if (IsIdle()) {
        ExpectAtRest();
        Begin();
        EXPECT_FALSE(IsIdle()) << said;
      }
      const long before = guard.asked();
      const auto goes_on = [&] { return guard.asked() > before || IsIdle(); };
      EXPECT_TRUE(world.RunUntil(goes_on, 60s)) << "stands still after " << before;
      Look();
      if (IsIdle()) End();
      if (guard.asked() % kForgets == 0) world.port(0).Forget();
      world.dialogs().TakeShown();
    }
    EXPECT_EQ(guard.hurried(), 0) << "one message in flight";
    return counts;
  }

 protected:
  explicit ToolPart(std::uint64_t seed)
      : boiler(world,
               {.protocol = "zolt",
                .slave = {.addresses = "0,3,A", .answers_corrupted = true},
                .line = kLine,
                .seed = seed},
               [this](const boiler::LogEntry& entry) {
                 if (entry.kind == boiler::LogKind::kHeard) ++counts.exchanges;
                 if (entry.kind == boiler::LogKind::kFault) ++counts.faults;
               }) {
    world.dialogs().user = [this](const std::string& shown) {
      ScriptedDialog answer(shown);
      if (shown.starts_with("open file") || shown.starts_with("save file")) answer.Give(path);
      if (shown.starts_with("question")) answer.Press(Answer::kYes);
      said = shown;
      return answer;
    };
  }

  virtual void Begin() = 0;
  virtual bool IsIdle() const = 0;
  // The work is over, and is judged.
  virtual void End() {}
  // After each message.
  virtual void Look() {}
  virtual void TakeInput(std::string_view /*bytes*/) {}
  virtual milliseconds Waits() const = 0;
  // The timer that runs while an answer is awaited.
  virtual const Timer* Awaiting() const = 0;

  int Byte(int address) {
    return boiler.controller().memory().Byte(static_cast<std::uint16_t>(address));
  }

  static constexpr long kForgets = 200;

  FakeWorld world;
  PlainHost plain{world};
  RateCounts counts;
  std::string path;  // that the user chooses
  std::string said;  // by the box that came last
  int turn = 0;      // of the work
  BoilerOnLine boiler;

 private:
  void ExpectAtRest() {
    EXPECT_FALSE(world.port(0).PortOpen());
    EXPECT_FALSE(Awaiting()->Enabled());
  }
};

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

class EepromWriterPart final : public ToolPart {
 public:
  explicit EepromWriterPart(std::uint64_t seed) : ToolPart(seed) {
    path = "/jobs/image.def";
    tool_.Show();
  }

 private:
  void Begin() override {
    ++turn;
    const std::string text =
        "START\r\n" +
        DefBlock(0x8000, [this](int offset) { return (31 * turn + 7 * offset) & 0xFF; }) +
        "END\r\n";
    image_ = BinBytes(ReadEepromSource(text));
    world.disk().Put(path, text);
    tool_.cmd_Browse.Press();
    tool_.cmd_WriteEEPROM.Press();
  }
  bool IsIdle() const override { return !tool_.Writing; }
  milliseconds Waits() const override { return milliseconds(EepromLine::kAnswerTime); }
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

// --- The control panel, the graph, the sniffer ---------------------------------------------------

// They have a record of their line of their own.
RateCounts PanelPart(double rate, long exchanges, std::uint64_t seed) {
  constexpr int kTabs = 5;
  PanelOnLine one(kLine, seed);
  LineGuard guard(one.world, one.world.port(0), [] { return milliseconds(3s); });
  for (const std::string& plan : PlansOf("zolt", rate)) one.boiler.line().AddFault(plan);
  RateCounts counts;
  for (int turn = 0; guard.asked() < exchanges && !testing::Test::HasFailure(); ++turn) {
    one.Update(turn % kTabs);
    EXPECT_TRUE(one.Finish(30min));
    EXPECT_FALSE(one.panel.tim_CommTimeout->Enabled());
    counts.shown += one.ShownValues();
    EXPECT_EQ(one.Unfounded(), "");
    one.world.port(0).Forget();
  }
  EXPECT_EQ(guard.hurried(), 0) << "one message in flight";
  counts.exchanges = static_cast<long>(one.heard.size());
  counts.faults = one.struck;
  return counts;
}

RateCounts GraphPart(double rate, long exchanges, std::uint64_t seed) {
  OnScreen one(Screens().at(2), seed);
  LineGuard guard(one.world, one.world.port(0), [] { return milliseconds(2s); });
  RateCounts counts;
  one.on_log = [&counts](const boiler::LogEntry& entry) {
    if (entry.kind == boiler::LogKind::kHeard) ++counts.exchanges;
    if (entry.kind == boiler::LogKind::kFault) ++counts.faults;
  };
  for (const std::string& plan : PlansOf("zolt", rate)) one.boiler.line().AddFault(plan);
  one.Start();
  for (long done = 0; done < exchanges && !testing::Test::HasFailure(); done += 500) {
    one.Exchange(static_cast<std::size_t>(std::min(500L, exchanges - done)));
    one.world.port(0).Forget();
  }
  EXPECT_EQ(guard.hurried(), 0) << "one message in flight";
  EXPECT_EQ(one.record.first_wrong_request(), "");
  EXPECT_EQ(one.record.Unfounded(), "");
  counts.shown = one.record.samples();
  return counts;
}

// It only listens: another master asks, and both sides are heard.
class SnifferPart {
 public:
  explicit SnifferPart(std::uint64_t seed)
      : boiler_(world_, {.protocol = "zolt", .line = kLine, .seed = seed},
                [this](const boiler::LogEntry& entry) {
                  if (entry.kind == boiler::LogKind::kHeard) ++counts_.exchanges;
                  if (entry.kind == boiler::LogKind::kFault) ++counts_.faults;
                }) {
    plain_.host.IdFile = [] { return std::string("/samples/default.ids"); };
    world_.disk().Put("/samples/default.snf", SampleBytes("default.snf"));
    sniffer_.Show();
    world_.port().on_input = [this](std::string_view bytes) { TakeInput(bytes); };
  }
  ~SnifferPart() { world_.port(0).on_input = nullptr; }

  RateCounts Exchanges(double rate, long count) {
    for (const std::string& plan : PlansOf("zolt", rate)) boiler_.line().AddFault(plan);
    for (long i = 0; i < count && !testing::Test::HasFailure(); ++i) {
      const auto& ids = boiler::DataIds();
      const boiler::DataId& id = ids[static_cast<std::size_t>(i) % ids.size()];
      const std::string request =
          BuildZoltMessage(static_cast<std::uint8_t>(id.data_class), "0", id.id, 0, 0);
      world_.on_output(world_.port(), request);
      world_.port().Receive(request);
      world_.Advance(60ms);
      Look();
    }
    const int good = sniffer_.frames() - sniffer_.bad_frames();
    EXPECT_LE(good, sound_frames_) << "more sound frames than came in";
    EXPECT_TRUE(world_.port().frames().empty()) << "a sniffer says nothing";
    return counts_;
  }

 private:
  // Every sound frame in what came in, wherever it begins.
  void TakeInput(std::string_view bytes) {
    tail_ += bytes;
    for (std::size_t at = 0; at + kFrame <= tail_.size(); ++at) {
      const std::string_view frame = std::string_view(tail_).substr(at, kFrame);
      if (!CheckHolds(frame)) continue;
      ++sound_frames_;
      heard_.insert(ToUpper(frame.substr(3, 4)));
    }
    tail_.erase(0, tail_.size() - std::min(tail_.size(), kFrame - 1));
  }
  // Only an ID that a sound frame bore is listed, and has an item.
  void Look() {
    const auto& listed = sniffer_.List_DetectedID.List.get();
    for (std::size_t i = seen_; i < listed.size(); ++i) {
      ++counts_.shown;
      const std::string id = Right("000" + listed[i], 4);
      if (!heard_.contains(id)) ++counts_.wrong;
    }
    seen_ = listed.size();
  }

  FakeWorld world_;
  PlainHost plain_{world_};
  RateCounts counts_;
  frmSniffer sniffer_{plain_.host};
  BoilerOnLine boiler_;
  std::set<std::string> heard_;
  std::string tail_;
  std::size_t seen_ = 0;
  int sound_frames_ = 0;
};

TEST_P(ToolRates, TheControlPanelShowsWhatWasSaidForIt) {
  const double rate = GetParam();
  const auto part = [rate](long exchanges, std::uint64_t seed) {
    return PanelPart(rate, exchanges, seed);
  };
  EXPECT_GT(RunInParts("control panel", rate, part).shown, 0);
}

TEST_P(ToolRates, TheGraphStoresWhatItsLinesWereAnswered) {
  const double rate = GetParam();
  const auto part = [rate](long exchanges, std::uint64_t seed) {
    return GraphPart(rate, exchanges, seed);
  };
  EXPECT_GT(RunInParts("graph", rate, part).shown, 0);
}

TEST_P(ToolRates, TheSnifferKnowsSoundFramesOnly) {
  const double rate = GetParam();
  const RateCounts all = RunInParts("sniffer", rate, [rate](long exchanges, std::uint64_t seed) {
    return SnifferPart(seed).Exchanges(rate, exchanges);
  });
  EXPECT_GT(all.shown, 0);
  // By chance a check holds over an ID of what is no digit.
  EXPECT_LE(all.wrong, MostHits(all.faults, kOneIn));
}

std::string NameOfRate(const testing::TestParamInfo<double>& rate) {
  return std::to_string(static_cast<int>(rate.param * 100)) + "_percent";
}

INSTANTIATE_TEST_SUITE_P(Each, ToolRates, testing::ValuesIn(kFaultRates), NameOfRate);

}  // namespace
}  // namespace tarnlink
