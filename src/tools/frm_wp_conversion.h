// Works out the factors by which a controller turns the counts of its water pressure sensor into a
// pressure, from two points of the sensor, and shows how good they are. Talks to no slave.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "common/controls.h"
#include "common/dialog_controls.h"

namespace tarnlink {

// A pressure over a voltage.
struct SensorPoint {
  double volt = 0;
  double bar = 0;

  bool operator==(const SensorPoint&) const = default;
};

// The sensor beside what a controller makes of it. Empty where there is no result, or none that
// fits on a picture.
class SensorCurves : public Control {
 public:
  using Control::Control;

  Property<std::vector<SensorPoint>> Sensor{this, {}};      // the two points
  Property<std::vector<SensorPoint>> Controller{this, {}};  // for each count of the AD converter
};

class frmWPconversion {
 public:
  static constexpr Colour kWarning = 0x0000FF;  // red

  frmWPconversion();

  Control form{"frmWPconversion"};
  Label caption{"frmWPconversion.Caption", "Water Pressure Conversion"};

  // --- The two points ---
  Label lblVoltageHeading{"lblVoltageHeading", "Sensor Voltage"};
  Label lblPressureHeading{"lblPressureHeading", "Water Pressure (Bar)"};
  Label lblU1{"lblU1", "voltage 1 (V)"};
  TextBox txtU1{"txtU1"};
  Label lblPres1{"lblPres1", "pressure 1 (Bar)"};
  TextBox txtPres1{"txtPres1"};
  Label lblU2{"lblU2", "voltage 2 (V)"};
  TextBox txtU2{"txtU2"};
  Label lblPres2{"lblPres2", "pressure 2 (Bar)"};
  TextBox txtPres2{"txtPres2"};

  // --- The formula: the numerator stands over the denominator ---
  Label lblFormula{"lblFormula", "Pressure (Bar*10)="};
  Label lblNumerator{"lblNumerator", "(AD-WP_C) * WP_A"};
  Label lblDenominator{"lblDenominator", "WP_B"};

  // --- The factors, and how good they are ---
  Label lblFactorA{"lblFactorA", "WP conversion factor A ="};
  TextBox txtFactorA{"txtFactorA"};
  Label lblFactorB{"lblFactorB", "WP conversion factor B ="};
  TextBox txtFactorB{"txtFactorB"};
  Label lblFactorC{"lblFactorC", "WP conversion factor C ="};
  TextBox txtFactorC{"txtFactorC"};
  GroupBox frmFault{"frmFault", "ZOLT calculation"};
  Label lblRange{"lblRange", "Range (Bar)"};
  TextBox txtRange{"txtRange"};
  Label lblFault{"lblFault", "Fault (Bar)"};
  TextBox txtFault{"txtFault"};
  Label lblResolution{"lblResolution", "Resolution (Bar)"};
  TextBox txtResolution{"txtResolution"};
  SensorCurves picSensor{"picSensor"};

  CommandButton cmdConvert{"cmdConvert", "Convert"};
  CommandButton cmdClose{"cmdClose", "Close"};

  // Opens with the points of its design and without results; one that is open is only brought to
  // the front.
  void Show();
  std::function<void()> ToFront;
  void Unload();
  std::function<void()> Unloaded;

 private:
  // Of one sensor: what the AD converter counts, and the pressures in tenths of a bar.
  struct Points {
    double AD1 = 0;
    double AD2 = 0;
    double PR1 = 0;
    double PR2 = 0;
  };
  struct Factors {
    int A = 1;
    int B = 1;
    int C = 0;
  };

  std::optional<Points> TypedPoints() const;
  // Empty where the points have no slope.
  static std::optional<Factors> FactorsOf(const Points& points);
  void Convert();
  void ShowFactors(const Factors& factors);
  void ShowQuality(const Points& points, const Factors& factors);
  void ShowCurves(const Points& points, const Factors& factors);
  void EmptyResults();
  std::array<TextBox*, 6> Results();
};

}  // namespace tarnlink
