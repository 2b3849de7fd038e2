// The picture of an EEPROM image: how far each of its bytes has come in a run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "common/control.h"

namespace tarnlink {

enum class CellState : std::uint8_t {
  kOpen,
  kInWork,    // sent, and not confirmed
  kWritten,   // the slave says so
  kVerified,  // it was read back
  kWrong,     // something else was read back
};

class EepromMap : public Control {
 public:
  using Control::Control;

  struct Cell {
    std::string Address;  // "0X8012"
    std::string Text;     // what is to stand there
    CellState State = CellState::kOpen;
  };

  void Fill(std::vector<Cell> cells) {
    cells_ = std::move(cells);
    in_work_ = 0;
    Tell();
  }
  void Mark(std::size_t cell, CellState state) {
    cells_.at(cell).State = state;
    in_work_ = cell;
    Tell();
  }

  const std::vector<Cell>& Cells() const { return cells_; }
  // The one that was marked last.
  std::size_t InWork() const { return in_work_; }

 private:
  void Tell() { changes_ = changes_ + 1; }

  std::vector<Cell> cells_;
  std::size_t in_work_ = 0;
  Property<unsigned> changes_{this, 0};
};

}  // namespace tarnlink
