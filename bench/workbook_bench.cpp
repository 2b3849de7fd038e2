// The spreadsheet of a day's run: what a value costs the run, and what a save costs its thread.

#include <xlsxwriter.h>

#include <QApplication>
#include <QTemporaryDir>
#include <cstdio>
#include <string>

#include "measure.h"
#include "monitor/monitor.h"
#include "monitor/screen_builder.h"
#include "monitor/spreadsheet_link.h"
#include "platform/qt/qt_platform.h"
#include "platform/qt/xlsx_file.h"

namespace {

constexpr int kLocations = 200;
constexpr int kRounds = 3'500;  // a day at 9600 baud
constexpr int kRepeats = 3;

double NumberAt(int row, int column) { return (row * 31 + column * 17) % 65'536; }
std::string NameOf(int column) { return "Location " + std::to_string(column); }

double SaveSeconds(const std::string& path) {
  tarnlink::SheetCells cells;
  for (int column = 1; column <= kLocations; ++column) cells.Put({1, column}, NameOf(column));
  for (int row = 2; row <= kRounds + 1; ++row) {
    for (int column = 1; column <= kLocations; ++column) {
      cells.Put({row, column}, NumberAt(row, column));
    }
  }
  const double begun = bench::ThreadProcessorSeconds();
  tarnlink::SaveXlsx(path, cells);
  return bench::ThreadProcessorSeconds() - begun;
}

double LibrarySeconds(const std::string& path) {
  const double begun = bench::ThreadProcessorSeconds();
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  lxw_workbook* workbook = workbook_new_opt(path.c_str(), &options);
  lxw_worksheet* sheet = workbook_add_worksheet(workbook, "Sheet1");
  for (int column = 0; column < kLocations; ++column) {
    worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(column), NameOf(column + 1).c_str(),
                           nullptr);
  }
  for (int row = 1; row <= kRounds; ++row) {
    for (int column = 0; column < kLocations; ++column) {
      worksheet_write_number(sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(column),
                             NumberAt(row + 1, column + 1), nullptr);
    }
  }
  workbook_close(workbook);
  return bench::ThreadProcessorSeconds() - begun;
}

// A name and a value each, while the workbook's own thread saves now and then.
double PokeSeconds(const std::string& folder) {
  tarnlink::QtPlatform platform;
  tarnlink::Monitor monitor(platform);
  for (int i = 1; i <= kLocations; ++i) {
    tarnlink::LocationRecord record;
    record.location.Representation = tarnlink::kDecimal;
    record.location.DDEEnable = 1;
    record.location.ExcelColumn = std::to_string(i);
    tarnlink::BuildLocation(monitor.main, monitor.options, i, record);
    monitor.main.RAM_LOC_VAL(i).Text = std::to_string(1000 + i);
  }
  monitor.main.MaxId = kLocations;
  monitor.options.chk_GeneralLogging(1).Value = true;
  monitor.options.txt_LogPath.Text = folder;
  tarnlink::SpreadsheetLink link(monitor.main, monitor.options);
  link.Start();
  const double begun = bench::ThreadProcessorSeconds();
  for (int row = 2; row <= kRounds + 1; ++row) {
    monitor.main.DDERowCounter = row;
    for (int i = 1; i <= kLocations; ++i) link.Poke(i);
    if (row % 500 == 0) link.Save();
  }
  return bench::ThreadProcessorSeconds() - begun;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  const QApplication application(argc, argv);
  const std::string path = folder.path().toStdString();
  std::vector<double> ours;
  std::vector<double> library;
  std::vector<double> pokes;
  for (int i = 0; i < kRepeats; ++i) {
    ours.push_back(SaveSeconds(path + "/ours.xlsx"));
    library.push_back(LibrarySeconds(path + "/library.xlsx"));
    pokes.push_back(PokeSeconds(path) / (kRounds * kLocations));
  }
  std::printf("save of %d cells %.2f s, the library alone %.2f s; a value %.2f us\n",
              kRounds * kLocations, bench::Median(ours), bench::Median(library),
              bench::Median(pokes) * 1e6);
  bench::Report("saving a day's workbook / the library alone",
                bench::Median(ours) / bench::Median(library), 1.5, false);
  bench::Report("a value to the spreadsheet / 2 us of the run's thread",
                bench::Median(pokes) / 2e-6, 1.0, false);
  return bench::AllHeld() ? 0 : 1;
}
