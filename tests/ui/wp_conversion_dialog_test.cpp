// The pressure conversion under keyboard and mouse, and what it draws.

#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include "ui/service_tools_fixture.h"

namespace tarnlink {
namespace {

class WpDialogTest : public ServiceToolsTest {
 protected:
  QWidget& OpenConversion() {
    file_tools->wp_conversion.Show();
    return Activated("frmWPconversion");
  }
  // The user works in another window of the program.
  static void GoTo(QWidget& window) {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.isActiveWindow(); }, 2000));
  }
  static void Fill(QWidget& form, const std::string& name, const std::string& text) {
    auto& field = In<QLineEdit>(form, name);
    field.setFocus(Qt::TabFocusReason);
    field.selectAll();
    Type(form, text);
  }
  static QRect PlaceOf(QWidget& form, const std::string& name) {
    QWidget& part = In(form, name);
    return {part.mapTo(&form, QPoint(0, 0)), part.size()};
  }
  // How far the letters of a field are red.
  static int Red(QWidget& form, const std::string& name) {
    const QColor letters = In(form, name).palette().color(QPalette::Text);
    return letters.red() - letters.green();
  }
  // The pixels of the picture below its legend that are rather blue and rather orange.
  static std::pair<int, int> Curves(QWidget& form) {
    const QImage picture = In(form, "picSensor").grab().toImage();
    std::pair<int, int> count;
    const int legend = 3 * form.fontMetrics().lineSpacing();
    for (int y = legend; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const QColor colour = picture.pixelColor(x, y);
        if (colour.blue() - colour.red() > 100) ++count.first;
        if (colour.red() - colour.blue() > 100) ++count.second;
      }
    }
    return count;
  }
};

TEST_F(WpDialogTest, EnterConvertsFromEachField) {
  QWidget& form = OpenConversion();
  EXPECT_EQ(form.windowTitle(), "Water Pressure Conversion");
  EXPECT_EQ(Focus(form), "txtU1");
  Key(form, Qt::Key_Return);
  EXPECT_EQ(Text(form, "txtFactorA"), "41");
  EXPECT_EQ(Text(form, "txtFactorB"), "115");
  EXPECT_EQ(Text(form, "txtFactorC"), "57");
  EXPECT_EQ(Text(form, "txtRange"), "-2.03 ... 7.06");
  EXPECT_TRUE(In(form, "frmFault").isVisible());
  // The first field is picked as a whole: what is typed stands in its place.
  Type(form, "1,4");
  EXPECT_EQ(Text(form, "txtU1"), "1,4");
  Key(form, Qt::Key_Enter);
  EXPECT_EQ(Text(form, "txtFactorA"), "");
  EXPECT_FALSE(In(form, "frmFault").isVisible());
  for (const char* field : {"txtU1", "txtPres1", "txtU2", "txtPres2"}) {
    Fill(form, "txtU1", "1.4");
    In(form, field).setFocus(Qt::TabFocusReason);
    Key(form, Qt::Key_Return);
    EXPECT_EQ(Text(form, "txtFactorA"), "41") << field;
    Fill(form, "txtU1", "x");
    Key(form, Qt::Key_Return);
    EXPECT_EQ(Text(form, "txtFactorA"), "");
  }
  form.close();
}

TEST_F(WpDialogTest, TheTabulatorPassesWhatIsOnlyLookedAt) {
  QWidget& form = OpenConversion();
  EXPECT_EQ(Walk(form, 6), "txtPres1 txtU2 txtPres2 cmdConvert cmdClose txtU1");
  form.close();
}

TEST_F(WpDialogTest, TheFormulaIsAFraction) {
  QWidget& form = OpenConversion();
  const QRect formula = PlaceOf(form, "lblFormula");
  const QRect numerator = PlaceOf(form, "lblNumerator");
  const QRect line = PlaceOf(form, "fractionLine");
  const QRect denominator = PlaceOf(form, "lblDenominator");
  EXPECT_EQ(In<QLabel>(form, "lblNumerator").text(), "(AD-WP_C) * WP_A");
  EXPECT_EQ(In<QLabel>(form, "lblDenominator").text(), "WP_B");
  EXPECT_LE(numerator.bottom(), line.top());
  EXPECT_LE(line.bottom(), denominator.top());
  EXPECT_GT(line.left(), formula.left());
  EXPECT_GE(line.width(), In(form, "lblNumerator").sizeHint().width());
  EXPECT_LE(std::abs(line.center().y() - formula.center().y()), 3);
  EXPECT_LE(std::abs(line.center().x() - denominator.center().x()), 1);
  form.close();
}

TEST_F(WpDialogTest, WhatIsTooCoarseIsRedAndBold) {
  QWidget& form = OpenConversion();
  const auto is_bold = [&](const char* name) { return In(form, name).font().bold(); };
  Key(form, Qt::Key_Return);
  EXPECT_LT(Red(form, "txtFault"), 20);
  EXPECT_FALSE(is_bold("txtFault"));
  Fill(form, "txtPres1", "5.6");
  Fill(form, "txtPres2", "0.5");
  Key(form, Qt::Key_Return);
  EXPECT_GT(Red(form, "txtFault"), 100);
  EXPECT_TRUE(is_bold("txtFault"));
  EXPECT_LT(Red(form, "txtResolution"), 20);
  EXPECT_FALSE(is_bold("txtResolution"));
  Fill(form, "txtPres1", "0.5");
  Fill(form, "txtPres2", "2.5");
  Key(form, Qt::Key_Return);
  EXPECT_LT(Red(form, "txtFault"), 20);
  EXPECT_FALSE(is_bold("txtFault"));
  form.close();
}

TEST_F(WpDialogTest, TheWindowKeepsItsSizeWithAndWithoutResult) {
  QWidget& form = OpenConversion();
  const QSize without = form.sizeHint();
  Key(form, Qt::Key_Return);
  EXPECT_EQ(form.sizeHint(), without);
  EXPECT_EQ(In(form, "lblFault").toolTip(), "Divation of calculation in range 0.5 ... 2.5 Bar");
  form.close();
}

TEST_F(WpDialogTest, DrawsTheSensorAndWhatTheControllerMakesOfIt) {
  QWidget& form = OpenConversion();
  ShowWhole(form);
  EXPECT_EQ(Curves(form), (std::pair{0, 0}));
  Key(form, Qt::Key_Return);
  const auto drawn = Curves(form);
  EXPECT_GT(drawn.first, 200);
  EXPECT_GT(drawn.second, 500);
  Fill(form, "txtU1", "x");
  Key(form, Qt::Key_Return);
  EXPECT_EQ(Curves(form), (std::pair{0, 0}));
  form.close();
}

TEST_F(WpDialogTest, DrawsWhateverPointsAreTyped) {
  QWidget& form = OpenConversion();
  for (const char* text : {"999", "-999", "1e-300", "2.5000001", "1e300"}) {
    for (const char* field : {"txtU1", "txtPres1"}) {
      Fill(form, field, text);
      Key(form, Qt::Key_Return);
      EXPECT_EQ(Curves(form).first > 0, !file_tools->wp_conversion.picSensor.Sensor->empty());
      Fill(form, field, "1.4");
    }
  }
  form.close();
}

TEST_F(WpDialogTest, StaysOpenBesideOtherWindowsAndComesBackToTheFront) {
  QWidget& form = OpenConversion();
  EXPECT_FALSE(form.isModal());
  Fill(form, "txtU1", "1.3");
  QWidget other;
  GoTo(other);
  EXPECT_TRUE(form.isVisible());
  file_tools->wp_conversion.Show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return form.isActiveWindow(); }, 2000));
  EXPECT_EQ(Text(form, "txtU1"), "1.3");
  form.close();
}

TEST_F(WpDialogTest, EscapeAndCloseLeaveItAndItOpensWithItsDesign) {
  QWidget& form = OpenConversion();
  Fill(form, "txtU1", "7");
  In(form, "txtPres2").setFocus();
  Key(form, Qt::Key_Escape);
  EXPECT_FALSE(form.isVisible());
  QWidget other;
  GoTo(other);
  OpenConversion();
  EXPECT_EQ(Text(form, "txtU1"), "1.4");
  EXPECT_EQ(Focus(form), "txtU1");
  Click(form, "cmdClose");
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(FramesSent(), 0U);
}

TEST_F(WpDialogTest, EnterOnCloseClosesWithoutConverting) {
  QWidget& form = OpenConversion();
  In(form, "cmdClose").setFocus(Qt::TabFocusReason);
  Key(form, Qt::Key_Return);
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(file_tools->wp_conversion.txtFactorA.Text.get(), "");
}

}  // namespace
}  // namespace tarnlink
