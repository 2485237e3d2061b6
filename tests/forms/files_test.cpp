// The platform's files: appending, asking, deleting; what a failure says.
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

namespace fs = std::filesystem;

class Files : public ::testing::Test {
 protected:
  Files() {
    std::string pattern = (fs::temp_directory_path() / "tarvik-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
  }
  ~Files() override {
    std::error_code failed;
    fs::remove_all(folder, failed);
  }
  static std::string Read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }
  template <class F>
  static std::string Error(F&& act) {
    try {
      act();
    } catch (const data::Error& error) {
      return error.what();
    }
    return "(no error)";
  }
  // Each text names what was tried, on which path, and why it failed, in words and not in a foreign tongue.
  static void ExpectSpanish(const std::string& text, const std::string& act, const std::string& path) {
    EXPECT_EQ(text.find("No se puede " + act + " el archivo "), 0u) << text;
    EXPECT_NE(text.find(path), std::string::npos) << text;
    for (const char* foreign : {"File", "Directory", "directory", "not ", "too long", "Too many"}) {
      EXPECT_EQ(text.find(foreign, text.rfind(": ")), std::string::npos) << text;
    }
  }

  HeadlessPlatform platform;
  fs::path folder;
};

TEST_F(Files, WhatIsMadeBelongsToItsUserAndGroup) {
  const auto mode = [](const fs::path& path) { return static_cast<int>(fs::status(path).permissions()); };
  const fs::path outer = folder / "web";
  const mode_t before = ::umask(0);
  platform.AppendFile((outer / "dentro" / "dia.Log").string(), "x");
  MakePrivateFile((folder / "hoja").string());
  ::umask(before);
  EXPECT_EQ(mode(outer), 0770);
  EXPECT_EQ(mode(outer / "dentro"), 0770);
  EXPECT_EQ(mode(outer / "dentro" / "dia.Log"), 0660);
  EXPECT_EQ(mode(folder / "hoja"), 0660);
}

TEST_F(Files, WhatIsThereKeepsItsRights) {
  fs::create_directory(folder / "web");
  fs::permissions(folder / "web", fs::perms::all);
  std::ofstream(folder / "web" / "dia.Log") << "a";
  fs::permissions(folder / "web" / "dia.Log", fs::perms(0644));
  platform.AppendFile((folder / "web" / "dia.Log").string(), "b");
  MakePrivateFile((folder / "web" / "dia.Log").string());
  EXPECT_EQ(Read(folder / "web" / "dia.Log"), "ab");
  EXPECT_EQ(static_cast<int>(fs::status(folder / "web").permissions()), 0777);
  EXPECT_EQ(static_cast<int>(fs::status(folder / "web" / "dia.Log").permissions()), 0644);
  EXPECT_FALSE(MakeFolders((folder / "web").string()));
  EXPECT_EQ(MakeFolders((folder / "web" / "dia.Log" / "x").string()), std::errc::not_a_directory);
}

TEST_F(Files, AppendingCreatesTheFileAndItsFolderAndThenAdds) {
  const std::string path = (folder / "web" / "dia" / "a.Log").string();
  platform.AppendFile(path, "uno\r\n");
  platform.AppendFile(path, "dos\r\n");
  EXPECT_EQ(Read(path), "uno\r\ndos\r\n");
}

TEST_F(Files, BytesStandAsTheyAreGiven) {
  const std::string text("á\0\n\r\n", 6);
  platform.AppendFile((folder / "b").string(), text);
  EXPECT_EQ(Read(folder / "b"), text);
}

TEST_F(Files, ABackslashIsTheMachinesSeparator) {
  platform.AppendFile(folder.string() + "\\web\\TarvikError05032024.Log", "x");
  EXPECT_EQ(Read(folder / "web" / "TarvikError05032024.Log"), "x");
  EXPECT_TRUE(platform.FileExists(folder.string() + "\\web\\TarvikError05032024.Log"));
}

TEST_F(Files, AnEmptyTextCreatesAnEmptyFile) {
  platform.AppendFile((folder / "vacio").string(), "");
  EXPECT_TRUE(fs::exists(folder / "vacio"));
  EXPECT_EQ(Read(folder / "vacio"), "");
}

TEST_F(Files, AskingAndDeleting) {
  const std::string path = (folder / "hoja.htm").string();
  EXPECT_FALSE(platform.FileExists(path));
  platform.AppendFile(path, "x");
  EXPECT_TRUE(platform.FileExists(path));
  platform.DeleteFile(path);
  EXPECT_FALSE(platform.FileExists(path));
}

TEST_F(Files, APathBelowAFileIsRefusedInSpanish) {
  platform.AppendFile((folder / "archivo").string(), "x");
  const std::string path = (folder / "archivo" / "web" / "a.Log").string();
  ExpectSpanish(Error([&] { platform.AppendFile(path, "y"); }), "crear", path);
  EXPECT_FALSE(platform.FileExists(path));
  const std::string below = (folder / "archivo" / "a.Log").string();
  ExpectSpanish(Error([&] { platform.AppendFile(below, "y"); }), "crear", below);
  EXPECT_EQ(Read(folder / "archivo"), "x");
}

TEST_F(Files, AFolderIsNoFileToAppendTo) {
  ExpectSpanish(Error([&] { platform.AppendFile(folder.string(), "y"); }), "abrir", folder.string());
}

TEST_F(Files, ANameTooLongIsRefusedInSpanish) {
  const std::string path = (folder / std::string(300, 'x')).string();
  ExpectSpanish(Error([&] { platform.AppendFile(path, "y"); }), "abrir", path);
}

TEST_F(Files, AFolderWithContentsIsNotDeletedAndTheReasonIsInSpanish) {
  platform.AppendFile((folder / "dentro" / "a").string(), "x");
  ExpectSpanish(Error([&] { platform.DeleteFile((folder / "dentro").string()); }), "borrar", "dentro");
  EXPECT_TRUE(fs::exists(folder / "dentro" / "a"));
}

}  // namespace
}  // namespace tarvik::forms
