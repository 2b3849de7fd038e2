// What the commands of the main form open: screens, projects, maps, names and error texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "common/run_time_error.h"
#include "common/text_file.h"
#include "files/project_file.h"
#include "files/screen_file.h"
#include "monitor/monitor.h"
#include "monitor/screen_builder.h"
#include "robustness/mutation_bench.h"
#include "support/fake_world.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

constexpr int kEmptyProject = 7;  // nodes

// The program, with the file that its user chooses in every dialog.
class MonitorBench : public FileBench {
 protected:
  explicit MonitorBench(const std::string& name) : path_("/jobs/" + name), name_(name) {
    world_.dialogs().user = [this](const std::string& shown) {
      ScriptedDialog answer(shown);
      if (shown.starts_with("open file")) answer.Give(path_);
      return answer;
    };
    world_.disk().Put(std::string(FakeFiles::kData) + "/default.ids", SampleBytes("default.ids"));
    program_.start.Form_Load();
    world_.dialogs().TakeShown();
  }

  frm_Main& main() { return program_.main; }
  void Put(std::string_view bytes) { world_.disk().Put(path_, bytes); }
  // The boxes that come up; the file dialog is none of them.
  std::vector<std::string> BoxesOf(MenuEntry& entry) {
    Run([&entry] { entry.Press(); });
    std::vector<std::string> shown = world_.dialogs().TakeShown();
    EXPECT_FALSE(shown.empty()) << "no file was asked for";
    if (!shown.empty()) shown.erase(shown.begin());
    for (const std::string& box : shown) EXPECT_LE(box.size(), kLongestMessage);
    return shown;
  }

  FakeWorld world_;
  Monitor program_{world_};
  std::string path_;
  std::string name_;
};

// --- Screens -------------------------------------------------------------------------------------

struct ReadScreen {
  std::vector<ScreenRecord> records;
  int code = 0;
  std::string reason;
};

ReadScreen ReadRecords(std::string_view text) {
  ReadScreen screen;
  try {
    ScreenFileReader reader(text);
    reader.ReadColour();
    while (auto record = reader.Next()) {
      if (auto* location = std::get_if<LocationRecord>(&*record)) {
        if (location->tag != kMemoryTag) MakeWordIfBothBytes(location->location);
        location->tag = kMemoryTag;  // the form does not keep it
      }
      screen.records.push_back(*record);
    }
  } catch (const RunTimeError& error) {
    screen.code = error.code();
    screen.reason = error.what();
  }
  return screen;
}

class ScreenBench final : public MonitorBench {
 public:
  ScreenBench() : MonitorBench("boiler.wcr") {}

  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    const std::vector<std::string> boxes = BoxesOf(main().M_fileopen);
    const std::string text = DecodeText(bytes);
    const ReadScreen read = ReadRecords(text);
    ExpectWhole(read);
    if (boxes.empty()) {
      EXPECT_EQ(read.code, 0) << "the bad record was not told: " << read.reason;
      EXPECT_EQ(main().CurrentTarnLinkFile, path_);
      return FileOutcome::kLoaded;
    }
    EXPECT_EQ(boxes.size(), 1U);
    ExpectTold(boxes[0], read, text);
    EXPECT_EQ(main().CurrentTarnLinkFile, "");
    EXPECT_EQ(main().form.Caption.get(), "TarnLink - New Screen");
    return FileOutcome::kPart;
  }

 private:
  void ExpectTold(const std::string& box, const ReadScreen& read, const std::string& text) {
    const std::string detail =
        Behind(box, "critical box [Internal System Error] " + SystemErrorText(read.code) +
                        "\r\nDuring opening wcr file " + path_ + " (OK) | ");
    EXPECT_EQ(detail, read.reason);
    if (read.code == kSubscript) {
      EXPECT_EQ(detail, "The file holds more than 512 Locations.");
      return;
    }
    EXPECT_TRUE(read.code == kTypeMismatch || read.code == kOverflow || read.code == kPastEndOfFile)
        << read.code;
    const auto line = TakeNumber(detail, "Line ");
    ASSERT_TRUE(line && line->rest.starts_with(", ")) << detail;
    if (read.code == kPastEndOfFile) {
      EXPECT_EQ(line->number, CountLines(text) + (text.empty() || text.ends_with('\n') ? 1 : 0));
    } else {
      ExpectBlamed(text, line->number, detail,
                   [](std::string_view part) { return ReadRecords(part).reason; });
    }
  }

  // Every record before a bad one stands with all of its boxes, and nothing of the bad one does.
  void ExpectWhole(const ReadScreen& read) {
    std::vector<ScreenRecord> shown = ScreenRecords(main(), program_.options);
    for (ScreenRecord& record : shown) {
      if (auto* location = std::get_if<LocationRecord>(&record)) location->tag = kMemoryTag;
    }
    std::vector<ScreenRecord> expected = read.records;
    std::stable_partition(expected.begin(), expected.end(),
                          [](const auto& record) { return record.index() == 0; });
    EXPECT_TRUE(shown == expected) << shown.size() << " of " << expected.size() << " records";
    for (const ScreenRecord& record : shown) {
      const auto* location = std::get_if<LocationRecord>(&record);
      if (location == nullptr) continue;
      EXPECT_TRUE(std::isfinite(location->value_top) && std::isfinite(location->name_left));
      EXPECT_EQ(location->location.Address.size(), 4U);
    }
    const int last = main().MaxId;
    EXPECT_EQ(main().LocationCount, last);
    for (int i = 1; i <= last; ++i) {
      EXPECT_TRUE(main().RAM_LOC_TEXT.Has(i) && main().RAM_LOC_VAL.Has(i) &&
                  main().RAM_LOC_CHECK.Has(i));
    }
    EXPECT_FALSE(main().RAM_LOC_TEXT.Has(last + 1) || main().RAM_LOC_VAL.Has(last + 1) ||
                 main().RAM_LOC_CHECK.Has(last + 1));
    EXPECT_FALSE(main().lbl_TextInfo.Has(main().TextInfoCount + 1));
    EXPECT_TRUE(main().form.Painting.get());
    EXPECT_FALSE(main().building || main().CommRunning || main().WCRChanged);
  }
};

// --- Projects ------------------------------------------------------------------------------------

class ProjectBench final : public MonitorBench {
 public:
  ProjectBench() : MonitorBench("boiler.prj") {
    for (const char* name : {"atmega.map", "default.ids", "default.erc"}) {
      world_.disk().Put(std::string("/jobs/") + name, SampleBytes(name));
    }
  }

  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    main().ProjectChanged = false;
    std::vector<std::string> boxes = BoxesOf(main().mnuOpenProject);
    // Of each map that is not there; the project is opened all the same.
    std::erase_if(boxes, [](const std::string& box) {
      return box.find("\r\nDuring reading memory map /") != std::string::npos;
    });
    const std::vector<std::string> entries = ReadProjectEntries(DecodeText(bytes));
    EXPECT_FALSE(main().ProjectChanged);
    if (boxes.empty()) return ExpectLoaded(entries);
    EXPECT_EQ(boxes.size(), 1U);
    ExpectRefused(boxes[0], entries);
    return FileOutcome::kRefused;
  }

 private:
  FileOutcome ExpectLoaded(const std::vector<std::string>& entries) {
    EXPECT_EQ(main().CurrentProjectFile, path_);
    EXPECT_EQ(main().trvProject.RootText(), name_);
    EXPECT_EQ(main().trvProject.Count(), kEmptyProject + static_cast<int>(entries.size()));
    for (const std::string& entry : entries) {
      const bool is_path = entry.find_first_of("/\\") != std::string::npos;
      const ProjectNode* node = main().trvProject.Find(is_path ? entry : "/jobs/" + entry);
      EXPECT_TRUE(node != nullptr && node->parent == GroupOfEntry(entry)) << entry;
    }
    return FileOutcome::kLoaded;
  }
  void ExpectRefused(const std::string& box, const std::vector<std::string>& entries) {
    const std::string detail =
        Behind(box, "exclamation box [TarnLink] Can not read project file. (OK) | The entry \"");
    const std::size_t end = detail.rfind("\" ");
    ASSERT_NE(end, std::string::npos) << detail;
    const std::string rest = detail.substr(end);
    EXPECT_TRUE(rest == "\" stands in it twice." ||
                rest == "\" is of no kind that a project holds.")
        << detail;
    EXPECT_TRUE(std::any_of(entries.begin(), entries.end(), [&](const std::string& entry) {
      return IsShown(entry, detail.substr(0, end));
    })) << detail;
    EXPECT_EQ(main().trvProject.Count(), kEmptyProject);
    EXPECT_EQ(main().trvProject.RootText(), "Unnamed Project");
    EXPECT_EQ(main().CurrentProjectFile, "");
  }
  // Up to what a message has no room for or cannot show.
  static bool IsShown(const std::string& entry, std::string shown) {
    if (shown.ends_with("...")) shown.resize(shown.size() - 3);
    if (entry.size() < shown.size()) return false;
    for (std::size_t i = 0; i < shown.size(); ++i) {
      const auto letter = static_cast<unsigned char>(entry[i]);
      if (entry[i] != shown[i] && letter >= ' ' && letter < 0x7F) return false;
      if (letter >= 0x7F) return true;
    }
    return true;
  }
};

// --- Maps ----------------------------------------------------------------------------------------

class MapBench final : public MonitorBench {
 public:
  explicit MapBench(const std::string& name) : MonitorBench(name) {}

  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    main().trvProject.InitNewProjectTree();
    const std::string notice = main().lbl_MapNotice.Caption;
    const std::size_t names = Names();
    const std::vector<std::string> boxes = BoxesOf(main().mnuAddNecMap);
    const int type = TypeBySignature(bytes);
    if (type == kUnknownMap) {
      EXPECT_EQ(boxes,
                (std::vector<std::string>{"exclamation box [TarnLink] Unkonwn map file. (OK)"}));
      EXPECT_EQ(main().trvProject.Count(), kEmptyProject);
      EXPECT_EQ(main().lbl_MapNotice.Caption.get(), notice);
      EXPECT_EQ(Names(), names);
      return FileOutcome::kRefused;
    }
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(main().MicroType, type);
    EXPECT_EQ(main().trvProject.Count(), kEmptyProject + 1);
    return ExpectTold(bytes);
  }

 private:
  std::size_t Names() const {
    return program_.map.variables().size() + program_.map.bytes().size() +
           program_.map.bits().size();
  }

  int TypeBySignature(std::string_view bytes) const {
    const bool is_map = name_.ends_with("map");
    for (std::string_view rest = bytes; !rest.empty();) {
      const std::string_view whole = FirstLines(rest, 1);
      const std::string_view line = whole.substr(0, PieceLines::kLongest);
      rest.remove_prefix(whole.size());
      const auto holds = [&](const char* mark) {
        return line.find(mark) != std::string_view::npos;
      };
      if (!is_map && holds("Target CPU")) return kNecListing;
      if (!is_map || !holds("__cpu_name")) continue;
      return holds("ATmega") ? kAtmegaMap : holds("ATxmega") ? kXmegaMap : kUnknownMap;
    }
    return kUnknownMap;
  }

  // "atmega.map: 12 variables read, 3 lines skipped" and what else there is to say.
  FileOutcome ExpectTold(std::string_view bytes) {
    const std::string notice = main().lbl_MapNotice.Caption;
    EXPECT_TRUE(main().lbl_MapNotice.Visible.get());
    EXPECT_LE(notice.size(), kLongestMessage);
    const auto read = TakeNumber(notice, name_ + ": ");
    const bool is_one = read && read->number == 1;
    const auto skipped =
        TakeNumber(read ? read->rest : "", is_one ? " variable read, " : " variables read, ");
    if (!read || !skipped) {
      ADD_FAILURE() << notice;
      return FileOutcome::kRefused;
    }
    EXPECT_EQ(read->number, static_cast<int>(IsListing() ? program_.map.bytes().size() +
                                                               program_.map.bits().size()
                                                         : program_.map.variables().size()));
    EXPECT_LE(read->number + skipped->number, CountLines(bytes));
    ExpectSound();
    return skipped->number > 0 || read->number == 0 ? FileOutcome::kPart : FileOutcome::kLoaded;
  }

  bool IsListing() { return main().MicroType == kNecListing; }

  void ExpectSound() {
    const auto& variables = program_.map.variables();
    for (std::size_t i = 0; i < variables.size(); ++i) {
      const MapVariable& variable = variables[i];
      EXPECT_TRUE(variable.address.size() == 4 && variable.address[0] == 'F') << variable.address;
      if (i > 0) {
        EXPECT_LE(variables[i - 1].address, variable.address);
      }
      EXPECT_GE(variable.Size, 0) << variable.Name;
    }
    for (const NecBit& bit : program_.map.bits()) {
      EXPECT_TRUE(bit.BitAddress >= 0 && bit.BitAddress <= 9 && bit.address >= 0 &&
                  bit.address <= 0xFFFF);
    }
    for (const NecByte& byte : program_.map.bytes()) {
      EXPECT_TRUE(byte.address >= 0 && byte.address <= 0xFFFF);
    }
  }
};

// --- Names and error texts -----------------------------------------------------------------------

std::optional<std::string> ReasonOfIds(std::string_view text) {
  const IdFile file = ReadIdFile(text);
  return file.failure ? std::optional(file.failure->reason) : std::nullopt;
}

class IdBench final : public MonitorBench {
 public:
  IdBench() : MonitorBench("boiler.ids") {}

  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    main().trvProject.InitNewProjectTree();
    EXPECT_TRUE(BoxesOf(main().mnuAddIDFile).empty());
    const std::string notice = main().lbl_IdNotice.Caption;
    EXPECT_EQ(main().lbl_IdNotice.Visible.get(), !notice.empty());
    EXPECT_LE(notice.size(), kLongestMessage);
    const std::vector<IDItem>& items = program_.ids.items();
    if (notice.empty()) {
      EXPECT_FALSE(items.empty());
      EXPECT_LE(static_cast<int>(items.size()), std::min(CountLines(bytes), 301));
      for (const IDItem& item : items) EXPECT_GE(item.ID, 0);
      return FileOutcome::kLoaded;
    }
    EXPECT_TRUE(items.empty()) << "half of the names";
    if (notice == name_ + ": The file holds no IDs.") return FileOutcome::kRefused;
    const auto line = TakeNumber(notice, name_ + ", line ");
    if (!line) {
      ADD_FAILURE() << notice;
      return FileOutcome::kRefused;
    }
    ExpectBlamed(DecodeText(bytes), line->number, Behind(line->rest, ": "), ReasonOfIds);
    return FileOutcome::kRefused;
  }
};

std::optional<std::string> ReasonOfTexts(std::string_view text) {
  const ErrorFile file = ReadErrorFile(text);
  return file.failure ? std::optional(file.failure->reason) : std::nullopt;
}

class ErrorTextBench final : public MonitorBench {
 public:
  ErrorTextBench() : MonitorBench("boiler.erc") {}

  FileOutcome Open(std::string_view bytes) override {
    Put(bytes);
    main().trvProject.InitNewProjectTree();
    EXPECT_TRUE(BoxesOf(main().mnuAddErrorDiscr).empty());
    Run([this] { program_.ids.LoadErrorTexts(); });
    const std::string notice = main().lbl_IdNotice.Caption;
    EXPECT_LE(notice.size(), kLongestMessage);
    const std::string text = DecodeText(bytes);
    const ErrorTexts& texts = program_.ids.error_texts();
    if (notice.empty()) {
      const auto held = std::count_if(texts.begin(), texts.end(),
                                      [](const std::string& one) { return !one.empty(); });
      EXPECT_LE(held, CountLines(text));
      EXPECT_TRUE(held > 0 || text.empty());
      return FileOutcome::kLoaded;
    }
    const auto line = TakeNumber(notice, name_ + ", line ");
    if (!line) {
      ADD_FAILURE() << notice;
      return FileOutcome::kPart;
    }
    ExpectBlamed(text, line->number, Behind(line->rest, ": "), ReasonOfTexts);
    EXPECT_EQ(texts, ReadErrorFile(FirstLines(text, line->number - 1)).texts)
        << "what was read before it stays, and nothing else";
    return FileOutcome::kPart;
  }
};

}  // namespace

std::unique_ptr<FileBench> MakeScreenBench() { return std::make_unique<ScreenBench>(); }
std::unique_ptr<FileBench> MakeProjectBench() { return std::make_unique<ProjectBench>(); }
std::unique_ptr<FileBench> MakeAvrMapBench() { return std::make_unique<MapBench>("boiler.map"); }
std::unique_ptr<FileBench> MakeListingBench() { return std::make_unique<MapBench>("boiler.lst"); }
std::unique_ptr<FileBench> MakeIdBench() { return std::make_unique<IdBench>(); }
std::unique_ptr<FileBench> MakeErrorTextBench() { return std::make_unique<ErrorTextBench>(); }

}  // namespace tarnlink
