// What holds for all windows of the program, in a light and a dark palette.

#include <QApplication>
#include <QDir>
#include <QMenu>

#include "ui/look.h"
#include "ui/ui_fixture.h"
#include "ui/window_checks.h"
#include "ui/window_gallery.h"

namespace tarnlink {
namespace {

class EveryWindow : public ::testing::TestWithParam<std::tuple<Exhibit, Look>> {
 protected:
  EveryWindow() : usual_(QApplication::palette()) {
    if (IsDark()) QApplication::setPalette(DarkPalette());
  }
  ~EveryWindow() override { QApplication::setPalette(usual_); }

  static bool IsDark() { return std::get<1>(GetParam()).dark; }

  static void Check(QWidget& window, const std::string& name) {
    // Where colours are the only difference, the rest has been looked at.
    if (!IsDark()) {
      ExpectMnemonics(window, name);
      ExpectNames(window, name);
    }
    ExpectContrast(window, name);
    Keep(window, name);
    if (!IsDark() && qobject_cast<QMenu*>(&window) == nullptr) ExpectTabReachesAll(window, name);
    if (!IsDark()) ExpectRoom(window, name);
  }

  // For a person to look at.
  static void Keep(QWidget& window, std::string name) {
    if (!qEnvironmentVariableIsSet("TARNLINK_GALLERY")) return;
    std::replace(name.begin(), name.end(), ' ', '_');
    const QDir folder(qEnvironmentVariable("TARNLINK_GALLERY"));
    const std::string file = name + "-" + std::get<1>(GetParam()).name + ".png";
    EXPECT_TRUE(window.grab().save(folder.filePath(QString::fromStdString(file)))) << file;
  }

 private:
  QPalette usual_;
};

TEST_P(EveryWindow, OwesItsUsers) { std::get<0>(GetParam()).Show(Check); }

INSTANTIATE_TEST_SUITE_P(Gallery, EveryWindow,
                         ::testing::Combine(::testing::ValuesIn(Gallery()),
                                            ::testing::Values(Look{"light", false},
                                                              Look{"dark", true})),
                         [](const auto& one) {
                           return std::string(std::get<0>(one.param).name) + "_" +
                                  std::get<1>(one.param).name;
                         });

}  // namespace
}  // namespace tarnlink
