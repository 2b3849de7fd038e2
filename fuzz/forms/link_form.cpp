#include <algorithm>
#include <string>

#include "fuzz/claim.h"
#include "fuzz/decoders/line_bytes.h"
#include "fuzz/forms/form_driver.h"
#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "tools/frm_link_health.h"
#include "tools/frm_link_trace.h"

namespace tarnlink {
namespace {

constexpr int kColumns = 10;  // of a slave's row

// The panel and the trace over one record, and a line that another form speaks on.
struct LinkUser {
  explicit LinkUser(FuzzInput& input) : driver(input, world, ZoltSlave) {
    driver.Offer({"/home/user/work/trace.txt", "/home/user/none/trace.txt", ""});
    health.Ages = [this] { return ages; };
    trace.CopyText = [this](const std::string& text) { copied = text; };
  }

  void Hear() {
    request = SoundZolt(ZoltBody(driver.input()));
    record.BytesSent(request);
  }
  void Answer() { record.BytesReceived(OnTheLine(driver.input(), request)); }
  void Noise() { record.BytesReceived(driver.input().ShortText()); }
  void Grow() {
    const double seconds = driver.input().Word() - 100.0;
    ages.push_back({.index = static_cast<int>(ages.size()) + 1,
                    .name = std::string(driver.input().ShortText()),
                    .seconds = seconds * seconds * seconds,
                    .is_old = driver.input().Coin()});
  }

  void ClaimPanel() {
    // The trace's Clear is seen here only with the next look at the record.
    most_slaves = std::max(most_slaves, record.account().Slaves().size());
    const auto& rows = health.lstSlaves.List.get();
    Claim(rows.size() <= most_slaves + 1, "a row a slave, and one of all");
    for (const std::string& row : rows) {
      Claim(std::count(row.begin(), row.end(), '\t') == kColumns - 1, "a row fills its columns");
      Claim(row.find('\n') == std::string::npos && row.find('\0') == std::string::npos,
            "a row is a line");
    }
    Claim(health.lstAges.List->size() <= ages.size(), "no age without a Location");
  }
  void ClaimTrace() const {
    const auto& rows = trace.Rows.rows();
    Claim(rows.empty() || rows.back().number <= record.EntryCount(), "what is shown was heard");
    std::int64_t before = 0;
    for (const TraceEntry& entry : rows) {
      Claim(entry.number > before, "the oldest first");
      before = entry.number;
      const bool is_usual = entry.kind == TraceKind::kRequest || entry.kind == TraceKind::kAnswer;
      Claim(!trace.chkOnlyWrong.Value || !is_usual, "only what went wrong is shown");
    }
    Claim(std::count(copied.begin(), copied.end(), '\t') % 4 == 0,
          "a line of the text has five columns");
  }

  FakeWorld world;
  LinkRecord record{world.clock()};
  frm_LinkHealth health{world, record};
  frm_LinkTrace trace{world, record};
  FormDriver driver;
  std::string request;
  std::string copied;
  std::vector<ValueAge> ages;
  std::size_t most_slaves = 0;
};

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  LinkUser user(input);
  FormDriver& driver = user.driver;
  driver.Form(user.health.form);
  driver.Add(user.health.cmdClear);
  driver.Do([&user] { user.Hear(); });
  driver.Do([&user] { user.Answer(); });
  driver.Do([&user] { user.Noise(); });
  driver.Do([&user] { user.record.LineClosed(); });
  driver.Do([&user] { user.Grow(); });
  driver.Do([&user] { user.trace.Show(); });
  driver.Form(user.trace.form);
  driver.Add(user.trace.chkOnlyWrong, user.trace.chkHold, user.trace.cmdCopy, user.trace.cmdSave,
             user.trace.cmdClear);
  driver.Show(user.trace.lblCount);
  driver.Check = [&user] {
    user.ClaimPanel();
    user.ClaimTrace();
  };
  driver.Guard([&] {
    user.health.Show();
    user.trace.Show();
  });
  driver.Run();
  driver.Leave([&] {
    user.trace.Unload();
    user.health.Hide();
  });
}

std::vector<std::string> Seeds() {
  using namespace seed;
  using namespace std::string_literals;
  const std::string body("\0\0\x01"s + "300010000"s);
  const std::string exchange = Act(1, body) + Wait(3) + Act(2, "\0"s) + Wait(6);
  return {exchange + Act(9), Times(3, exchange) + Act(7) + Wait(6) + Act(3, "\5noise"s) + Wait(6),
          exchange + Act(8) + exchange + Wait(6) + Act(8) + Wait(6) + Act(10) + File(0),
          Act(5, "\x00\x02\4Flow\1"s) + Wait(6) + exchange + Act(4) + Wait(6) + Act(0) + Wait(6) +
              Act(11) + Act(6)};
}

}  // namespace

FuzzTarget LinkFormTarget() { return {"link_form", Run, Seeds}; }

}  // namespace tarnlink
