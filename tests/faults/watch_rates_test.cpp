// What watches a boiler, on a line at four rates of faults: the control panel, the graph and the
// sniffer. Each has a record of its line, which says what may be shown; a message waits for the
// answer to the one before, and whoever has left sends nothing any more.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <string>

#include "common/text.h"
#include "faults/tool_part.h"
#include "form/graph_on_line.h"
#include "protocols/zolt_message.h"
#include "simulator/bytes.h"
#include "simulator/crc.h"
#include "simulator/data_ids.h"
#include "support/samples.h"
#include "tools/frm_sniffer.h"
#include "tools/panel_on_line.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

constexpr std::size_t kFrame = 16;

bool CheckHolds(std::string_view frame) {
  return frame.size() == kFrame && boiler::HexDigits(boiler::CrcXmodem(frame.substr(1, 10)), 4) ==
                                       ToUpper(frame.substr(11, 4));
}

RateCounts PanelPart(double rate, long exchanges, std::uint64_t seed) {
  constexpr int kTabs = 5;
  PanelOnLine one(kToolLine, seed);
  // Three seconds from the first request behind the last sound answer on: its timer runs through
  // the requests that damaged answers call for.
  Micros timer_from{};
  Micros sent_at{};
  const auto wait = [&] { return std::chrono::floor<milliseconds>(3s - (sent_at - timer_from)); };
  LineGuard guard(one.world, one.world.port(0), EndOfZolt(wait));
  one.on_asked = [&] {
    sent_at = one.world.now();
    if (!one.panel.tim_CommTimeout->Enabled()) timer_from = sent_at;
  };
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
  EXPECT_EQ(guard.hurried(), 0) << guard.first_hurried();
  counts.exchanges = static_cast<long>(one.heard.size());
  counts.faults = one.struck;
  one.on_asked = nullptr;
  one.Update(0);
  one.panel.Unload();  // with requests that are pending
  ExpectAtRest(one.world);
  return counts;
}

RateCounts GraphPart(double rate, long exchanges, std::uint64_t seed) {
  OnScreen one(Screens().at(2), seed);
  LineGuard guard(one.world, one.world.port(0), EndOfZolt([] { return milliseconds(2s); }));
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
  EXPECT_EQ(guard.hurried(), 0) << guard.first_hurried();
  EXPECT_EQ(one.record.first_wrong_request(), "");
  EXPECT_EQ(one.record.Unfounded(), "");
  EXPECT_GT(one.record.test_commands(), 0);
  counts.shown = one.record.samples();
  // The port is the graph's until its form is left.
  one.StopByMenu();
  ExpectAtRest(one.world, 1);
  return counts;
}

// It only listens: another master asks, and both sides are heard.
class SnifferPart {
 public:
  explicit SnifferPart(std::uint64_t seed)
      : boiler_(world_, {.protocol = "zolt", .line = kToolLine, .seed = seed},
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
    sniffer_.Unload();
    ExpectAtRest(world_);
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

class WatchRates : public testing::TestWithParam<double> {};

TEST_P(WatchRates, TheControlPanelShowsWhatWasSaidForIt) {
  const double rate = GetParam();
  const auto part = [rate](long exchanges, std::uint64_t seed) {
    return PanelPart(rate, exchanges, seed);
  };
  EXPECT_GT(RunInParts("control panel", rate, part).shown, 0);
}

TEST_P(WatchRates, TheGraphStoresWhatItsLinesWereAnswered) {
  const double rate = GetParam();
  const auto part = [rate](long exchanges, std::uint64_t seed) {
    return GraphPart(rate, exchanges, seed);
  };
  EXPECT_GT(RunInParts("graph", rate, part).shown, 0);
}

TEST_P(WatchRates, TheSnifferKnowsSoundFramesOnly) {
  const double rate = GetParam();
  const RateCounts all = RunInParts("sniffer", rate, [rate](long exchanges, std::uint64_t seed) {
    return SnifferPart(seed).Exchanges(rate, exchanges);
  });
  EXPECT_GT(all.shown, 0);
  // By chance a check holds over an ID of what is no digit.
  EXPECT_LE(all.wrong, MostHits(all.faults, kOneIn));
}

INSTANTIATE_TEST_SUITE_P(Each, WatchRates, testing::ValuesIn(kFaultRates), NameOfRate);

}  // namespace
}  // namespace tarnlink
