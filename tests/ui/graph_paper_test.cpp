// The graph of a burner start on paper: real PDF files, read back and looked at.

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QPdfWriter>
#include <QPrinter>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <string>
#include <vector>

#include "contract/loops.h"
#include "contract/pdf_reader.h"
#include "platform/qt/print_preview.h"
#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_surface.h"
#include "ui/burner_start.h"

namespace tarnlink {
namespace {

constexpr double kPointsPerUnit = 1.0 / 20;
constexpr double kDataLine = 29 * kPointsPerUnit;
constexpr int kPixelsPerPoint = 4;

// Drawn in by nothing else.
constexpr Colour kMarked = 0x4080C0;

const QRegularExpression kWord(
    "xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\" xMax=\"([0-9.]+)\" "
    "yMax=\"([0-9.]+)\">([^<]*)<");

struct Word {
  QString text;
  QRectF place;  // in points
};

class GraphPaper : public ::testing::Test {
 protected:
  GraphPaper() {
    // Ten minutes in the middle of what was measured, up to 14:57:39.
    data().Colors.GridColor = 0xC0C0C0;
    start.graph().menu.SetTimeScroll(false);
    graph().BaseTime = data().LastTime - 19.5 / kMinutesPerDay;
    graph().CursorTime = graph().BaseTime;
    start.graph().display.DrawAgain();
  }

  frmGraphic& graph() { return start.graph().graph; }
  Graphic& data() { return graph().Data; }
  GraphAttribute& Line(int index) { return data().Attributes.at(static_cast<std::size_t>(index)); }
  // Leaves a line alone on the page, marked and without a caption.
  void ShowOnly(const std::vector<int>& indices) {
    for (GraphAttribute& line : data().Attributes) line.ShowLine = line.ShowCaption = false;
    for (const int index : indices) {
      Line(index).ShowLine = true;
      Line(index).LineColor = kMarked;
    }
  }
  // The same value all the time.
  void HoldAt(int index, std::int32_t raw, int last_minute = 1) {
    MeasureChannel& channel = data().Channels.at(static_cast<std::size_t>(index));
    channel.Dimension(MeasureChannel::kUpperBound);
    for (int minute = -11; minute <= last_minute; ++minute) {
      channel.Append({raw, ToSeconds(graph().BaseTime) + minute * 60});
    }
  }
  void SetCursor(double minutes_before_the_edge) {
    graph().CursorTime = graph().BaseTime - minutes_before_the_edge / kMinutesPerDay;
    start.graph().display.DrawAgain();
  }

  // The user prints the graph into a PDF file, and may have a look at it before.
  void Print(bool landscape, bool looks = false) {
    FakeDialogs& dialogs = start.world.dialogs();
    dialogs.ExpectInputBox("Enter header text:", "Print").Give("Burner start");
    dialogs.ExpectPreview("Print");
    start.graph().menu.mnuPrint.Press();
    PreviewRequest request = dialogs.last_preview_request();
    request.setup.landscape = landscape;
    QPrinter printer(QPrinter::HighResolution);
    QtFiles files;
    PrintPreview preview(request, dialogs, files, printer, false, nullptr);
    dialogs.ExpectSaveFile("Save as PDF").Give(pdf.toStdString());
    // In an event, as under a user's hand: the watchdog sees how long it lasts.
    bool is_done = false;
    QTimer::singleShot(0, &preview, [&] {
      if (looks) preview.show();
      preview.findChild<QPushButton*>("PreviewPdf")->click();
      is_done = true;
    });
    EXPECT_TRUE(QtLoop().RunUntil([&is_done] { return is_done; }));
  }
  std::vector<Word> Words() {
    std::vector<Word> words;
    auto found = kWord.globalMatch(OutputOf("pdftotext", {"-bbox", pdf, "-"}));
    while (found.hasNext()) {
      const QRegularExpressionMatch word = found.next();
      const auto number = [&word](int i) { return word.captured(i).toDouble(); };
      words.push_back({word.captured(5).replace("&lt;", "<"),
                       QRectF(QPointF(number(1), number(2)), QPointF(number(3), number(4)))});
    }
    EXPECT_GT(words.size(), 50U);
    return words;
  }
  // The page as hard pixels, four to the point.
  QImage Picture() {
    const QString picture = folder.filePath("page");
    OutputOf("pdftoppm", {"-r", QString::number(72 * kPixelsPerPoint), "-aa", "no", "-aaVector",
                          "no", "-singlefile", "-png", pdf, picture});
    return QImage(picture + ".png").convertToFormat(QImage::Format_RGB32);
  }
  // For a person to look at.
  void Keep(const QString& name) {
    QDir().mkpath(UI_PICTURES);
    OutputOf("pdftoppm", {"-r", "150", "-singlefile", "-png", pdf,
                          QString(UI_PICTURES) + "/graph-page-" + name});
  }
  // What is drawn in a colour, in points; empty for nothing.
  static QRectF Extent(const QImage& picture, Colour colour) {
    const QRgb wanted = ToQColor(colour).rgb();
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
      const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
      for (int x = 0; x < picture.width(); ++x) {
        if (row[x] == wanted) ink |= QRect(x, y, 1, 1);
      }
    }
    return {QPointF(ink.topLeft()) / kPixelsPerPoint, QSizeF(ink.size()) / kPixelsPerPoint};
  }
  static QRectF Frame(const QImage& picture) { return Extent(picture, 0x808080); }

  BurnerStart start;
  QTemporaryDir folder;
  const QString pdf = folder.filePath("graph.pdf");
};

TEST_F(GraphPaper, IsOneSheetInTheOrientationThatWasChosen) {
  for (const bool landscape : {true, false}) {
    Print(landscape);
    const QString about = OutputOf("pdfinfo", {pdf});
    EXPECT_TRUE(about.contains(QRegularExpression("Pages: +1\n"))) << about.toStdString();
    EXPECT_TRUE(about.contains(QRegularExpression("Title: +Print\n")));
    const QString size = landscape ? "842 x 595" : "595 x 842";
    EXPECT_TRUE(about.contains(QRegularExpression("Page size: +" + size + " pts")))
        << about.toStdString();
  }
}

TEST_F(GraphPaper, IsKeptForAPersonToLookAt) {
  for (const bool landscape : {true, false}) {
    const QString name = landscape ? "landscape" : "portrait";
    Print(landscape);
    Keep(name);
    SetCursor(4);
    Print(landscape);
    Keep(name + "-cursor");
    SetCursor(0);
  }
}

// --- Texts ---------------------------------------------------------------------------------------

TEST_F(GraphPaper, AllOfItsTextsAreRealOnesInsideThePage) {
  SetCursor(4);
  for (const bool landscape : {true, false}) {
    Print(landscape);
    const QString text = OutputOf("pdftotext", {"-layout", pdf, "-"});
    for (const char* shown :
         {"Burner start", "05-Mar-24 14:53:39", "Sensor 1", "\u00B0C", "rpm", "bar", "%",
          "Flame status", "Frost mode", "7000", "6.5", "140", "-10", "14:48", "14:57"}) {
      EXPECT_TRUE(text.contains(shown)) << shown << "\n" << text.toStdString();
    }
    const QRectF page(QPointF(), landscape ? QSizeF(842, 595) : QSizeF(595, 842));
    for (const Word& word : Words()) {
      EXPECT_TRUE(page.contains(word.place)) << word.text.toStdString();
    }
  }
}

TEST_F(GraphPaper, TheTextsStandRoundTheFrame) {
  for (const bool landscape : {true, false}) {
    Print(landscape);
    const QRectF frame = Frame(Picture());
    EXPECT_GT(frame.width(), 300);
    constexpr double kPoint = 1;
    for (const Word& word : Words()) {
      const bool is_time = word.text.startsWith("14:") && word.text.size() == 5;
      const bool is_heading = word.text == "Burner";
      if (is_time) {
        EXPECT_GE(word.place.top(), frame.bottom() - kPoint);
        const int minute = word.text.mid(3).toInt();
        const double seconds = (57 - minute) * 60 + 39;
        EXPECT_NEAR(word.place.center().x(), frame.right() - frame.width() * seconds / 600, kPoint)
            << word.text.toStdString();
      } else if (is_heading) {
        EXPECT_LE(word.place.bottom(), frame.top());
      } else {
        EXPECT_FALSE(word.place.intersects(frame.adjusted(kPoint, 0, -kPoint, 0)))
            << word.text.toStdString();
      }
    }
  }
}

class GraphPaperOverlap : public GraphPaper {
 protected:
  // Words that cover others by more than the edges of their letters' boxes.
  std::string Covered() {
    std::string covered;
    const std::vector<Word> words = Words();
    for (std::size_t i = 0; i < words.size(); ++i) {
      for (std::size_t k = i + 1; k < words.size(); ++k) {
        const QRectF both = words[i].place & words[k].place;
        if (both.width() < 0.5 || both.height() < 2) continue;
        covered += words[i].text.toStdString() + " and " + words[k].text.toStdString() + "\n";
      }
    }
    return covered;
  }
};

TEST_F(GraphPaperOverlap, RowsTimesAndScalesOfAnUsualGraphCoverNoOthers) {
  for (int i = 105; i <= kLastAttribute; ++i) Line(i).ShowCaption = false;
  for (const int lower : {104, 12, 16}) Line(lower).ShowCaption = false;
  for (const bool landscape : {true, false}) {
    Print(landscape);
    EXPECT_EQ(Covered(), "");
  }
}

// As on the screen, where those below the lanes make room.
TEST_F(GraphPaperOverlap, TheRowsOfManyLanesCoverNoneBelowThem) {
  // These are longer than their column.
  for (const int index : {12, 16, 104}) Line(index).Alias = "short";
  for (const bool landscape : {true, false}) {
    Print(landscape);
    EXPECT_EQ(Covered(), "");
  }
}

TEST_F(GraphPaperOverlap, TimesAtTheEdgesDoNotCoverTheScales) {
  for (GraphAttribute& line : data().Attributes) line.ShowCaption = false;
  const Date minute = FromSeconds(ToSeconds(graph().BaseTime) / 60 * 60);
  for (const int seconds : {0, 1, 59}) {
    graph().BaseTime = minute + seconds / kSecondsPerDay;
    Print(false);
    EXPECT_EQ(Covered(), "") << seconds;
  }
}

// --- The cursor ----------------------------------------------------------------------------------

class GraphPaperCursor : public GraphPaper {
 protected:
  GraphPaperCursor() { data().Colors.CursorColor = kMarked; }
};

TEST_F(GraphPaperCursor, IsAColumnFromTheTopToTheBottomOfTheFrame) {
  for (const bool landscape : {true, false}) {
    SetCursor(4);
    Print(landscape);
    const QImage picture = Picture();
    const QRectF frame = Frame(picture);
    const QRectF cursor = Extent(picture, kMarked);
    EXPECT_NEAR(cursor.width(), kDataLine, 0.3);
    EXPECT_NEAR(cursor.center().x(), frame.left() + frame.width() * 0.6, 0.5);
    EXPECT_NEAR(cursor.top(), frame.top(), 1);
    EXPECT_NEAR(cursor.bottom(), frame.bottom(), 1);
  }
}

TEST_F(GraphPaperCursor, IsAbsentWhereThereIsNone) {
  const auto is_there = [this] {
    Print(true);
    return !Extent(Picture(), kMarked).isEmpty();
  };
  for (const double minutes : {0.0, 10.0, 10.1, -0.1}) {
    graph().CursorTime = graph().BaseTime - minutes / kMinutesPerDay;
    EXPECT_FALSE(is_there()) << minutes;
  }
  graph().CursorTime = 0;
  EXPECT_FALSE(is_there());
  SetCursor(4);
  graph().AutoScroll = true;
  EXPECT_FALSE(is_there());
  graph().AutoScroll = false;
  EXPECT_TRUE(is_there());
}

// --- Lines ---------------------------------------------------------------------------------------

class GraphPaperLines : public GraphPaper {
 protected:
  // The frame with half the width of a line around it.
  static QRectF Inside(const QRectF& frame) {
    constexpr double kAround = kDataLine / 2 + 0.3;
    return frame.adjusted(-kAround, -kAround, kAround, kAround);
  }
};

TEST_F(GraphPaperLines, NothingOfThemLiesOutsideTheFrame) {
  ShowOnly({0, 1, 2, 5, 7, 10, 11, 12, 16, 17, 100, 103, 109, 113, 115});
  for (const bool landscape : {true, false}) {
    for (const bool only_measured : {false, true}) {
      start.graph().menu.mnuMeasOnly.Checked = only_measured;
      Print(landscape);
      const QImage picture = Picture();
      const QRectF frame = Frame(picture);
      const QRectF ink = Extent(picture, kMarked);
      EXPECT_NEAR(ink.left(), frame.left(), 1.5);
      EXPECT_NEAR(ink.right(), frame.right(), 1.5);
      EXPECT_TRUE(Inside(frame).contains(ink))
          << ink.left() << " " << ink.top() << " " << ink.right() << " " << ink.bottom();
    }
  }
}

// A broken sensor says 255.
TEST_F(GraphPaperLines, AValueBeyondItsScaleIsCutAtTheFrame) {
  ShowOnly({0});
  HoldAt(0, 255 << 8, -3);
  data().Channels[0].Append({50 << 8, ToSeconds(graph().BaseTime) + 90});
  Print(true);
  const QImage picture = Picture();
  const QRectF ink = Extent(picture, kMarked);
  EXPECT_FALSE(ink.isEmpty()) << "what is left of it";
  EXPECT_TRUE(Inside(Frame(picture)).contains(ink))
      << ink.left() << " " << ink.top() << " " << ink.right() << " " << ink.bottom();
}

TEST_F(GraphPaperLines, HaveTheSameWidthAtEveryResolution) {
  ShowOnly({0});
  HoldAt(0, 55 << 8);
  Print(true);
  const PreviewRequest request = start.world.dialogs().last_preview_request();
  for (const int dpi : {300, 600, 1200, 2400}) {
    {
      QPdfWriter writer(pdf);
      writer.setResolution(dpi);
      QtSurface paper(writer);
      request.draw(paper);
    }
    const QImage picture = Picture();
    const QRectF line = Extent(picture, kMarked);
    EXPECT_NEAR(line.height(), kDataLine, 0.3) << dpi;
    EXPECT_NEAR(line.width(), Frame(picture).width(), 1.5) << dpi;
  }
}

TEST_F(GraphPaperLines, StylesHaveGapsOfTheirOwn) {
  ShowOnly({0});
  HoldAt(0, 55 << 8);
  std::vector<int> strokes;
  for (int style = 0; style <= 4; ++style) {
    Line(0).LineStyle = static_cast<std::int16_t>(style);
    Print(true);
    const QImage picture = Picture();
    const int row = static_cast<int>(Extent(picture, kMarked).center().y() * kPixelsPerPoint);
    int count = 0;
    for (int x = 1; x < picture.width(); ++x) {
      const auto is_ink = [&](int at) { return picture.pixelColor(at, row) == ToQColor(kMarked); };
      if (is_ink(x) && !is_ink(x - 1)) ++count;
    }
    strokes.push_back(count);
  }
  EXPECT_EQ(strokes[0], 1);
  for (int style = 1; style <= 4; ++style) {
    EXPECT_GT(strokes[static_cast<std::size_t>(style)], 30) << style;
  }
  std::sort(strokes.begin(), strokes.end());
  EXPECT_EQ(std::unique(strokes.begin(), strokes.end()), strokes.end()) << "no two alike";
}

TEST_F(GraphPaperLines, ALaneIsABarOfTheScreensPartOfTheHeight) {
  ShowOnly({100});
  for (const bool landscape : {true, false}) {
    MeasureChannel& channel = data().Channels.back();
    channel.Dimension(MeasureChannel::kUpperBound);
    for (const int minute : {-20, -5, 5}) {
      channel.Append({minute == -20 ? 0x0100 : 0, ToSeconds(graph().BaseTime) + minute * 60});
    }
    Print(landscape);
    const QImage picture = Picture();
    const QRectF frame = Frame(picture);
    const QRectF lane = Extent(picture, kMarked);
    const double height = frame.height() * graph().lblVal(0).Height / graph().frm(0).Height;
    EXPECT_NEAR(lane.height(), height * 0.6 + kDataLine, 0.5);
    EXPECT_NEAR(lane.top(), frame.top() + frame.height() * 0.45 + height * 0.1 - kDataLine / 2, 1);
    // On from before the left edge to the middle, then off.
    const auto column = [&](double part) {
      const double x = (frame.left() + frame.width() * part) * kPixelsPerPoint;
      const QImage cut = picture.copy(static_cast<int>(x), 0, 1, picture.height());
      return Extent(cut, kMarked).height();
    };
    EXPECT_NEAR(column(0.02), lane.height(), 0.3);
    EXPECT_NEAR(column(0.49), lane.height(), 0.3);
    EXPECT_NEAR(column(0.51), kDataLine, 0.3);
    EXPECT_NEAR(column(0.98), kDataLine, 0.3);
  }
}

// The window must not stand still for it, which the watchdog of these tests sees.
TEST_F(GraphPaperLines, VeryManySamplesAreShownAndKept) {
  constexpr int kLines = 60;
  constexpr int kSamples = 40'000;
  std::vector<int> lines;
  for (int i = 0; i < kLines; ++i) lines.push_back(i);
  ShowOnly(lines);
  graph().TimeScale = 60;
  std::uint32_t noise = 1;
  for (const int line : lines) {
    Line(line).Unit = Line(0).Unit;
    Line(line).Factor = Line(0).Factor;
    data().AllocateChannel(line);
    MeasureChannel& channel = data().Channels.at(static_cast<std::size_t>(line));
    channel.Dimension(MeasureChannel::kUpperBound);
    for (int i = 0; i < kSamples; ++i) {
      noise = noise * 1664525 + 1013904223;
      const auto value = static_cast<std::int32_t>((line + noise % 1024 / 100.0) * 256);
      channel.Append({value, ToSeconds(graph().BaseTime) - (kSamples - i) / 11});
    }
  }
  Print(true, true);
  const QImage picture = Picture();
  EXPECT_NEAR(Extent(picture, kMarked).width(), Frame(picture).width(), 2);
  Keep("dense");
}

}  // namespace
}  // namespace tarnlink
