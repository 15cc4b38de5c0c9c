#include "host_test.hpp"
#include "platform/host/device_dir.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/nvram.h"

#include <fstream>
#include <string>
#include <vector>

using namespace kova::host;

namespace {

class Nvram : public HostTest {};

std::string value_of(int section, const std::string &key) {
  char *copy = nvram_bufget(section, key.c_str());
  std::string value = copy;
  std::free(copy);
  return value;
}

TEST_F(Nvram, KeepsSectionsApartAndInOrder) {
  const std::vector<NvramEntry> entries = {{-1, "z", "before"}, {0, "a", "1"}, {0, "ab", ""}, {9, "a", "9"}};
  nvram_store(std::vector<NvramEntry>(entries.rbegin(), entries.rend()));
  EXPECT_EQ(nvram_entries(), entries);
  EXPECT_EQ(nvram_entries(0), (std::vector<NvramEntry>{entries[1], entries[2]}));
  EXPECT_EQ(nvram_find(0, "ab"), "");
  nvram_clear_section(0);
  EXPECT_EQ(nvram_entries(), (std::vector<NvramEntry>{entries[0], entries[3]}));
  EXPECT_TRUE(nvram_remove(9, "a"));
  EXPECT_FALSE(nvram_remove(9, "a"));
  EXPECT_EQ(nvram_find(9, "a"), std::nullopt);
}

TEST_F(Nvram, ReadsWhatFitsAndLeavesTheRestAlone) {
  const std::string text(100'000, 'x');
  ASSERT_EQ(0, nvram_bufset(0, "long", text.c_str()));
  ASSERT_EQ(0, nvram_bufset(0, "empty", ""));
  EXPECT_EQ(value_of(0, "long"), text);
  EXPECT_EQ(value_of(0, "missing"), "");

  char buf[4] = "old";
  EXPECT_NE(1, nvram_bufget_string(0, "missing", buf, sizeof buf));
  EXPECT_NE(1, nvram_bufget_string(9, "long", buf, sizeof buf));
  EXPECT_NE(1, nvram_bufget_string(0, nullptr, buf, sizeof buf));
  EXPECT_NE(1, nvram_bufget_string(0, "long", buf, 0));
  EXPECT_STREQ(buf, "old");
  EXPECT_EQ(1, nvram_bufget_string(0, "long", buf, sizeof buf));
  EXPECT_STREQ(buf, "xxx");
  EXPECT_EQ(1, nvram_bufget_string(0, "empty", buf, sizeof buf));
  EXPECT_STREQ(buf, "");

  for (const auto &[stored, on] : {std::pair("1", 1), {"0", 0}, {"11", 0}, {"true", 0}, {"", 0}}) {
    nvram_bufset(0, "switch", stored);
    EXPECT_EQ(on, tarn_check_nvram_value(0, "switch")) << stored;
  }
  EXPECT_EQ(0, tarn_check_nvram_value(0, "missing"));
}

TEST_F(Nvram, RefusesWhatCannotBeStoredAndSaysSo) {
  const std::string longest(506, 'k');
  EXPECT_EQ(0, nvram_bufset(0, longest.c_str(), "fits"));
  EXPECT_EQ(value_of(0, longest), "fits");
  for (const std::string &key : {longest + "k", std::string(), std::string("a key")}) {
    const unsigned failed = nvram_failed_writes();
    const std::string console =
        console_of([&] { EXPECT_GT(0, nvram_bufset(0, key.c_str(), key == "a key" ? nullptr : "v")); });
    EXPECT_NE(console.find('"' + key + '"'), std::string::npos) << console;
    EXPECT_EQ(nvram_failed_writes(), failed + 1);
  }
  EXPECT_THROW(nvram_store(std::vector<NvramEntry>{{0, "good", "1"}, {0, "", "1"}}), std::runtime_error);
  EXPECT_EQ(nvram_entries().size(), 1U) << "all or none";
}

TEST_F(Nvram, FollowsTheDeviceWhereverItIs) {
  EXPECT_EQ(value_of(0, "key"), "");
  EXPECT_TRUE(nvram_entries().empty());
  EXPECT_FALSE(std::filesystem::exists(device.directory())) << "reading creates nothing";

  ASSERT_EQ(0, nvram_bufset(0, "key", "first"));
  device.select(device.top() / "other");
  EXPECT_EQ(value_of(0, "key"), "");
  ASSERT_EQ(0, nvram_bufset(0, "key", "second"));
  device.select();
  EXPECT_EQ(value_of(0, "key"), "first");

  std::filesystem::remove_all(device.directory());
  ASSERT_EQ(0, nvram_bufset(0, "new", "1"));
  EXPECT_EQ(nvram_entries(), (std::vector<NvramEntry>{{0, "new", "1"}}));
  std::filesystem::remove_all(device.directory());
  usleep(20'000); // readers look at the disk once a tick
  EXPECT_EQ(value_of(0, "new"), "");
}

TEST_F(Nvram, FullDiskFailsTheWriteAndKeepsTheRest) {
  ASSERT_EQ(0, nvram_bufset(0, "before", "kept"));
  const auto size = std::filesystem::file_size(device.store() / "data.mdb");
  EXPECT_TRUE(succeeded(start([size] {
    limit_file_size(size + 65'536);
    int stored = 0;
    const std::string big(5'000, 'x');
    const std::string console = console_of([&] {
      while (stored < 1000 && nvram_bufset(0, ("big" + std::to_string(stored)).c_str(), big.c_str()) == 0)
        ++stored;
    });
    EXPECT_LT(stored, 1000);
    EXPECT_NE(console.find("\"big" + std::to_string(stored) + "\""), std::string::npos) << console;
    EXPECT_EQ(nvram_entries().size(), static_cast<std::size_t>(stored) + 1);
    limit_file_size(RLIM_INFINITY);
    EXPECT_EQ(0, nvram_bufset(0, "after", "room again"));
  })));
  EXPECT_EQ(value_of(0, "before"), "kept");
  EXPECT_EQ(value_of(0, "after"), "room again");
}

TEST_F(Nvram, UnwritableDirectoryCanBeReadOnly) {
  ASSERT_EQ(0, nvram_bufset(0, "before", "kept"));
  device.set_writable(false);
  EXPECT_TRUE(succeeded(start([&] {
    become_unprivileged(device.top(), Files::own);
    EXPECT_EQ(value_of(0, "before"), "kept");
    const std::string console = console_of([] { EXPECT_GT(0, nvram_bufset(0, "before", "changed")); });
    EXPECT_NE(console.find("\"before\" of section 0: Permission denied"), std::string::npos) << console;
    EXPECT_EQ(value_of(0, "before"), "kept");
    device.select(device.directory() / "deeper");
    EXPECT_NE("", console_of([] { EXPECT_GT(0, nvram_bufset(0, "key", "value")); }));
    device.select();
    device.set_writable(true);
    EXPECT_EQ(0, nvram_bufset(0, "before", "changed"));
  })));
  EXPECT_EQ(value_of(0, "before"), "changed");
}

TEST_F(Nvram, ForeignFileIsRefusedAndLeftAlone) {
  claim_device_dir();
  std::filesystem::create_directories(device.store());
  const std::string text(20'000, '?');
  std::ofstream(device.store() / "data.mdb") << text;
  const std::string console = console_of([] {
    EXPECT_GT(0, nvram_bufset(0, "key", "value"));
    EXPECT_EQ(value_of(0, "key"), "");
    EXPECT_THROW(nvram_entries(), std::runtime_error);
  });
  EXPECT_NE(console.find("cannot store"), std::string::npos) << console;
  EXPECT_NE(console.find("cannot read"), std::string::npos) << console;
  EXPECT_EQ(std::filesystem::file_size(device.store() / "data.mdb"), text.size());
}

} // namespace
