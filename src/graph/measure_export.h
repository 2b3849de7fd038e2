// What was measured as a table for other programs: a row for each second, its fields separated by
// tabs.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "files/log_file.h"
#include "graph/cell_texts.h"
#include "graph/graphic.h"
#include "graph/measure_stamps.h"
#include "graph/piece_source.h"
#include "graph/row_times.h"

namespace tarnlink {

// The text is that of the moment when this was made, whatever is appended afterwards. Samples that
// have fallen out of their channel before their row is reached are passed over.
class MeasureExport final : public PieceSource {
 public:
  // As a file, the text has the locale's decimal separator and the encoding of files; as a sheet, a
  // point and UTF-8. `data` and `locale` outlive it.
  enum class Form { kFile, kSheet };
  MeasureExport(const Graphic& data, const Locale& locale, Form form);

  bool Next(std::string& piece) override;
  double Share() const override;

 private:
  // A text that no table has, also one that is too long for a cell.
  struct OwnText : CellText {
    std::string long_text;  // if there is no other
  };
  // A channel that has samples.
  struct Column {
    std::size_t channel;
    SampleRange next;  // the samples that have not been shown
    CellTexts* texts;
    const CellText* shown = nullptr;  // in a table, or else the next one
    OwnText own = {};
  };

  void AddColumn(std::size_t channel);
  void AddHeader(Form form);
  // The next rows, column by column and then row by row: a channel is read in one go, and so is a
  // row.
  void WriteRows(PieceFiller& piece);
  void MakeCells(std::size_t column, int rows);
  const CellText* MakeCell(CellTexts& texts, std::int32_t raw);
  static void KeepShown(Column& column);
  void WriteRow(int row, PieceFiller& piece);

  const Graphic& data_;
  RowTimes times_;
  CellTables tables_;
  LogEncoding encoding_;
  std::string header_;
  std::vector<Column> columns_;
  std::vector<const CellText*> cells_;  // of the next rows, column by column
  std::deque<OwnText> own_texts_;       // of these cells
  std::int64_t first_;                  // seconds
  std::int64_t row_;
  std::int64_t last_;
};

}  // namespace tarnlink
