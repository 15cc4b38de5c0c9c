// Static routes: numbered refusals, the routing service around the store.
#include "rows.hpp"

using fake::event;
using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Routes : public fake::Test {
protected:
  std::string &list() { return platform.nvram[{0, "static_route_key"}]; }
};

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
               {"g,n,m,", 1, {}},
               {",,,", 1, {}},
               {"g,n,m,!", 2, {"19/3 !"}},
               {"g,n,m,0~", 2, {"19/3 0~"}},
               {",n,m,0", 3, {"19/3 0"}},
               {"!,n,m,0", 4, {"19/3 0", "19/0 !"}},
               {"~,n,m,0", 4, {"19/3 0", "19/0 ~"}},
               {"192.168.1.254,n,m,1", 4, {"19/3 1"}},
               {" ,n,m,2", 4, {"19/3 2"}},
               {"g,,m,0", 5, {"19/3 0", "19/0 g"}},
               {",,m,1", 5, {"19/3 1"}},
               {"g,!,m,0", 6, {"19/3 0", "19/0 g", "19/1 !"}},
               {",n~,m,1", 6, {"19/3 1", "19/1 n~"}},
               {",n,,1", 7, {"19/3 1", "19/1 n"}},
               {",n,!,1", 8, {"19/3 1", "19/1 n", "19/2 !"}},
               {",n,~,1", 8, {"19/3 1", "19/1 n", "19/2 ~"}},
               {",n,m,1", 0, {"19/3 1", "19/1 n", "19/2 m"}},
               {"g,n,m,0", 0, {"19/3 0", "19/0 g", "19/1 n", "19/2 m"}},
               {"g,n,m,0,more", 0, {"19/3 0", "19/0 g", "19/1 n", "19/2 m"}}};
  for (const auto &[row, code, asked] : cases) {
    SCOPED_TRACE(row);
    list() = "before";
    platform.done.clear();
    platform.rules_asked.clear();
    EXPECT_EQ(checkX_RouteAllParam(row.c_str()), code);
    EXPECT_EQ(platform.rules_asked, asked);
    EXPECT_EQ(kovaSetXRouteRulesRule(1, row.c_str()), code);
    EXPECT_EQ(platform.done, code != 0 ? Strings{}
                                       : (Strings{event("ce_route stop"), "nvram 0 static_route_key=" + row,
                                                  event("ce_route start")}));
  }
  EXPECT_EQ(checkX_RouteAllParam(nullptr), 1);
}

TEST_F(Routes, EveryCodeHasItsText) {
  const char *texts[] = {"OK.",
                         "Route type should not be blank.",
                         "Route type with wrong value.",
                         "Gateway ip should not be blank.",
                         "Gateway ip is in wrong format.",
                         "Destination network IP address should not be blank.",
                         "Destination network IP address is in wrong format.",
                         "Destination IP subnet mask should not be blank.",
                         "Destination IP subnet mask is in wrong format.",
                         "The Router number exceeds.",
                         "This route has been in existence.",
                         "Fail.",
                         "Unknown Error.",
                         "Error."};
  for (int code = 0; code < 14; ++code)
    EXPECT_STREQ(RouteSetting_getErrStr(code), texts[code]);
  for (const int code : {14, -1, INT_MAX, INT_MIN})
    EXPECT_STREQ(RouteSetting_getErrStr(code), "Unknown.");
}

TEST_F(Routes, TheTableIsCountedReadAndChangedWhole) {
  EXPECT_EQ(get(kovaGetXRouteRulesNumberOfEntries), "0");
  EXPECT_EQ(kovaAddXRouteRulesRule(), 0);
  EXPECT_EQ(platform.done, Strings{"nvram 0 static_route_key= , , ,0"}); // a placeholder is no route yet
  EXPECT_EQ(get(kovaGetXRouteRulesNumberOfEntries), "1");
  list() = "";
  for (int i = 0; i < 100; ++i)
    EXPECT_EQ(kovaAddXRouteRulesRule(), 0);
  EXPECT_EQ(get(kovaGetXRouteRulesNumberOfEntries), "100");
  EXPECT_EQ(fake::row(kovaGetXRouteRulesRule, 100), " , , ,0"); // beyond what a set works on
  for (const int index : {0, -1, 101, INT_MAX, INT_MIN})
    EXPECT_EQ(fake::row(kovaGetXRouteRulesRule, index, 4, -1), "####");
  EXPECT_EQ(kovaDelXRouteRulesRule(100), 0);
  EXPECT_EQ(list().size(), 99U * 8 - 1);
  EXPECT_EQ(kovaDelXRouteRulesRule(100), -1);
  EXPECT_EQ(kovaSetXRouteRulesRule(33, ",1,1,1"), -1); // 255 characters hold 32 rows
  EXPECT_EQ(kovaSetXRouteRulesRule(32, ",1,1,1"), 0);
  EXPECT_EQ(get(kovaGetXRouteRulesNumberOfEntries), "32");
}

TEST_F(Routes, ARepetitionIsRefusedAndTheRowsOwnTextIsNone) {
  list() = ",1,1,1;,2,2,1";
  EXPECT_EQ(kovaSetXRouteRulesRule(1, ",2,2,1"), 10);
  EXPECT_TRUE(platform.done.empty());
  EXPECT_EQ(kovaSetXRouteRulesRule(2, ",2,2,1"), 0);
  EXPECT_EQ(kovaSetXRouteRulesRule(3, ",3,3,1"), -1);
  EXPECT_EQ(list(), ",1,1,1;,2,2,1");
}

TEST_F(Routes, NothingOfARowReachesTheShell) {
  list() = "row";
  for (const std::string &text : fake::shell_syntax) {
    platform.done.clear();
    const std::string row = std::string(",").append(text).append(",").append(text).append(",1").append(text);
    EXPECT_EQ(kovaSetXRouteRulesRule(1, row.c_str()), 0);
    EXPECT_EQ(kovaDelXRouteRulesRule(1), 0);
    const std::string stop = event("ce_route stop").substr(4), start = event("ce_route start").substr(4);
    EXPECT_EQ(fake::commands(), (Strings{stop, start, stop, start})) << text;
    list() = "row";
  }
}

} // namespace
