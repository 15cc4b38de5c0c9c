#include "host_test.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/nvram.h"
#include "platform/ucfg.h"

#include <sys/mman.h>

#include <atomic>
#include <new>
#include <optional>
#include <string>

using namespace kova::host;

namespace {

class Tree : public HostTest {
protected:
  ~Tree() override { deinit_ucfg_ex(0); }
};

std::optional<std::string> leaf(const char *path) {
  char text[256];
  if (read_ucfg_xml(0, path, text) != 0) return {};
  return text;
}

std::optional<std::string> stored_leaf(const char *path) {
  EXPECT_EQ(0, init_ucfg_ex());
  auto text = leaf(path);
  EXPECT_EQ(0, deinit_ucfg_ex(1));
  return text;
}

int store_leaf(const char *path, const std::string &text) {
  if (init_ucfg_ex() != 0) return -1;
  const int written = write_ucfg_xml(0, path, text.c_str());
  return deinit_ucfg_ex(1) == 0 ? written : -1;
}

TEST_F(Tree, TextsComeBackExactly) {
  for (const char *text : {"", " both ends ", "<x>&amp;\xff\x01\r\n"}) {
    ASSERT_EQ(0, store_leaf("/tarn/text", text));
    EXPECT_EQ(stored_leaf("/tarn/text"), text);
  }
  ASSERT_EQ(0, store_leaf("/tarn/text", std::string(300, 'x')));
  EXPECT_EQ(stored_leaf("/tarn/text"), std::string(255, 'x'));
}

TEST_F(Tree, PathsNameLeavesOnly) {
  EXPECT_EQ(stored_leaf("/tarn/a"), std::nullopt) << "a device without a tree has an empty one";
  EXPECT_FALSE(std::filesystem::exists(device.store()));

  nvram_bufset(0, "tarn/cm/a", "no leaf");
  const std::vector<TreeLeaf> all = {
      {"/other/x", "3"}, {"/tarn/cm-2/a", "2"}, {"/tarn/cm/a", "1"}, {"/tarn/cm/b", ""}};
  tree_store(std::vector<TreeLeaf>(all.rbegin(), all.rend()));
  EXPECT_EQ(tree_leaves("/"), all);
  EXPECT_EQ(tree_leaves("tarn/cm"), (std::vector<TreeLeaf>{all[2], all[3]}));
  EXPECT_EQ(tree_leaves("/tarn/cm/b"), std::vector<TreeLeaf>{all[3]});
  EXPECT_TRUE(tree_leaves("/tarn/cm/").empty() && tree_leaves("/tarn/c").empty());

  ASSERT_EQ(0, init_ucfg_ex());
  EXPECT_EQ(leaf("/tarn/cm/a"), "1");
  EXPECT_EQ(leaf("tarn/cm/b"), "");
  for (const char *none : {"", "/", "/tarn", "/tarn/cm", "/tarn/cm/", "/tarn/cm/d", "/tarn//cm/a", "/cm/a"})
    EXPECT_EQ(leaf(none), std::nullopt) << none;
  const std::string longest = "/" + std::string(510, 'x');
  EXPECT_EQ(0, write_ucfg_xml(0, longest.c_str(), ""));
  const unsigned failed = tree_failed_writes();
  const std::string too_long = longest + "x";
  const char *bad[] = {"",          "/tarn/cm", "/tarn/cm/a/x", "/tarn/cm/b/x/y", "/tarn/<x>",     "/tarn/ ",
                       "/tarn//cm", "//tarn/x", "/tarn/x/",     "/tarn/caf\xe9",  too_long.c_str()};
  for (const char *path : bad) {
    EXPECT_NE("", console_of([&] { EXPECT_NE(0, write_ucfg_xml(0, path, "text")); })) << path;
    EXPECT_THROW(tree_store(std::vector<TreeLeaf>{{"/new", "1"}, {path, "text"}}), std::runtime_error)
        << path;
  }
  EXPECT_EQ(tree_failed_writes(), failed + std::size(bad));
  EXPECT_EQ(0, write_ucfg_xml(0, "tarn/cm/c/new", "2"));
  EXPECT_EQ(leaf("/tarn/cm/c/new"), "2");
  console_of([&] { EXPECT_NE(0, write_ucfg_xml(0, "/tarn/cm/c", "over what is written already")); });
  EXPECT_EQ(0, write_ucfg_xml(0, "/tarn/cm/c/new", "3"));
  EXPECT_EQ(0, deinit_ucfg_ex(1));
  EXPECT_EQ(tree_leaves("/tarn/cm/c"), (std::vector<TreeLeaf>{{"/tarn/cm/c/new", "3"}}));
  tree_clear();
  EXPECT_TRUE(tree_leaves().empty());
  char text[16] = "";
  EXPECT_EQ(1, nvram_bufget_string(0, "tarn/cm/a", text, sizeof text)) << "settings are no leaves";
}

TEST_F(Tree, ClosingDecidesWhatStays) {
  ASSERT_EQ(0, store_leaf("/tarn/a", "1"));
  ASSERT_EQ(0, init_ucfg_ex());
  EXPECT_EQ(0, write_ucfg_xml(0, "/tarn/a", "2"));
  EXPECT_EQ(leaf("/tarn/a"), "2");
  EXPECT_EQ(0, deinit_ucfg_ex(0));
  EXPECT_EQ(leaf("/tarn/a"), std::nullopt) << "the tree is closed";
  EXPECT_NE(0, write_ucfg_xml(0, "/tarn/a", "3"));
  EXPECT_EQ(0, deinit_ucfg_ex(1));
  EXPECT_EQ(stored_leaf("/tarn/a"), "1");

  ASSERT_EQ(0, init_ucfg_ex());
  EXPECT_EQ(0, write_ucfg_xml(0, "/tarn/a", "for the first device"));
  device.select(device.top() / "other");
  EXPECT_NE("", console_of([] { EXPECT_NE(0, deinit_ucfg_ex(1)); }));
  EXPECT_EQ(stored_leaf("/tarn/a"), std::nullopt);
}

TEST_F(Tree, ProcessesKeepEachOthersChanges) {
  ASSERT_EQ(0, init_ucfg_ex());
  ASSERT_EQ(0, write_ucfg_xml(0, "/tarn/mine", "1"));
  EXPECT_EQ(leaf("/tarn/left"), std::nullopt); // and the tree stays open, as after a failed read
  const auto write_many = [](const char *path) {
    for (int i = 1; i <= 40; ++i)
      EXPECT_EQ(0, store_leaf(path, std::to_string(i)));
  };
  const pid_t writers[] = {start([&] { write_many("/tarn/left"); }),
                           start([&] { write_many("/tarn/right"); })};
  for (const pid_t writer : writers)
    EXPECT_TRUE(succeeded(writer));

  EXPECT_EQ(leaf("/tarn/left"), "40");
  EXPECT_EQ(0, init_ucfg_ex()) << "opening it again keeps what was written";
  EXPECT_EQ(leaf("/tarn/mine"), "1");
  EXPECT_TRUE(succeeded(start([] { EXPECT_EQ(stored_leaf("/tarn/mine"), std::nullopt); })))
      << "what is not kept yet is nobody else's, not even a child's";
  EXPECT_EQ(0, deinit_ucfg_ex(1));
  for (const auto &[path, text] : {std::pair("/tarn/left", "40"), {"/tarn/right", "40"}, {"/tarn/mine", "1"}})
    EXPECT_EQ(stored_leaf(path), text);
}

TEST_F(Tree, KilledProcessesLeaveAWholeTree) {
  auto &acknowledged = *new (mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                                  MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0);
  for (int round = 0; round < 50; ++round) {
    const int before = acknowledged;
    const pid_t writer = start([&] {
      for (int n = before + 1;; ++n) {
        init_ucfg_ex();
        write_ucfg_xml(0, "/tarn/first", std::to_string(n).c_str());
        write_ucfg_xml(0, "/tarn/second", std::to_string(n).c_str());
        if (deinit_ucfg_ex(1) == 0) acknowledged = n;
      }
    });
    while (acknowledged < before + (round + 1) % 3)
      usleep(50);
    usleep(static_cast<useconds_t>(round * 7919 % 1000));
    kill_now(writer);
    const auto leaves = tree_leaves();
    ASSERT_TRUE(leaves.size() == 2 || acknowledged == 0);
    if (leaves.empty()) continue;
    ASSERT_EQ(leaves.at(0).second, leaves.at(1).second);
    ASSERT_GE(std::stoi(leaves[0].second), acknowledged);
  }
}

TEST_F(Tree, AFailureKeepsNothing) {
  ASSERT_EQ(0, store_leaf("/tarn/a", "1"));
  ASSERT_EQ(0, init_ucfg_ex());
  ASSERT_EQ(0, write_ucfg_xml(0, "/tarn/a", "2"));
  ASSERT_EQ(0, write_ucfg_xml(0, "/tarn/b", "2"));
  EXPECT_TRUE(succeeded(start([] { EXPECT_EQ(0, store_leaf("/tarn/b/below", "3")); })));
  EXPECT_NE("", console_of([] { EXPECT_NE(0, deinit_ucfg_ex(1)); }));
  EXPECT_EQ(tree_leaves(), (std::vector<TreeLeaf>{{"/tarn/a", "1"}, {"/tarn/b/below", "3"}}));
}

} // namespace
