#include "tools/frm_wp_conversion.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr double kCountsPerVolt = 51;  // 255 counts over 5 V
constexpr double kTenths = 10;         // pressures are worked in tenths of a bar
constexpr int kHighestFactor = 255;
constexpr int kHighestCount = 255;
// From here on a resolution or a fault is too coarse. The arithmetic is exact to less than the
// second.
constexpr double kCoarse = 0.5;
constexpr double kSmall = 1e-9;
// Volts and bars from here on, up or down, are no sensor's.
constexpr double kNoSensor = 1000;

// With a decimal point: a comma is none, nor does it part thousands.
bool IsNumeric(const std::string& text) {
  try {
    ToSingle(text);
  } catch (const RunTimeError& error) {
    return error.code() != kTypeMismatch;
  }
  return true;
}

// With a decimal point wherever the program runs, as the points are typed.
std::string Printed(double value, std::chars_format form, int precision) {
  std::array<char, 512> text;
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value + 0.0, form, precision).ptr;
  return {text.data(), end};
}

// Ties go away from zero. A zero that was rounded has no minus sign.
std::string Decimals(double value, int count) {
  const double one = std::pow(10.0, count);
  const double rounded = std::abs(value) < 1e12 ? std::round(value * one) / one : value;
  return Printed(rounded, std::chars_format::fixed, count);
}

std::string DefaultFormat(double value) {
  return ToUpper(Printed(value, std::chars_format::general, 15));
}

void ShowWarning(TextBox& box, bool is_coarse) {
  Font font = box.TextFont;
  font.bold = is_coarse;
  box.TextFont = font;
  box.ForeColor = is_coarse ? frmWPconversion::kWarning : kBlack;
}

void ShowFigure(TextBox& box, double value) {
  ShowWarning(box, value >= kCoarse - kSmall);
  box.Text = Decimals(value, 4);
}

}  // namespace

frmWPconversion::frmWPconversion() {
  form.Visible = false;
  frmFault.Visible = false;
  for (TextBox* box : Results()) box->Locked = true;
  txtRange.ToolTipText = "Range of AD converter ";
  txtResolution.ToolTipText = "1 AD count";
  cmdConvert.Click = [this] { Convert(); };
  cmdClose.Click = [this] { Unload(); };
}

void frmWPconversion::Show() {
  if (form.Visible) {
    if (ToFront) ToFront();
    return;
  }
  txtU1.Text = "1.4";
  txtPres1.Text = "0.5";
  txtU2.Text = "2.5";
  txtPres2.Text = "2.5";
  EmptyResults();
  form.Visible = true;
}

void frmWPconversion::Unload() {
  if (!form.Visible) return;
  form.Visible = false;
  if (Unloaded) Unloaded();
}

std::optional<frmWPconversion::Points> frmWPconversion::TypedPoints() const {
  for (const TextBox* box : {&txtU1, &txtU2, &txtPres1, &txtPres2}) {
    if (!IsNumeric(box->Text)) return std::nullopt;
  }
  return Points{Val(txtU1.Text.get()) * kCountsPerVolt, Val(txtU2.Text.get()) * kCountsPerVolt,
                Val(txtPres1.Text.get()) * kTenths, Val(txtPres2.Text.get()) * kTenths};
}

std::optional<frmWPconversion::Factors> frmWPconversion::FactorsOf(const Points& points) {
  const double slope = (points.PR2 - points.PR1) / (points.AD2 - points.AD1);
  if (!std::isfinite(slope)) return std::nullopt;
  Factors factors;
  double best = std::abs(slope - 1);
  for (int i = 1; i <= kHighestFactor; ++i) {
    for (int j = 1; j <= kHighestFactor; ++j) {
      const double error = std::abs(slope - static_cast<double>(i) / j);
      if (error >= best) continue;
      best = error;
      factors.A = i;
      factors.B = j;
    }
  }
  const double ratio = 2.0 * factors.A / factors.B;
  const double offset = (points.AD1 + points.AD2) / 2 - (points.PR1 + points.PR2) / ratio;
  if (!std::isfinite(offset)) return std::nullopt;
  factors.C =
      static_cast<int>(std::clamp(std::nearbyint(offset), 0.0, static_cast<double>(kHighestCount)));
  return factors;
}

void frmWPconversion::Convert() {
  const auto points = TypedPoints();
  const auto factors = points ? FactorsOf(*points) : std::nullopt;
  if (!factors) return EmptyResults();
  ShowFactors(*factors);
  ShowQuality(*points, *factors);
  ShowCurves(*points, *factors);
  frmFault.Visible = true;
}

void frmWPconversion::ShowFactors(const Factors& factors) {
  txtFactorA.Text = std::to_string(factors.A);
  txtFactorB.Text = std::to_string(factors.B);
  txtFactorC.Text = std::to_string(factors.C);
}

void frmWPconversion::ShowQuality(const Points& points, const Factors& factors) {
  // In tenths of a bar.
  const auto pressure = [&](double count) { return (count - factors.C) * factors.A / factors.B; };
  const double fault = std::max(std::abs(pressure(points.AD1) - points.PR1) / kTenths,
                                std::abs(pressure(points.AD2) - points.PR2) / kTenths);
  ShowFigure(txtResolution, static_cast<double>(factors.A) / factors.B / kTenths);
  ShowFigure(txtFault, fault);
  const std::string tip = "Divation of calculation in range " +
                          DefaultFormat(points.PR1 / kTenths) + " ... " +
                          DefaultFormat(points.PR2 / kTenths) + " Bar";
  txtFault.ToolTipText = tip;
  lblFault.ToolTipText = tip;
  txtRange.Text =
      Decimals(pressure(0) / kTenths, 2) + " ... " + Decimals(pressure(kHighestCount) / kTenths, 2);
}

// The controller reckons in whole numbers.
void frmWPconversion::ShowCurves(const Points& points, const Factors& factors) {
  const std::vector<SensorPoint> sensor = {{points.AD1 / kCountsPerVolt, points.PR1 / kTenths},
                                           {points.AD2 / kCountsPerVolt, points.PR2 / kTenths}};
  const bool is_drawn = std::all_of(sensor.begin(), sensor.end(), [](const SensorPoint& point) {
    return std::abs(point.volt) < kNoSensor && std::abs(point.bar) < kNoSensor;
  });
  std::vector<SensorPoint> controller;
  for (int count = 0; is_drawn && count <= kHighestCount; ++count) {
    const int tenths = (count - factors.C) * factors.A / factors.B;
    controller.push_back({count / kCountsPerVolt, tenths / kTenths});
  }
  picSensor.Controller = controller;
  picSensor.Sensor = is_drawn ? sensor : std::vector<SensorPoint>{};
}

std::array<TextBox*, 6> frmWPconversion::Results() {
  return {&txtFactorA, &txtFactorB, &txtFactorC, &txtRange, &txtFault, &txtResolution};
}

void frmWPconversion::EmptyResults() {
  for (TextBox* box : Results()) box->Text = "";
  for (TextBox* box : {&txtFault, &txtResolution}) ShowWarning(*box, false);
  txtFault.ToolTipText = "";
  lblFault.ToolTipText = "";
  picSensor.Sensor = picSensor.Controller = std::vector<SensorPoint>{};
  frmFault.Visible = false;
}

}  // namespace tarnlink
