// Each stage calls one or two routines of the folder that does the work. File names and console
// lines are fixed, because other programs read them.
#include "run/stages.h"

#include "beamshell/average_stress_file.h"
#include "beamshell/generate_beam_shells.h"
#include "model/read_input_file.h"
#include "results/average_stresses.h"
#include "results/line_drawing.h"
#include "results/node_displacements.h"
#include "results/shell_stresses.h"
#include "results/stress_files.h"
#include "run/file_names.h"
#include "run/inconsistencies.h"
#include "skyline/solve_skyline.h"
#include "system/assemble_stiffness.h"
#include "system/load_vector.h"
#include "system/profile.h"
#include "system/supports.h"

namespace korvex {

namespace {

void Read(Job& job) {
  ReadInputFile(job.folder + ModelFileName, job.model);
  job.inconsistencies += CountOnReading(job.model);
}

void Number(Job& job) {
  NumberEquations(job.model);
  BuildProfile(job.model);
  ComputeDiagonalAddresses(job.model.Stiffness);
}

void Allocate(Job& job) { AllocateStiffness(job.model.Stiffness); }

void Assemble(Job& job) {
  job.inconsistencies += CountOnForming(job.model);
  AssembleStiffness(job.model, job.threads);
}

void Load(Job& job) {
  AssembleLoadVector(job.model);
  job.inconsistencies += CountOnLoading(job.model);
}

void Support(Job& job) { ImposeSupports(job.model); }

void Solve(Job& job) {
  Model& model = job.model;
  SolveSkyline(model.Stiffness, model.LoadVector, model.Displacements, job.progress, job.threads);
}

void RecoverStresses(Job& job) {
  job.inconsistencies += CountOnRecovery(job.model);
  RecoverShellStresses(job.model, job.threads);
}

void AverageStresses(Job& job) { AverageNodeStresses(job.model, job.threads); }

void MakeDetailModels(Job& job) { GenerateBeamShells(job.model, job.detailShare, job.threads); }

// Writes a file in the job's folder. write: returns false if the file is incomplete.
void WriteFile(const char* name, bool (*write)(const std::string&, const Model&, int), Job& job) {
  if (!write(job.folder + name, job.model, job.threads))
    job.incompleteFiles.push_back(job.folder + name);
}

void DrawStructure(Job& job) { WriteFile(StructureDrawingName, WriteStructureDrawing, job); }
void WriteDisplacements(Job& job) { WriteFile(DisplacementFileName, WriteNodeDisplacements, job); }
void DrawDeformation(Job& job) { WriteFile(DeformationDrawingName, WriteDeformationDrawing, job); }
void WriteStresses(Job& job) { WriteFile(StressFileName, WriteElementNodeStresses, job); }
void WriteAverages(Job& job) {
  WriteFile(AverageNodeStressFileName, WriteAverageNodeStresses, job);
}
void WriteDetails(Job& job) { WriteFile(AverageStressFileName, WriteAverageStressFile, job); }

void Release(Job& job) { ReleaseModel(job.model); }

}  // namespace

constexpr std::array<Stage, 7> AssemblyStages{{
    {"read", Read, nullptr, nullptr},
    {"number", Number, nullptr, nullptr, StageReport::MemoryEstimate},
    {"allocate", Allocate, nullptr, nullptr},
    {"structure drawing", DrawStructure, nullptr, nullptr, StageReport::None, StructureDrawingName},
    {"assemble", Assemble, "Assembling the global stiffness matrix...", nullptr},
    {"load", Load, nullptr, nullptr},
    {"support", Support, nullptr, nullptr},
}};

// The console line of this stage begins with the word "Solute" (run_driver.cpp). It is part of the
// fixed interface; other programs read it.
constexpr Stage SolutionStage{"solve", Solve, nullptr, nullptr, StageReport::SolutionTime};

constexpr std::array<Stage, 6> ResultStages{{
    {"displacement file", WriteDisplacements, "Post-processing in progress...",
     "\tDeformation result file Node_Dis.txt, generated.", StageReport::None, DisplacementFileName},
    {"deformation drawing", DrawDeformation, nullptr, nullptr, StageReport::None,
     DeformationDrawingName},
    {"stresses", RecoverStresses, nullptr, nullptr},
    {"stress file", WriteStresses, nullptr, nullptr, StageReport::None, StressFileName},
    {"averages", AverageStresses, nullptr, nullptr},
    {"average file", WriteAverages, nullptr, "\tShell element average node stress.txt, generated.",
     StageReport::None, AverageNodeStressFileName},
}};

constexpr std::array<Stage, 2> DetailStages{{
    {"detail models", MakeDetailModels,
     "\tGenerating Beam-Shells. The detailed stress calculation may take a considerable amount of "
     "time. Please wait patiently...",
     nullptr},
    {"detail model file", WriteDetails, nullptr, nullptr, StageReport::None, AverageStressFileName},
}};

constexpr Stage ReleaseStage{"release", Release, nullptr, "Post-processing completed."};

}  // namespace korvex
