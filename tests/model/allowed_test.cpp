// What the model tells of a parameter's values, against its accessors on a device: what is told as allowed is taken
// and reads as it was set; what lies just outside is refused, stores nothing and asks nothing of the device.
#include "device/booted_device.hpp"
#include "device/log.hpp"
#include "model/model.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/nvram.h"
#include "request/allowed.hpp"
#include "request/configuration.hpp"
#include "request/interlocks.hpp"
#include "request/pending_values.hpp"
#include "request/request.hpp"
#include "request/value_types.hpp"
#include "support/match.hpp"

#include <kova/transaction.h>

#include <algorithm>
#include <set>

// Some setters wait for what they restart.
extern "C" unsigned sleep(unsigned) {
  return 0;
}

namespace kova::model {
namespace {

using Texts = std::vector<std::string>;

// One at least for every rule that has neither words nor bounds.
// clang-format off
const Texts forms = {"1", "text", "a text with blanks", "Corr3ct horse", "192.168.1.20", "192.168.1.150", "255.255.255.0",
                     "00:1a:2B:3C:4D:5E", "MEZ_001", "+05:45", "-14:59", "http://acs.example.com:7547/", "host.example.com",
                     "2026-03-29T02:00:00", "3,1300", "1300,10", "G711U,G711A,G729"};
// clang-format on

// Read otherwise than they are set.
const std::string converted =
    R"(.*\.(X_KOVA_LAN\.Enable|)"                                     // whether the port has a link
    R"(STUNUsername|\w*NotificationLimit|\w*(Listen|Speaker)Gain|)"   // told never, or by the other end
    R"(X_KOVA_MapnQoS|ScanMode|)"                                     // taken without effect
    R"(PCI\w*Lock|Installation\.Height|DaylightSavings(Start|End)))"; // brought into the stored form
// Allowed by themselves, but not beside what the others are.
const std::string combined = R"(.*\.(WLANConfiguration\.1\.X_KOVA_Mode|X_KOVA_APN\.\d\.(ApplyTo|Enable)))";
struct Samples {
  Texts inside, outside, some; // of the last at least one is taken
};

Samples samples_of(const request::AllowedValues &allowed, Type type) {
  Samples found;
  if (type != Type::List) // whose words are those of an item
    for (const auto &[word, meaning] : allowed.words) {
      found.inside.push_back(word);
      found.outside.push_back(word + "x");
    }
  if (allowed.range) {
    const auto [least, most] = *allowed.range;
    found.inside.insert(found.inside.end(), {std::to_string(least), std::to_string(most)});
    found.outside.insert(found.outside.end(), {std::to_string(least - 1), std::to_string(most + 1)});
  }
  if (allowed.length) {
    const auto [least, most] = *allowed.length;
    found.inside.insert(found.inside.end(), {std::string(least, '1'), std::string(most, '1')});
    found.outside.emplace_back(most + 1, '1');
    if (least > 0) found.outside.emplace_back(least - 1, '1');
  }
  const std::string pattern = allowed.pattern.empty() ? "[^]*" : allowed.pattern;
  for (const std::string &form : forms)
    if (!test::matches(form, pattern))
      found.outside.push_back(form);
    else if (found.inside.empty() && request::can_be(type, form))
      found.some.push_back(form);
  (allowed.takes_empty ? found.inside : found.outside).emplace_back();
  return found;
}

std::string told(const Parameter &parameter) {
  char text[4097] = {};
  return parameter.get && parameter.get.call(text, sizeof text - 1) == 0 ? text : "";
}

bool takes(const Parameter &parameter, const std::string &value) {
  if (!request::can_be(parameter.type, value)) return false;
  const auto other = parameter.type == Type::Boolean ? request::other_spelling(value) : std::nullopt;
  for (const std::string &text : {value, other.value_or(value)}) {
    if (parameter.check && parameter.check.call(parameter.path.data(), text.c_str()) != 0) continue;
    char names[4096] = {};
    const bool together = kovaCheckTR069ParameterValues(names, sizeof names) == 0;
    request::forget_pending_values();
    if (test::matches(std::string(parameter.path), combined)) return true;
    if (together && parameter.set.call(text.c_str()) == 0) return true;
  }
  return false;
}

// What the device was asked so far; a request of our own comes after all others.
long asked() {
  test::confirmed(0x10000006, "");
  std::ifstream log(device::log_file());
  return std::count(std::istreambuf_iterator<char>(log), {}, '\n');
}

void set(const request::Assignment &assignment) {
  const request::Setting setting = request::set_values(std::span(&assignment, 1));
  EXPECT_TRUE(setting.accepted) << assignment.path << "=" << assignment.value;
}

void open_the_way(const std::string &path) {
  for (auto closed = request::interlock_of(path); closed; closed = request::interlock_of(path)) {
    const auto step = test::matched(*closed, R"(.*set (\S+)=(\S+) first)");
    ASSERT_FALSE(step.empty()) << *closed;
    ASSERT_NO_FATAL_FAILURE(set({step[1], step[2]}));
    ASSERT_NE(request::interlock_of(path), closed) << "it did not help";
  }
}

void sweep(const Parameter &parameter) {
  const std::string path(parameter.path), initial = told(parameter);
  SCOPED_TRACE(path);
  ASSERT_NO_FATAL_FAILURE(open_the_way(path));
  const Samples samples = samples_of(request::allowed_values(parameter), parameter.type);

  const auto values = host::nvram_entries();
  const auto leaves = host::tree_leaves();
  const long before = asked();
  for (const std::string &value : samples.outside)
    EXPECT_FALSE(takes(parameter, value)) << value;
  EXPECT_EQ(asked(), before + 1);
  EXPECT_TRUE(host::nvram_entries() == values && host::tree_leaves() == leaves);

  const auto reads_back = [&](const std::string &value) {
    const std::string text = told(parameter);
    const bool hidden = parameter.type == Type::Secret && (text.empty() || text == " ");
    const bool spelled = parameter.type == Type::Boolean && request::other_spelling(value) == text;
    return text == value || hidden || spelled || !parameter.get || value.empty() || request::acts(path) ||
           test::matches(path, converted) || test::matches(path, combined);
  };
  bool any = samples.some.empty();
  for (const auto &[given, must] : {std::pair(samples.inside, true), std::pair(samples.some, false)})
    for (const std::string &value : given) {
      const bool taken = takes(parameter, value);
      EXPECT_TRUE(taken || !must) << value;
      EXPECT_TRUE(!taken || reads_back(value)) << "reads " << told(parameter) << " instead of " << value;
      any = any || taken;
    }
  EXPECT_TRUE(any) << "nothing is taken";
  if (parameter.get) takes(parameter, initial);
}

TEST(Allowed, IsWhatTheRulesTake) {
  const test::ScratchDevice device;
  for (int rule = 0; rule < 64 << 8; ++rule) {
    const auto described = host::describe_rule(rule >> 8, rule & 0xff);
    if (!described) continue;
    SCOPED_TRACE(described->text);
    const auto taken = [rule](const std::string &value) {
      return tarn_check_param(rule >> 8, value.c_str(), rule & 0xff) >= 0;
    };
    const Samples samples = samples_of(*described, Type::String);
    EXPECT_TRUE(std::ranges::all_of(samples.inside, taken));
    EXPECT_TRUE(std::ranges::none_of(samples.outside, taken));
    EXPECT_TRUE(samples.some.empty() || std::ranges::any_of(samples.some, taken));
  }
}

constexpr std::size_t shares = 4; // of the parameters, as all of them would take a test long

class Accessors : public testing::TestWithParam<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(Allowed, Accessors, testing::Range<std::size_t>(0, shares));

TEST_P(Accessors, TakeWhatIsAllowed) {
  const test::BootedDevice device;
  device.bring_up();
  // A diagnostics test that runs would store its results at any time.
  test::fs::remove_all(device.directory() / "root/bin");
  EXPECT_TRUE(device.run([this] {
    const device::Turn turn;
    const std::string ports = "InternetGatewayDevice.Services.VoiceService.1.VoiceProfile.1.RTP.LocalPort";
    set({ports + "Min", "1024"}); // none bounds the other
    set({ports + "Max", "65535"});
    const auto all = parameters();
    for (std::size_t at = GetParam(); at < all.size(); at += shares)
      if (all[at]->writable()) sweep(*all[at]);
  }));
}

} // namespace
} // namespace kova::model
