// The program: solves the model in the current directory.
#include "model/run_driver.h"

int main() {
  return korvex::RunKorvex();
}
