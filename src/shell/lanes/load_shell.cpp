#include "shell/lanes/load_shell.h"

namespace korvex {

void LoadShell(const Shell4Element& shell, std::size_t lanes, double* numbers) {
  const auto copy = [&numbers, lanes](double value) {
    *numbers = value;
    numbers += lanes;
  };
  for (const double coordinate : shell.Coordinates) copy(coordinate);
  for (const double component : shell.Frame) copy(component);
  copy(shell.E), copy(shell.Mu), copy(shell.TK);
}

}  // namespace korvex
