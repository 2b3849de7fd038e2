// Pictures of the sniffer for a person to look at: many items, long names, its settings, in a light
// and a dark palette.

#include "ui/look.h"
#include "ui/sniffer_fixture.h"

namespace tarnlink {
namespace {

// There before the windows are.
class DesktopLook : public ::testing::WithParamInterface<Look> {
 protected:
  DesktopLook() {
    if (GetParam().dark) QApplication::setPalette(DarkPalette());
  }
  ~DesktopLook() { QApplication::setPalette(usual_); }

 private:
  QPalette usual_ = QApplication::palette();
};

class SnifferPictures : public DesktopLook, public SnifferUiTest {
 protected:
  SnifferPictures() {
    world.disk().Put("/jobs/boiler.snf",
                     "*Gas boiler, 3.7, the second house\r\nsensor_1,1001,0,H\r\n"
                     "flow_temperature_of_the_second_heating_circuit,1002,0,W\r\n"
                     "status,1003,2,W\r\nfan,1004,3,L\r\n<b>bold</b> & so on,1005,1,W\r\n");
    Window().close();
    tools->ShowSniffer();
    Activated("frmSniffer");
  }

  // All that has come is laid out.
  static void Save(QWidget& form, const std::string& name) {
    for (QLabel* label : form.findChildren<QLabel*>()) {
      if (!label->isVisible() || label->text().isEmpty() || label->objectName().isEmpty()) continue;
      EXPECT_TRUE(
          QTest::qWaitFor([&] { return label->width() >= label->minimumSizeHint().width(); }, 2000))
          << label->objectName().toStdString();
    }
    SavePicture(form, "sniffer-" + name + "-" + GetParam().name);
  }
};

TEST_P(SnifferPictures, ShowFewAndManyItems) {
  Save(Window(), "empty");
  PlaceItems(5);
  Hear(0x14, 0x1003, 0xA5, 0x5A);
  Hear(0x14, 0x1001, 0xF8, 0x00);
  Save(Window(), "few");
  PlaceItems(120);
  Part("RAM_TEXT(2)").setFocus();
  Save(Window(), "many");
  Window().resize(640, 480);
  Save(Window(), "small");
}

TEST_P(SnifferPictures, ShowADragAndWhatWasFound) {
  PlaceItems(30);
  tools->sniffer.txt_Find.Text = "0x1004";
  Click("cmd_Find");
  Grab("RAM_TEXT(2)", QPoint(180, 60));
  Save(Window(), "drag");
  Release();
  tools->sniffer.txt_Find.Text = "nothing";
  Click("cmd_Find");
  world.port().Unplug();
  world.Settle();
  Save(Window(), "unplugged");
}

TEST_P(SnifferPictures, ShowTheSettings) {
  PlaceItems(2);
  tools->sniffer.RAM_TEXT.DblClick(2);
  Save(Settings(), "settings");
  Enter(Settings(), "txt_SniffAddress", "x");
  Click(Settings(), "opt_sniff_storage_type(0)");
  Click(Settings(), "cmd_Ok");
  Save(Settings(), "settings-wrong");
}

INSTANTIATE_TEST_SUITE_P(Palettes, SnifferPictures,
                         ::testing::Values(Look{"light", false}, Look{"dark", true}),
                         [](const auto& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace tarnlink
