#include "host_test.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/ucfg.h"

#include <fstream>
#include <optional>
#include <string>

using namespace kova::host;

namespace {

class Tree : public HostTest {
protected:
  ~Tree() override { deinit_ucfg_ex(0); }

  std::string file_content() const {
    std::ifstream file(device.store() / "tree.xml", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
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
  const std::string texts[] = {"",
                               " both ends ",
                               "\n two \r\n lines\r",
                               "\"a\" 'b' <x>&amp;</x>",
                               "]]><!-- -->",
                               "caf\xe9\xff",
                               "\x01\x1f\x7f\t",
                               "&#13;&lt;? %s %n $(x)",
                               std::string(255, '<')};
  int count = 0;
  for (const std::string &text : texts) {
    const std::string path = "/tarn/texts/t" + std::to_string(count++);
    ASSERT_EQ(0, store_leaf(path.c_str(), text));
  }
  const auto leaves = tree_leaves("tarn/texts");
  ASSERT_EQ(leaves.size(), std::size(texts));
  for (std::size_t i = 0; i < leaves.size(); ++i) {
    EXPECT_EQ(leaves[i].second, texts[i]);
    EXPECT_EQ(stored_leaf(leaves[i].first.c_str()), texts[i]);
  }
  ASSERT_EQ(0, store_leaf("/tarn/texts/long", std::string(300, 'x')));
  EXPECT_EQ(stored_leaf("/tarn/texts/long"), std::string(255, 'x'));
}

TEST_F(Tree, PathsNameLeavesOnly) {
  EXPECT_EQ(stored_leaf("/tarn/a"), std::nullopt) << "a device without a tree has an empty one";
  EXPECT_FALSE(std::filesystem::exists(device.store() / "tree.xml"));

  tree_replace("<tarn><!-- kept --><cm><a>1</a><b/><c>\n  </c></cm></tarn>");
  ASSERT_EQ(0, init_ucfg_ex());
  EXPECT_EQ(leaf("/tarn/cm/a"), "1");
  EXPECT_EQ(leaf("tarn/cm/b"), "");
  for (const char *none : {"", "/", "/tarn", "/tarn/cm", "/tarn/cm/", "/tarn/cm/d", "/tarn//cm/a", "/cm/a"})
    EXPECT_EQ(leaf(none), std::nullopt) << none;
  for (const char *bad :
       {"", "/tarn/cm", "/tarn/cm/a/x", "/tarn/cm/1st", "/tarn/<x>", "/tarn/cm/", "/other/x"})
    EXPECT_NE("", console_of([&] { EXPECT_NE(0, write_ucfg_xml(0, bad, "text")); })) << bad;
  EXPECT_EQ(0, write_ucfg_xml(0, "tarn/cm/c/new", "2"));
  EXPECT_EQ(leaf("/tarn/cm/c/new"), "2");
  EXPECT_EQ(0, deinit_ucfg_ex(1));
  EXPECT_NE(file_content().find("<!-- kept -->"), std::string::npos);
  const std::vector<std::pair<std::string, std::string>> all = {
      {"/tarn/cm/a", "1"}, {"/tarn/cm/b", ""}, {"/tarn/cm/c/new", "2"}};
  EXPECT_EQ(tree_leaves("/"), all);
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
}

TEST_F(Tree, ProcessesKeepEachOthersChanges) {
  ASSERT_EQ(0, init_ucfg_ex());
  ASSERT_EQ(0, write_ucfg_xml(0, "/tarn/mine", "1")); // and stays open, as after a failed read
  const auto write_many = [](const char *path) {
    for (int i = 1; i <= 40; ++i)
      EXPECT_EQ(0, store_leaf(path, std::to_string(i)));
  };
  const pid_t writers[] = {start([&] { write_many("/tarn/left"); }),
                           start([&] { write_many("/tarn/right"); })};
  for (const pid_t writer : writers)
    EXPECT_TRUE(succeeded(writer));

  EXPECT_EQ(leaf("/tarn/left"), std::nullopt);
  EXPECT_EQ(0, init_ucfg_ex()) << "opening it again shows what is on disk now";
  EXPECT_EQ(leaf("/tarn/left"), "40");
  EXPECT_EQ(leaf("/tarn/mine"), "1");
  EXPECT_TRUE(succeeded(start([] { EXPECT_EQ(stored_leaf("/tarn/mine"), std::nullopt); })))
      << "what is not kept yet is nobody else's, not even a child's";
  EXPECT_EQ(0, deinit_ucfg_ex(1));
  for (const auto &[path, text] : {std::pair("/tarn/left", "40"), {"/tarn/right", "40"}, {"/tarn/mine", "1"}})
    EXPECT_EQ(stored_leaf(path), text);
}

TEST_F(Tree, KilledProcessesLeaveAWholeFile) {
  SharedNumber acknowledged;
  for (int round = 0; round < 50; ++round) {
    const int before = *acknowledged;
    const pid_t writer = start([&] {
      for (int n = before + 1;; ++n) {
        init_ucfg_ex();
        write_ucfg_xml(0, "/tarn/first", std::to_string(n).c_str());
        write_ucfg_xml(0, "/tarn/second", std::to_string(n).c_str());
        if (deinit_ucfg_ex(1) == 0) *acknowledged = n;
      }
    });
    kill_after(writer, *acknowledged, before + (round + 1) % 3, round * 7919 % 1000);
    const auto leaves = tree_leaves();
    ASSERT_EQ(leaves.size(), 2U);
    ASSERT_EQ(leaves[0].second, leaves[1].second);
    ASSERT_GE(std::stoi(leaves[0].second), *acknowledged);
  }
}

TEST_F(Tree, FailuresLeaveTheFileAsItWas) {
  ASSERT_EQ(0, store_leaf("/tarn/a", "1"));
  const std::string before = file_content();
  EXPECT_TRUE(succeeded(start([] {
    limit_file_size(4096);
    EXPECT_NE("", console_of([] { EXPECT_NE(0, store_leaf("/tarn/a", std::string(10'000, 'x'))); }));
    EXPECT_EQ(stored_leaf("/tarn/a"), "1");
  })));
  EXPECT_EQ(file_content(), before);
  EXPECT_FALSE(std::filesystem::exists(device.store() / "tree.xml.new"));

  device.set_writable(false);
  EXPECT_TRUE(succeeded(start([this] {
    become_unprivileged(device.top(), Files::own);
    EXPECT_EQ(stored_leaf("/tarn/a"), "1");
    const std::string console = console_of([] { EXPECT_NE(0, store_leaf("/tarn/a", "2")); });
    EXPECT_NE(console.find("Permission denied"), std::string::npos) << console;
  })));
  device.set_writable(true);
  EXPECT_EQ(file_content(), before);

  for (const char *xml : {"", "<tarn>", "text", "<a/><b/>"})
    EXPECT_THROW(tree_replace(xml), std::runtime_error) << xml;
  EXPECT_EQ(file_content(), before);

  ASSERT_EQ(0, init_ucfg_ex());
  ASSERT_EQ(0, write_ucfg_xml(0, "/tarn/a", "2"));
  std::ofstream(device.store() / "tree.xml") << "<tarn><a>by hand";
  EXPECT_NE("", console_of([] {
              EXPECT_NE(0, init_ucfg_ex());
              EXPECT_NE(0, deinit_ucfg_ex(1));
            }));
  EXPECT_EQ(file_content(), "<tarn><a>by hand");
}

} // namespace
