// Static routes: numbered refusals and the count; their changes are those of the rule lists.
#include "rows.hpp"

using fake::platform;
using fake::Strings;

namespace {

class Routes : public fake::Test {};

TEST_F(Routes, RowsAreRefusedWithTheReason) {
  // '!' is what the rules refuse, '~' what they accept with an answer other than 0.
  platform.rule = [](int group, const std::string &value, int) {
    EXPECT_EQ(group, 19);
    return value.find('!') != std::string::npos ? -2 : value.find('~') != std::string::npos ? 1 : 0;
  };
  const struct {
    std::string row;
    int code;
    Strings asked;
  } cases[] = {{"", 1, {}},
               {"g,n,m", 1, {}},
               {",,,", 1, {}},
               {"g,n,m,!", 2, {"19/3 !"}},
               {"g,n,m,0~", 2, {"19/3 0~"}},
               {",n,m,0", 3, {"19/3 0"}},
               {"!,n,m,0", 4, {"19/3 0", "19/0 !"}},
               {"192.168.1.254,n,m,1", 4, {"19/3 1"}},
               {" ,n,m,2", 4, {"19/3 2"}},
               {"g,,m,0", 5, {"19/3 0", "19/0 g"}},
               {"g,!,m,0", 6, {"19/3 0", "19/0 g", "19/1 !"}},
               {",n~,m,1", 6, {"19/3 1", "19/1 n~"}},
               {",n,,1", 7, {"19/3 1", "19/1 n"}},
               {",n,!,1", 8, {"19/3 1", "19/1 n", "19/2 !"}},
               {",n,~,1", 8, {"19/3 1", "19/1 n", "19/2 ~"}},
               {",n,m,1", 0, {"19/3 1", "19/1 n", "19/2 m"}},
               {"g,n,m,0,more", 0, {"19/3 0", "19/0 g", "19/1 n", "19/2 m"}}};
  for (const auto &[row, code, asked] : cases) {
    SCOPED_TRACE(row);
    platform.rules_asked.clear();
    EXPECT_EQ(checkX_RouteAllParam(row.c_str()), code);
    EXPECT_EQ(platform.rules_asked, asked);
  }
  EXPECT_EQ(checkX_RouteAllParam(nullptr), 1);
}

TEST_F(Routes, CodesAreTextsAsFarAsThereAreAny) {
  EXPECT_STREQ(RouteSetting_getErrStr(0), "OK.");
  EXPECT_STREQ(RouteSetting_getErrStr(10), "This route has been in existence.");
  EXPECT_STREQ(RouteSetting_getErrStr(13), "Error.");
  for (const int code : {14, -1, INT_MAX, INT_MIN})
    EXPECT_STREQ(RouteSetting_getErrStr(code), "Unknown.");
}

} // namespace
