// The sniffer on a link between another master and the simulated boiler: all that goes by, and what
// the link may do to it.

#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include "common/numbers.h"
#include "common/text.h"
#include "common/text_file.h"
#include "form/boiler_on_line.h"
#include "simulator/damage.h"
#include "simulator/data_ids.h"
#include "support/samples.h"
#include "tools/line_faults.h"
#include "tools/sniffer_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kFrameLength = 16;
constexpr Micros kByteTime{1042};  // at 9600

// Another master: it asks the boiler for one ID after the other, and the sniffer hears both sides.
class SecondMaster {
 public:
  SecondMaster(FakeWorld& world, Micros period) : world_(world), period_(period) {}
  ~SecondMaster() { Stop(); }
  SecondMaster(const SecondMaster&) = delete;
  SecondMaster& operator=(const SecondMaster&) = delete;

  void Start() { Ask(); }
  void Stop() {
    if (due_) world_.time().Cancel(*due_);
    due_.reset();
  }
  long asked() const { return asked_; }

 private:
  void Ask() {
    const boiler::DataId& id =
        boiler::DataIds()[static_cast<std::size_t>(asked_) % boiler::DataIds().size()];
    ++asked_;
    const std::string request =
        BuildZoltMessage(static_cast<std::uint8_t>(id.data_class), "0", id.id, 0, 0);
    world_.on_output(world_.port(), request);
    for (std::size_t i = 0; i < request.size(); ++i) {
      world_.port().ReceiveIn(kByteTime * static_cast<int>(i + 1), request.substr(i, 1));
    }
    due_ = world_.time().Post(period_, [this] { Ask(); });
  }

  FakeWorld& world_;
  Micros period_;
  std::optional<VirtualTime::EventId> due_;
  long asked_ = 0;
};

constexpr boiler::LineOptions kLine{.pace = {.baud = 9600}, .answer_delay_us = 5000};

class SnifferLine : public SnifferTest {
 protected:
  SnifferLine() {
    id_file = "/samples/default.ids";
    world.disk().Put("/samples/default.snf", SampleBytes("default.snf"));
    boiler = std::make_unique<BoilerOnLine>(
        world, boiler::SimulatedBoiler::Options{.protocol = "zolt", .line = kLine},
        [this](const boiler::LogEntry& entry) {
          if (entry.kind == boiler::LogKind::kFault) ++struck;
        });
    master = std::make_unique<SecondMaster>(world, 60ms);
    sniffer.Show();
  }
  // Every ID once more.
  void Round() { world.Advance(60ms * static_cast<int>(boiler::DataIds().size())); }
  // The link is sound again, and so is the cable.
  void Calm() {
    master->Stop();
    boiler->Calm();
    world.port().PlugIn();
    world.Advance(5s);
    master->Start();
  }
  int BadFrames() const { return sniffer.bad_frames(); }

  // The link is sound from now on: at most two frames are lost, then none is.
  void ExpectRecovery(const std::string& what) {
    Round();
    const int good = sniffer.frames() - BadFrames();
    const int bad = BadFrames();
    const long asked = master->asked();
    Round();
    EXPECT_EQ(BadFrames(), bad) << what;
    // An exchange may be under way at either end.
    EXPECT_NEAR(sniffer.frames() - BadFrames() - good,
                2.0 * static_cast<double>(master->asked() - asked), 2.0)
        << what;
    EXPECT_TRUE(world.port().PortOpen()) << what;
  }

  int struck = 0;
  std::unique_ptr<BoilerOnLine> boiler;
  std::unique_ptr<SecondMaster> master;
};

const boiler::DataId& IdOf(const std::string& text) {
  const int id = ValInt("&H" + text + "&", 0, 65'535);
  const auto& all = boiler::DataIds();
  return *std::find_if(all.begin(), all.end(),
                       [&](const boiler::DataId& one) { return one.id == id; });
}

TEST_F(SnifferLine, ShowsEveryIdThatTheBoilerHasUnderItsName) {
  master->Start();
  Round();
  Round();
  const int count = static_cast<int>(boiler::DataIds().size());
  EXPECT_EQ(static_cast<int>(sniffer.List_DetectedID.List->size()), count);
  for (int i = 1; i <= count; ++i) {
    const boiler::DataId& id = IdOf(sniffer.RAM_ID(i).Text.get());
    EXPECT_EQ(sniffer.RAM_TEXT(i).Text.get(), id.name);
    EXPECT_FALSE(sniffer.RAM_VALUE(i).Text->empty()) << id.name;
  }
  EXPECT_EQ(BadFrames(), 0);
  EXPECT_TRUE(world.port().frames().empty());
}

TEST_F(SnifferLine, ShowsTheValuesThatTheBoilerHolds) {
  master->Start();
  Round();
  Round();
  const auto value = [this](const std::string& name) -> std::string {
    for (int i = 1; i <= kLastItem && sniffer.HasItem(i); ++i) {
      if (sniffer.RAM_TEXT(i).Text.get() == name) return sniffer.RAM_VALUE(i).Text;
    }
    return "none";
  };
  EXPECT_EQ(value("os_name"), "0x0502");
  EXPECT_EQ(value("os_number"), "2040");
  EXPECT_EQ(value("configuration"), "0000001000001100");
  EXPECT_EQ(value("crc_rom_low"), "0x3A7C");
  EXPECT_EQ(value("crc_rom_high"), "0xC51E");
  const auto item = [this](const char* name) {
    return std::to_string(boiler->controller().Value(boiler::Item(name)));
  };
  EXPECT_EQ(value("ch_setpoint"), item("flow_setpoint"));
  EXPECT_EQ(value("burner_starts"), item("burner_starts"));
}

// --- Faults of the link --------------------------------------------------------------------------

class SnifferFault : public SnifferLine, public ::testing::WithParamInterface<std::string> {};

TEST_P(SnifferFault, CostsFramesAndPasses) {
  for (const char* rate : {"@0.1", "@0.5"}) {
    master->Start();
    boiler->line().AddFault(GetParam() + rate);
    for (int i = 0; i < 5; ++i) Round();
    EXPECT_GT(struck, 0) << rate;
    Calm();
    ExpectRecovery(GetParam() + rate);
    master->Stop();
  }
}

INSTANTIATE_TEST_SUITE_P(Each, SnifferFault, ::testing::ValuesIn(LineFaults()), LineFaultName);

TEST_F(SnifferLine, HearsTenThousandExchangesOfABadLinkAndIsAtRest) {
  for (const char* fault : {"no_reply@0.05", "bit_flip(1)@0.05", "truncate@0.05", "noise_idle@0.05",
                            "split@0.05", "byte_insert@0.05", "foreign_traffic@0.05"}) {
    boiler->line().AddFault(fault);
  }
  master->Start();
  EXPECT_TRUE(world.RunUntil([&] { return master->asked() >= 10'000; }, 20min));
  world.port().Forget();
  EXPECT_GT(struck, 2000);
  EXPECT_GT(BadFrames(), 500);
  EXPECT_GT(sniffer.frames() - BadFrames(), 15'000);
  Calm();
  ExpectRecovery("bad link");
  EXPECT_TRUE(world.dialogs().shown().empty());
}

// What the log says of the last answers of each ID, in the texts that items show.
class SnifferLastValues : public SnifferLine {
 protected:
  static constexpr const char* kLog = "/logs/Sniffer.log";

  SnifferLastValues() {
    world.disk().MakeFolder("/logs");
    world.dialogs().ExpectSaveFile("Save log file as").Give(kLog);
    sniffer.LogCheck.Value = true;
  }
  // A row ends in ".0x00F1 .45 .26 .14 S->M Read ACK".
  std::map<std::string, std::string> LastAnswers() {
    std::map<std::string, std::string> answers;
    const std::string log = world.disk().Get(kLog);
    LineReader lines(log);
    for (std::string_view line; lines.Next(line);) {
      const std::size_t id = line.find(" .0x");
      if (id == std::string_view::npos || line.find("S->M") == std::string_view::npos) continue;
      const std::string_view rest = line.substr(id + 10);
      const int high = ValInt(rest, 0, 255);
      const int low = ValInt(rest.substr(rest.find('.') + 1), 0, 255);
      answers[std::string(line.substr(id + 4, 4))] = Stuff(Hex(high), 2) + Stuff(Hex(low), 2);
    }
    return answers;
  }
  void ExpectLastValues() {
    const auto answers = LastAnswers();
    int shown = 0;
    for (int i = 1; i <= kLastItem && sniffer.HasItem(i); ++i) {
      const auto answer = answers.find(sniffer.RAM_ID(i).Text);
      SniffLocation item = Item(i);
      const std::string value = answer == answers.end() ? ""
                                                        : TakeSniffedValue(item,
                                                                           "\r\x14"
                                                                           "00000" +
                                                                               answer->second);
      EXPECT_EQ(sniffer.RAM_VALUE(i).Text.get(), value) << sniffer.RAM_ID(i).Text.get();
      shown += value.empty() ? 0 : 1;
    }
    EXPECT_GE(shown, static_cast<int>(boiler::DataIds().size()));
  }
};

TEST_F(SnifferLastValues, AreShownAfterTenThousandExchangesOfABadLink) {
  for (const char* fault : {"no_reply@0.05", "bit_flip(1)@0.05", "truncate@0.05", "noise_idle@0.05",
                            "split@0.05", "byte_insert@0.05", "foreign_traffic@0.05"}) {
    boiler->line().AddFault(fault);
  }
  master->Start();
  for (const long stop : {2000L, 10'000L}) {
    EXPECT_TRUE(world.RunUntil([&] { return master->asked() >= stop; }, 20min));
    world.port().Forget();
    ExpectLastValues();
  }
  EXPECT_GT(struck, 2000);
}

TEST_F(SnifferLine, GoesOnWhateverCallOfThePortFails) {
  boiler->line().AddFault("bit_flip(1)@0.3");  // so that the port is opened and closed
  master->Start();
  for (int turn = 0; turn < 200; ++turn) {
    BreakACall(world.faults(), {"Port.Open", "Port.Close", "Port.Input"}, turn);
    world.RunUntil([&] { return world.faults().Spent(); }, 10s);
    EXPECT_TRUE(world.faults().Spent()) << turn;
  }
  Calm();
  ExpectRecovery("broken calls");
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(SnifferLine, LivesThroughPureNoise) {
  boiler::Random random(7);
  for (int i = 0; i < 20'000; ++i) {
    world.port().Receive(boiler::NoiseBytes(1 + random.Below(40), random));
    world.Advance(1ms);
    world.port().Forget();
  }
  EXPECT_GT(BadFrames(), 1000);
  // One in 65,536 may be sound by chance.
  EXPECT_LE(sniffer.frames() - BadFrames(), 3);
  master->Start();
  ExpectRecovery("noise");
}

TEST_F(SnifferLine, LivesThroughTwoMastersAtOnce) {
  SecondMaster other(world, 47ms);
  master->Start();
  other.Start();
  for (int i = 0; i < 10; ++i) Round();
  EXPECT_GT(BadFrames(), 10);
  EXPECT_GT(sniffer.frames() - BadFrames(), 100);
  other.Stop();
  world.Advance(100ms);
  ExpectRecovery("two masters");
}

TEST_F(SnifferLine, ComesBackWhenTheCableDoes) {
  master->Start();
  Round();
  for (const Micros away : {Micros(500ms), Micros(10s)}) {
    world.port().Unplug();
    world.Advance(away);
    world.port().PlugIn();
    world.Advance(2s);
    ExpectRecovery("unplugged");
  }
}

// A request and its answer each second.
TEST_F(SnifferTest, ListensForADay) {
  sniffer.Show();
  constexpr int kSeconds = 24 * 60 * 60;
  for (int i = 0; i < kSeconds; ++i) {
    const int id = i % 50;
    const std::string frames = FrameOf(kReadType, id, 0, 0) + FrameOf(kAnswerType, id, 1, i % 256);
    // Now and then a byte is lost.
    world.port().Receive(i % 1000 == 999 ? frames.substr(0, 2 * kFrameLength - 1) : frames);
    world.Advance(1s);
    world.port().Forget();
  }
  EXPECT_EQ(sniffer.List_DetectedID.List->size(), 50U);
  EXPECT_LE(CharacterCount(Shown()), 30'100);
  EXPECT_GE(CharacterCount(Shown()), 1000);
  EXPECT_NE(Shown().find("6 March 2024 14:07:08 "), std::string::npos);
  // Each byte that is lost costs its own answer and at most the next exchange.
  EXPECT_LE(sniffer.bad_frames(), 2 * kSeconds / 1000);
  EXPECT_GE(sniffer.frames() - sniffer.bad_frames(), 2 * kSeconds - 4 * kSeconds / 1000);
}

}  // namespace
}  // namespace tarnlink
