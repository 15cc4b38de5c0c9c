// Memory that is short: the library's allocations, counted by the linker's --wrap.
#include "fake/fake.hpp"
#include "model/model.hpp"

#include <kova/transaction.h>

#include <climits>
#include <functional>

using fake::platform;

namespace {

int left = INT_MAX; // how many allocations succeed before one that fails
bool is_left() {
  return left == INT_MAX || left-- != 0;
}

} // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
void *__real_calloc(std::size_t count, std::size_t size);
char *__real_strdup(const char *text);
void *__wrap_calloc(std::size_t count, std::size_t size) {
  return is_left() ? __real_calloc(count, size) : nullptr;
}
char *__wrap_strdup(const char *text) {
  return is_left() ? __real_strdup(text) : nullptr;
}
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

// Makes the call with no memory for its first allocation, for its second, ... and answers how many there were.
int failing(const std::function<void()> &call) {
  constexpr const char *duplex = "/tarn/cell_selection/dedicated_duplex";
  int times = 0;
  do {
    platform = {};
    platform.otherwise = "1";
    platform.nvram[{0, "MACFilterWhiteRules"}] = "";
    platform.nvram[{0, duplex}] = platform.tree[duplex + 1] = "FDD";
    platform.bands = {3};
    platform.band_records = {{3, {0, 3, 1200, 1949}}};
    left = times++;
    call();
  } while (std::exchange(left, INT_MAX) < 0);
  return times - 1;
}

class Memory : public fake::Test {};

// Sanitizers see a use of what there is not, and what is not given back.
TEST_F(Memory, MayBeShortAtAnyAllocation) {
  int failures = 0;
  char names[1 << 14];
  for (const auto *parameter : kova::model::parameters())
    for (const char *value : {"1", "1300,1", "3,1300"})
      failures += failing([&] {
        if (parameter->get) parameter->get.call(names, 256);
        if (parameter->set) parameter->set.call(value);
        if (parameter->check) parameter->check.call("Name", value);
        *names = '\0';
        kovaCheckTR069ParameterValues(names, sizeof names);
      });
  for (const auto &list : kova::model::lists())
    failures += failing([&] {
      list.get.call(1, names, 256);
      if (!list.set) return;
      list.add.call();
      list.set.call(1, "7,::1,,0");
      list.remove.call(1);
    });
  EXPECT_GT(failures, 100) << "the library asks for memory elsewhere";
}

// What a lock or a preference could not be made of is refused: an empty list would lift it.
TEST_F(Memory, IsNoReasonToLiftALock) {
  const std::string directory = "tarn/cell_selection/";
  const struct {
    int (*set)(const char *);
    const char *value, *leaf, *stored;
  } lists[] = {{kovaSetTR069PciLock, "1300,100", "fdd_dedicated_pci_list", "3,1300,100"},
               {kovaSetTR069PciOnlyLock, "10,20", "dedicated_pci_range", "10,20"},
               {kovaSetTR069FreqPreferred, "3,1300", "fdd_dedicated_earfcn_list", "3,1300"}};
  for (const auto &list : lists)
    EXPECT_GT(failing([&] {
                const bool taken = list.set(list.value) == 0;
                EXPECT_EQ(platform.tree.contains(directory + list.leaf), taken) << list.leaf << left;
                EXPECT_TRUE(!taken || platform.tree[directory + list.leaf] == list.stored)
                    << list.leaf << left;
              }),
              0);
}

} // namespace
