// Stores of the graph for the tests of its files, and what is said of them.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "graph/graphic.h"
#include "graph/measure_file_reader.h"
#include "graph/measure_file_writer.h"
#include "support/pieces.h"

namespace tarnlink {

// 5 March 2024, 14:07:09, and so many seconds later.
inline std::int64_t At(int seconds) { return ToSeconds(ToDate({2024, 3, 5, 14, 7, 9})) + seconds; }

inline Graphic DefaultStore() {
  Graphic data;
  LineColors colours;
  data.Attributes = LoadDefaultAttributes(colours);
  data.FirstTime = data.LastTime = FromSeconds(At(0));
  return data;
}

inline GraphAttribute& Line(Graphic& data, int index) {
  return data.Attributes.at(static_cast<std::size_t>(index));
}

inline MeasureChannel& Channel(Graphic& data, int index) {
  return data.Channels.at(static_cast<std::size_t>(index));
}

// The smallest there is: 17 lines, a channel for the first and one for all others.
inline Graphic SmallStore() {
  Graphic data;
  data.Attributes.resize(17);
  data.Channels = std::vector<MeasureChannel>(2);
  data.Channels[0].Dimension(MeasureChannel::kUpperBound);
  data.Channels[1].Dimension(MeasureChannel::kUpperBound);
  return data;
}

inline void Add(Graphic& data, int channel, int second, std::int32_t value) {
  data.AddMeasurement(value, FromSeconds(At(second)), channel);
}

inline std::string FileText(const Graphic& data, const MeasureFileWriter::Content& content = {}) {
  MeasureFileWriter writer(data, content);
  std::string text;
  for (std::string piece; writer.Next(piece);) text += piece;
  return text;
}

// The measurements of a file: all behind its lines.
inline std::string Measurements(const Graphic& data,
                                const MeasureFileWriter::Content& content = {}) {
  return FileText(data, content)
      .substr(FileText(data,
                       {.with_measurements = false, .decimal_separator = content.decimal_separator})
                  .size());
}

// Reads a file into `data`, in pieces of that size.
inline void ReadInto(Graphic& data, std::string_view bytes, bool with_measurements = true,
                     std::size_t piece_size = 64) {
  MeasureFileReader reader("file", with_measurements);
  FeedPieces(bytes, piece_size, [&](std::string_view piece) { return reader.Take(piece); });
  reader.Finish();
  reader.HandOver(data);
}

inline Graphic Read(std::string_view bytes, bool with_measurements = true) {
  Graphic data;
  ReadInto(data, bytes, with_measurements);
  return data;
}

// "2024-03-05 14:07:09 5" of the newest sample first.
inline std::string SamplesText(const MeasureChannel& channel) {
  std::string text;
  for (int i = channel.UpperBound(); i >= channel.FirstIndex(); --i) {
    text += FormatDate(FromSeconds(channel[i].Time), "yyyy-mm-dd hh:nn:ss", EnglishMonthNames()) +
            " " + std::to_string(channel[i].Value) + "\n";
  }
  return text;
}

// A store that anybody may have left behind: other numbers of lines, times that fall, odd texts.
Graphic RandomStore(unsigned seed);

}  // namespace tarnlink
