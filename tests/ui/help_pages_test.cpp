// The pages of the help: that each can be read and reached, that nothing is missing, and that what
// they show of a file is what such a file holds.

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>
#include <map>

#include "files/eeprom_output.h"
#include "files/log_file.h"
#include "files/screen_export.h"
#include "monitor/help_chapters.h"
#include "support/samples.h"
#include "tools/frm_link_trace.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

const QString kStart = QString::fromUtf8(kHelpStart.data(), kHelpStart.size());

QString TextOf(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return QString::fromUtf8(file.readAll());
}

struct Element {
  QString name;
  QMap<QString, QString> attributes;
  QString text;  // with that of its parts
};

// What stands in one page.
struct Page {
  QList<Element> elements;
  QString error;

  QStringList Links() const { return All("a", "href"); }
  QStringList All(const QString& name, const QString& attribute) const {
    QStringList values;
    for (const Element& one : elements) {
      if (one.name == name && one.attributes.contains(attribute)) {
        values << one.attributes[attribute];
      }
    }
    return values;
  }
  int Count(const QString& name) const {
    int count = 0;
    for (const Element& one : elements) count += one.name == name ? 1 : 0;
    return count;
  }
};

Page Parse(const QString& text) {
  Page page;
  QList<int> open;
  QXmlStreamReader reader(text);
  while (!reader.atEnd()) {
    switch (reader.readNext()) {
      case QXmlStreamReader::StartElement: {
        Element element{reader.name().toString(), {}, {}};
        for (const auto& attribute : reader.attributes()) {
          element.attributes[attribute.name().toString()] = attribute.value().toString();
        }
        open << static_cast<int>(page.elements.size());
        page.elements << element;
        break;
      }
      case QXmlStreamReader::EndElement:
        open.removeLast();
        break;
      case QXmlStreamReader::Characters:
        for (const int index : open) page.elements[index].text += reader.text();
        break;
      default:
        break;
    }
  }
  if (reader.hasError()) {
    page.error = QString("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
  }
  return page;
}

class HelpPages : public ::testing::Test {
 protected:
  HelpPages() {
    for (const QString& name : folder_.entryList({"*.html", "*.HTML"}, QDir::Files)) {
      pages[name] = Parse(TextOf(folder_.filePath(name)));
    }
  }

  static bool IsThere(const QString& name) { return QFile::exists(folder_.filePath(name)); }
  // The target of the link with this class in the list of ways on.
  static QString WayOn(const Page& page, const QString& way) {
    for (const Element& one : page.elements) {
      if (one.name == "a" && one.attributes["class"] == way) return one.attributes["href"];
    }
    return {};
  }

  inline static const QDir folder_{HELP_FOLDER};
  std::map<QString, Page> pages;
};

TEST_F(HelpPages, AreWellFormed) {
  ASSERT_GT(pages.size(), 30U);
  for (const auto& [name, page] : pages) {
    EXPECT_EQ(page.error.toStdString(), "") << name.toStdString();
    EXPECT_EQ(page.Count("h1"), 1) << name.toStdString();
    EXPECT_EQ(page.Count("title"), 1) << name.toStdString();
    EXPECT_EQ(page.All("link", "href"), QStringList{"help.css"}) << name.toStdString();
  }
}

TEST_F(HelpPages, HaveOnlyLinksAndPicturesThatAreThere) {
  for (const auto& [name, page] : pages) {
    for (const QString& target : page.Links() + page.All("img", "src") + page.All("link", "href")) {
      EXPECT_TRUE(IsThere(target)) << name.toStdString() << ": " << target.toStdString();
    }
    EXPECT_EQ(page.All("img", "alt").filter(QRegularExpression("\\S.{8}")).size(),
              page.Count("img"))
        << name.toStdString() << ": a picture without words for it";
  }
}

TEST_F(HelpPages, ShowAllPicturesThatAreShipped) {
  QSet<QString> shown;
  for (const auto& [name, page] : pages) {
    for (const QString& picture : page.All("img", "src")) shown << picture;
  }
  const QStringList shipped = QDir(folder_.filePath("pictures")).entryList(QDir::Files);
  EXPECT_GT(shipped.size(), 25);
  for (const QString& name : shipped) {
    EXPECT_TRUE(shown.contains("pictures/" + name)) << name.toStdString();
  }
}

TEST_F(HelpPages, AreAllInTheListOfTheFirstPage) {
  const QStringList list = pages[kStart].Links();
  for (const auto& [name, page] : pages) {
    if (name == kStart) continue;
    EXPECT_TRUE(list.contains(name)) << name.toStdString();
    EXPECT_TRUE(page.Links().contains(kStart)) << name.toStdString() << " leads nowhere back";
  }
}

TEST_F(HelpPages, CanBeReadOneBehindTheOther) {
  QSet<QString> read{kStart};
  QString name = kStart;
  for (QString next = WayOn(pages[name], "next"); !next.isEmpty();
       next = WayOn(pages[name], "next")) {
    ASSERT_FALSE(read.contains(next)) << next.toStdString() << " comes twice";
    ASSERT_TRUE(pages.contains(next)) << next.toStdString();
    EXPECT_EQ(WayOn(pages[next], "previous").toStdString(), name.toStdString())
        << next.toStdString();
    read << next;
    name = next;
  }
  EXPECT_EQ(read.size(), static_cast<int>(pages.size()))
      << "The way ends at " << name.toStdString();
}

TEST_F(HelpPages, NeedNoNetworkAndRunNothing) {
  const QRegularExpression outside("http|//|<script|javascript:|@import|url\\(",
                                   QRegularExpression::CaseInsensitiveOption);
  for (const QString& name : folder_.entryList(QDir::Files)) {
    const auto found = outside.match(TextOf(folder_.filePath(name)));
    EXPECT_FALSE(found.hasMatch()) << name.toStdString() << ": " << found.captured().toStdString();
  }
}

TEST_F(HelpPages, AreThereForEveryForm) {
  const QRegularExpression form("^  \\w+ form\\{\"(\\w+)\"\\};",
                                QRegularExpression::MultilineOption);
  int forms = 0;
  for (const char* part : {"monitor", "graph", "tools"}) {
    const QDir headers(QDir(SOURCE_FOLDER).filePath(part));
    for (const QString& name : headers.entryList({"*.h"})) {
      const auto found = form.match(TextOf(headers.filePath(name)));
      if (!found.hasMatch()) continue;
      ++forms;
      const std::string given = found.captured(1).toStdString();
      EXPECT_NE(HelpPageOf(given), "") << given << " has no page";
    }
  }
  EXPECT_GE(forms, 25);
  for (const HelpChapter& chapter : HelpChapters()) {
    EXPECT_TRUE(pages.contains(QString::fromUtf8(chapter.page.data(), chapter.page.size())))
        << chapter.page;
  }
}

TEST_F(HelpPages, AreThereForEveryKindOfFile) {
  QStringList told;
  for (const auto& [name, page] : pages) {
    if (!name.startsWith("format-")) continue;
    for (const Element& one : page.elements) {
      if (one.name == "h1") told << one.text;
    }
  }
  const QString all = told.join(' ');
  for (const char* kind : {"wcr", "prj", "map", "lst", "ids", "erc", "par", "mss", "grp", "txt",
                           "def", "tlk", "bin", "cfg", "snf", "log", "xlsx", "doc", "trace.txt"}) {
    EXPECT_TRUE(all.contains(kind)) << kind;
  }
}

// A sum of all pictures and pages that a slow disk or a mail still takes.
TEST_F(HelpPages, AreSmall) {
  qint64 size = 0;
  for (const QString& part : {QString("."), QString("pictures")}) {
    for (const QFileInfo& file : QDir(folder_.filePath(part)).entryInfoList(QDir::Files)) {
      size += file.size();
    }
  }
  EXPECT_LT(size, 2'000'000);
}

// --- What they show of files ---------------------------------------------------------------------

class HelpExamples : public HelpPages {
 protected:
  // The lines of the example that is said to be of this kind.
  QStringList Example(const QString& attribute, const QString& value) {
    QStringList lines;
    for (const auto& [name, page] : pages) {
      for (const Element& one : page.elements) {
        if (one.attributes.value(attribute) == value) lines << one.text.trimmed().split('\n');
      }
    }
    EXPECT_FALSE(lines.isEmpty()) << value.toStdString();
    return lines;
  }
  // A text as it stands on a page: line ends and blanks at the ends do not show.
  static QStringList Lines(const std::string& text) {
    QStringList lines = QString::fromStdString(text).remove('\r').split('\n');
    for (QString& line : lines) line = line.trimmed();
    return lines;
  }
  static void ExpectLinesOf(const QStringList& example, const QStringList& file,
                            const std::string& what) {
    qsizetype place = 0;
    for (const QString& line : example) {
      place = file.indexOf(line.trimmed(), place);
      ASSERT_GE(place, 0) << what
                          << " has no such line, or not in this place: " << line.toStdString();
      ++place;
    }
  }
};

TEST_F(HelpExamples, StandInTheSamples) {
  QSet<QString> kinds;
  for (const auto& [name, page] : pages) {
    for (const Element& one : page.elements) {
      const QString sample = one.attributes.value("data-sample");
      if (sample.isEmpty()) continue;
      kinds << QFileInfo(sample).suffix();
      ExpectLinesOf(one.text.trimmed().split('\n'), Lines(SampleText(sample.toStdString())),
                    sample.toStdString());
    }
  }
  for (const char* kind : {"wcr", "prj", "map", "lst", "ids", "erc", "par", "mss", "grp", "txt",
                           "def", "cfg", "snf"}) {
    EXPECT_TRUE(kinds.contains(kind)) << kind;
  }
}

TEST_F(HelpExamples, AreWhatIsMadeOfAnImage) {
  const QStringList made = Lines(TlkText(ReadEepromSource(SampleText("boiler.def"))));
  ExpectLinesOf(Example("data-made", "tlk"), made, "The text file");
}

TEST_F(HelpExamples, AreWhatARunLogs) {
  const std::string heading = LogHeading("5-Mar-2024", "/home/user/boiler.wcr",
                                         {{"Flow", "F000"}, {"Fan", "F00A"}, {"Code", "0012"}});
  QStringList lines = Lines(heading);
  for (QString& line : lines) line.replace('\t', QChar(0x2192));
  const QStringList example = Example("data-made", "log");
  ASSERT_GT(example.size(), 2);
  EXPECT_EQ(example[0], lines[0]);
  QString names = lines[1];
  EXPECT_EQ(example[1].trimmed().remove(QChar(0x2192)), names.remove(QChar(0x2192)));
}

TEST_F(HelpExamples, AreWhatIsExported) {
  const std::vector<ExportRow> rows = {{"Flow", "62"}, {"Return", "48"}, {"Hot water", "55"}};
  const std::string text = WriteScreenExport("/home/user/boiler.wcr", "14:07 05-Mar-2024",
                                             "The house at the mill", rows);
  ExpectLinesOf(Example("data-made", "doc"), Lines(text), "The export");
}

TEST_F(HelpExamples, AreWhatTheTraceSaves) {
  TraceEntry entry;
  entry.kind = TraceKind::kRequest;
  entry.date = 0.5;
  entry.meaning = "read byte 01A0";
  entry.bytes =
      "\x04\x05"
      "01A0D7\x03";
  QString line = QString::fromStdString(TraceLine(entry));
  line.replace('\t', QChar(0x2192));
  EXPECT_TRUE(Example("data-made", "trace").contains(line)) << line.toStdString();
}

}  // namespace
}  // namespace tarnlink
