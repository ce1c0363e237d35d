// The deck's numbers and names of nodes and elements of an imported model, in what commands say.
//
// Without an origin (HasOrigin) all texts are empty, so that a model that was not imported is
// described as before.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "audit/end_forces.h"
#include "audit/maxima.h"
#include "deck/model_tables.h"
#include "finding/finding.h"
#include "tables/model_origin.h"

namespace kvx {

const ElementOrigin& OriginOf(const ModelOrigin& origin, ElementKind kind);

// The kind of what is no node.
ElementKind ElementKindOf(Holder holder);

// " (deck 1017)", behind the number of a node.
std::string InDeck(const ModelOrigin& origin, std::int32_t node);

// " (deck CQUAD4 4711)", behind the number of an element; of a holder also of a node.
std::string InDeck(const ModelOrigin& origin, const ElementRef& element);
std::string InDeck(const ModelOrigin& origin, Holder holder, std::int32_t number);

// The deck's name of a group of elements that share a property: "PSHELL 10"; empty where it has
// none, and for parts. sectionType: BeamSecTypeT, BeamSecTypeL or BeamSecTypeC.
std::string NameOfGroup(const ModelOrigin& origin, Grouping grouping, std::int32_t sectionType,
                        std::int32_t row);

// The deck's number of a node or an element. It must be there: the origin fits the model.
std::int64_t DeckNumber(const ModelOrigin& origin, Holder holder, std::int32_t number);

// Null where there is none: the deck's number of a node, that of an element.
nlohmann::ordered_json DeckNumberJson(const ModelOrigin& origin, std::int32_t node);
nlohmann::ordered_json DeckNumberJson(const ModelOrigin& origin, const ElementRef& element);

// Adds "deck_element" and "deck_nodes" of an element; without an origin nothing.
void AddDeckNumbers(const korvex::Model& model, const ModelOrigin& origin,
                    const ElementRef& element, nlohmann::ordered_json& json);

// Says in each finding what its rows and nodes are in the deck:
// "In deck.bdf: CQUAD4 4711, nodes 1017, 1018, group PSHELL 10." tables: those of the model.
void NameInDeck(const ModelOrigin& origin, const korvex::ModelTables& tables, FindingList& list);

// {"rows": ["CQUAD4 4711", ...], "nodes": [1017, ...]}: of each of the finding's rows and nodes;
// null where the deck has none. Rows of loads are the elements that they load.
nlohmann::ordered_json OriginalJson(const ModelOrigin& origin, const korvex::ModelTables& tables,
                                    const Finding& finding);

}  // namespace kvx
