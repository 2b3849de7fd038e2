// What the link's panel counts in the real program, beside what the simulated boiler has noted of
// the same line.

#include <map>
#include <sstream>

#include "simulator/log.h"
#include "tools_line.h"

namespace e2e {
namespace {

struct Counts {
  int exchanges = 0;
  int answers = 0;
  int timeouts = 0;
  int bad_checks = 0;

  bool operator==(const Counts&) const = default;
};

void PrintTo(const Counts& counts, std::ostream* out) {
  *out << counts.exchanges << " exchanges, " << counts.answers << " answers, " << counts.timeouts
       << " time-outs, " << counts.bad_checks << " bad checks";
}

// By the boiler's log: what went out for each request that it heard, and whether its check holds.
Counts Logged(const std::string& log) {
  Counts counts;
  std::map<int, boiler::LogEntry> outcome;
  for (const boiler::LogEntry& entry : boiler::ReadLog(log)) {
    if (entry.kind == boiler::LogKind::kHeard) {
      ++counts.exchanges;
    } else if (entry.exchange > 0) {
      const bool is_fault = entry.kind == boiler::LogKind::kFault;
      if (is_fault || !outcome.contains(entry.exchange)) outcome[entry.exchange] = entry;
    }
  }
  for (const auto& [exchange, entry] : outcome) {
    if (entry.bytes.empty()) {
      // Stop came before the silence behind the last request was long enough to be one.
      if (exchange != outcome.rbegin()->first) ++counts.timeouts;
    } else if (entry.check == boiler::Check::kHolds) {
      ++counts.answers;
    } else {
      ++counts.bad_checks;
    }
  }
  return counts;
}

class LinkOnALine : public ToolsOnALine {
 protected:
  // The only row of the panel's slaves.
  Counts Panel() {
    std::istringstream row(program->Ask("items lstSlaves"));
    std::string slave;
    Counts counts;
    int refused = 0;
    row >> slave >> counts.exchanges >> counts.answers >> refused >> counts.timeouts >>
        counts.bad_checks;
    return counts;
  }
};

TEST_F(LinkOnALine, ThePanelCountsWhatTheBoilerHasNoted) {
  Start({"--at-once", "--delay", "2", "--fault", "no_reply@0.02", "--fault", "check_wrong@0.05",
         "--fault", "truncate(9)@0.05", "--seed", "3"});
  program->Press("M_exit");
  ASSERT_EQ(program->process().WaitForEnd(kToolPatience), 0);
  const std::string settings = folder.Read("config/TarnLink2/TarnLink2.ini");
  program = std::make_unique<DrivenProgram>(folder, settings, TARNLINK_SAMPLES "/zolt.wcr");
  program->Press("mnuLinkHealth");
  program->Press("Toolbar1(2)");
  EXPECT_TRUE(Eventually([&] { return Panel().exchanges >= 150; }, 60'000));
  program->Press("Toolbar1(3)");
  ASSERT_TRUE(program->Becomes("text StatusBar1(4)", "Communication Stopped"));
  Counts last = Panel();
  EXPECT_TRUE(Eventually([&] { return std::exchange(last, Panel()) == Panel(); }));
  const Counts logged = Logged(folder.Read("line.log"));
  EXPECT_TRUE(Eventually([&] { return Panel() == logged; }, 2'000))
      << program->Ask("items lstSlaves");
  EXPECT_EQ(Panel(), logged);
  EXPECT_GT(logged.answers, 100);
  EXPECT_GT(logged.timeouts, 0);
  EXPECT_GT(logged.bad_checks, 5);
}

}  // namespace
}  // namespace e2e
