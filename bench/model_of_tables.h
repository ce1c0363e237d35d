// The model that a run makes of tables, up to its loads; and the seconds of work on it.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "deck/write_tables.h"
#include "measure.h"
#include "model/read_input_file.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace korvex::bench {

inline void ReadTables(const ModelTables& tables, Model& model) {
  model = {};
  ReadInputText(WriteTables(tables), model);
  NumberEquations(model);
  AssembleLoadVector(model);
}

// Time by the clock and of the processor. The latter leaves out what others take of a shared
// machine; with several threads it is the sum over them.
struct Seconds {
  double wall = 0.0, processor = 0.0;
};

inline Seconds MeasureBoth(const std::function<void()>& work) {
  Seconds seconds;
  const auto begin = std::chrono::steady_clock::now();
  seconds.processor = Measure(work);
  seconds.wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  return seconds;
}

inline Seconds MedianOf(const std::vector<Seconds>& rounds) {
  std::vector<double> wall, processor;
  for (const Seconds& seconds : rounds) {
    wall.push_back(seconds.wall);
    processor.push_back(seconds.processor);
  }
  return {Median(wall), Median(processor)};
}

}  // namespace korvex::bench
