// A workbook whose file is plain text on the fake disk, the sheet and a line for each
// cell:
//
//   Sheet1
//   R1C3 text Flow
//   R2C3 number 42
//
// A real workbook that is read back is written down in the same form.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <variant>

#include "platform/files.h"
#include "platform/workbook.h"
#include "support/virtual_time.h"

namespace tarnlink {

class FakeWorkbook final : public Workbook {
 public:
  static constexpr Micros kPause = std::chrono::seconds(3);

  // All outlive it.
  FakeWorkbook(std::string path, Files& files, VirtualTime& time);
  ~FakeWorkbook() override;
  FakeWorkbook(const FakeWorkbook&) = delete;
  FakeWorkbook& operator=(const FakeWorkbook&) = delete;

  const std::string& path() const override { return path_; }
  void Poke(SheetCell cell, const std::string& text) override { Put(cell, text); }
  void Poke(SheetCell cell, double number) override { Put(cell, number); }
  void Save() override;
  bool Saved() const override { return !changed_; }
  void SetOnFailure(std::function<void(const RunTimeError&)> handler) override {
    on_failure_ = std::move(handler);
  }

 private:
  using Value = std::variant<double, std::string>;

  void Put(SheetCell cell, const Value& value);
  void Fail(const RunTimeError& error);
  void SaveIn(Micros delay);
  void Cancel(std::optional<VirtualTime::EventId>& event);
  void SaveNow();
  std::string Text() const;

  std::string path_;
  Files& files_;
  VirtualTime& time_;
  std::map<SheetCell, Value> cells_;
  bool changed_ = false;
  bool full_is_told_ = false;
  std::optional<VirtualTime::EventId> save_;
  std::optional<VirtualTime::EventId> failure_;
  std::function<void(const RunTimeError&)> on_failure_;
};

}  // namespace tarnlink
