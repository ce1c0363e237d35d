// K0xx: the text of the file.
//
// The lines before and after are parts of the small model of docs/model-file.md.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> TextCodes{
    {"K001", Severity::Error, "The header is missing, misspelt, or its release is not 3.0",
     "The first line of a model file says what it is and its release. It must stand alone, at "
     "the begin of the first line.",
     "If the release cannot be read or is not 3.0, the run stops with \"Release File Number "
     "error!\" and the exit status 1; there are no results. If the release is right and "
     "something behind it is not, the rest of the file may be lost.",
     "Write the first line as below.", "### Toln_Korvex release=2.0 ###",
     "### Toln_Korvex release=3.0 ###"},
    {"K002", Severity::Error, "The file is not plain text",
     "The file is empty, or has bytes that no plain text has: a byte-order mark before the "
     "header, two bytes for each character (UTF-16), bytes 0, or lines that end with a carriage "
     "return alone. Most editors do not show them.",
     "With a byte-order mark, in UTF-16 or with an empty file the run stops with \"Release File "
     "Number error!\". With carriage returns alone all rows behind the first label of a beam "
     "section are lost: the results are empty, the exit status is 0.",
     "Save the file as ASCII, or as UTF-8 without byte-order mark. Line ends of Linux and of "
     "Windows are both right.",
     "", ""},
    {"K003", Severity::Error, "A section is missing",
     "All sections must be in the file, in their fixed order. One that has no rows has its line "
     "with the count 0.",
     "The counts of this section and of all later ones are read as 0, and all their rows are "
     "lost. The run ends with the exit status 0, often with displacements that are all 0 or not "
     "numbers.",
     "Insert the section. If the end of the file is missing, the program that wrote it has "
     "stopped, or the copy is incomplete: write it again.",
     "Number of L_beam sections:NLBS=0\nNumber of nodal points:NPOIN=2",
     "Number of L_beam sections:NLBS=0\nNumber of C_beam sections:NCBS=0\nNumber of nodal "
     "points:NPOIN=2"},
    {"K004", Severity::Error, "A section stands twice",
     "The line with the count of a section stands at two places.",
     "At the second one the solver loses its place: it reads zeros there, and all rows behind "
     "are lost. Behind the last section it does not read it at all. The exit status is 0.",
     "Keep one of the two. To add rows, put them behind the others and raise the count.",
     "Number of forces:NFOR=1\nNumber of forces:NFOR=1\n1<0,0,-1000,0,0,0>",
     "Number of forces:NFOR=1\n1<0,0,-1000,0,0,0>"},
    {"K005", Severity::Error, "A section stands in the wrong place",
     "The order of the sections is fixed, and this one is not where it belongs.",
     "Its count and those of all later sections are read as 0, and their rows are lost. The exit "
     "status is 0.",
     "Move the section, its rows included, to its place.",
     "Number of C_beam sections:NCBS=0\nNumber of L_beam sections:NLBS=0",
     "Number of L_beam sections:NLBS=0\nNumber of C_beam sections:NCBS=0"},
    {"K006", Severity::Error, "The line with a count is misspelt",
     "The line must be exactly as the format has it: words, capitals, blanks, the key and \"=\".",
     "The count is read as 0; all rows of this and of all later sections are lost. The exit "
     "status is 0, and the files of results are nearly empty.",
     "Write the line as the finding says.", "Number of nodal point:NPOIN=2",
     "Number of nodal points:NPOIN=2"},
    {"K007", Severity::Error, "A count is smaller than the rows that follow",
     "More rows follow than the count says. Either the count is wrong, or a row stands twice.",
     "Only as many rows as the count says are read. At the next one the solver loses its place, "
     "and all later sections are lost. In the last section only the further rows are lost, so "
     "that the results look right without these loads. The exit status is 0.",
     "Set the count to the number of rows, or remove the row that is too much.",
     "Number of nodal points:NPOIN=1\n0:0,0,0\n1:2,0,0",
     "Number of nodal points:NPOIN=2\n0:0,0,0\n1:2,0,0"},
    {"K008", Severity::Error, "A count is larger than the rows that follow",
     "Fewer rows follow than the count says. Either the count is wrong, or rows are missing.",
     "The rows that are not there are read as zeros: nodes at the origin, restraints that fix "
     "nothing. In a table of beam sections the next line with a count is taken for a label, and "
     "the rest of the file is lost. Nodes without elements get displacements that are not "
     "numbers. A very large count stops the run for lack of memory.",
     "Set the count to the number of rows, or add the rows that are missing.",
     "Number of nodal points:NPOIN=3\n0:0,0,0\n1:2,0,0",
     "Number of nodal points:NPOIN=2\n0:0,0,0\n1:2,0,0"},
    {"K009", Severity::Error, "A count is negative", "A count is the number of rows that follow.",
     "For materials, shell thicknesses, nodal points and restraints the run stops with \"The "
     "count ... is negative\". Other negative counts act as 0: the rows of the section and all "
     "later ones are lost, and the exit status is 0.",
     "Write the number of rows, or 0.", "Number of forces:NFOR=-1", "Number of forces:NFOR=1"},
    {"K010", Severity::Error, "A comment, or another line that is no row",
     "The format has no comments. Only the line before Hw= or R= of a beam section may hold any "
     "text.",
     "The row that should stand here is read as zeros, and all rows behind it are lost. The exit "
     "status is 0; displacements are 0 or not numbers.",
     "Remove the line. If it is a row, write it as the others are.",
     "# clamped end\n0: 1 1 1 1 1 1", "0: 1 1 1 1 1 1"},
    {"K011", Severity::Error, "A row is not read as it is written",
     "A character in the row is not the one that the format has there: a comma where a blank "
     "must stand, a semicolon, another bracket, lines in another order.",
     "The values up to that character are read, the others are 0. Mostly the solver does not "
     "find its place again, and all later rows are lost. The exit status is 0.",
     "Write the row as the format has it. The flags of a restraint are separated by blanks.",
     "0: 1,1,1,1,1,1", "0: 1 1 1 1 1 1"},
    {"K012", Severity::Error, "A comma within a number",
     "A decimal comma, or a comma between thousands. Numbers have a point, and no separators.",
     "The number ends at the comma: 7,850 is read as 7. What stands behind the comma is taken "
     "for the next value, or the solver loses its place and all later rows are lost. The exit "
     "status is 0.",
     "Write a point for a decimal comma, and leave the separators of thousands out.",
     "Density=7,850", "Density=7850"},
    {"K013", Severity::Error, "The name of a value is misspelt",
     "Names are written exactly as the format has them: with their capitals, and without blanks "
     "before the \"=\".",
     "The value is 0 and so are all behind it: the solver waits for the name and never finds it. "
     "All later rows are lost; the files of results are nearly empty, and the exit status is 0.",
     "Write the name as the finding says.", "nu=0.3", "Mu=0.3"},
    {"K014", Severity::Error, "A number is incomplete or out of range",
     "Digits are missing behind an exponent or prefix (1e+, 0x.), or the number is larger or "
     "smaller than a computer can hold (1e400, 1e-400, a whole number beyond 2147483647).",
     "1e+ is read as 1, 1e400 as infinity, 1e-400 as 0, and of a whole number that is too large "
     "its low 32 bits: 4294967296 as 0. The results are wrong or not numbers; the exit status is "
     "0.",
     "Write the number as it is meant.", "E=2.06e+", "E=2.06e11"},
    {"K015", Severity::Error, "Values are missing in a row",
     "The row has fewer values than the format asks for, or a line of it is missing.",
     "The next row's begin is taken for the missing value, or the value is 0; mostly all later "
     "rows are lost. The exit status is 0.",
     "Write all values of the row.", "0: 1 1 1 1 1", "0: 1 1 1 1 1 1"},
    {"K016", Severity::Error, "Text behind the values of a row",
     "The row goes on behind its last value: a unit, a note, or a value too many.",
     "The values of the row are read. The next row is not: the solver loses its place, and all "
     "later rows are lost. The exit status is 0.",
     "Remove what stands behind the values. The file has no units.", "Tw=0.01 m", "Tw=0.01"},
    {"K017", Severity::Warning, "Running numbers are out of step",
     "The numbers at the head of materials, thicknesses, nodes and elements are not 0, 1, 2, ... "
     "Whoever reads the file, or the program that wrote it, may refer to other rows than the "
     "solver does.",
     "It does not look at these numbers: it counts the rows from 0. A reference to node 5 is the "
     "sixth row.",
     "Number the rows from 0 in steps of 1, and look whether all references to them are right.",
     "1:0,0,0\n2:2,0,0", "0:0,0,0\n1:2,0,0"},
    {"K018", Severity::Warning, "Text behind the last section",
     "Lines follow behind the last row of the last section.",
     "It does not read them. If they are loads or rows, they are not in the results.",
     "Remove them, or put them where they belong.", "0:-500,-500\nend of file", "0:-500,-500"},
    {"K019", Severity::Error, "The file cannot be understood",
     "The other findings of the text cannot tell what the file was meant to be, or this machine "
     "has not enough memory for its tables.",
     "It goes on as far as it can; its results mean nothing. Without memory the run stops with "
     "\"Not enough memory for ...\".",
     "Mend what the other findings of the text name, and check again; or take a machine with "
     "more memory.",
     "", ""},
};

}  // namespace kvx
