// The pending value check list.
#include "fake/fake.hpp"

#include <kova/transaction.h>

#include <cstddef>

namespace {

class Pending : public fake::Test {
protected:
  ~Pending() override { pvcl_free_slot(&slot); }
  // "name=value" after a call that must succeed.
  std::string after(int result) const {
    EXPECT_EQ(result, 0);
    return std::string(pvcl_slot_name(&slot)) + "=" + pvcl_slot_value(&slot);
  }
  PendingValue slot = {};
};

TEST_F(Pending, SlotsOwnCopies) {
  char name[] = "Name", value[] = "value";
  EXPECT_EQ(pvcl_set_slot(&slot, name, value), 0);
  name[0] = value[0] = '#';
  EXPECT_EQ(after(0), "Name=value");
  EXPECT_EQ(after(pvcl_set_slot_value(&slot, "new")), "Name=new");
  EXPECT_EQ(after(pvcl_set_slot(&slot, nullptr, "lone")), "=lone");
  EXPECT_EQ(after(pvcl_set_slot(&slot, "Other", nullptr)), "Other=");
  EXPECT_EQ(after(pvcl_set_slot(&slot, slot.value, slot.name)), "=Other"); // its own texts
  EXPECT_EQ(after(pvcl_set_slot(&slot, slot.value, slot.value + 1)), "Other=ther");
  EXPECT_EQ(after(pvcl_set_slot_value(&slot, slot.value + 1)), "Other=her");
  for (int times = 0; times < 2; ++times) {
    pvcl_free_slot(&slot);
    EXPECT_TRUE(slot.name == nullptr && slot.value == nullptr);
  }
  EXPECT_EQ(after(0), "=");

  EXPECT_EQ(pvcl_set_slot(nullptr, "Name", "value"), -1);
  EXPECT_EQ(pvcl_set_slot_value(nullptr, "value"), -1);
  EXPECT_STREQ(pvcl_slot_name(nullptr), "");
  EXPECT_STREQ(pvcl_slot_value(nullptr), "");
  pvcl_free_slot(nullptr);
}

} // namespace
