// The page of `kvx view` while it is made: its JSON and blocks, from viewed models one by one.
#pragma once

#include <string>
#include <vector>

#include "commands/audit_report.h"
#include "commands/page_header.h"
#include "commands/view_model.h"
#include "view/page_text.h"

namespace kvx {

// A finding and the cases that have it, rows of PageHeader::cases; none: it is the structure's.
struct PageFinding {
  Finding finding;
  std::vector<std::size_t> cases;
};

struct PageDraft {
  bool hasDetailModels = true;  // those of the models; else one stress for each beam
  bool hasCorners = true;       // the stresses of elements by themselves, which are half of a page
  PageHeader header;
  std::string modelText;              // the file whose lines the page names
  std::vector<PageFinding> findings;  // each once
  std::vector<PageScript> scripts;
  korvex::ModelTables tables;  // the structure
};

// Takes the structure. viewed: checked.
void BeginPage(const ViewedModel& viewed, PageDraft& draft);

// Takes findings about `viewed`: of the structure, or of the case that is about to be added.
void AddPageFindings(bool isStructure, const ViewedModel& viewed, const FindingList& findings,
                     PageDraft& draft);

// The notice, unless the page has it already.
void AddNotice(const std::string& notice, PageDraft& draft);

// Takes a load case: its loads and, where it is solved, its results. viewed: with its stresses, and
// its detail models where they are to be seen. audit: of its solution.
void AddPageCase(const std::string& name, const ViewedModel& viewed, const AuditReport& audit,
                 PageDraft& draft);

// Lists the findings by severity, those that not all cases have with the names of their cases.
// Nothing may be added afterwards.
void EndPage(PageDraft& draft);

}  // namespace kvx
