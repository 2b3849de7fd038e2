#include "tools/frm_link_health.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "common/shown_text.h"
#include "tools/link_meaning.h"

namespace tarnlink {
namespace {

constexpr int kRefresh = 500;  // ms
constexpr const char* kSection = "Windows";
constexpr const char* kKey = "LinkHealth";
constexpr std::size_t kMostBytes = 32;  // of the last bad frame

std::string OneDecimal(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", number);
  return text;
}

std::string LastBad(const std::string& bytes) {
  const bool is_long = bytes.size() > kMostBytes;
  return BytesInHex(bytes.substr(0, kMostBytes)) + (is_long ? " ..." : "");
}

std::string ProtocolName(LinkProtocol protocol) {
  switch (protocol) {
    case LinkProtocol::kTarnLink:
      return "TarnLink";
    case LinkProtocol::kZolt:
      return "ZOLT";
    case LinkProtocol::kModbus:
      return "Modbus";
    case LinkProtocol::kNone:
      break;
  }
  return "other";
}

// The address says it all while the line has only one protocol.
std::string NameOf(const SlaveAccount& account, bool are_mixed) {
  const std::string slave = ShownCell(account.slave);
  if (!are_mixed) return slave.empty() ? "-" : slave;
  return ProtocolName(account.protocol) + (slave.empty() ? "" : " " + slave);
}

std::string Row(const std::string& slave, const SlaveAccount& account) {
  std::string row = slave;
  for (const std::int64_t count :
       {account.exchanges, account.answers, account.refusals, account.timeouts, account.bad_checks})
    row.append("\t").append(std::to_string(count));
  const AnswerTimes& times = account.times;
  for (const double time : {times.Shortest(), times.Median(), times.Longest()})
    row.append("\t").append(account.answers > 0 ? OneDecimal(time) : "-");
  return row + "\t" + LastBad(account.last_bad);
}

// "0.4 s", "2 min 5 s", "3 h 12 min".
std::string AgeText(double seconds) {
  constexpr int kMinute = 60;
  constexpr int kHour = 60 * kMinute;
  if (seconds < 0) return "never answered";
  if (seconds < kMinute) return OneDecimal(seconds) + " s";
  const auto whole = static_cast<std::int64_t>(seconds);
  if (whole < kHour)
    return std::to_string(whole / kMinute) + " min " + std::to_string(whole % kMinute) + " s";
  return std::to_string(whole / kHour) + " h " + std::to_string(whole % kHour / kMinute) + " min";
}

}  // namespace

frm_LinkHealth::frm_LinkHealth(Platform& platform, LinkRecord& record)
    : platform_(platform), record_(record), refresh_(platform.CreateTimer()) {
  form.Visible = false;
  cmdTrace.ToolTipText = "Each frame on the line, with its time and its meaning";
  cmdClear.ToolTipText = "Counts from zero again, and forgets the trace";
  cmdClear.Click = [this] {
    record_.Clear();
    Refresh();
  };
  refresh_->SetInterval(kRefresh);
  refresh_->SetOnTimer([this] { Refresh(); });
}

void frm_LinkHealth::Load() {
  if (platform_.settings().GetSetting(kSection, kKey, "0") == "1") Show();
}

void frm_LinkHealth::Show() {
  if (form.Visible) return;
  Refresh();
  form.Visible = true;
  refresh_->SetEnabled(true);
  Remember();
}

void frm_LinkHealth::Hide() {
  if (!form.Visible) return;
  form.Visible = false;
  refresh_->SetEnabled(false);
  Remember();
}

void frm_LinkHealth::Remember() {
  platform_.settings().SaveSetting(kSection, kKey, form.Visible ? "1" : "0");
}

void frm_LinkHealth::Refresh() {
  std::vector<std::string> slaves;
  const auto accounts = record_.account().Slaves();
  if (accounts.size() > 1) slaves.push_back(Row("All", record_.account().Total()));
  const bool are_mixed = std::any_of(accounts.begin(), accounts.end(), [&](const auto* account) {
    return account->protocol != accounts.front()->protocol;
  });
  for (const SlaveAccount* account : accounts)
    slaves.push_back(Row(NameOf(*account, are_mixed), *account));
  lstSlaves.List = slaves;
  std::vector<std::string> ages;
  for (const ValueAge& age : Ages ? Ages() : std::vector<ValueAge>())
    ages.push_back(std::to_string(age.index) + "\t" + ShownCell(age.name) + "\t" +
                   AgeText(age.seconds) + (age.is_old && age.seconds >= 0 ? ", old" : ""));
  lstAges.List = ages;
}

}  // namespace tarnlink
