#include "tools/panel_answers.h"

#include <utility>

#include "common/numbers.h"
#include "common/shown_text.h"
#include "protocols/zolt_frame.h"
#include "tools/product_text.h"

namespace tarnlink {

namespace {

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
  panel_.Pending.at(static_cast<std::size_t>(PendingOf(id))) = false;
}

// Which entry of the history is asked for, its answer does not say.
int PanelAnswers::PendingOf(int id) const {
  const bool is_history = PanelRequest{.Id = id}.IsOfHistory();
  return IndexOf(id) + (is_history ? panel_.ErrorHistoryIndex : 0);
}

// --- Kinds of rules ------------------------------------------------------------------------------

void PanelAnswers::AddText(int id, PanelText& box, Text text) {
  rules_[id] = {[&box, text = std::move(text)](const Answer& a) { box.Text = text(a); },
                [&box] { box.Text = ""; }};
}

void PanelAnswers::AddPair(int id, PanelText& one, Text text, PanelText& other, Text other_text) {
  rules_[id] = {
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
void PanelAnswers::AddBits(int id, std::uint8_t& high, std::uint8_t& low,
                           void (PanelForm::*show)()) {
  const auto store = [this, &high, &low, show](int Hi, int Lo) {
    high = static_cast<std::uint8_t>(Hi);
    low = static_cast<std::uint8_t>(Lo);
    (panel_.*show)();
  };
  rules_[id] = {[store](const Answer& a) { store(a.Hi, a.Lo); }, [store] { store(0, 0); }};
}

// --- Rules ---------------------------------------------------------------------------------------

void PanelAnswers::AddStatus() {
  AddBits(kStatusId, panel_.StatusHigh, panel_.StatusLow, &PanelForm::ShowStatus);
  AddBits(kConfigId, panel_.ConfigHigh, panel_.ConfigLow, &PanelForm::ShowConfig);
  const auto high = [](const Answer& a) { return std::to_string(a.Hi); };
  const auto low = [](const Answer& a) { return std::to_string(a.Lo); };
  AddPair(kFlameCurrentId, panel_.txt_FlameCurrentuA, high, panel_.txt_FlameCurrentADC, low);
  AddText(kFlameAdId, panel_.txt_FlameAD10bit,
          [](const Answer& a) { return std::to_string(a.Word()); });
}

void PanelAnswers::AddCommands() {
  rules_[kHeatDemandId] = {
      [this](const Answer& a) { panel_.chk_HeatDemand.Value = a.digits.substr(0, 2) == "FF"; }, {}};
  rules_[kResetId] = {
      [this](const Answer& a) { panel_.chk_Reset.Value = a.Hi == kResetHigh && a.Lo == kResetLow; },
      {}};
}

void PanelAnswers::AddVersions() {
  const auto version = [](const Answer& a) { return " " + VersionText(a.Hi, a.Lo); };
  AddText(kVersionIds[0], panel_.txt_softwareversionROMLUP, version);
  AddText(kVersionIds[1], panel_.txt_softwareversionROMHUP, version);
  AddText(kVersionIds[2], panel_.txt_softwareversion_EEPROM, version);
  // Which need be none: a frame's check says nothing of what it is made of.
  const auto digits = [](const Answer& a) { return ShownText(a.digits); };
  AddText(kCrcIds[0], panel_.txt_LUPCRC, digits);
  AddText(kCrcIds[1], panel_.txt_HUPCRC, digits);
}

void PanelAnswers::AddOsNumber() {
  AddOsHalf(kOsNameId, panel_.OSName, [](const Answer& a) {
    return ProductText(static_cast<std::uint8_t>(a.Hi), static_cast<std::uint8_t>(a.Lo));
  });
  AddOsHalf(kOsNumberId, panel_.OSNumber, [](const Answer& a) { return std::to_string(a.Word()); });
}

// The text shows both halves, of which one may be empty.
void PanelAnswers::AddOsHalf(int id, std::string& half, Text text) {
  const auto store = [this, &half](const std::string& now) {
    half = now;
    panel_.txt_OSNumber.Text = panel_.OSName + panel_.OSNumber;
  };
  rules_[id] = {[store, text = std::move(text)](const Answer& a) { store(text(a)); },
                [store] { store(""); }};
}

void PanelAnswers::AddSafety() {
  const auto high = [](const Answer& a) { return Seconds(a.Hi); };
  const auto low = [](const Answer& a) { return Seconds(a.Lo); };
  const auto retries = [](const Answer& a) { return std::to_string(a.Lo); };
  const PanelTexts& box = panel_.txtSafety;
  AddPair(kSafetyIds[0], box(0), high, box(1), low);
  AddPair(kSafetyIds[1], box(2), high, box(3), low);
  AddPair(kSafetyIds[2], box(4), high, box(5), retries);
  AddPair(kSafetyIds[3], box(6), high, box(7), low);
}

void PanelAnswers::AddSensors() {
  const auto high = [](const Answer& a) { return std::to_string(a.Hi); };
  const auto low = [](const Answer& a) { return std::to_string(a.Lo); };
  const auto word = [](const Answer& a) { return std::to_string(a.Word()); };
  for (std::size_t i = 0; i < panel_.sensors.size(); ++i) {
    SensorBoxes& sensor = panel_.sensors[i];
    AddPair(kSensorIds[i], sensor.txt_temp, high, sensor.txt_8bit, low);
    AddText(kSensorWordIds[i], sensor.txt_16bit, word);
  }
}

void PanelAnswers::AddErrors() {
  AddPair(
      kErrorCodeId, panel_.txt_Error, [](const Answer& a) { return std::to_string(a.Hi); },
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
  rules_[kErrorCodesId] = {[this, code](const Answer& a) {
                             code(Str(a.Lo), panel_.error_texts.at(static_cast<std::size_t>(a.Lo)));
                           },
                           [code] { code("", ""); }};
  rules_[kErrorTimesId] = {
      [this](const Answer& a) { OfEntry(panel_.txt_ErrBuffTime).Text = Str(a.Word()); },
      [this] { OfEntry(panel_.txt_ErrBuffTime).Text = ""; }};
}

void PanelAnswers::AddStatistics() {
  std::size_t row = 0;
  for (PanelText* box : panel_.Statistics()) {
    AddText(kStatisticsIds.at(row++), *box, [](const Answer& a) { return Str(a.Word()); });
  }
}

}  // namespace tarnlink
