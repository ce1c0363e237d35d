// What `kvx reactions` says, as tables, sentences and JSON.
//
// Forces are those of the supports on the structure, global axes; the loads are those of the model
// file. A degree of freedom that is free has an empty cell, null in JSON. Moments of the sums are
// about the global origin.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "audit/reactions.h"
#include "commands/result_table.h"
#include "tables/model_origin.h"

namespace kvx {

// What is said of frames and signs below each table and in the help.
inline constexpr const char* ReactionSigns =
    "Forces of the supports on the structure, along the global axes; moments turn by the "
    "right-hand rule, those of sums about the global origin. Units of the model.";

// The forces on the nodes of the elements that are not in equilibrium by themselves, with the sign
// that makes loads + reactions + elements = what is left over. Moments about the global origin.
ForceSum SumOfElements(const Reactions& reactions);

// loads + reactions + elements.
ForceSum LeftOver(const Reactions& reactions);

// For people. Forces and moments below 1e-9 of the largest at any element are shown as 0.

// node, x, y, z, Fx .. Mz: a row for each node with a support.
ResultTable MakeSupportTable(const Reactions& reactions);

// "sum", Fx .. Mz: loads, reactions, elements where there are such, and what is left over, to which
// the rows above add up.
ResultTable MakeSumTable(const Reactions& reactions);

// node, x, y, z, dof, prescribed, reached: the supports that move as prescribed.
ResultTable MakeMovedTable(const korvex::Model& model, const Reactions& reactions);

// origin: that of the model, where it was imported.

// Sentences: whether loads and reactions balance; the elements that are not in equilibrium, each
// with its force and couple.
std::vector<std::string> ListBalanceNotes(const korvex::Model& model, const ModelOrigin& origin,
                                          const Reactions& reactions);

// All of it as one table: kind, node, x, y, z, Fx .. Mz, and ux .. rz as prescribed. kind: support,
// or one of the sums' names.
ResultTable MakeReactionsCsv(const korvex::Model& model, const ModelOrigin& origin,
                             const Reactions& reactions);

// Of an imported model with "deck_nodes": the deck's number of each node with a support.
nlohmann::ordered_json ReactionsJson(const korvex::Model& model, const ModelOrigin& origin,
                                     const Reactions& reactions);

}  // namespace kvx
