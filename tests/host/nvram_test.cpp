#include "platform/host/device_dir.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/nvram.h"
#include "temp_device.hpp"

#include <string>
#include <vector>

using namespace kova::host;

namespace {

class Nvram : public TempDevice {};

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
  const std::string longest(507, 'k');
  EXPECT_EQ(0, nvram_bufset(0, longest.c_str(), "fits"));
  EXPECT_EQ(value_of(0, longest), "fits");
  const struct {
    std::string key;
    const char *value, *reason;
  } refused[] = {{longest + "k", "v", "too long"}, {"", "v", "empty"}, {"a key", nullptr, "no value"}};
  for (const auto &bad : refused) {
    const std::string console =
        console_of([&] { EXPECT_GT(0, nvram_bufset(0, bad.key.c_str(), bad.value)); });
    EXPECT_NE(console.find('"' + bad.key + '"'), std::string::npos) << console;
    EXPECT_NE(console.find(bad.reason), std::string::npos) << console;
  }
  EXPECT_THROW(nvram_store(std::vector<NvramEntry>{{0, "good", "1"}, {0, "", "1"}}), std::runtime_error);
  EXPECT_EQ(nvram_entries().size(), 1U) << "all or none";
}

TEST_F(Nvram, FollowsTheDeviceWhereverItIs) {
  EXPECT_EQ(value_of(0, "key"), "");
  EXPECT_TRUE(nvram_entries().empty());
  EXPECT_FALSE(std::filesystem::exists(top / device)) << "reading creates nothing";

  ASSERT_EQ(0, nvram_bufset(0, "key", "first"));
  choose("other");
  EXPECT_EQ(value_of(0, "key"), "");
  ASSERT_EQ(0, nvram_bufset(0, "key", "second"));
  choose(device);
  EXPECT_EQ(value_of(0, "key"), "first");

  std::filesystem::remove_all(top / device);
  ASSERT_EQ(0, nvram_bufset(0, "new", "1"));
  EXPECT_EQ(nvram_entries(), (std::vector<NvramEntry>{{0, "new", "1"}}));
  std::filesystem::remove_all(top / device);
  usleep(20'000); // readers look at the disk once a tick
  EXPECT_EQ(value_of(0, "new"), "");
}

// Two entries that are always stored together, so every reading must find them equal.
void expect_a_pair() {
  const auto all = nvram_entries(0);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_TRUE(all[0].value == all[1].value);
}

TEST_F(Nvram, ReadersSeeWholeChangesWhileOthersWrite) {
  const auto write_pairs = [](char who) {
    for (std::size_t i = 1; i <= 80; ++i) {
      const std::string text(30'000 + i, who);
      nvram_store(std::vector<NvramEntry>{{0, "left", text}, {0, "right", text}});
    }
  };
  write_pairs('0');
  expect_a_pair(); // opens the store before the others are forked
  SharedNumber finished;
  const pid_t writers[] = {start([&] { write_pairs('a'); }), start([&] { write_pairs('b'); })};
  const pid_t reader = start([&] {
    while (*finished == 0)
      expect_a_pair();
  });
  for (const pid_t writer : writers) {
    while (is_running(writer))
      expect_a_pair();
    EXPECT_TRUE(succeeded(writer));
  }
  *finished = 1;
  EXPECT_TRUE(succeeded(reader));
}

TEST_F(Nvram, FullDiskFailsTheWriteAndKeepsTheRest) {
  ASSERT_EQ(0, nvram_bufset(0, "before", "kept"));
  const auto size = std::filesystem::file_size(store() / "nvram.mdb");
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
  set_writable(false);
  EXPECT_TRUE(succeeded(start([&] {
    become_unprivileged(top, Files::own);
    EXPECT_EQ(value_of(0, "before"), "kept");
    const std::string console = console_of([] { EXPECT_GT(0, nvram_bufset(0, "before", "changed")); });
    EXPECT_NE(console.find("\"before\" of section 0: Permission denied"), std::string::npos) << console;
    EXPECT_EQ(value_of(0, "before"), "kept");
    choose(std::string(device) + "/deeper");
    EXPECT_NE("", console_of([] { EXPECT_GT(0, nvram_bufset(0, "key", "value")); }));
    choose(device);
    set_writable(true);
    EXPECT_EQ(0, nvram_bufset(0, "before", "changed"));
  })));
  EXPECT_EQ(value_of(0, "before"), "changed");
}

TEST_F(Nvram, ForeignFileIsRefusedAndLeftAlone) {
  claim_device_dir();
  std::filesystem::create_directories(store());
  const std::string text(20'000, '?');
  std::FILE *file = std::fopen((store() / "nvram.mdb").c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::fputs(text.c_str(), file);
  std::fclose(file);
  const std::string console = console_of([] {
    EXPECT_GT(0, nvram_bufset(0, "key", "value"));
    EXPECT_EQ(value_of(0, "key"), "");
    EXPECT_THROW(nvram_entries(), std::runtime_error);
  });
  EXPECT_NE(console.find("cannot store"), std::string::npos) << console;
  EXPECT_NE(console.find("cannot read"), std::string::npos) << console;
  EXPECT_EQ(std::filesystem::file_size(store() / "nvram.mdb"), text.size());
}

} // namespace
