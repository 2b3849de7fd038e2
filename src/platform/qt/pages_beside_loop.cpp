#include "platform/qt/pages_beside_loop.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPrinter>
#include <cmath>
#include <cstdint>
#include <exception>
#include <latch>
#include <limits>
#include <memory>

#include "common/run_time_error.h"
#include "platform/qt/left_threads.h"
#include "platform/qt/waiting_dialog.h"

namespace tarnlink {
namespace {

// So many points and strokes a preview draws in some 20 ms, each time that it is shown anew.
constexpr std::int64_t kMostShown = 20'000;

// Of a page as a picture: as fine as a good office printer's draft, 30 MiB for A4.
constexpr double kPictureDpi = 300.0;
constexpr double kInchesInMetre = 1 / 0.0254;

class HourglassCursor {
 public:
  HourglassCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  ~HourglassCursor() { QApplication::restoreOverrideCursor(); }
  HourglassCursor(const HourglassCursor&) = delete;
  HourglassCursor& operator=(const HourglassCursor&) = delete;
};

QImage PictureOf(const QPrinter& paper) {
  const auto pixels = [](int length, int dpi) {
    return static_cast<int>(std::lround(length * kPictureDpi / dpi));
  };
  QImage picture(pixels(paper.width(), paper.logicalDpiX()),
                 pixels(paper.height(), paper.logicalDpiY()), QImage::Format_RGB32);
  picture.setDotsPerMeterX(static_cast<int>(std::lround(kPictureDpi * kInchesInMetre)));
  picture.setDotsPerMeterY(picture.dotsPerMeterX());
  picture.fill(Qt::white);
  return picture;
}

// What the two threads share; kept by both.
struct Drawing {
  std::latch end{1};
  std::exception_ptr failure;
};

enum class Drawn { kWhole, kTooDense, kGivenUp };

Drawn DrawLines(QPrinter& paper, const DrawPages& draw, std::int64_t most) {
  bool is_too_dense = false;
  const bool is_drawn = DrawBesideLoop([&](const auto& is_given_up) {
    QtSurface surface(paper);
    surface.StopWhen([&] {
      is_too_dense = surface.Strokes() > most;
      return is_too_dense || is_given_up();
    });
    draw(surface);
  });
  if (!is_drawn) return Drawn::kGivenUp;
  return is_too_dense ? Drawn::kTooDense : Drawn::kWhole;
}

// Only what is one page.
Drawn DrawPicture(QImage& picture, const DrawPages& draw) {
  bool has_more_pages = false;
  const bool is_drawn = DrawBesideLoop([&](const auto& is_given_up) {
    QtSurface surface(static_cast<QPaintDevice&>(picture));
    surface.StopWhen([&] {
      has_more_pages = surface.Pages() > 1;
      return has_more_pages || is_given_up();
    });
    draw(surface);
  });
  if (!is_drawn) return Drawn::kGivenUp;
  return has_more_pages ? Drawn::kTooDense : Drawn::kWhole;
}

}  // namespace

bool DrawBesideLoop(const std::function<void(const std::function<bool()>&)>& draw) {
  const HourglassCursor cursor;
  const auto drawing = std::make_shared<Drawing>();
  const auto work = [&draw, drawing](const IsGivenUp& is_given_up) {
    try {
      draw(is_given_up);
    } catch (...) {
      drawing->failure = std::current_exception();
    }
    drawing->end.count_down();
  };
  LeftThreads left;
  try {
    RunBesideLoop("Drawing the pages...", {}, work, left);
  } catch (const RunTimeError&) {
    // It draws on what belongs to the caller. No drawing takes long once it is to stop.
    drawing->end.wait();
    return false;
  }
  if (drawing->failure) std::rethrow_exception(drawing->failure);
  return true;
}

bool DrawForPreview(QPrinter& paper, const DrawPages& draw) {
  const Drawn lines = DrawLines(paper, draw, kMostShown);
  if (lines != Drawn::kTooDense) return lines == Drawn::kWhole;
  QImage picture = PictureOf(paper);
  const Drawn drawn = DrawPicture(picture, draw);
  if (drawn == Drawn::kTooDense) {
    constexpr auto kAny = std::numeric_limits<std::int64_t>::max();
    return DrawLines(paper, draw, kAny) == Drawn::kWhole;
  }
  if (drawn == Drawn::kGivenUp) return false;
  QPainter painter(&paper);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRectF(0, 0, paper.width(), paper.height()), picture);
  return true;
}

}  // namespace tarnlink
