#include "tools/panel_answers.h"

#include <utility>

#include "common/numbers.h"
#include "common/text.h"
#include "protocols/product_names.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {

namespace {

constexpr int kResetId = 171;
constexpr int kResetHigh = 0xAA;
constexpr int kResetLow = 0x55;
constexpr float kPartsOfSecond = 5.0F;

std::string Seconds(int fifths) {
  return FormatSingle(static_cast<float>(fifths) / kPartsOfSecond);
}

}  // namespace

PanelAnswers::PanelAnswers(PanelForm& panel) : panel_(panel) {
  AddStatus();
  AddCommands();
  AddVersions();
  AddOsNumber();
  AddSafety();
  AddSensors();
  AddErrors();
  AddHistory();
  AddStatistics();
}

void PanelAnswers::Apply(std::string_view frame) {
  const auto found = rules_.find(zolt_frame::Number(frame, zolt_frame::kId));
  if (found == rules_.end()) return;
  const auto& [id, rule] = *found;
  const Answer answer{.kind = zolt_frame::KindOf(zolt_frame::TypeOf(frame)),
                      .Hi = zolt_frame::Number(frame, zolt_frame::kDataHigh),
                      .Lo = zolt_frame::Number(frame, zolt_frame::kDataLow),
                      .digits = std::string(zolt_frame::Text(frame, zolt_frame::kData))};
  if (!rule.blank || answer.kind == zolt_frame::kReadAcknowledge) {
    rule.fill(answer);
  } else if (answer.kind == zolt_frame::kUnknownDataId) {
    rule.blank();
  }
  panel_.Pending.at(static_cast<std::size_t>(PendingOf(id, rule))) = false;
}

// Which entry of the history is asked for, its answer does not say.
int PanelAnswers::PendingOf(int id, const Rule& rule) const {
  const bool is_history = id == kErrorCodesId || id == kErrorTimesId;
  return rule.pending + (is_history ? panel_.ErrorHistoryIndex : 0);
}

// --- Kinds of rules ------------------------------------------------------------------------------

void PanelAnswers::AddText(int id, int pending, PanelText& box, Text text) {
  rules_[id] = {pending, [&box, text = std::move(text)](const Answer& a) { box.Text = text(a); },
                [&box] { box.Text = ""; }};
}

void PanelAnswers::AddPair(int id, int pending, PanelText& one, Text text, PanelText& other,
                           Text other_text) {
  rules_[id] = {
      pending,
      [&one, &other, text = std::move(text), other_text = std::move(other_text)](const Answer& a) {
        one.Text = text(a);
        other.Text = other_text(a);
      },
      [&one, &other] {
        one.Text = "";
        other.Text = "";
      }};
}

// Without bytes a click on a box leaves it unticked too.
void PanelAnswers::AddBits(int id, int pending, std::uint8_t& high, std::uint8_t& low,
                           void (PanelForm::*show)()) {
  const auto store = [this, &high, &low, show](int Hi, int Lo) {
    high = static_cast<std::uint8_t>(Hi);
    low = static_cast<std::uint8_t>(Lo);
    (panel_.*show)();
  };
  rules_[id] = {pending, [store](const Answer& a) { store(a.Hi, a.Lo); }, [store] { store(0, 0); }};
}

// --- Rules ---------------------------------------------------------------------------------------

void PanelAnswers::AddStatus() {
  AddBits(1, kStatusIndex, panel_.StatusHigh, panel_.StatusLow, &PanelForm::ShowStatus);
  AddBits(84, kConfigIndex, panel_.ConfigHigh, panel_.ConfigLow, &PanelForm::ShowConfig);
  const auto high = [](const Answer& a) { return std::to_string(a.Hi); };
  const auto low = [](const Answer& a) { return std::to_string(a.Lo); };
  AddPair(868, kFlameCurrentIndex, panel_.txt_FlameCurrentuA, high, panel_.txt_FlameCurrentADC,
          low);
  AddText(6015, kFlameAdIndex, panel_.txt_FlameAD10bit,
          [](const Answer& a) { return std::to_string(a.Word()); });
}

void PanelAnswers::AddCommands() {
  rules_[kHeatDemandId] = {
      kHeatDemandIndex,
      [this](const Answer& a) { panel_.chk_HeatDemand.Value = a.digits.substr(0, 2) == "FF"; },
      {}};
  rules_[kResetId] = {
      kResetErrorIndex,
      [this](const Answer& a) { panel_.chk_Reset.Value = a.Hi == kResetHigh && a.Lo == kResetLow; },
      {}};
}

void PanelAnswers::AddVersions() {
  const auto version = [](const Answer& a) {
    return Str(a.Hi) + "." + Right("00" + std::to_string(a.Lo), 2);
  };
  AddText(152, kVersionIndex, panel_.txt_softwareversionROMLUP, version);
  AddText(1284, kVersionIndex + 1, panel_.txt_softwareversionROMHUP, version);
  AddText(164, kVersionIndex + 2, panel_.txt_softwareversion_EEPROM, version);
  const auto digits = [](const Answer& a) { return a.digits; };
  AddText(5349, kCrcIndex, panel_.txt_LUPCRC, digits);
  AddText(5354, kCrcIndex + 1, panel_.txt_HUPCRC, digits);
}

void PanelAnswers::AddOsNumber() {
  AddOsHalf(61, kOsNameIndex, panel_.OSName, [](const Answer& a) {
    return std::string(GetProductName(static_cast<std::uint8_t>(a.Lo))) +
           std::string(GetTypeName(static_cast<std::uint8_t>(a.Hi)));
  });
  AddOsHalf(5337, kOsNumberIndex, panel_.OSNumber,
            [](const Answer& a) { return std::to_string(a.Word()); });
}

// The text shows both halves, of which one may be empty.
void PanelAnswers::AddOsHalf(int id, int pending, std::string& half, Text text) {
  const auto store = [this, &half](const std::string& now) {
    half = now;
    panel_.txt_OSNumber.Text = panel_.OSName + panel_.OSNumber;
  };
  rules_[id] = {pending, [store, text = std::move(text)](const Answer& a) { store(text(a)); },
                [store] { store(""); }};
}

void PanelAnswers::AddSafety() {
  const auto high = [](const Answer& a) { return Seconds(a.Hi); };
  const auto low = [](const Answer& a) { return Seconds(a.Lo); };
  const auto retries = [](const Answer& a) { return std::to_string(a.Lo); };
  const PanelTexts& box = panel_.txtSafety;
  AddPair(91, kSafetyIndex, box(0), high, box(1), low);
  AddPair(103, kSafetyIndex + 1, box(2), high, box(3), low);
  AddPair(104, kSafetyIndex + 2, box(4), high, box(5), retries);
  AddPair(151, kSafetyIndex + 3, box(6), high, box(7), low);
}

void PanelAnswers::AddSensors() {
  const auto high = [](const Answer& a) { return std::to_string(a.Hi); };
  const auto low = [](const Answer& a) { return std::to_string(a.Lo); };
  const auto word = [](const Answer& a) { return std::to_string(a.Word()); };
  for (std::size_t i = 0; i < panel_.sensors.size(); ++i) {
    SensorBoxes& sensor = panel_.sensors[i];
    const int row = static_cast<int>(i);
    AddPair(kSensorIds[i], kSensorIndex + row, sensor.txt_temp, high, sensor.txt_8bit, low);
    AddText(kSensorWordIds[i], kSensorWordIndex + row, sensor.txt_16bit, word);
  }
}

void PanelAnswers::AddErrors() {
  AddPair(
      50, kErrorCodeIndex, panel_.txt_Error, [](const Answer& a) { return std::to_string(a.Hi); },
      panel_.txt_ErrorDescription,
      [this](const Answer& a) { return panel_.error_texts.at(static_cast<std::size_t>(a.Hi)); });
}

PanelText& PanelAnswers::OfEntry(const PanelTexts& column) const {
  return column(panel_.ErrorHistoryIndex);
}

void PanelAnswers::AddHistory() {
  const auto code = [this](const std::string& text, const std::string& tip) {
    PanelText& box = OfEntry(panel_.txt_ErrBufCode);
    box.Text = text;
    box.ToolTipText = tip;
  };
  rules_[kErrorCodesId] = {kErrorCodesIndex,
                           [this, code](const Answer& a) {
                             code(Str(a.Lo), panel_.error_texts.at(static_cast<std::size_t>(a.Lo)));
                           },
                           [code] { code("", ""); }};
  rules_[kErrorTimesId] = {
      kErrorTimesIndex,
      [this](const Answer& a) { OfEntry(panel_.txt_ErrBuffTime).Text = Str(a.Word()); },
      [this] { OfEntry(panel_.txt_ErrBuffTime).Text = ""; }};
}

void PanelAnswers::AddStatistics() {
  int row = 0;
  for (PanelText* box : panel_.Statistics()) {
    AddText(kStatisticsIds.at(static_cast<std::size_t>(row)), kStatisticsIndex + row, *box,
            [](const Answer& a) { return Str(a.Word()); });
    ++row;
  }
}

}  // namespace tarnlink
