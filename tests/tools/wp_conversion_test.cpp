#include "tools/frm_wp_conversion.h"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace tarnlink {
namespace {

// A place where numbers have a decimal comma, made for the test: systems need not have any. It is
// left as what holds it is destroyed.
class CommaCountry {
 public:
  CommaCountry() : folder_(::testing::TempDir() + "comma_country") {
    std::filesystem::create_directories(folder_ + "/xx_XX");
    std::ofstream(folder_ + "/xx_XX/LC_NUMERIC", std::ios::binary) << NumericFile();
    setenv("LOCPATH", folder_.c_str(), 1);
    is_there_ = std::setlocale(LC_NUMERIC, "xx_XX") != nullptr;
  }
  ~CommaCountry() {
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
    std::filesystem::remove_all(folder_);
  }
  CommaCountry(const CommaCountry&) = delete;
  CommaCountry& operator=(const CommaCountry&) = delete;

  bool IsThere() const {
    return is_there_ && std::strcmp(std::localeconv()->decimal_point, ",") == 0;
  }

 private:
  // As localedef makes one: a mark, the count of the items, where each begins, and the items.
  static std::string NumericFile() {
    const auto word = [](std::uint32_t number) {
      std::string bytes(sizeof number, '\0');
      std::memcpy(bytes.data(), &number, sizeof number);
      return bytes;
    };
    const std::vector<std::string> items = {
        std::string(",\0\0\0", 4), std::string(4, '\0'), std::string(4, '\0'), word(','), word(0),
        std::string("UTF-8\0", 6)};
    std::string head =
        word(0x20031115U ^ LC_NUMERIC) + word(static_cast<std::uint32_t>(items.size()));
    std::string body;
    const std::size_t begin = head.size() + items.size() * sizeof(std::uint32_t);
    for (const std::string& item : items) {
      head += word(static_cast<std::uint32_t>(begin + body.size()));
      body += item;
    }
    return head + body;
  }

  std::string folder_;
  bool is_there_ = false;
};

class WpConversion : public ::testing::Test {
 protected:
  WpConversion() { tool.Show(); }

  void Convert(const std::string& u1, const std::string& pres1, const std::string& u2,
               const std::string& pres2) {
    tool.txtU1.Text = u1;
    tool.txtPres1.Text = pres1;
    tool.txtU2.Text = u2;
    tool.txtPres2.Text = pres2;
    tool.cmdConvert.Press();
  }
  // "A B C | range | fault | resolution".
  std::string Shown() const {
    return tool.txtFactorA.Text.get() + " " + tool.txtFactorB.Text.get() + " " +
           tool.txtFactorC.Text.get() + " | " + tool.txtRange.Text.get() + " | " +
           tool.txtFault.Text.get() + " | " + tool.txtResolution.Text.get();
  }
  void ExpectEmpty() const {
    EXPECT_EQ(Shown(), "   |  |  | ");
    EXPECT_FALSE(tool.frmFault.Visible);
  }
  static bool IsWarning(const TextBox& box) {
    EXPECT_EQ(box.TextFont.get().bold, box.ForeColor == frmWPconversion::kWarning);
    return box.TextFont.get().bold;
  }

  frmWPconversion tool;
};

TEST_F(WpConversion, OpensWithItsDesign) {
  EXPECT_EQ(tool.caption.Caption.get(), "Water Pressure Conversion");
  EXPECT_EQ(tool.txtU1.Text.get(), "1.4");
  EXPECT_EQ(tool.txtPres1.Text.get(), "0.5");
  EXPECT_EQ(tool.txtU2.Text.get(), "2.5");
  EXPECT_EQ(tool.txtPres2.Text.get(), "2.5");
  EXPECT_EQ(tool.frmFault.Caption.get(), "ZOLT calculation");
  EXPECT_EQ(tool.txtRange.ToolTipText.get(), "Range of AD converter ");
  EXPECT_EQ(tool.txtResolution.ToolTipText.get(), "1 AD count");
  ExpectEmpty();
}

TEST_F(WpConversion, WorksOutTheFactorsOfItsDesign) {
  tool.cmdConvert.Press();
  // 20 / 56.1 is nearest to 41 / 115; point 1 is at 71.4 counts and 5 tenths of a bar.
  EXPECT_EQ(Shown(), "41 115 57 | -2.03 ... 7.06 | 0.0135 | 0.0357");
  EXPECT_TRUE(tool.frmFault.Visible);
  EXPECT_EQ(tool.txtFault.ToolTipText.get(), "Divation of calculation in range 0.5 ... 2.5 Bar");
  EXPECT_EQ(tool.lblFault.ToolTipText.get(), tool.txtFault.ToolTipText.get());
  EXPECT_FALSE(IsWarning(tool.txtFault));
  EXPECT_FALSE(IsWarning(tool.txtResolution));
}

TEST_F(WpConversion, TakesTheFirstOfEqualFractions) {
  // A slope of one half: 1 / 2, and not 2 / 4.
  Convert("0", "0", "2", "5.1");
  EXPECT_EQ(Shown(), "1 2 0 | 0.00 ... 12.75 | 0.0000 | 0.0500");
}

TEST_F(WpConversion, RoundsTheOffsetTiesToEven) {
  // 51 counts and 51 tenths make a slope of 1; the offset is what is left.
  Convert("0", "-0.05", "1", "5.05");
  EXPECT_EQ(tool.txtFactorC.Text.get(), "0");  // 0.5
  Convert("0", "-0.15", "1", "4.95");
  EXPECT_EQ(tool.txtFactorC.Text.get(), "2");  // 1.5
  Convert("0", "-0.25", "1", "4.85");
  EXPECT_EQ(tool.txtFactorC.Text.get(), "2");  // 2.5
}

TEST_F(WpConversion, KeepsTheOffsetInAByte) {
  Convert("0", "10", "1", "15.1");
  EXPECT_EQ(tool.txtFactorC.Text.get(), "0");
  Convert("0", "-30", "1", "-24.9");
  EXPECT_EQ(tool.txtFactorC.Text.get(), "255");
}

TEST_F(WpConversion, HasNoFactorsBelowZero) {
  Convert("1", "5.1", "2", "0");
  // The error of each fraction is greater than that of the smallest, 1 / 255. The offset is
  // 76.5 - 51 * 255 / 2, far below 0, so that nearly all of point 1 is lost: 5.1 - 51 / 2550.
  EXPECT_EQ(Shown(), "1 255 0 | 0.00 ... 0.10 | 5.0800 | 0.0004");
  EXPECT_TRUE(IsWarning(tool.txtFault));
  EXPECT_FALSE(IsWarning(tool.txtResolution));
}

TEST_F(WpConversion, WarnsOfAFaultOfHalfABarAndMore) {
  // A slope of 1, and an offset that cannot be below 0: what is lost is the fault.
  Convert("0", "0.5", "1", "5.6");
  EXPECT_EQ(tool.txtFault.Text.get(), "0.5000");
  EXPECT_TRUE(IsWarning(tool.txtFault));
  Convert("0", "0.4999", "1", "5.5999");
  EXPECT_EQ(tool.txtFault.Text.get(), "0.4999");
  EXPECT_FALSE(IsWarning(tool.txtFault));
}

TEST_F(WpConversion, WarnsOfAResolutionOfHalfABarAndMore) {
  Convert("0", "0", "1", "25.5");  // 5 tenths for a count
  EXPECT_EQ(tool.txtResolution.Text.get(), "0.5000");
  EXPECT_TRUE(IsWarning(tool.txtResolution));
  EXPECT_FALSE(IsWarning(tool.txtFault));
  Convert("0", "0", "1", "20.4");
  EXPECT_EQ(tool.txtResolution.Text.get(), "0.4000");
  EXPECT_FALSE(IsWarning(tool.txtResolution));
}

TEST_F(WpConversion, ShowsNoMinusBeforeAZero) {
  // An offset of 1 count of 1 / 255 tenths: the lowest pressure is -0.0004 bar.
  Convert("0", "-0.00039", "1", "0.0196");
  EXPECT_EQ(tool.txtFactorC.Text.get(), "1");
  EXPECT_EQ(tool.txtRange.Text.get(), "0.00 ... 0.10");
}

TEST_F(WpConversion, EmptiesAllWithoutSlope) {
  for (const char* pressure : {"1.5", "0.5"}) {
    tool.txtU1.Text = "1.4";
    tool.cmdConvert.Press();
    ASSERT_TRUE(tool.frmFault.Visible);
    Convert("1.4", "0.5", "1.4", pressure);
    ExpectEmpty();
    Convert("1.4", "0.5", "2.5", "2.5");
  }
}

TEST_F(WpConversion, EmptiesAllWhereAPointIsNoNumber) {
  for (const char* text : {"1,4", "", " ", "x", "1.4 V", "1.4.1", "--1", "1e", ",", "0x1"}) {
    for (TextBox* box : {&tool.txtU1, &tool.txtU2, &tool.txtPres1, &tool.txtPres2}) {
      Convert("1.4", "0.5", "2.5", "2.5");
      ASSERT_TRUE(tool.frmFault.Visible);
      box->Text = text;
      tool.cmdConvert.Press();
      SCOPED_TRACE(box->name() + " " + text);
      ExpectEmpty();
    }
  }
}

TEST_F(WpConversion, ShowsAPointWhereOthersShowAComma) {
  const CommaCountry country;
  ASSERT_TRUE(country.IsThere());
  tool.cmdConvert.Press();
  EXPECT_EQ(Shown(), "41 115 57 | -2.03 ... 7.06 | 0.0135 | 0.0357");
  EXPECT_EQ(tool.txtFault.ToolTipText.get(), "Divation of calculation in range 0.5 ... 2.5 Bar");
}

TEST_F(WpConversion, ForgetsWhatItSaidOfTheConversionBefore) {
  const auto convert_badly = [this] {
    Convert("0", "10", "1", "60");
    EXPECT_TRUE(IsWarning(tool.txtFault));
    EXPECT_TRUE(IsWarning(tool.txtResolution));
    EXPECT_NE(tool.lblFault.ToolTipText.get(), "");
  };
  const auto expect_forgotten = [this] {
    ExpectEmpty();
    EXPECT_FALSE(IsWarning(tool.txtFault));
    EXPECT_FALSE(IsWarning(tool.txtResolution));
    EXPECT_EQ(tool.txtFault.ToolTipText.get(), "");
    EXPECT_EQ(tool.lblFault.ToolTipText.get(), "");
    EXPECT_EQ(tool.txtResolution.ToolTipText.get(), "1 AD count");
  };
  expect_forgotten();
  convert_badly();
  tool.txtU1.Text = "x";
  tool.cmdConvert.Press();
  expect_forgotten();
  convert_badly();
  tool.cmdClose.Press();
  tool.Show();
  expect_forgotten();
}

TEST_F(WpConversion, TakesNumbersInAllTheirForms) {
  Convert(" 1.40 ", "+.5", "25e-1", "2.5E0");
  EXPECT_EQ(Shown(), "41 115 57 | -2.03 ... 7.06 | 0.0135 | 0.0357");
}

TEST_F(WpConversion, SurvivesNumbersWithoutMeasure) {
  const auto convert_with = [this](TextBox& box, const char* text) {
    Convert("1.4", "0.5", "2.5", "2.5");
    ASSERT_TRUE(tool.frmFault.Visible);
    box.Text = text;
    tool.cmdConvert.Press();
  };
  // Nothing that can be reckoned with.
  for (const char* text : {"1e308", "-1e308", "1e999", "-1e999"}) {
    for (TextBox* box : {&tool.txtU1, &tool.txtU2, &tool.txtPres1, &tool.txtPres2}) {
      SCOPED_TRACE(box->name() + " " + text);
      convert_with(*box, text);
      ExpectEmpty();
    }
  }
  // As good as zero.
  const std::map<TextBox*, std::string> shown = {
      {&tool.txtU1, "8 51 0 | 0.00 ... 4.00 | 0.5000 | 0.0157"},
      {&tool.txtPres1, "41 92 71 | -3.16 ... 8.20 | 0.0179 | 0.0446"},
      {&tool.txtU2, "1 255 0 | 0.00 ... 0.10 | 2.5000 | 0.0004"},
      {&tool.txtPres2, "1 255 0 | 0.00 ... 0.10 | 0.4720 | 0.0004"}};
  for (const auto& [box, text] : shown) {
    convert_with(*box, "1e-320");
    EXPECT_EQ(Shown(), text) << box->name();
  }
}

TEST_F(WpConversion, DrawsTheSensorAndTheWholeTenthsOfTheController) {
  EXPECT_TRUE(tool.picSensor.Sensor->empty());
  tool.cmdConvert.Press();
  const auto& sensor = tool.picSensor.Sensor.get();
  ASSERT_EQ(sensor.size(), 2U);
  EXPECT_DOUBLE_EQ(sensor[0].volt, 1.4);
  EXPECT_DOUBLE_EQ(sensor[0].bar, 0.5);
  EXPECT_DOUBLE_EQ(sensor[1].volt, 2.5);
  EXPECT_DOUBLE_EQ(sensor[1].bar, 2.5);
  const auto& controller = tool.picSensor.Controller.get();
  ASSERT_EQ(controller.size(), 256U);
  EXPECT_DOUBLE_EQ(controller[255].volt, 5.0);
  EXPECT_DOUBLE_EQ(controller[57].bar, 0.0);
  EXPECT_DOUBLE_EQ(controller[59].bar, 0.0);  // 2 * 41 / 115 is none yet
  EXPECT_DOUBLE_EQ(controller[60].bar, 0.1);
  EXPECT_DOUBLE_EQ(controller[127].bar, 2.4);  // 24.96
  EXPECT_DOUBLE_EQ(controller[255].bar, 7.0);  // 70.59
  EXPECT_DOUBLE_EQ(controller[0].bar, -2.0);   // -20.3
  tool.txtU1.Text = "x";
  tool.cmdConvert.Press();
  EXPECT_TRUE(tool.picSensor.Sensor->empty());
  EXPECT_TRUE(tool.picSensor.Controller->empty());
}

TEST_F(WpConversion, DrawsNoPointsThatAreFarFromAnySensor) {
  for (const char* text : {"1000", "-1000", "1e300"}) {
    Convert("1.4", "0.5", "2.5", text);
    EXPECT_TRUE(tool.frmFault.Visible) << text;
    EXPECT_TRUE(tool.picSensor.Sensor->empty()) << text;
    EXPECT_TRUE(tool.picSensor.Controller->empty()) << text;
  }
}

TEST_F(WpConversion, ComesToTheFrontWhenItIsOpenedOnceMore) {
  int raised = 0;
  tool.ToFront = [&] { ++raised; };
  tool.txtU1.Text = "7";
  tool.Show();
  EXPECT_EQ(raised, 1);
  EXPECT_EQ(tool.txtU1.Text.get(), "7");
}

TEST_F(WpConversion, ClosesOnceAndOpensWithItsDesignAgain) {
  int closed = 0;
  tool.Unloaded = [&] { ++closed; };
  tool.txtU1.Text = "7";
  tool.cmdConvert.Press();
  tool.cmdClose.Press();
  EXPECT_FALSE(tool.form.Visible);
  tool.Unload();
  EXPECT_EQ(closed, 1);
  tool.Show();
  EXPECT_EQ(tool.txtU1.Text.get(), "1.4");
  ExpectEmpty();
}

}  // namespace
}  // namespace tarnlink
