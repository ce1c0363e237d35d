#include "mesh/map_file.h"

#include <algorithm>
#include <cmath>

namespace kvx {

namespace {

constexpr const char* AccelerationForm = "acceleration = [0, 0, -9810]";
constexpr const char* TForm = R"(section = { type = "T", Hw = 200, Tw = 8, Bf = 90, Tf = 12 })";

[[noreturn]] void StopMissing(const TomlItem& item, const std::string& owner, const char* key) {
  StopAtLine(item.line, owner + " has no " + InQuotes(key) + ".");
}

// The item of a table with this key; nullptr: none.
const TomlItem* FindItem(const TomlItem& table, const char* key) {
  for (const TomlItem& each : table.items) {
    if (each.key == key) return &each;
  }
  return nullptr;
}

void CheckKeys(const TomlItem& table, const std::string& owner,
               const std::vector<std::string>& known) {
  for (const TomlItem& each : table.items) {
    if (std::find(known.begin(), known.end(), each.key) == known.end()) {
      RefuseKey(each, owner, known);
    }
  }
}

double NeedPositive(const TomlItem& table, const char* key, const std::string& owner,
                    const char* form) {
  const TomlItem* item = FindItem(table, key);
  if (item == nullptr) StopMissing(table, owner, key);
  return ReadPositive(*item, owner, form);
}

void ReadMaterial(const TomlItem& item, MapFile& file) {
  const std::string owner = "material " + InQuotes(item.key);
  CheckKeys(item, owner, {"E", "poisson", "density"});
  korvex::Material values;
  values.E = NeedPositive(item, "E", owner, "E = 206000");
  const TomlItem* poisson = FindItem(item, "poisson");
  if (poisson == nullptr) StopMissing(item, owner, "poisson");
  values.Mu = ReadNumber(*poisson, owner, "poisson = 0.3");
  // Outside, the shear modulus or the bulk modulus is not positive.
  if (!(values.Mu > -1.0 && values.Mu <= 0.5)) {
    StopAtLine(poisson->line, owner + ": \"poisson\" must lie between -1 and 0.5.");
  }
  const TomlItem* density = FindItem(item, "density");
  if (density != nullptr) values.Density = ReadNumber(*density, owner, "density = 7.85e-9");
  if (values.Density < 0.0) StopAtLine(density->line, owner + ": \"density\" is below 0.");
  file.materials.push_back({item.key, values});
}

// A plate's width or thickness that may be 0: a web without a flange.
double ReadFlange(const TomlItem& item, const char* key, const std::string& owner) {
  const TomlItem* found = FindItem(item, key);
  if (found == nullptr) StopMissing(item, owner, key);
  const double value = ReadNumber(*found, owner, TForm);
  if (value < 0.0) StopAtLine(found->line, owner + ": " + InQuotes(key) + " is below 0.");
  return value;
}

ImportSection ReadSection(const TomlItem& item, const std::string& group) {
  const std::string owner = "the section of " + group;
  if (item.kind != TomlKind::Table) {
    StopAtLine(item.line, group + ": \"section\" is a table. Write it as in: " + TForm);
  }
  const TomlItem* type = FindItem(item, "type");
  if (type == nullptr) StopMissing(item, owner, "type");
  const std::string word = ReadText(*type, owner, TForm);
  ImportSection section;
  if (word == "tube") {
    constexpr const char* Form = R"(section = { type = "tube", R = 150, T = 10 })";
    CheckKeys(item, owner, {"type", "R", "T"});
    section.type = korvex::BeamSecTypeC;
    section.tube = {NeedPositive(item, "R", owner, Form), NeedPositive(item, "T", owner, Form)};
    return section;
  }
  const std::vector<std::string> words{"T", "L", "bar", "tube"};
  if (std::find(words.begin(), words.end(), word) == words.end()) {
    StopAtLine(type->line,
               owner + ": there is no type " + InQuotes(word) + "." + SuggestWord(word, words));
  }
  section.type = word == "L" ? korvex::BeamSecTypeL : korvex::BeamSecTypeT;
  section.plates.Hw = NeedPositive(item, "Hw", owner, TForm);
  section.plates.Tw = NeedPositive(item, "Tw", owner, TForm);
  if (word == "bar") {
    CheckKeys(item, owner, {"type", "Hw", "Tw"});
    return section;
  }
  CheckKeys(item, owner, {"type", "Hw", "Tw", "Bf", "Tf"});
  section.plates.Bf = ReadFlange(item, "Bf", owner);
  section.plates.Tf = ReadFlange(item, "Tf", owner);
  return section;
}

MapOrientation ReadOrientation(const TomlItem& item, const std::string& owner) {
  constexpr const char* Form = R"(orientation = [0, 0, -1] or orientation = "normal")";
  MapOrientation orientation;
  if (item.kind == TomlKind::Text) {
    if (item.text == "normal") orientation.alongNormal = 1.0;
    if (item.text == "-normal") orientation.alongNormal = -1.0;
    if (orientation.alongNormal != 0.0) return orientation;
    StopAtLine(item.line, owner + ": there is no orientation " + InQuotes(item.text) +
                              ". Write it as in: " + Form);
  }
  orientation.vector = ReadVector(item, owner, Form);
  if (korvex::Length(orientation.vector) == 0.0) {
    StopAtLine(item.line, owner + ": the orientation is zero, so it has no direction.");
  }
  return orientation;
}

std::array<std::int32_t, 6> ReadRestraint(const TomlItem& item, const std::string& owner) {
  constexpr const char* Form =
      R"(restraint = "fixed", "pinned" or [1, 1, 1, 0, 0, 0] for ux uy uz rx ry rz)";
  if (item.kind == TomlKind::Text) {
    if (item.text == "fixed") return {1, 1, 1, 1, 1, 1};
    if (item.text == "pinned") return {1, 1, 1, 0, 0, 0};
    StopAtLine(item.line, owner + ": there is no restraint " + InQuotes(item.text) +
                              ". Write it as in: " + Form);
  }
  const std::vector<double> numbers = ReadNumbers(item, owner, Form);
  std::array<std::int32_t, 6> fixed{};
  bool isGood = numbers.size() == fixed.size();
  for (std::size_t d = 0; isGood && d < fixed.size(); ++d) {
    isGood = numbers[d] == 0.0 || numbers[d] == 1.0;
    fixed[d] = numbers[d] == 1.0 ? 1 : 0;
  }
  if (!isGood) {
    StopAtLine(item.line, owner +
                              ": \"restraint\" needs six numbers, each 0 (free) or 1 (held). "
                              "Write it as in: " +
                              Form);
  }
  return fixed;
}

// Three forces, and three moments where there are six numbers.
std::array<double, 6> ReadForce(const TomlItem& item, const std::string& owner) {
  constexpr const char* Form = "[0, 0, -1000], or with moments [0, 0, -1000, 0, 0, 0]";
  const std::vector<double> numbers = ReadNumbers(item, owner, Form);
  if (numbers.size() != 3 && numbers.size() != 6) {
    StopAtLine(item.line, owner + ": " + InQuotes(item.key) + " has " +
                              std::to_string(numbers.size()) +
                              " numbers instead of 3 or 6. Write it as in: " + Form);
  }
  std::array<double, 6> force{};
  std::copy(numbers.begin(), numbers.end(), force.begin());
  return force;
}

// Takes a key of a group's elements. Returns whether it is one.
bool TakeProperty(const TomlItem& item, const std::string& owner, MapGroup& group) {
  if (item.key == "thickness") {
    group.thickness = {ReadPositive(item, owner, "thickness = 12"), item.line};
  } else if (item.key == "material") {
    group.material = {ReadText(item, owner, "material = \"steel\""), item.line};
  } else if (item.key == "section") {
    group.section = {ReadSection(item, owner), item.line};
    group.section->value.name = group.name;
  } else if (item.key == "orientation") {
    group.orientation = {ReadOrientation(item, owner), item.line};
  } else if (item.key == "offset") {
    group.offset = {ReadNumber(item, owner, "offset = 6"), item.line};
  } else if (item.key == "mirrored") {
    group.mirrored = {ReadTruth(item, owner, "mirrored = true"), item.line};
  } else if (item.key == "flip") {
    group.flip = {ReadTruth(item, owner, "flip = true"), item.line};
  } else if (item.key == "skip") {
    group.skip = {ReadTruth(item, owner, "skip = true"), item.line};
  } else {
    return false;
  }
  return true;
}

// The same for supports and loads.
bool TakeLoad(const TomlItem& item, const std::string& owner, MapGroup& group) {
  if (item.key == "restraint") {
    group.restraint = {ReadRestraint(item, owner), item.line};
  } else if (item.key == "case") {
    group.loadCase = {ReadText(item, owner, "case = \"wind\""), item.line};
  } else if (item.key == "pressure") {
    group.pressure = {ReadNumber(item, owner, "pressure = -0.01"), item.line};
  } else if (item.key == "line_load") {
    group.lineLoad = {ReadNumber(item, owner, "line_load = -2.5"), item.line};
  } else if (item.key == "edge_load") {
    group.edgeLoad = {ReadVector(item, owner, "edge_load = [0, 0, -3]"), item.line};
  } else if (item.key == "force") {
    group.force = {ReadForce(item, owner), item.line};
  } else if (item.key == "total_force") {
    group.totalForce = {ReadForce(item, owner), item.line};
  } else {
    return false;
  }
  return true;
}

void ReadGroup(const TomlItem& item, MapFile& file) {
  MapGroup group;
  group.name = item.key;
  group.line = item.line;
  const std::string owner = "group " + InQuotes(item.key);
  for (const TomlItem& each : item.items) {
    if (TakeProperty(each, owner, group) || TakeLoad(each, owner, group)) continue;
    RefuseKey(
        each, owner,
        {"thickness", "material", "section", "orientation", "offset", "mirrored", "flip", "skip",
         "restraint", "case", "pressure", "line_load", "edge_load", "force", "total_force"});
  }
  file.groups.push_back(group);
}

Placed<korvex::Vector3> ReadAcceleration(const TomlItem& item, const std::string& owner) {
  const korvex::Vector3 acceleration = ReadVector(item, owner, AccelerationForm);
  if (korvex::Length(acceleration) == 0.0) {
    StopAtLine(item.line, owner + ": the acceleration is zero, so it makes no loads.");
  }
  return {acceleration, item.line};
}

void ReadCase(const TomlItem& item, MapFile& file) {
  const std::string owner = "case " + InQuotes(item.key);
  if (item.key.empty()) StopAtLine(item.line, "a case needs a name.");
  CheckKeys(item, owner, {"acceleration"});
  MapCase loadCase{item.key, item.line, {}};
  const TomlItem* acceleration = FindItem(item, "acceleration");
  if (acceleration != nullptr) loadCase.acceleration = ReadAcceleration(*acceleration, owner);
  file.cases.push_back(loadCase);
}

// Calls read(item) for [KIND.NAME].
template <typename Read>
void ReadNamed(const TomlItem& kind, const Read& read) {
  const auto stop = [&](std::size_t line) {
    StopAtLine(line, "each " + kind.key + " is a table with a name. Write it as in: [" + kind.key +
                         ".deck]");
  };
  if (kind.kind != TomlKind::Table) stop(kind.line);
  for (const TomlItem& item : kind.items) {
    if (item.kind != TomlKind::Table) stop(item.line);
    read(item);
  }
}

}  // namespace

void ReadMapFile(std::string_view text, MapFile& file) {
  TomlItem root;
  ReadToml(text, root);
  for (const TomlItem& item : root.items) {
    if (item.key == "acceleration") {
      file.acceleration = ReadAcceleration(item, "the map");
    } else if (item.key == "case") {
      ReadNamed(item, [&](const TomlItem& each) { ReadCase(each, file); });
    } else if (item.key == "material") {
      ReadNamed(item, [&](const TomlItem& each) { ReadMaterial(each, file); });
    } else if (item.key == "group") {
      ReadNamed(item, [&](const TomlItem& each) { ReadGroup(each, file); });
    } else {
      RefuseKey(item, "a map", {"acceleration", "case", "material", "group"});
    }
  }
}

}  // namespace kvx
