// The rooms of the desktop: each folder of desktop/ names the rooms that it may look into, and no file looks
// into another. docs/architecture.md tells what stands in which room.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace tarvik::tests {
namespace {

namespace fs = std::filesystem;

const fs::path kRaiz = TARVIK_SOURCE_DIR;

struct Room {
  std::string name;
  std::set<std::string> sees;  // beside itself
};

// From the ground up: a room sees only rooms that stand before it, so there is no circle.
const std::vector<Room> kRooms{
    {"style", {}},
    {"reading", {}},
    {"boxes", {"style"}},
    {"platform", {"style", "boxes"}},
    {"printing", {"style", "boxes"}},
    {"scanner", {"style", "reading", "boxes"}},
    {"screens", {"style", "reading", "platform", "printing", "scanner"}},
    {"lists", {"style", "reading", "boxes"}},
    {"pickers", {"style", "screens"}},
    {"windows", {"style", "reading", "boxes", "platform"}},
    {"frame", {"style", "reading", "platform", "screens", "lists", "windows"}},
    {"program",
     {"style", "reading", "boxes", "platform", "printing", "scanner", "screens", "lists", "pickers",
      "windows", "frame"}},
};

struct Look {
  std::string file;  // "boxes/boxes.cpp"
  std::string from;  // "boxes"; empty for what stands at the door: office.h, main.cpp
  std::string into;
};

std::string RoomOf(const std::string& file) {
  const auto slash = file.find('/');
  return slash == std::string::npos ? "" : file.substr(0, slash);
}

std::vector<Look> Looks() {
  const std::regex include("^\\s*#include \"desktop/([^\"]+)\"");
  std::vector<Look> looks;
  for (const auto& entry : fs::recursive_directory_iterator(kRaiz / "desktop")) {
    const std::string extension = entry.path().extension();
    if (extension != ".h" && extension != ".cpp") continue;
    const std::string name = fs::relative(entry.path(), kRaiz / "desktop").generic_string();
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) {
      std::smatch match;
      if (std::regex_search(line, match, include)) looks.push_back({name, RoomOf(name), RoomOf(match[1])});
    }
  }
  return looks;
}

TEST(Rooms, ARoomSeesOnlyRoomsThatStandBeforeIt) {
  std::set<std::string> before;
  for (const Room& room : kRooms) {
    for (const std::string& seen : room.sees) {
      EXPECT_TRUE(before.contains(seen)) << room.name << " would see " << seen;
    }
    before.insert(room.name);
  }
}

TEST(Rooms, NoFileOfTheDesktopLooksIntoARoomThatItsOwnDoesNotName) {
  std::map<std::string, std::set<std::string>> sees;
  for (const Room& room : kRooms) sees[room.name] = room.sees;
  const auto looks = Looks();
  for (const Look& look : looks) {
    if (look.from.empty() || look.into.empty() || look.from == look.into) continue;
    EXPECT_TRUE(sees[look.from].contains(look.into))
        << "desktop/" << look.file << " looks into " << look.into;
  }
  EXPECT_GT(looks.size(), 150u);
}

// A name that nobody uses any more would let a later file in unseen.
TEST(Rooms, EveryRoomThatIsNamedIsLookedInto) {
  std::set<std::pair<std::string, std::string>> used;
  for (const Look& look : Looks()) used.insert({look.from, look.into});
  for (const Room& room : kRooms) {
    for (const std::string& seen : room.sees) {
      EXPECT_TRUE(used.contains({room.name, seen})) << room.name << " no longer looks into " << seen;
    }
  }
}

// Beside the rooms only what belongs to none: the program's start, and what every window works with.
TEST(Rooms, EveryFileOfTheDesktopStandsInARoom) {
  std::set<std::string> rooms;
  for (const Room& room : kRooms) rooms.insert(room.name);
  std::set<std::string> at_the_door;
  for (const auto& entry : fs::directory_iterator(kRaiz / "desktop")) {
    const std::string name = entry.path().filename();
    if (!entry.is_directory()) {
      at_the_door.insert(name);
    } else if (name != "resources") {
      EXPECT_TRUE(rooms.erase(name)) << "desktop/" << name << " is no room that is known";
    }
  }
  EXPECT_TRUE(rooms.empty()) << *rooms.begin() << " is named and not there";
  EXPECT_EQ(at_the_door, (std::set<std::string>{"CMakeLists.txt", "main.cpp", "office.h"}));
}

// What kind a control or its widget is, is asked once: where its tie is made.
TEST(Rooms, NoViewOfAScreenAsksWhatKindAControlIs) {
  const std::regex cast(
      "dynamic_cast<[^>]*(ControlKind|forms::(TextBox|RichTextBox|Label|Button|CheckBox|ComboBox|DatePicker|"
      "FlexGrid|WebBrowser|SearchBox))|qobject_cast<[^>]*(QLineEdit|QTextEdit|QLabel|QPushButton|QCheckBox|"
      "QAbstractButton|QDateEdit|QComboBox|GridView)");
  std::vector<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(kRaiz / "desktop/screens")) {
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) {
      if (std::regex_search(line, cast)) found.push_back(entry.path().filename().string());
    }
  }
  EXPECT_EQ(found, std::vector<std::string>{"screen_view.cpp"});
}

}  // namespace
}  // namespace tarvik::tests
