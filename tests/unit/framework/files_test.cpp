#include "framework/files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/unit_files.h"

namespace {

TEST(FileExists, IsTrueForAnythingThere) {
  const ScratchFolder folder;
  WriteContent(folder / "empty", "");
  std::filesystem::create_directory(folder / "folder");
  std::filesystem::create_symlink(folder / "empty", folder / "link");
  EXPECT_TRUE(FileExists((folder / "empty").c_str()));
  EXPECT_TRUE(FileExists((folder / "folder").c_str()));
  EXPECT_TRUE(FileExists((folder / "link").c_str()));
}

TEST(FileExists, IsFalseWhereNothingStands) {
  const ScratchFolder folder;
  std::filesystem::create_symlink(folder / "nowhere", folder / "link");
  WriteContent(folder / "file", "");
  EXPECT_FALSE(FileExists((folder / "missing").c_str()));
  EXPECT_FALSE(FileExists((folder / "link").c_str()));
  EXPECT_FALSE(FileExists((folder / "file" / "below").c_str()));
  EXPECT_FALSE(FileExists(""));
}

}  // namespace
