#include "graph/measure_export.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include "common/text_file.h"

namespace tarnlink {

namespace {

// Element 0 is never looked at.
constexpr int kLowestIndex = 1;

// Rows that are made in one go: so few that their cells stay in the processor's own memory, and so
// many that a channel is read in long runs.
constexpr int kRows = 64;
// From a column of cells to the next; a power of two would bring the cells of a row into each
// other's way there.
constexpr std::size_t kStride = kRows + 8;

// Morning and evening may have words of their own.
constexpr std::int64_t kHalfDay = 43'200;

// Behind an element without a time nothing is looked at.
void EndAtEmpty(SampleRange& range, const MeasureChannel& channel) {
  if (range.first == range.behind) return;
  // Times that only rise begin with the empty ones.
  if (!channel.FallsBehind(channel.FirstIndex()) && channel.Times().front() > 0) return;
  const auto times = channel.Times().last(static_cast<std::size_t>(range.behind - range.first));
  const auto empty = std::find(times.rbegin(), times.rend(), 0);
  range.first = range.behind - std::distance(times.rbegin(), empty);
}

}  // namespace

MeasureExport::MeasureExport(const Graphic& data, const Locale& locale, Form form)
    : data_(data),
      times_(locale),
      tables_(form == Form::kFile ? locale.DecimalSeparator() : "."),
      first_(ToSeconds(data.FirstTime)),
      row_(first_),
      last_(ToSeconds(data.LastTime)) {
  columns_.reserve(data.Channels.size());  // they stay where they are
  for (std::size_t i = 0; i < data.Channels.size(); ++i) AddColumn(i);
  AddHeader(form);
  cells_.resize(columns_.size() * kStride);
}

void MeasureExport::AddColumn(std::size_t channel) {
  const MeasureChannel& samples = data_.Channels[channel];
  SampleRange range(samples, kLowestIndex);
  EndAtEmpty(range, samples);
  if (range.first == range.behind) return;
  CellTexts& texts = tables_.Of(data_.LineAt(static_cast<int>(channel)));
  const std::size_t oldest =
      samples.Values().size() - static_cast<std::size_t>(range.behind - range.first);
  ++range.first;
  Column& column = columns_.emplace_back(Column{channel, range, &texts});
  column.shown = MakeCell(texts, samples.Values()[oldest]);
  KeepShown(column);
}

void MeasureExport::AddHeader(Form form) {
  const auto status = static_cast<std::size_t>(std::max(data_.LastChannel(), 0));
  header_ = "Time";
  for (const Column& column : columns_) {
    if (column.channel == status) continue;
    header_ += "\t" + LogField(data_.LineAt(static_cast<int>(column.channel)).Alias);
  }
  header_ += "\tStatus bits";
  header_ += kLineEnd;
  if (form == Form::kSheet) return;
  std::string times;
  for (const std::int64_t second : {first_, first_ + kHalfDay, last_}) times += times_.Text(second);
  encoding_ = LogEncoding(header_, times);
  header_ = encoding_.Bytes(header_);
}

bool MeasureExport::Next(std::string& piece) {
  PieceFiller filler(piece);
  filler.Append(header_);
  header_.clear();
  while (filler.size() < kPiece && row_ <= last_) WriteRows(filler);
  filler.Finish();
  return !piece.empty();
}

double MeasureExport::Share() const {
  if (last_ < first_) return header_.empty() ? 1 : 0;
  return static_cast<double>(row_ - first_) / static_cast<double>(last_ - first_ + 1);
}

void MeasureExport::WriteRows(PieceFiller& piece) {
  const auto rows = static_cast<int>(std::min<std::int64_t>(kRows, last_ - row_ + 1));
  for (std::size_t i = 0; i < columns_.size(); ++i) MakeCells(i, rows);
  for (int row = 0; row < rows; ++row) WriteRow(row, piece);
  row_ += rows;
  for (Column& column : columns_) KeepShown(column);
  own_texts_.clear();
}

const CellText* MeasureExport::MakeCell(CellTexts& texts, std::int32_t raw) {
  OwnText text;
  static_cast<CellText&>(text) = texts.Make(raw);
  if (text.length == 0) text.long_text = texts.MakeLong(raw);
  return &own_texts_.emplace_back(std::move(text));
}

void MeasureExport::MakeCells(std::size_t column, int rows) {
  Column& shown = columns_[column];
  SampleRange& next = shown.next;
  const std::int64_t* times = nullptr;
  const std::int32_t* values = nullptr;
  if (shown.channel < data_.Channels.size() && next.IsOf(data_.Channels[shown.channel])) {
    const MeasureChannel& samples = data_.Channels[shown.channel];
    const std::int64_t oldest = samples.Appended() - samples.Count();
    next.first = std::min(std::max(next.first, oldest), next.behind);
    times = samples.Times().data() + (next.first - oldest);
    values = samples.Values().data() + (next.first - oldest);
  } else {
    next.first = next.behind;
  }
  std::int64_t left = next.behind - next.first;
  const CellTexts::Table table = shown.texts->Made();
  const CellText* cell = shown.shown;
  const CellText** to = cells_.data() + column * kStride;
  const std::int64_t end = row_ + rows;
  for (std::int64_t row = row_; row < end; ++row) {
    // They come from farther than anything else here, and are wanted next time.
    if (left > kRows) {
      __builtin_prefetch(times + kRows);
      __builtin_prefetch(values + kRows);
    }
    if (left > 0 && *times <= row) {
      cell = table.Find(*values);
      if (cell == nullptr) cell = MakeCell(*shown.texts, *values);
      ++times;
      ++values;
      --left;
    }
    *to++ = cell;
  }
  next.first = next.behind - left;
  shown.shown = cell;
}

// Its text outlives those of the rows.
void MeasureExport::KeepShown(Column& column) {
  if (column.shown == &column.own || column.texts->Made().Holds(column.shown)) return;
  column.own = *static_cast<const OwnText*>(column.shown);
  column.shown = &column.own;
}

void MeasureExport::WriteRow(int row, PieceFiller& piece) {
  const std::string_view time = times_.Text(row_ + row);
  if (encoding_.is_utf8()) {
    piece.Append(time);
  } else {
    piece.Append(encoding_.Bytes(time));
  }
  if (columns_.empty()) return piece.Append(kLineEnd);
  const std::size_t room = columns_.size() * sizeof(CellText);
  char* to = piece.Room(room);
  const CellText* const* at = cells_.data() + row;
  for (std::size_t i = columns_.size(); i > 0; --i, at += kStride) {
    const CellText* cell = *at;
    // All of it, as that is one move; what is too much is written over.
    std::memcpy(to, cell, sizeof(CellText));
    to += cell->length;
    if (cell->length != 0) continue;
    piece.Take(to);
    piece.Append(static_cast<const OwnText*>(cell)->long_text);
    to = piece.Room(room);
  }
  piece.Take(to);
  piece.Append(kLineEnd);
}

}  // namespace tarnlink
