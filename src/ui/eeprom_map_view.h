// The picture of an EEPROM image: a square for each byte, sixteen a row, that shows how far it is.
#pragma once

#include <QScrollArea>
#include <QWidget>

#include "tools/eeprom_map.h"

namespace tarnlink {

// Shows `map`, which outlives it, and scrolls to the byte in work where it is taller than its
// place.
class EepromMapView final : public QScrollArea {
 public:
  EepromMapView(EepromMap& map, QWidget* parent);
  ~EepromMapView() override;

  QSize sizeHint() const override;

 private:
  class Page;

  void ShowMap();

  EepromMap& map_;
  Page* page_;
  int shown_ = 0;  // where the byte was that was in work last
};

// What the squares mean.
QWidget* MakeMapLegend(QWidget* parent);

}  // namespace tarnlink
