// The pressure conversion in the real program.

#include "tools_line.h"

namespace e2e {
namespace {

class WpConversionInTheProgram : public ToolsOnALine {
 protected:
  void OpenConversion() {
    program->Press("mnuWPConversion");
    ASSERT_TRUE(program->Becomes("get frmWPconversion visible", "true"));
  }
  void Fill(const std::string& field, const std::string& text) {
    ASSERT_TRUE(program->Becomes("focus " + field, "ok"));
    ASSERT_EQ(program->Ask("type " + text), "ok");
  }
  bool Shows(const std::string& factors) {
    return Eventually([&] {
      return program->Text("txtFactorA") + " " + program->Text("txtFactorB") + " " +
                 program->Text("txtFactorC") ==
             factors;
    });
  }
};

TEST_F(WpConversionInTheProgram, WorksOutTheFactorsAndSurvivesPointsWithoutSlope) {
  Start({"--at-once"});
  OpenConversion();
  EXPECT_EQ(program->Text("txtU1") + " " + program->Text("txtPres1") + " " +
                program->Text("txtU2") + " " + program->Text("txtPres2"),
            "1.4 0.5 2.5 2.5");
  EXPECT_EQ(program->Ask("get frmFault visible"), "false");
  program->Mouse("cmdConvert");
  EXPECT_TRUE(Shows("41 115 57"));
  EXPECT_EQ(program->Text("txtRange"), "-2.03 ... 7.06");
  EXPECT_EQ(program->Text("txtFault"), "0.0135");
  EXPECT_EQ(program->Text("txtResolution"), "0.0357");
  EXPECT_EQ(program->Ask("get frmFault visible"), "true");

  Fill("txtU2", "1.4");
  program->Key("Return");
  EXPECT_TRUE(Shows("  "));
  EXPECT_EQ(program->Ask("get frmFault visible"), "false");
  EXPECT_EQ(program->Ask("modal"), "none");
  Fill("txtU2", "2.5");
  program->Key("Return");
  EXPECT_TRUE(Shows("41 115 57"));
  EXPECT_TRUE(Heard().empty());
  program->Mouse("cmdClose");
  EXPECT_TRUE(program->Becomes("get frmWPconversion visible", "false"));
}

TEST_F(WpConversionInTheProgram, StaysOpenBesideAnotherToolAndLeavesWithTheProgram) {
  Start({"--at-once"});
  OpenConversion();
  EXPECT_EQ(program->Ask("modal"), "none");
  Open("mnuScanSlaves", "frm_ScanSlaves");
  EXPECT_EQ(program->Ask("get frmWPconversion visible"), "true");
  EXPECT_TRUE(HasHeard(1));
  Leave();
  program->Mouse("cmdConvert");
  EXPECT_TRUE(Shows("41 115 57"));
  program->Press("M_exit");
  EXPECT_EQ(program->process().WaitForEnd(kToolPatience), 0);
}

}  // namespace
}  // namespace e2e
