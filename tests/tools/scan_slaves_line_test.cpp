// The slave scan on the line of the simulated boiler, which has three slaves: what it finds, and
// what ten thousand exchanges on a bad line leave behind.

#include <gtest/gtest.h>

#include <set>

#include "common/run_time_error.h"
#include "common/text.h"
#include "form/boiler_on_line.h"
#include "protocols/product_names.h"
#include "tools/frm_scan_slaves.h"
#include "tools/line_faults.h"
#include "tools/plain_host.h"
#include "tools/scan_slaves_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kNobody = "- |  |  | ";
constexpr boiler::LineOptions kLine = {.pace = {.baud = 9600}, .answer_delay_us = 5'000};

class ScanOnLine {
 public:
  explicit ScanOnLine(const std::string& slaves, std::uint64_t seed = 1)
      : boiler(world,
               {.protocol = "zolt", .slave = {.addresses = slaves}, .line = kLine, .seed = seed},
               [this](const boiler::LogEntry& entry) {
                 if (entry.kind == boiler::LogKind::kFault) ++struck;
               }) {
    for (const char one : slaves) {
      if (one != ',') present.insert(std::stoi(std::string(1, one), nullptr, 16));
    }
    world.on_output = [this, hears = world.on_output](FakeSerialPort& port,
                                                      std::string_view bytes) {
      ++asked;
      hears(port, bytes);
    };
  }

  bool IsPresent(int row) const { return present.contains(row); }
  std::string FullRow(int row) const {
    if (!IsPresent(row)) return kNobody;
    return TypeOf(row) + " | " + Version(3, 7, row) + " | " + Version(4, 12, row) + " | " +
           Version(2, 14, row);
  }
  static std::string NumberOf(int row) { return std::to_string(2040 + row); }
  static std::string NameOf(int row) {
    return std::string(GetProductName(static_cast<std::uint8_t>(1 + (1 + row) % 3)))
        .append(GetTypeName(static_cast<std::uint8_t>(1 + (4 + row) % 14)));
  }
  static std::string TypeOf(int row) { return NameOf(row) + NumberOf(row); }
  // Each slave has its own.
  static std::string Version(int major, int minor, int row) {
    return std::to_string(major) + "." + Right("0" + std::to_string(minor + row), 2);
  }

  // As often as asked for the walk has come round.
  void Rounds(int count) {
    for (int i = 0; i < count; ++i) {
      EXPECT_TRUE(world.RunUntil([&] { return scan.ScanAddress == 15; }, 2min));
      EXPECT_TRUE(world.RunUntil([&] { return scan.ScanAddress == 0; }, 2min));
    }
  }
  void ExpectAllFound(const std::string& what) {
    for (int i = 0; i < frm_ScanSlaves::kAddresses; ++i) {
      EXPECT_EQ(RowText(scan, i), FullRow(i)) << what << ", row " << i;
      EXPECT_EQ(scan.SlavePresent[static_cast<std::size_t>(i)], IsPresent(i)) << what;
    }
  }
  // Nothing in the table but what may stand there, whatever happened; one field at most in work.
  void ExpectNothingWrong(const std::string& what) {
    int in_work = 0;
    for (int i = 0; i < frm_ScanSlaves::kAddresses; ++i) {
      std::set<std::string> types = {"", "-", "err"};
      if (IsPresent(i)) types.insert({NameOf(i), NumberOf(i), TypeOf(i)});
      ASSERT_TRUE(types.contains(scan.txtType(i).Text)) << what << ": " << RowText(scan, i);
      ExpectVersion(i, scan.txtLuP(i).Text, Version(3, 7, i));
      ExpectVersion(i, scan.txtHuP(i).Text, Version(4, 12, i));
      ExpectVersion(i, scan.txtEEPROM(i).Text, Version(2, 14, i));
      for (const auto* texts : {&scan.txtType, &scan.txtLuP, &scan.txtHuP, &scan.txtEEPROM}) {
        in_work += (*texts)(i).BackColor == frm_ScanSlaves::kFieldInWork ? 1 : 0;
      }
    }
    ASSERT_LE(in_work, 1) << what;
    ASSERT_LE(scan.ScanRetries, 1) << what;
  }
  void ExpectVersion(int row, const std::string& text, const std::string& right) {
    ASSERT_TRUE(text.empty() || (IsPresent(row) && text == right)) << row << " " << text;
  }
  // So many requests; the user plugs in what was unplugged.
  void Exchange(int count, const std::string& what) {
    const long goal = asked + count;
    while (asked < goal && !::testing::Test::HasFatalFailure()) {
      const long before = asked;
      if (!world.RunUntil([&] { return asked > before; }, 9s)) {
        world.port().PlugIn();
        // A call may fail in between.
        ASSERT_TRUE(world.RunUntil([&] { return asked > before; }, 6s)) << what;
      }
      ExpectNothingWrong(what);
      if (asked % 500 == 0) world.port().Forget();
    }
  }
  void ExpectRecovery(const std::string& what) {
    world.faults().Clear();
    boiler.Calm();
    world.port().PlugIn();
    world.Advance(6s);
    Rounds(2);
    ExpectAllFound(what);
    scan.Stop();
    EXPECT_FALSE(world.port().PortOpen()) << what;
    EXPECT_FALSE(scan.ScanSlavesTimer->Enabled()) << what;
    const long before = asked;
    world.Advance(1min);
    EXPECT_EQ(asked, before) << what;
  }

  FakeWorld world;
  PlainHost plain{world};
  std::set<int> present;
  long asked = 0;
  int struck = 0;
  frm_ScanSlaves scan{plain.host};
  BoilerOnLine boiler;
};

TEST(ScanSlavesOnLine, FindsTheThreeSlavesThatAreThere) {
  ScanOnLine one("0,3,A");
  one.scan.Show();
  one.Rounds(1);
  one.ExpectAllFound("first round");
  EXPECT_EQ(one.asked, 13 + 3 * 5 + 1);
  one.Rounds(3);
  one.ExpectAllFound("fourth round");
}

TEST(ScanSlavesOnLine, FindsAllSixteen) {
  ScanOnLine one("0,1,2,3,4,5,6,7,8,9,A,B,C,D,E,F");
  one.scan.Show();
  one.Rounds(2);
  one.ExpectAllFound("all");
  EXPECT_EQ(one.asked, 2 * 16 * 5 + 1);
  EXPECT_LT(one.world.now(), 10s);
}

TEST(ScanSlavesOnLine, ASlaveThatGoesAndOneThatIsSilentForAMoment) {
  ScanOnLine one("0,3,A");
  one.scan.Show();
  one.Rounds(1);
  one.boiler.line().AddFault("no_reply#1");
  one.Rounds(1);
  one.ExpectAllFound("a retry was enough");
  one.boiler.line().AddFault("no_reply");
  one.Rounds(1);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(RowText(one.scan, i), kNobody);
  one.ExpectRecovery("they are back");
}

// Where every slave answers there is no silence to put a torn line in order.
TEST(ScanSlavesOnLine, BytesTooManyAndTooFewDoNotShiftTheFollowingAnswers) {
  for (const char* fault : {"noise_before", "noise_after", "noise_idle", "truncate"}) {
    for (int bytes = 1; bytes < 34; ++bytes) {
      if (std::string(fault) == "truncate" && bytes > 15) continue;
      const std::string text = std::string(fault) + "(" + std::to_string(bytes) + ")#1";
      ScanOnLine one("0,1,2,3,4,5,6,7,8,9,A,B,C,D,E,F");
      one.scan.Show();
      one.Rounds(1);
      one.boiler.line().AddFault(text);
      one.Exchange(20, text);
      EXPECT_EQ(one.struck, 1) << text;
      one.Rounds(2);
      one.ExpectAllFound(text);
    }
  }
}

// --- Ten thousand exchanges ----------------------------------------------------------------------

class ScanSlavesFault : public ::testing::TestWithParam<std::string> {};

TEST_P(ScanSlavesFault, ShowsOnlyWhatIsThereAndPasses) {
  for (const char* rate : {"@0.05", "@0.4"}) {
    const std::string what = GetParam() + rate;
    ScanOnLine one("0,3,A", 7);
    one.scan.Show();
    one.boiler.line().AddFault(what);
    one.Exchange(ExchangesEach(LineFaults().size() * 2), what);
    EXPECT_GT(one.struck, 0) << what;
    one.ExpectRecovery(what);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, ScanSlavesFault, ::testing::ValuesIn(LineFaults()), LineFaultName);

TEST(ScanSlavesFaults, AllTogetherAndCallsThatFail) {
  const std::vector<std::string> kCalls = {"Port.Open", "Port.Output", "Port.Input", "Port.Close",
                                           "*"};
  ScanOnLine one("0,3,A", 11);
  one.scan.Show();
  const std::string share = "@" + std::to_string(0.5 / static_cast<double>(LineFaults().size()));
  for (const std::string& fault : LineFaults()) one.boiler.line().AddFault(fault + share);
  for (int turn = 0; turn < 500; ++turn) {
    if (one.world.faults().Spent()) BreakACall(one.world.faults(), kCalls, turn);
    one.Exchange(20, "turn " + std::to_string(turn));
    if (::testing::Test::HasFailure()) break;
  }
  EXPECT_GE(one.asked, 10'000);
  EXPECT_GT(one.struck, 1'500);
  one.ExpectRecovery("all together");
}

}  // namespace
}  // namespace tarnlink
