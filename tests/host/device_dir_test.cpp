#include "host_test.hpp"
#include "platform/host/device_dir.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/nvram.h"
#include "platform/ucfg.h"

#include <sys/stat.h>

#include <fstream>
#include <string>

namespace fs = std::filesystem;
using namespace kova::host;

namespace {

std::string found(const fs::path &below, const std::string &expression) {
  std::FILE *find = popen(("find '" + below.string() + "' " + expression + " | sort").c_str(), "r");
  std::string text(10'000, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), find));
  pclose(find);
  return text;
}

// Everything that a change would show in.
std::string listing(const fs::path &dir) {
  return found(dir, "-printf '%p %M %s %T@ %l\\n'");
}

void put(const fs::path &file, const char *text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << text;
}

std::string refusal() {
  try {
    claim_device_dir();
  } catch (const std::runtime_error &reason) {
    return reason.what();
  }
  return "";
}

void use_all_stores() {
  EXPECT_EQ(0, nvram_bufset(0, "key", "value"));
  EXPECT_EQ(0, init_ucfg_ex());
  EXPECT_EQ(0, write_ucfg_xml(0, "/tarn/leaf", "text"));
  EXPECT_EQ(0, deinit_ucfg_ex(1));
}

class DeviceDir : public HostTest {
protected:
  const fs::path &dir = device.directory();
};

TEST_F(DeviceDir, IsClaimedForItsUserAlone) {
  for (const mode_t mask : {0U, 077U, 0777U}) {
    device.select(device.top() / std::to_string(mask));
    const mode_t usual = umask(mask);
    use_all_stores();
    umask(usual);
    EXPECT_EQ(device_dir_state(), DirState::device);
    EXPECT_EQ(found(device_dir(), "! -perm 0700 -type d -o ! -perm 0600 ! -type d"), "") << mask;
  }
  device.select();
  EXPECT_EQ(device_dir_state(), DirState::absent);
  fs::create_directory(dir);
  EXPECT_EQ(device_dir_state(), DirState::empty);
  put(dir / "kova-device", "kova device 1"); // a claim that was interrupted
  EXPECT_EQ(device_dir_state(), DirState::empty);
  EXPECT_EQ(refusal(), "");
  const std::string claimed = listing(dir);
  EXPECT_NE(claimed.find("drwx------"), std::string::npos) << claimed;
  EXPECT_EQ(refusal(), "");
  EXPECT_EQ(listing(dir), claimed);
}

TEST_F(DeviceDir, NothingIsTouchedInOneThatIsNoDevice) {
  const struct {
    const char *file, *text, *reason;
    DirState state;
  } dirs[] = {
      {"notes", "mine", "not a virtual device and not empty: nothing in it is touched", DirState::foreign},
      {"store/data.mdb", "mine", "not a virtual device", DirState::foreign},
      {"kova-device", "mine", "not a virtual device", DirState::foreign},
      {"kova-device", "kova device 999\n", "another version", DirState::outdated},
      {"run/created", "", "another version", DirState::outdated}};
  for (const auto &[file, text, reason, state] : dirs) {
    fs::remove_all(dir);
    put(dir / file, text);
    const auto before = listing(dir);
    EXPECT_EQ(device_dir_state(), state) << file << text;
    EXPECT_EQ(refusal().find(dir.string()), 0U);
    EXPECT_NE(refusal().find(reason), std::string::npos) << refusal();
    char out[256] = "old";
    EXPECT_NE("", console_of([&] {
                EXPECT_GT(0, nvram_bufset(0, "key", "value"));
                EXPECT_NE(1, nvram_bufget_string(0, "key", out, sizeof out));
                EXPECT_TRUE(nvram_entries().empty() && tree_leaves().empty());
                EXPECT_FALSE(nvram_remove(0, "key"));
                EXPECT_THROW(nvram_store({}), std::runtime_error);
                EXPECT_THROW(nvram_clear_section(0), std::runtime_error);
                EXPECT_THROW(tree_clear(), std::runtime_error);
                EXPECT_EQ(0, init_ucfg_ex());
                EXPECT_NE(0, read_ucfg_xml(0, "/tarn/leaf", out));
                EXPECT_NE(0, write_ucfg_xml(0, "/tarn/leaf", "text"));
                EXPECT_EQ(0, deinit_ucfg_ex(1));
              }));
    EXPECT_STREQ(out, "old");
    EXPECT_EQ(listing(dir), before) << file << text;
  }
}

TEST_F(DeviceDir, OfAnotherUserIsNeitherReadNorLocked) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become another";
  use_all_stores();
  for (const auto &entry : fs::recursive_directory_iterator(device.top()))
    fs::permissions(entry.path(), fs::perms(0777)); // whatever its owner allows
  EXPECT_TRUE(succeeded(start([this] {
    become_unprivileged(device.top(), Files::of_another);
    EXPECT_EQ(device_dir_state(), DirState::inaccessible);
    EXPECT_NE(refusal().find("another user"), std::string::npos) << refusal();
    char out[256];
    EXPECT_NE("", console_of([&] {
                EXPECT_GT(0, nvram_bufset(0, "key", "changed"));
                EXPECT_NE(1, nvram_bufget_string(0, "key", out, sizeof out));
              }));
  })));
}

} // namespace
