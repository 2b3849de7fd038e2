// Opening a screen of 512 Locations against making the same widgets with nothing behind them.

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "app/program.h"
#include "files/screen_file.h"
#include "measure.h"
#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "ui/text_plate.h"
#include "ui/units.h"

namespace {

using tarnlink::LocationRecord;
using tarnlink::ToQt;

constexpr int kLocations = 512;
constexpr int kRounds = 15;
constexpr QRect kInSight(0, 0, 620, 400);  // what is painted first, the same on both sides

std::vector<tarnlink::ScreenRecord> Records() {
  std::vector<tarnlink::ScreenRecord> records;
  for (int i = 0; i < kLocations; ++i) {
    LocationRecord record;
    record.location.Specification = 0;
    record.location.Alias = "Location " + std::to_string(i + 1);
    record.name_top = record.value_top = static_cast<float>(i % 32) * 360.0F;
    record.name_left = static_cast<float>(i / 32) * 4500.0F;
    record.value_left = record.name_left + 2160.0F;
    records.emplace_back(record);
  }
  return records;
}

void BareBox(QWidget* parent, const std::string& text, float left, float top,
             const tarnlink::TextBox& look) {
  auto* box = new tarnlink::TextPlate(parent);
  box->SetText(ToQt(text));
  box->SetBackground(tarnlink::ToQColor(look.BackColor));
  box->setGeometry(tarnlink::ToPixels(left), tarnlink::ToPixels(top),
                   tarnlink::ToPixels(look.Width), tarnlink::ToPixels(look.Height));
  box->show();
}

double BareSeconds(QWidget* window, const std::vector<tarnlink::ScreenRecord>& records,
                   const tarnlink::TextBox& look) {
  QElapsedTimer timer;
  timer.start();
  auto* surface = new QWidget(window);
  surface->setMinimumSize(6000, 1000);
  surface->setFont(tarnlink::ToScreenFont(tarnlink::Font{}));
  surface->show();
  for (const auto& record : records) {
    const auto& place = std::get<LocationRecord>(record);
    BareBox(surface, "Value", place.value_left, place.value_top, look);
    BareBox(surface, place.location.Alias, place.name_left, place.name_top, look);
  }
  surface->grab(kInSight);
  const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
  delete surface;
  return seconds;
}

double OpenSeconds(tarnlink::Program& program, const std::string& file) {
  program.monitor().screen.M_NewScreen();
  QElapsedTimer timer;
  timer.start();
  program.monitor().screen.OpenTarnLinkFileBuildScreen(file);
  program.window().findChild<QWidget*>("screen")->grab(kInSight);
  return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  QApplication application(argc, argv);
  const auto records = Records();
  const std::string file = (std::filesystem::path(folder.path().toStdString()) / "s.wcr").string();
  std::ofstream(file, std::ios::binary) << tarnlink::WriteScreenFile(0xE0E0E0, records);

  tarnlink::Program program;
  program.Start({});
  QWidget window;
  window.resize(program.window().size());
  window.show();
  std::vector<double> ours;
  std::vector<double> bare;
  for (int i = 0; i < kRounds; ++i) {
    ours.push_back(OpenSeconds(program, file));
    bare.push_back(BareSeconds(&window, records, program.monitor().main.RAM_LOC_VAL(0)));
  }
  std::printf("open %.1f ms, bare widgets %.1f ms\n", bench::Median(ours) * 1e3,
              bench::Median(bare) * 1e3);
  bench::Report("opening 512 Locations / the same widgets bare",
                bench::Median(ours) / bench::Median(bare), 1.5, false);
  return bench::AllHeld() ? 0 : 1;
}
