// The telephone line: settings, codecs, gains, ports, status, apply, speed dialling.
#include "rows.hpp"

#include <kova/voice.h>

using fake::event;
using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Voice : public fake::Test {
protected:
  const char *const call_file = "/tmp/voip-call-status.txt", *const registration_file =
                                                                 "/tmp/voip-reg-status.txt";
  const Strings pushed = {"run sc ipchg", "run /etc/sysconfig/script/firewall_clear_rule.sh SIP",
                          event("fw_sip_rule")};
};

TEST_F(Voice, GainsAreStoredDoubledAndCrossed) {
  const std::pair<const char *, int> accepted[] = {
      {"0", 0}, {"-20", -20}, {"-100", -100}, {"loud", 0}, {" -20dB", -20}};
  for (const auto &[value, gain] : accepted) {
    platform = {};
    EXPECT_EQ(kovasetListenGain(value), 0);
    EXPECT_EQ(platform.done, Strings{"nvram 0 Speaker_Gain=" + std::to_string(2 * gain)});
    EXPECT_EQ(get(kovaGetSpeakerGain), std::to_string(gain));
    EXPECT_EQ(get(kovaGetListenGain), "0");
    EXPECT_EQ(kovasetSpeakerGain(value), 0);
    EXPECT_EQ(platform.done.back(), "nvram 0 Listen_Gain=" + std::to_string(2 * gain));
    EXPECT_EQ(get(kovaGetListenGain), std::to_string(gain));
  }
  platform.done.clear();
  for (const char *refused : {"-30", "20", "-120", "2147483647", "4294967276"})
    for (kova_setter *set : {kovasetListenGain, kovasetSpeakerGain})
      EXPECT_EQ(set(refused), -1) << refused;
  EXPECT_TRUE(platform.done.empty());
}

TEST_F(Voice, CodecsMustDiffer) {
  platform.rule = [](int group, const std::string &value, int) {
    EXPECT_EQ(group, 28);
    return value.find('!') == std::string::npos ? 0 : -2;
  };
  const struct {
    const char *value;
    Strings stored; // none: refused
    int asked;
  } cases[] = {{"A,B,C", {"A", "B", "C"}, 3},
               {"A,B", {"A", "B", ""}, 3},
               {"A,B,C,D", {"A", "B", "C"}, 3},
               {"A,B,a", {"A", "B", "a"}, 3},
               {"123456789abc,B,C", {"123456789", "B", "C"}, 3},
               {"123456789a,123456789b,C", {}, 3}, // alike as far as they count
               {"A,A,C", {}, 3},
               {"A,B,B", {}, 3},
               {",B,C", {}, 0},
               {"!,!,!", {}, 1},
               {"A,B,!", {}, 3}};
  const char *keys[] = {"PRIMARYCompressionType", "SECONDARYCompressionType", "THIRDCompressionType"};
  EXPECT_EQ(get(kovaGetCompressionType), ",,");
  for (const auto &[value, stored, asked] : cases) {
    SCOPED_TRACE(value);
    platform.done.clear();
    platform.rules_asked.clear();
    EXPECT_EQ(kovasetCompressionType(value), stored.empty() ? -1 : 0);
    EXPECT_EQ(platform.rules_asked.size(), static_cast<std::size_t>(asked));
    for (std::size_t i = 0; i < platform.rules_asked.size(); ++i)
      EXPECT_EQ(platform.rules_asked[i].substr(0, 5), "28/" + std::to_string(i) + " ");
    Strings done;
    for (std::size_t i = 0; i < stored.size(); ++i)
      done.push_back(std::string("nvram 0 ") + keys[i] + "=" + stored[i]);
    EXPECT_EQ(platform.done, done);
    if (!stored.empty()) {
      EXPECT_EQ(get(kovaGetCompressionType), stored[0] + "," + stored[1] + "," + stored[2]);
    }
  }
  for (const char *key : keys)
    platform.nvram[{0, key}] = std::string(255, 'x');
  EXPECT_EQ(get(kovaGetCompressionType, 1000).size(), 3U * 255 + 2);
}

TEST_F(Voice, PortsStayInOrder) {
  const struct {
    kova_setter *set;
    const char *value;
    int result;
  } cases[] = {{kovasetRTPLocalPortMin, "20000", -1}, {kovasetRTPLocalPortMin, "10000", 0},
               {kovasetRTPLocalPortMin, "10001", -1}, {kovasetRTPLocalPortMin, "4294967297", -1},
               {kovasetRTPLocalPortMax, "4999", -1},  {kovasetRTPLocalPortMax, "5000", 0},
               {kovasetRTPLocalPortMax, "60000", 0}};
  for (const auto &[set, value, result] : cases) {
    platform.done.clear();
    platform.preset(0, "RTPStartPort=5000 RTPEndPort=10000");
    EXPECT_EQ(set(value), result) << value;
    EXPECT_EQ(platform.done.empty(), result != 0);
  }
}

TEST_F(Voice, StatusOfTheLine) {
  const struct {
    const char *content;
    std::string status;
  } cases[] = {{nullptr, "None"}, {"\n", "None"}, {"Idle", "Idle"}, {"Registered\n", "Registered"}};
  for (const auto &[content, status] : cases)
    for (const auto &[path, read] : {std::pair{call_file, &kovaGetVoiceProfileLineState},
                                     std::pair{registration_file, &kovaGetVoiceProfileLineStatus}}) {
      platform = {};
      if (content != nullptr) platform.files[path] = content;
      EXPECT_EQ(get(read), status) << path;
    }
  platform.files[call_file] = std::string(4000, 's');
  EXPECT_EQ(get(kovaGetVoiceProfileLineState), std::string(63, 's'));
  EXPECT_EQ(get(kovaGetVoiceProfileLineState, 4), "ssss");
}

TEST_F(Voice, TheServerInUseIsKnownOnceRegisteredThroughIt) {
  const struct {
    const char *address, *mode, *registration, *expected;
  } cases[] = {{"10.1.1.1", "1", "Registered\n", "10.1.1.1"},
               {"10.1.1.1", "0", "Registered", "None"},
               {"0.0.0.0", "1", "Registered", "None"},
               {"", "1", "Registered", "None"},
               {"10.1.1.1", "1", "", "None"}};
  for (const auto &[address, mode, registration, expected] : cases) {
    platform = {};
    platform.nvram = {{{9, "pcscf_addr_voip"}, address}, {{0, "SIPServerMode"}, mode}};
    platform.files[registration_file] = registration;
    EXPECT_EQ(get(kovaGetPCSCFServerStatus), expected) << address << " " << mode << " " << registration;
  }
}

TEST_F(Voice, ApplyWaitsForAnIdleLineAndFifteenSeconds) {
  const struct {
    const char *what, *value, *call, *last, *enable;
    int result;
  } cases[] = {{"first", "1", nullptr, nullptr, "1", 0},
               {"idle", "1", "Idle\n", "", "1", 0},
               {"busy", "1", "Talking", nullptr, "1", -1},
               {"more than idle", "1", "Idle 2", nullptr, "1", -1},
               {"not idle at once", "1", "\nIdle", nullptr, "1", -1},
               {"15 seconds", "1", "Idle", "985", "1", 0},
               {"14 seconds", "1", "Idle", "986", "1", -1},
               {"before a restart", "1", "Idle", "5000", "1", -1},
               {"off", "1", "Idle", "985", "0", 0},
               {"never switched on", "1", "Idle", nullptr, "", 0},
               {"eleven", "11", "Idle", nullptr, "1", -1},
               {"no value", nullptr, "Idle", nullptr, "1", -1}};
  for (const auto &[what, value, call, last, enable, result] : cases) {
    SCOPED_TRACE(what);
    platform = {};
    if (call != nullptr) platform.files[call_file] = call;
    if (last != nullptr) platform.nvram[{9, "SIPLastRunTime"}] = last;
    platform.nvram[{0, "SIPEnable"}] = enable;
    EXPECT_EQ(kovaSetVoIPApply(value), result);
    Strings done;
    if (result == 0 && *enable == '1') {
      done = {"nvram 9 SIPAutoStartReg=1", "nvram 9 SIPLastRunTime=1000"};
      done.insert(done.end(), pushed.begin(), pushed.end());
    } else if (result == 0) {
      done = {"run sc disable 1", event("fw_sip_rule")};
    }
    EXPECT_EQ(platform.done, done);
  }
}

// ---- Speed dialling

TEST_F(Voice, SpeedDialRows) {
  platform.rule = [](int group, const std::string &value, int item) {
    EXPECT_EQ(group, 29);
    return value.find('!') != std::string::npos ? -2 : item == 0 && value.empty() ? -1 : 2;
  };
  const struct {
    std::string row;
    int result, asked; // how many of the three fields
  } cases[] = {{"3,555,note", 0, 3}, {"3,555,", 0, 3},   {"3,555,!", -1, 3},
               {"3,555", -1, 2},     {"3,,note", -1, 1}, {"3,!,", -1, 2},
               {"!,555,", -1, 1},    {",555,", -1, 1},   {" ,,", -1, 1}};
  for (const auto &[row, result, asked] : cases) {
    platform.rules_asked.clear();
    EXPECT_EQ(checkQuickdialAllParam(row.c_str()), result) << row;
    Strings fields = fake::rows_of(row, ',');
    fields.resize(static_cast<std::size_t>(asked));
    for (std::size_t i = 0; i < fields.size(); ++i)
      fields[i] = "29/" + std::to_string(i) + " " + fields[i];
    EXPECT_EQ(platform.rules_asked, fields) << row;
  }
  checkQuickdialAllParam(("3,555," + std::string(4000, 'n')).c_str());
  EXPECT_EQ(platform.rules_asked.back(), "29/2 " + std::string(255, 'n'));
}

TEST_F(Voice, NumbersBeyondWhatAnOperationWorksOnCountAsDialled) {
  platform.nvram[{0, "SPEEDDialLists"}] = std::string(300, 'x') + ";8,1,";
  EXPECT_EQ(checkSpeedDialParamRepeated("8,2,", 0), -1);
  EXPECT_EQ(checkSpeedDialParamRepeated("8,1,", 1), 0);
}

} // namespace
