#include "disk/documents.h"

#include <functional>
#include <map>
#include <utility>

#include "common/run_time_error.h"
#include "common/text_file.h"
#include "files/eeprom_output.h"
#include "files/eeprom_source.h"
#include "files/parameter_file.h"
#include "files/project_file.h"
#include "files/screen_export.h"
#include "files/screen_file.h"
#include "graph/file_job.h"
#include "graph/measure_export.h"
#include "graph/measure_file_writer.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/sheet_cells.h"
#include "platform/qt/xlsx_file.h"
#include "support/fake_locale.h"

namespace tarnlink::disk {
namespace {

// The versions differ in length, so that a mixture of two shows in it too.
int Scaled(char version, int count) {
  if (version == 'A') return count;
  return version == 'B' ? count + count / 2 + 1 : count + count / 4 + 1;
}

// A text that the other versions have nowhere.
std::string Mark(char version, int number) {
  return std::string(1, version) + " of " + std::to_string(number);
}

std::string ScreenText(char version, int size) {
  std::vector<ScreenRecord> records;
  for (int i = 0; i < Scaled(version, 4 * size); ++i) {
    LocationRecord place;
    place.location.Alias = Mark(version, i);
    place.value_top = static_cast<float>(i);
    records.emplace_back(place);
    LabelRecord label;
    label.caption = Mark(version, i);
    records.emplace_back(label);
  }
  return EncodeText(WriteScreenFile(version, records));
}

std::string ProjectText(char version, int size) {
  ProjectTree tree;
  tree.SetRootText(std::string(1, version));
  for (int i = 0; i < std::min(Scaled(version, 4 * size), kMostProjectNodes - 20); ++i) {
    tree.AddFileToProject("wcr", "/somewhere/" + Mark(version, i) + ".wcr");
  }
  return EncodeText(WriteProjectFile(tree));
}

Graphic Measured(char version, int samples) {
  constexpr int kChannels = 10;
  const std::int64_t first = ToSeconds(ToDate({2024, 3, 5, 14, 7, 9}));
  Graphic data;
  LineColors colours;
  data.Attributes = LoadDefaultAttributes(colours);
  for (GraphAttribute& line : data.Attributes) line.Alias.insert(line.Alias.begin(), version);
  for (int channel = 0; channel < kChannels; ++channel) {
    data.Attributes[static_cast<std::size_t>(channel)].ShowLine = true;
    data.AllocateChannel(channel);
    for (int i = 0; i < samples; ++i) {
      data.AddMeasurement(version * 256 + i % 200, FromSeconds(first + i), channel);
    }
  }
  data.FirstTime = FromSeconds(first);
  data.LastTime = FromSeconds(first + samples);
  return data;
}

std::string LinesText(char version) {
  const Graphic data = Measured(version, 1);
  MeasureFileWriter writer(data, {.with_measurements = false});
  std::string text;
  for (std::string piece; writer.Next(piece);) text += piece;
  return text;
}

std::string ParameterText(char version, int size) {
  std::string text;
  for (int i = 0; i < Scaled(version, 16 * size); ++i) {
    text += ParameterComment(Mark(version, i)) + ParameterLine(version - 'A', "0123", i);
  }
  return EncodeText(text);
}

std::string DefinitionText(char version, int size) {
  const auto blocks = static_cast<std::size_t>(Scaled(version, size));
  return EepromDefText(
      0x8000, std::vector<std::uint8_t>(blocks * kEepromBlock, static_cast<std::uint8_t>(version)));
}

std::string ListText(char version, int size) {
  std::string text;
  for (int i = 0; i < Scaled(version, 32 * size); ++i) {
    text += Mark(version, i) + "\tread\tfrom slave 3" + std::string(kLineEnd);
  }
  return EncodeText(text);
}

std::string ReportText(char version, int size) {
  std::vector<ExportRow> rows;
  for (int i = 0; i < Scaled(version, 8 * size); ++i) {
    rows.push_back({.name = Mark(version, i), .value = "21"});
  }
  return EncodeText(WriteScreenExport("/somewhere.wcr", "14:07 05-Mar-2024", "Heading", rows));
}

// A text that is saved in one go.
class WholeText final : public Document {
 public:
  WholeText(std::string path, Files& files, const std::function<std::string(char)>& make)
      : path_(std::move(path)), files_(files) {
    for (const char version : kVersions) texts_.emplace(version, make(version));
  }

  void Save(char version) override { files_.WriteWhole(path_, texts_.at(version)); }

 private:
  std::string path_;
  Files& files_;
  std::map<char, std::string> texts_;
};

// Measurements, or their table, in pieces and by a thread.
class LongText final : public Document {
 public:
  enum class Form { kMeasurements, kTable, kSheet };

  LongText(Form form, std::string path, int samples, Files& files)
      : form_(form), path_(std::move(path)), files_(files) {
    for (const char version : kVersions) {
      data_.emplace(version, Measured(version, Scaled(version, samples)));
    }
  }

  void Save(char version) override {
    auto writer = form_ == Form::kSheet ? files_.WriteSheet(path_) : files_.WriteBig(path_);
    WriteJob job({}, SourceOf(data_.at(version)), std::move(writer));
    while (job.Step()) job.Wait();
  }

 private:
  std::unique_ptr<PieceSource> SourceOf(const Graphic& data) const {
    if (form_ == Form::kMeasurements) {
      return std::make_unique<MeasureFileWriter>(data, MeasureFileWriter::Content{});
    }
    const auto form =
        form_ == Form::kSheet ? MeasureExport::Form::kSheet : MeasureExport::Form::kFile;
    return std::make_unique<MeasureExport>(data, locale_, form);
  }

  Form form_;
  std::string path_;
  Files& files_;
  FakeLocale locale_;
  std::map<char, Graphic> data_;
};

// The spreadsheet of a run, whose cells are all there before it is saved.
class CellsOfARun final : public Document {
 public:
  CellsOfARun(std::string path, int size) : path_(std::move(path)), size_(size) {}

  void Save(char version) override {
    SheetCells cells;
    for (int row = 1; row <= Scaled(version, 8 * size_); ++row) {
      cells.Put({row, 1}, Mark(version, row));
      for (int column = 2; column < 10; ++column) cells.Put({row, column}, version + row + 0.5);
    }
    SaveXlsx(path_, cells);
  }

 private:
  std::string path_;
  int size_;
};

class Settings final : public Document {
 public:
  Settings(std::string path, int size, Files& files)
      : path_(std::move(path)), size_(size), files_(files) {}

  // A store of its own each time: it tells of one failure only.
  void Save(char version) override {
    QtSettingsStore store;
    // Of another run: what is not saved anew must stay.
    if (!files_.Exists(path_)) store.SaveSetting("Kept", "From", "before");
    for (int i = 0; i < 4 * size_; ++i) {
      const std::string text = Mark(version, i);
      store.SaveSetting("Section" + std::to_string(i % 5), "Key" + std::to_string(i),
                        version == 'A' ? text : text + ", which is longer");
    }
    const std::string failure = store.Failure();
    if (!failure.empty()) throw RunTimeError(kDeviceIo, failure);
  }

 private:
  std::string path_;
  int size_;
  Files& files_;
};

class Log final : public Document {
 public:
  Log(std::string path, Files& files) : path_(std::move(path)), files_(files) {}

  void Save(char /*version*/) override {
    if (rows_ == nullptr) rows_ = files_.OpenRows(path_, false);
    rows_->Append(LogRow(saved_ + 1));
    ++saved_;
  }

 private:
  std::string path_;
  Files& files_;
  std::unique_ptr<RowWriter> rows_;
  int saved_ = 0;
};

}  // namespace

std::unique_ptr<Document> MakeDocument(std::string_view kind, const std::string& path, int size,
                                       Files& files) {
  constexpr int kSamples = 200;
  if (kind == "measurements") {
    return std::make_unique<LongText>(LongText::Form::kMeasurements, path, size * kSamples, files);
  }
  if (kind == "table") {
    return std::make_unique<LongText>(LongText::Form::kTable, path, size * kSamples, files);
  }
  if (kind == "sheet") {
    return std::make_unique<LongText>(LongText::Form::kSheet, path, size * 20, files);
  }
  if (kind == "workbook") return std::make_unique<CellsOfARun>(path, size);
  if (kind == kSettings) return std::make_unique<Settings>(path, size, files);
  if (kind == kLog) return std::make_unique<Log>(path, files);
  const auto text = [&](const std::function<std::string(char)>& make) {
    return std::make_unique<WholeText>(path, files, make);
  };
  if (kind == "screen") return text([&](char version) { return ScreenText(version, size); });
  if (kind == "project") return text([&](char version) { return ProjectText(version, size); });
  if (kind == "lines") return text(LinesText);
  if (kind == "parameters") return text([&](char version) { return ParameterText(version, size); });
  if (kind == "definition") {
    return text([&](char version) { return DefinitionText(version, size); });
  }
  if (kind == "image") {
    return text(
        [&](char version) { return BinBytes(ReadEepromSource(DefinitionText(version, size))); });
  }
  if (kind == "list") return text([&](char version) { return ListText(version, size); });
  if (kind == "report") return text([&](char version) { return ReportText(version, size); });
  throw RunTimeError(kFileNotFound, "There is no such kind of document.");
}

}  // namespace tarnlink::disk
