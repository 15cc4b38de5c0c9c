#include "platform/host/device_dir.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/nvram.h"
#include "platform/ucfg.h"
#include "temp_device.hpp"

#include <sys/stat.h>

#include <fstream>
#include <map>
#include <string>

namespace fs = std::filesystem;
using namespace kova::host;

namespace {

class DeviceDir : public TempDevice {
protected:
  fs::path dir() const { return top / device; }
  void put(const char *name, const char *text) const {
    fs::create_directories((dir() / name).parent_path());
    std::ofstream(dir() / name) << text;
  }
  // Everything that a change would show in.
  std::map<std::string, std::string> listing() const {
    std::map<std::string, std::string> all;
    const auto add = [&all](const fs::path &path) {
      struct stat status = {};
      lstat(path.c_str(), &status);
      all[path] = std::to_string(status.st_mode) + ' ' + std::to_string(status.st_size) + ' ' +
                  std::to_string(status.st_mtim.tv_sec) + '.' + std::to_string(status.st_mtim.tv_nsec);
    };
    add(dir());
    for (const auto &entry : fs::recursive_directory_iterator(dir()))
      add(entry.path());
    return all;
  }
  static std::string refusal() {
    try {
      claim_device_dir();
    } catch (const std::runtime_error &reason) {
      return reason.what();
    }
    return "";
  }
};

mode_t mode_of(const fs::path &path) {
  struct stat status = {};
  EXPECT_EQ(0, lstat(path.c_str(), &status)) << path;
  return status.st_mode & ALLPERMS;
}

void use_all_stores() {
  nvram_bufset(0, "key", "value");
  EXPECT_EQ(0, init_ucfg_ex());
  EXPECT_EQ(0, write_ucfg_xml(0, "/tarn/leaf", "text"));
  EXPECT_EQ(0, deinit_ucfg_ex(1));
}

TEST_F(DeviceDir, IsClaimedForItsUserAlone) {
  const mode_t usual = umask(0);
  for (const mode_t mask : {0U, 077U}) {
    choose("m" + std::to_string(mask));
    umask(mask);
    use_all_stores();
    umask(usual);
    EXPECT_EQ(device_dir_state(), DirState::device);
    EXPECT_EQ(mode_of(device_dir()), 0700U);
    for (const auto &entry : fs::recursive_directory_iterator(device_dir()))
      EXPECT_EQ(mode_of(entry.path()), entry.is_directory() ? 0700U : 0600U) << entry.path() << mask;
  }
  choose(device);
  EXPECT_EQ(device_dir_state(), DirState::absent);
  fs::create_directory(dir());
  EXPECT_EQ(device_dir_state(), DirState::empty);
  put("kova-device", "kova dev"); // a claim that was interrupted
  EXPECT_EQ(device_dir_state(), DirState::empty);
  EXPECT_EQ(refusal(), "");
  EXPECT_EQ(mode_of(dir()), 0700U);
  const auto claimed = listing();
  EXPECT_EQ(refusal(), "");
  EXPECT_EQ(listing(), claimed);
}

TEST_F(DeviceDir, NothingIsTouchedInOneThatIsNoDevice) {
  const struct {
    const char *file, *text, *reason;
    DirState state;
  } dirs[] = {
      {"notes", "mine", "not a virtual device and not empty: nothing in it is touched", DirState::foreign},
      {"store/nvram.mdb", "mine", "not a virtual device", DirState::foreign},
      {"kova-device", "mine", "not a virtual device", DirState::foreign},
      {"kova-device", "kova device 999\n", "another version", DirState::outdated},
      {"run/created", "", "another version", DirState::outdated}};
  for (const auto &[file, text, reason, state] : dirs) {
    fs::remove_all(dir());
    put(file, text);
    const auto before = listing();
    EXPECT_EQ(device_dir_state(), state) << file << text;
    EXPECT_EQ(refusal().find(dir()), 0U);
    EXPECT_NE(refusal().find(reason), std::string::npos) << refusal();
    char out[256] = "old";
    EXPECT_NE("", console_of([&] {
                EXPECT_GT(0, nvram_bufset(0, "key", "value"));
                EXPECT_NE(1, nvram_bufget_string(0, "key", out, sizeof out));
                EXPECT_TRUE(nvram_entries().empty() && tree_leaves().empty());
                EXPECT_FALSE(nvram_remove(0, "key"));
                EXPECT_THROW(nvram_store({}), std::runtime_error);
                EXPECT_THROW(nvram_clear_section(0), std::runtime_error);
                EXPECT_EQ(0, init_ucfg_ex());
                EXPECT_NE(0, read_ucfg_xml(0, "/tarn/leaf", out));
                EXPECT_EQ(0, write_ucfg_xml(0, "/tarn/leaf", "text"));
                EXPECT_NE(0, deinit_ucfg_ex(1));
              }));
    EXPECT_STREQ(out, "old");
    EXPECT_EQ(listing(), before) << file << text;
  }
}

TEST_F(DeviceDir, OfAnotherUserIsNeitherReadNorLocked) {
  use_all_stores();
  EXPECT_TRUE(succeeded(start([this] {
    if (geteuid() != 0) return; // only root can become another
    fs::permissions(top, fs::perms(0755));
    fs::permissions(dir(), fs::perms(0755));
    become_unprivileged(top, Files::of_another);
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
