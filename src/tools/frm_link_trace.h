// The trace of the line: each frame with its time and its meaning, as it goes by, in a window that
// can stay open beside everything else.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "common/controls.h"
#include "platform/platform.h"
#include "tools/link_record.h"

namespace tarnlink {

// The rows that are shown, the oldest first. Its view is asked before and told after each change.
class TraceRows : public Control {
 public:
  using Control::Control;

  const std::deque<TraceEntry>& rows() const { return rows_; }

  std::function<void(std::size_t count)> Appending;
  std::function<void()> Appended;
  std::function<void(std::size_t count)> Dropping;  // of the oldest
  std::function<void()> Dropped;

  // Of the first as many are dropped as is needed to keep to `most`.
  void Append(std::deque<TraceEntry> rows, std::size_t most);
  void Clear() { Drop(rows_.size()); }
  // Those with lower numbers go.
  void DropBefore(std::int64_t number);

 private:
  void Drop(std::size_t count);

  std::deque<TraceEntry> rows_;
};

// "request", "answer", "refusal", "bad", "other", "time-out", "closed".
const char* TraceKindText(TraceKind kind);
// "14:07:09.123".
std::string TraceTimeText(Date date);
// Behind its request: "+ 34.5", in milliseconds; empty for a request.
std::string TraceSinceText(const TraceEntry& entry);
// A line of the saved trace, with tabs between its columns.
std::string TraceLine(const TraceEntry& entry);

class frm_LinkTrace {
 public:
  // Both outlive it.
  frm_LinkTrace(Platform& platform, LinkRecord& record);

  Control form{"frm_LinkTrace"};
  Label caption{"frm_LinkTrace.Caption", "Link trace"};
  TraceRows Rows{"Rows"};
  Label lblCount{"lblCount"};
  CheckBox chkOnlyWrong{"chkOnlyWrong", "&Only what went wrong"};
  CheckBox chkHold{"chkHold", "&Hold"};
  CommandButton cmdCopy{"cmdCopy", "&Copy"};
  CommandButton cmdSave{"cmdSave", "&Save trace"};
  CommandButton cmdClear{"cmdClear", "C&lear"};

  std::function<void(const std::string& text)> CopyText;

  void Show();
  void Unload();

 private:
  void Refresh();
  // The entries behind this number, up to the last that is to be shown.
  void Take(std::int64_t after);
  void ShowCount();
  std::string Text() const;

  Platform& platform_;
  LinkRecord& record_;
  std::unique_ptr<Timer> refresh_;
  std::int64_t shown_until_ = 0;  // number of an entry
};

}  // namespace tarnlink
