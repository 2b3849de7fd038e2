// What the graph opens: its lines alone, and measurements.
#include <gtest/gtest.h>

#include <chrono>

#include "common/run_time_error.h"
#include "graph/graph.h"
#include "robustness/mutation_bench.h"
#include "support/fake_world.h"

namespace tarnlink {
namespace {

// A small graph: a default one takes room for every line that it may show.
struct ReadGraph {
  Graphic data;
  int code = 0;
  std::string reason;
};

class GraphBench final : public FileBench {
 public:
  explicit GraphBench(bool with_measurements)
      : path_(with_measurements ? "/jobs/boiler.mss" : "/jobs/boiler.grp"),
        with_measurements_(with_measurements) {
    world_.dialogs().user = [this](const std::string& shown) {
      ScriptedDialog answer(shown);
      if (shown.starts_with("open file")) answer.Give(path_);
      return answer;
    };
    all_.form.Load();
    all_.graph.ScaleWidth = 12'000;
    all_.graph.ScaleHeight = 9'000;
    all_.display.Form_Resize();
    world_.dialogs().TakeShown();
  }

  FileOutcome Open(std::string_view bytes) override {
    world_.disk().Put(path_, bytes);
    data().InitMeasurements();
    data().DefaultColor();
    data().FirstTime = data().LastTime = kUnread;
    const ReadGraph read = Read(bytes);
    all_.printer.HeaderText = "before";
    Run([this] {
      (with_measurements_ ? all_.menu.mnuOpenMeasure : all_.menu.mnuOpenProperties).Press();
      EXPECT_TRUE(world_.RunUntil([this] { return !all_.files.IsBusy(); }, std::chrono::hours(1)));
    });
    std::vector<std::string> shown = world_.dialogs().TakeShown();
    std::erase_if(shown, [](const std::string& each) { return !IsReadError(each); });
    ExpectHeld(read);
    if (shown.empty()) {
      EXPECT_EQ(read.reason, "") << "not told";
      EXPECT_EQ(all_.printer.HeaderText, with_measurements_ ? "boiler" : "before");
      return FileOutcome::kLoaded;
    }
    EXPECT_EQ(shown.size(), 1U);
    EXPECT_EQ(all_.printer.HeaderText, "before") << "nothing follows";
    ExpectTold(shown[0], read, bytes);
    const bool is_untouched = FirstBadLine(read) <= kFirstRead;
    return is_untouched ? FileOutcome::kRefused : FileOutcome::kPart;
  }

 private:
  static constexpr Date kUnread = 40'000;
  static constexpr int kFirstRead = 2;  // the title is no part of what is read

  static bool IsReadError(const std::string& box) {
    return box.find("[Reading file]") != std::string::npos;
  }

  Graphic& data() { return all_.graph.Data; }

  ReadGraph Read(std::string_view bytes) const {
    ReadGraph read;
    read.data.FirstTime = read.data.LastTime = kUnread;
    MeasureFileReader reader(path_, with_measurements_);
    try {
      reader.Take(bytes);
      reader.Finish();
    } catch (const RunTimeError& error) {
      read.code = error.code();
      read.reason = error.what();
    }
    reader.HandOver(read.data);
    return read;
  }

  int FirstBadLine(const ReadGraph& read) const {
    const auto line = TakeNumber(read.reason, "\"" + path_ + "\" could not be read: line ");
    return line ? line->number : kFirstRead + 1;
  }

  // What the whole file gives at one go is what the form holds of its pieces.
  void ExpectHeld(const ReadGraph& read) {
    EXPECT_EQ(data().Attributes, read.data.Attributes);
    EXPECT_EQ(data().Colors, read.data.Colors);
    ASSERT_EQ(data().Channels.size(), read.data.Channels.size());
    for (std::size_t i = 0; i < data().Channels.size(); ++i) {
      const MeasureChannel& channel = data().Channels[i];
      const MeasureChannel& other = read.data.Channels[i];
      EXPECT_TRUE(
          channel.UpperBound() == other.UpperBound() && channel.Count() == other.Count() &&
          std::equal(channel.Values().begin(), channel.Values().end(), other.Values().begin()) &&
          std::equal(channel.Times().begin(), channel.Times().end(), other.Times().begin()))
          << "channel " << i;
      EXPECT_LE(channel.UpperBound(), MeasureChannel::kUpperBound);
    }
    EXPECT_TRUE(data().Attributes.size() >= kLanes + 1U && data().Attributes.size() <= 1016U);
    EXPECT_TRUE(!data().Channels.empty() && data().Channels.size() <= 1016U);
    EXPECT_LE(data().FirstTime, data().LastTime);
  }

  void ExpectTold(const std::string& box, const ReadGraph& read, std::string_view bytes) {
    EXPECT_LE(box.size(), kLongestMessage);
    const std::string reason =
        Behind(box, "critical box [Reading file] Error reading file (OK) | ");
    EXPECT_EQ(reason, read.reason);
    const std::string about = "\"" + path_ + "\" could not be read: ";
    if (read.code == kPastEndOfFile) {
      const auto end = TakeNumber(reason, about + "it ends behind line ");
      ASSERT_TRUE(end && end->rest == ".") << reason;
      EXPECT_EQ(end->number, CountLines(bytes));
      return;
    }
    EXPECT_TRUE(read.code == kTypeMismatch || read.code == kOverflow || read.code == kSubscript);
    const auto line = TakeNumber(reason, about + "line ");
    ASSERT_TRUE(line && line->rest.starts_with(": ") && line->rest.size() > 2) << reason;
    ExpectBlamed(bytes, line->number, reason,
                 [this](std::string_view part) { return Read(part).reason; });
  }

  FakeWorld world_;
  std::string path_;
  bool with_measurements_;
  std::string mss_folder_;
  std::string grp_folder_;
  GraphProject project_{mss_folder_, grp_folder_, {}, {}};
  Graph all_{world_, {[] { return 1; }, [] { return 3; }}, project_};
};

}  // namespace

std::unique_ptr<FileBench> MakeLinesBench() { return std::make_unique<GraphBench>(false); }
std::unique_ptr<FileBench> MakeMeasurementBench() { return std::make_unique<GraphBench>(true); }

}  // namespace tarnlink
