#include "tools/panel_answers.h"

#include <algorithm>

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "protocols/frame_bytes.h"

namespace tarnlink {
namespace {

constexpr int kMostAnswers = 32;
constexpr std::size_t kLongestText = 64;

// Made once, for it has more controls than an answer fills; each run begins with an empty one.
struct Panel {
  Panel() {
    form.error_texts.fill("text");
    Add({&form.txt_Error, &form.txt_ErrorDescription, &form.txt_FlameAD10bit,
         &form.txt_FlameCurrentADC, &form.txt_FlameCurrentuA, &form.txt_softwareversionROMHUP,
         &form.txt_softwareversionROMLUP, &form.txt_softwareversion_EEPROM, &form.txt_OSNumber,
         &form.txt_HUPCRC, &form.txt_LUPCRC});
    for (const PanelTexts* column :
         {&form.txtSafety, &form.txt_ErrBufCode, &form.txt_ErrBuffTime}) {
      for (int i = column->first(); i <= column->last(); ++i) texts.push_back(&(*column)(i));
    }
    for (SensorBoxes& sensor : form.sensors) {
      Add({&sensor.txt_8bit, &sensor.txt_16bit, &sensor.txt_temp});
    }
    const auto statistics = form.Statistics();
    texts.insert(texts.end(), statistics.begin(), statistics.end());
  }
  void Add(std::initializer_list<const PanelText*> more) {
    texts.insert(texts.end(), more.begin(), more.end());
  }
  void Begin() {
    form.Clear();
    form.Pending.fill(true);
  }

  PanelForm form;
  PanelAnswers answers{form};
  std::vector<const PanelText*> texts;
};

std::vector<std::string> TextsOf(const Panel& panel) {
  std::vector<std::string> texts;
  for (const PanelText* each : panel.texts) texts.push_back(each->Text);
  return texts;
}

void ClaimOfTexts(const Panel& panel) {
  for (const PanelText* each : panel.texts) {
    Claim(each->Text->size() <= kLongestText, "what is shown fits its box");
    Claim(each->Text->find('\0') == std::string::npos, "a text has no zero byte");
  }
}

void Run(std::string_view bytes) {
  static Panel panel;
  FuzzInput input(bytes);
  panel.Begin();
  for (int i = 0; i < kMostAnswers && !input.AtEnd(); ++i) {
    panel.form.ErrorHistoryIndex = static_cast<std::int16_t>(input.Below(kHistoryEntries));
    std::string body = ZoltBody(input);
    const int index = input.Byte();
    if (index < kNothingPending) {
      body.replace(2, 4, HexDigits(RequestOf(index, false).Id, 4));
    }
    const int id = static_cast<int>(HexNumber(std::string_view(body).substr(2, 4)));
    const auto before =
        IndexOf(id) == kNothingPending ? TextsOf(panel) : std::vector<std::string>();
    panel.answers.Apply(SoundZolt(body));
    Claim(before.empty() || before == TextsOf(panel),
          "an ID that it does not have changes nothing");
  }
  ClaimOfTexts(panel);
  Claim(panel.form.Pending.at(kNothingPending), "what is not pending is not answered");
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  std::vector<std::string> seeds;
  std::string all;
  for (int index = 0; index < kNothingPending; ++index) {
    const std::string answer = "\1\x11\1\0\0\x34\x12\0"s + static_cast<char>(index);
    seeds.push_back(answer);
    all += answer;
  }
  seeds.push_back(all.substr(0, all.size() / 2));
  seeds.push_back("\0\x11\1\0\0\x34\x12\0\xFF"s);
  return seeds;
}

}  // namespace

FuzzTarget PanelAnswersTarget() { return {"panel_answers", Run, Seeds}; }

}  // namespace tarnlink
