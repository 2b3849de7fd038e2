#include "support/fake_workbook.h"

#include <array>
#include <cstdio>
#include <utility>

namespace tarnlink {
namespace {

std::string NumberText(double number) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%.15g", number);
  return text.data();
}

}  // namespace

FakeWorkbook::FakeWorkbook(std::string path, Files& files, VirtualTime& time)
    : path_(std::move(path)), files_(files), time_(time) {
  files_.WriteWhole(path_, Text());
}

FakeWorkbook::~FakeWorkbook() {
  Cancel(save_);
  Cancel(failure_);
  on_failure_ = nullptr;
  if (changed_) SaveNow();
}

void FakeWorkbook::Save() {
  if (!changed_) return;
  Cancel(save_);
  SaveIn(Micros::zero());
}

void FakeWorkbook::Put(SheetCell cell, const Value& value) {
  if (cell.row < 1 || cell.column < 1 || cell.row > kLastCell.row ||
      cell.column > kLastCell.column) {
    if (!std::exchange(full_is_told_, true)) Fail(SheetIsFull(path_));
    return;
  }
  cells_[cell] = value;
  if (!std::exchange(changed_, true)) SaveIn(kPause);
}

void FakeWorkbook::Fail(const RunTimeError& error) {
  failure_ = time_.Post(Micros::zero(), [this, error] {
    if (on_failure_) on_failure_(error);
  });
}

void FakeWorkbook::SaveIn(Micros delay) {
  save_ = time_.Post(delay, [this] { SaveNow(); });
}

void FakeWorkbook::Cancel(std::optional<VirtualTime::EventId>& event) {
  if (event) time_.Cancel(*event);
  event.reset();
}

void FakeWorkbook::SaveNow() {
  try {
    files_.WriteWhole(path_, Text());
    changed_ = false;
  } catch (const RunTimeError& error) {
    if (!on_failure_) return;
    Fail(error);
    SaveIn(kPause);
  }
}

std::string FakeWorkbook::Text() const {
  std::string text = "Sheet1\n";
  for (const auto& [cell, value] : cells_) {
    text += "R" + std::to_string(cell.row) + "C" + std::to_string(cell.column);
    const auto* words = std::get_if<std::string>(&value);
    text += words != nullptr ? " text " + *words : " number " + NumberText(std::get<double>(value));
    text += "\n";
  }
  return text;
}

}  // namespace tarnlink
