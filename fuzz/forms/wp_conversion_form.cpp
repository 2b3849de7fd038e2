#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "fuzz/forms/tool_user.h"
#include "tools/frm_wp_conversion.h"

namespace tarnlink {
namespace {

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  FakeWorld world;
  FormDriver driver(input, world, ZoltSlave);
  frmWPconversion tool;
  driver.Form(tool.form);
  driver.Add(tool.cmdConvert, tool.txtU1, tool.txtPres1, tool.txtU2, tool.txtPres2, tool.cmdClose);
  for (const TextBox* box : {&tool.txtFactorA, &tool.txtFactorB, &tool.txtFactorC, &tool.txtRange,
                             &tool.txtFault, &tool.txtResolution}) {
    driver.Watch(box->Text);
  }
  driver.Do([&] { tool.Show(); });
  driver.Check = [&] {
    Claim(tool.picSensor.Sensor->size() <= 2, "a sensor has two points");
    Claim(tool.picSensor.Controller->size() <= 1024, "and a controller one for each count");
  };
  driver.Guard([&] { tool.Show(); });
  driver.Run();
  driver.Leave([&] { tool.Unload(); });
}

std::vector<std::string> Seeds() {
  using namespace seed;
  return {Act(0), Act(1, Text(24)) + Act(2, Text(25)) + Act(0),
          Act(1, Text(1)) + Act(2, Text(0)) + Act(3, Text(4)) + Act(4, Text(4)) + Act(0) + Act(5),
          Act(3,
              "\xC0\5"
              "4.375") +
              Act(4,
                  "\xC0\4"
                  "1E-3") +
              Act(0)};
}

}  // namespace

FuzzTarget WpConversionFormTarget() { return {"wp_conversion_form", Run, Seeds}; }

}  // namespace tarnlink
