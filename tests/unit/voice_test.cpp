// The telephone line's status and speed dialling.
#include "rows.hpp"

#include <kova/voice.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Voice : public fake::Test {};

TEST_F(Voice, AStatusIsCutAt63Characters) {
  platform.files["/tmp/voip-call-status.txt"] = std::string(4000, 's');
  EXPECT_EQ(get(kovaGetVoiceProfileLineState), std::string(63, 's'));
}

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
