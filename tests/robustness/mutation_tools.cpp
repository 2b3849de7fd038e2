// What the service tools open: sniffer texts, parameters, EEPROM definitions, configuration
// defaults.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>

#include "common/shown_text.h"
#include "common/text_file.h"
#include "files/config_file.h"
#include "files/parameter_file.h"
#include "files/sniffer_file.h"
#include "fuzz/decoders/line_bytes.h"
#include "robustness/mutation_bench.h"
#include "support/fake_world.h"
#include "tools/frm_cfg_check.h"
#include "tools/frm_eeprom.h"
#include "tools/frm_sniffer.h"
#include "tools/frm_write_parameters.h"
#include "tools/plain_host.h"

namespace tarnlink {
namespace {

// A tool, with the file that its user chooses in every dialog.
class ToolBench : public FileBench {
 protected:
  explicit ToolBench(const std::string& name) : path_("/jobs/" + name), name_(name) {
    plain_.host.IdFile = [this] { return path_; };
    plain_.host.ParFolder = [] { return std::string("/jobs"); };
    world_.dialogs().user = [this](const std::string& shown) {
      ScriptedDialog answer(shown);
      if (shown.starts_with("open file")) answer.Give(path_);
      return answer;
    };
  }

  void Put(std::string_view bytes) { world_.disk().Put(path_, bytes); }
  // The boxes that came up; file dialogs are none of them.
  std::vector<std::string> TakeBoxes() {
    std::vector<std::string> shown = world_.dialogs().TakeShown();
    std::erase_if(shown, [](const std::string& each) { return each.starts_with("open file"); });
    for (const std::string& box : shown) EXPECT_LE(box.size(), kLongestMessage);
    return shown;
  }

  FakeWorld world_;
  PlainHost plain_{world_};
  std::string path_;
  std::string name_;
};

std::string WithoutLine(std::string_view text, int number) {
  std::string rest(FirstLines(text, number - 1));
  return rest.append(text.substr(FirstLines(text, number).size()));
}

// --- Texts of the sniffer ------------------------------------------------------------------------

std::optional<std::string> ReasonOfSniffer(std::string_view text) {
  const SnifferFile file = ReadSnifferFile(text);
  return file.failure ? std::optional(file.failure->reason) : std::nullopt;
}

class SnifferBench final : public ToolBench {
 public:
  SnifferBench() : ToolBench("boiler.snf") {}

  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    Run([this] { sniffer_.Show(); });
    const std::vector<std::string> boxes = TakeBoxes();
    Run([this] { sniffer_.Unload(); });
    const std::string text = DecodeText(bytes);
    const SnifferFile file = ReadSnifferFile(text);
    EXPECT_EQ(sniffer_.lbl_Revision.Caption.get(), ShownText(file.Revision));
    EXPECT_LE(file.records.size(), 300U);
    for (const SnifferRecord& record : file.records) {
      EXPECT_TRUE(record.ID >= 0 && record.Representation >= 0 && record.Representation <= 3);
    }
    if (boxes.empty()) {
      EXPECT_FALSE(file.failure.has_value());
      return FileOutcome::kLoaded;
    }
    EXPECT_EQ(boxes.size(), 1U);
    ExpectTold(boxes[0], text, file);
    return FileOutcome::kPart;
  }

 private:
  static void ExpectTold(const std::string& box, const std::string& text, const SnifferFile& file) {
    const auto line = TakeNumber(box, "exclamation box [Sniffer] boiler.snf, line ");
    ASSERT_TRUE(line.has_value()) << box;
    const std::string behind = " (OK) | The rest of the file has been read.";
    ASSERT_TRUE(line->rest.ends_with(behind)) << box;
    const std::string reason =
        Behind(line->rest.substr(0, line->rest.size() - behind.size()), ": ");
    ExpectBlamed(text, line->number, reason, ReasonOfSniffer);
    // Only a representation that is none leaves a record, and that in hexadecimal digits.
    const auto all = file.records.size();
    const auto others = ReadSnifferFile(WithoutLine(text, line->number)).records;
    if (reason.starts_with("The representation") && !reason.ends_with("is missing.")) {
      EXPECT_EQ(all, std::min<std::size_t>(others.size() + 1, kMostSnifferRecords));
    } else {
      EXPECT_EQ(file.records, others);
    }
  }

  frmSniffer sniffer_{plain_.host};
};

// --- Parameters ----------------------------------------------------------------------------------

std::optional<std::string> ReasonOfParameters(std::string_view text) {
  const ParameterFile file = ReadParameterFile(text);
  return file.failure ? std::optional(file.failure->reason) : std::nullopt;
}

class ParameterBench final : public ToolBench {
 public:
  ParameterBench() : ToolBench("a.par") { tool_.Show(); }

  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    Run([this] { tool_.cmdBrowse.Press(); });
    const std::vector<std::string> boxes = TakeBoxes();
    const std::string text = DecodeText(bytes);
    const int lines = CountLines(text);
    const auto count = static_cast<int>(tool_.items().size());
    EXPECT_EQ(tool_.cmdWriteZOLT.Enabled.get(), count > 0);
    if (boxes.empty()) {
      EXPECT_EQ(tool_.ParameterPath, path_);
      EXPECT_EQ(tool_.StatusBar1.Text.get(), std::to_string(count) + " parameters");
      EXPECT_LE(count, lines);
      EXPECT_EQ(CountLines(tool_.txtScrollStatus.Text()), lines) << "each line is listed";
      for (const ParameterItem& item : tool_.items()) {
        EXPECT_TRUE(item.Class >= 0 && item.Class <= 7 && item.ID >= 0 && item.ID <= 0xFFFF &&
                    item.Value >= 0 && item.Value <= 0xFFFF);
      }
      return FileOutcome::kLoaded;
    }
    EXPECT_EQ(boxes.size(), 1U);
    ExpectRefused(boxes[0], text);
    return FileOutcome::kRefused;
  }

 private:
  void ExpectRefused(const std::string& box, const std::string& text) {
    EXPECT_TRUE(tool_.items().empty());
    EXPECT_EQ(tool_.ParameterPath, "");
    EXPECT_EQ(tool_.txtScrollStatus.Text(), "");
    Run([this] { tool_.cmdWriteZOLT.Press(); });
    EXPECT_FALSE(tool_.IsRunning());
    const auto line = TakeNumber(
        box, "critical box [Write Parameters] Error in file " + ShortnPath(path_) + " line ");
    ASSERT_TRUE(line.has_value()) << box;
    ExpectBlamed(text, line->number, Behind(line->rest, " (OK) | "), ReasonOfParameters);
  }

  frmWriteParameters tool_{plain_.host};
};

// --- EEPROM definitions --------------------------------------------------------------------------

std::string ReasonOfDefinition(std::string_view text) {
  try {
    for (const EepromBlock& block : ReadEepromSource(text).blocks) {
      for (const EepromRecord& record : block) AddressOf(record);
    }
    return {};
  } catch (const RunTimeError& error) {
    return error.what();
  }
}

// The check of a block's data, low byte first.
bool IsSoundBlock(std::string_view block) {
  const unsigned check = BitwiseXmodem(block.substr(0, kEepromBlockData));
  return static_cast<unsigned char>(block[kEepromBlockData]) == (check & 0xFF) &&
         static_cast<unsigned char>(block[kEepromBlockData + 1]) == check >> 8;
}

class EepromBench final : public ToolBench {
 public:
  EepromBench() : ToolBench("boiler.def") {
    tool_.Show();
    for (int i = 0; i < 2; ++i) tool_.chkOutputFormat(i).Value = true;
  }

  // Chooses the source, which says at once what is wrong, and has the files made of it.
  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    world_.disk().Remove(kTlk);
    world_.disk().Remove(kBin);
    Run([this] { tool_.cmd_Browse.Press(); });
    EXPECT_TRUE(TakeBoxes().empty());
    const std::string said = tool_.lblSource.Caption;
    EXPECT_LE(said.size(), kLongestMessage);
    Run([this] { tool_.cmd_TarnlinkFile.Press(); });
    const std::vector<std::string> boxes = TakeBoxes();
    if (boxes.size() != 1) {
      ADD_FAILURE() << boxes.size() << " boxes";
      return FileOutcome::kRefused;
    }
    const bool is_made =
        boxes[0] == "information box [File Generation Done...] Tarnlink File is generated (OK)";
    EXPECT_EQ(world_.disk().Exists(kTlk), is_made);
    EXPECT_EQ(world_.disk().Exists(kBin), is_made);
    const std::string text = DecodeText(bytes);
    if (!is_made) {
      ExpectRefused(Behind(boxes[0], "critical box [Error] "), said, text);
      return FileOutcome::kRefused;
    }
    return ExpectMade(said, text);
  }

 private:
  static constexpr const char* kTlk = "/jobs/boiler.tlk";
  static constexpr const char* kBin = "/jobs/boiler.bin";

  FileOutcome ExpectMade(const std::string& said, const std::string& text) {
    const std::string image = world_.disk().Get(kBin);
    EXPECT_EQ(image.size() % kEepromBlock, 0U);
    for (std::size_t i = 0; i + kEepromBlock <= image.size(); i += kEepromBlock) {
      EXPECT_TRUE(IsSoundBlock(std::string_view(image).substr(i, kEepromBlock)))
          << "block at " << i;
    }
    const auto bytes = TakeNumber(said, "");
    if (bytes && bytes->rest.starts_with(" bytes, ")) {
      EXPECT_EQ(bytes->number, static_cast<int>(image.size()));
      return FileOutcome::kLoaded;
    }
    // Files can be made of it, but it cannot be written into a slave.
    const std::string reason = ReasonOfDefinition(text);
    EXPECT_EQ(said, reason.empty()
                        ? "The EEPROM source file holds no block behind a line \"START\"."
                        : reason);
    EXPECT_EQ(image.empty(), reason.empty()) << said;
    return FileOutcome::kPart;
  }

  static void ExpectRefused(const std::string& box, const std::string& said,
                            const std::string& text) {
    EXPECT_EQ(box, said + " (OK)");
    EXPECT_EQ(said, ReasonOfDefinition(text));
    if (said.starts_with(kValueError)) return;  // names the record
    const auto line = TakeNumber(said, "Line ");
    ASSERT_TRUE(line && line->rest.starts_with(": ") && line->rest.size() > 2) << said;
    ExpectBlamed(text, line->number, said, ReasonOfDefinition);
  }

  frm_EEPROM tool_{plain_.host};
};

// --- Configuration defaults ----------------------------------------------------------------------

std::optional<std::string> ReasonOfConfig(std::string_view text) {
  const ConfigFile file = ReadConfigFile(text);
  const auto& bad = file.too_many ? file.too_many : file.failure;
  return bad ? std::optional(bad->reason) : std::nullopt;
}

class ConfigBench final : public ToolBench {
 public:
  ConfigBench() : ToolBench("boiler.cfg") { tool_.Show(); }

  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    Run([this] { tool_.cmd_Open.Press(); });
    const std::vector<std::string> boxes = TakeBoxes();
    EXPECT_EQ(tool_.txt_ConfigurationFile.Text.get(), path_);
    EXPECT_LE(tool_.ConfigItems.size(), 301U);
    EXPECT_EQ(tool_.ParametersList.List->size(), tool_.ConfigItems.size());
    for (const ConfigItem& item : tool_.ConfigItems) {
      EXPECT_TRUE(item.ID >= 0 && item.ID <= 0xFFFF && item.Minimum <= item.Maximum);
      EXPECT_EQ(item.Result, ConfigItem::kNoResult);
    }
    const std::string text = DecodeText(bytes);
    const ConfigFile file = ReadConfigFile(text);
    EXPECT_EQ(boxes.size(), (file.failure ? 1U : 0U) + (file.too_many ? 1U : 0U));
    for (const std::string& box : boxes) ExpectTold(box, text);
    if (!boxes.empty()) return FileOutcome::kPart;
    return FileOutcome::kLoaded;
  }

 private:
  void ExpectTold(const std::string& box, const std::string& text) {
    const auto line = TakeNumber(box, "exclamation box [Configuration check] Line ");
    const std::string before = " of the configuration file is wrong. (OK) | ";
    const std::string behind = " What the list shows is what will be checked.";
    ASSERT_TRUE(line && line->rest.ends_with(behind)) << box;
    const std::string reason =
        Behind(line->rest.substr(0, line->rest.size() - behind.size()), before);
    ExpectBlamed(text, line->number, reason, ReasonOfConfig);
    if (reason.starts_with("The test type")) return;
    EXPECT_EQ(ReadConfigFile(WithoutLine(text, line->number)).items, tool_.ConfigItems)
        << "a bad line costs no other one";
  }

  frm_CfgCheck tool_{plain_.host};
};

}  // namespace

std::unique_ptr<FileBench> MakeSnifferBench() { return std::make_unique<SnifferBench>(); }
std::unique_ptr<FileBench> MakeParameterBench() { return std::make_unique<ParameterBench>(); }
std::unique_ptr<FileBench> MakeEepromBench() { return std::make_unique<EepromBench>(); }
std::unique_ptr<FileBench> MakeConfigBench() { return std::make_unique<ConfigBench>(); }

}  // namespace tarnlink
