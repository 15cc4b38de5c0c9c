// The connection request's URL, and the backup.
#include "fake/fake.hpp"

#include <kova/management.h>

using fake::platform;
using fake::Strings;

namespace {

class Acs : public fake::Test {};

// ---- Backup

constexpr const char *backup_file = "/var/log/.backup_settings";

TEST_F(Acs, BackupWritesTheKeysInOrderAndRestorePutsThemBack) {
  platform.preset(0, "TR_ENABLE=1 TR_ACS_URL=http://a/?b=c TR_ACS_USER=u TR_INFORM_ENABLE=1 TR_OTHER=x "
                     "S_TR_ENABLE=0 S_TR_CLOUDKEY=key");
  platform.nvram[{0, "TR_ACS_PASS"}] = std::string(255, 'p'); // with its key too long for a line
  const fake::Store before = platform.nvram;
  EXPECT_EQ(backup_restore_settings(1), 0);
  EXPECT_EQ(
      platform.files[backup_file],
      "TR_ENABLE=1\nTR_ACS_URL=http://a/?b=c\nTR_ACS_USER=u\nTR_ACS_PASS=" + std::string(242, 'p') +
          "TR_INFORM_ENABLE=1\nTR_CLOUDKEY=\nS_TR_ENABLE=0\nS_TR_ACS_URL=\nS_TR_ACS_USER=\nS_TR_ACS_PASS=\n"
          "S_TR_INFORM_ENABLE=\nS_TR_CLOUDKEY=key\n");
  EXPECT_TRUE(platform.done.empty());
  platform.nvram.clear();
  EXPECT_EQ(backup_restore_settings(2), 0);
  EXPECT_EQ(platform.done.size(), 13U);
  EXPECT_EQ(platform.stored(0, "TR_OTHER"), "(missing)");
  for (const char *key : {"TR_ENABLE", "TR_ACS_URL", "S_TR_ENABLE", "S_TR_CLOUDKEY"})
    EXPECT_EQ(platform.stored(0, key), before.at({0, key}));
}

TEST_F(Acs, RestoreTakesAnyKeyAndSkipsWhatIsNone) {
  const std::string x(300, 'x'), line = "A=" + x.substr(0, 252); // fills what is read at once
  const std::pair<std::string, Strings> cases[] = {
      {"no separator\n\n\n=no key\n", {}},
      {"ANY KEY=a=b==\nB=\r\n", {"ANY KEY=a=b==", "B=\r"}}, // only newlines end a line
      {"A=last, without newline", {"A=last, without newline"}},
      {line + "\nB=2\n", {line, "B=2"}},
      {line + "B=2\n", {line, "B=2"}}, // the rest is a line of its own
      {"A=" + x + "\nB=2\n", {line, "B=2"}},
      {std::string("A=1\0=2\nB\0=3\nC=4\n", 16), {"A=1", "C=4"}}};
  for (const auto &[file, stored] : cases) {
    SCOPED_TRACE(file);
    platform.files[backup_file] = file;
    platform.done.clear();
    EXPECT_EQ(backup_restore_settings(2), 0);
    Strings expected;
    for (const std::string &setting : stored)
      expected.push_back("nvram 0 " + setting);
    expected.push_back(std::string("run rm -rf ") + backup_file);
    EXPECT_EQ(platform.done, expected);
  }
}

TEST_F(Acs, BackupFileThatIsMissingOrCannotBeOpened) {
  EXPECT_EQ(backup_restore_settings(2), 0);
  platform.files[backup_file] = "A=1\n";
  platform.files_open = false;
  EXPECT_EQ(backup_restore_settings(1), -1);
  EXPECT_EQ(backup_restore_settings(2), -1);
  for (const int mode : {0, 3, -1})
    EXPECT_EQ(backup_restore_settings(mode), 0);
  EXPECT_TRUE(platform.done.empty());
  EXPECT_EQ(platform.files[backup_file], "A=1\n");
}

} // namespace
