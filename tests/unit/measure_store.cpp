#include "unit/measure_store.h"

#include <array>

namespace tarnlink {

namespace {

class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}

  // 0 to `count` - 1.
  int Of(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  std::int32_t Any() { return static_cast<std::int32_t>(random_()); }
  std::string Text() {
    static const std::array<const char*, 8> kParts = {
        "Flow", " ", "Größe", "\"", "温", "\t", "1,5", "%",
    };
    std::string text;
    for (int i = Of(4); i > 0; --i) text += kParts.at(static_cast<std::size_t>(Of(kParts.size())));
    return text;
  }

 private:
  std::mt19937 random_;
};

GraphAttribute RandomLine(Dice& dice) {
  static const std::array<float, 8> kFactors = {1.0F,   0.1F,  30.0F,  -0.5F,
                                                1e-20F, 3e30F, 0.333F, 0.0F};
  GraphAttribute line;
  line.Class = static_cast<std::uint8_t>(dice.Of(256));
  line.ID = dice.Any();
  line.Data = dice.Any();
  line.SlaveAddress = static_cast<std::uint8_t>(dice.Of(256));
  line.FixedCaption = dice.Text();
  line.ShowLine = dice.Of(2) == 0;
  line.ShowCaption = dice.Of(2) == 0;
  line.Alias = dice.Text();
  line.Description = dice.Text();
  line.LineColor = dice.Any();
  line.LineStyle = static_cast<std::int16_t>(dice.Of(65'536) - 32'768);
  line.Unit = dice.Of(6);
  line.Factor = kFactors.at(static_cast<std::size_t>(dice.Of(kFactors.size())));
  line.StoredAs = dice.Of(3);
  return line;
}

void FillRandomly(Graphic& data, int channel, Dice& dice) {
  static const std::array<int, 7> kCounts = {0, 1, 2, 3, 50, 300, 1000};
  std::int64_t second = At(dice.Of(100'000));
  for (int i = kCounts.at(static_cast<std::size_t>(dice.Of(kCounts.size()))); i > 0; --i) {
    second += dice.Of(10) == 0 ? dice.Of(10'000) - 4'000 : 1 + dice.Of(3);
    const std::int32_t value = dice.Of(20) == 0 ? dice.Any() : dice.Of(65'536);
    data.AddMeasurement(value, FromSeconds(second), channel);
  }
}

}  // namespace

Graphic RandomStore(unsigned seed) {
  Dice dice(seed);
  static const std::array<int, 4> kLines = {17, 20, 116, 130};
  const auto lines = static_cast<std::size_t>(kLines.at(static_cast<std::size_t>(dice.Of(4))));
  Graphic data;
  data.Colors = {dice.Any(), dice.Any(), dice.Any(), dice.Any(), dice.Any()};
  data.Attributes.clear();
  while (data.Attributes.size() < lines) data.Attributes.push_back(RandomLine(dice));
  data.Channels = std::vector<MeasureChannel>(lines - 15);
  for (int i = 0; i <= data.LastChannel(); ++i) {
    static const std::array<int, 5> kBounds = {0, 0, 1, 100, 90'000};
    Channel(data, i).Dimension(kBounds.at(static_cast<std::size_t>(dice.Of(kBounds.size()))));
    FillRandomly(data, i, dice);
  }
  return data;
}

}  // namespace tarnlink
