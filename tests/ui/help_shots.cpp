#include "ui/help_shots.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QTest>
#include <QWindow>
#include <cstdlib>
#include <unordered_map>
#include <utility>

namespace tarnlink {
namespace {

// So many pixels may differ, by more than so much in a colour: a caret that blinks, but no word.
constexpr int kMostDiffering = 40;
constexpr int kColourDistance = 24;

bool Differ(QRgb one, QRgb other) {
  return std::abs(qRed(one) - qRed(other)) > kColourDistance ||
         std::abs(qGreen(one) - qGreen(other)) > kColourDistance ||
         std::abs(qBlue(one) - qBlue(other)) > kColourDistance;
}

int CountDiffering(const QImage& one, const QImage& other) {
  int count = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) count += Differ(one.pixel(x, y), other.pixel(x, y));
  }
  return count;
}

// The same picture with a palette, where that is enough: a quarter of the size.
QImage WithPalette(const QImage& image) {
  constexpr std::size_t kMostColours = 256;
  std::unordered_map<QRgb, int> places;
  QList<QRgb> colours;
  QImage small(image.size(), QImage::Format_Indexed8);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QRgb colour = image.pixel(x, y) | 0xFF000000U;
      const auto [place, is_new] = places.try_emplace(colour, static_cast<int>(colours.size()));
      if (is_new) colours.append(colour);
      if (places.size() > kMostColours) return image;
      small.scanLine(y)[x] = static_cast<uchar>(place->second);
    }
  }
  small.setColorTable(colours);
  return small;
}

}  // namespace

void HelpShot(QWidget& widget, const std::string& name, QWidget* above) {
  if (widget.devicePixelRatio() > 1) return;  // they are kept as they are at 100 %
  QPixmap pixels = widget.grab();
  if (above != nullptr) {
    QPainter(&pixels).drawPixmap(widget.rect().center() - above->rect().center(), above->grab());
  }
  const QImage picture = pixels.toImage().convertToFormat(QImage::Format_RGB32);
  const QString file = QString::fromStdString(name) + ".png";
  if (qEnvironmentVariableIsSet("TARNLINK_HELP_PICTURES")) {
    const QString path = QDir(qEnvironmentVariable("TARNLINK_HELP_PICTURES")).filePath(file);
    constexpr int kSmallest = 0;  // of a PNG file the size, not its looks
    EXPECT_TRUE(WithPalette(picture).save(path, "PNG", kSmallest)) << path.toStdString();
    return;
  }
  const QImage shipped(QDir(HELP_PICTURES).filePath(file));
  ASSERT_FALSE(shipped.isNull()) << name << " is not there: run dev/help-pictures";
  ASSERT_EQ(std::pair(shipped.width(), shipped.height()),
            std::pair(picture.width(), picture.height()))
      << name << " has another size: run dev/help-pictures";
  EXPECT_LE(CountDiffering(picture, shipped), kMostDiffering)
      << name << " looks different: run dev/help-pictures, and look at it";
}

std::vector<std::string> HelpReader::PagesOf(QWidget& window, Qt::Key key,
                                             Qt::KeyboardModifiers modifiers) {
  opened_.clear();
  QTest::keyClick(window.windowHandle(), key, modifiers);
  return opened_;
}

void HelpReader::ExpectPage(QWidget& window, const std::string& page) {
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.isActiveWindow(); }, 2000));
  EXPECT_EQ(PagesOf(window), std::vector<std::string>{page}) << window.objectName().toStdString();
}

}  // namespace tarnlink
