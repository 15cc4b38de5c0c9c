// The instance, the agent's start, plain getters, and what the operation mode says.
#include "fake/fake.hpp"
#include "src/frame/settings.hpp"
#include "src/frame/tree.hpp"

#include <sys/stat.h>

#include <cstring>
#include <filesystem>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Startup : public fake::Test {};

TEST_F(Startup, InstanceAndInterface) {
  for (const std::string name : {"0123456789012345678901234567890123456789", "eth0", ""}) {
    setBindInterface(name.c_str());
    std::string padded = name.substr(0, 31);
    padded.resize(32);
    EXPECT_EQ(std::string(gBindInterface, sizeof gBindInterface), padded);
  }
  constexpr kova::OwnKey key = OWN("TR_ACS_URL");
  EXPECT_STREQ(key.current(), "TR_ACS_URL");
  setSecondaryInstance();
  EXPECT_EQ(gSecondaryInstance, 1U);
  EXPECT_STREQ(key.current(), "S_TR_ACS_URL");
}

TEST_F(Startup, AnAnswerFillsTheBufferToItsEnd) {
  platform.nvram[{0, "key"}] = "abc";
  char buf[] = "######";
  EXPECT_EQ(kova::answer_stored("key", buf, 5), 0);
  EXPECT_EQ(std::memcmp(buf, "abc\0\0#", 6), 0);
  EXPECT_EQ(kova::answer_stored("key", nullptr, 5), -1);
}

TEST_F(Startup, ATreeThatCannotBeReadLeavesTheBufferAlone) {
  kova_getter *const leaf = [](char *buf, unsigned int buflen) {
    return kova::get_tree_leaf("/tarn/leaf", buf, buflen);
  };
  platform.tree["tarn/leaf"] = std::string(300, 'v');
  EXPECT_EQ(get(leaf), std::string(255, 'v'));
  platform.tree.clear();
  platform.done.clear();
  for (const bool opens : {false, true}) {
    platform.tree_opens = opens;
    int result = 0;
    EXPECT_EQ(get(leaf, result), std::string(256, '#'));
    EXPECT_EQ(result, -1);
  }
  EXPECT_EQ(platform.done, Strings{"tree open"}); // and not closed
}

TEST_F(Startup, FirstRunIsRecordedOnce) {
  struct stat
      facts; // of the link's target by name: an emulator answers the link itself with its own executable
  ASSERT_EQ(stat(std::filesystem::read_symlink("/proc/self/exe").c_str(), &facts), 0);
  const std::string tag = "nvram 0 TR_TAG=" + std::to_string(facts.st_mtime);
  const Strings corrected = {tag, "nvram 0 TR_INFORM_INTERVAL=300", "nvram 0 S_TR_INFORM_INTERVAL=300"};
  for (const auto &[interval, done] : std::initializer_list<std::pair<const char *, Strings>>{
           {"3000", corrected}, {"30000", {tag}}, {"", {tag}}}) {
    platform.nvram = {{{0, "TR_TAG"}, "1"}, {{0, "TR_INFORM_INTERVAL"}, interval}};
    platform.done.clear();
    EXPECT_EQ(init_parameters(), 0);
    EXPECT_EQ(platform.done, done) << interval;
    platform.nvram[{0, "TR_INFORM_INTERVAL"}] = "3000";
    EXPECT_EQ(init_parameters(), 0);
    EXPECT_EQ(isFTR(), 0);
    EXPECT_EQ(platform.done, done) << "a second start";
  }
  platform.nvram.clear();
  platform.done.clear();
  platform.executable = false;
  EXPECT_EQ(init_parameters(), -1);
  EXPECT_TRUE(platform.done.empty());
  platform.executable = true;
  EXPECT_EQ(isFTR(), 1);
  EXPECT_EQ(platform.done, Strings{tag});
}

TEST_F(Startup, OperationModeGoesByTheFirstDigit) {
  EXPECT_EQ(kova_get_oper_mode() + _getOperationMode(), 0);
  std::string modes, modes_without_3;
  for (const char *text : {"0", "1", "21", "3", "4", "7", " 2", "-1", ""}) {
    platform.nvram[{0, "oper_mode"}] = text;
    modes += std::to_string(kova_get_oper_mode());
    modes_without_3 += std::to_string(_getOperationMode());
  }
  EXPECT_EQ(modes, "012300000");
  EXPECT_EQ(modes_without_3, "012000000");
}

TEST_F(Startup, DhcpRelayAndWanInterface) {
  const auto not_supported = [](const char *settings) {
    platform.preset(0, settings);
    return checkDHCPRelayIsNotSupport();
  };
  EXPECT_EQ(checkDHCPRelayIsNotSupport(), 1); // nothing stored
  for (const char *settings :
       {"oper_mode=2 vpn_type=0 bcp_enable=1 gre_type=0", "vpn_type=1 bcp_enable=0 gre_type=1",
        "oper_mode=0 vpn_type=2", "oper_mode=21"})
    EXPECT_EQ(not_supported(settings), 1) << settings;
  for (const char *settings : {"oper_mode=1 vpn_type=0 bcp_enable=1 gre_type=1", "oper_mode=2 vpn_type=2",
                               "vpn_type=0 bcp_enable=0", "vpn_type=1 bcp_enable=1 gre_type=0"})
    EXPECT_EQ(not_supported(settings), 0) << settings;

  EXPECT_EQ(getWanIfName(), 0);
  std::string numbers;
  for (const char *name : {"eth0.1", "eth0.2", "br-eth0.10", "eth0", "lte0pdn0", "0.1"}) {
    platform.nvram[{9, "curr_data_if"}] = name;
    numbers += std::to_string(getWanIfName());
  }
  EXPECT_EQ(numbers, "121000");
}

} // namespace
