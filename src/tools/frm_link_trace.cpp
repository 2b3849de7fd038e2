#include "tools/frm_link_trace.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <utility>

#include "common/text_file.h"
#include "tools/link_meaning.h"
#include "tools/list_file.h"

namespace tarnlink {
namespace {

constexpr int kRefresh = 200;  // ms
constexpr const char* kColumns = "Time\tAfter ms\tKind\tMeaning\tBytes";

bool WentWrong(TraceKind kind) {
  return kind != TraceKind::kRequest && kind != TraceKind::kAnswer && kind != TraceKind::kClosed;
}

}  // namespace

// --- Texts ---------------------------------------------------------------------------------------

const char* TraceKindText(TraceKind kind) {
  switch (kind) {
    case TraceKind::kRequest:
      return "request";
    case TraceKind::kAnswer:
      return "answer";
    case TraceKind::kRefusal:
      return "refusal";
    case TraceKind::kBad:
      return "bad";
    case TraceKind::kOther:
      return "other";
    case TraceKind::kTimeOut:
      return "time-out";
    case TraceKind::kClosed:
      break;
  }
  return "closed";
}

std::string TraceTimeText(Date date) {
  constexpr std::int64_t kPerDay = 86'400'000;  // ms
  const auto passed = static_cast<std::int64_t>(
      std::llround((date - std::floor(date)) * static_cast<double>(kPerDay)));
  const auto time = static_cast<int>(passed % kPerDay);
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03d", time / 3'600'000, time / 60'000 % 60,
                time / 1'000 % 60, time % 1'000);
  return text;
}

std::string TraceSinceText(const TraceEntry& entry) {
  if (entry.kind == TraceKind::kRequest || entry.since.count() == 0) return {};
  char text[32];
  std::snprintf(text, sizeof text, "+ %.1f", static_cast<double>(entry.since.count()) / 1'000);
  return text;
}

std::string TraceLine(const TraceEntry& entry) {
  return TraceTimeText(entry.date) + "\t" + TraceSinceText(entry) + "\t" +
         TraceKindText(entry.kind) + "\t" + entry.meaning + "\t" + BytesInHex(entry.bytes);
}

// --- Rows ----------------------------------------------------------------------------------------

void TraceRows::Append(std::deque<TraceEntry> rows, std::size_t most) {
  if (rows.empty()) return;
  while (rows.size() > most) rows.pop_front();
  const std::size_t whole = rows_.size() + rows.size();
  if (whole > most) Drop(whole - most);
  if (Appending) Appending(rows.size());
  std::move(rows.begin(), rows.end(), std::back_inserter(rows_));
  if (Appended) Appended();
}

void TraceRows::DropBefore(std::int64_t number) {
  const auto kept = std::find_if(rows_.begin(), rows_.end(), [number](const TraceEntry& entry) {
    return entry.number >= number;
  });
  Drop(static_cast<std::size_t>(kept - rows_.begin()));
}

void TraceRows::Drop(std::size_t count) {
  if (count == 0) return;
  if (Dropping) Dropping(count);
  rows_.erase(rows_.begin(), rows_.begin() + static_cast<std::ptrdiff_t>(count));
  if (Dropped) Dropped();
}

// --- The form ------------------------------------------------------------------------------------

frm_LinkTrace::frm_LinkTrace(Platform& platform, LinkRecord& record)
    : platform_(platform), record_(record), refresh_(platform.CreateTimer()) {
  form.Visible = false;
  chkHold.ToolTipText = "The list stays as it is; what goes by meanwhile comes afterwards";
  chkOnlyWrong.ToolTipText = "Leaves out requests and what answers them";
  chkOnlyWrong.Click = [this] {
    Rows.Clear();
    Take(0);
    ShowCount();
  };
  chkHold.Click = [this] { Refresh(); };
  cmdClear.Click = [this] {
    record_.Clear();
    Rows.Clear();
    shown_until_ = record_.EntryCount();
    ShowCount();
  };
  cmdCopy.Click = [this] {
    if (CopyText) CopyText(Text());
  };
  cmdSave.Click = [this] {
    SaveListFile(
        platform_,
        {.title = caption.Caption, .file_name = "trace.txt", .folder = {}, .text = Text()});
  };
  refresh_->SetInterval(kRefresh);
  refresh_->SetOnTimer([this] { Refresh(); });
}

void frm_LinkTrace::Show() {
  Refresh();
  form.Visible = true;
  refresh_->SetEnabled(true);
}

void frm_LinkTrace::Unload() {
  if (!form.Visible) return;
  refresh_->SetEnabled(false);
  form.Visible = false;
  chkHold.Value = false;
  chkOnlyWrong.Value = false;
  Rows.Clear();
  shown_until_ = 0;
}

void frm_LinkTrace::Refresh() {
  if (!chkHold.Value) {
    // The panel may have cleared the record meanwhile.
    const auto& trace = record_.trace();
    Rows.DropBefore(trace.empty() ? record_.EntryCount() + 1 : trace.front().number);
    Take(std::exchange(shown_until_, record_.EntryCount()));
  }
  ShowCount();
}

void frm_LinkTrace::Take(std::int64_t after) {
  const auto is_before = [](const TraceEntry& entry, std::int64_t number) {
    return entry.number <= number;
  };
  const auto& trace = record_.trace();
  const auto first = std::lower_bound(trace.begin(), trace.end(), after, is_before);
  const auto last = std::lower_bound(first, trace.end(), shown_until_, is_before);
  std::deque<TraceEntry> fresh;
  std::copy_if(first, last, std::back_inserter(fresh), [this](const TraceEntry& entry) {
    return !chkOnlyWrong.Value || WentWrong(entry.kind);
  });
  Rows.Append(std::move(fresh), LinkRecord::kMostEntries);
}

void frm_LinkTrace::ShowCount() {
  const std::int64_t waiting = record_.EntryCount() - shown_until_;
  lblCount.Caption = std::to_string(Rows.rows().size()) + " of the last " +
                     std::to_string(LinkRecord::kMostEntries) + " are shown" +
                     (waiting > 0 ? ", " + std::to_string(waiting) + " came since" : "");
}

std::string frm_LinkTrace::Text() const {
  std::string text = kColumns;
  text += kLineEnd;
  for (const TraceEntry& entry : Rows.rows()) text.append(TraceLine(entry)).append(kLineEnd);
  return text;
}

}  // namespace tarnlink
