// Mistakes of a mesh, planted into good models at random places.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "support/good_models.h"
#include "support/model_text.h"

namespace kvx::test {

// A shell of either kind; rows count within its table.
struct ShellOfText {
  bool isQuad = true;
  int row = 0;
  std::vector<int> nodes;
};
std::vector<ShellOfText> ListShells(const korvex::test::ModelText& model);

// The row of nodes that the shell has in the model.
void SetNodes(const ShellOfText& shell, const std::vector<int>& nodes,
              korvex::test::ModelText& model);

// The point between two nodes, at this share of the way.
std::array<double, 3> PointBetween(const korvex::test::ModelText& model, int a, int b,
                                   double share);

// Exchanges two numbers of nodes; the model stays the same.
void SwapNodes(int a, int b, korvex::test::ModelText& model);

// Gives a random patch of shells its own nodes along a connected piece of its border, so long that
// the patch still hangs on the rest. Returns the new nodes; none where the model has no place for
// it. most: how many nodes at most.
std::vector<int> PlantCrack(int most, Dice& dice, korvex::test::ModelText& model);

// Divides an edge that two or more shells share into `pieces` for one of them only. Returns the new
// nodes; none where the model has no such edge.
std::vector<int> PlantSplitEdge(int pieces, Dice& dice, korvex::test::ModelText& model);

// Lets a new beam end on the axis of another one, between its ends. Returns its node; -1 where the
// model has no place for it.
int PlantBeamOnBeam(Dice& dice, korvex::test::ModelText& model);

// Reverses a shell.
void ReverseShell(const ShellOfText& shell, korvex::test::ModelText& model);

}  // namespace kvx::test
