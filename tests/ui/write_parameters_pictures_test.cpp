// Pictures of the parameter writer and of the dialog that makes a parameter file, for a person to
// look at: idle, running, finished and failed, in a light and a dark palette, whole and as on a
// small screen.

#include <QPlainTextEdit>
#include <QScrollBar>

#include "ui/gen_par_file_dialog.h"
#include "ui/look.h"
#include "ui/write_parameters_fixture.h"

namespace tarnlink {
namespace {

class ParameterPictures : public ParameterWindowTest, public ::testing::WithParamInterface<Look> {
 protected:
  ParameterPictures() : usual_(QApplication::palette()) {
    if (GetParam().dark) QApplication::setPalette(DarkPalette());
  }
  ~ParameterPictures() override { QApplication::setPalette(usual_); }

  // Until all of it stands where it belongs.
  static void WaitForList(QWidget& form) {
    const auto& list = In<QPlainTextEdit>(form, "txtScrollStatus");
    const QScrollBar* bar = list.verticalScrollBar();
    const QWidget& done = In(form, "ProgressBar1");
    const QWidget& text = In(form, "lblProgress");
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
          return bar->isVisible() == (bar->maximum() > 0) &&
                 (done.isVisible() || text.x() == list.x());
        },
        2000));
  }
  static void Save(QWidget& form, const std::string& name) {
    ShowWhole(form);
    WaitForList(form);
    SavePicture(form, name + "-" + GetParam().name);
    form.resize(QSize(683, 384) * 0.9);
    WaitForList(form);
    SavePicture(form, name + "-small-" + GetParam().name);
    ShowWhole(form);
  }

 private:
  QPalette usual_;
};

TEST_P(ParameterPictures, ShowTheWriter) {
  QWidget& form = OpenWriter();
  Save(form, "write-parameters-empty");
  form.close();
  OpenWriter(SampleBytes("boiler.par"));
  Save(form, "write-parameters-file");
  Click(form, "cmdWriteZOLT");
  world.Advance(150ms);
  Save(form, "write-parameters-running");
  ExpectReport("All parameters set. And verified.");
  world.Advance(10s);
  Save(form, "write-parameters-finished");
  form.close();
}

TEST_P(ParameterPictures, ShowTheWriterThatFails) {
  QWidget& form = OpenWriter(SampleBytes("boiler.par") + "5 2 1\r\n5 &H056D &HFF00\r\n7 1 1\r\n" +
                             "7 &HF410 300\r\n");
  Click(form, "cmdWriteZOLT");
  ExpectReport("4 parameters NOT send. 1 parameters NOT ok.");
  world.Advance(30s);
  Save(form, "write-parameters-failed");
  form.close();
}

TEST_P(ParameterPictures, ShowTheWriterWithoutItsPort) {
  QWidget& form = OpenWriter(SampleBytes("boiler.par"));
  world.port().MakeBusy();
  world.dialogs().ExpectMessageBox("COM1 is in use by another program.", "Write Parameters");
  Click(form, "cmdWriteZOLT");
  Save(form, "write-parameters-busy");
  form.close();
}

INSTANTIATE_TEST_SUITE_P(Looks, ParameterPictures,
                         testing::Values(Look{"light", false}, Look{"dark", true}),
                         [](const testing::TestParamInfo<Look>& look) { return look.param.name; });

}  // namespace
}  // namespace tarnlink
